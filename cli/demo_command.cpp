// ldg demo [DIR]: makes a demo company's year file and shows what the engine
// knows about it. It grows with the engine.
#include <CLI/CLI.hpp>
#include <iostream>

#include "cli/command.hpp"
#include "ldg/ldg.hpp"

namespace ldg::cli {
namespace {

const bool kRegistered = RegisterCommand([](CLI::App& app) {
  auto* command = app.add_subcommand("demo", "Make a demo company's year file and show what the engine knows");
  auto dir = std::make_shared<std::string>(".");
  command->add_option("dir", *dir, "Folder for the demo file");
  command->callback([dir] {
    std::cout << "ldg " << VersionText() << "\n";
    std::cout << "The demo company's year file comes with the engine's year files.\n";
  });
});

}  // namespace
}  // namespace ldg::cli
