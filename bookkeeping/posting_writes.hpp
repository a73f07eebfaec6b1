// What the writers of book entries and definitive runs share: the workspace
// that carries their transaction, the error path that rolls it back, and the
// refusal of a text that would change the statement it is pasted into.
#pragma once

#include <string_view>

#include "store/database.hpp"
#include "store/workspace.hpp"
#include "support/error.hpp"

namespace ldg {

// The engine's current workspace and database; run-time error 91 without one.
store::Workspace& PostingWorkspace();
store::Database& PostingDatabase();

// Rolls the transaction back, ignoring a failure of the rollback itself, and
// raises the error's number and text again with the application title as source.
[[noreturn]] void RollbackAndRaise(const Error& error);

// A text pasted between single quotes must hold none itself: store error 3075
// is raised before any statement runs.
void RefuseQuote(std::string_view text);

}  // namespace ldg
