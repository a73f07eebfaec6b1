// The template's stored queries, translated against the template's own tables:
// each one must compile and give the columns, parameters and updatable table
// that its readers in the engine count on.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "engine/schema/schema_description.hpp"
#include "store/jet/translator.hpp"
#include "support/error.hpp"
#include "support/text.hpp"

namespace ldg::schema {
namespace {

using store::FieldType;

const SchemaDescription& Description() {
  static const SchemaDescription schema = LoadSchemaDescription(
      std::filesystem::path(LDG_TEST_DATA) / ".." / ".." / "engine" / "schema" / "template.schema");
  return schema;
}

// The description seen as the translator's catalog.
class DescriptionCatalog : public store::jet::Catalog {
 public:
  std::optional<std::vector<Column>> TableColumns(std::string_view table) const override {
    const TableDescription* described = Description().Table(table);
    if (!described) return std::nullopt;
    std::vector<Column> columns;
    for (const FieldDescription& field : described->fields) columns.push_back({field.name, field.type});
    return columns;
  }
  std::optional<std::string> QueryText(std::string_view name) const override {
    const QueryDescription* query = Description().Query(name);
    if (!query) return std::nullopt;
    return query->sql;
  }
  std::string PhysicalName(std::string_view table) const override { return "\"" + std::string(table) + "\""; }
};

store::jet::Translation Translated(const char* query_name) {
  const QueryDescription* query = Description().Query(query_name);
  EXPECT_NE(query, nullptr) << query_name;
  if (!query) return {};
  return store::jet::Translate(query->sql, DescriptionCatalog());
}

std::vector<std::string> ColumnNames(const store::jet::Translation& translation) {
  std::vector<std::string> names;
  for (const auto& column : translation.columns) names.push_back(column.name);
  return names;
}

std::vector<std::string> ParameterNames(const store::jet::Translation& translation) {
  std::vector<std::string> names;
  for (const auto& parameter : translation.parameters) names.push_back(parameter.name);
  return names;
}

TEST(TemplateQueries, EveryStoredQueryTranslates) {
  for (const QueryDescription& query : Description().queries) {
    try {
      store::jet::Translate(query.sql, DescriptionCatalog());
    } catch (const Error& error) {
      ADD_FAILURE() << query.name << ": " << error.Number() << " " << error.Description();
    }
  }
}

TEST(TemplateQueries, InstanceViewGivesInstanceIdFirst) {
  EXPECT_EQ(ColumnNames(Translated("viewInstance")),
            (std::vector<std::string>{"InstanceID", "ModuleName", "ModuleVersion"}));
}

TEST(TemplateQueries, YearViewTakesDbNameAndWritesIntoBusinessYears) {
  store::jet::Translation year = Translated("viewBusinessYear5Get");
  EXPECT_EQ(ParameterNames(year), std::vector<std::string>{"DbName"});
  EXPECT_EQ(ColumnNames(year), (std::vector<std::string>{"ID", "Beginn", "End", "Status", "DbName"}));
  EXPECT_TRUE(EqualsNoCase(year.updatable_table, "BusinessYears")) << year.updatable_table;
}

TEST(TemplateQueries, OverlapViewTakesTheBeginAsADate) {
  store::jet::Translation overlap = Translated("viewBusinessYearOverlap");
  ASSERT_EQ(overlap.parameters.size(), 1u);
  EXPECT_EQ(overlap.parameters[0].name, "Beg");
  EXPECT_EQ(overlap.parameters[0].type, FieldType::kDate);
}

TEST(TemplateQueries, YearSpanViewGivesMinOfBeginnAndMaxOfEnd) {
  store::jet::Translation span = Translated("viewBusinessYearBeginnAndEnd");
  EXPECT_EQ(ColumnNames(span), (std::vector<std::string>{"MinOfBeginn", "MaxOfEnd"}));
  EXPECT_EQ(span.columns[0].type, FieldType::kDate);
}

TEST(TemplateQueries, MatchingYearViewTakesBothDatesAndIsUpdatable) {
  store::jet::Translation matching = Translated("viewBusinessYearMatchingBeginnAndEnd");
  EXPECT_EQ(ParameterNames(matching), (std::vector<std::string>{"Beginn", "End"}));
  EXPECT_TRUE(EqualsNoCase(matching.updatable_table, "BusinessYears")) << matching.updatable_table;
  const auto& names = ColumnNames(matching);
  EXPECT_NE(std::find(names.begin(), names.end(), "DbName"), names.end());
}

TEST(TemplateQueries, BalanceViewGivesCurrencySums) {
  store::jet::Translation balance = Translated("viewBalanceAtDate");
  EXPECT_EQ(ParameterNames(balance), (std::vector<std::string>{"AccountID", "Date"}));
  EXPECT_EQ(ColumnNames(balance), (std::vector<std::string>{"AccountID", "SumOfAmount", "SumOfFCAmount"}));
  EXPECT_EQ(balance.columns[1].type, FieldType::kCurrency);
  EXPECT_EQ(balance.columns[2].type, FieldType::kCurrency);
}

TEST(TemplateQueries, CheckQueriesGiveTheirSumColumns) {
  EXPECT_EQ(ColumnNames(Translated("CheckAccountsBalance")), std::vector<std::string>{"SumOfBalances"});
  EXPECT_EQ(ColumnNames(Translated("CheckMovementsBalance")), std::vector<std::string>{"SumOfAmounts"});
}

TEST(TemplateQueries, SearchIndexActionQueriesAreInsertsAndADelete) {
  EXPECT_EQ(Translated("workFillAccountsIndexCodes").kind, store::jet::StatementKind::kInsert);
  EXPECT_EQ(Translated("workFillAccountsIndexNames").kind, store::jet::StatementKind::kInsert);
  store::jet::Translation remove = Translated("DeleteAccountsIndexEntry");
  EXPECT_EQ(remove.kind, store::jet::StatementKind::kDelete);
  EXPECT_EQ(ParameterNames(remove), std::vector<std::string>{"ID"});
}

TEST(TemplateQueries, GroupSearchGivesAnAccountIdAndTakesSearch) {
  store::jet::Translation groups = Translated("viewAccountsIndexGroups");
  EXPECT_EQ(ParameterNames(groups), std::vector<std::string>{"Search"});
  EXPECT_EQ(ColumnNames(groups), (std::vector<std::string>{"ID", "SearchName"}));
}

TEST(TemplateQueries, MasterDataViewsGiveTheColumnsTheirLoadersRead) {
  EXPECT_EQ(ColumnNames(Translated("viewTaxes")),
            (std::vector<std::string>{"ID", "Code", "Description", "IsNetAmount"}));
  EXPECT_EQ(ColumnNames(Translated("viewTaxHistory")),
            (std::vector<std::string>{"ID", "TaxID", "Beginn", "End", "Rate", "AccountID"}));
  EXPECT_EQ(ColumnNames(Translated("viewForeinCurrencies")),
            (std::vector<std::string>{"ID", "Code", "RateCode", "Description", "Unit", "Round",
                                      "AccountExchangeLostID", "AccountExchangeGainID"}));
  EXPECT_EQ(ColumnNames(Translated("viewForeinCurrencyHistory")),
            (std::vector<std::string>{"ID", "ForeinCurrencyID", "Beginn", "End", "Rate"}));
  EXPECT_EQ(ColumnNames(Translated("viewJournals")),
            (std::vector<std::string>{"ID", "Code", "Name", "Locked", "LockedPermanently"}));
  EXPECT_EQ(ColumnNames(Translated("viewBudgetPeriods")),
            (std::vector<std::string>{"ID", "BusinessYearID", "Beginn", "End"}));
  EXPECT_EQ(ColumnNames(Translated("viewAccountBudget")),
            (std::vector<std::string>{"ID", "AccountID", "PeriodID", "Amount"}));
}

TEST(TemplateQueries, YearFileRowSourceGivesBsnYearDBName) {
  EXPECT_EQ(ColumnNames(Translated("sysBsnYear")), std::vector<std::string>{"BsnYearDBName"});
}

}  // namespace
}  // namespace ldg::schema
