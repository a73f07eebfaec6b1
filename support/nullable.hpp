// Typed field readers and writers: the defensive way every class reads a row.
//
// A reader takes a type tag ("Lng", "Int", "Cur", "Str", "Bool", "Byte", "Dbl",
// "Sng", "Date") and turns a field's value into that type. A Null or Empty
// value reads as the empty value of the type (0, "", False, the date 0), never
// as an error; a value that does not convert raises the conversion's error.
// A writer does the inverse for optional columns: the empty value of the type
// is stored as Null, so that 0 in a class is Null in the table.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "support/currency.hpp"
#include "support/ole_date.hpp"
#include "support/record.hpp"
#include "support/variant.hpp"

namespace ldg {

// With a record, field_or_value names the field to read; without one it is the
// value itself. An unknown tag raises run-time error 5.
Variant NullableRead(std::string_view tag, const Variant& field_or_value, const Record* record = nullptr);

// Null for Null, Empty and the empty value of the type; else the value
// converted to the type. An unknown tag raises run-time error 5.
Variant NullableWrite(std::string_view tag, const Variant& value);

// Sets a text field, cut to the field's Size in characters when the Size is
// above 0 and the text is longer; an empty text stores Null.
void WriteCutText(Record& record, std::string_view field, std::string_view text);

// Typed readers of a field.
int32_t ReadLong(const Record& record, std::string_view field);
int16_t ReadInteger(const Record& record, std::string_view field);
uint8_t ReadByte(const Record& record, std::string_view field);
Currency ReadCurrency(const Record& record, std::string_view field);
std::string ReadString(const Record& record, std::string_view field);
bool ReadBoolean(const Record& record, std::string_view field);
double ReadDouble(const Record& record, std::string_view field);
float ReadSingle(const Record& record, std::string_view field);
OleDate ReadDate(const Record& record, std::string_view field);

// Typed readers of a plain value.
int32_t ReadLong(const Variant& value);
int16_t ReadInteger(const Variant& value);
uint8_t ReadByte(const Variant& value);
Currency ReadCurrency(const Variant& value);
std::string ReadString(const Variant& value);
bool ReadBoolean(const Variant& value);
double ReadDouble(const Variant& value);
float ReadSingle(const Variant& value);
OleDate ReadDate(const Variant& value);

}  // namespace ldg
