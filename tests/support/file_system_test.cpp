#include "support/file_system.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "support/folders.hpp"
#include "tests/support/environment_fixture.hpp"

namespace ldg {
namespace {

namespace fs = std::filesystem;

void WriteFile(const fs::path& path, const std::string& content) {
  std::ofstream file(path, std::ios::binary);
  file << content;
}

class FileSystem : public ::testing::Test {
 protected:
  void TearDown() override { SetRandomDrawForTesting(nullptr); }
  testing::ScratchFolder scratch_;
};

TEST_F(FileSystem, FileExistsIsTrueForAFile) {
  WriteFile(scratch_.Path() / "a.txt", "x");
  EXPECT_TRUE(FileExists((scratch_.Path() / "a.txt").string()));
}

TEST_F(FileSystem, FileExistsIsFalseForAMissingFile) {
  EXPECT_FALSE(FileExists((scratch_.Path() / "missing.txt").string()));
}

TEST_F(FileSystem, FileExistsIsFalseForAFolder) { EXPECT_FALSE(FileExists(scratch_.String())); }

TEST_F(FileSystem, FileExistsIsFalseForAnEmptyPath) { EXPECT_FALSE(FileExists("")); }

TEST_F(FileSystem, FileExistsWithTestWriteLeavesTheContentAlone) {
  fs::path file = scratch_.Path() / "a.txt";
  WriteFile(file, "content");
  EXPECT_TRUE(FileExists(file.string(), true));
  EXPECT_EQ(ReadTextFile(file.string()), "content");
}

TEST_F(FileSystem, FileExistsWithTestWriteOnAReadOnlyFileStaysTrue) {
  fs::path file = scratch_.Path() / "ro.txt";
  WriteFile(file, "content");
  fs::permissions(file, fs::perms::owner_read);
  EXPECT_TRUE(FileExists(file.string(), true));
}

TEST_F(FileSystem, FileExistsWithTestWriteOnAMissingFileCreatesNothing) {
  fs::path file = scratch_.Path() / "missing.txt";
  EXPECT_FALSE(FileExists(file.string(), true));
  EXPECT_FALSE(fs::exists(file));
}

TEST_F(FileSystem, FolderExistsIsTrueForAFolder) { EXPECT_TRUE(FolderExists(scratch_.String())); }

TEST_F(FileSystem, FolderExistsIsFalseForAFile) {
  WriteFile(scratch_.Path() / "a.txt", "x");
  EXPECT_FALSE(FolderExists((scratch_.Path() / "a.txt").string()));
}

TEST_F(FileSystem, FolderExistsIsFalseForAMissingFolder) {
  EXPECT_FALSE(FolderExists((scratch_.Path() / "missing").string()));
}

// Deliberate: the probe runs when test_write is false.
TEST_F(FileSystem, FolderExistsWithoutTestWriteProbesWithAUniqueFileAndRemovesIt) {
  SetRandomDrawForTesting([] { return 4711; });
  EXPECT_TRUE(FolderExists(scratch_.String(), false));
  EXPECT_EQ(LastFolderProbeForTesting(), (scratch_.Path() / "_$_$_004711").string());
  EXPECT_TRUE(fs::is_empty(scratch_.Path()));
}

TEST_F(FileSystem, FolderExistsWithTestWriteRunsNoProbe) {
  SetRandomDrawForTesting([] { return 12; });
  EXPECT_TRUE(FolderExists(scratch_.String(), false));
  SetRandomDrawForTesting([] { return 34; });
  EXPECT_TRUE(FolderExists(scratch_.String(), true));
  EXPECT_EQ(LastFolderProbeForTesting(), (scratch_.Path() / "_$_$_000012").string());
}

TEST_F(FileSystem, FolderExistsStaysTrueWhenTheProbeCannotBeWritten) {
  // A folder in the probe's place makes the write fail, for any user.
  SetRandomDrawForTesting([] { return 4711; });
  std::string blocker = scratch_.MakeFolder("_$_$_004711");
  EXPECT_TRUE(FolderExists(scratch_.String(), false));
  EXPECT_TRUE(fs::is_directory(blocker));
}

TEST_F(FileSystem, FolderExistsOfAReadOnlyFolderStaysTrue) {
  std::string folder = scratch_.MakeFolder("ro");
  fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec);
  EXPECT_TRUE(FolderExists(folder, false));
  fs::permissions(folder, fs::perms::owner_all);
  EXPECT_TRUE(fs::is_empty(folder));
}

TEST_F(FileSystem, DeleteFileRemovesAFile) {
  fs::path file = scratch_.Path() / "a.txt";
  WriteFile(file, "x");
  EXPECT_TRUE(DeleteFile(file.string()));
  EXPECT_FALSE(fs::exists(file));
}

TEST_F(FileSystem, DeleteFileOfAMissingFileIsFalse) {
  EXPECT_FALSE(DeleteFile((scratch_.Path() / "missing.txt").string()));
}

TEST_F(FileSystem, DeleteFileLeavesAFolderAlone) {
  std::string folder = scratch_.MakeFolder("sub");
  EXPECT_FALSE(DeleteFile(folder));
  EXPECT_TRUE(fs::is_directory(folder));
}

TEST_F(FileSystem, ReadTextFileGivesTheWholeContent) {
  fs::path file = scratch_.Path() / "a.txt";
  WriteFile(file, "line 1\nZürich\r\nline 3");
  EXPECT_EQ(ReadTextFile(file.string()), "line 1\nZürich\r\nline 3");
}

TEST_F(FileSystem, ReadTextFileOfAnEmptyFileIsEmpty) {
  fs::path file = scratch_.Path() / "empty.txt";
  WriteFile(file, "");
  EXPECT_EQ(ReadTextFile(file.string()), "");
}

TEST_F(FileSystem, ReadTextFileOfAMissingFileGivesNothing) {
  EXPECT_EQ(ReadTextFile((scratch_.Path() / "missing.txt").string()), std::nullopt);
}

}  // namespace
}  // namespace ldg
