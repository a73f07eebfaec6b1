// ldg demo, run through the command line as main builds it.
#include <gtest/gtest.h>
#include <filesystem>
#include <string>

#include "tests/cli/cli_runner.hpp"
#include "tests/cli/installed_template_fixture.hpp"

namespace ldg::cli {
namespace {

class DemoCommandTest : public InstalledTemplateTest {};

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

}  // namespace
}  // namespace ldg::cli
