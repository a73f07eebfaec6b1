// The commands of ldg. Each command lives in its own file and registers itself
// at start-up with RegisterCommand; main builds the command line from them.
// A command reports failure by throwing: ldg::Error prints its number, source
// and text, and ldg exits with 1.
#pragma once

#include <functional>

namespace CLI {
class App;
}

namespace ldg::cli {

using CommandSetup = std::function<void(CLI::App& app)>;

// Adds a command; call it from a namespace-scope initialiser of the command's
// file: `const bool kRegistered = RegisterCommand(...)`.
bool RegisterCommand(CommandSetup setup);
// Adds every registered command to the application.
void AddCommands(CLI::App& app);

}  // namespace ldg::cli
