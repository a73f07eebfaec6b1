// The engine-wide objects of this thread that the classes reach without being
// handed them: the engine, its workspace and database, and the chart of
// accounts. Each raises run-time error 91 while there is none.
#pragma once

#include "store/database.hpp"
#include "store/workspace.hpp"
#include "support/error.hpp"

namespace ldg {

class Engine;
class Accounts;

Engine& CurrentEngine();
store::Workspace& CurrentWorkspace();
store::Database& CurrentDatabase();
Accounts& CurrentAccounts();

// Rolls the current workspace's transaction back, ignoring a failure of the
// rollback itself, and raises the error's number and text again with the
// application title as source.
[[noreturn]] void RollbackAndRaise(const Error& error);

}  // namespace ldg
