// ldg: the command line over the engine.
#include <CLI/CLI.hpp>
#include <iostream>

#include "ldg/ldg.hpp"

int main(int argc, char** argv) {
  CLI::App app{"ldg - bookkeeping engine"};
  app.set_version_flag("--version", ldg::VersionText());
  app.require_subcommand(0, 1);

  auto* demo = app.add_subcommand("demo", "Build a demo company's year file and show what the engine knows");
  std::string demo_dir = ".";
  demo->add_option("dir", demo_dir, "Folder for the demo file");

  CLI11_PARSE(app, argc, argv);

  try {
    if (demo->parsed()) {
      std::cout << "ldg " << ldg::VersionText() << "\n";
      std::cout << "The demo company's year file comes with the engine's year files.\n";
      return 0;
    }
    std::cout << app.help();
  } catch (const ldg::Error& error) {
    std::cerr << "Error " << error.Number() << " (" << error.Source() << "): " << error.Description() << "\n";
    return 1;
  }
  return 0;
}
