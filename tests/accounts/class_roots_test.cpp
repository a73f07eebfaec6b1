// The two class roots that the creation writes into every new year file.
#include <gtest/gtest.h>

#include "tests/accounts/open_chart_fixture.hpp"

namespace ldg {
namespace {

using chart_testing::OpenChartTest;

using ClassRootsTest = OpenChartTest;

TEST_F(ClassRootsTest, TheBalanceSheetRootIsClassOneAndADebitSum) {
  const std::string where = " FROM Accounts WHERE Code = 'A';";
  EXPECT_EQ(CLng(Scalar("SELECT Class" + where, "Class")), 1);
  EXPECT_EQ(CStr(Scalar("SELECT Name" + where, "Name")), "Bilanz");
  EXPECT_TRUE(CBool(Scalar("SELECT IsDebit" + where, "IsDebit")));
  EXPECT_TRUE(CBool(Scalar("SELECT IsSum" + where, "IsSum")));
  EXPECT_TRUE(Scalar("SELECT ParentID" + where, "ParentID").IsNull());
  EXPECT_EQ(CLng(Scalar("SELECT ReferenceNr" + where, "ReferenceNr")), 0);
  EXPECT_EQ(CLng(Scalar("SELECT Position" + where, "Position")), 1);
  EXPECT_TRUE(CBool(Scalar("SELECT IsGeneralLedger" + where, "IsGeneralLedger")));
  EXPECT_EQ(CStr(Scalar("SELECT CreatedBy" + where, "CreatedBy")), "System");
  EXPECT_FALSE(Scalar("SELECT CreateDate" + where, "CreateDate").IsNull());
}

TEST_F(ClassRootsTest, TheIncomeStatementRootIsClassTwoAndACreditSum) {
  const std::string where = " FROM Accounts WHERE Code = 'B';";
  EXPECT_EQ(CLng(Scalar("SELECT Class" + where, "Class")), 2);
  EXPECT_EQ(CStr(Scalar("SELECT Name" + where, "Name")), "Erfolgsrechnung");
  EXPECT_FALSE(CBool(Scalar("SELECT IsDebit" + where, "IsDebit")));
  EXPECT_TRUE(CBool(Scalar("SELECT IsSum" + where, "IsSum")));
  EXPECT_TRUE(Scalar("SELECT ParentID" + where, "ParentID").IsNull());
  // Both roots hold ReferenceNr 0, the second one too.
  EXPECT_EQ(CLng(Scalar("SELECT ReferenceNr" + where, "ReferenceNr")), 0);
  EXPECT_EQ(CLng(Scalar("SELECT Position" + where, "Position")), 2);
  EXPECT_TRUE(CBool(Scalar("SELECT IsGeneralLedger" + where, "IsGeneralLedger")));
  EXPECT_EQ(CStr(Scalar("SELECT CreatedBy" + where, "CreatedBy")), "System");
}

TEST_F(ClassRootsTest, RowsWrittenThroughTheFixtureInheritTheClassOfTheirParent) {
  const int32_t assets = InsertSum(RootA(), "1", "Aktiven");
  const int32_t cash = InsertAccount(assets, "1000", "Kasse");
  EXPECT_EQ(CLng(Scalar("SELECT Class FROM Accounts WHERE ID = " + std::to_string(cash) + ";", "Class")), 1);
  EXPECT_EQ(IdOf("1000"), cash);
}

}  // namespace
}  // namespace ldg
