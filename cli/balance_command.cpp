// ldg balance FILE [--at DATE]: the trial balance of a year file (see
// cli/trial_balance.hpp), with the stored balances or those at the end of a day.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "cli/chart_listing.hpp"
#include "cli/command.hpp"
#include "cli/opened_year_file.hpp"
#include "cli/table_output.hpp"
#include "cli/trial_balance.hpp"

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
  TrialBalance(opened.engine(), at_date).Print(std::cout, format);
}

const bool kRegistered = RegisterCommand([](CLI::App& app) {
  auto* command = app.add_subcommand("balance", "Show the trial balance of a year file");
  auto arguments = std::make_shared<Arguments>();
  command->add_option("file", arguments->file, "The year file")->required();
  command->add_option("--at", arguments->at, "Balances after the entries of this day (yyyy-mm-dd)");
  command->add_option("--format", arguments->format, "text, csv or json")->capture_default_str();
  command->callback([arguments] { Run(*arguments); });
});

}  // namespace
}  // namespace ldg::cli
