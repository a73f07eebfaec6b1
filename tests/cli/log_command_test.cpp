#include <gtest/gtest.h>

#include <string>

#include "engine/schema_upkeep.hpp"
#include "tests/cli/cli_runner.hpp"
#include "tests/engine/engine_file_fixture.hpp"

namespace ldg {
namespace {

class LogCommandTest : public testing::EngineFileTest {
 protected:
  std::string MakeLoggedFile() {
    return MakeYearFile("book.qdb6f", 2024, [](store::Database& file) {
      UpdateDbLogTable(file);
      file.Execute("INSERT INTO DbLog (TimeOpen, COMPUTERNAME, USERNAME) VALUES (#1/2/2024#, 'alt', 'beat');",
                   store::dbFailOnError);
      file.Execute(
          "INSERT INTO DbLog (TimeOpen, TimeClose, COMPUTERNAME, USERNAME) VALUES (#1/1/2024#, #1/1/2024#, "
          "'alt', 'carla');",
          store::dbFailOnError);
    });
  }
};

TEST_F(LogCommandTest, ListsTheRowsWithTheCommandsOwnLast) {
  const std::string path = MakeLoggedFile();
  const std::string out = testing::RunLdg({"log", path, "--format", "csv"});
  EXPECT_EQ(out.rfind("User,Computer,[Me],Time in,Time out,Comment,ID\r\n", 0), 0u) << out;
  const auto carla = out.find("carla,alt, ,01.01.2024,01.01.2024,,");
  const auto beat = out.find("beat,alt, ,02.01.2024,,,");
  const auto me = out.find(",*,");
  ASSERT_NE(carla, std::string::npos) << out;
  ASSERT_NE(beat, std::string::npos) << out;
  ASSERT_NE(me, std::string::npos) << out;
  EXPECT_LT(carla, beat);
  EXPECT_LT(beat, me);
}

TEST_F(LogCommandTest, TheFlagsChooseTheRows) {
  const std::string path = MakeLoggedFile();
  const std::string out =
      testing::RunLdg({"log", path, "--format", "csv", "--without-offline", "--without-me"});
  EXPECT_NE(out.find("beat"), std::string::npos) << out;
  EXPECT_EQ(out.find("carla"), std::string::npos) << out;
  EXPECT_EQ(out.find(",*,"), std::string::npos) << out;
}

TEST_F(LogCommandTest, DeleteOfAllRowsKeepsTheCommandsOwn) {
  const std::string path = MakeLoggedFile();
  const std::string out = testing::RunLdg({"log", path, "--format", "csv", "--delete", "all"});
  EXPECT_EQ(out.find("beat"), std::string::npos) << out;
  EXPECT_EQ(out.find("carla"), std::string::npos) << out;
  EXPECT_NE(out.find(",*,"), std::string::npos) << out;
  EXPECT_EQ(CountOf(path, "DbLog"), 1);
}

TEST_F(LogCommandTest, DeleteOfOfflineRowsKeepsTheOnlineOnes) {
  const std::string path = MakeLoggedFile();
  testing::RunLdg({"log", path, "--delete", "offline"});
  EXPECT_EQ(CountOf(path, "DbLog WHERE USERNAME = 'carla'"), 0);
  EXPECT_EQ(CountOf(path, "DbLog WHERE USERNAME = 'beat'"), 1);
}

TEST_F(LogCommandTest, AnUnknownDeleteScopeIsRefused) {
  const std::string path = MakeLoggedFile();
  const Error error = ErrorOf([&] { testing::RunLdg({"log", path, "--delete", "some"}); });
  EXPECT_EQ(error.Number(), 5);
  EXPECT_EQ(error.Description(), "--delete takes all, offline, online or older");
}

}  // namespace
}  // namespace ldg
