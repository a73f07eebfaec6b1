#include <gtest/gtest.h>

#include "store/jet/translator.hpp"
#include "support/error.hpp"
#include "tests/store/jet_memory_catalog.hpp"

namespace ldg::store::jet {
namespace {

class JetTranslator : public ::testing::Test {
 protected:
  JetTranslator() {
    catalog_.AddTable("Accounts", {{"ID", FieldType::kLong},
                                   {"ParentID", FieldType::kLong},
                                   {"Code", FieldType::kText},
                                   {"Position", FieldType::kLong},
                                   {"IsMaster", FieldType::kBoolean},
                                   {"MasterID", FieldType::kLong},
                                   {"Balance", FieldType::kCurrency}});
    catalog_.AddTable("Movements", {{"ID", FieldType::kLong},
                                    {"AccountID", FieldType::kLong},
                                    {"Amount", FieldType::kCurrency},
                                    {"Rate", FieldType::kDouble},
                                    {"DependentMovementID", FieldType::kLong},
                                    {"IsDependent", FieldType::kBoolean}});
    catalog_.AddTable("BookEntries", {{"ID", FieldType::kLong}, {"Date", FieldType::kDate}});
    catalog_.AddQuery("viewTree",
                      "SELECT Accounts.ID, Accounts_1.* FROM Accounts INNER JOIN Accounts AS Accounts_1 ON "
                      "Accounts.ID = Accounts_1.ParentID ORDER BY Accounts_1.Position DESC;");
    catalog_.AddQuery("viewByCode",
                      "PARAMETERS Code Text; SELECT ID FROM Accounts WHERE Accounts.Code = [Code];");
  }

  std::string Sql(std::string_view text) { return Translate(text, catalog_).sql; }

  int ErrorNumber(std::string_view text) {
    try {
      Translate(text, catalog_);
    } catch (const Error& error) {
      return error.Number();
    }
    return 0;
  }

  MemoryCatalog catalog_;
};

TEST_F(JetTranslator, DeleteStarDropsTheStar) {
  EXPECT_EQ(Sql("DELETE * FROM Accounts;"), "DELETE FROM \"Accounts\"");
}

TEST_F(JetTranslator, EveryIdentifierIsQuotedAndQualified) {
  EXPECT_EQ(
      Sql("SELECT Code FROM Accounts WHERE Position = 1"),
      "SELECT \"Accounts\".\"Code\" AS \"Code\" FROM \"Accounts\" WHERE (\"Accounts\".\"Position\" = 1)");
}

TEST_F(JetTranslator, DoubleQuotedStringBecomesSingleQuotedLiteral) {
  EXPECT_EQ(Sql("SELECT ID FROM Accounts WHERE Code = \"it's\""),
            "SELECT \"Accounts\".\"ID\" AS \"ID\" FROM \"Accounts\" WHERE (\"Accounts\".\"Code\" = ('it''s') "
            "COLLATE NOCASE)");
}

TEST_F(JetTranslator, CurrencyLiteralIsScaledHalfToEven) {
  EXPECT_EQ(Sql("UPDATE Accounts SET Balance = 0.00015 WHERE ID = 7"),
            "UPDATE \"Accounts\" SET \"Balance\" = 2 WHERE (\"Accounts\".\"ID\" = 7)");
  EXPECT_EQ(Sql("UPDATE Accounts SET Balance = 0.00025"), "UPDATE \"Accounts\" SET \"Balance\" = 2");
  EXPECT_EQ(Sql("UPDATE Accounts SET Balance = -1234.5678"),
            "UPDATE \"Accounts\" SET \"Balance\" = -12345678");
}

TEST_F(JetTranslator, DoubleColumnKeepsTheLiteral) {
  EXPECT_EQ(Sql("UPDATE Movements SET Rate = 0.081"), "UPDATE \"Movements\" SET \"Rate\" = 0.081");
}

TEST_F(JetTranslator, BooleanColumnEqualToTrueTestsNonZero) {
  EXPECT_EQ(Sql("SELECT ID FROM Accounts WHERE IsMaster = True"),
            "SELECT \"Accounts\".\"ID\" AS \"ID\" FROM \"Accounts\" WHERE (\"Accounts\".\"IsMaster\" <> 0)");
  EXPECT_EQ(Sql("UPDATE Accounts SET IsMaster = True"), "UPDATE \"Accounts\" SET \"IsMaster\" = -1");
}

TEST_F(JetTranslator, DateLiteralIsTheDayNumber) {
  EXPECT_EQ(Sql("SELECT ID FROM BookEntries WHERE Date <= #3/31/2023#"),
            "SELECT \"BookEntries\".\"ID\" AS \"ID\" FROM \"BookEntries\" WHERE (\"BookEntries\".\"Date\" <= "
            "45016.0)");
}

TEST_F(JetTranslator, LikeAndAmpersandCallTheRegisteredFunctions) {
  EXPECT_EQ(
      Sql("PARAMETERS S Text; SELECT ID FROM Accounts WHERE NOT Code Like [S] & \"*\""),
      "SELECT \"Accounts\".\"ID\" AS \"ID\" FROM \"Accounts\" WHERE NOT (jet_like(\"Accounts\".\"Code\", "
      "jet_cat(?1, '*')))");
}

TEST_F(JetTranslator, QualifiedSetTargetIsUnqualified) {
  EXPECT_EQ(
      Sql("UPDATE Accounts SET Accounts.MasterID = [ID] WHERE (((Accounts.IsMaster)=True));"),
      "UPDATE \"Accounts\" SET \"MasterID\" = \"Accounts\".\"ID\" WHERE (\"Accounts\".\"IsMaster\" <> 0)");
}

TEST_F(JetTranslator, JoinedUpdateBecomesUpdateFrom) {
  EXPECT_EQ(Sql("UPDATE Movements AS Movements_1 INNER JOIN Movements ON Movements_1.ID = "
                "Movements.DependentMovementID SET Movements_1.IsDependent = True;"),
            "UPDATE \"Movements\" AS \"Movements_1\" SET \"IsDependent\" = -1 FROM \"Movements\" WHERE "
            "(\"Movements_1\".\"ID\" = \"Movements\".\"DependentMovementID\")");
}

TEST_F(JetTranslator, InnerSemicolonOfInSelectIsDropped) {
  EXPECT_EQ(
      Sql("DELETE FROM Accounts WHERE (ID NOT IN (SELECT AccountID FROM Movements;));"),
      "DELETE FROM \"Accounts\" WHERE (\"Accounts\".\"ID\" NOT IN (SELECT \"Movements\".\"AccountID\" AS "
      "\"AccountID\" FROM \"Movements\"))");
}

TEST_F(JetTranslator, StoredQueryBecomesWithEntryCarryingItsOrder) {
  EXPECT_EQ(
      Sql("SELECT ParentID FROM viewTree"),
      "WITH \"viewTree\" AS (SELECT \"Accounts\".\"ID\" AS \"Accounts.ID\", \"Accounts_1\".\"ID\" AS "
      "\"Accounts_1.ID\", \"Accounts_1\".\"ParentID\" AS \"ParentID\", \"Accounts_1\".\"Code\" AS \"Code\", "
      "\"Accounts_1\".\"Position\" AS \"Position\", \"Accounts_1\".\"IsMaster\" AS \"IsMaster\", "
      "\"Accounts_1\".\"MasterID\" AS \"MasterID\", \"Accounts_1\".\"Balance\" AS \"Balance\", "
      "\"Accounts_1\".\"Position\" AS \"__order1\" FROM \"Accounts\" INNER JOIN \"Accounts\" AS "
      "\"Accounts_1\" ON (\"Accounts\".\"ID\" = \"Accounts_1\".\"ParentID\") ORDER BY "
      "\"Accounts_1\".\"Position\" DESC) SELECT \"viewTree\".\"ParentID\" AS \"ParentID\" FROM \"viewTree\" "
      "ORDER BY \"viewTree\".\"__order1\" DESC");
}

TEST_F(JetTranslator, OutputNamesFollowJet) {
  const Translation translation = Translate(
      "SELECT Accounts.ID, Movements.ID, Code, Balance * 2, Sum(Amount) AS Total, 1 FROM Accounts "
      "INNER JOIN Movements ON Accounts.ID = Movements.AccountID GROUP BY Accounts.ID, Movements.ID, "
      "Code, Balance",
      catalog_);
  std::vector<std::string> names;
  for (const ResultColumn& column : translation.columns) names.push_back(column.name);
  EXPECT_EQ(names, (std::vector<std::string>{"Accounts.ID", "Movements.ID", "Code", "Expr1000", "Total",
                                             "Expr1001"}));
}

TEST_F(JetTranslator, ResultTypesFollowJet) {
  const Translation translation = Translate(
      "SELECT Sum(Balance) AS A, Count(Code) AS B, Max(Code) AS C, Sum(Position) AS D, 1.5 AS E, #1/1/2023# "
      "AS F, "
      "True AS G, Balance / 2 AS H FROM Accounts GROUP BY Balance",
      catalog_);
  std::vector<FieldType> types;
  for (const ResultColumn& column : translation.columns) types.push_back(column.type);
  EXPECT_EQ(types, (std::vector<FieldType>{FieldType::kCurrency, FieldType::kLong, FieldType::kText,
                                           FieldType::kLong, FieldType::kDouble, FieldType::kDate,
                                           FieldType::kBoolean, FieldType::kDouble}));
}

TEST_F(JetTranslator, PlainColumnKnowsItsBaseTableAndColumn) {
  const Translation translation = Translate("SELECT * FROM viewTree", catalog_);
  EXPECT_EQ(translation.columns[1].name, "Accounts_1.ID");
  EXPECT_EQ(translation.columns[1].base_table, "Accounts");
  EXPECT_EQ(translation.columns[1].base_column, "ID");
}

TEST_F(JetTranslator, SingleTableSelectIsUpdatable) {
  EXPECT_EQ(Translate("SELECT * FROM Accounts WHERE ID = 1", catalog_).updatable_table, "Accounts");
  EXPECT_EQ(Translate("SELECT * FROM viewByCode", catalog_).updatable_table, "Accounts");
  EXPECT_EQ(Translate("SELECT Count(*) FROM Accounts", catalog_).updatable_table, "");
  EXPECT_EQ(Translate("SELECT * FROM viewTree", catalog_).updatable_table, "");
}

TEST_F(JetTranslator, DeclaredParametersComeFirstThenImplicitOnes) {
  const Translation translation = Translate(
      "PARAMETERS B Long, A Text; SELECT ID FROM Accounts WHERE Code = [A] AND ID = Foo AND Position = [B]",
      catalog_);
  ASSERT_EQ(translation.parameters.size(), 3u);
  EXPECT_EQ(translation.parameters[0].name, "B");
  EXPECT_EQ(translation.parameters[0].type, FieldType::kLong);
  EXPECT_EQ(translation.parameters[1].name, "A");
  EXPECT_EQ(translation.parameters[2].name, "Foo");
  EXPECT_EQ(translation.parameters[2].type, FieldType::kUnknown);
  EXPECT_EQ(translation.parameters[2].meets, FieldType::kLong);
  EXPECT_NE(translation.sql.find("\"Accounts\".\"Code\" = (?2)"), std::string::npos);
}

TEST_F(JetTranslator, DeclaredParameterShadowsTheColumn) {
  const Translation translation = Translate("SELECT * FROM viewByCode", catalog_);
  ASSERT_EQ(translation.parameters.size(), 1u);
  EXPECT_EQ(translation.parameters[0].name, "Code");
  EXPECT_NE(translation.sql.find("\"Accounts\".\"Code\" = (?1)"), std::string::npos);
}

// Deliberately so: a declared parameter wins over a column even for a bare
// name, which is why stored queries qualify every column.
TEST_F(JetTranslator, DeclaredParameterShadowsEvenABareColumnName) {
  EXPECT_EQ(Sql("PARAMETERS Code Text; SELECT ID FROM Accounts WHERE Code = 'x'"),
            "SELECT \"Accounts\".\"ID\" AS \"ID\" FROM \"Accounts\" WHERE (?1 = ('x') COLLATE NOCASE)");
}

TEST_F(JetTranslator, ParameterMeetingCurrencyColumnSaysSo) {
  const Translation translation = Translate("UPDATE Accounts SET Balance = [NewBalance]", catalog_);
  EXPECT_EQ(translation.parameters[0].meets, FieldType::kCurrency);
}

TEST_F(JetTranslator, UnknownTableIsError3078WithItsName) {
  try {
    Translate("SELECT * FROM NoSuchTable;", catalog_);
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), 3078);
    EXPECT_EQ(
        error.Description(),
        "The Microsoft Jet database engine cannot find the input table or query 'NoSuchTable'. Make sure it "
        "exists and that its name is spelled correctly.");
  }
}

TEST_F(JetTranslator, StrayApostropheIsNeverRepaired) {
  EXPECT_EQ(ErrorNumber("UPDATE Accounts SET Code='O'Brien' WHERE (ID=3)"), 3075);
}

TEST_F(JetTranslator, UnknownFunctionIsError3085) {
  EXPECT_EQ(ErrorNumber("SELECT Nz(Code) FROM Accounts"), 3085);
}

TEST_F(JetTranslator, InsertCountMismatchIsError3346) {
  EXPECT_EQ(ErrorNumber("INSERT INTO Accounts (ID, Code) SELECT 1 AS A"), 3346);
}

TEST_F(JetTranslator, InsertIntoUnknownFieldIsError3127) {
  EXPECT_EQ(ErrorNumber("INSERT INTO Accounts (Nope) VALUES (1)"), 3127);
}

TEST_F(JetTranslator, KindFollowsTheStatement) {
  EXPECT_EQ(Translate("SELECT * FROM Accounts", catalog_).kind, StatementKind::kSelect);
  EXPECT_EQ(Translate("INSERT INTO Accounts (ID) VALUES (1)", catalog_).kind, StatementKind::kInsert);
  EXPECT_EQ(Translate("UPDATE Accounts SET ID = 1", catalog_).kind, StatementKind::kUpdate);
  EXPECT_EQ(Translate("DELETE FROM Accounts", catalog_).kind, StatementKind::kDelete);
}

TEST_F(JetTranslator, SameTextSameTranslation) {
  const std::string text =
      "SELECT viewTree.*, Movements.Amount FROM viewTree LEFT JOIN Movements ON "
      "viewTree.Accounts_1.ID = Movements.AccountID";
  EXPECT_EQ(Sql(text), Sql(text));
}

}  // namespace
}  // namespace ldg::store::jet
