// ldg create FILE --begin DATE --end DATE [--year-id N]: makes a new year file
// from the template that lies in the engine's folder (or in LDG_APP_PATH) and
// tells which year it holds. Dates read as d.m.yyyy, dd.mm.yyyy or yyyy-mm-dd.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <optional>
#include <string>

#include "cli/command.hpp"
#include "engine/engine.hpp"
#include "support/conversions.hpp"
#include "support/variant.hpp"

namespace ldg::cli {
namespace {

struct CreateOptions {
  std::string file;
  std::string begin;
  std::string end;
  std::optional<std::string> year_id;
};

void RunCreate(const CreateOptions& options) {
  Engine engine;
  Variant user("");
  Variant password("");
  Variant product("ldg");
  engine.Init(user, password, product);
  std::optional<Variant> year_id;
  if (options.year_id) year_id = Variant(*options.year_id);
  engine.CreateDatabase(Variant(options.file), Variant(options.begin), Variant(options.end), year_id);
  std::cout << "Created " << engine.DatabaseName() << ": business year " << CStr(engine.YearID()) << ", "
            << CStr(engine.YearBeginn()) << " - " << CStr(engine.YearEnd()) << "\n";
  engine.Tini();
}

const bool kRegistered = RegisterCommand([](CLI::App& app) {
  auto* command = app.add_subcommand("create", "Make a new year file from the template");
  auto options = std::make_shared<CreateOptions>();
  command->add_option("file", options->file, "The year file to write (an existing one is replaced)")
      ->required();
  command->add_option("--begin", options->begin, "First day of the business year")->required();
  command->add_option("--end", options->end, "Last day of the business year")->required();
  command->add_option("--year-id", options->year_id,
                      "Number of the business year (default: the next free one)");
  command->callback([options] { RunCreate(*options); });
});

}  // namespace
}  // namespace ldg::cli
