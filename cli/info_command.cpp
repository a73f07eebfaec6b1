// ldg info FILE: what the engine knows of a year file: its year, the year's
// status, the instance of the client's chain, and the client options.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>

#include "cli/command.hpp"
#include "cli/opened_year_file.hpp"
#include "cli/table_output.hpp"
#include "cli/year_file_summary.hpp"

namespace ldg::cli {
namespace {

struct Arguments {
  std::string file;
  std::string format = "text";
};

void Run(const Arguments& arguments) {
  const OutputFormat format = ParseOutputFormat(arguments.format);
  OpenedYearFile opened(arguments.file);
  YearFileSummary(opened.engine()).Print(std::cout, format);
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
