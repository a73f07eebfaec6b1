#include <gtest/gtest.h>

#include "store/jet/lexer.hpp"
#include "support/error.hpp"

namespace ldg::store::jet {
namespace {

void ExpectSyntaxError(std::string_view text) {
  try {
    Tokenize(text);
    ADD_FAILURE() << "no error for " << text;
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), 3075);
    EXPECT_EQ(error.Description(), "Syntax error (missing operator) in query expression.");
  }
}

TEST(JetLexer, NameStartingWithDigitsIsOneName) {
  const std::vector<Token> tokens = Tokenize("452505312345678temp.AccountID");
  ASSERT_EQ(tokens.size(), 4u);
  EXPECT_EQ(tokens[0].kind, TokenKind::kName);
  EXPECT_EQ(tokens[0].text, "452505312345678temp");
  EXPECT_TRUE(tokens[1].IsSymbol("."));
  EXPECT_EQ(tokens[2].text, "AccountID");
}

TEST(JetLexer, NumbersKeepTheirText) {
  const std::vector<Token> tokens = Tokenize("1234.5678 7 0.00015 1E3");
  EXPECT_EQ(tokens[0].kind, TokenKind::kNumber);
  EXPECT_EQ(tokens[0].text, "1234.5678");
  EXPECT_EQ(tokens[1].text, "7");
  EXPECT_EQ(tokens[2].text, "0.00015");
  EXPECT_EQ(tokens[3].text, "1E3");
  EXPECT_EQ(tokens[3].kind, TokenKind::kNumber);
}

TEST(JetLexer, BracketedNameMayHoldBlanksAndDots) {
  const std::vector<Token> tokens = Tokenize("[Summe von Amount] [Accounts_1.ID]");
  EXPECT_EQ(tokens[0].text, "Summe von Amount");
  EXPECT_TRUE(tokens[0].bracketed);
  EXPECT_EQ(tokens[1].text, "Accounts_1.ID");
}

TEST(JetLexer, DoubledQuotesInsideStringsAreOneQuote) {
  const std::vector<Token> tokens = Tokenize(R"('O''Brien' "say ""hi""" "it's")");
  EXPECT_EQ(tokens[0].kind, TokenKind::kString);
  EXPECT_EQ(tokens[0].text, "O'Brien");
  EXPECT_EQ(tokens[1].text, "say \"hi\"");
  EXPECT_EQ(tokens[2].text, "it's");
}

TEST(JetLexer, UnterminatedStringIsASyntaxError) { ExpectSyntaxError("Name='O'Brien' WHERE (ID=3)"); }

TEST(JetLexer, UnterminatedBracketIsASyntaxError) { ExpectSyntaxError("SELECT [Text FROM Movements"); }

TEST(JetLexer, NulCharacterIsASyntaxError) { ExpectSyntaxError(std::string_view("a\0b", 3)); }

TEST(JetLexer, DateLiteralReadsMonthFirst) {
  EXPECT_DOUBLE_EQ(Tokenize("#3/1/2002#")[0].date, 37316.0);
  EXPECT_DOUBLE_EQ(Tokenize("#03/01/2002#")[0].date, 37316.0);
}

TEST(JetLexer, DateLiteralKeepsItsTime) {
  EXPECT_DOUBLE_EQ(ParseDateLiteral("3/31/2023 10:00:00"), 45016.0 + 10.0 / 24.0);
  EXPECT_DOUBLE_EQ(ParseDateLiteral("3/31/2023 10:00 PM"), 45016.0 + 22.0 / 24.0);
  EXPECT_DOUBLE_EQ(ParseDateLiteral("12:00 AM"), 0.0);
}

TEST(JetLexer, ImpossibleDateIsASyntaxError) {
  ExpectSyntaxError("#2/29/2023#");
  ExpectSyntaxError("#13/1/2023#");
  ExpectSyntaxError("#1/1/2023");
  ExpectSyntaxError("#25:00#");
}

TEST(JetLexer, OperatorsOfTwoCharacters) {
  const std::vector<Token> tokens = Tokenize("a<>b<=c>=d");
  EXPECT_TRUE(tokens[1].IsSymbol("<>"));
  EXPECT_TRUE(tokens[3].IsSymbol("<="));
  EXPECT_TRUE(tokens[5].IsSymbol(">="));
}

TEST(JetLexer, KeywordsIgnoreCaseButNotBrackets) {
  const std::vector<Token> tokens = Tokenize("sElEcT [Select]");
  EXPECT_TRUE(tokens[0].IsKeyword("SELECT"));
  EXPECT_FALSE(tokens[1].IsKeyword("SELECT"));
}

}  // namespace
}  // namespace ldg::store::jet
