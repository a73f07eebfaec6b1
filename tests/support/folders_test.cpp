#include "support/folders.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <vector>

#include "support/settings_store.hpp"
#include "tests/support/environment_fixture.hpp"

namespace ldg {
namespace {

namespace fs = std::filesystem;

class Folders : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const char* name : {"VELMORA_DEBUG", "USERPROFILE", "HOMEDRVE", "HOMEPATH", "TEMP", "TMP",
                             "HOMEDRIVE", "HOME", "TMPDIR"}) {
      environment_.Unset(name);
    }
    environment_.Set("XDG_CONFIG_HOME", (scratch_.Path() / "config").string());
  }
  void TearDown() override { SetRandomDrawForTesting(nullptr); }

  // Draws the given numbers in turn, then repeats the last.
  void DrawInTurn(std::vector<int32_t> numbers) {
    auto next = std::make_shared<size_t>(0);
    SetRandomDrawForTesting([numbers, next] {
      size_t index = std::min(*next, numbers.size() - 1);
      ++*next;
      return numbers[index];
    });
  }

  std::string Folder(const std::string& relative) { return scratch_.MakeFolder(relative); }

  testing::ScratchFolder scratch_;
  testing::ScopedEnvironment environment_;
};

TEST_F(Folders, VelmoraDebugComesFirst) {
  environment_.Set("VELMORA_DEBUG", Folder("debug"));
  environment_.Set("USERPROFILE", Folder("profile"));
  Folder("profile/Documents");
  EXPECT_EQ(WritableFolder(), Folder("debug"));
}

TEST_F(Folders, WithVelmoraDebugSetAllTemporaryFilesGoThere) {
  std::string debug = Folder("debug");
  environment_.Set("VELMORA_DEBUG", debug);
  environment_.Set("TEMP", Folder("temp"));
  EXPECT_EQ(TempFolder(), debug + "/_temp_");
  EXPECT_TRUE(fs::is_directory(debug + "/_temp_"));
  std::string path = TempFilePath("csv");
  EXPECT_EQ(fs::path(path).parent_path().string(), debug + "/_temp_");
  EXPECT_TRUE(std::regex_match(fs::path(path).filename().string(), std::regex(R"(_\$_\$_\d{6}\.csv)")));
}

TEST_F(Folders, AVelmoraDebugFolderThatIsMissingIsPassedOver) {
  environment_.Set("VELMORA_DEBUG", (scratch_.Path() / "missing").string());
  environment_.Set("TEMP", Folder("temp"));
  EXPECT_EQ(WritableFolder(), Folder("temp"));
}

TEST_F(Folders, AProfileWithDocumentsGivesDocuments) {
  environment_.Set("USERPROFILE", Folder("profile"));
  Folder("profile/Documents");
  Folder("profile/Eigene Dateien");
  EXPECT_EQ(WritableFolder(), Folder("profile") + "/Documents");
}

TEST_F(Folders, AProfileWithoutDocumentsFallsThroughToEigeneDateien) {
  environment_.Set("USERPROFILE", Folder("profile"));
  Folder("profile/Eigene Dateien");
  environment_.Set("TEMP", Folder("temp"));
  EXPECT_EQ(WritableFolder(), Folder("profile") + "/Eigene Dateien");
}

TEST_F(Folders, AProfileWithNeitherFolderIsPassedOver) {
  environment_.Set("USERPROFILE", Folder("profile"));
  environment_.Set("TEMP", Folder("temp"));
  EXPECT_EQ(WritableFolder(), Folder("temp"));
}

TEST_F(Folders, HomedrveAndHomepathRunTogetherBeforeDocuments) {
  environment_.Set("HOMEDRVE", scratch_.String());
  environment_.Set("HOMEPATH", "/home");
  Folder("home/Documents");
  EXPECT_EQ(WritableFolder(), scratch_.String() + "/home/Documents");
}

TEST_F(Folders, HomedrveAndHomepathFallThroughToEigeneDateien) {
  environment_.Set("HOMEDRVE", scratch_.String());
  environment_.Set("HOMEPATH", "/home");
  Folder("home/Eigene Dateien");
  EXPECT_EQ(WritableFolder(), scratch_.String() + "/home/Eigene Dateien");
}

// Deliberate: the variable read with HOMEPATH is "HOMEDRVE", not "HOMEDRIVE".
TEST_F(Folders, HomedriveIsNotReadWithHomepath) {
  environment_.Set("HOMEDRIVE", scratch_.String() + "/drive");
  environment_.Set("HOMEPATH", "/home");
  Folder("drive/home/Documents");
  environment_.Set("TEMP", Folder("temp"));
  EXPECT_EQ(WritableFolder(), Folder("temp"));
}

TEST_F(Folders, TempComesBeforeTmp) {
  environment_.Set("TEMP", Folder("temp"));
  environment_.Set("TMP", Folder("tmp"));
  EXPECT_EQ(WritableFolder(), Folder("temp"));
}

TEST_F(Folders, TmpComesBeforeHomedrive) {
  environment_.Set("TMP", Folder("tmp"));
  environment_.Set("HOMEDRIVE", Folder("drive"));
  EXPECT_EQ(WritableFolder(), Folder("tmp"));
}

TEST_F(Folders, HomedriveComesBeforeHome) {
  environment_.Set("HOMEDRIVE", Folder("drive"));
  environment_.Set("HOME", Folder("home"));
  Folder("home/Documents");
  EXPECT_EQ(WritableFolder(), Folder("drive"));
}

TEST_F(Folders, HomeDocumentsComesBeforeHome) {
  environment_.Set("HOME", Folder("home"));
  Folder("home/Documents");
  EXPECT_EQ(WritableFolder(), Folder("home") + "/Documents");
}

TEST_F(Folders, HomeWithoutDocumentsIsUsedItself) {
  environment_.Set("HOME", Folder("home"));
  environment_.Set("TMPDIR", Folder("tmpdir"));
  EXPECT_EQ(WritableFolder(), Folder("home"));
}

TEST_F(Folders, TmpdirComesLast) {
  environment_.Set("HOME", (scratch_.Path() / "missing").string());
  environment_.Set("TMPDIR", Folder("tmpdir"));
  EXPECT_EQ(WritableFolder(), Folder("tmpdir"));
}

TEST_F(Folders, WithNoFolderAtAllTheAnswerIsSlashTmp) { EXPECT_EQ(WritableFolder(), "/tmp"); }

TEST_F(Folders, AnEmptyVariableIsPassedOver) {
  environment_.Set("VELMORA_DEBUG", "");
  environment_.Set("USERPROFILE", "");
  environment_.Set("TEMP", Folder("temp"));
  EXPECT_EQ(WritableFolder(), Folder("temp"));
}

TEST_F(Folders, TheSearchRemovesLocalDirFromTheFourSections) {
  SettingsStore store;
  for (const char* section : {"Config", "Options", "Interface\\Config", "Interface\\Options"}) {
    store.SaveSetting("Velmora\\LDG6", section, "LocalDir", "String>/old/place");
    store.SaveSetting("Velmora\\LDG6", section, "Other", "String>kept");
  }
  store.SaveSetting("Velmora\\LDG6", "Interface\\Other", "LocalDir", "String>kept");
  environment_.Set("TEMP", Folder("temp"));
  WritableFolder();
  for (const char* section : {"Config", "Options", "Interface\\Config", "Interface\\Options"}) {
    EXPECT_EQ(store.Read("Velmora\\LDG6", section, "LocalDir"), std::nullopt) << section;
    EXPECT_EQ(store.Read("Velmora\\LDG6", section, "Other"), "String>kept") << section;
  }
  EXPECT_EQ(store.Read("Velmora\\LDG6", "Interface\\Other", "LocalDir"), "String>kept");
}

TEST_F(Folders, TheSearchRunsAgainOnEveryCall) {
  environment_.Set("TEMP", Folder("temp"));
  EXPECT_EQ(WritableFolder(), Folder("temp"));
  environment_.Set("VELMORA_DEBUG", Folder("debug"));
  EXPECT_EQ(WritableFolder(), Folder("debug"));
}

TEST_F(Folders, TheTemporaryFolderIsCreatedBelowTheWritableFolder) {
  environment_.Set("TEMP", Folder("temp"));
  EXPECT_EQ(TempFolder(), Folder("temp") + "/_temp_");
  EXPECT_TRUE(fs::is_directory(Folder("temp") + "/_temp_"));
}

TEST_F(Folders, WhenTheTemporaryFolderCannotBeMadeTheWritableFolderIsUsed) {
  environment_.Set("TEMP", Folder("temp"));
  std::ofstream(Folder("temp") + "/_temp_") << "a file in the way";
  EXPECT_EQ(TempFolder(), Folder("temp"));
}

TEST_F(Folders, AUniqueNameIsTheMarkAndSixDigits) {
  SetRandomDrawForTesting([] { return 42; });
  EXPECT_EQ(UniqueName(), "_$_$_000042");
  SetRandomDrawForTesting([] { return 0; });
  EXPECT_EQ(UniqueName(), "_$_$_000000");
  SetRandomDrawForTesting([] { return 999999; });
  EXPECT_EQ(UniqueName(), "_$_$_999999");
}

TEST_F(Folders, TheDefaultRandomSourceGivesSixDigits) {
  std::regex form(R"(_\$_\$_\d{6})");
  for (int i = 0; i < 200; ++i) EXPECT_TRUE(std::regex_match(UniqueName(), form));
}

TEST_F(Folders, ATemporaryFilePathIsDrawnAgainWhileTheFileExists) {
  environment_.Set("TEMP", Folder("temp"));
  std::string temp = TempFolder();
  std::ofstream(temp + "/_$_$_000001.csv") << "taken";
  DrawInTurn({1, 1, 1, 2});  // the folder probes may take a draw or two as well
  EXPECT_EQ(TempFilePath("csv"), temp + "/_$_$_000002.csv");
}

TEST_F(Folders, ATemporaryFilePathWithoutExtensionHasNoDot) {
  environment_.Set("TEMP", Folder("temp"));
  SetRandomDrawForTesting([] { return 7; });
  EXPECT_EQ(TempFilePath(), Folder("temp") + "/_temp_/_$_$_000007");
}

TEST_F(Folders, AnExtensionWithItsDotIsNotDoubled) {
  environment_.Set("TEMP", Folder("temp"));
  SetRandomDrawForTesting([] { return 7; });
  EXPECT_EQ(TempFilePath(".mdb"), Folder("temp") + "/_temp_/_$_$_000007.mdb");
}

TEST_F(Folders, ATemporaryFilePathCreatesNoFile) {
  environment_.Set("TEMP", Folder("temp"));
  EXPECT_FALSE(fs::exists(TempFilePath("txt")));
}

}  // namespace
}  // namespace ldg
