#include <gtest/gtest.h>

#include <string>

#include "tests/cli/cli_runner.hpp"
#include "tests/engine/engine_file_fixture.hpp"

namespace ldg {
namespace {

class OptionsCommandTest : public testing::EngineFileTest {};

TEST_F(OptionsCommandTest, ListsEveryOptionWithItsValue) {
  const std::string path = MakeYearFile();
  const std::string out = testing::RunLdg({"options", path, "--format", "csv"});
  EXPECT_EQ(out.rfind("Option,Value\r\n", 0), 0u) << out;
  EXPECT_NE(out.find("Decimals,2\r\n"), std::string::npos) << out;
  EXPECT_NE(out.find("BelegIDAuto,True\r\n"), std::string::npos) << out;
}

TEST_F(OptionsCommandTest, ShowsOneOptionWithItsDefault) {
  const std::string path = MakeYearFile();
  EXPECT_EQ(testing::RunLdg({"options", path, "BaseCurrencyCode"}), "CHF\n");
}

TEST_F(OptionsCommandTest, SetsAnOptionAsText) {
  const std::string path = MakeYearFile();
  EXPECT_EQ(testing::RunLdg({"options", path, "ClientName", "Muster AG"}), "Muster AG\n");
  EXPECT_EQ(testing::RunLdg({"options", path, "clientname"}), "Muster AG\n");
  EXPECT_EQ(CStr(ValueOf(path, "SELECT SettingSpace FROM Settings WHERE SettingSection = 'OptionClientName';",
                         "SettingSpace")),
            "Muster AG");
}

TEST_F(OptionsCommandTest, AnUnknownOptionIsItsOwnRow) {
  const std::string path = MakeYearFile();
  EXPECT_EQ(testing::RunLdg({"options", path, "Farbe"}), "\n");
  EXPECT_EQ(testing::RunLdg({"options", path, "Farbe", "blau"}), "blau\n");
}

}  // namespace
}  // namespace ldg
