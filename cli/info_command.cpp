// ldg info FILE: what the engine knows of a year file: its year, the year's
// status, the instance of the client's chain, and the client options.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>

#include "cli/command.hpp"
#include "cli/opened_year_file.hpp"
#include "cli/options_listing.hpp"
#include "cli/table_output.hpp"
#include "support/conversions.hpp"
#include "support/sql_text.hpp"

namespace ldg::cli {
namespace {

struct Arguments {
  std::string file;
  std::string format = "text";
};

std::string Text(const Variant& value) {
  return value.IsNull() || value.IsEmpty() ? std::string() : CStr(value);
}

void Run(const Arguments& arguments) {
  const OutputFormat format = ParseOutputFormat(arguments.format);
  OpenedYearFile opened(arguments.file);
  Engine& engine = opened.engine();
  TableOutput table({"Item", "Value"});
  table.AddRow({"File", engine.DatabaseName()});
  table.AddRow({"Year", Text(engine.YearID())});
  table.AddRow({"Begin", Text(engine.YearBeginn())});
  table.AddRow({"End", Text(engine.YearEnd())});
  table.AddRow({"Status", Text(engine.YearStatusID()) + " " + Text(engine.YearStatus())});
  table.AddRow({"Instance", DoubleToSqlText(engine.InstanceID())});
  for (auto& [name, value] : OptionValues(*engine.Options())) table.AddRow({name, value});
  table.Print(std::cout, format);
}

const bool kRegistered = RegisterCommand([](CLI::App& app) {
  auto* command = app.add_subcommand("info", "Show the year, status, instance and options of a year file");
  auto arguments = std::make_shared<Arguments>();
  command->add_option("file", arguments->file, "The year file")->required();
  command->add_option("--format", arguments->format, "text, csv or json")->capture_default_str();
  command->callback([arguments] { Run(*arguments); });
});

}  // namespace
}  // namespace ldg::cli
