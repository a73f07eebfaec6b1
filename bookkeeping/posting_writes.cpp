#include "bookkeeping/posting_writes.hpp"

#include "engine/engine_state.hpp"
#include "store/store_error.hpp"
#include "support/messages.hpp"

namespace ldg {

store::Workspace& PostingWorkspace() {
  if (!State().workspace) RaiseRuntime(kErrObjectNotSet);
  return *State().workspace;
}

store::Database& PostingDatabase() {
  if (!State().database) RaiseRuntime(kErrObjectNotSet);
  return *State().database;
}

void RollbackAndRaise(const Error& error) {
  try {
    PostingWorkspace().Rollback();
  } catch (const Error&) {
  }
  RaiseError(error.Number(), error.Description());
}

void RefuseQuote(std::string_view text) {
  if (text.find('\'') != std::string_view::npos) store::RaiseStore(store::kErrSyntax);
}

}  // namespace ldg
