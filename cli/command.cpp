#include "cli/command.hpp"

#include <CLI/CLI.hpp>
#include <vector>

namespace ldg::cli {

namespace {
std::vector<CommandSetup>& Setups() {
  static std::vector<CommandSetup> setups;
  return setups;
}
}  // namespace

bool RegisterCommand(CommandSetup setup) {
  Setups().push_back(std::move(setup));
  return true;
}

void AddCommands(CLI::App& app) {
  for (const auto& setup : Setups()) setup(app);
}

}  // namespace ldg::cli
