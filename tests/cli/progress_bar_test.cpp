// ProgressBar: the engine's progress reports drawn as one line on a stream.
#include "cli/progress_bar.hpp"

#include <gtest/gtest.h>

#include <sstream>

#include "engine/engine_state.hpp"

namespace ldg::cli {
namespace {

TEST(ProgressBar, LineShowsTheShareDoneAsBarPercentAndCounts) {
  EXPECT_EQ(ProgressBar::Line("Import", 0, 10), "Import [..............................]   0% 0/10");
  EXPECT_EQ(ProgressBar::Line("Import", 1, 3), "Import [#########.....................]  33% 1/3");
  EXPECT_EQ(ProgressBar::Line("Import", 10, 10), "Import [##############################] 100% 10/10");
  EXPECT_EQ(ProgressBar::Line("Import", 3, 0), "Import [..............................]   0% 3/0");
}

TEST(ProgressBar, RedrawsOnlyWhenTheWholePercentChangesAndEndsTheLine) {
  std::ostringstream out;
  {
    ProgressBar bar(out, true);
    for (int64_t done = 0; done <= 400; ++done) State().Hooks().Progress("Import", done, 400);
  }
  const std::string text = out.str();
  size_t redraws = 0;
  for (char c : text) redraws += c == '\r';
  EXPECT_EQ(redraws, 101u);
  EXPECT_EQ(text.substr(text.size() - 5), "/400\n");
}

TEST(ProgressBar, IsTheHostHooksWhileItLives) {
  HostHooks* before = State().hooks;
  std::ostringstream out;
  {
    ProgressBar bar(out, false);
    EXPECT_EQ(State().hooks, &bar);
  }
  EXPECT_EQ(State().hooks, before);
}

TEST(ProgressBar, ABarNotShownDrawsNothing) {
  std::ostringstream out;
  {
    ProgressBar bar(out, false);
    State().Hooks().Progress("Import", 1, 2);
  }
  EXPECT_EQ(out.str(), "");
}

}  // namespace
}  // namespace ldg::cli
