#include "support/paths.hpp"

#include <gtest/gtest.h>

#include <string>

namespace ldg {
namespace {

std::string ParentOf(std::string path) {
  ParentPath(path);
  return path;
}

TEST(Paths, FolderOfKeepsTheLastBackslash) { EXPECT_EQ(FolderOf("C:\\a\\b.mdb"), "C:\\a\\"); }

TEST(Paths, FolderOfABareNameIsEmpty) { EXPECT_EQ(FolderOf("b.mdb"), ""); }

TEST(Paths, FolderOfStopsAtADriveColon) { EXPECT_EQ(FolderOf("C:b"), "C:"); }

TEST(Paths, FolderOfTakesSlashesAsSeparators) { EXPECT_EQ(FolderOf("/home/u/b.mdb"), "/home/u/"); }

TEST(Paths, FolderOfMixedSeparatorsStopsAtTheLastOfEither) {
  EXPECT_EQ(FolderOf("C:\\a/b\\c.mdb"), "C:\\a/b\\");
  EXPECT_EQ(FolderOf("/a\\b/c.mdb"), "/a\\b/");
}

TEST(Paths, FolderOfAnEmptyOrBlankPathIsEmpty) {
  EXPECT_EQ(FolderOf(""), "");
  EXPECT_EQ(FolderOf("   "), "");
}

TEST(Paths, ParentPathKeepsEveryPartButTheLast) { EXPECT_EQ(ParentOf("C:\\a\\b.mdb"), "C:\\a\\"); }

TEST(Paths, ParentPathOfABareNameIsEmpty) { EXPECT_EQ(ParentOf("b.mdb"), ""); }

TEST(Paths, ParentPathOfADriveGetsASeparatorFirst) { EXPECT_EQ(ParentOf("C:"), "C:/"); }

TEST(Paths, ParentPathSplitsAtSlashes) { EXPECT_EQ(ParentOf("/home/u/b.mdb"), "/home/u/"); }

TEST(Paths, ParentPathOfAFolderEndingInASeparatorKeepsIt) { EXPECT_EQ(ParentOf("C:\\a\\"), "C:\\a\\"); }

TEST(Paths, ParentPathDiffersFromFolderOfForADriveRelativeName) {
  // "C:b" is one part for the split at separators, but FolderOf stops at ":".
  EXPECT_EQ(ParentOf("C:b"), "");
  EXPECT_EQ(FolderOf("C:b"), "C:");
}

TEST(Paths, FileNameOfIsTheLastPart) {
  EXPECT_EQ(FileNameOf("C:\\a\\b.mdb"), "b.mdb");
  EXPECT_EQ(FileNameOf("/home/u/b.mdb"), "b.mdb");
  EXPECT_EQ(FileNameOf("b.mdb"), "b.mdb");
  EXPECT_EQ(FileNameOf("C:\\a\\"), "");
}

TEST(Paths, BaseNameOfDropsOnlyTheLastExtension) {
  EXPECT_EQ(BaseNameOf("C:\\a\\b.mdb"), "b");
  EXPECT_EQ(BaseNameOf("/x/archive.2023.mdb"), "archive.2023");
}

TEST(Paths, BaseNameOfANameWithoutADotIsTheWholeName) {
  EXPECT_EQ(BaseNameOf("C:\\a.dir\\readme"), "readme");
}

TEST(Paths, ExtensionOfBeginsWithTheDot) {
  EXPECT_EQ(ExtensionOf("C:\\a\\b.mdb"), ".mdb");
  EXPECT_EQ(ExtensionOf("/x/archive.2023.qdb6f"), ".qdb6f");
}

TEST(Paths, ExtensionOfANameWithoutADotIsTheDotAlone) { EXPECT_EQ(ExtensionOf("C:\\a.dir\\readme"), "."); }

TEST(Paths, JoinPathTrimsAndTakesOneSeparatorOffTheName) {
  EXPECT_EQ(JoinPath(" C:\\a ", "\\b"), "C:\\a/b");
  EXPECT_EQ(JoinPath("/home/u", "/b.mdb"), "/home/u/b.mdb");
}

TEST(Paths, JoinPathAddsNoSeparatorBehindOneThatIsThere) {
  EXPECT_EQ(JoinPath("C:\\a\\", "b"), "C:\\a\\b");
  EXPECT_EQ(JoinPath("/home/u/", "b"), "/home/u/b");
}

TEST(Paths, JoinPathJoinsWithASlash) { EXPECT_EQ(JoinPath("/home/u", "Documents"), "/home/u/Documents"); }

TEST(Paths, JoinPathWithAnEmptyFolderIsTheName) { EXPECT_EQ(JoinPath("", "b.mdb"), "b.mdb"); }

}  // namespace
}  // namespace ldg
