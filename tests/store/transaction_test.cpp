#include <gtest/gtest.h>

#include "store/store_error.hpp"
#include "tests/store/store_fixture.hpp"

namespace ldg::store {
namespace {

using testing::ErrorNumberOf;

class TransactionTest : public testing::StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    MakeTable(*db_, "Journals", {{"ID", FieldType::kLong, 0, "", true}, {"Name", FieldType::kText}});
  }
  void Write(const char* name) { AddRow(*db_, "Journals", {{"Name", name}}); }
  std::string Names(Database& db) {
    std::string names;
    auto rs = db.OpenRecordset("Journals", dbOpenSnapshot);
    while (!rs->Eof()) {
      names += rs->Value("Name").AsString();
      rs->MoveNext();
    }
    return names;
  }
};

TEST_F(TransactionTest, CommitTransWithoutBeginTransIsAStoreError) {
  EXPECT_EQ(ErrorNumberOf([&] { workspace_->CommitTrans(); }), kErrNoTransaction);
  EXPECT_EQ(ErrorNumberOf([&] { workspace_->Rollback(); }), kErrNoTransaction);
  EXPECT_EQ(testing::ErrorTextOf([&] { workspace_->CommitTrans(); }),
            "You tried to commit or rollback a transaction without first beginning a transaction.");
}

TEST_F(TransactionTest, RollbackOfTheOuterLevelUndoesACommittedInnerLevel) {
  workspace_->BeginTrans();
  workspace_->BeginTrans();
  Write("A");
  workspace_->CommitTrans();
  Write("B");
  workspace_->Rollback();
  EXPECT_EQ(Names(*db_), "");
  EXPECT_EQ(workspace_->TransactionLevel(), 0);
}

TEST_F(TransactionTest, RollbackOfTheInnerLevelKeepsTheOuterWrites) {
  workspace_->BeginTrans();
  Write("A");
  workspace_->BeginTrans();
  Write("B");
  workspace_->Rollback();
  workspace_->CommitTrans();
  EXPECT_EQ(Names(*db_), "A");
}

TEST_F(TransactionTest, ATransactionSpansTheWorkspacesDatabases) {
  auto other = engine_->CreateDatabase(PathOf("other.qdb"));
  MakeTable(*other, "Journals", {{"ID", FieldType::kLong, 0, "", true}, {"Name", FieldType::kText}});
  other->Close();
  auto second = workspace_->OpenDatabase(PathOf("other.qdb"));
  workspace_->BeginTrans();
  Write("A");
  AddRow(*second, "Journals", {{"Name", "B"}});
  workspace_->Rollback();
  EXPECT_EQ(Names(*db_), "");
  EXPECT_EQ(Names(*second), "");
}

TEST_F(TransactionTest, AnOpenTransactionIsRolledBackWhenTheWorkspaceGoes) {
  workspace_->BeginTrans();
  Write("A");
  db_.reset();
  workspace_.reset();
  auto db = engine_->OpenDatabase(PathOf("book.qdb"));
  EXPECT_EQ(Names(*db), "");
}

TEST_F(TransactionTest, APrivateConnectionSeesCommittedRows) {
  workspace_->BeginTrans();
  Write("A");
  workspace_->CommitTrans();
  auto log = engine_->OpenDatabase(PathOf("book.qdb"));
  EXPECT_EQ(Names(*log), "A");
  AddRow(*log, "Journals", {{"Name", "B"}});
  EXPECT_EQ(Names(*db_), "AB");
}

TEST_F(TransactionTest, SchemaChangesAreUndoneByRollback) {
  workspace_->BeginTrans();
  MakeTable(*db_, "Scratch", {{"ID", FieldType::kLong}});
  workspace_->Rollback();
  EXPECT_FALSE(db_->TableDefs().Contains("Scratch"));
}

}  // namespace
}  // namespace ldg::store
