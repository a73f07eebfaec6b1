#include "support/nullable.hpp"

#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/text.hpp"

namespace ldg {
namespace {

enum class FieldType { kLong, kInteger, kCurrency, kString, kBoolean, kByte, kDouble, kSingle, kDate };

FieldType TypeOfTag(std::string_view tag) {
  if (tag == "Lng") return FieldType::kLong;
  if (tag == "Int") return FieldType::kInteger;
  if (tag == "Cur") return FieldType::kCurrency;
  if (tag == "Str") return FieldType::kString;
  if (tag == "Bool") return FieldType::kBoolean;
  if (tag == "Byte") return FieldType::kByte;
  if (tag == "Dbl") return FieldType::kDouble;
  if (tag == "Sng") return FieldType::kSingle;
  if (tag == "Date") return FieldType::kDate;
  RaiseRuntime(kErrInvalidCall);
}

Variant EmptyValueOf(FieldType type) {
  switch (type) {
    case FieldType::kLong:
      return Variant(int32_t{0});
    case FieldType::kInteger:
      return Variant(int16_t{0});
    case FieldType::kCurrency:
      return Variant(Currency());
    case FieldType::kString:
      return Variant(std::string());
    case FieldType::kBoolean:
      return Variant(false);
    case FieldType::kByte:
      return Variant(uint8_t{0});
    case FieldType::kDouble:
      return Variant(0.0);
    case FieldType::kSingle:
      return Variant(0.0f);
    case FieldType::kDate:
      return Variant(OleDate(0.0));
  }
  return Variant();
}

Variant ConvertTo(FieldType type, const Variant& value) {
  switch (type) {
    case FieldType::kLong:
      return Variant(CLng(value));
    case FieldType::kInteger:
      return Variant(CInt(value));
    case FieldType::kCurrency:
      return Variant(CCur(value));
    case FieldType::kString:
      return Variant(CStr(value));
    case FieldType::kBoolean:
      return Variant(CBool(value));
    case FieldType::kByte:
      return Variant(CByte(value));
    case FieldType::kDouble:
      return Variant(CDbl(value));
    case FieldType::kSingle:
      return Variant(CSng(value));
    case FieldType::kDate:
      return Variant(CDate(value));
  }
  return Variant();
}

Variant ReadOrDefault(FieldType type, const Variant& value) {
  if (value.IsNull() || value.IsEmpty()) return EmptyValueOf(type);
  return ConvertTo(type, value);
}

}  // namespace

Variant NullableRead(std::string_view tag, const Variant& field_or_value, const Record* record) {
  FieldType type = TypeOfTag(tag);
  if (record == nullptr) return ReadOrDefault(type, field_or_value);
  return ReadOrDefault(type, record->Value(CStr(field_or_value)));
}

Variant NullableWrite(std::string_view tag, const Variant& value) {
  FieldType type = TypeOfTag(tag);
  if (value.IsNull() || value.IsEmpty()) return Variant::Null();
  Variant converted = ConvertTo(type, value);
  if (converted == EmptyValueOf(type)) return Variant::Null();
  return converted;
}

void WriteCutText(Record& record, std::string_view field, std::string_view text) {
  if (text.empty()) {
    record.Value(field, Variant::Null());
    return;
  }
  int32_t size = record.Size(field);
  if (size > 0 && Len(text) > static_cast<size_t>(size)) {
    record.Value(field, Variant(Left(text, static_cast<size_t>(size))));
    return;
  }
  record.Value(field, Variant(text));
}

int32_t ReadLong(const Record& record, std::string_view field) { return ReadLong(record.Value(field)); }
int16_t ReadInteger(const Record& record, std::string_view field) { return ReadInteger(record.Value(field)); }
uint8_t ReadByte(const Record& record, std::string_view field) { return ReadByte(record.Value(field)); }
Currency ReadCurrency(const Record& record, std::string_view field) {
  return ReadCurrency(record.Value(field));
}
std::string ReadString(const Record& record, std::string_view field) {
  return ReadString(record.Value(field));
}
bool ReadBoolean(const Record& record, std::string_view field) { return ReadBoolean(record.Value(field)); }
double ReadDouble(const Record& record, std::string_view field) { return ReadDouble(record.Value(field)); }
float ReadSingle(const Record& record, std::string_view field) { return ReadSingle(record.Value(field)); }
OleDate ReadDate(const Record& record, std::string_view field) { return ReadDate(record.Value(field)); }

// A value that already has the type is its own reading; the conversion would copy it unchanged.
int32_t ReadLong(const Variant& value) {
  if (value.Type() == VarType::kLong) return value.AsLong();
  return ReadOrDefault(FieldType::kLong, value).AsLong();
}
int16_t ReadInteger(const Variant& value) {
  if (value.Type() == VarType::kInteger) return value.AsInteger();
  return ReadOrDefault(FieldType::kInteger, value).AsInteger();
}
uint8_t ReadByte(const Variant& value) { return ReadOrDefault(FieldType::kByte, value).AsByte(); }
Currency ReadCurrency(const Variant& value) {
  if (value.Type() == VarType::kCurrency) return value.AsCurrency();
  return ReadOrDefault(FieldType::kCurrency, value).AsCurrency();
}
std::string ReadString(const Variant& value) {
  if (value.Type() == VarType::kString) return value.AsString();
  return ReadOrDefault(FieldType::kString, value).AsString();
}
bool ReadBoolean(const Variant& value) {
  if (value.Type() == VarType::kBoolean) return value.AsBoolean();
  return ReadOrDefault(FieldType::kBoolean, value).AsBoolean();
}
double ReadDouble(const Variant& value) { return ReadOrDefault(FieldType::kDouble, value).AsDouble(); }
float ReadSingle(const Variant& value) { return ReadOrDefault(FieldType::kSingle, value).AsSingle(); }
OleDate ReadDate(const Variant& value) { return ReadOrDefault(FieldType::kDate, value).AsDate(); }

}  // namespace ldg
