#include "support/settings_store.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "support/error.hpp"
#include "tests/error_capture.hpp"
#include "support/file_system.hpp"
#include "tests/support/environment_fixture.hpp"

namespace ldg {
namespace {

namespace fs = std::filesystem;

class SettingsStoreTest : public ::testing::Test {
 protected:
  void SetUp() override {
    environment_.Set("XDG_CONFIG_HOME", (scratch_.Path() / "config").string());
    environment_.Set("HOME", (scratch_.Path() / "home").string());
  }
  testing::ScratchFolder scratch_;
  testing::ScopedEnvironment environment_;
  SettingsStore store_{scratch_.Path() / "store"};
};

TEST_F(SettingsStoreTest, TheUsersStoreLivesBelowXdgConfigHome) {
  EXPECT_EQ(SettingsStore().FilePath(), scratch_.Path() / "config" / "ldg" / "settings");
}

TEST_F(SettingsStoreTest, WithoutXdgConfigHomeTheStoreLivesBelowHomeConfig) {
  environment_.Unset("XDG_CONFIG_HOME");
  EXPECT_EQ(SettingsStore().FilePath(), scratch_.Path() / "home" / ".config" / "ldg" / "settings");
}

TEST_F(SettingsStoreTest, WithoutHomeEitherTheStoreIsNeverRelative) {
  environment_.Unset("XDG_CONFIG_HOME");
  environment_.Unset("HOME");
  EXPECT_TRUE(SettingsStore().FilePath().is_absolute());
}

TEST_F(SettingsStoreTest, AnEmptyXdgConfigHomeCountsAsUnset) {
  environment_.Set("XDG_CONFIG_HOME", "");
  EXPECT_EQ(SettingsStore().FilePath(), scratch_.Path() / "home" / ".config" / "ldg" / "settings");
}

TEST_F(SettingsStoreTest, TheStoreCanBePointedAtAFolder) {
  EXPECT_EQ(store_.FilePath(), scratch_.Path() / "store" / "settings");
}

TEST_F(SettingsStoreTest, AMissingValueGivesTheDefault) {
  EXPECT_EQ(store_.GetSetting("App", "Section", "Key", "fallback"), "fallback");
  EXPECT_EQ(store_.GetSetting("App", "Section", "Key"), "");
}

TEST_F(SettingsStoreTest, ReadingCreatesNoFile) {
  store_.GetSetting("App", "Section", "Key");
  EXPECT_FALSE(fs::exists(store_.FilePath()));
}

TEST_F(SettingsStoreTest, ASavedValueReadsBack) {
  store_.SaveSetting("Velmora\\LDG6", "Interface\\Options", "LocalDir", "/home/u/ldg");
  EXPECT_EQ(store_.GetSetting("Velmora\\LDG6", "Interface\\Options", "LocalDir"), "/home/u/ldg");
}

TEST_F(SettingsStoreTest, SavingAgainReplacesTheValue) {
  store_.SaveSetting("App", "Section", "Key", "one");
  store_.SaveSetting("App", "Section", "Key", "two");
  EXPECT_EQ(store_.GetSetting("App", "Section", "Key"), "two");
  EXPECT_EQ(store_.GetAllSettings("App", "Section").size(), 1u);
}

TEST_F(SettingsStoreTest, AnotherStoreOnTheSameFolderSeesTheValue) {
  store_.SaveSetting("App", "Section", "Key", "shared");
  SettingsStore other(scratch_.Path() / "store");
  EXPECT_EQ(other.GetSetting("App", "Section", "Key"), "shared");
}

TEST_F(SettingsStoreTest, NamesIgnoreCase) {
  store_.SaveSetting("Velmora\\LDG6", "Workgroup", "SystemDB", "x.mdw");
  EXPECT_EQ(store_.GetSetting("VELMORA\\ldg6", "workgroup", "SYSTEMDB"), "x.mdw");
}

TEST_F(SettingsStoreTest, NamesWithUmlautsIgnoreCase) {
  store_.SaveSetting("Äpfel", "Größe", "Ölwert", "1");
  EXPECT_EQ(store_.GetSetting("äPFEL", "GRÖßE", "ölwert"), "1");
}

TEST_F(SettingsStoreTest, ANameKeepsTheCaseItWasFirstWrittenWith) {
  store_.SaveSetting("App", "Section", "LocalDir", "a");
  store_.SaveSetting("APP", "SECTION", "LOCALDIR", "b");
  SettingsPairs all = store_.GetAllSettings("app", "section");
  ASSERT_EQ(all.size(), 1u);
  EXPECT_EQ(all[0].first, "LocalDir");
  EXPECT_EQ(all[0].second, "b");
}

TEST_F(SettingsStoreTest, AValueWithEqualsSignsSurvives) {
  store_.SaveSetting("App", "Section", "Key=1", "a=b==c");
  EXPECT_EQ(store_.GetSetting("App", "Section", "Key=1"), "a=b==c");
}

TEST_F(SettingsStoreTest, AValueWithNewlinesSurvives) {
  store_.SaveSetting("App", "Section", "Key", "line 1\nline 2\r\nline 3\n");
  EXPECT_EQ(store_.GetSetting("App", "Section", "Key"), "line 1\nline 2\r\nline 3\n");
}

TEST_F(SettingsStoreTest, AValueWithUmlautsSurvives) {
  store_.SaveSetting("App", "Section", "Key", "Müller & Söhne, Zürich: ÄÖÜ äöü ß €");
  EXPECT_EQ(store_.GetSetting("App", "Section", "Key"), "Müller & Söhne, Zürich: ÄÖÜ äöü ß €");
}

TEST_F(SettingsStoreTest, AValueWithTheFormatsOwnCharactersSurvives) {
  std::string value = "%41\ttab\t#not a comment [x] \\path\\ %";
  store_.SaveSetting("App", "Section", "Key", value);
  EXPECT_EQ(store_.GetSetting("App", "Section", "Key"), value);
}

TEST_F(SettingsStoreTest, NamesWithTheFormatsOwnCharactersSurvive) {
  store_.SaveSetting("#App\t1", "Sec\ntion%", "K\te#y", "v");
  EXPECT_EQ(store_.GetSetting("#App\t1", "Sec\ntion%", "K\te#y"), "v");
  EXPECT_EQ(store_.GetAllSettings("#App\t1", "Sec\ntion%")[0].first, "K\te#y");
}

TEST_F(SettingsStoreTest, EmptyValueAndLeadingOrTrailingBlanksSurvive) {
  store_.SaveSetting("App", "Section", "Empty", "");
  store_.SaveSetting("App", "Section", "Blanks", "  x  ");
  EXPECT_EQ(store_.GetSetting("App", "Section", "Empty", "default"), "");
  EXPECT_EQ(store_.GetSetting("App", "Section", "Blanks"), "  x  ");
}

TEST_F(SettingsStoreTest, ReadDistinguishesAnEmptyValueFromAMissingOne) {
  store_.SaveSetting("App", "Section", "Empty", "");
  EXPECT_EQ(store_.Read("App", "Section", "Empty"), "");
  EXPECT_EQ(store_.Read("App", "Section", "Missing"), std::nullopt);
}

TEST_F(SettingsStoreTest, GetAllSettingsGivesASectionInTheOrderWritten) {
  store_.SaveSetting("App", "Section", "b", "2");
  store_.SaveSetting("App", "Section", "a", "1");
  store_.SaveSetting("App", "Other", "c", "3");
  store_.SaveSetting("App", "Section", "c", "4");
  SettingsPairs expected = {{"b", "2"}, {"a", "1"}, {"c", "4"}};
  EXPECT_EQ(store_.GetAllSettings("App", "Section"), expected);
}

TEST_F(SettingsStoreTest, GetAllSettingsOfAMissingSectionIsEmpty) {
  EXPECT_TRUE(store_.GetAllSettings("App", "Missing").empty());
}

TEST_F(SettingsStoreTest, SectionsOfDifferentApplicationsAreApart) {
  store_.SaveSetting("App1", "Section", "Key", "1");
  store_.SaveSetting("App2", "Section", "Key", "2");
  EXPECT_EQ(store_.GetSetting("App1", "Section", "Key"), "1");
  EXPECT_EQ(store_.GetSetting("App2", "Section", "Key"), "2");
}

TEST_F(SettingsStoreTest, DeleteSettingRemovesOneKey) {
  store_.SaveSetting("App", "Section", "a", "1");
  store_.SaveSetting("App", "Section", "b", "2");
  store_.DeleteSetting("App", "section", "A");
  SettingsPairs expected = {{"b", "2"}};
  EXPECT_EQ(store_.GetAllSettings("App", "Section"), expected);
}

TEST_F(SettingsStoreTest, DeleteSettingWithoutAKeyRemovesTheSection) {
  store_.SaveSetting("App", "Section", "a", "1");
  store_.SaveSetting("App", "Other", "b", "2");
  store_.DeleteSetting("App", "Section");
  EXPECT_FALSE(store_.SectionExists("App", "Section"));
  EXPECT_EQ(store_.GetSetting("App", "Other", "b"), "2");
}

TEST_F(SettingsStoreTest, DeletingAMissingKeyRaisesInvalidCall) {
  store_.SaveSetting("App", "Section", "a", "1");
  EXPECT_EQ(ErrorNumberOf([&] { store_.DeleteSetting("App", "Section", "missing"); }), 5);
  EXPECT_EQ(ErrorNumberOf([&] { store_.DeleteSetting("App", "Missing", "a"); }), 5);
}

TEST_F(SettingsStoreTest, DeletingAMissingSectionRaisesInvalidCall) {
  EXPECT_EQ(ErrorNumberOf([&] { store_.DeleteSetting("App", "Missing"); }), 5);
}

TEST_F(SettingsStoreTest, ASectionCanExistEmpty) {
  store_.CreateSection("App", "Empty");
  EXPECT_TRUE(store_.SectionExists("app", "EMPTY"));
  EXPECT_TRUE(store_.GetAllSettings("App", "Empty").empty());
}

TEST_F(SettingsStoreTest, DeletingTheLastKeyLeavesTheSection) {
  store_.SaveSetting("App", "Section", "a", "1");
  store_.DeleteSetting("App", "Section", "a");
  EXPECT_TRUE(store_.SectionExists("App", "Section"));
}

TEST_F(SettingsStoreTest, SectionNamesListsTheSectionsOfOneApplication) {
  store_.CreateSection("App", "b");
  store_.SaveSetting("App", "a", "k", "v");
  store_.CreateSection("Other", "c");
  std::vector<std::string> expected = {"b", "a"};
  EXPECT_EQ(store_.SectionNames("APP"), expected);
}

TEST_F(SettingsStoreTest, AWriteLeavesNoTemporaryFileBehind) {
  store_.SaveSetting("App", "Section", "Key", "v");
  std::vector<fs::path> files;
  for (const auto& entry : fs::directory_iterator(scratch_.Path() / "store")) files.push_back(entry.path());
  ASSERT_EQ(files.size(), 1u);
  EXPECT_EQ(files[0], store_.FilePath());
}

TEST_F(SettingsStoreTest, TheFileHoldsOneLinePerSectionAndKey) {
  store_.SaveSetting("Velmora\\LDG6", "Interface\\Options", "LocalDir", "a=b\nc");
  EXPECT_EQ(ReadTextFile(store_.FilePath().string()),
            "# ldg per-user settings: application, section, key, value\n"
            "Velmora\\LDG6\tInterface\\Options\n"
            "Velmora\\LDG6\tInterface\\Options\tLocalDir\ta=b%0Ac\n");
}

TEST_F(SettingsStoreTest, AFileEditedWithCarriageReturnsReadsAsWritten) {
  fs::create_directories(scratch_.Path() / "store");
  std::ofstream(store_.FilePath(), std::ios::binary) << "# comment\r\nApp\tSection\tKey\tvalue%0D\r\n";
  EXPECT_EQ(store_.GetSetting("App", "Section", "Key"), "value\r");
}

TEST_F(SettingsStoreTest, ALineWithTheWrongNumberOfFieldsIsPassedOver) {
  fs::create_directories(scratch_.Path() / "store");
  std::ofstream(store_.FilePath(), std::ios::binary) << "App\tSection\tKey\nApp\tSection\tGood\tyes\n";
  SettingsPairs expected = {{"Good", "yes"}};
  EXPECT_EQ(store_.GetAllSettings("App", "Section"), expected);
}

TEST_F(SettingsStoreTest, AStoreThatCannotBeWrittenRaisesAFileError) {
  std::ofstream(scratch_.Path() / "blocker") << "a file where the folder should be";
  SettingsStore blocked(scratch_.Path() / "blocker");
  EXPECT_EQ(ErrorNumberOf([&] { blocked.SaveSetting("App", "Section", "Key", "v"); }), 75);
}

}  // namespace
}  // namespace ldg
