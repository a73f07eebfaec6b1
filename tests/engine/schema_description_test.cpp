#include "engine/schema/schema_description.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace ldg::schema {
namespace {

using store::FieldType;

std::filesystem::path TemplateSchemaPath() {
  return std::filesystem::path(LDG_TEST_DATA) / ".." / ".." / "engine" / "schema" / "template.schema";
}

const SchemaDescription& Template() {
  static const SchemaDescription schema = LoadSchemaDescription(TemplateSchemaPath());
  return schema;
}

// The line number and problem text of a malformed description.
std::pair<int, std::string> FailureOf(const std::string& text) {
  try {
    ParseSchemaDescription(text);
  } catch (const SchemaSyntaxError& error) {
    return {error.Line(), error.what()};
  }
  return {0, ""};
}

struct ExpectedField {
  const char* name;
  const char* type;
};

void ExpectTable(const char* table_name, const std::vector<ExpectedField>& expected) {
  const TableDescription* table = Template().Table(table_name);
  ASSERT_NE(table, nullptr) << table_name;
  ASSERT_EQ(table->fields.size(), expected.size()) << table_name;
  for (size_t i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(table->fields[i].name, expected[i].name) << table_name;
    EXPECT_EQ(TypeWord(table->fields[i]), expected[i].type) << table_name << "." << expected[i].name;
  }
}

// ------------------------------------------------------------ the template's tables

TEST(TemplateSchema, IdentityTablesHaveTheirColumns) {
  ExpectTable(
      "ModuleRegistration",
      {{"ID", "Long"}, {"InstanceID", "Double"}, {"ModuleName", "Text(50)"}, {"ModuleVersion", "Text(50)"}});
  ExpectTable("sysAttachedDatabases", {{"ID", "Long"},
                                       {"AttachedDBInstanceID", "Double"},
                                       {"AttachedDBModuleName", "Text(50)"},
                                       {"AttachedDBName", "Text(255)"}});
}

TEST(TemplateSchema, BusinessYearsIdIsTheYearNumberNotACounter) {
  ExpectTable("BusinessYears", {{"ID", "Long"},
                                {"Beginn", "Date"},
                                {"End", "Date"},
                                {"Status", "Integer"},
                                {"DbName", "Text(255)"},
                                {"DBLocation", "Text(255)"},
                                {"DBMedia", "Text(50)"}});
  const TableDescription& years = *Template().Table("BusinessYears");
  EXPECT_FALSE(years.Field("ID")->counter);
  const IndexDescription* index = years.Index("BsnYearID");
  ASSERT_NE(index, nullptr);
  EXPECT_EQ(index->fields, std::vector<std::string>{"ID"});
}

TEST(TemplateSchema, PeriodsAndBudgetTablesHaveTheirColumns) {
  ExpectTable("Periods", {{"ID", "Long"}, {"BusinessYearID", "Long"}, {"Beginn", "Date"}, {"End", "Date"}});
  ExpectTable("BudgetPeriods",
              {{"ID", "Long"}, {"BusinessYearID", "Long"}, {"Beginn", "Date"}, {"End", "Date"}});
  ExpectTable("Budget",
              {{"ID", "Long"}, {"AccountID", "Long"}, {"PeriodID", "Long"}, {"Amount", "Currency"}});
}

TEST(TemplateSchema, AccountsHoldsTheTemplateColumnsOnly) {
  ExpectTable("Accounts", {{"ID", "Long"},
                           {"ParentID", "Long"},
                           {"Code", "Text(50)"},
                           {"Name", "Text(255)"},
                           {"Position", "Long"},
                           {"Class", "Integer"},
                           {"IsGeneralLedger", "Boolean"},
                           {"IsDebit", "Boolean"},
                           {"IsSum", "Boolean"},
                           {"IsMaster", "Boolean"},
                           {"MasterID", "Long"},
                           {"OpeningBalance", "Currency"},
                           {"Balance", "Currency"},
                           {"ChildrensBalance", "Currency"},
                           {"FCOpeningBalance", "Currency"},
                           {"FCBalance", "Currency"},
                           {"FCCanChooseRate", "Boolean"},
                           {"FCID", "Long"},
                           {"TaxID", "Long"},
                           {"TaxCanChoose", "Boolean"},
                           {"ActivateValuta", "Boolean"},
                           {"ActivateReference", "Boolean"},
                           {"Budget", "Currency"},
                           {"ReferenceNr", "Long"},
                           {"StandartTextDebit", "Text(255)"},
                           {"StandartTextCredit", "Text(255)"},
                           {"CreatedBy", "Text(50)"},
                           {"CreateDate", "Date"}});
  const TableDescription& accounts = *Template().Table("Accounts");
  for (const char* added_at_open : {"DeleteOnCloture", "SaveOB", "WorkedOpeningBalance", "WorkedBalance",
                                    "PostFix", "Tags", "FCID2", "KeyPositionCode", "LiegenCode"}) {
    EXPECT_EQ(accounts.Field(added_at_open), nullptr) << added_at_open;
  }
}

TEST(TemplateSchema, AccountsIdIsACounterAndParentIdHasNoDefault) {
  const TableDescription& accounts = *Template().Table("Accounts");
  EXPECT_TRUE(accounts.Field("ID")->counter);
  EXPECT_FALSE(accounts.Field("ParentID")->default_value.has_value());
  EXPECT_EQ(accounts.Field("MasterID")->default_value, "0");
}

TEST(TemplateSchema, AccountsCarriesTheIndexesTheEngineSeeksOn) {
  const TableDescription& accounts = *Template().Table("Accounts");
  const IndexDescription* primary = accounts.Index("PrimaryKey");
  ASSERT_NE(primary, nullptr);
  EXPECT_TRUE(primary->primary);
  EXPECT_EQ(primary->fields, std::vector<std::string>{"ID"});
  ASSERT_NE(accounts.Index("ID"), nullptr);
  EXPECT_FALSE(accounts.Index("ID")->primary);
  ASSERT_NE(accounts.Index("Code"), nullptr);
  EXPECT_EQ(accounts.Index("Code")->fields, std::vector<std::string>{"Code"});
}

TEST(TemplateSchema, SearchTablesHaveTheirColumns) {
  ExpectTable("AccountsIndex", {{"ID", "Long"},
                                {"SearchName", "Text(255)"},
                                {"IsMaster", "Boolean"},
                                {"IsSum", "Boolean"},
                                {"MasterID", "Long"}});
  // Several rows carry one account's ID: no unique index on it.
  const TableDescription& index = *Template().Table("AccountsIndex");
  EXPECT_FALSE(index.Field("ID")->counter);
  for (const IndexDescription& each : index.indexes) EXPECT_FALSE(each.unique) << each.name;
  ExpectTable(
      "AccountsGroups",
      {{"ID", "Long"}, {"SystemCode", "Text(50)"}, {"Name", "Text(255)"}, {"Description", "Text(255)"}});
  ExpectTable("AccountsGroupAssignements",
              {{"ID", "Long"}, {"AccountGroupID", "Long"}, {"AccountID", "Long"}});
}

TEST(TemplateSchema, BookEntriesHoldsTheTemplateColumnsAndTheDocumentIdIndex) {
  ExpectTable("BookEntries", {{"ID", "Long"},
                              {"JournalID", "Long"},
                              {"Date", "Date"},
                              {"DocumentID", "Text(50)"},
                              {"Definitive", "Long"},
                              {"Marked", "Boolean"},
                              {"Automatic", "Boolean"},
                              {"Infotext", "Text(255)"},
                              {"ClientID", "Long"},
                              {"CreatedBy", "Text(50)"},
                              {"ChangedBy", "Text(50)"}});
  const IndexDescription* document = Template().Table("BookEntries")->Index("DocumentID");
  ASSERT_NE(document, nullptr);
  EXPECT_FALSE(document->unique);
}

TEST(TemplateSchema, MovementsHaveTheirColumnsInWritingOrder) {
  ExpectTable("Movements", {{"ID", "Long"},
                            {"EntryID", "Long"},
                            {"AccountID", "Long"},
                            {"BalancingAccountID", "Long"},
                            {"Text", "Text(255)"},
                            {"Amount", "Currency"},
                            {"FCID", "Long"},
                            {"FCAmount", "Currency"},
                            {"Reference", "Text(50)"},
                            {"Valuta", "Date"},
                            {"TaxID", "Long"},
                            {"TaxManual", "Boolean"},
                            {"IsNetAmount", "Boolean"},
                            {"DependentMovementID", "Long"},
                            {"IsDependent", "Boolean"},
                            {"MasterID", "Long"}});
}

TEST(TemplateSchema, JournalsHaveUniqueNumberAndName) {
  ExpectTable("Journals", {{"ID", "Long"},
                           {"Code", "Long"},
                           {"Name", "Text(50)"},
                           {"Locked", "Boolean"},
                           {"LockedPermanently", "Boolean"}});
  const TableDescription& journals = *Template().Table("Journals");
  EXPECT_TRUE(journals.Index("Code")->unique);
  EXPECT_TRUE(journals.Index("Name")->unique);
}

TEST(TemplateSchema, DefinitiveSetsHoldsTheTemplateColumnsOnly) {
  ExpectTable("DefinitiveSets", {{"ID", "Long"},
                                 {"Date", "Date"},
                                 {"User", "Text(50)"},
                                 {"Beginn", "Date"},
                                 {"End", "Date"},
                                 {"ExcludedJournals", "Text(255)"},
                                 {"UsersEntriesOnly", "Boolean"}});
}

TEST(TemplateSchema, TaxesAndCurrenciesHaveUniqueCodes) {
  ExpectTable(
      "Taxes",
      {{"ID", "Long"}, {"Code", "Text(50)"}, {"Description", "Text(255)"}, {"IsNetAmount", "Boolean"}});
  ExpectTable("TaxHistories", {{"ID", "Long"},
                               {"TaxID", "Long"},
                               {"Beginn", "Date"},
                               {"End", "Date"},
                               {"Rate", "Currency"},
                               {"AccountID", "Long"}});
  ExpectTable("ForeinCurrencies", {{"ID", "Long"},
                                   {"Code", "Text(50)"},
                                   {"RateCode", "Text(50)"},
                                   {"Description", "Text(255)"},
                                   {"Unit", "Currency"},
                                   {"Round", "Currency"},
                                   {"AccountExchangeLostID", "Long"},
                                   {"AccountExchangeGainID", "Long"}});
  ExpectTable("ForeinCurrencyHistories", {{"ID", "Long"},
                                          {"ForeinCurrencyID", "Long"},
                                          {"Beginn", "Date"},
                                          {"End", "Date"},
                                          {"Rate", "Currency"}});
  EXPECT_TRUE(Template().Table("Taxes")->Index("Code")->unique);
  EXPECT_TRUE(Template().Table("ForeinCurrencies")->Index("Code")->unique);
  EXPECT_TRUE(Template().Table("ForeinCurrencies")->Index("RateCode")->unique);
}

TEST(TemplateSchema, VatAccountsHasNonUniqueKeyAndCodeIndexes) {
  ExpectTable("VatAccounts", {{"ID", "Long"}, {"Key", "Text(50)"}, {"Code", "Text(50)"}, {"Rate", "Double"}});
  const TableDescription& vat = *Template().Table("VatAccounts");
  EXPECT_FALSE(vat.Index("Key")->unique);
  EXPECT_FALSE(vat.Index("Code")->unique);
}

TEST(TemplateSchema, SettingsPrimaryKeyRunsOverModuleIdThenSection) {
  ExpectTable("Settings",
              {{"SettingModuleID", "Double"}, {"SettingSection", "Text(50)"}, {"SettingSpace", "Text(255)"}});
  const TableDescription& settings = *Template().Table("Settings");
  EXPECT_EQ(settings.Field("SettingModuleID")->default_value, "0");
  const IndexDescription* primary = settings.Index("PrimaryKey");
  ASSERT_NE(primary, nullptr);
  EXPECT_TRUE(primary->primary);
  EXPECT_EQ(primary->fields, (std::vector<std::string>{"SettingModuleID", "SettingSection"}));
}

TEST(TemplateSchema, HoldsNoTableThatTheEngineAddsItself) {
  for (const char* added : {"Periods2", "FC2", "FC2Rate", "FC", "FCRate", "Vat2Tree", "Vat2Link", "DbLog"}) {
    EXPECT_EQ(Template().Table(added), nullptr) << added;
  }
}

TEST(TemplateSchema, EveryCounterTableHasAPrimaryKeyOnId) {
  for (const TableDescription& table : Template().tables) {
    const FieldDescription* id = table.Field("ID");
    if (!id || !id->counter) continue;
    const IndexDescription* primary = table.Index("PrimaryKey");
    ASSERT_NE(primary, nullptr) << table.name;
    EXPECT_TRUE(primary->primary) << table.name;
    EXPECT_EQ(primary->fields, std::vector<std::string>{"ID"}) << table.name;
  }
}

// ------------------------------------------------------------ relations

TEST(TemplateSchema, CarriesEachRelationWithItsDeleteRule) {
  struct Expected {
    const char* table;
    const char* field;
    const char* foreign_table;
    const char* foreign_field;
    DeleteRule rule;
  };
  const std::vector<Expected> expected = {
      {"Accounts", "ID", "Movements", "AccountID", DeleteRule::kRestrict},
      {"Journals", "ID", "BookEntries", "JournalID", DeleteRule::kRestrict},
      {"Taxes", "ID", "Accounts", "TaxID", DeleteRule::kRestrict},
      {"Taxes", "ID", "Movements", "TaxID", DeleteRule::kRestrict},
      {"ForeinCurrencies", "ID", "Accounts", "FCID", DeleteRule::kRestrict},
      {"ForeinCurrencies", "ID", "Movements", "FCID", DeleteRule::kRestrict},
      {"BookEntries", "ID", "Movements", "EntryID", DeleteRule::kRestrict},
      {"Taxes", "ID", "TaxHistories", "TaxID", DeleteRule::kCascade},
      {"ForeinCurrencies", "ID", "ForeinCurrencyHistories", "ForeinCurrencyID", DeleteRule::kCascade},
      {"Accounts", "ID", "AccountsGroupAssignements", "AccountID", DeleteRule::kCascade},
      {"Accounts", "ID", "Budget", "AccountID", DeleteRule::kCascade},
  };
  ASSERT_EQ(Template().relations.size(), expected.size());
  for (const Expected& want : expected) {
    bool found = false;
    for (const RelationDescription& relation : Template().relations) {
      if (relation.table == want.table && relation.field == want.field &&
          relation.foreign_table == want.foreign_table && relation.foreign_field == want.foreign_field) {
        EXPECT_EQ(relation.rule, want.rule) << relation.name;
        found = true;
      }
    }
    EXPECT_TRUE(found) << want.foreign_table << "." << want.foreign_field;
  }
}

// ------------------------------------------------------------ stored queries and properties

TEST(TemplateSchema, HoldsEveryStoredQueryTheEngineUses) {
  const std::vector<std::string> names = {"viewAccountsRecursive",
                                          "viewAccountsIndexGL",
                                          "viewAccountsIndexDetail",
                                          "viewInstance",
                                          "viewBusinessYear5Get",
                                          "viewBusinessYearOverlap",
                                          "viewBusinessYearBeginnAndEnd",
                                          "viewBusinessYearMatchingBeginnAndEnd",
                                          "viewAccountsIndexGroups",
                                          "viewBalanceAtDate",
                                          "DeleteAccountsIndexEntry",
                                          "workFillAccountsIndexCodes",
                                          "workFillAccountsIndexNames",
                                          "CheckAccountsBalance",
                                          "CheckMovementsBalance",
                                          "viewTaxes",
                                          "viewTaxHistory",
                                          "viewForeinCurrencies",
                                          "viewForeinCurrencyHistory",
                                          "viewJournals",
                                          "viewBudgetPeriods",
                                          "viewAccountBudget",
                                          "sysBsnYear"};
  ASSERT_EQ(Template().queries.size(), names.size());
  for (const std::string& name : names) {
    const QueryDescription* query = Template().Query(name);
    ASSERT_NE(query, nullptr) << name;
    EXPECT_EQ(query->name, name);
  }
}

TEST(TemplateSchema, TheYearQueryCarriesTheTemplateNameOnly) {
  EXPECT_NE(Template().Query("viewBusinessYear5Get"), nullptr);
  EXPECT_EQ(Template().Query("viewBusinessYear6Get"), nullptr);
}

TEST(TemplateSchema, KeepsTheRecursiveAccountsViewTextAsWritten) {
  EXPECT_EQ(Template().Query("viewAccountsRecursive")->sql,
            "SELECT Accounts.ID, Accounts.Code, Accounts.Name, Accounts.Balance, Accounts.ChildrensBalance, "
            "Accounts_1.* FROM Accounts INNER JOIN Accounts AS Accounts_1 ON Accounts.ID = "
            "Accounts_1.ParentID ORDER BY Accounts_1.Position, Accounts_1.Code;");
}

TEST(TemplateSchema, KeepsTheSearchIndexViewTextsAsWritten) {
  EXPECT_EQ(Template().Query("viewAccountsIndexGL")->sql,
            "PARAMETERS Search Text; SELECT AccountsIndex.ID, AccountsIndex.SearchName, "
            "AccountsIndex.MasterID, AccountsIndex.IsSum FROM AccountsIndex WHERE "
            "(((AccountsIndex.SearchName) Like [Search] & \"*\") AND ((AccountsIndex.MasterID)=0) AND "
            "((AccountsIndex.IsSum)=False)) ORDER BY AccountsIndex.SearchName;");
  EXPECT_EQ(Template().Query("viewAccountsIndexDetail")->sql,
            "PARAMETERS Search Text; SELECT AccountsIndex.ID, AccountsIndex.SearchName, "
            "AccountsIndex.MasterID From AccountsIndex WHERE (((AccountsIndex.SearchName) Like [Search] & "
            "\"*\") AND ((AccountsIndex.MasterID)>0)) ORDER BY AccountsIndex.SearchName;");
}

TEST(TemplateSchema, InstanceViewReadsInstanceIdFirst) {
  EXPECT_EQ(Template().Query("viewInstance")->sql.rfind("SELECT ModuleRegistration.InstanceID, ", 0), 0u);
}

TEST(TemplateSchema, YearFileRowSourceNamesItsColumnBsnYearDBName) {
  EXPECT_NE(Template().Query("sysBsnYear")->sql.find("AS BsnYearDBName"), std::string::npos);
  EXPECT_EQ(Template().Table("sysBsnYear"), nullptr);
}

TEST(TemplateSchema, CarriesTheGenerationMarkerAndTheOwnerProperties) {
  ASSERT_NE(Template().Property("Creator"), nullptr);
  EXPECT_EQ(Template().Property("Creator")->value, "Velmora AG");
  ASSERT_NE(Template().Property("Product"), nullptr);
  EXPECT_EQ(Template().Property("Product")->value, "Velmora Suite V6");
  EXPECT_NE(Template().Property("Owner"), nullptr);
  EXPECT_NE(Template().Property("Project"), nullptr);
}

// ------------------------------------------------------------ the format

TEST(SchemaDescriptionFormat, ParsesTypesSizesCountersAndDefaults) {
  SchemaDescription schema = ParseSchemaDescription(
      "# a comment\n"
      "table T\n"
      "  field ID Long counter\n"
      "  field Flag Boolean default False\n"
      "  field Short Text\n"
      "  field Long Text(255) default \"a \"\"b\"\"\"\n"
      "  field Note Memo\n"
      "  field Small Byte\n"
      "  index PrimaryKey primary (ID)\n"
      "  index Pair unique (Flag, Short)\n"
      "end\n");
  const TableDescription& table = *schema.Table("t");
  EXPECT_TRUE(table.Field("ID")->counter);
  EXPECT_EQ(table.Field("Flag")->default_value, "False");
  EXPECT_EQ(table.Field("Short")->size, 50);
  EXPECT_EQ(table.Field("Long")->size, 255);
  EXPECT_EQ(table.Field("Long")->default_value, "a \"b\"");
  EXPECT_EQ(table.Field("Note")->type, FieldType::kMemo);
  EXPECT_EQ(table.Field("Small")->type, FieldType::kByte);
  EXPECT_TRUE(table.Index("PrimaryKey")->unique);
  EXPECT_EQ(table.Index("Pair")->fields, (std::vector<std::string>{"Flag", "Short"}));
}

TEST(SchemaDescriptionFormat, KeepsAQueryTextExactlyWithItsHashDates) {
  SchemaDescription schema = ParseSchemaDescription(
      "query q\n"
      "    SELECT * FROM T WHERE D < #1/31/2024# AND N = \"x  y\";  \n"
      "end\n");
  EXPECT_EQ(schema.Query("Q")->sql, "SELECT * FROM T WHERE D < #1/31/2024# AND N = \"x  y\";");
}

TEST(SchemaDescriptionFormat, UnknownTypeGivesItsLineNumber) {
  auto [line, message] = FailureOf("table T\n  field ID Long\n  field X Lon\nend\n");
  EXPECT_EQ(line, 3);
  EXPECT_EQ(message, "line 3: unknown field type 'Lon': field X Lon");
}

TEST(SchemaDescriptionFormat, TextSizeAbove255IsRefused) {
  auto [line, message] = FailureOf("table T\n  field X Text(256)\nend\n");
  EXPECT_EQ(line, 2);
  EXPECT_EQ(message, "line 2: text size '256' is not a number from 1 to 255: field X Text(256)");
}

TEST(SchemaDescriptionFormat, IndexOnUnknownFieldIsRefused) {
  auto [line, message] = FailureOf("\ntable T\n  field ID Long\n  index K (Nope)\nend\n");
  EXPECT_EQ(line, 4);
  EXPECT_EQ(message, "line 4: index names unknown field 'Nope': index K (Nope)");
}

TEST(SchemaDescriptionFormat, UnclosedTableGivesTheLineThatOpenedIt) {
  auto [line, message] = FailureOf("# header\ntable T\n  field ID Long\n");
  EXPECT_EQ(line, 2);
  EXPECT_EQ(message, "line 2: table 'T' is not closed by 'end': table T");
}

TEST(SchemaDescriptionFormat, QueryTextOnTwoLinesIsRefused) {
  auto [line, message] = FailureOf("query q\n  SELECT *\n  FROM T;\nend\n");
  EXPECT_EQ(line, 3);
  EXPECT_EQ(message, "line 3: the text of query 'q' must stand on one line: FROM T;");
}

TEST(SchemaDescriptionFormat, RelationToUnknownFieldIsRefused) {
  auto [line, message] = FailureOf(
      "relation R A.ID <- B.AID restrict\n"
      "table A\n  field ID Long\nend\n"
      "table B\n  field BID Long\nend\n");
  EXPECT_EQ(line, 1);
  EXPECT_EQ(message, "line 1: relation names unknown field 'B.AID': relation R A.ID <- B.AID restrict");
}

TEST(SchemaDescriptionFormat, UnknownDeleteRuleIsRefused) {
  auto [line, message] = FailureOf("relation R A.ID <- B.AID nullify\n");
  EXPECT_EQ(line, 1);
  EXPECT_EQ(message, "line 1: expected restrict or cascade, not 'nullify': relation R A.ID <- B.AID nullify");
}

TEST(SchemaDescriptionFormat, DuplicateFieldIsRefusedWhateverItsCase) {
  auto [line, message] = FailureOf("table T\n  field Code Text\n  field CODE Long\nend\n");
  EXPECT_EQ(line, 3);
  EXPECT_EQ(message, "line 3: field 'CODE' is described twice: field CODE Long");
}

TEST(SchemaDescriptionFormat, QueryNamedLikeATableIsRefused) {
  auto [line, message] = FailureOf("table T\n  field ID Long\nend\nquery t\n  SELECT 1;\nend\n");
  EXPECT_EQ(line, 4);
  EXPECT_EQ(message, "line 4: 't' is already the name of a table or query: query t");
}

TEST(SchemaDescriptionFormat, CounterOnATextFieldIsRefused) {
  auto [line, message] = FailureOf("table T\n  field ID Text counter\nend\n");
  EXPECT_EQ(line, 2);
  EXPECT_EQ(message, "line 2: only a Long field can be a counter: field ID Text counter");
}

TEST(SchemaDescriptionFormat, UnterminatedPropertyTextIsRefused) {
  auto [line, message] = FailureOf("property Creator \"Velmora AG\n");
  EXPECT_EQ(line, 1);
  EXPECT_EQ(message, "line 1: unterminated quoted text: property Creator \"Velmora AG");
}

TEST(SchemaDescriptionFormat, FieldOutsideATableIsRefused) {
  auto [line, message] = FailureOf("field ID Long\n");
  EXPECT_EQ(line, 1);
  EXPECT_EQ(message, "line 1: 'field' outside a table: field ID Long");
}

TEST(SchemaDescriptionFormat, SecondPrimaryIndexIsRefused) {
  auto [line, message] =
      FailureOf("table T\n  field ID Long\n  index P primary (ID)\n  index Q primary (ID)\nend\n");
  EXPECT_EQ(line, 4);
  EXPECT_EQ(message, "line 4: table 'T' has a primary index already: index Q primary (ID)");
}

TEST(SchemaDescriptionFormat, MissingFileRaisesNamingIt) {
  EXPECT_THROW(LoadSchemaDescription("/nonexistent/template.schema"), std::runtime_error);
}

}  // namespace
}  // namespace ldg::schema
