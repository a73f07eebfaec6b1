#include "engine/current_objects.hpp"

#include "engine/engine_state.hpp"
#include "support/messages.hpp"

namespace ldg {

Engine& CurrentEngine() { return Dereferenced(State().engine); }

store::Workspace& CurrentWorkspace() { return Dereferenced(State().workspace); }

store::Database& CurrentDatabase() { return Dereferenced(State().database); }

Accounts& CurrentAccounts() { return Dereferenced(State().accounts); }

void RollbackAndRaise(const Error& error) {
  try {
    CurrentWorkspace().Rollback();
  } catch (const Error&) {
  }
  RaiseError(error.Number(), error.Description());
}

}  // namespace ldg
