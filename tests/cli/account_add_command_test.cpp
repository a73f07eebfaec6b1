// ldg account add: a new account through the engine's placement rules.
#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <string>

#include "support/conversions.hpp"
#include "tests/cli/chart_file_fixture.hpp"
#include "tests/cli/cli_runner.hpp"

namespace ldg::cli {
namespace {

class AccountAddCommandTest : public ChartFileTest {
 protected:
  std::string Add(std::vector<std::string> options) {
    std::vector<std::string> arguments = {"account", "add", path_};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return testing::RunLdg(arguments);
  }
  Variant FieldOf(const std::string& code, const std::string& field) {
    return FileScalar("SELECT " + field + " FROM Accounts WHERE Code = '" + code + "';", field);
  }
};

TEST_F(AccountAddCommandTest, AddsAChildOfTheParentAndPrintsItsID) {
  const std::string out = Add({"--code", "1020", "--name", "Bank", "--parent", "1"});
  EXPECT_EQ(out, std::to_string(FileIdOf("1020")) + "\n");
  EXPECT_EQ(CLng(FieldOf("1020", "ParentID")), FileIdOf("1"));
  EXPECT_EQ(CLng(FieldOf("1020", "Position")), 0);
  EXPECT_EQ(CStr(FieldOf("1020", "Name")), "Bank");
}

TEST_F(AccountAddCommandTest, TheNewAccountShowsInTheChartAtItsPlace) {
  Add({"--code", "1020", "--name", "Bank", "--parent", "1"});
  const std::string out = testing::RunLdg({"accounts", path_, "--format", "csv"});
  EXPECT_NE(out.find("    1000,Kasse,Account,150.00\r\n"
                     "    1020,Bank,Account,0.00\r\n"
                     "    1100,Debitoren,Master,300.00\r\n"),
            std::string::npos)
      << out;
}

TEST_F(AccountAddCommandTest, WithoutASideFlagTheAccountTakesItsParentsSide) {
  Add({"--code", "2100", "--name", "Bankschulden", "--parent", "2"});
  EXPECT_TRUE(CBool(FieldOf("2100", "IsDebit")));
}

TEST_F(AccountAddCommandTest, CreditFlagMakesACreditAccount) {
  Add({"--code", "2100", "--name", "Bankschulden", "--parent", "2", "--credit"});
  EXPECT_FALSE(CBool(FieldOf("2100", "IsDebit")));
}

TEST_F(AccountAddCommandTest, DebitFlagMakesADebitAccountBelowACreditParent) {
  Add({"--code", "3900", "--name", "Erlösminderungen", "--parent", "3", "--debit"});
  EXPECT_TRUE(CBool(FieldOf("3900", "IsDebit")));
}

TEST_F(AccountAddCommandTest, DebitAndCreditTogetherAreRefused) {
  EXPECT_THROW(Add({"--code", "2100", "--name", "X", "--parent", "2", "--debit", "--credit"}),
               CLI::ParseError);
}

TEST_F(AccountAddCommandTest, SumAndMasterFlagsMakeASumAndAMaster) {
  Add({"--code", "15", "--name", "Anlagen", "--parent", "1", "--sum"});
  Add({"--code", "1300", "--name", "Darlehensnehmer", "--parent", "1", "--master"});
  const std::string out = testing::RunLdg({"accounts", path_, "--format", "csv"});
  EXPECT_NE(out.find("    15,Anlagen,Sum,0.00\r\n"), std::string::npos) << out;
  EXPECT_NE(out.find("    1300,Darlehensnehmer,Master,0.00\r\n"), std::string::npos) << out;
  EXPECT_EQ(CLng(FieldOf("1300", "MasterID")), FileIdOf("1300"));
}

TEST_F(AccountAddCommandTest, BelowAMasterTheNewAccountIsADetail) {
  Add({"--code", "11003", "--name", "Kunde Drei", "--parent", "1100"});
  EXPECT_EQ(CLng(FieldOf("11003", "MasterID")), FileIdOf("1100"));
  EXPECT_FALSE(CBool(FieldOf("11003", "IsGeneralLedger")));
  const std::string out = testing::RunLdg({"accounts", path_, "--format", "csv"});
  EXPECT_NE(out.find("      11003,Kunde Drei,Detail,0.00\r\n"), std::string::npos) << out;
}

TEST_F(AccountAddCommandTest, PositionLastMakesASiblingNumberedAfterTheOthers) {
  Add({"--code", "1900", "--name", "Aktive Rechnungsabgrenzung", "--parent", "1000", "--position", "last"});
  EXPECT_EQ(CLng(FieldOf("1900", "ParentID")), FileIdOf("1"));
  EXPECT_EQ(CLng(FieldOf("1900", "Position")), 3);
}

TEST_F(AccountAddCommandTest, PositionPreviousTakesThePlaceOfTheRelative) {
  Add({"--code", "1050", "--name", "Post", "--parent", "1000", "--position", "previous"});
  EXPECT_EQ(CLng(FieldOf("1050", "ParentID")), FileIdOf("1"));
  EXPECT_EQ(CLng(FieldOf("1050", "Position")), 1);
}

TEST_F(AccountAddCommandTest, ASiblingOfAMasterFailsWithTheEnginesError) {
  const Error error = chart_testing::ErrorOf([&] {
    Add({"--code", "11009", "--name", "X", "--parent", "11001", "--position", "next", "--sum"});
  });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x80040000u + 1009));
  EXPECT_EQ(error.Source(), "ldg");
  EXPECT_EQ(error.Description(), "Invalid subaccount type. Only accounts allowed.");
  EXPECT_EQ(FileIdOf("11009"), 0);
}

TEST_F(AccountAddCommandTest, NextToTheMasterItselfFailsWith1010) {
  const Error error = chart_testing::ErrorOf([&] {
    Add({"--code", "1150", "--name", "X", "--parent", "1100", "--position", "next"});
  });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x80040000u + 1010));
  EXPECT_EQ(error.Description(),
            "You can only use the child relationship for new accounts related to the master account.");
}

TEST_F(AccountAddCommandTest, SumAndMasterTogetherFailWith1008AndNoText) {
  const Error error = chart_testing::ErrorOf([&] {
    Add({"--code", "16", "--name", "X", "--parent", "1", "--sum", "--master"});
  });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x80040000u + 1008));
  EXPECT_EQ(error.Description(), "");
}

TEST_F(AccountAddCommandTest, AChildOfAPlainAccountFailsWith1002) {
  const Error error = chart_testing::ErrorOf([&] {
    Add({"--code", "1001", "--name", "X", "--parent", "1000"});
  });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x80040000u + 1002));
  EXPECT_EQ(error.Description(),
            "The parent of an account, master account or sum in general ledger must be a sum.");
}

TEST_F(AccountAddCommandTest, AnUnknownParentCodeFails) {
  const Error error = chart_testing::ErrorOf([&] {
    Add({"--code", "1001", "--name", "X", "--parent", "9999"});
  });
  EXPECT_EQ(error.Number(), 5);
  EXPECT_EQ(error.Source(), "ldg");
  EXPECT_EQ(error.Description(), "No account has the code '9999'.");
}

TEST_F(AccountAddCommandTest, AnUnknownPositionWordFails) {
  const Error error = chart_testing::ErrorOf([&] {
    Add({"--code", "1001", "--name", "X", "--parent", "1", "--position", "first"});
  });
  EXPECT_EQ(error.Number(), 5);
  EXPECT_EQ(error.Description(), "--position takes last, next, previous or child, not 'first'.");
  EXPECT_EQ(FileIdOf("1001"), 0);
}

TEST_F(AccountAddCommandTest, ATakenCodeFailsWithTheStoresErrorAndAddsNothing) {
  const Error error = chart_testing::ErrorOf([&] {
    Add({"--code", "1000", "--name", "Zweite Kasse", "--parent", "1"});
  });
  EXPECT_EQ(error.Number(), 3022);
  EXPECT_EQ(CLng(FileScalar("SELECT Count(*) AS N FROM Accounts WHERE Code = '1000';", "N")), 1);
}

}  // namespace
}  // namespace ldg::cli
