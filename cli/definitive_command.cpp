// ldg definitive FILE --to DATE [--from DATE]: makes every open book entry
// dated up to the day (and from the first day, if given) definitive in one run
// of BookEntries.DoDefinitive, and tells how many.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>

#include "bookkeeping/book_entries.hpp"
#include "cli/chart_listing.hpp"
#include "cli/command.hpp"
#include "cli/opened_year_file.hpp"
#include "support/variant.hpp"

namespace ldg::cli {
namespace {

struct Arguments {
  std::string file;
  std::string from;
  std::string to;
};

void Run(const Arguments& arguments) {
  const Variant from = IsoDateOption(arguments.from, "--from");
  const Variant to(ParseIsoDate(arguments.to, "--to"));
  OpenedYearFile opened(arguments.file);
  const int32_t count = opened.engine().BookEntries()->DoDefinitive(Variant(), from, to);
  std::cout << "Made " << count << " book entries definitive.\n";
}

const bool kRegistered = RegisterCommand([](CLI::App& app) {
  auto* command = app.add_subcommand("definitive", "Make the open book entries up to a day definitive");
  auto arguments = std::make_shared<Arguments>();
  command->add_option("file", arguments->file, "The year file")->required();
  command->add_option("--to", arguments->to, "Last day (yyyy-mm-dd)")->required();
  command->add_option("--from", arguments->from, "First day (yyyy-mm-dd)");
  command->callback([arguments] { Run(*arguments); });
});

}  // namespace
}  // namespace ldg::cli
