// Runs one ldg command line in the test's own process, as the program would,
// and gives back what it printed on standard output.
#pragma once

#include <CLI/CLI.hpp>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "cli/command.hpp"

namespace ldg::testing {

inline std::string RunLdg(std::vector<std::string> arguments) {
  CLI::App app{"ldg"};
  app.require_subcommand(1);
  cli::AddCommands(app);
  arguments.insert(arguments.begin(), "ldg");
  std::vector<char*> argv;
  for (auto& argument : arguments) argv.push_back(argument.data());
  std::ostringstream captured;
  auto* saved = std::cout.rdbuf(captured.rdbuf());
  try {
    app.parse(static_cast<int>(argv.size()), argv.data());
  } catch (...) {
    std::cout.rdbuf(saved);
    throw;
  }
  std::cout.rdbuf(saved);
  return captured.str();
}

}  // namespace ldg::testing
