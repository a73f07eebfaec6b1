// ldg options FILE [NAME [VALUE]]: lists the client options of a year file,
// shows one, or sets one. A name is an option's name without "Option"
// (BaseCurrencyCode, Decimals, ...); values are stored as text.
#include <CLI/CLI.hpp>
#include <functional>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "cli/command.hpp"
#include "cli/opened_year_file.hpp"
#include "cli/options_listing.hpp"
#include "cli/table_output.hpp"
#include "engine/options.hpp"

namespace ldg::cli {
namespace {

struct Arguments {
  std::string file;
  std::string name;
  std::string value;
  bool value_given = false;
  std::string format = "text";
};

void Run(const Arguments& arguments) {
  OpenedYearFile opened(arguments.file);
  Options& options = *opened.engine().Options();
  if (arguments.name.empty()) {
    TableOutput table({"Option", "Value"});
    for (auto& [name, value] : OptionValues(options)) table.AddRow({name, value});
    table.Print(std::cout, ParseOutputFormat(arguments.format));
    return;
  }
  if (arguments.value_given) options.Value(arguments.name, Variant(arguments.value));
  std::cout << OptionValue(options, arguments.name) << "\n";
}

const bool kRegistered = RegisterCommand([](CLI::App& app) {
  auto* command = app.add_subcommand("options", "List, show or set the client options of a year file");
  auto arguments = std::make_shared<Arguments>();
  command->add_option("file", arguments->file, "The year file")->required();
  command->add_option("name", arguments->name, "The option's name, without \"Option\"");
  auto* value = command->add_option("value", arguments->value, "The new value, stored as text");
  command->add_option("--format", arguments->format, "text, csv or json")->capture_default_str();
  command->callback([arguments, value] {
    arguments->value_given = value->count() > 0;
    Run(*arguments);
  });
});

}  // namespace
}  // namespace ldg::cli
