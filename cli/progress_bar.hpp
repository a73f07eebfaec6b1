// ProgressBar: the host hooks of the command line while long work runs. It
// draws the engine's progress reports as one line on a stream (standard error
// in ldg), redrawn in place with a carriage return whenever the whole percent
// changes, and ends the line when it goes. While it lives it is the engine's
// host hooks (EngineState::hooks); the hooks before it come back when it goes.
// A bar that is not shown (say, standard error is no terminal) draws nothing.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <string_view>

#include "engine/host_hooks.hpp"

namespace ldg::cli {

class ProgressBar : public HostHooks {
 public:
  ProgressBar(std::ostream& out, bool shown);
  ~ProgressBar() override;
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  void Progress(std::string_view work, int64_t done, int64_t total) override;

  // The line as drawn for done of total: "Import [#####.....]  50% 5/10".
  static std::string Line(std::string_view work, int64_t done, int64_t total);

 private:
  std::ostream& out_;
  bool shown_;
  bool drawn_ = false;
  int64_t last_percent_ = -1;
  HostHooks* previous_;
};

}  // namespace ldg::cli
