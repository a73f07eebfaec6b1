#include "cli/progress_bar.hpp"

#include <algorithm>

#include "engine/engine_state.hpp"

namespace ldg::cli {

namespace {
constexpr int64_t kWidth = 30;

int64_t PercentOf(int64_t done, int64_t total) {
  if (total <= 0) return 0;
  return std::clamp<int64_t>(done * 100 / total, 0, 100);
}
}  // namespace

ProgressBar::ProgressBar(std::ostream& out, bool shown) : out_(out), shown_(shown), previous_(State().hooks) {
  State().hooks = this;
}

ProgressBar::~ProgressBar() {
  State().hooks = previous_;
  if (drawn_) out_ << "\n" << std::flush;
}

void ProgressBar::Progress(std::string_view work, int64_t done, int64_t total) {
  if (!shown_) return;
  const int64_t percent = PercentOf(done, total);
  if (percent == last_percent_ && done != total) return;
  last_percent_ = percent;
  out_ << "\r" << Line(work, done, total) << std::flush;
  drawn_ = true;
}

std::string ProgressBar::Line(std::string_view work, int64_t done, int64_t total) {
  const int64_t percent = PercentOf(done, total);
  const int64_t filled = percent * kWidth / 100;
  std::string percent_text = std::to_string(percent) + "%";
  percent_text.insert(0, 4 - percent_text.size(), ' ');
  return std::string(work) + " [" + std::string(filled, '#') + std::string(kWidth - filled, '.') + "] " +
         percent_text + " " + std::to_string(done) + "/" + std::to_string(total);
}

}  // namespace ldg::cli
