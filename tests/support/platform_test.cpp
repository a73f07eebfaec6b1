#include "support/platform.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "tests/support/environment_fixture.hpp"

namespace ldg {
namespace {

class RecordingPlatform : public Platform {
 public:
  void SetDataExecutionPolicy(int flags) override { calls.push_back("dep " + std::to_string(flags)); }
  bool SetSystemLocaleItem(LocaleItem item, std::string_view text) override {
    calls.push_back("item " + std::to_string(static_cast<int>(item)) + " " + std::string(text));
    return static_cast<int>(calls.size()) != fail_at;
  }
  void BroadcastSettingChange() override { calls.push_back("broadcast"); }

  std::vector<std::string> calls;
  int fail_at = 0;  // the call (counted from 1) that fails; 0 for none
};

std::string HostName() {
  char host[256] = {};
  gethostname(host, sizeof host - 1);
  return host;
}

class PlatformTest : public ::testing::Test {
 protected:
  void TearDown() override { SetPlatformForTesting(nullptr); }
  testing::ScopedEnvironment environment_;
};

TEST_F(PlatformTest, TheDefaultPlatformWritesNoSeparatorsAndBroadcastsNothing) {
  Platform& platform = CurrentPlatform();
  EXPECT_FALSE(platform.SetSystemLocaleItem(LocaleItem::kDecimalSeparator, "."));
  EXPECT_NO_THROW(WriteSystemSeparators(platform));
  EXPECT_NO_THROW(DisableDataExecutionPrevention(platform));
}

TEST_F(PlatformTest, ATestPlatformTakesThePlaceOfTheDefault) {
  RecordingPlatform recording;
  SetPlatformForTesting(&recording);
  EXPECT_EQ(&CurrentPlatform(), &recording);
  SetPlatformForTesting(nullptr);
  EXPECT_NE(&CurrentPlatform(), &recording);
}

TEST_F(PlatformTest, TheSeparatorsAreWrittenInOrderThenBroadcast) {
  RecordingPlatform recording;
  WriteSystemSeparators(recording);
  std::vector<std::string> expected = {"item 0 .", "item 1 '", "item 2 .", "item 3 '", "broadcast"};
  EXPECT_EQ(recording.calls, expected);
}

TEST_F(PlatformTest, NoBroadcastWhenTheLastWriteFails) {
  RecordingPlatform recording;
  recording.fail_at = 4;
  WriteSystemSeparators(recording);
  EXPECT_EQ(recording.calls.size(), 4u);
  EXPECT_EQ(recording.calls.back(), "item 3 '");
}

TEST_F(PlatformTest, AnEarlierFailedWriteStillBroadcasts) {
  RecordingPlatform recording;
  recording.fail_at = 1;
  WriteSystemSeparators(recording);
  EXPECT_EQ(recording.calls.back(), "broadcast");
}

TEST_F(PlatformTest, DataExecutionPreventionIsSwitchedOffWithZero) {
  RecordingPlatform recording;
  DisableDataExecutionPrevention(recording);
  std::vector<std::string> expected = {"dep 0"};
  EXPECT_EQ(recording.calls, expected);
}

TEST_F(PlatformTest, EnvironmentValueOfAnUnsetVariableIsEmpty) {
  environment_.Unset("LDG_TEST_UNSET");
  EXPECT_EQ(EnvironmentValue("LDG_TEST_UNSET"), "");
  environment_.Set("LDG_TEST_UNSET", "x y");
  EXPECT_EQ(EnvironmentValue("LDG_TEST_UNSET"), "x y");
}

TEST_F(PlatformTest, ComputerNameComesFromTheEnvironment) {
  environment_.Set("COMPUTERNAME", "BUCHHALTUNG-1");
  EXPECT_EQ(ComputerName(), "BUCHHALTUNG-1");
}

TEST_F(PlatformTest, ComputerNameFallsBackToTheHostName) {
  environment_.Unset("COMPUTERNAME");
  EXPECT_EQ(ComputerName(), HostName());
  environment_.Set("COMPUTERNAME", "");
  EXPECT_EQ(ComputerName(), HostName());
}

TEST_F(PlatformTest, UserNameComesFromTheEnvironment) {
  environment_.Set("USERNAME", "mmuster");
  EXPECT_EQ(UserName(), "mmuster");
}

TEST_F(PlatformTest, UserNameFallsBackToTheLoginName) {
  environment_.Unset("USERNAME");
  EXPECT_EQ(UserName(), SystemUserName());
  EXPECT_FALSE(UserName().empty());
}

TEST_F(PlatformTest, SystemUserNameIgnoresTheEnvironment) {
  environment_.Set("USERNAME", "somebody-else");
  EXPECT_NE(SystemUserName(), "somebody-else");
  EXPECT_FALSE(SystemUserName().empty());
}

TEST_F(PlatformTest, UserHomeFolderIsHome) {
  environment_.Set("HOME", "/home/mmuster");
  EXPECT_EQ(UserHomeFolder(), "/home/mmuster");
}

TEST_F(PlatformTest, UserHomeFolderWithoutHomeIsTheUsersHomeFolder) {
  environment_.Unset("HOME");
  std::string home = UserHomeFolder();
  EXPECT_FALSE(home.empty());
  EXPECT_EQ(home.front(), '/');
}

}  // namespace
}  // namespace ldg
