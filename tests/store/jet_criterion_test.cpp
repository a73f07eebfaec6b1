#include <gtest/gtest.h>

#include "store/jet/translator.hpp"
#include "support/error.hpp"

namespace ldg::store::jet {
namespace {

class JetCriterion : public ::testing::Test {
 protected:
  bool Matches(std::string_view criterion, const std::vector<Variant>& row) {
    return CompileCriterion(criterion, columns_)->Matches(row);
  }

  std::vector<Variant> Row() const {
    return {Variant(int32_t{1}),     Variant(int32_t{6}),
            Variant("Kunde Müller"), Variant(Currency::FromRaw(12345678)),
            Variant(true),           Variant(OleDate(45016.0)),
            Variant::Null(),         Variant(45250.512345678901)};
  }

  std::vector<ResultColumn> columns_ = {
      {"Accounts.ID", FieldType::kLong, "Accounts", "ID"},
      {"Accounts_1.ID", FieldType::kLong, "Accounts", "ID"},
      {"Name", FieldType::kText, "Accounts", "Name"},
      {"Balance", FieldType::kCurrency, "Accounts", "Balance"},
      {"IsSum", FieldType::kBoolean, "Accounts", "IsSum"},
      {"Date", FieldType::kDate, "BookEntries", "Date"},
      {"Tag", FieldType::kText, "BookEntries", "Tag"},
      {"AttachedDBInstanceID", FieldType::kDouble, "sysAttachedDatabases", "AttachedDBInstanceID"}};
};

TEST_F(JetCriterion, DottedFieldNameMatchesExactly) {
  EXPECT_TRUE(Matches("Accounts.ID=1", Row()));
  EXPECT_FALSE(Matches("Accounts.ID=6", Row()));
  EXPECT_TRUE(Matches("Accounts_1.ID = 6", Row()));
}

TEST_F(JetCriterion, TextComparesIgnoringCase) { EXPECT_TRUE(Matches("Name = \"KUNDE MÜLLER\"", Row())); }

TEST_F(JetCriterion, CurrencyComparesExactlyWithTheLiteral) {
  EXPECT_TRUE(Matches("Balance = 1234.5678", Row()));
  EXPECT_FALSE(Matches("Balance = 1234.5677", Row()));
  EXPECT_TRUE(Matches("Balance > 1234.5677 AND Balance < 1234.5679", Row()));
}

TEST_F(JetCriterion, BooleanTrueIsMinusOne) {
  EXPECT_TRUE(Matches("IsSum = True", Row()));
  EXPECT_TRUE(Matches("IsSum = -1", Row()));
  EXPECT_FALSE(Matches("IsSum = False", Row()));
}

TEST_F(JetCriterion, DateLiteralComparesWithTheDayNumber) {
  EXPECT_TRUE(Matches("Date = #3/31/2023#", Row()));
  EXPECT_TRUE(Matches("Date BETWEEN #3/1/2023# AND #03/31/2023#", Row()));
}

TEST_F(JetCriterion, NullMatchesNothingButIsNull) {
  EXPECT_FALSE(Matches("Tag = 'x'", Row()));
  EXPECT_FALSE(Matches("NOT (Tag = 'x')", Row()));
  EXPECT_TRUE(Matches("Tag Is Null", Row()));
  EXPECT_TRUE(Matches("Tag = 'x' OR Accounts.ID = 1", Row()));
}

TEST_F(JetCriterion, LikeUsesJetWildcards) {
  EXPECT_TRUE(Matches("Name Like 'kunde*'", Row()));
  EXPECT_TRUE(Matches("Name Like '?unde [l-n]üller'", Row()));
  EXPECT_FALSE(Matches("Name Like 'Kunde%'", Row()));
}

TEST_F(JetCriterion, DoubleRenderedWithAllDigitsMatches) {
  EXPECT_TRUE(Matches("AttachedDBInstanceID =45250.512345678901", Row()));
  EXPECT_FALSE(Matches("AttachedDBInstanceID =45250.51234567", Row()));
}

TEST_F(JetCriterion, CriteriaTheEngineWrites) {
  const std::vector<ResultColumn> settings = {{"SettingSection", FieldType::kText, "Settings", "SettingSection"},
                                              {"ID", FieldType::kLong, "Settings", "ID"}};
  const std::vector<Variant> row = {Variant("QBK5Database"), Variant(int32_t{4})};
  EXPECT_TRUE(CompileCriterion("SettingSection=\"qbk5database\"", settings)->Matches(row));
  EXPECT_FALSE(CompileCriterion("SettingSection=\"QBK4Database\"", settings)->Matches(row));
  EXPECT_TRUE(CompileCriterion("ID < 5", settings)->Matches(row));
  EXPECT_TRUE(CompileCriterion("ID =4", settings)->Matches(row));
  EXPECT_FALSE(CompileCriterion("ID=3", settings)->Matches(row));
}

TEST_F(JetCriterion, BareNameFallsBackToTheBaseColumn) {
  std::vector<ResultColumn> columns = {{"BusinessYears.DBName", FieldType::kText, "BusinessYears", "DbName"}};
  EXPECT_TRUE(CompileCriterion("DbName = 'y.qdb'", columns)->Matches({Variant("Y.QDB")}));
}

TEST_F(JetCriterion, AmbiguousBareNameIsUnknown) {
  try {
    CompileCriterion("ID = 1", columns_);
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), 3070);
    EXPECT_EQ(error.Description(), "The name 'ID' in the criterion is not a field of the record set.");
  }
}

TEST_F(JetCriterion, UnknownFieldIsError3070) {
  try {
    CompileCriterion("Nope = 1", columns_);
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), 3070);
  }
}

TEST_F(JetCriterion, BrokenCriterionIsASyntaxError) {
  try {
    CompileCriterion("SettingSection=\"a\"b\"", columns_);
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), 3075);
  }
}

TEST_F(JetCriterion, TextAgainstNumberIsATypeMismatch) {
  try {
    Matches("Name = 5", Row());
    FAIL();
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), 3464);
    EXPECT_EQ(error.Description(), "Data type mismatch in criteria expression.");
  }
}

}  // namespace
}  // namespace ldg::store::jet
