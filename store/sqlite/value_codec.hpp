// How values travel between the object model and SQLite columns: Currency as
// INTEGER ten-thousandths, Boolean as -1/0, Date as the REAL OLE day number,
// Text as UTF-8. A column's declared type decides the Variant kind read back,
// so a Sum of a Currency column reads as Currency.
#pragma once

#include <cstdint>
#include <string_view>

#include "store/field_type.hpp"
#include "support/variant.hpp"

struct sqlite3_stmt;

namespace ldg::store::sqlite {

// The value a column of the type stores; Null and Empty give Null. Raises 3421
// for a value that can't be converted and run-time error 6 on overflow.
Variant Coerce(const Variant& value, FieldType type);

// Binds a value by its own kind (Currency as ticks, Boolean as -1/0, Date as
// its day number); Empty and Null bind Null.
void BindValue(sqlite3_stmt* statement, int index, const Variant& value);

// Reads a column as the kind of the type; kUnknown takes SQLite's own type.
Variant ReadColumn(sqlite3_stmt* statement, int column, FieldType type);

// The value of a default expression ("0", "False", "\"CHF\""); Empty when the
// expression is empty or not a constant.
Variant ParseDefault(std::string_view expression, FieldType type);

// Characters (code points) of a UTF-8 text.
size_t CountCharacters(std::string_view text);

// The default size of a field of the type: 50 for Text, 0 for Memo, the byte
// width for the others.
int32_t DefaultSize(FieldType type);

// The SQLite column type that names the store's type and gives the affinity.
const char* ColumnTypeName(FieldType type);

}  // namespace ldg::store::sqlite
