#include "store/sqlite/jet_functions.hpp"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <string>

#include "store/jet/like_pattern.hpp"
#include "support/error.hpp"

namespace ldg::store::sqlite {
namespace {

class JetFunctions : public ::testing::Test {
 protected:
  JetFunctions() {
    sqlite3_open(":memory:", &db_);
    RegisterJetFunctions(db_);
  }
  ~JetFunctions() override { sqlite3_close(db_); }

  // The first value of the first row as text ("NULL" for Null), or
  // "error: <message>".
  std::string Value(const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(db_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
      return std::string("error: ") + sqlite3_errmsg(db_);
    }
    std::string result;
    const int step = sqlite3_step(statement);
    if (step == SQLITE_ROW) {
      const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
      result = sqlite3_column_type(statement, 0) == SQLITE_NULL ? "NULL" : std::string(text);
    } else if (step != SQLITE_DONE) {
      result = std::string("error: ") + sqlite3_errmsg(db_);
    }
    sqlite3_finalize(statement);
    return result;
  }

  sqlite3* db_ = nullptr;
};

TEST_F(JetFunctions, CollationFoldsCase) {
  EXPECT_EQ(Value("SELECT 'ä300' = 'Ä300' COLLATE JET"), "1");
  EXPECT_EQ(Value("SELECT 'A300' = 'Ä300' COLLATE JET"), "0");
}

TEST_F(JetFunctions, CollationSortsAccentNextToItsLetter) {
  EXPECT_EQ(Value("SELECT 'Ä300' < 'B200' COLLATE JET"), "1");
  EXPECT_EQ(Value("SELECT 'a100' < 'Ä300' COLLATE JET"), "1");
  EXPECT_EQ(Value("SELECT 'A300' < 'Ä300' COLLATE JET"), "1");
}

// Upper case letters sort as lower case ones, so the signs between the two
// alphabets ("_" among them) come before every letter.
TEST_F(JetFunctions, CollationFoldsAsciiToLowerCase) {
  EXPECT_EQ(Value("SELECT 'ABC' = 'abc' COLLATE JET"), "1");
  EXPECT_EQ(Value("SELECT '_x' < 'Ax' COLLATE JET"), "1");
  EXPECT_EQ(Value("SELECT 'Z' < '_' COLLATE JET"), "0");
  EXPECT_EQ(Value("SELECT 'ab' < 'ABC' COLLATE JET"), "1");
  EXPECT_EQ(Value("SELECT 'xä1' < 'XA2' COLLATE JET"), "1");
  EXPECT_EQ(Value("SELECT 'Xa2' < 'xÄ1' COLLATE JET"), "0");
}

TEST_F(JetFunctions, LikeIsTrueAsMinusOne) {
  EXPECT_EQ(Value("SELECT jet_like('VAT210200', 'vat*')"), "-1");
  EXPECT_EQ(Value("SELECT jet_like('ABC', 'vat*')"), "0");
}

TEST_F(JetFunctions, LikeOverNullIsNull) {
  EXPECT_EQ(Value("SELECT jet_like(NULL, '*')"), "NULL");
  EXPECT_EQ(Value("SELECT jet_like('x', NULL)"), "NULL");
}

TEST_F(JetFunctions, LikeWithUnbalancedBracketFails) {
  EXPECT_EQ(Value("SELECT jet_like('x', '[')"), "error: Invalid pattern string.");
}

TEST_F(JetFunctions, LikeOverNumbersUsesTheirText) { EXPECT_EQ(Value("SELECT jet_like(1100, '11*')"), "-1"); }

TEST_F(JetFunctions, CatReadsOneNullAsEmpty) {
  EXPECT_EQ(Value("SELECT jet_cat(NULL, '*')"), "*");
  EXPECT_EQ(Value("SELECT jet_cat('a', NULL)"), "a");
  EXPECT_EQ(Value("SELECT jet_cat(NULL, NULL)"), "NULL");
}

TEST_F(JetFunctions, CatShowsNumbersAsText) {
  EXPECT_EQ(Value("SELECT jet_cat(12, '-')"), "12-");
  EXPECT_EQ(Value("SELECT jet_cat(12.5, '')"), "12.5");
  EXPECT_EQ(Value("SELECT jet_cat(3.0, '')"), "3");
}

TEST_F(JetFunctions, FirstKeepsTheFirstValueNullIncluded) {
  EXPECT_EQ(Value("SELECT jet_first(v) FROM (SELECT NULL AS v UNION ALL SELECT 2)"), "NULL");
  EXPECT_EQ(Value("SELECT jet_first(v) FROM (SELECT 7 AS v UNION ALL SELECT 2)"), "7");
  EXPECT_EQ(Value("SELECT jet_first(v) FROM (SELECT 7 AS v) WHERE 0"), "NULL");
}

TEST_F(JetFunctions, CurrencyProductRoundsHalfToEven) {
  EXPECT_EQ(Value("SELECT jet_cur_mul(1000, 1000)"), "100");  // 0.1 * 0.1 = 0.01
  EXPECT_EQ(Value("SELECT jet_cur_mul(5, 10000)"), "5");      // 0.0005 * 1
  EXPECT_EQ(Value("SELECT jet_cur_mul(5, 5000)"), "2");       // 0.0005 * 0.5 = 0.00025 -> 0.0002
  EXPECT_EQ(Value("SELECT jet_cur_mul(15, 5000)"), "8");      // 0.00075 -> 0.0008
}

TEST_F(JetFunctions, CurrencyProductOverflowFails) {
  EXPECT_EQ(Value("SELECT jet_cur_mul(9000000000000000000, 20000)"), "error: integer overflow");
}

TEST_F(JetFunctions, DoubleQuotedWordIsNeverAString) {
  EXPECT_EQ(Value("SELECT \"nothing\""), "error: no such column: nothing");
}

TEST(JetLikePattern, StarQuestionAndDigit) {
  EXPECT_TRUE(jet::LikePattern("a*c").Matches("abbbc"));
  EXPECT_TRUE(jet::LikePattern("a?c").Matches("abc"));
  EXPECT_FALSE(jet::LikePattern("a?c").Matches("ac"));
  EXPECT_TRUE(jet::LikePattern("#0").Matches("50"));
  EXPECT_FALSE(jet::LikePattern("#0").Matches("x0"));
}

TEST(JetLikePattern, ClassesRangesAndNegation) {
  EXPECT_TRUE(jet::LikePattern("[a-c]x").Matches("Bx"));
  EXPECT_FALSE(jet::LikePattern("[!a-c]x").Matches("bx"));
  EXPECT_TRUE(jet::LikePattern("[*]").Matches("*"));
  EXPECT_FALSE(jet::LikePattern("[*]").Matches("a"));
}

TEST(JetLikePattern, PercentAndUnderscoreArePlain) {
  EXPECT_TRUE(jet::LikePattern("*50%*").Matches("x50%y"));
  EXPECT_FALSE(jet::LikePattern("*50%*").Matches("x500y"));
  EXPECT_FALSE(jet::LikePattern("a_b").Matches("axb"));
}

TEST(JetLikePattern, UmlautsFoldCase) { EXPECT_TRUE(jet::LikePattern("ä*").Matches("Ärni")); }

TEST(JetLikePattern, UnclosedBracketIsInvalid) {
  try {
    jet::LikePattern("[0-9");
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), 3075);
    EXPECT_EQ(error.Description(), "Invalid pattern string.");
  }
}

}  // namespace
}  // namespace ldg::store::sqlite
