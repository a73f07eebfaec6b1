#include "cli/dated_listing.hpp"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>
#include <utility>

#include "cli/chart_listing.hpp"
#include "cli/command.hpp"
#include "cli/opened_year_file.hpp"

namespace ldg::cli {
namespace {

struct Arguments {
  std::string file;
  std::string at;
  std::string format = "text";
};

}  // namespace

bool RegisterDatedListing(DatedListing listing) {
  return RegisterCommand([listing = std::move(listing)](CLI::App& app) {
    auto* command = app.add_subcommand(listing.name, listing.description);
    auto arguments = std::make_shared<Arguments>();
    command->add_option("file", arguments->file, "The year file")->required();
    command->add_option("--at", arguments->at, listing.at_help);
    command->add_option("--format", arguments->format, "text, csv or json")->capture_default_str();
    command->callback([arguments, build = listing.build] {
      const OutputFormat format = ParseOutputFormat(arguments->format);
      const std::optional<OleDate> at_date = ParseOptionalIsoDate(arguments->at, "--at");
      OpenedYearFile opened(arguments->file);
      build(opened.engine(), at_date).Print(std::cout, format);
    });
  });
}

}  // namespace ldg::cli
