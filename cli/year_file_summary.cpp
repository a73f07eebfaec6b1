#include "cli/year_file_summary.hpp"

#include <string>

#include "cli/options_listing.hpp"
#include "support/conversions.hpp"
#include "support/sql_text.hpp"

namespace ldg::cli {

namespace {
std::string Text(const Variant& value) { return value.IsNull() || value.IsEmpty() ? std::string() : CStr(value); }
}  // namespace

TableOutput YearFileSummary(Engine& engine) {
  TableOutput table({"Item", "Value"});
  table.AddRow({"File", engine.DatabaseName()});
  table.AddRow({"Year", Text(engine.YearID())});
  table.AddRow({"Begin", Text(engine.YearBeginn())});
  table.AddRow({"End", Text(engine.YearEnd())});
  table.AddRow({"Status", Text(engine.YearStatusID()) + " " + Text(engine.YearStatus())});
  table.AddRow({"Instance", DoubleToSqlText(engine.InstanceID())});
  for (auto& [name, value] : OptionValues(*engine.Options())) table.AddRow({name, value});
  return table;
}

}  // namespace ldg::cli
