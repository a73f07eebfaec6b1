// ldg: the command line over the engine. Each command registers itself (see
// cli/command.hpp); this file only parses and reports errors.
#include <CLI/CLI.hpp>
#include <iostream>

#include "cli/command.hpp"
#include "ldg/ldg.hpp"

int main(int argc, char** argv) {
  CLI::App app{"ldg - bookkeeping engine for small and medium firms"};
  app.set_version_flag("--version", ldg::VersionText());
  app.require_subcommand(1);
  ldg::cli::AddCommands(app);

  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error);
  } catch (const ldg::Error& error) {
    std::cerr << "ldg: error " << error.Number();
    if (!error.Source().empty()) std::cerr << " (" << error.Source() << ")";
    std::cerr << ": " << error.Description() << "\n";
    return 1;
  } catch (const std::exception& error) {
    std::cerr << "ldg: " << error.what() << "\n";
    return 1;
  }
  return 0;
}
