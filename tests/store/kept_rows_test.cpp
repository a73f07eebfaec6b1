// Inside a transaction a table-type record set keeps what it has read while
// the table stays unwritten: the rows a Seek "=" on the counter found, the rows
// it read ahead, and the next counter after its own insert. Any change of the
// table (through another set, a statement, a trigger, a rollback) and the end
// of the transaction make it read again; outside a transaction it always reads.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "store/sqlite/catalog.hpp"
#include "store/sqlite/connection.hpp"
#include "store/sqlite/sqlite_recordset.hpp"
#include "support/currency.hpp"
#include "support/ole_date.hpp"
#include "tests/store/store_fixture.hpp"

namespace ldg::store {
namespace {

// The fixture's database stands for another connection on the same file; the
// record sets under test run on a connection of their own, whose statements
// the test can count.
class KeptRowsTest : public testing::StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    MakeTable(*db_, "Accounts",
              {{"ID", FieldType::kLong, 0, "", true},
               {"Code", FieldType::kText, 10},
               {"Balance", FieldType::kCurrency},
               {"IsSum", FieldType::kBoolean},
               {"Rate", FieldType::kDouble},
               {"Opened", FieldType::kDate},
               {"Note", FieldType::kMemo},
               {"Level", FieldType::kLong}});
    MakeTable(*db_, "Movements", {{"ID", FieldType::kLong, 0, "", true}, {"AccountID", FieldType::kLong}});
    for (const char* code : {"1000", "1010", "1020"}) AddRow(*db_, "Accounts", {{"Code", Variant(code)}});
    AddRow(*db_, "Movements", {{"AccountID", Variant(int32_t{1})}});
    connection_ = std::make_shared<sqlite::Connection>();
    catalog_ = connection_->OpenFile(PathOf("book.qdb"));
  }

  void TearDown() override {
    catalog_.reset();
    connection_.reset();
    StoreTest::TearDown();
  }

  std::unique_ptr<Recordset> Open(const std::string& table, RecordsetTypeEnum type = dbOpenTable) {
    return sqlite::OpenRecordset(sqlite::RecordsetSource{connection_, catalog_, table, nullptr, {}}, type);
  }

  // How often statements whose text starts so ran on this connection.
  int Runs(std::string_view start) const {
    int runs = 0;
    sqlite3* handle = connection_->Handle();
    for (sqlite3_stmt* statement = sqlite3_next_stmt(handle, nullptr); statement != nullptr;
         statement = sqlite3_next_stmt(handle, statement)) {
      if (std::string_view(sqlite3_sql(statement)).starts_with(start)) {
        runs += sqlite3_stmt_status(statement, SQLITE_STMTSTATUS_RUN, 0);
      }
    }
    return runs;
  }
  int RowReads() const { return Runs("SELECT rowid"); }
  int CounterReads() const { return Runs("SELECT max(coalesce"); }

  static void SeekID(Recordset& table, int32_t id) { table.Seek("=", Variant(id)); }

  static void SetBalance(Recordset& table, int32_t id, int64_t raw) {
    SeekID(table, id);
    table.Edit();
    table.Value("Balance", Variant(Currency::FromRaw(raw)));
    table.Update();
  }

  std::shared_ptr<sqlite::Connection> connection_;
  std::shared_ptr<sqlite::Catalog> catalog_;
};

// ---- Seek "=" on the counter ----

TEST_F(KeptRowsTest, InsideATransactionASeekOfARowReadBeforeReadsNothing) {
  auto accounts = Open("Accounts");
  connection_->BeginTrans();
  SeekID(*accounts, 1);
  SeekID(*accounts, 2);
  const int reads = RowReads();
  SeekID(*accounts, 1);
  EXPECT_EQ(RowReads(), reads);
  EXPECT_FALSE(accounts->NoMatch());
  EXPECT_EQ(accounts->Value("Code"), Variant("1000"));
  EXPECT_EQ(accounts->Value("ID"), Variant(int32_t{1}));
  connection_->CommitTrans();
}

TEST_F(KeptRowsTest, OutsideATransactionEverySeekReads) {
  auto accounts = Open("Accounts");
  SeekID(*accounts, 1);
  const int reads = RowReads();
  SeekID(*accounts, 1);
  EXPECT_GT(RowReads(), reads);
  EXPECT_EQ(accounts->TableVersion(), 0u);
}

TEST_F(KeptRowsTest, AWriteToAnotherTableKeepsTheRows) {
  auto accounts = Open("Accounts");
  auto movements = Open("Movements");
  connection_->BeginTrans();
  SeekID(*accounts, 1);
  movements->AddNew();
  movements->Value("AccountID", Variant(int32_t{2}));
  movements->Update();
  const int reads = RowReads();
  SeekID(*accounts, 1);
  EXPECT_EQ(RowReads(), reads);
  EXPECT_EQ(accounts->Value("Code"), Variant("1000"));
  connection_->CommitTrans();
}

TEST_F(KeptRowsTest, AWriteThroughAnotherSetOfTheTableIsSeen) {
  auto accounts = Open("Accounts");
  auto other = Open("Accounts");
  connection_->BeginTrans();
  SeekID(*accounts, 1);
  EXPECT_TRUE(accounts->Value("Balance").IsNull());
  SetBalance(*other, 1, 50000);
  SeekID(*accounts, 1);
  EXPECT_EQ(accounts->Value("Balance"), Variant(Currency::FromRaw(50000)));
  connection_->CommitTrans();
}

TEST_F(KeptRowsTest, AnExecutedStatementIsSeen) {
  auto accounts = Open("Accounts");
  connection_->BeginTrans();
  SeekID(*accounts, 2);
  EXPECT_EQ(accounts->Value("Code"), Variant("1010"));
  connection_->Exec("UPDATE " + catalog_->Alias() + ".Accounts SET Code = '2000' WHERE ID = 2");
  SeekID(*accounts, 2);
  EXPECT_EQ(accounts->Value("Code"), Variant("2000"));
  connection_->CommitTrans();
}

// SQLite empties a table without a condition in one step that reports no row.
TEST_F(KeptRowsTest, AStatementThatEmptiesTheTableIsSeen) {
  auto accounts = Open("Accounts");
  connection_->BeginTrans();
  SeekID(*accounts, 3);
  EXPECT_EQ(accounts->Value("Code"), Variant("1020"));
  connection_->Exec("DELETE FROM " + catalog_->Alias() + ".Accounts");
  SeekID(*accounts, 3);
  EXPECT_TRUE(accounts->NoMatch());
  connection_->CommitTrans();
}

TEST_F(KeptRowsTest, TheSetsOwnEditIsKeptAsItReadsBack) {
  auto accounts = Open("Accounts");
  connection_->BeginTrans();
  SeekID(*accounts, 1);
  accounts->Edit();
  accounts->Value("Code", Variant("1001"));
  accounts->Value("Balance", Variant(Currency::FromRaw(-12345)));
  accounts->Value("IsSum", Variant(true));
  accounts->Value("Rate", Variant(0.1));
  accounts->Value("Opened", Variant(OleDate::FromYmd(2026, 3, 31)));
  accounts->Value("Note", Variant(""));
  accounts->Value("Level", Variant::Null());
  accounts->Update();
  SeekID(*accounts, 2);
  const int reads = RowReads();
  SeekID(*accounts, 1);
  EXPECT_EQ(RowReads(), reads);
  // What a set of its own reads from the file, field by field.
  auto fresh = Open("Accounts");
  SeekID(*fresh, 1);
  for (const char* field : {"ID", "Code", "Balance", "IsSum", "Rate", "Opened", "Note", "Level"}) {
    EXPECT_EQ(accounts->Value(field), fresh->Value(field)) << field;
    EXPECT_EQ(accounts->Value(field).Type(), fresh->Value(field).Type()) << field;
  }
  EXPECT_TRUE(accounts->Value("Level").IsNull());
  connection_->CommitTrans();
}

TEST_F(KeptRowsTest, ARowDeletedThroughTheSetIsNotFound) {
  auto accounts = Open("Accounts");
  connection_->BeginTrans();
  SeekID(*accounts, 1);
  SeekID(*accounts, 2);
  accounts->Delete();
  SeekID(*accounts, 2);
  EXPECT_TRUE(accounts->NoMatch());
  SeekID(*accounts, 1);
  EXPECT_FALSE(accounts->NoMatch());
  connection_->CommitTrans();
}

TEST_F(KeptRowsTest, ARowDeletedByACascadeIsNotFound) {
  auto relation = db_->CreateRelation("AccountsMovements", "Accounts", "Movements", dbRelationDeleteCascade);
  auto field = relation->CreateField("ID");
  field->ForeignName("AccountID");
  relation->Fields().Append(field);
  db_->Relations().Append(relation);
  catalog_->Load();
  auto accounts = Open("Accounts");
  auto movements = Open("Movements");
  connection_->BeginTrans();
  SeekID(*movements, 1);
  EXPECT_FALSE(movements->NoMatch());
  SeekID(*accounts, 1);
  accounts->Delete();
  SeekID(*movements, 1);
  EXPECT_TRUE(movements->NoMatch());
  connection_->CommitTrans();
}

TEST_F(KeptRowsTest, ARollbackOfASavepointBringsTheOldRowBack) {
  auto accounts = Open("Accounts");
  connection_->BeginTrans();
  SeekID(*accounts, 1);
  connection_->BeginTrans();
  SetBalance(*accounts, 1, 70000);
  SeekID(*accounts, 1);
  EXPECT_EQ(accounts->Value("Balance"), Variant(Currency::FromRaw(70000)));
  connection_->Rollback();
  SeekID(*accounts, 1);
  EXPECT_TRUE(accounts->Value("Balance").IsNull());
  connection_->CommitTrans();
}

// Between two transactions other connections may commit: rows kept from the
// first aren't trusted in the second.
TEST_F(KeptRowsTest, ANewTransactionReadsAgainAndSeesOthersCommits) {
  auto accounts = Open("Accounts");
  connection_->BeginTrans();
  SeekID(*accounts, 3);
  EXPECT_EQ(accounts->Value("Code"), Variant("1020"));
  connection_->CommitTrans();
  db_->Execute("UPDATE Accounts SET Code = '3000' WHERE ID = 3;");
  connection_->BeginTrans();
  SeekID(*accounts, 3);
  EXPECT_EQ(accounts->Value("Code"), Variant("3000"));
  connection_->CommitTrans();
}

// ---- field names ----

// A name read from the place where another name was read before is still looked up by its text.
TEST_F(KeptRowsTest, ANameInTheBufferOfAnotherNameIsReadByItsText) {
  auto accounts = Open("Accounts");
  SeekID(*accounts, 2);
  std::string name = "Code";
  EXPECT_EQ(accounts->Value(name), Variant("1010"));
  name = "ID";
  EXPECT_EQ(accounts->Value(name), Variant(int32_t{2}));
  name = "Nope";
  EXPECT_EQ(testing::ErrorNumberOf([&] { accounts->Value(name); }), 3265);
}

// ---- the table's version ----

TEST_F(KeptRowsTest, TheVersionMovesWithTheTableOnly) {
  auto accounts = Open("Accounts");
  auto movements = Open("Movements");
  connection_->BeginTrans();
  SeekID(*accounts, 1);
  const uint64_t before = accounts->TableVersion();
  EXPECT_NE(before, 0u);
  movements->AddNew();
  movements->Update();
  EXPECT_EQ(accounts->TableVersion(), before);
  SetBalance(*accounts, 1, 100);
  const uint64_t written = accounts->TableVersion();
  EXPECT_NE(written, before);
  connection_->BeginTrans();
  connection_->Rollback();
  EXPECT_NE(accounts->TableVersion(), written);
  connection_->CommitTrans();
  EXPECT_EQ(accounts->TableVersion(), 0u);
}

TEST_F(KeptRowsTest, OnlyATableTypeSetHasAVersion) {
  auto snapshot = Open("Accounts", dbOpenSnapshot);
  connection_->BeginTrans();
  EXPECT_EQ(snapshot->TableVersion(), 0u);
  connection_->CommitTrans();
}

// ---- rows read ahead ----

TEST_F(KeptRowsTest, RowsReadAheadStayWhenAnotherTableIsWritten) {
  auto accounts = Open("Accounts");
  auto movements = Open("Movements");
  connection_->BeginTrans();
  accounts->MoveFirst();
  movements->AddNew();
  movements->Update();
  const int reads = RowReads();
  accounts->MoveNext();
  EXPECT_EQ(RowReads(), reads);
  EXPECT_EQ(accounts->Value("Code"), Variant("1010"));
  connection_->CommitTrans();
}

TEST_F(KeptRowsTest, ARowAddedAheadByAnotherSetIsReached) {
  auto accounts = Open("Accounts");
  auto other = Open("Accounts");
  connection_->BeginTrans();
  accounts->MoveFirst();
  other->AddNew();
  other->Value("Code", Variant("1030"));
  other->Update();
  int32_t rows = 1;
  for (accounts->MoveNext(); !accounts->Eof(); accounts->MoveNext()) ++rows;
  EXPECT_EQ(rows, 4);
  connection_->CommitTrans();
}

// ---- the counter of AddNew ----

TEST_F(KeptRowsTest, AfterItsOwnInsertTheSetCountsOnWithoutAsking) {
  auto accounts = Open("Accounts");
  auto movements = Open("Movements");
  connection_->BeginTrans();
  movements->AddNew();
  movements->Update();
  accounts->AddNew();
  accounts->Update();
  const int asked = CounterReads();
  movements->AddNew();
  EXPECT_EQ(CounterReads(), asked);
  EXPECT_EQ(movements->Value("ID"), Variant(int32_t{3}));
  movements->Update();
  connection_->CommitTrans();
}

TEST_F(KeptRowsTest, AnInsertOfAnotherSetIsCountedOn) {
  auto movements = Open("Movements");
  auto other = Open("Movements");
  connection_->BeginTrans();
  movements->AddNew();
  movements->Update();
  other->AddNew();
  EXPECT_EQ(other->Value("ID"), Variant(int32_t{3}));
  other->Update();
  movements->AddNew();
  EXPECT_EQ(movements->Value("ID"), Variant(int32_t{4}));
  movements->Update();
  connection_->CommitTrans();
}

TEST_F(KeptRowsTest, ANumberUsedUpByAnotherSetsCancelIsSkipped) {
  auto movements = Open("Movements");
  auto other = Open("Movements");
  connection_->BeginTrans();
  movements->AddNew();
  movements->Update();
  other->AddNew();
  other->CancelUpdate();
  movements->AddNew();
  EXPECT_EQ(movements->Value("ID"), Variant(int32_t{4}));
  movements->Update();
  connection_->CommitTrans();
}

}  // namespace
}  // namespace ldg::store
