#include "store/sqlite/value_codec.hpp"

#include <sqlite3.h>

#include <charconv>
#include <cmath>
#include <optional>
#include <string>

#include "store/sqlite/names.hpp"
#include "store/store_error.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"

namespace ldg::store::sqlite {

namespace {

std::string_view TrimBlanks(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

bool ParseNumber(std::string_view text, double& out) {
  text = TrimBlanks(text);
  if (text.empty()) return false;
  if (text.front() == '+') text.remove_prefix(1);
  auto result = std::from_chars(text.data(), text.data() + text.size(), out);
  return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

std::optional<bool> ParseBoolean(std::string_view text) {
  text = TrimBlanks(text);
  if (NamesEqual(text, "True") || NamesEqual(text, "Wahr") || NamesEqual(text, "Yes")) return true;
  if (NamesEqual(text, "False") || NamesEqual(text, "Falsch") || NamesEqual(text, "No")) return false;
  return std::nullopt;
}

// The number a value stands for; nullopt for a text that is no number.
std::optional<double> AsNumber(const Variant& value) {
  switch (value.Type()) {
    case VarType::kString: {
      double number = 0;
      if (ParseNumber(value.AsString(), number)) return number;
      if (auto flag = ParseBoolean(value.AsString())) return *flag ? -1.0 : 0.0;
      return std::nullopt;
    }
    case VarType::kEmpty:
    case VarType::kNull:
    case VarType::kObject:
    case VarType::kArray:
      return std::nullopt;
    default:
      return CDbl(value);
  }
}

double NumberOrRaise(const Variant& value) {
  auto number = AsNumber(value);
  if (!number) RaiseStore(kErrConversion);
  return *number;
}

int64_t WholeNumber(const Variant& value, int64_t low, int64_t high) {
  switch (value.Type()) {
    case VarType::kByte:
      return value.AsByte();
    case VarType::kInteger:
      return value.AsInteger();
    case VarType::kLong:
      return value.AsLong();
    case VarType::kBoolean:
      return value.AsBoolean() ? -1 : 0;
    default:
      break;
  }
  double rounded = std::nearbyint(NumberOrRaise(value));  // half to even, as the run time rounds
  if (std::isnan(rounded) || rounded < static_cast<double>(low) || rounded > static_cast<double>(high)) {
    RaiseRuntime(kErrOverflow);
  }
  return static_cast<int64_t>(rounded);
}

Currency ToCurrency(const Variant& value) {
  switch (value.Type()) {
    case VarType::kCurrency:
      return value.AsCurrency();
    case VarType::kByte:
    case VarType::kInteger:
    case VarType::kLong:
      return Currency::FromUnits(WholeNumber(value, INT32_MIN, INT32_MAX));
    case VarType::kBoolean:
      return Currency::FromUnits(value.AsBoolean() ? -1 : 0);
    case VarType::kString:
      if (auto parsed = Currency::Parse(std::string(TrimBlanks(value.AsString())))) return *parsed;
      break;
    default:
      break;
  }
  return Currency::FromDouble(NumberOrRaise(value));
}

std::string ToText(const Variant& value) {
  switch (value.Type()) {
    case VarType::kEmpty:
    case VarType::kNull:
    case VarType::kObject:
    case VarType::kArray:
      RaiseStore(kErrConversion);
    default:
      return CStr(value);
  }
}

}  // namespace

Variant Coerce(const Variant& value, FieldType type) {
  if (value.IsNull() || value.IsEmpty()) return Variant::Null();
  switch (type) {
    case FieldType::kBoolean: {
      if (value.Type() == VarType::kBoolean) return value;
      return Variant(NumberOrRaise(value) != 0.0);
    }
    case FieldType::kByte:
      return Variant(static_cast<uint8_t>(WholeNumber(value, 0, 255)));
    case FieldType::kInteger:
      return Variant(static_cast<int16_t>(WholeNumber(value, INT16_MIN, INT16_MAX)));
    case FieldType::kLong:
      return Variant(static_cast<int32_t>(WholeNumber(value, INT32_MIN, INT32_MAX)));
    case FieldType::kCurrency:
      return Variant(ToCurrency(value));
    case FieldType::kSingle:
      return Variant(static_cast<float>(NumberOrRaise(value)));
    case FieldType::kDouble:
      return Variant(NumberOrRaise(value));
    case FieldType::kDate:
      if (value.Type() == VarType::kDate) return value;
      if (value.Type() == VarType::kString) {
        try {
          return Variant(CDate(value));  // the locale's date text, as the run time reads it
        } catch (const Error&) {
          RaiseStore(kErrConversion);
        }
      }
      return Variant(OleDate(NumberOrRaise(value)));
    case FieldType::kText:
    case FieldType::kMemo:
      return Variant(ToText(value));
    case FieldType::kUnknown:
      return value;
  }
  return value;
}

void BindValue(sqlite3_stmt* statement, int index, const Variant& value) {
  switch (value.Type()) {
    case VarType::kEmpty:
    case VarType::kNull:
      sqlite3_bind_null(statement, index);
      return;
    case VarType::kBoolean:
      sqlite3_bind_int64(statement, index, value.AsBoolean() ? -1 : 0);
      return;
    case VarType::kByte:
      sqlite3_bind_int64(statement, index, value.AsByte());
      return;
    case VarType::kInteger:
      sqlite3_bind_int64(statement, index, value.AsInteger());
      return;
    case VarType::kLong:
      sqlite3_bind_int64(statement, index, value.AsLong());
      return;
    case VarType::kSingle:
      sqlite3_bind_double(statement, index, value.AsSingle());
      return;
    case VarType::kDouble:
      sqlite3_bind_double(statement, index, value.AsDouble());
      return;
    case VarType::kCurrency:
      sqlite3_bind_int64(statement, index, value.AsCurrency().Raw());
      return;
    case VarType::kDate:
      sqlite3_bind_double(statement, index, value.AsDate().Serial());
      return;
    case VarType::kString: {
      const std::string& text = value.AsString();
      sqlite3_bind_text(statement, index, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
      return;
    }
    default:
      RaiseStore(kErrConversion);
  }
}

Variant ReadColumn(sqlite3_stmt* statement, int column, FieldType type) {
  int storage = sqlite3_column_type(statement, column);
  if (storage == SQLITE_NULL) return Variant::Null();
  switch (type) {
    case FieldType::kBoolean:
      return Variant(sqlite3_column_int64(statement, column) != 0);
    case FieldType::kByte:
      return Variant(static_cast<uint8_t>(sqlite3_column_int64(statement, column)));
    case FieldType::kInteger:
      return Variant(static_cast<int16_t>(sqlite3_column_int64(statement, column)));
    case FieldType::kLong:
      return Variant(static_cast<int32_t>(sqlite3_column_int64(statement, column)));
    case FieldType::kCurrency:
      if (storage == SQLITE_INTEGER)
        return Variant(Currency::FromRaw(sqlite3_column_int64(statement, column)));
      return Variant(Currency::FromRaw(std::llround(sqlite3_column_double(statement, column))));
    case FieldType::kSingle:
      return Variant(static_cast<float>(sqlite3_column_double(statement, column)));
    case FieldType::kDouble:
      return Variant(sqlite3_column_double(statement, column));
    case FieldType::kDate:
      return Variant(OleDate(sqlite3_column_double(statement, column)));
    case FieldType::kText:
    case FieldType::kMemo:
      break;
    case FieldType::kUnknown:
      if (storage == SQLITE_INTEGER) {
        int64_t number = sqlite3_column_int64(statement, column);
        if (number >= INT32_MIN && number <= INT32_MAX) return Variant(static_cast<int32_t>(number));
        return Variant(static_cast<double>(number));
      }
      if (storage == SQLITE_FLOAT) return Variant(sqlite3_column_double(statement, column));
      break;
  }
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
  return Variant(std::string(text, static_cast<size_t>(sqlite3_column_bytes(statement, column))));
}

Variant ParseDefault(std::string_view expression, FieldType type) {
  std::string_view text = TrimBlanks(expression);
  if (!text.empty() && text.front() == '=') text = TrimBlanks(text.substr(1));
  if (text.empty()) return Variant();
  if (text.size() >= 2 && (text.front() == '"' || text.front() == '\'') && text.back() == text.front()) {
    return Coerce(Variant(std::string(text.substr(1, text.size() - 2))), type);
  }
  if (auto flag = ParseBoolean(text)) return Coerce(Variant(*flag), type);
  double number = 0;
  if (!ParseNumber(text, number)) return Variant();
  if (type == FieldType::kText || type == FieldType::kMemo) return Variant(std::string(text));
  if (type == FieldType::kCurrency) return Coerce(Variant(std::string(text)), type);
  return Coerce(Variant(number), type);
}

size_t CountCharacters(std::string_view text) {
  size_t count = 0;
  for (char c : text) {
    if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++count;
  }
  return count;
}

int32_t DefaultSize(FieldType type) {
  switch (type) {
    case FieldType::kBoolean:
    case FieldType::kByte:
      return 1;
    case FieldType::kInteger:
      return 2;
    case FieldType::kLong:
    case FieldType::kSingle:
      return 4;
    case FieldType::kCurrency:
    case FieldType::kDouble:
    case FieldType::kDate:
      return 8;
    case FieldType::kText:
      return 50;
    default:
      return 0;
  }
}

const char* ColumnTypeName(FieldType type) {
  switch (type) {
    case FieldType::kBoolean:
      return "BOOLINT";
    case FieldType::kByte:
      return "BYTEINT";
    case FieldType::kInteger:
      return "SMALLINT";
    case FieldType::kLong:
      return "LONGINT";
    case FieldType::kCurrency:
      return "CURRENCYINT";
    case FieldType::kSingle:
      return "SINGLE REAL";
    case FieldType::kDouble:
      return "DOUBLE";
    case FieldType::kDate:
      return "DATE REAL";
    case FieldType::kText:
      return "TEXT COLLATE NOCASE";
    case FieldType::kMemo:
      return "MEMO TEXT COLLATE NOCASE";
    default:
      return "";
  }
}

}  // namespace ldg::store::sqlite
