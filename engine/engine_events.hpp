// EngineEvents: what an Engine tells its host, one listener interface with an
// empty default for every event. A host derives from it, overrides what it
// wants and registers the object with Engine::AddListener. The events arrive on
// the engine's own thread, in the middle of the call that raises them.
#pragma once

#include "support/currency.hpp"
#include "support/variant.hpp"

namespace ldg {

class EngineEvents {
 public:
  virtual ~EngineEvents() = default;

  // At the end of Init, always.
  virtual void Initialized() {}
  // At the end of the close of an open database, unless muted.
  virtual void DatabaseClosed(const Variant& /*database_name*/) {}
  // As the last step of OpenDatabase, unless muted.
  virtual void DatabaseOpened(const Variant& /*database_name*/) {}
  // As the last step of CreateDatabase, unless muted.
  virtual void DatabaseCreated(const Variant& /*database_name*/) {}
  // The opening balances of the file don't sum to zero (while opening; never muted).
  virtual void OpeningBalaceUnbalancedOnOpen(const Variant& /*database_name*/, Currency /*balance*/) {}
  // The same at the start of a close.
  virtual void OpeningBalaceUnbalancedOnClose(const Variant& /*database_name*/, Currency /*balance*/) {}
  // One trace line; the arguments may be changed by the listener.
  virtual void DebugLog(Variant& /*v0*/, Variant& /*v1*/, Variant& /*v2*/, Variant& /*v3*/, Variant& /*v4*/,
                        Variant& /*v5*/, Variant& /*v6*/, Variant& /*v7*/, Variant& /*v8*/, Variant& /*v9*/) {
  }
};

}  // namespace ldg
