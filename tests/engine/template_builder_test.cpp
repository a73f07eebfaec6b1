#include "engine/schema/template_builder.hpp"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>

#include "engine/schema/schema_description.hpp"
#include "store/constants.hpp"
#include "store/db_engine.hpp"
#include "store/store_error.hpp"
#include "support/error.hpp"
#include "support/ole_date.hpp"
#include "support/variant.hpp"

namespace ldg::schema {
namespace {

using store::FieldType;

std::filesystem::path TemplateSchemaPath() {
  return std::filesystem::path(LDG_TEST_DATA) / ".." / ".." / "engine" / "schema" / "template.schema";
}

const SchemaDescription& Description() {
  static const SchemaDescription schema = LoadSchemaDescription(TemplateSchemaPath());
  return schema;
}

class TemplateBuilderTest : public ::testing::Test {
 protected:
  void SetUp() override {
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    folder_ = std::filesystem::temp_directory_path() /
              ("ldg_template_" + std::to_string(::getpid()) + "_" + info->name());
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
    path_ = (folder_ / "ldg6f.qdb6f").string();
    engine_ = store::NewSqliteEngine();
    TemplateBuilder(Description()).Build(*engine_, path_);
    database_ = engine_->OpenDatabase(path_);
  }

  void TearDown() override {
    if (database_) database_->Close();
    database_.reset();
    engine_.reset();
    std::filesystem::remove_all(folder_);
  }

  int32_t ErrorNumberOf(auto&& action) {
    try {
      action();
    } catch (const Error& error) {
      return error.Number();
    }
    return 0;
  }

  std::filesystem::path folder_;
  std::string path_;
  std::unique_ptr<store::DBEngine> engine_;
  std::shared_ptr<store::Database> database_;
};

TEST_F(TemplateBuilderTest, BuildsEveryDescribedTableAndNoOther) {
  for (const TableDescription& table : Description().tables) {
    EXPECT_TRUE(database_->TableDefs().Contains(table.name)) << table.name;
  }
  EXPECT_EQ(database_->TableDefs().Count(), static_cast<int>(Description().tables.size()));
  EXPECT_FALSE(database_->TableDefs().Contains("Periods2"));
  EXPECT_FALSE(database_->TableDefs().Contains("DbLog"));
}

TEST_F(TemplateBuilderTest, FieldsKeepTheirOrderTypesSizesCountersAndDefaults) {
  for (const TableDescription& table : Description().tables) {
    std::shared_ptr<store::TableDef> table_def = database_->TableDefs().Item(table.name);
    store::Fields& fields = table_def->Fields();
    ASSERT_EQ(fields.Count(), static_cast<int>(table.fields.size())) << table.name;
    for (size_t i = 0; i < table.fields.size(); ++i) {
      const FieldDescription& want = table.fields[i];
      store::Field& field = fields.Item(static_cast<int>(i));
      std::string where = table.name + "." + want.name;
      EXPECT_EQ(field.Name(), want.name) << where;
      EXPECT_EQ(field.Type(), want.type) << where;
      if (want.type == FieldType::kText) {
        EXPECT_EQ(field.Size(), want.size) << where;
      }
      EXPECT_EQ((field.Attributes() & store::dbAutoIncrField) != 0, want.counter) << where;
      EXPECT_EQ(field.DefaultValue(), want.default_value.value_or("")) << where;
    }
  }
}

TEST_F(TemplateBuilderTest, AccountsTextColumnsHaveTheirChosenSizes) {
  std::shared_ptr<store::TableDef> accounts = database_->TableDefs().Item("Accounts");
  store::Fields& fields = accounts->Fields();
  EXPECT_EQ(fields.Item("Code").Size(), 50);
  EXPECT_EQ(fields.Item("Name").Size(), 255);
}

TEST_F(TemplateBuilderTest, IndexesKeepTheirPerTableNamesAndKeys) {
  for (const TableDescription& table : Description().tables) {
    std::shared_ptr<store::TableDef> table_def = database_->TableDefs().Item(table.name);
    store::Indexes& indexes = table_def->Indexes();
    for (const IndexDescription& want : table.indexes) {
      std::string where = table.name + "." + want.name;
      ASSERT_TRUE(indexes.Contains(want.name)) << where;
      std::shared_ptr<store::Index> index = indexes.Item(want.name);
      EXPECT_EQ(index->Primary(), want.primary) << where;
      EXPECT_EQ(index->Unique(), want.unique) << where;
      ASSERT_EQ(index->Fields().Count(), static_cast<int>(want.fields.size())) << where;
      for (size_t i = 0; i < want.fields.size(); ++i) {
        EXPECT_EQ(index->Fields().Item(static_cast<int>(i)).Name(), want.fields[i]) << where;
      }
    }
  }
}

TEST_F(TemplateBuilderTest, SettingsPrimaryKeyRunsOverModuleIdThenSection) {
  std::shared_ptr<store::TableDef> settings = database_->TableDefs().Item("Settings");
  std::shared_ptr<store::Index> primary = settings->Indexes().Item("PrimaryKey");
  ASSERT_EQ(primary->Fields().Count(), 2);
  EXPECT_EQ(primary->Fields().Item(0).Name(), "SettingModuleID");
  EXPECT_EQ(primary->Fields().Item(1).Name(), "SettingSection");
}

TEST_F(TemplateBuilderTest, RelationsKeepTheirTablesFieldsAndDeleteRule) {
  ASSERT_EQ(database_->Relations().Count(), static_cast<int>(Description().relations.size()));
  for (const RelationDescription& want : Description().relations) {
    std::shared_ptr<store::Relation> relation = database_->Relations().Item(want.name);
    EXPECT_EQ(relation->Table(), want.table) << want.name;
    EXPECT_EQ(relation->ForeignTable(), want.foreign_table) << want.name;
    EXPECT_EQ((relation->Attributes() & store::dbRelationDeleteCascade) != 0,
              want.rule == DeleteRule::kCascade)
        << want.name;
    ASSERT_EQ(relation->Fields().Count(), 1) << want.name;
    EXPECT_EQ(relation->Fields().Item(0).Name(), want.field) << want.name;
    EXPECT_EQ(relation->Fields().Item(0).ForeignName(), want.foreign_field) << want.name;
  }
}

TEST_F(TemplateBuilderTest, StoredQueriesKeepTheirJetTextsAsWritten) {
  EXPECT_EQ(database_->QueryDefs().Count(), static_cast<int>(Description().queries.size()));
  for (const QueryDescription& want : Description().queries) {
    ASSERT_TRUE(database_->QueryDefs().Contains(want.name)) << want.name;
    EXPECT_EQ(database_->QueryDefs().Item(want.name)->SQL(), want.sql) << want.name;
  }
}

TEST_F(TemplateBuilderTest, RecursiveAccountsViewTextIsTheOneLineTheEngineWrites) {
  EXPECT_EQ(database_->QueryDefs().Item("viewAccountsRecursive")->SQL(),
            "SELECT Accounts.ID, Accounts.Code, Accounts.Name, Accounts.Balance, Accounts.ChildrensBalance, "
            "Accounts_1.* FROM Accounts INNER JOIN Accounts AS Accounts_1 ON Accounts.ID = "
            "Accounts_1.ParentID ORDER BY Accounts_1.Position, Accounts_1.Code;");
}

TEST_F(TemplateBuilderTest, YearQueryCarriesTheTemplateNameUntilCreationRenamesIt) {
  EXPECT_TRUE(database_->QueryDefs().Contains("viewBusinessYear5Get"));
  EXPECT_FALSE(database_->QueryDefs().Contains("viewBusinessYear6Get"));
}

TEST_F(TemplateBuilderTest, CarriesTheGenerationMarkerProperties) {
  EXPECT_EQ(database_->Properties().Item("Creator")->Value().AsString(), "Velmora AG");
  EXPECT_EQ(database_->Properties().Item("Product")->Value().AsString(), "Velmora Suite V6");
  EXPECT_EQ(database_->Properties().Item("Owner")->Type(), FieldType::kText);
  EXPECT_EQ(database_->Properties().Item("Project")->Type(), FieldType::kText);
}

TEST_F(TemplateBuilderTest, HoldsNoRows) {
  for (const TableDescription& table : Description().tables) {
    std::unique_ptr<store::Recordset> rows = database_->OpenRecordset(table.name, store::dbOpenSnapshot);
    EXPECT_TRUE(rows->Eof()) << table.name;
  }
}

// A value for a parameter of the given type that every stored query accepts.
Variant SampleValue(FieldType type) {
  switch (type) {
    case FieldType::kDate:
      return Variant(OleDate::FromYmd(2024, 1, 1));
    case FieldType::kText:
    case FieldType::kMemo:
      return Variant("x");
    default:
      return Variant(int32_t{1});
  }
}

TEST_F(TemplateBuilderTest, EveryStoredQueryRunsOnTheEmptyTemplate) {
  for (const QueryDescription& want : Description().queries) {
    std::shared_ptr<store::QueryDef> query = database_->QueryDefs().Item(want.name);
    for (int i = 0; i < query->Parameters().Count(); ++i) {
      store::Parameter& parameter = query->Parameters().Item(i);
      parameter.Value(SampleValue(parameter.Type()));
    }
    bool action =
        want.sql.find("INSERT INTO") != std::string::npos || want.sql.find("DELETE") != std::string::npos;
    try {
      if (action) {
        query->Execute(store::dbFailOnError);
      } else {
        query->OpenRecordset(store::dbOpenSnapshot)->Close();
      }
    } catch (const Error& error) {
      ADD_FAILURE() << want.name << ": " << error.Number() << " " << error.Description();
    }
  }
}

TEST_F(TemplateBuilderTest, YearRowAddedThroughTheYearQueryIsAYearFileOfTheChain) {
  std::shared_ptr<store::QueryDef> year = database_->QueryDefs().Item("viewBusinessYear5Get");
  year->Parameters().Item("DbName").Value(Variant("first.qdb6f"));
  std::unique_ptr<store::Recordset> rows = year->OpenRecordset(store::dbOpenDynaset);
  rows->AddNew();
  rows->Fields().Item("ID").Value(Variant(int32_t{1}));
  rows->Fields().Item("Beginn").Value(Variant(OleDate::FromYmd(2024, 1, 1)));
  rows->Fields().Item("End").Value(Variant(OleDate::FromYmd(2024, 12, 31)));
  rows->Fields().Item("Status").Value(Variant(int16_t{1}));
  rows->Fields().Item("BusinessYears.DBName").Value(Variant("first.qdb6f"));
  rows->Update();
  rows->Close();

  std::unique_ptr<store::Recordset> files = database_->OpenRecordset("sysBsnYear", store::dbOpenSnapshot);
  ASSERT_FALSE(files->Eof());
  EXPECT_EQ(files->Fields().Item("BsnYearDBName").Value().AsString(), "first.qdb6f");
  files->MoveNext();
  EXPECT_TRUE(files->Eof());
}

TEST_F(TemplateBuilderTest, DeletingAJournalWithEntriesIsRefusedWith3200) {
  std::unique_ptr<store::Recordset> journals = database_->OpenRecordset("Journals", store::dbOpenTable);
  journals->AddNew();
  Variant journal_id = journals->Fields().Item("ID").Value();
  journals->Fields().Item("Code").Value(Variant(int32_t{1}));
  journals->Fields().Item("Name").Value(Variant("Journal"));
  journals->Update();
  journals->Close();
  std::unique_ptr<store::Recordset> entries = database_->OpenRecordset("BookEntries", store::dbOpenTable);
  entries->AddNew();
  entries->Fields().Item("JournalID").Value(journal_id);
  entries->Update();
  entries->Close();

  EXPECT_EQ(ErrorNumberOf([&] { database_->Execute("DELETE * FROM Journals;", store::dbFailOnError); }),
            store::kErrRelatedRecords);
}

TEST_F(TemplateBuilderTest, DeletingATaxTakesItsRateHistoryWithIt) {
  std::unique_ptr<store::Recordset> taxes = database_->OpenRecordset("Taxes", store::dbOpenTable);
  taxes->AddNew();
  Variant tax_id = taxes->Fields().Item("ID").Value();
  taxes->Fields().Item("Code").Value(Variant("N81"));
  taxes->Update();
  taxes->Close();
  std::unique_ptr<store::Recordset> history = database_->OpenRecordset("TaxHistories", store::dbOpenTable);
  history->AddNew();
  history->Fields().Item("TaxID").Value(tax_id);
  history->Update();
  history->Close();

  database_->Execute("DELETE * FROM Taxes;", store::dbFailOnError);
  EXPECT_TRUE(database_->OpenRecordset("TaxHistories", store::dbOpenSnapshot)->Eof());
}

TEST_F(TemplateBuilderTest, AccountAddedWithCodeOnlyHasNullParentAndZeroDefaults) {
  std::unique_ptr<store::Recordset> accounts = database_->OpenRecordset("Accounts", store::dbOpenTable);
  accounts->AddNew();
  accounts->Fields().Item("Code").Value(Variant("A"));
  accounts->Update();
  accounts->Close();

  std::unique_ptr<store::Recordset> row = database_->OpenRecordset("Accounts", store::dbOpenSnapshot);
  ASSERT_FALSE(row->Eof());
  EXPECT_TRUE(row->Fields().Item("ParentID").Value().IsNull());
  EXPECT_TRUE(row->Fields().Item("TaxID").Value().IsNull());
  EXPECT_EQ(row->Fields().Item("MasterID").Value().AsLong(), 0);
  EXPECT_EQ(row->Fields().Item("Balance").Value().AsCurrency().Raw(), 0);
  EXPECT_FALSE(row->Fields().Item("IsSum").Value().AsBoolean());
}

TEST_F(TemplateBuilderTest, TaxCodeDifferingOnlyInCaseIsADuplicate) {
  std::unique_ptr<store::Recordset> taxes = database_->OpenRecordset("Taxes", store::dbOpenTable);
  taxes->AddNew();
  taxes->Fields().Item("Code").Value(Variant("ust"));
  taxes->Update();
  taxes->AddNew();
  taxes->Fields().Item("Code").Value(Variant("UST"));
  EXPECT_EQ(ErrorNumberOf([&] { taxes->Update(); }), store::kErrDuplicate);
}

TEST_F(TemplateBuilderTest, BuildingOverAnExistingFileFailsWith3204) {
  EXPECT_EQ(ErrorNumberOf([&] { TemplateBuilder(Description()).Build(*engine_, path_); }),
            store::kErrDatabaseExists);
}

TEST_F(TemplateBuilderTest, StoreErrorNamesTheObjectBeingMade) {
  SchemaDescription twice = ParseSchemaDescription("query q\n  SELECT 1;\nend\n");
  try {
    TemplateBuilder(twice).BuildInto(*database_);
    TemplateBuilder(twice).BuildInto(*database_);
    FAIL() << "a second query q was accepted";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), store::kErrObjectExists);
    EXPECT_EQ(error.Description().rfind("query q: ", 0), 0u) << error.Description();
  }
}

}  // namespace
}  // namespace ldg::schema
