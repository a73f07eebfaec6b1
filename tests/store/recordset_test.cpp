#include "store/recordset.hpp"

#include <gtest/gtest.h>

#include "store/store_error.hpp"
#include "tests/store/store_fixture.hpp"

namespace ldg::store {
namespace {

using testing::ErrorNumberOf;
using testing::ErrorTextOf;

class RecordsetTest : public testing::StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    MakeTable(*db_, "Movements",
              {{"ID", FieldType::kLong, 0, "", true},
               {"EntryID", FieldType::kLong},
               {"Text", FieldType::kText, 10},
               {"Amount", FieldType::kCurrency},
               {"Valuta", FieldType::kDate},
               {"IsDependent", FieldType::kBoolean},
               {"MasterID", FieldType::kLong, 0, "7"}});
  }

  void AddMovement(int32_t entry, const char* text, Currency amount) {
    AddRow(*db_, "Movements", {{"EntryID", entry}, {"Text", text}, {"Amount", amount}});
  }
};

TEST_F(RecordsetTest, EmptyResultIsBothEofAndBof) {
  auto rs = db_->OpenRecordset("Movements", dbOpenTable);
  EXPECT_TRUE(rs->Eof());
  EXPECT_TRUE(rs->Bof());
  auto snapshot = db_->OpenRecordset("Movements", dbOpenSnapshot);
  EXPECT_TRUE(snapshot->Eof());
  EXPECT_TRUE(snapshot->Bof());
}

TEST_F(RecordsetTest, NullColumnReadsAsNull) {
  AddMovement(1, "a", Currency::FromUnits(1));
  auto rs = db_->OpenRecordset("Movements", dbOpenTable);
  EXPECT_TRUE(rs->Fields().Item("Valuta").Value().IsNull());
}

TEST_F(RecordsetTest, DefaultIsStoredWhenColumnIsLeftOut) {
  AddMovement(1, "a", Currency::FromUnits(1));
  auto rs = db_->OpenRecordset("Movements", dbOpenSnapshot);
  EXPECT_EQ(rs->Value("MasterID"), Variant(int32_t{7}));
  EXPECT_EQ(rs->Value("IsDependent"), Variant(false));
}

TEST_F(RecordsetTest, NewCounterIsReadableRightAfterAddNew) {
  AddMovement(1, "a", Currency::FromUnits(1));
  auto rs = db_->OpenRecordset("Movements", dbOpenTable);
  rs->AddNew();
  EXPECT_EQ(rs->Value("ID"), Variant(int32_t{2}));
  rs->Value("EntryID", int32_t{9});
  rs->Update();
  rs->Bookmark(rs->LastModified());
  EXPECT_EQ(rs->Value("ID"), Variant(int32_t{2}));
  EXPECT_EQ(rs->Value("EntryID"), Variant(int32_t{9}));
}

TEST_F(RecordsetTest, CancelledAddNewUsesUpItsCounter) {
  auto rs = db_->OpenRecordset("Movements", dbOpenTable);
  rs->AddNew();
  EXPECT_EQ(rs->Value("ID"), Variant(int32_t{1}));
  rs->CancelUpdate();
  rs->AddNew();
  EXPECT_EQ(rs->Value("ID"), Variant(int32_t{2}));
}

TEST_F(RecordsetTest, RecordCountOfDynasetCountsRowsReachedUntilMoveLast) {
  for (int i = 1; i <= 5; ++i) AddMovement(i, "x", Currency::FromUnits(i));
  auto rs = db_->OpenRecordset("Movements", dbOpenDynaset);
  EXPECT_EQ(rs->RecordCount(), 1);
  rs->MoveNext();
  EXPECT_EQ(rs->RecordCount(), 2);
  rs->MoveLast();
  EXPECT_EQ(rs->RecordCount(), 5);
}

TEST_F(RecordsetTest, TableTypeRecordCountIsExact) {
  for (int i = 1; i <= 3; ++i) AddMovement(i, "x", Currency::FromUnits(i));
  EXPECT_EQ(db_->OpenRecordset("Movements", dbOpenTable)->RecordCount(), 3);
}

TEST_F(RecordsetTest, MovesWalkTheRowsInIndexOrder) {
  AddMovement(3, "c", Currency());
  AddMovement(1, "a", Currency());
  AddMovement(2, "b", Currency());
  AddIndex(*db_, "Movements", "EntryID", {"EntryID"});
  auto rs = db_->OpenRecordset("Movements", dbOpenTable);
  rs->Index("EntryID");
  rs->MoveFirst();
  std::string seen;
  while (!rs->Eof()) {
    seen += rs->Value("Text").AsString();
    rs->MoveNext();
  }
  EXPECT_EQ(seen, "abc");
  rs->MovePrevious();
  EXPECT_EQ(rs->Value("Text"), Variant("c"));
  rs->MovePrevious();
  rs->MovePrevious();
  rs->MovePrevious();
  EXPECT_TRUE(rs->Bof());
}

TEST_F(RecordsetTest, MoveNextAtEofRaisesNoCurrentRecord) {
  auto rs = db_->OpenRecordset("Movements", dbOpenTable);
  EXPECT_EQ(ErrorNumberOf([&] { rs->MoveNext(); }), kErrNoCurrentRecord);
  EXPECT_EQ(ErrorTextOf([&] { rs->MoveNext(); }), "No current record.");
}

TEST_F(RecordsetTest, ReadingWithoutCurrentRowRaises3021) {
  auto rs = db_->OpenRecordset("Movements", dbOpenTable);
  EXPECT_EQ(ErrorNumberOf([&] { rs->Value("ID"); }), 3021);
}

TEST_F(RecordsetTest, SeekEqualFindsTheRowByPrimaryKey) {
  for (int i = 1; i <= 3; ++i) AddMovement(i * 10, "x", Currency::FromUnits(i));
  auto rs = db_->OpenRecordset("Movements", dbOpenTable);
  rs->Index("PrimaryKey");
  rs->Seek("=", int32_t{2});
  ASSERT_FALSE(rs->NoMatch());
  EXPECT_EQ(rs->Value("EntryID"), Variant(int32_t{20}));
}

TEST_F(RecordsetTest, SeekOnMissingKeySetsNoMatch) {
  AddMovement(1, "x", Currency());
  auto rs = db_->OpenRecordset("Movements", dbOpenTable);
  rs->Index("PrimaryKey");
  rs->Seek("=", int32_t{99});
  EXPECT_TRUE(rs->NoMatch());
}

TEST_F(RecordsetTest, SeekTakesATextKeyForANumberIndex) {
  for (int i = 1; i <= 20; ++i) AddMovement(i, "x", Currency());
  auto rs = db_->OpenRecordset("Movements", dbOpenTable);
  rs->Index("PrimaryKey");
  rs->Seek("=", "17");
  ASSERT_FALSE(rs->NoMatch());
  EXPECT_EQ(rs->Value("EntryID"), Variant(int32_t{17}));
}

TEST_F(RecordsetTest, IndexNamesArePerTable) {
  MakeTable(*db_, "Journals", {{"ID", FieldType::kLong, 0, "", true}, {"Name", FieldType::kText}});
  AddRow(*db_, "Journals", {{"Name", "System"}});
  auto rs = db_->OpenRecordset("Journals", dbOpenTable);
  rs->Index("primarykey");
  rs->Seek("=", int32_t{1});
  EXPECT_FALSE(rs->NoMatch());
}

TEST_F(RecordsetTest, UnknownIndexRaises) {
  auto rs = db_->OpenRecordset("Movements", dbOpenTable);
  EXPECT_EQ(ErrorNumberOf([&] { rs->Index("NoSuchIndex"); }), kErrNotAnIndex);
}

class PeriodsTest : public testing::StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    MakeTable(*db_, "Periods2", {{"ID", FieldType::kLong, 0, "", true}, {"DateFrom", FieldType::kDate}});
    AddIndex(*db_, "Periods2", "DateFrom", {"DateFrom"}, true);
    for (int month : {1, 4, 7}) AddRow(*db_, "Periods2", {{"DateFrom", OleDate::FromYmd(2023, month, 1)}});
    rs_ = db_->OpenRecordset("Periods2", dbOpenTable);
    rs_->Index("DateFrom");
  }
  int MonthOfCurrent() { return rs_->Value("DateFrom").AsDate().Month(); }
  std::unique_ptr<Recordset> rs_;
};

TEST_F(PeriodsTest, SeekGreaterFindsTheNextKeyAndMovePreviousTheOneBefore) {
  rs_->Seek(">", OleDate::FromYmd(2023, 5, 15));
  ASSERT_FALSE(rs_->NoMatch());
  EXPECT_EQ(MonthOfCurrent(), 7);
  rs_->MovePrevious();
  EXPECT_EQ(MonthOfCurrent(), 4);
}

TEST_F(PeriodsTest, FailedSeekGreaterLeavesEofSoMovePreviousLandsOnTheLastRow) {
  rs_->Seek(">", OleDate::FromYmd(2023, 10, 1));
  EXPECT_TRUE(rs_->NoMatch());
  EXPECT_TRUE(rs_->Eof());
  rs_->MovePrevious();
  EXPECT_EQ(MonthOfCurrent(), 7);
}

TEST_F(PeriodsTest, SeekLessFindsTheClosestKeyBelow) {
  rs_->Seek("<", OleDate::FromYmd(2023, 5, 15));
  ASSERT_FALSE(rs_->NoMatch());
  EXPECT_EQ(MonthOfCurrent(), 4);
  rs_->Seek("<=", OleDate::FromYmd(2023, 7, 1));
  EXPECT_EQ(MonthOfCurrent(), 7);
  rs_->Seek(">=", OleDate::FromYmd(2023, 4, 1));
  EXPECT_EQ(MonthOfCurrent(), 4);
}

TEST_F(PeriodsTest, FailedSeekLessLeavesEof) {
  rs_->Seek("<", OleDate::FromYmd(2022, 1, 1));
  EXPECT_TRUE(rs_->NoMatch());
  EXPECT_TRUE(rs_->Eof());
}

TEST_F(RecordsetTest, SeekOnACompoundIndex) {
  MakeTable(*db_, "FC2Rate",
            {{"ID", FieldType::kLong},
             {"FCID", FieldType::kLong},
             {"BeginDate", FieldType::kDate},
             {"Rate", FieldType::kCurrency}});
  AddIndex(*db_, "FC2Rate", "FCIDBeginDate", {"FCID", "BeginDate"});
  AddRow(*db_, "FC2Rate",
         {{"ID", int32_t{1}}, {"FCID", int32_t{3}}, {"BeginDate", OleDate::FromYmd(2022, 1, 1)}});
  AddRow(*db_, "FC2Rate",
         {{"ID", int32_t{2}}, {"FCID", int32_t{3}}, {"BeginDate", OleDate::FromYmd(2023, 1, 1)}});
  AddRow(*db_, "FC2Rate",
         {{"ID", int32_t{3}}, {"FCID", int32_t{4}}, {"BeginDate", OleDate::FromYmd(2023, 1, 1)}});
  auto rs = db_->OpenRecordset("FC2Rate", dbOpenTable);
  rs->Index("FCIDBeginDate");
  rs->Seek("=", int32_t{3}, OleDate::FromYmd(2023, 1, 1));
  ASSERT_FALSE(rs->NoMatch());
  EXPECT_EQ(rs->Value("ID"), Variant(int32_t{2}));
}

TEST_F(RecordsetTest, SeekComparesTextWithoutRegardToCase) {
  MakeTable(*db_, "Journals", {{"ID", FieldType::kLong, 0, "", true}, {"Name", FieldType::kText}});
  AddIndex(*db_, "Journals", "Name", {"Name"});
  AddRow(*db_, "Journals", {{"Name", "Ärger"}});
  AddRow(*db_, "Journals", {{"Name", "System"}});
  auto rs = db_->OpenRecordset("Journals", dbOpenTable);
  rs->Index("Name");
  rs->Seek("=", "äRGER");
  ASSERT_FALSE(rs->NoMatch());
  EXPECT_EQ(rs->Value("ID"), Variant(int32_t{1}));
  rs->Seek("=", "system");
  EXPECT_EQ(rs->Value("ID"), Variant(int32_t{2}));
}

TEST_F(RecordsetTest, DynasetAddNewGoesToTheEndAndKeepsTheCurrentRow) {
  AddMovement(1, "a", Currency());
  AddMovement(2, "b", Currency());
  auto rs = db_->OpenRecordset("Movements", dbOpenDynaset);
  rs->MoveFirst();
  rs->AddNew();
  rs->Value("EntryID", int32_t{0});
  rs->Value("Text", "new");
  rs->Update();
  EXPECT_EQ(rs->Value("Text"), Variant("a"));
  rs->MoveLast();
  EXPECT_EQ(rs->Value("Text"), Variant("new"));
}

TEST_F(RecordsetTest, EditAndUpdateWriteTheRow) {
  AddMovement(1, "a", Currency());
  auto rs = db_->OpenRecordset("Movements", dbOpenDynaset);
  rs->Edit();
  rs->Collect("Amount", Currency::Parse("12.3456").value());
  rs->Update();
  auto check = db_->OpenRecordset("Movements", dbOpenSnapshot);
  EXPECT_EQ(check->Value("Amount"), Variant(Currency::FromRaw(123456)));
}

TEST_F(RecordsetTest, DeletedRowReadsAsDeleted) {
  AddMovement(1, "a", Currency());
  AddMovement(2, "b", Currency());
  auto rs = db_->OpenRecordset("Movements", dbOpenDynaset);
  rs->Delete();
  EXPECT_EQ(ErrorNumberOf([&] { rs->Value("Text"); }), kErrRecordDeleted);
  rs->MoveNext();
  EXPECT_EQ(rs->Value("Text"), Variant("b"));
  EXPECT_EQ(db_->OpenRecordset("Movements", dbOpenTable)->RecordCount(), 1);
}

TEST_F(RecordsetTest, SnapshotRefusesWrites) {
  AddMovement(1, "a", Currency());
  auto rs = db_->OpenRecordset("Movements", dbOpenSnapshot);
  EXPECT_EQ(ErrorNumberOf([&] { rs->Edit(); }), kErrReadOnly);
}

TEST_F(RecordsetTest, SettingAFieldWithoutEditRaises3020) {
  AddMovement(1, "a", Currency());
  auto rs = db_->OpenRecordset("Movements", dbOpenTable);
  EXPECT_EQ(ErrorNumberOf([&] { rs->Value("Text", "b"); }), kErrUpdateWithoutAddNew);
  EXPECT_EQ(ErrorNumberOf([&] { rs->Update(); }), kErrUpdateWithoutAddNew);
}

TEST_F(RecordsetTest, UnknownFieldRaisesItemNotFound) {
  auto rs = db_->OpenRecordset("Movements", dbOpenTable);
  EXPECT_EQ(ErrorNumberOf([&] { rs->Fields().Item("NoSuchField"); }), 3265);
  EXPECT_EQ(ErrorTextOf([&] { rs->Fields().Item("NoSuchField"); }), "Item not found in this collection.");
}

TEST_F(RecordsetTest, FieldNamesIgnoreCase) {
  AddMovement(5, "a", Currency());
  auto rs = db_->OpenRecordset("Movements", dbOpenTable);
  EXPECT_EQ(rs->Fields().Item("entryid").Value(), Variant(int32_t{5}));
  EXPECT_EQ(rs->Fields().Item("ENTRYID").Name(), "EntryID");
}

TEST_F(RecordsetTest, TextLongerThanTheFieldRaises3163) {
  auto rs = db_->OpenRecordset("Movements", dbOpenTable);
  rs->AddNew();
  rs->Value("Text", "ääääääääää");  // ten characters fit a Text 10
  EXPECT_EQ(ErrorNumberOf([&] { rs->Value("Text", "12345678901"); }), kErrFieldTooSmall);
  EXPECT_EQ(rs->Size("Text"), 10);
  EXPECT_EQ(rs->Fields().Item("Text").Size(), 10);
}

TEST_F(RecordsetTest, BooleanTrueReadsAsTrueAndCountsAsMinusOne) {
  AddRow(*db_, "Movements", {{"IsDependent", int32_t{1}}});
  auto rs = db_->OpenRecordset("Movements", dbOpenTable);
  EXPECT_EQ(rs->Value("IsDependent"), Variant(true));
}

TEST_F(RecordsetTest, CurrencyKeepsFourDecimalsExactly) {
  AddMovement(1, "a", Currency::Parse("1234.5678").value());
  auto rs = db_->OpenRecordset("Movements", dbOpenTable);
  EXPECT_EQ(rs->Value("Amount"), Variant(Currency::FromRaw(12345678)));
}

TEST_F(RecordsetTest, BookmarkReturnsToTheRow) {
  for (int i = 1; i <= 3; ++i) AddMovement(i, "x", Currency());
  for (auto type : {dbOpenTable, dbOpenDynaset, dbOpenSnapshot}) {
    auto rs = db_->OpenRecordset("Movements", type);
    rs->MoveNext();
    BookmarkValue mark = rs->Bookmark();
    rs->MoveLast();
    rs->Bookmark(mark);
    EXPECT_EQ(rs->Value("EntryID"), Variant(int32_t{2}));
  }
}

TEST_F(RecordsetTest, CloneMovesOnItsOwn) {
  for (int i = 1; i <= 3; ++i) AddMovement(i, "x", Currency());
  auto rs = db_->OpenRecordset("Movements", dbOpenDynaset);
  auto clone = rs->Clone();
  clone->MoveLast();
  EXPECT_EQ(rs->Value("EntryID"), Variant(int32_t{1}));
  EXPECT_EQ(clone->Value("EntryID"), Variant(int32_t{3}));
}

TEST_F(RecordsetTest, RequerySeesNewRows) {
  AddMovement(1, "x", Currency());
  auto rs = db_->OpenRecordset("Movements", dbOpenSnapshot);
  AddMovement(2, "y", Currency());
  rs->MoveLast();
  EXPECT_EQ(rs->RecordCount(), 1);
  rs->Requery();
  rs->MoveLast();
  EXPECT_EQ(rs->RecordCount(), 2);
}

TEST_F(RecordsetTest, AbsolutePositionJumpsAndRefusesOnePastTheEnd) {
  for (int i = 1; i <= 3; ++i) AddMovement(i, "x", Currency());
  auto rs = db_->OpenRecordset("Movements", dbOpenDynaset);
  rs->AbsolutePosition(2);
  EXPECT_EQ(rs->Value("EntryID"), Variant(int32_t{3}));
  EXPECT_EQ(rs->AbsolutePosition(), 2);
  EXPECT_EQ(ErrorNumberOf([&] { rs->AbsolutePosition(3); }), kErrInvalidArgument);
}

TEST_F(RecordsetTest, TableTypeMoveLastAfterAddNewFindsTheNewRow) {
  MakeTable(*db_, "DbLog", {{"ID", FieldType::kLong, 0, "", true}, {"Comment", FieldType::kText}});
  auto rs = db_->OpenRecordset("DbLog", dbOpenTable);
  rs->AddNew();
  rs->Value("Comment", "opened");
  rs->Update();
  rs->MoveLast();
  EXPECT_EQ(rs->Value("Comment"), Variant("opened"));
}

TEST_F(RecordsetTest, DuplicateInAUniqueIndexRaises3022) {
  MakeTable(*db_, "Taxes", {{"ID", FieldType::kLong, 0, "", true}, {"Code", FieldType::kText}});
  AddIndex(*db_, "Taxes", "Code", {"Code"}, true);
  AddRow(*db_, "Taxes", {{"Code", "UST"}});
  EXPECT_EQ(ErrorNumberOf([&] { AddRow(*db_, "Taxes", {{"Code", "ust"}}); }), kErrDuplicate);
}

TEST_F(RecordsetTest, NullInAPrimaryKeyRaises3058) {
  MakeTable(*db_, "FC2", {{"ID", FieldType::kLong}, {"Key", FieldType::kText}});
  AddIndex(*db_, "FC2", "PrimaryKey", {"ID"}, true, true);
  EXPECT_EQ(ErrorNumberOf([&] { AddRow(*db_, "FC2", {{"Key", "CHF"}}); }), kErrNullInKey);
}

TEST_F(RecordsetTest, LongTableIsReadInChunksInOrder) {
  workspace_->BeginTrans();
  auto rs = db_->OpenRecordset("Movements", dbOpenTable);
  for (int i = 1; i <= 1000; ++i) {
    rs->AddNew();
    rs->Value("EntryID", int32_t{i});
    rs->Update();
  }
  workspace_->CommitTrans();
  rs->MoveFirst();
  int64_t sum = 0;
  int count = 0;
  while (!rs->Eof()) {
    sum += rs->Value("EntryID").AsLong();
    ++count;
    rs->MoveNext();
  }
  EXPECT_EQ(count, 1000);
  EXPECT_EQ(sum, 500500);
}

}  // namespace
}  // namespace ldg::store
