#include "engine/schema_upkeep.hpp"

#include <gtest/gtest.h>

#include <string>

#include "engine/startup_checks.hpp"
#include "store/constants.hpp"
#include "support/nullable.hpp"
#include "template_file_fixture.hpp"

namespace ldg {
namespace {

using store::FieldType;

class SchemaUpkeepTest : public testing::TemplateFileTest {
 protected:
  // A table without any index, holding two rows.
  void MakeBareTableWithRows(const std::string& name) {
    auto table = db_->CreateTableDef(name);
    table->Fields().Append(table->CreateField("ID", FieldType::kLong));
    table->Fields().Append(table->CreateField("Note", FieldType::kText));
    db_->TableDefs().Append(table);
    db_->Execute("INSERT INTO " + name + " (ID, Note) VALUES (1, 'one');", store::dbFailOnError);
    db_->Execute("INSERT INTO " + name + " (ID, Note) VALUES (2, 'two');", store::dbFailOnError);
  }

  void ExpectField(const std::string& table, const std::string& field, FieldType type, int32_t size,
                   const std::string& default_value) {
    SCOPED_TRACE(table + "." + field);
    ASSERT_TRUE(HasField(table, field));
    store::Field& column = FieldOf(table, field);
    EXPECT_EQ(column.Type(), type);
    if (size > 0) {
      EXPECT_EQ(column.Size(), size);
    }
    EXPECT_EQ(column.DefaultValue(), default_value);
  }

  void ExpectIndex(const std::string& table, const std::string& index, bool unique,
                   const std::vector<std::string>& fields) {
    SCOPED_TRACE(table + " index " + index);
    ASSERT_TRUE(HasIndex(table, index));
    auto found = db_->TableDefs().Item(table)->Indexes().Item(index);
    EXPECT_EQ(found->Unique(), unique);
    ASSERT_EQ(found->Fields().Count(), static_cast<int>(fields.size()));
    for (size_t i = 0; i < fields.size(); ++i) {
      EXPECT_EQ(found->Fields().Item(static_cast<int>(i)).Name(), fields[i]);
    }
  }

  void RunAllUpkeep() {
    RunInternalChecks(*db_);
    RunStartupRepairs(*db_);
    UpdateDbLogTable(*db_);
    UpdatePeriods2Table(*db_);
    UpdateVat2TreeTable(*db_);
    UpdateVat2LinkTable(*db_);
    UpdateFC2Tables(*db_);
    UpdateFCTables(*db_);
  }
};

// ---- the columns and queries later code counts on ----

TEST_F(SchemaUpkeepTest, FreshTemplateGetsTheOpenColumnsOfAccounts) {
  ASSERT_FALSE(HasField("Accounts", "SaveOB"));
  UpdateAccountsTable(*db_);
  ExpectField("Accounts", "DeleteOnCloture", FieldType::kBoolean, 0, "");
  ExpectField("Accounts", "SaveOB", FieldType::kCurrency, 0, "0");
  ExpectField("Accounts", "WorkedOpeningBalance", FieldType::kCurrency, 0, "0");
  ExpectField("Accounts", "WorkedBalance", FieldType::kCurrency, 0, "0");
  ExpectField("Accounts", "PostFix", FieldType::kText, 10, "");
  ExpectField("Accounts", "Tags", FieldType::kText, 255, "");
  ExpectField("Accounts", "FCID2", FieldType::kLong, 0, "0");
  ExpectField("Accounts", "KeyPositionCode", FieldType::kText, 100, "");
  ExpectField("Accounts", "LiegenCode", FieldType::kLong, 0, "0");
  ExpectIndex("Accounts", "KeyPositionCode", false, {"KeyPositionCode"});
}

TEST_F(SchemaUpkeepTest, FreshTemplateGetsTheOpenColumnsOfBookEntries) {
  UpdateBookEntriesTable(*db_);
  UpdateBookEntriesMarks(*db_);
  ExpectField("BookEntries", "DefinitiveJournal", FieldType::kLong, 0, "1");
  ExpectField("BookEntries", "Tag", FieldType::kText, 50, "");
  ExpectField("BookEntries", "Tags", FieldType::kText, 255, "");
  for (int i = 1; i <= 6; ++i)
    ExpectField("BookEntries", "Mark" + std::to_string(i), FieldType::kBoolean, 0, "False");
}

TEST_F(SchemaUpkeepTest, FreshTemplateGetsDefinitiveSetsNumber) {
  UpdateDefinitiveSetsTable(*db_);
  ExpectField("DefinitiveSets", "Number", FieldType::kLong, 0, "1");
}

TEST_F(SchemaUpkeepTest, VatAccountsKeepsItsColumnsAndNonUniqueIndexes) {
  UpdateVatAccountsTable(*db_);
  ExpectField("VatAccounts", "Key", FieldType::kText, 50, "");
  ExpectField("VatAccounts", "Code", FieldType::kText, 50, "");
  ExpectField("VatAccounts", "Rate", FieldType::kDouble, 0, "");
  ExpectIndex("VatAccounts", "Key", false, {"Key"});
  ExpectIndex("VatAccounts", "Code", false, {"Code"});
  ExpectIndex("VatAccounts", "PrimaryKey", true, {"ID"});
  ExpectIndex("VatAccounts", "ID", false, {"ID"});
}

TEST_F(SchemaUpkeepTest, EveryColumnAndQueryTheEngineUsesExistsAfterOneRun) {
  RunAllUpkeep();
  for (const char* field : {"DeleteOnCloture", "SaveOB", "WorkedOpeningBalance", "WorkedBalance", "PostFix",
                            "Tags", "FCID2", "KeyPositionCode", "LiegenCode"}) {
    EXPECT_TRUE(HasField("Accounts", field)) << field;
  }
  for (const char* field :
       {"Tag", "DefinitiveJournal", "Tags", "Mark1", "Mark2", "Mark3", "Mark4", "Mark5", "Mark6"}) {
    EXPECT_TRUE(HasField("BookEntries", field)) << field;
  }
  EXPECT_TRUE(HasField("DefinitiveSets", "Number"));
  for (const char* query : {"viewAccountsRecursive", "viewAccountsIndexGL", "viewAccountsIndexDetail"}) {
    EXPECT_TRUE(HasQuery(query)) << query;
  }
  for (const char* table : {"DbLog", "Periods2", "Vat2Tree", "Vat2Link", "FC2", "FC2Rate", "FC", "FCRate"}) {
    EXPECT_TRUE(db_->TableDefs().Contains(table)) << table;
  }
}

TEST_F(SchemaUpkeepTest, RunningEverythingTwiceChangesNothing) {
  RunAllUpkeep();
  std::string first = SchemaDump();
  RunAllUpkeep();
  EXPECT_EQ(SchemaDump(), first);
}

TEST_F(SchemaUpkeepTest, TextOf255CharactersFitsTheTagsColumn) {
  UpdateAccountsTable(*db_);
  int32_t id = AddAccount("1000", Currency());
  std::string tags(255, 'x');
  db_->Execute("UPDATE Accounts SET Tags = '" + tags + "' WHERE ID = " + std::to_string(id) + ";",
               store::dbFailOnError);
  EXPECT_EQ(ReadString(ValueOf("SELECT Tags FROM Accounts WHERE ID = " + std::to_string(id) + ";", "Tags")),
            tags);
}

TEST_F(SchemaUpkeepTest, TextOf255CharactersFitsTheTagsColumnThroughARecordSet) {
  UpdateAccountsTable(*db_);
  AddAccount("1000", Currency());
  std::string tags(255, 'y');
  auto rows = db_->OpenRecordset("Accounts", store::dbOpenTable);
  rows->Edit();
  rows->Value("Tags", tags);
  rows->Update();
  rows->Close();
  EXPECT_EQ(ReadString(ValueOf("SELECT Tags FROM Accounts;", "Tags")), tags);
}

// ---- EnsureTable ----

TEST_F(SchemaUpkeepTest, EnsureTableCreatesAMissingTableWithACounter) {
  EnsureTable(*db_, "Extra", true);
  ASSERT_TRUE(db_->TableDefs().Contains("Extra"));
  EXPECT_EQ(FieldOf("Extra", "ID").Type(), FieldType::kLong);
  EXPECT_EQ(FieldOf("Extra", "ID").Attributes() & store::dbAutoIncrField, store::dbAutoIncrField);
  ExpectIndex("Extra", "PrimaryKey", true, {"ID"});
  EXPECT_TRUE(db_->TableDefs().Item("Extra")->Indexes().Item("PrimaryKey")->Primary());
  ExpectIndex("Extra", "ID", false, {"ID"});
  EXPECT_FALSE(db_->TableDefs().Item("Extra")->Indexes().Item("ID")->Primary());
}

TEST_F(SchemaUpkeepTest, EnsureTableWithoutTheFlagMakesAPlainLongId) {
  EnsureTable(*db_, "Extra", false);
  EXPECT_EQ(FieldOf("Extra", "ID").Attributes() & store::dbAutoIncrField, 0);
}

TEST_F(SchemaUpkeepTest, ATableWithRowsThatLacksPrimaryKeyGetsIt) {
  MakeBareTableWithRows("Old");
  ASSERT_FALSE(HasIndex("Old", "PrimaryKey"));
  EnsureTable(*db_, "Old", false);
  ExpectIndex("Old", "PrimaryKey", true, {"ID"});
  ExpectIndex("Old", "ID", false, {"ID"});
  EXPECT_EQ(CountOf("Old"), 2);
}

TEST_F(SchemaUpkeepTest, PrimaryKeyAndIdIndexesExistOnSeveralTablesAtOnce) {
  EnsureTable(*db_, "First", true);
  EnsureTable(*db_, "Second", true);
  EXPECT_TRUE(HasIndex("First", "PrimaryKey"));
  EXPECT_TRUE(HasIndex("Second", "PrimaryKey"));
  EXPECT_TRUE(HasIndex("First", "ID"));
  EXPECT_TRUE(HasIndex("Second", "ID"));
}

// ---- EnsureField ----

TEST_F(SchemaUpkeepTest, AColumnAddedToRowsHoldsNullThereAndTheDefaultInNewRows) {
  int32_t old_id = AddAccount("1000", Currency::FromUnits(5));
  EnsureField(*db_, "Accounts", "SaveOB", FieldType::kCurrency, "0");
  EXPECT_TRUE(
      ValueOf("SELECT SaveOB FROM Accounts WHERE ID = " + std::to_string(old_id) + ";", "SaveOB").IsNull());
  int32_t new_id = AddAccount("1001", Currency());
  EXPECT_EQ(ReadCurrency(
                ValueOf("SELECT SaveOB FROM Accounts WHERE ID = " + std::to_string(new_id) + ";", "SaveOB")),
            Currency());
  EXPECT_FALSE(
      ValueOf("SELECT SaveOB FROM Accounts WHERE ID = " + std::to_string(new_id) + ";", "SaveOB").IsNull());
}

TEST_F(SchemaUpkeepTest, ADefaultOfOneAppliesToRowsInsertedWithoutTheColumn) {
  db_->Execute("INSERT INTO DefinitiveSets (User) VALUES ('old');", store::dbFailOnError);
  UpdateDefinitiveSetsTable(*db_);
  db_->Execute("INSERT INTO DefinitiveSets (User) VALUES ('new');", store::dbFailOnError);
  EXPECT_TRUE(ValueOf("SELECT Number FROM DefinitiveSets WHERE User = 'old';", "Number").IsNull());
  EXPECT_EQ(ReadLong(ValueOf("SELECT Number FROM DefinitiveSets WHERE User = 'new';", "Number")), 1);
}

TEST_F(SchemaUpkeepTest, EnsureFieldWithoutIndexedRemovesAnIndexNamedLikeTheField) {
  UpdateAccountsTable(*db_);
  auto accounts = db_->TableDefs().Item("Accounts");
  auto index = accounts->CreateIndex("Tags");
  index->Fields().Append(index->CreateField("Tags"));
  accounts->Indexes().Append(index);
  ASSERT_TRUE(HasIndex("Accounts", "Tags"));
  EnsureField(*db_, "Accounts", "Tags", FieldType::kText, std::nullopt, 255);
  EXPECT_FALSE(HasIndex("Accounts", "Tags"));
}

TEST_F(SchemaUpkeepTest, EnsureFieldWithIndexedFalseLeavesTheIndexAlone) {
  EnsureField(*db_, "Accounts", "Code", FieldType::kText, std::nullopt, std::nullopt, false);
  ExpectIndex("Accounts", "Code", true, {"Code"});
}

TEST_F(SchemaUpkeepTest, EnsureFieldIndexedCreatesAUniqueIndexWhenAsked) {
  EnsureTable(*db_, "Extra", true);
  EnsureField(*db_, "Extra", "Key", FieldType::kText, std::nullopt, 50, true, true);
  ExpectIndex("Extra", "Key", true, {"Key"});
}

TEST_F(SchemaUpkeepTest, EnsureFieldIndexedKeepsAnIndexThatExistsAsItIs) {
  // VatAccounts.Key holds a non-unique index; asking for a unique one changes nothing.
  EnsureField(*db_, "VatAccounts", "Key", FieldType::kText, std::nullopt, std::nullopt, true, true);
  ExpectIndex("VatAccounts", "Key", false, {"Key"});
}

TEST_F(SchemaUpkeepTest, EnsureFieldWithoutDefaultRemovesAnOldDefault) {
  EnsureTable(*db_, "Extra", true);
  EnsureField(*db_, "Extra", "Count", FieldType::kLong, "5");
  ASSERT_EQ(FieldOf("Extra", "Count").DefaultValue(), "5");
  EnsureField(*db_, "Extra", "Count", FieldType::kLong);
  EXPECT_EQ(FieldOf("Extra", "Count").DefaultValue(), "");
}

TEST_F(SchemaUpkeepTest, EnsureFieldSetsTheSizeOfAColumnThatExists) {
  EnsureTable(*db_, "Extra", true);
  EnsureField(*db_, "Extra", "Note", FieldType::kText);
  ASSERT_EQ(FieldOf("Extra", "Note").Size(), 50);
  EnsureField(*db_, "Extra", "Note", FieldType::kText, std::nullopt, 255);
  EXPECT_EQ(FieldOf("Extra", "Note").Size(), 255);
}

TEST_F(SchemaUpkeepTest, EnsureFieldKeepsTheTypeOfAColumnThatExists) {
  EnsureField(*db_, "Accounts", "Code", FieldType::kLong, std::nullopt, std::nullopt, false);
  EXPECT_EQ(FieldOf("Accounts", "Code").Type(), FieldType::kText);
}

TEST_F(SchemaUpkeepTest, EnsureFieldOnAMissingTableRaisesNothingAndCreatesNothing) {
  EXPECT_NO_THROW(EnsureField(*db_, "NoSuchTable", "X", FieldType::kLong, "0", std::nullopt, true));
  EXPECT_FALSE(db_->TableDefs().Contains("NoSuchTable"));
}

TEST_F(SchemaUpkeepTest, UpkeepOnATableWithRowsKeepsTheRows) {
  int32_t id = AddAccount("1000", Currency::FromUnits(7));
  UpdateAccountsTable(*db_);
  EXPECT_EQ(CountOf("Accounts"), 1);
  EXPECT_EQ(ReadCurrency(ValueOf("SELECT OpeningBalance FROM Accounts WHERE ID = " + std::to_string(id) + ";",
                                 "OpeningBalance")),
            Currency::FromUnits(7));
}

// ---- EnsureIndex ----

TEST_F(SchemaUpkeepTest, EnsureIndexNamesTheIndexAfterTheListWithoutSemicolons) {
  UpdateFC2Tables(*db_);
  ExpectIndex("FC2Rate", "FCIDBeginDate", false, {"FCID", "BeginDate"});
}

TEST_F(SchemaUpkeepTest, EnsureIndexSetsUniqueByTheFlag) {
  EnsureTable(*db_, "Extra", true);
  EnsureField(*db_, "Extra", "A", FieldType::kLong);
  EnsureField(*db_, "Extra", "B", FieldType::kLong);
  EnsureIndex(*db_, "Extra", "A;B", true);
  ExpectIndex("Extra", "AB", true, {"A", "B"});
}

TEST_F(SchemaUpkeepTest, EnsureIndexLeavesAnIndexOfThatNameAlone) {
  EnsureTable(*db_, "Extra", true);
  EnsureField(*db_, "Extra", "A", FieldType::kLong);
  EnsureIndex(*db_, "Extra", "A", false);
  EnsureIndex(*db_, "Extra", "A", true);
  ExpectIndex("Extra", "A", false, {"A"});
}

TEST_F(SchemaUpkeepTest, EnsureIndexOnAMissingColumnRaisesNothing) {
  EnsureTable(*db_, "Extra", true);
  EXPECT_NO_THROW(EnsureIndex(*db_, "Extra", "Missing", false));
  EXPECT_FALSE(HasIndex("Extra", "Missing"));
}

// ---- PruneFields ----

TEST_F(SchemaUpkeepTest, DbLogUpkeepDropsAnExtraColumnAndKeepsTheRows) {
  UpdateDbLogTable(*db_);
  auto log = db_->TableDefs().Item("DbLog");
  log->Fields().Append(log->CreateField("Foo", FieldType::kText));
  db_->Execute("INSERT INTO DbLog (Comment, Foo) VALUES ('kept', 'x');", store::dbFailOnError);
  UpdateDbLogTable(*db_);
  EXPECT_FALSE(HasField("DbLog", "Foo"));
  EXPECT_EQ(ReadString(ValueOf("SELECT Comment FROM DbLog;", "Comment")), "kept");
  EXPECT_EQ(db_->TableDefs().Item("DbLog")->Fields().Count(), 6);
}

TEST_F(SchemaUpkeepTest, PruneFieldsWithKeepAllDeletesNothing) {
  EnsureTable(*db_, "Extra", true);
  EnsureField(*db_, "Extra", "A", FieldType::kLong);
  EnsureTable(*db_, "Extra", true);
  PruneFields(*db_, "Extra", true);
  EXPECT_TRUE(HasField("Extra", "A"));
}

TEST_F(SchemaUpkeepTest, PruneFieldsWithoutAListDeletesNothing) {
  EnsureTable(*db_, "Extra", true);
  EnsureField(*db_, "Extra", "A", FieldType::kLong);
  PruneFields(*db_, "Extra", false);  // uses and drops the list
  PruneFields(*db_, "Accounts", false);
  EXPECT_TRUE(HasField("Accounts", "Code"));
  EXPECT_EQ(db_->TableDefs().Item("Accounts")->Fields().Count(),
            static_cast<int>(Description().Table("Accounts")->fields.size()));
}

TEST_F(SchemaUpkeepTest, PruneFieldsByTheListOfAnotherTableDeletesNothing) {
  EnsureTable(*db_, "Extra", true);
  PruneFields(*db_, "Accounts", false);
  EXPECT_EQ(db_->TableDefs().Item("Accounts")->Fields().Count(),
            static_cast<int>(Description().Table("Accounts")->fields.size()));
}

TEST_F(SchemaUpkeepTest, Vat2TreeUpkeepDropsAColumnItDoesNotList) {
  UpdateVat2TreeTable(*db_);
  auto tree = db_->TableDefs().Item("Vat2Tree");
  tree->Fields().Append(tree->CreateField("Obsolete", FieldType::kLong));
  UpdateVat2TreeTable(*db_);
  EXPECT_FALSE(HasField("Vat2Tree", "Obsolete"));
  EXPECT_EQ(db_->TableDefs().Item("Vat2Tree")->Fields().Count(), 19);
}

// ---- EnsureRelation ----

TEST_F(SchemaUpkeepTest, EnsureRelationCreatesTheRelationOnce) {
  UpdateFCTables(*db_);
  ASSERT_TRUE(db_->Relations().Contains("FCFCRate"));
  int count = db_->Relations().Count();
  UpdateFCTables(*db_);
  EXPECT_EQ(db_->Relations().Count(), count);
  auto relation = db_->Relations().Item("FCFCRate");
  EXPECT_EQ(relation->Table(), "FC");
  EXPECT_EQ(relation->ForeignTable(), "FCRate");
}

TEST_F(SchemaUpkeepTest, DeletingACurrencyOfFcDeletesItsRates) {
  UpdateFCTables(*db_);
  db_->Execute("INSERT INTO FC (ID, [Key]) VALUES (1, 'EUR');", store::dbFailOnError);
  db_->Execute("INSERT INTO FCRate (ID, FCID, Rate) VALUES (1, 1, 1.1);", store::dbFailOnError);
  db_->Execute("DELETE FROM FC WHERE ID = 1;", store::dbFailOnError);
  EXPECT_EQ(CountOf("FCRate"), 0);
}

// ---- the tables added at first use ----

TEST_F(SchemaUpkeepTest, Periods2HasItsColumnsAndAUniqueDateFromIndex) {
  UpdatePeriods2Table(*db_);
  EXPECT_EQ(FieldOf("Periods2", "ID").Attributes() & store::dbAutoIncrField, store::dbAutoIncrField);
  ExpectField("Periods2", "DateFrom", FieldType::kDate, 0, "");
  ExpectField("Periods2", "DateTo", FieldType::kDate, 0, "");
  ExpectField("Periods2", "LockingState", FieldType::kLong, 0, "0");
  ExpectIndex("Periods2", "DateFrom", true, {"DateFrom"});
  ExpectIndex("Periods2", "PrimaryKey", true, {"ID"});
}

TEST_F(SchemaUpkeepTest, Vat2TreeHasItsColumnsAndAUniqueKey) {
  UpdateVat2TreeTable(*db_);
  ExpectField("Vat2Tree", "Key", FieldType::kText, 50, "");
  ExpectField("Vat2Tree", "Text", FieldType::kText, 50, "");
  ExpectField("Vat2Tree", "AccTrafficTxt", FieldType::kText, 255, "");
  ExpectField("Vat2Tree", "AccBookingTxt", FieldType::kText, 255, "");
  ExpectField("Vat2Tree", "RateTxt", FieldType::kText, 255, "");
  ExpectField("Vat2Tree", "TimeStamp", FieldType::kDate, 0, "");
  ExpectField("Vat2Tree", "VatMaster", FieldType::kBoolean, 0, "");
  ExpectIndex("Vat2Tree", "Key", true, {"Key"});
}

TEST_F(SchemaUpkeepTest, Vat2LinkHasItsIndexes) {
  UpdateVat2LinkTable(*db_);
  ExpectField("Vat2Link", "Rate", FieldType::kDouble, 0, "");
  ExpectIndex("Vat2Link", "Key", false, {"Key"});
  ExpectIndex("Vat2Link", "AccBookingCode", false, {"AccBookingCode"});
  ExpectIndex("Vat2Link", "AccTrafficCode", false, {"AccTrafficCode"});
  ExpectIndex("Vat2Link", "KeyAccTrafficCode", false, {"Key", "AccTrafficCode"});
}

TEST_F(SchemaUpkeepTest, FC2TablesHaveTheirColumnsAndAPlainId) {
  UpdateFC2Tables(*db_);
  EXPECT_EQ(FieldOf("FC2", "ID").Attributes() & store::dbAutoIncrField, 0);
  EXPECT_EQ(FieldOf("FC2Rate", "ID").Attributes() & store::dbAutoIncrField, 0);
  ExpectField("FC2", "Key", FieldType::kText, 50, "");
  ExpectField("FC2", "Description", FieldType::kText, 50, "");
  ExpectField("FC2", "Decimals", FieldType::kLong, 0, "2");
  ExpectField("FC2", "LossID", FieldType::kLong, 0, "0");
  ExpectField("FC2", "GainID", FieldType::kLong, 0, "0");
  ExpectIndex("FC2", "Key", true, {"Key"});
  ExpectField("FC2Rate", "FCID", FieldType::kLong, 0, "");
  ExpectField("FC2Rate", "BeginDate", FieldType::kDate, 0, "");
  ExpectField("FC2Rate", "Rate", FieldType::kCurrency, 0, "");
}

TEST_F(SchemaUpkeepTest, DbLogHasItsColumnsAndATimeOpenIndex) {
  UpdateDbLogTable(*db_);
  ExpectField("DbLog", "TimeOpen", FieldType::kDate, 0, "");
  ExpectField("DbLog", "TimeClose", FieldType::kDate, 0, "");
  ExpectField("DbLog", "COMPUTERNAME", FieldType::kText, 50, "");
  ExpectField("DbLog", "USERNAME", FieldType::kText, 50, "");
  ExpectField("DbLog", "Comment", FieldType::kText, 50, "");
  ExpectIndex("DbLog", "TimeOpen", false, {"TimeOpen"});
}

}  // namespace
}  // namespace ldg
