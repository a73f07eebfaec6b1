#include <gtest/gtest.h>

#include "store/store_error.hpp"
#include "tests/store/store_fixture.hpp"

namespace ldg::store {
namespace {

using testing::ErrorNumberOf;
using testing::ErrorTextOf;

class StatementTest : public testing::StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    MakeTable(*db_, "Accounts",
              {{"ID", FieldType::kLong, 0, "", true},
               {"Code", FieldType::kText},
               {"Balance", FieldType::kCurrency},
               {"IsSum", FieldType::kBoolean}});
    AddRow(*db_, "Accounts",
           {{"Code", "Ärger"}, {"Balance", Currency::Parse("0.1").value()}, {"IsSum", true}});
    AddRow(*db_, "Accounts", {{"Code", "B200"}, {"Balance", Currency::Parse("0.2").value()}});
    AddRow(*db_, "Accounts", {{"Code", "a100"}, {"Balance", Currency::Parse("-0.3").value()}});
  }
};

TEST_F(StatementTest, SumOfACurrencyColumnReadsBackAsExactCurrency) {
  auto rs = db_->OpenRecordset("SELECT Sum(Accounts.Balance) AS Total FROM Accounts;", dbOpenSnapshot);
  EXPECT_EQ(rs->Fields().Item("Total").Type(), FieldType::kCurrency);
  EXPECT_EQ(rs->Value("Total"), Variant(Currency()));
}

TEST_F(StatementTest, TrueIsStoredAsMinusOne) {
  db_->Execute("UPDATE Accounts SET IsSum = True WHERE Code = 'B200';", dbFailOnError);
  auto rs = db_->OpenRecordset("SELECT Count(*) AS N FROM Accounts WHERE IsSum = -1;", dbOpenSnapshot);
  EXPECT_EQ(rs->Value("N"), Variant(int32_t{2}));
}

TEST_F(StatementTest, WhereComparesTextWithCaseFolding) {
  auto rs = db_->OpenRecordset("SELECT ID FROM Accounts WHERE Code = 'äRGER';", dbOpenSnapshot);
  ASSERT_FALSE(rs->Eof());
  EXPECT_EQ(rs->Value("ID"), Variant(int32_t{1}));
}

TEST_F(StatementTest, FindFirstComparesTextWithCaseFolding) {
  auto rs = db_->OpenRecordset("Accounts", dbOpenDynaset);
  rs->FindFirst("Code = 'ärger'");
  ASSERT_FALSE(rs->NoMatch());
  EXPECT_EQ(rs->Value("ID"), Variant(int32_t{1}));
}

TEST_F(StatementTest, FindNextContinuesAfterTheCurrentRowAndSetsNoMatchAtTheEnd) {
  auto rs = db_->OpenRecordset("SELECT * FROM Accounts ORDER BY Code;", dbOpenSnapshot);
  rs->FindFirst("IsSum = False");
  EXPECT_EQ(rs->Value("Code"), Variant("a100"));
  BookmarkValue mark = rs->Bookmark();
  rs->FindFirst("ID = 1");
  EXPECT_EQ(rs->Value("Code"), Variant("Ärger"));
  rs->Bookmark(mark);
  rs->FindNext("IsSum = False");
  EXPECT_EQ(rs->Value("Code"), Variant("B200"));
  rs->FindNext("IsSum = False");
  EXPECT_TRUE(rs->NoMatch());
}

TEST_F(StatementTest, ExecuteCountsTheRowsItChanged) {
  db_->Execute("UPDATE Accounts SET Balance = 1234.5678 WHERE ID > 1;", dbFailOnError);
  EXPECT_EQ(db_->RecordsAffected(), 2);
  auto rs = db_->OpenRecordset("Accounts", dbOpenTable);
  rs->MoveLast();
  EXPECT_EQ(rs->Value("Balance"), Variant(Currency::FromRaw(12345678)));
}

TEST_F(StatementTest, StatementWithAnUnknownNameRaises3061) {
  EXPECT_EQ(ErrorNumberOf([&] { db_->OpenRecordset("SELECT Foo FROM Accounts;", dbOpenSnapshot); }),
            kErrTooFewParameters);
}

TEST_F(StatementTest, RefusedDeleteRaisesOnlyWithFailOnError) {
  MakeTable(*db_, "Movements", {{"ID", FieldType::kLong, 0, "", true}, {"AccountID", FieldType::kLong}});
  auto relation = db_->CreateRelation("AccountsMovements", "Accounts", "Movements", 0);
  auto field = relation->CreateField("ID");
  field->ForeignName("AccountID");
  relation->Fields().Append(field);
  db_->Relations().Append(relation);
  AddRow(*db_, "Movements", {{"AccountID", int32_t{2}}});
  EXPECT_EQ(ErrorTextOf([&] { db_->Execute("DELETE FROM Accounts WHERE ID = 2;", dbFailOnError); }),
            "The record cannot be deleted or changed because table 'Movements' includes related records.");
  db_->Execute("DELETE FROM Accounts WHERE ID = 2;");
  EXPECT_EQ(db_->RecordsAffected(), 0);
  EXPECT_EQ(db_->OpenRecordset("Accounts", dbOpenTable)->RecordCount(), 3);
}

TEST_F(StatementTest, InsertStatementLeavingOutADefaultedColumnStoresTheDefault) {
  auto table = db_->TableDefs().Item("Accounts");
  table->Fields().Append(table->CreateField("LiegenCode", FieldType::kLong));
  table->Fields().Item("LiegenCode").DefaultValue("0");
  db_->Execute("INSERT INTO Accounts (Code) VALUES ('9000');", dbFailOnError);
  auto rs = db_->OpenRecordset("SELECT LiegenCode FROM Accounts WHERE Code = '9000';", dbOpenSnapshot);
  EXPECT_EQ(rs->Value("LiegenCode"), Variant(int32_t{0}));
}

TEST_F(StatementTest, RerunningATextGivesFreshRows) {
  const char* text = "SELECT Count(*) AS N FROM Accounts;";
  EXPECT_EQ(db_->OpenRecordset(text, dbOpenSnapshot)->Value("N"), Variant(int32_t{3}));
  AddRow(*db_, "Accounts", {{"Code", "4000"}});
  EXPECT_EQ(db_->OpenRecordset(text, dbOpenSnapshot)->Value("N"), Variant(int32_t{4}));
}

TEST_F(StatementTest, CurrencySumOverAMillionRowsIsExact) {
  MakeTable(*db_, "Movements", {{"AccountID", FieldType::kLong}, {"Amount", FieldType::kCurrency}});
  workspace_->BeginTrans();
  auto rs = db_->OpenRecordset("Movements", dbOpenTable);
  const Currency tenth = Currency::FromRaw(1000);
  const Currency fifth = Currency::FromRaw(2000);
  for (int i = 0; i < 1000000; ++i) {
    rs->AddNew();
    rs->Value("AccountID", int32_t{i % 10});
    rs->Value("Amount", i % 2 ? fifth : tenth);
    rs->Update();
  }
  workspace_->CommitTrans();
  auto sum =
      db_->OpenRecordset("SELECT Sum(Movements.Amount) AS SumOfAmount FROM Movements;", dbOpenSnapshot);
  EXPECT_EQ(sum->Value("SumOfAmount"), Variant(Currency::FromUnits(150000)));
}

}  // namespace
}  // namespace ldg::store
