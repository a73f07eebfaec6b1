#include <gtest/gtest.h>

#include "store/store_error.hpp"
#include "tests/store/store_fixture.hpp"

namespace ldg::store {
namespace {

using testing::ErrorNumberOf;
using testing::ErrorTextOf;

class SchemaTest : public testing::StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    MakeTable(*db_, "Accounts", {{"ID", FieldType::kLong, 0, "", true}, {"Code", FieldType::kText, 20}});
  }
};

TEST_F(SchemaTest, TableDefsItemOfAnUnknownTableRaises) {
  EXPECT_EQ(ErrorNumberOf([&] { db_->TableDefs().Item("NoSuchTable"); }), kErrItemNotFound);
  EXPECT_EQ(ErrorTextOf([&] { db_->TableDefs().Item("NoSuchTable"); }), "Item not found in this collection.");
}

TEST_F(SchemaTest, TableNamesIgnoreCase) {
  EXPECT_EQ(db_->TableDefs().Item("ACCOUNTS")->Name(), "Accounts");
  EXPECT_EQ(db_->TableDefs().Item("accounts")->Fields().Item("code").Size(), 20);
}

TEST_F(SchemaTest, PropertiesItemOfAnUnknownNameRaises3270) {
  EXPECT_EQ(ErrorNumberOf([&] { db_->Properties().Item("Owner"); }), kErrPropertyNotFound);
  EXPECT_EQ(ErrorTextOf([&] { db_->Properties().Item("Owner"); }), "Property not found.");
}

TEST_F(SchemaTest, UserPropertiesAreKeptInTheFile) {
  db_->Properties().Append(db_->CreateProperty("Creator", FieldType::kText, "Velmora AG"));
  db_->Properties().Append(db_->CreateProperty("Product", FieldType::kText, "Velmora Suite V6"));
  db_->Close();
  auto again = workspace_->OpenDatabase(PathOf("book.qdb"));
  EXPECT_EQ(again->Properties().Item("creator")->Value(), Variant("Velmora AG"));
  EXPECT_EQ(again->Properties().Count(), 2);
  again->Properties().Delete("Product");
  EXPECT_EQ(ErrorNumberOf([&] { again->Properties().Item("Product"); }), kErrPropertyNotFound);
}

TEST_F(SchemaTest, FieldAddedToATableWithRowsIsNullInOldRowsAndDefaultInNewOnes) {
  AddRow(*db_, "Accounts", {{"Code", "1000"}});
  auto table = db_->TableDefs().Item("Accounts");
  auto journal = table->CreateField("DefinitiveJournal", FieldType::kLong);
  table->Fields().Append(journal);
  table->Fields().Item("DefinitiveJournal").DefaultValue("1");
  auto mark = table->CreateField("Mark1", FieldType::kBoolean);
  table->Fields().Append(mark);
  table->Fields().Item("Mark1").DefaultValue("False");
  AddRow(*db_, "Accounts", {{"Code", "1010"}});
  auto rs = db_->OpenRecordset("Accounts", dbOpenSnapshot);
  EXPECT_TRUE(rs->Value("DefinitiveJournal").IsNull());
  EXPECT_EQ(rs->Value("Mark1"), Variant(false));
  rs->MoveNext();
  EXPECT_EQ(rs->Value("DefinitiveJournal"), Variant(int32_t{1}));
  EXPECT_EQ(rs->Value("Mark1"), Variant(false));
}

TEST_F(SchemaTest, SizeSetAfterAppendHolds) {
  auto table = db_->TableDefs().Item("Accounts");
  table->Fields().Append(table->CreateField("Tags", FieldType::kText));
  EXPECT_EQ(table->Fields().Item("Tags").Size(), 50);
  table->Fields().Item("Tags").Size(255);
  EXPECT_EQ(db_->TableDefs().Item("Accounts")->Fields().Item("Tags").Size(), 255);
}

TEST_F(SchemaTest, FieldDeleteDropsTheColumn) {
  auto table = db_->TableDefs().Item("Accounts");
  table->Fields().Append(table->CreateField("Extra", FieldType::kLong));
  table->Fields().Delete("Extra");
  EXPECT_FALSE(db_->TableDefs().Item("Accounts")->Fields().Contains("Extra"));
  EXPECT_EQ(ErrorNumberOf([&] { table->Fields().Item("Extra"); }), kErrItemNotFound);
}

TEST_F(SchemaTest, EveryTableHasItsOwnPrimaryKey) {
  MakeTable(*db_, "Journals", {{"ID", FieldType::kLong, 0, "", true}, {"Name", FieldType::kText}});
  EXPECT_TRUE(db_->TableDefs().Item("Accounts")->Indexes().Contains("PrimaryKey"));
  EXPECT_TRUE(db_->TableDefs().Item("Journals")->Indexes().Contains("primarykey"));
}

TEST_F(SchemaTest, IndexOverTwoFieldsKeepsItsFieldsInOrder) {
  auto table = db_->TableDefs().Item("Accounts");
  table->Fields().Append(table->CreateField("Position", FieldType::kLong));
  AddIndex(*db_, "Accounts", "PositionCode", {"Position", "Code"});
  auto index = db_->TableDefs().Item("Accounts")->Indexes().Item("PositionCode");
  ASSERT_EQ(index->Fields().Count(), 2);
  EXPECT_EQ(index->Fields().Item(0).Name(), "Position");
  EXPECT_EQ(index->Fields().Item(1).Name(), "Code");
}

TEST_F(SchemaTest, UniqueIndexOverDuplicatesRaises3022) {
  AddRow(*db_, "Accounts", {{"Code", "1000"}});
  AddRow(*db_, "Accounts", {{"Code", "1000"}});
  EXPECT_EQ(ErrorNumberOf([&] { AddIndex(*db_, "Accounts", "Code", {"Code"}, true); }), kErrDuplicate);
  EXPECT_FALSE(db_->TableDefs().Item("Accounts")->Indexes().Contains("Code"));
}

TEST_F(SchemaTest, IndexDeleteRemovesIt) {
  AddIndex(*db_, "Accounts", "Code", {"Code"});
  db_->TableDefs().Item("Accounts")->Indexes().Delete("Code");
  EXPECT_FALSE(db_->TableDefs().Item("Accounts")->Indexes().Contains("Code"));
}

TEST_F(SchemaTest, TableDeleteRemovesTheTable) {
  db_->TableDefs().Delete("Accounts");
  EXPECT_FALSE(db_->TableDefs().Contains("Accounts"));
}

TEST_F(SchemaTest, TableRenameKeepsRowsAndIndexes) {
  AddRow(*db_, "Accounts", {{"Code", "1000"}});
  db_->TableDefs().Item("Accounts")->Name("Konten");
  auto rs = db_->OpenRecordset("Konten", dbOpenTable);
  rs->Index("PrimaryKey");
  rs->Seek("=", int32_t{1});
  EXPECT_EQ(rs->Value("Code"), Variant("1000"));
}

TEST_F(SchemaTest, ATableNameTakenRaises3012) {
  EXPECT_EQ(ErrorNumberOf([&] { MakeTable(*db_, "accounts", {{"X", FieldType::kLong}}); }), kErrObjectExists);
}

class RelationTest : public testing::StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    MakeTable(*db_, "Taxes", {{"ID", FieldType::kLong, 0, "", true}, {"Code", FieldType::kText}});
    MakeTable(*db_, "TaxHistories", {{"ID", FieldType::kLong, 0, "", true}, {"TaxID", FieldType::kLong}});
    MakeTable(*db_, "Accounts", {{"ID", FieldType::kLong, 0, "", true}, {"TaxID", FieldType::kLong}});
    Relate("TaxesTaxHistories", "Taxes", "TaxHistories", "TaxID", dbRelationDeleteCascade);
    Relate("TaxesAccounts", "Taxes", "Accounts", "TaxID", 0);
    AddRow(*db_, "Taxes", {{"Code", "UST"}});
    AddRow(*db_, "Taxes", {{"Code", "VST"}});
    AddRow(*db_, "TaxHistories", {{"TaxID", int32_t{1}}});
    AddRow(*db_, "TaxHistories", {{"TaxID", int32_t{2}}});
  }

  void Relate(const char* name, const char* parent, const char* child, const char* column,
              int32_t attributes) {
    auto relation = db_->CreateRelation(name, parent, child, attributes);
    auto field = relation->CreateField("ID");
    field->ForeignName(column);
    relation->Fields().Append(field);
    db_->Relations().Append(relation);
  }

  int32_t Rows(const char* table) { return db_->OpenRecordset(table, dbOpenTable)->RecordCount(); }
};

TEST_F(RelationTest, DeleteOfAParentWithChildrenIsRefusedWith3200) {
  AddRow(*db_, "Accounts", {{"TaxID", int32_t{1}}});
  auto rs = db_->OpenRecordset("Taxes", dbOpenTable);
  EXPECT_EQ(ErrorNumberOf([&] { rs->Delete(); }), kErrRelatedRecords);
  EXPECT_EQ(ErrorTextOf([&] { rs->Delete(); }),
            "The record cannot be deleted or changed because table 'Accounts' includes related records.");
  EXPECT_EQ(Rows("Taxes"), 2);
  EXPECT_EQ(Rows("TaxHistories"), 2);
}

TEST_F(RelationTest, CascadingRelationDeletesTheChildren) {
  auto rs = db_->OpenRecordset("Taxes", dbOpenTable);
  rs->Delete();
  EXPECT_EQ(Rows("Taxes"), 1);
  EXPECT_EQ(Rows("TaxHistories"), 1);
}

TEST_F(RelationTest, InsertOfAChildWithoutParentIsNotChecked) {
  AddRow(*db_, "Accounts", {{"TaxID", int32_t{99}}});
  EXPECT_EQ(Rows("Accounts"), 1);
}

TEST_F(RelationTest, RelationsAreListedByName) {
  EXPECT_EQ(db_->Relations().Count(), 2);
  auto relation = db_->Relations().Item("taxesaccounts");
  EXPECT_EQ(relation->Table(), "Taxes");
  EXPECT_EQ(relation->ForeignTable(), "Accounts");
  EXPECT_EQ(relation->Fields().Item(0).ForeignName(), "TaxID");
}

TEST_F(SchemaTest, QueryDefKeepsItsTextAsWritten) {
  const char* text = "SELECT Accounts.ID, Accounts.Code FROM Accounts ORDER BY Accounts.Code;";
  db_->CreateQueryDef("viewAccounts", text);
  EXPECT_EQ(db_->QueryDefs().Item("VIEWACCOUNTS")->SQL(), text);
  db_->QueryDefs().Item("viewAccounts")->SQL("SELECT * FROM Accounts;");
  EXPECT_EQ(db_->QueryDefs().Item("viewAccounts")->SQL(), "SELECT * FROM Accounts;");
}

TEST_F(SchemaTest, CreateQueryDefOfATakenNameRaises3012) {
  db_->CreateQueryDef("tempMovSums", "SELECT * FROM Accounts;");
  EXPECT_EQ(ErrorNumberOf([&] { db_->CreateQueryDef("tempMovSums", "SELECT * FROM Accounts;"); }),
            kErrObjectExists);
}

TEST_F(SchemaTest, QueryDefWithoutANameIsNotStored) {
  auto query = db_->CreateQueryDef("", "SELECT * FROM Accounts;");
  EXPECT_EQ(db_->QueryDefs().Count(), 0);
  EXPECT_EQ(query->SQL(), "SELECT * FROM Accounts;");
}

TEST_F(SchemaTest, QueryDefsDeleteAndRename) {
  db_->CreateQueryDef("viewBusinessYear5Get", "SELECT * FROM Accounts;");
  db_->QueryDefs().Item("viewBusinessYear5Get")->Name("viewBusinessYear6Get");
  EXPECT_TRUE(db_->QueryDefs().Contains("viewBusinessYear6Get"));
  EXPECT_FALSE(db_->QueryDefs().Contains("viewBusinessYear5Get"));
  db_->QueryDefs().Delete("viewBusinessYear6Get");
  EXPECT_EQ(ErrorNumberOf([&] { db_->QueryDefs().Item("viewBusinessYear6Get"); }), kErrItemNotFound);
}

TEST_F(SchemaTest, StoredQueryOpensAsARecordSet) {
  AddRow(*db_, "Accounts", {{"Code", "2000"}});
  AddRow(*db_, "Accounts", {{"Code", "1000"}});
  db_->CreateQueryDef("viewAccounts",
                      "SELECT Accounts.ID, Accounts.Code FROM Accounts ORDER BY Accounts.Code;");
  auto rs = db_->OpenRecordset("viewAccounts", dbOpenSnapshot);
  EXPECT_EQ(rs->Value("Code"), Variant("1000"));
  EXPECT_EQ(rs->Value("Accounts.Code"), Variant("1000"));
}

TEST_F(SchemaTest, QueryParametersAreFilledByName) {
  AddRow(*db_, "Accounts", {{"Code", "1000"}});
  AddRow(*db_, "Accounts", {{"Code", "2000"}});
  auto query = db_->CreateQueryDef(
      "viewByCode", "PARAMETERS WantedCode Text; SELECT * FROM Accounts WHERE Code = [WantedCode];");
  auto again = db_->QueryDefs().Item("viewByCode");
  again->Parameters().Item("wantedcode").Value("2000");
  auto rs = again->OpenRecordset(dbOpenSnapshot);
  EXPECT_EQ(rs->Value("ID"), Variant(int32_t{2}));
}

TEST_F(SchemaTest, QueryWithAParameterLeftUnsetRaises3061) {
  db_->CreateQueryDef("viewByCode",
                      "PARAMETERS WantedCode Text; SELECT * FROM Accounts WHERE Code = [WantedCode];");
  auto query = db_->QueryDefs().Item("viewByCode");
  EXPECT_EQ(ErrorNumberOf([&] { query->OpenRecordset(dbOpenSnapshot); }), kErrTooFewParameters);
  EXPECT_EQ(ErrorTextOf([&] { query->OpenRecordset(dbOpenSnapshot); }), "Too few parameters. Expected 1.");
}

TEST_F(SchemaTest, ActionQueryExecutesWithItsParameter) {
  AddRow(*db_, "Accounts", {{"Code", "1000"}});
  AddRow(*db_, "Accounts", {{"Code", "2000"}});
  db_->CreateQueryDef("DeleteAccount",
                      "PARAMETERS WantedID Long; DELETE * FROM Accounts WHERE ID = [WantedID];");
  auto query = db_->QueryDefs().Item("DeleteAccount");
  query->Parameters().Item("WantedID").Value(int32_t{1});
  query->Execute(dbFailOnError);
  EXPECT_EQ(query->RecordsAffected(), 1);
  EXPECT_EQ(db_->OpenRecordset("Accounts", dbOpenTable)->RecordCount(), 1);
}

TEST_F(SchemaTest, UpdatableQueryWritesThroughToItsTable) {
  AddRow(*db_, "Accounts", {{"Code", "1000"}});
  db_->CreateQueryDef("viewAccountCodes", "SELECT Accounts.ID, Accounts.Code FROM Accounts;");
  auto rs = db_->OpenRecordset("viewAccountCodes", dbOpenDynaset);
  rs->AddNew();
  rs->Value("Accounts.Code", "3000");
  rs->Update();
  rs->Edit();
  rs->Value("Code", "1001");
  rs->Update();
  auto check = db_->OpenRecordset("Accounts", dbOpenTable);
  EXPECT_EQ(check->Value("Code"), Variant("1001"));
  check->MoveNext();
  EXPECT_EQ(check->Value("Code"), Variant("3000"));
}

TEST_F(SchemaTest, ParameterQueryOverOneTableStaysUpdatable) {
  MakeTable(*db_, "BusinessYears",
            {{"ID", FieldType::kLong}, {"Status", FieldType::kInteger}, {"DbName", FieldType::kText}});
  AddIndex(*db_, "BusinessYears", "PrimaryKey", {"ID"}, true, true);
  AddRow(*db_, "BusinessYears", {{"ID", int32_t{1}}, {"Status", int16_t{1}}, {"DbName", "Year2023.qdb"}});
  db_->CreateQueryDef("viewYear",
                      "PARAMETERS WantedName Text; SELECT BusinessYears.ID, BusinessYears.Status, "
                      "BusinessYears.DBName FROM BusinessYears WHERE BusinessYears.DbName = [WantedName];");
  auto query = db_->QueryDefs().Item("viewYear");
  query->Parameters().Item("WantedName").Value("YEAR2023.QDB");
  auto rs = query->OpenRecordset(dbOpenDynaset);
  ASSERT_FALSE(rs->Eof());
  EXPECT_EQ(rs->Value("BusinessYears.DBName"), Variant("Year2023.qdb"));
  EXPECT_EQ(rs->Value("DbName"), Variant("Year2023.qdb"));
  rs->AddNew();
  rs->Value("ID", int32_t{2});
  rs->Value("Status", int16_t{1});
  rs->Value("BusinessYears.DBName", "Year2024.qdb");
  rs->Update();
  rs->Edit();
  rs->Value("Status", int16_t{2});
  rs->Update();
  auto check = db_->OpenRecordset("BusinessYears", dbOpenTable);
  EXPECT_EQ(check->Value("Status"), Variant(int16_t{2}));
  check->MoveNext();
  EXPECT_EQ(check->Value("DbName"), Variant("Year2024.qdb"));
}

TEST_F(SchemaTest, LinkedTableReadsAndWritesTheOtherFile) {
  auto other = engine_->CreateDatabase(PathOf("other.qdb"));
  MakeTable(*other, "BusinessYears", {{"ID", FieldType::kLong}, {"DbName", FieldType::kText}});
  AddRow(*other, "BusinessYears", {{"ID", int32_t{1}}, {"DbName", "y1.qdb"}});
  other->Close();
  auto link = db_->CreateTableDef("BusinessYears1");
  link->Connect(";DATABASE=" + PathOf("other.qdb"));
  link->SourceTableName("BusinessYears");
  db_->TableDefs().Append(link);
  AddRow(*db_, "BusinessYears1", {{"ID", int32_t{2}}, {"DBName", "y2.qdb"}});
  auto rs = db_->OpenRecordset("BusinessYears1", dbOpenSnapshot);
  rs->MoveLast();
  EXPECT_EQ(rs->RecordCount(), 2);
  EXPECT_EQ(rs->Value("dbname"), Variant("y2.qdb"));
  db_->TableDefs().Delete("BusinessYears1");
  auto reopened = engine_->OpenDatabase(PathOf("other.qdb"));
  EXPECT_EQ(reopened->OpenRecordset("BusinessYears", dbOpenTable)->RecordCount(), 2);
}

}  // namespace
}  // namespace ldg::store
