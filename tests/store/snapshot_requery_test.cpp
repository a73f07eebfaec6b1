// Requery of a snapshot keeps the rows it holds while nothing was written to
// the files since they were read, and reads them again after any write: on its
// own connection, a commit of another connection, or a rollback.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/sqlite/catalog.hpp"
#include "store/sqlite/connection.hpp"
#include "store/sqlite/sqlite_recordset.hpp"
#include "tests/store/store_fixture.hpp"

namespace ldg::store {
namespace {

// The fixture's database stands for another connection on the same file; the
// record sets under test run on a connection of their own, whose statements
// the test can count.
class SnapshotRequeryTest : public testing::StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    MakeTable(*db_, "Movements", {{"ID", FieldType::kLong, 0, "", true}, {"EntryID", FieldType::kLong}});
    AddMovement(*db_, 1);
    AddMovement(*db_, 2);
    connection_ = std::make_shared<sqlite::Connection>();
    catalog_ = connection_->OpenFile(PathOf("book.qdb"));
  }

  void TearDown() override {
    catalog_.reset();
    connection_.reset();
    StoreTest::TearDown();
  }

  std::unique_ptr<Recordset> Open(RecordsetTypeEnum type) {
    return sqlite::OpenRecordset(sqlite::RecordsetSource{connection_, catalog_, "Movements", nullptr, {}},
                                 type);
  }

  void AddMovement(Database& db, int32_t entry) { AddRow(db, "Movements", {{"EntryID", Variant(entry)}}); }

  void AddMovementHere(int32_t entry) {
    auto table = Open(dbOpenTable);
    table->AddNew();
    table->Value("EntryID", Variant(entry));
    table->Update();
  }

  // How often the statements that read the rows of a table ran on this connection.
  int RowReads() const {
    int runs = 0;
    sqlite3* handle = connection_->Handle();
    for (sqlite3_stmt* statement = sqlite3_next_stmt(handle, nullptr); statement != nullptr;
         statement = sqlite3_next_stmt(handle, statement)) {
      if (std::string_view(sqlite3_sql(statement)).starts_with("SELECT rowid")) {
        runs += sqlite3_stmt_status(statement, SQLITE_STMTSTATUS_RUN, 0);
      }
    }
    return runs;
  }

  static int32_t CountRows(Recordset& records) {
    int32_t count = 0;
    for (records.MoveFirst(); !records.Eof(); records.MoveNext()) ++count;
    return count;
  }

  std::shared_ptr<sqlite::Connection> connection_;
  std::shared_ptr<sqlite::Catalog> catalog_;
};

TEST_F(SnapshotRequeryTest, WithoutAWriteTheRowsAreKeptAndTheFirstIsCurrentAgain) {
  auto snapshot = Open(dbOpenSnapshot);
  snapshot->MoveLast();
  EXPECT_EQ(snapshot->Value("EntryID"), Variant(int32_t{2}));
  const int reads = RowReads();
  snapshot->Requery();
  EXPECT_EQ(RowReads(), reads);
  EXPECT_FALSE(snapshot->Eof());
  EXPECT_EQ(snapshot->Value("EntryID"), Variant(int32_t{1}));
  EXPECT_EQ(CountRows(*snapshot), 2);
}

TEST_F(SnapshotRequeryTest, AWriteOnTheSameConnectionIsReadAgain) {
  auto snapshot = Open(dbOpenSnapshot);
  AddMovementHere(3);
  const int reads = RowReads();
  snapshot->Requery();
  EXPECT_GT(RowReads(), reads);
  EXPECT_EQ(CountRows(*snapshot), 3);
}

TEST_F(SnapshotRequeryTest, ACommitOfAnotherConnectionIsReadAgain) {
  auto snapshot = Open(dbOpenSnapshot);
  AddMovement(*db_, 3);
  snapshot->Requery();
  EXPECT_EQ(CountRows(*snapshot), 3);
  db_->Execute("DELETE FROM Movements WHERE EntryID = 1;");
  snapshot->Requery();
  EXPECT_EQ(snapshot->Value("EntryID"), Variant(int32_t{2}));
  EXPECT_EQ(CountRows(*snapshot), 2);
}

TEST_F(SnapshotRequeryTest, ARollbackIsReadAgain) {
  connection_->BeginTrans();
  AddMovementHere(3);
  auto snapshot = Open(dbOpenSnapshot);
  EXPECT_EQ(CountRows(*snapshot), 3);
  connection_->Rollback();
  snapshot->Requery();
  EXPECT_EQ(CountRows(*snapshot), 2);
}

TEST_F(SnapshotRequeryTest, ARollbackOfASavepointIsReadAgain) {
  connection_->BeginTrans();
  AddMovementHere(3);
  connection_->BeginTrans();
  AddMovementHere(4);
  auto snapshot = Open(dbOpenSnapshot);
  EXPECT_EQ(CountRows(*snapshot), 4);
  connection_->Rollback();
  snapshot->Requery();
  EXPECT_EQ(CountRows(*snapshot), 3);
  connection_->CommitTrans();
}

// A dynaset can be written through, so its Requery always reads again.
TEST_F(SnapshotRequeryTest, ADynasetIsAlwaysReadAgain) {
  auto dynaset = Open(dbOpenDynaset);
  const int reads = RowReads();
  dynaset->Requery();
  EXPECT_GT(RowReads(), reads);
  EXPECT_EQ(CountRows(*dynaset), 2);
}

TEST_F(SnapshotRequeryTest, TheContentMarkMovesWithAWriteOfThisConnection) {
  const std::vector<uint64_t> before = connection_->FreshContentMark();
  EXPECT_EQ(connection_->FreshContentMark(), before);
  AddMovementHere(3);
  EXPECT_NE(connection_->ContentMark(), before);
}

TEST_F(SnapshotRequeryTest, AFreshContentMarkShowsACommitOfAnotherConnection) {
  const std::vector<uint64_t> before = connection_->FreshContentMark();
  AddMovement(*db_, 3);
  EXPECT_NE(connection_->FreshContentMark(), before);
}

TEST_F(SnapshotRequeryTest, TheContentMarkMovesWhenAFileIsAttached) {
  const std::vector<uint64_t> before = connection_->FreshContentMark();
  engine_->CreateDatabase(PathOf("other.qdb"))->Close();
  auto other = connection_->OpenFile(PathOf("other.qdb"));
  EXPECT_NE(connection_->FreshContentMark(), before);
}

}  // namespace
}  // namespace ldg::store
