// Business years: one database file holds one year of a client, and every file
// of a chain lists all years of the chain in its table "BusinessYears", its
// own row found by the file name stored there ("DbName", the bare name).
//
// This module finds a file's own year at open and heals that link after the
// file was renamed, checks a date against the open year, checks and adds a
// year row, writes a year row into an older file of the chain, and gives the
// status texts. Only that last write reaches another file, through a link made
// for it alone; nothing is written before every check has passed.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "store/database.hpp"
#include "support/variant.hpp"

namespace ldg {

enum BsnYearStatus : int32_t {
  lgrBsnYearActive = 1,
  lgrBsnYearCloture = 2,
  lgrBsnYearArchived = 3,
  lgrBsnYearRemoved = 4,
};

// A file's own row of "BusinessYears".
struct BusinessYearRow {
  int32_t id = 0;
  Variant beginn;
  Variant end;
  int32_t status = 0;
};

// The text of a year status ("Aktiv", "Abschluss", "Archiv", "Entfernt"); ""
// for any status outside 1 to 4.
std::string YearStatusText(int32_t status);

// The name a year row stores for a database: its file name less the folder,
// cut at the last "/" or "\".
std::string YearFileNameOf(std::string_view database_path);

// The file's own year row: looked up by file name; when none matches, the file
// was renamed, so the link is healed (RelinkBusinessYear) and looked up once
// more. Still none raises 0x80040000 "Business year definition could not be
// found!".
BusinessYearRow ReadBusinessYear(store::Database& database);

// Links the row of "BusinessYears" whose dates match the span of the file's
// periods to the file's present name. Raises 1223 under 0x800404C7 when the
// span query gives no row, and 0x80040000 "Business year definition could not
// be found!" when the span is not two dates or no row matches it.
void RelinkBusinessYear(store::Database& database);

// Raises 1185 when the value is no date, 1103 when its date part lies outside
// the open year (bounds included).
void CheckDateInYear(const Variant& value);

// The highest year id of the file plus 1; 1 for an empty table.
int32_t NextBusinessYearID(store::Database& database);

// Checks the span (1191 begin no date, 1192 end no date, 1193 begin not before
// end, 1196 overlap with a year of the file) and adds the year as active, linked
// to this file's name.
void AddBusinessYear(store::Database& database, int32_t id, const Variant& begin, const Variant& end);

// Writes a year row into "BusinessYears" of another file of the chain, found
// by its bare file name beside this database: through a link named
// "BusinessYears" + linked_year_id that is made in this database for the one
// insert and deleted again, whether the insert worked or not.
void AddYearRowThroughLink(store::Database& database, int32_t linked_year_id,
                           std::string_view linked_file_name, const BusinessYearRow& row,
                           std::string_view row_file_name);

}  // namespace ldg
