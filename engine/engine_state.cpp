#include "engine/engine_state.hpp"

namespace ldg {

store::DBEngine& EngineState::DBEngine() {
  if (!db_engine_) db_engine_ = store::NewSqliteEngine();
  return *db_engine_;
}

EngineState& State() {
  thread_local EngineState state;
  return state;
}

}  // namespace ldg
