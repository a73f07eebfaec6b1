#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "store/lock_file.hpp"
#include "store/store_error.hpp"
#include "tests/store/store_fixture.hpp"

namespace ldg::store {
namespace {

using testing::ErrorNumberOf;

class FilesTest : public testing::StoreTest {};

TEST_F(FilesTest, OpeningAMissingFileFails) {
  EXPECT_EQ(ErrorNumberOf([&] { workspace_->OpenDatabase(PathOf("missing.qdb")); }), kErrFileNotFound);
  EXPECT_FALSE(std::filesystem::exists(PathOf("missing.qdb")));
}

TEST_F(FilesTest, OpeningAFileOfAnotherKindFails) {
  std::ofstream(PathOf("notes.txt")) << "these are not the rows you are looking for, not by a long way";
  EXPECT_EQ(ErrorNumberOf([&] { workspace_->OpenDatabase(PathOf("notes.txt")); }), kErrUnrecognizedFormat);
}

TEST_F(FilesTest, CreateDatabaseOverAnExistingFileFails) {
  EXPECT_EQ(ErrorNumberOf([&] { engine_->CreateDatabase(PathOf("book.qdb")); }), kErrDatabaseExists);
}

TEST_F(FilesTest, NameIsThePathAsOpened) { EXPECT_EQ(db_->Name(), PathOf("book.qdb")); }

TEST_F(FilesTest, LockFileExistsWhileOpenAndGoesWithTheLastConnection) {
  std::string lock = PathOf("book.ldb");
  EXPECT_TRUE(std::filesystem::exists(lock));
  auto second = engine_->OpenDatabase(PathOf("book.qdb"));
  db_->Close();
  EXPECT_TRUE(std::filesystem::exists(lock));
  second->Close();
  EXPECT_FALSE(std::filesystem::exists(lock));
}

TEST_F(FilesTest, AnotherConnectionShowsAsInUse) {
  EXPECT_TRUE(IsDatabaseInUse(PathOf("book.qdb")));
  auto other_engine = NewSqliteEngine();
  auto other = other_engine->OpenDatabase(PathOf("book.qdb"));
  db_->Close();
  EXPECT_TRUE(IsDatabaseInUse(PathOf("book.qdb")));
  other->Close();
  EXPECT_FALSE(IsDatabaseInUse(PathOf("book.qdb")));
}

TEST_F(FilesTest, AStaleLockFileIsCleanedUp) {
  db_->Close();
  std::ofstream(PathOf("book.ldb")) << "left behind";
  EXPECT_FALSE(IsDatabaseInUse(PathOf("book.qdb")));
  EXPECT_FALSE(std::filesystem::exists(PathOf("book.ldb")));
}

TEST_F(FilesTest, LockFileNameReplacesTheExtension) {
  EXPECT_EQ(LockFilePath("/data/Year2023.qdb"), "/data/Year2023.ldb");
  EXPECT_EQ(LockFilePath("/data.v1/Year2023"), "/data.v1/Year2023.ldb");
}

TEST_F(FilesTest, CompactDatabaseWritesACopyWithTheRows) {
  MakeTable(*db_, "Journals", {{"ID", FieldType::kLong, 0, "", true}, {"Name", FieldType::kText}});
  AddRow(*db_, "Journals", {{"Name", "System"}});
  db_->Close();
  engine_->CompactDatabase(PathOf("book.qdb"), PathOf("copy.qdb"));
  auto copy = engine_->OpenDatabase(PathOf("copy.qdb"));
  EXPECT_EQ(copy->OpenRecordset("Journals", dbOpenTable)->Value("Name"), Variant("System"));
  EXPECT_EQ(ErrorNumberOf([&] { engine_->CompactDatabase(PathOf("book.qdb"), PathOf("copy.qdb")); }),
            kErrDatabaseExists);
}

}  // namespace
}  // namespace ldg::store
