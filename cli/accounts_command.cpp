// ldg accounts FILE [--at DATE]: the chart of accounts of a year file as a
// tree, with each account's balance: the stored one, or the one at a date.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "cli/chart_listing.hpp"
#include "cli/command.hpp"
#include "cli/opened_year_file.hpp"
#include "cli/table_output.hpp"

namespace ldg::cli {
namespace {

struct Arguments {
  std::string file;
  std::string at;
  std::string format = "text";
};

void Run(const Arguments& arguments) {
  const OutputFormat format = ParseOutputFormat(arguments.format);
  const std::optional<OleDate> at_date = ParseOptionalIsoDate(arguments.at, "--at");
  OpenedYearFile opened(arguments.file);
  ChartListing(*opened.engine().Accounts(), at_date).Print(std::cout, format);
}

const bool kRegistered = RegisterCommand([](CLI::App& app) {
  auto* command = app.add_subcommand("accounts", "Show the chart of accounts of a year file with balances");
  auto arguments = std::make_shared<Arguments>();
  command->add_option("file", arguments->file, "The year file")->required();
  command->add_option("--at", arguments->at, "Balances at this date (yyyy-mm-dd) instead of the stored ones");
  command->add_option("--format", arguments->format, "text, csv or json")->capture_default_str();
  command->callback([arguments] { Run(*arguments); });
});

}  // namespace
}  // namespace ldg::cli
