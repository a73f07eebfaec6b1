#include "engine/business_years.hpp"

#include <memory>

#include "engine/engine_state.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/messages.hpp"
#include "support/nullable.hpp"
#include "support/paths.hpp"

namespace ldg {
namespace {

constexpr const char* kYearNotFound = "Business year definition could not be found!";

[[noreturn]] void RaiseYearNotFound() { RaiseError(kErrorBase, kYearNotFound); }

// The file's own row through the year query, or nothing when no row names it.
bool LookUpYear(store::Database& database, BusinessYearRow& row) {
  auto query = database.QueryDefs().Item("viewBusinessYear6Get");
  query->Parameters().Item("DbName").Value(Variant(YearFileNameOf(database.Name())));
  auto records = query->OpenRecordset(store::dbOpenSnapshot);
  const bool found = !records->Eof();
  if (found) {
    row.id = CLng(records->Value("ID"));
    row.beginn = records->Value("Beginn");
    row.end = records->Value("End");
    row.status = ReadLong(records->Value("Status"));
  }
  records->Close();
  return found;
}

// A bound of the open year; before any year was open it is day 0, as an empty value compares.
OleDate YearBound(const Variant& bound) { return bound.IsEmpty() ? OleDate() : CDate(bound); }

}  // namespace

std::string YearStatusText(int32_t status) {
  switch (status) {
    case lgrBsnYearActive:
      return MessageText(1208);
    case lgrBsnYearCloture:
      return MessageText(1209);
    case lgrBsnYearArchived:
      return MessageText(1210);
    case lgrBsnYearRemoved:
      return MessageText(1211);
    default:
      return "";
  }
}

std::string YearFileNameOf(std::string_view database_path) { return FileNameOf(database_path); }

BusinessYearRow ReadBusinessYear(store::Database& database) {
  BusinessYearRow row;
  if (LookUpYear(database, row)) return row;
  RelinkBusinessYear(database);
  if (LookUpYear(database, row)) return row;
  RaiseYearNotFound();
}

void RelinkBusinessYear(store::Database& database) {
  auto span = database.OpenRecordset("viewBusinessYearBeginnAndEnd", store::dbOpenSnapshot);
  if (span->Eof()) RaiseMessage(1223);
  // The span goes to the matching query as text, as the dates were always handed over.
  const std::string beginn = ReadString(span->Value("MinOfBeginn"));
  const std::string end = ReadString(span->Value("MaxOfEnd"));
  span->Close();
  if (!IsDate(Variant(beginn)) || !IsDate(Variant(end))) RaiseYearNotFound();

  auto query = database.QueryDefs().Item("viewBusinessYearMatchingBeginnAndEnd");
  query->Parameters().Item("Beginn").Value(Variant(beginn));
  query->Parameters().Item("End").Value(Variant(end));
  auto matching = query->OpenRecordset(store::dbOpenDynaset);
  if (matching->Eof()) RaiseYearNotFound();
  matching->Edit();
  matching->Value("DbName", Variant(YearFileNameOf(database.Name())));
  matching->Update();
  matching->Close();
  query->Close();
}

void CheckDateInYear(const Variant& value) {
  if (!IsDate(value)) RaiseMessage(1185);
  const OleDate day = DateValue(value);
  const EngineState& state = State();
  if (day < YearBound(state.year_beginn) || day > YearBound(state.year_end)) RaiseMessage(1103);
}

int32_t NextBusinessYearID(store::Database& database) {
  auto records =
      database.OpenRecordset("SELECT * FROM BusinessYears ORDER BY ID Desc;", store::dbOpenSnapshot);
  const int32_t next = records->Eof() ? 1 : CLng(records->Value("ID")) + 1;
  records->Close();
  return next;
}

void AddBusinessYear(store::Database& database, int32_t id, const Variant& begin, const Variant& end) {
  if (!IsDate(begin)) RaiseMessage(1191);
  if (!IsDate(end)) RaiseMessage(1192);
  if (!(DateValue(begin) < DateValue(end))) RaiseMessage(1193);
  {
    auto overlap = database.QueryDefs().Item("viewBusinessYearOverlap");
    overlap->Parameters().Item("Beg").Value(Variant(CDate(begin)));
    auto rows = overlap->OpenRecordset(store::dbOpenSnapshot);
    const bool overlaps = !rows->Eof();
    rows->Close();
    if (overlaps) RaiseMessage(1196);
  }
  const std::string file_name = YearFileNameOf(database.Name());
  auto query = database.QueryDefs().Item("viewBusinessYear6Get");
  query->Parameters().Item("DbName").Value(Variant(file_name));
  auto records = query->OpenRecordset(store::dbOpenDynaset);
  records->AddNew();
  records->Value("ID", Variant(id));
  records->Value("Beginn", Variant(CDate(begin)));
  records->Value("End", Variant(CDate(end)));
  records->Value("Status", Variant(static_cast<int16_t>(lgrBsnYearActive)));
  records->Value("BusinessYears.DBName", Variant(file_name));
  records->Update();
  records->Close();
}

void AddYearRowThroughLink(store::Database& database, int32_t linked_year_id,
                           std::string_view linked_file_name, const BusinessYearRow& row,
                           std::string_view row_file_name) {
  const std::string link_name = "BusinessYears" + std::to_string(linked_year_id);
  auto link = database.CreateTableDef(link_name);
  link->Connect(";DATABASE=" + JoinPath(FolderOf(database.Name()), linked_file_name));
  link->SourceTableName("BusinessYears");
  database.TableDefs().Append(link);
  try {
    auto years = database.OpenRecordset(link_name, store::dbOpenDynaset);
    years->AddNew();
    years->Value("ID", Variant(row.id));
    years->Value("Beginn", row.beginn);
    years->Value("End", row.end);
    years->Value("Status", Variant(static_cast<int16_t>(row.status)));
    years->Value("DbName", Variant(row_file_name));
    years->Update();
    years->Close();
  } catch (...) {
    database.TableDefs().Delete(link_name);
    throw;
  }
  database.TableDefs().Delete(link_name);
}

}  // namespace ldg
