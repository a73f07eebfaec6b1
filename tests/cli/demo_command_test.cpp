// ldg demo, run through the command line as main builds it.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <string>

#include "tests/cli/cli_runner.hpp"
#include "tests/engine/created_year_file_fixture.hpp"

namespace ldg::cli {
namespace {

class DemoCommandTest : public year_files_testing::CreatedYearFileTest {
 protected:
  void SetUp() override {
    CreatedYearFileTest::SetUp();
    std::filesystem::create_directories(folder_ / "config");
    ::setenv("XDG_CONFIG_HOME", (folder_ / "config").c_str(), 1);
    ::setenv("LDG_APP_PATH", year_files_testing::TemplateFolder().c_str(), 1);
  }
  void TearDown() override {
    ::unsetenv("LDG_APP_PATH");
    CreatedYearFileTest::TearDown();
  }
};

TEST_F(DemoCommandTest, MakesTheDemoYearFileAndShowsItsYearAndClient) {
  const std::string demo = PathOf("demo");
  const std::string out = testing::RunLdg({"demo", demo});
  const std::string file = demo + "/muster-treuhand-2026.qdb6f";
  EXPECT_TRUE(std::filesystem::exists(file));
  EXPECT_NE(out.find("Demo company's year file: " + file + "\n"), std::string::npos) << out;
  EXPECT_NE(out.find("Begin                 01.01.2026\n"), std::string::npos) << out;
  EXPECT_NE(out.find("Status                1 Aktiv\n"), std::string::npos) << out;
  EXPECT_NE(out.find("ClientName            Muster Treuhand AG\n"), std::string::npos) << out;
}

TEST_F(DemoCommandTest, RunningTwiceStartsTheDemoAfresh) {
  const std::string demo = PathOf("demo");
  testing::RunLdg({"demo", demo});
  const std::string out = testing::RunLdg({"demo", demo});
  EXPECT_NE(out.find("Year                  1\n"), std::string::npos) << out;
}

}  // namespace
}  // namespace ldg::cli
