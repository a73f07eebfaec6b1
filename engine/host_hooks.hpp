// HostHooks: what the engine asks of the program that hosts it. Long work
// (open, recalculation of balances, verify, import, closing) gives the host a
// turn and reports progress through it; the command line draws a progress bar
// from it. Every method does nothing by default.
#pragma once

#include <cstdint>
#include <string_view>

namespace ldg {

class HostHooks {
 public:
  virtual ~HostHooks() = default;

  // Lets the host run its message loop once between long steps.
  virtual void Yield() {}
  // done of total units of the named work; total 0 when unknown.
  virtual void Progress(std::string_view /*work*/, int64_t /*done*/, int64_t /*total*/) {}
  virtual void Beep() {}
  // The database log's dialog: a front end shows the log when asked.
  virtual void ShowDbLog() {}
};

}  // namespace ldg
