#include <gtest/gtest.h>

#include "store/jet/parser.hpp"
#include "support/error.hpp"

namespace ldg::store::jet {
namespace {

int ErrorNumberOf(std::string_view text) {
  try {
    ParseStatement(text);
  } catch (const Error& error) {
    return error.Number();
  }
  return 0;
}

TEST(JetParser, ReadsParametersHeader) {
  const Statement statement = ParseStatement(
      "PARAMETERS Search Text ( 255 ), [End] DateTime, ID Long; SELECT Code FROM Accounts WHERE Code Like "
      "[Search]");
  ASSERT_EQ(statement.parameters.size(), 3u);
  EXPECT_EQ(statement.parameters[0].name, "Search");
  EXPECT_EQ(statement.parameters[0].type, FieldType::kText);
  EXPECT_EQ(statement.parameters[1].name, "End");
  EXPECT_EQ(statement.parameters[1].type, FieldType::kDate);
  EXPECT_EQ(statement.parameters[2].type, FieldType::kLong);
}

TEST(JetParser, DeleteStarFrom) {
  const Statement statement = ParseStatement("DELETE * FROM AccountsIndex;");
  EXPECT_EQ(statement.kind, Statement::Kind::kDelete);
  ASSERT_EQ(statement.from.size(), 1u);
  EXPECT_EQ(statement.from[0]->name, "AccountsIndex");
}

TEST(JetParser, AliasWithoutAs) {
  const Statement statement =
      ParseStatement("SELECT ID FROM Movements DependentMovementID WHERE (TaxID = 5)");
  EXPECT_EQ(statement.select->from[0]->name, "Movements");
  EXPECT_EQ(statement.select->from[0]->alias, "DependentMovementID");
}

TEST(JetParser, ParenthesisedJoins) {
  const Statement statement =
      ParseStatement("SELECT * FROM (A INNER JOIN B ON A.ID = B.AID) LEFT JOIN C ON B.ID = C.BID");
  const Source& top = *statement.select->from[0];
  EXPECT_EQ(top.kind, Source::Kind::kJoin);
  EXPECT_EQ(top.join, Source::JoinType::kLeft);
  EXPECT_EQ(top.left->kind, Source::Kind::kJoin);
  EXPECT_EQ(top.right->name, "C");
}

TEST(JetParser, InSelectAcceptsInnerSemicolon) {
  const Statement statement =
      ParseStatement("SELECT ID FROM Accounts WHERE (TaxID NOT IN (SELECT ID FROM Taxes;));");
  const Expr& where = *statement.select->where;
  EXPECT_EQ(where.kind, Expr::Kind::kInSelect);
  EXPECT_TRUE(where.negated);
}

TEST(JetParser, EmptyInListIsASyntaxError) {
  EXPECT_EQ(ErrorNumberOf("UPDATE Accounts SET TaxID=Null WHERE (ID IN ());"), 3075);
}

TEST(JetParser, NotBindsLooserThanIs) {
  const Statement statement = ParseStatement("SELECT * FROM Accounts WHERE (not FCID is Null)");
  const Expr& where = *statement.select->where;
  EXPECT_EQ(where.kind, Expr::Kind::kUnary);
  EXPECT_EQ(where.text, "NOT");
  EXPECT_EQ(where.args[0]->kind, Expr::Kind::kIsNull);
}

TEST(JetParser, ThreePartName) {
  const ExprPtr expr = ParseCriterion("viewAccountsRecursive.Accounts_1.ID = 3");
  ASSERT_EQ(expr->args[0]->parts.size(), 3u);
  EXPECT_EQ(expr->args[0]->parts[1], "Accounts_1");
}

TEST(JetParser, MissingClosingParenthesisIsASyntaxError) {
  EXPECT_EQ(ErrorNumberOf("SELECT * FROM A WHERE ((ID = 1)"), 3075);
}

TEST(JetParser, MissingOperandIsASyntaxError) {
  EXPECT_EQ(ErrorNumberOf("SELECT * FROM Vat2Tree WHERE ((ParentID=5) AND ( > \"K5\"))"), 3075);
}

TEST(JetParser, MalformedFromIsError3131) {
  EXPECT_EQ(ErrorNumberOf("SELECT * FROM A INNER B ON A.ID = B.ID"), 3131);
}

TEST(JetParser, TextAfterTheStatementIsError3142) {
  EXPECT_EQ(ErrorNumberOf("SELECT * FROM A; SELECT 1"), 3142);
}

TEST(JetParser, NotAStatementIsASyntaxError) { EXPECT_EQ(ErrorNumberOf("DROP TABLE A"), 3075); }

TEST(JetParser, DeepNestingIsRefusedNotOverflowed) {
  EXPECT_EQ(ErrorNumberOf("SELECT " + std::string(5000, '(') + "1" + std::string(5000, ')')), 3075);
}

TEST(JetParser, NegativeNumberLiteralStaysOneLiteral) {
  const ExprPtr expr = ParseCriterion("Balance = -0.00025");
  EXPECT_EQ(expr->args[1]->kind, Expr::Kind::kNumber);
  EXPECT_EQ(expr->args[1]->text, "-0.00025");
}

}  // namespace
}  // namespace ldg::store::jet
