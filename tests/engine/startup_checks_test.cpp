#include "engine/startup_checks.hpp"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "engine/schema_upkeep.hpp"
#include "store/constants.hpp"
#include "support/nullable.hpp"
#include "template_file_fixture.hpp"

namespace ldg {
namespace {

using TraceLine = std::tuple<std::string, std::string, std::string>;

class StartupChecksTest : public testing::TemplateFileTest {
 protected:
  StartupCheckSinks RecordingSinks() {
    StartupCheckSinks sinks;
    sinks.trace = [this](std::string_view procedure, std::string_view step, std::string_view name) {
      trace_.emplace_back(std::string(procedure), std::string(step), std::string(name));
    };
    sinks.opening_balance_unbalanced = [this](const std::string& name, Currency balance) {
      unbalanced_.emplace_back(name, balance);
    };
    return sinks;
  }

  void StoreQuery(const std::string& name, const std::string& sql) {
    if (HasQuery(name)) db_->QueryDefs().Delete(name);
    db_->CreateQueryDef(name, sql);
  }

  std::string QueryText(const std::string& name) { return db_->QueryDefs().Item(name)->SQL(); }

  std::vector<TraceLine> trace_;
  std::vector<std::pair<std::string, Currency>> unbalanced_;
};

// ---- the internal checks ----

TEST_F(StartupChecksTest, InternalChecksTraceTheirSevenStepsInOrder) {
  RunInternalChecks(*db_, RecordingSinks());
  EXPECT_EQ(trace_, (std::vector<TraceLine>{{"InternalChecks", "1", "Start"},
                                            {"InternalChecks", "2", "CheckViewAccountsRecursive"},
                                            {"InternalChecks", "3", "CheckAccounts"},
                                            {"InternalChecks", "4", "CheckBookEntries"},
                                            {"InternalChecks", "5", "CheckDefinitiveSets"},
                                            {"InternalChecks", "6", "CheckQueries"},
                                            {"InternalChecks", "7", "Done"}}));
}

TEST_F(StartupChecksTest, InternalChecksYieldAfterEachStep) {
  testing::CountingHooks hooks;
  State().hooks = &hooks;
  RunInternalChecks(*db_);
  EXPECT_EQ(hooks.yields, 7);
}

TEST_F(StartupChecksTest, InternalChecksRunWithoutSinks) {
  AddAccount("1000", Currency::FromUnits(100));
  EXPECT_NO_THROW(RunInternalChecks(*db_));
}

TEST_F(StartupChecksTest, RecursiveViewWithoutOrderByIsWrittenAnew) {
  StoreQuery(
      "viewAccountsRecursive",
      "SELECT Accounts.ID, Accounts_1.* FROM Accounts INNER JOIN Accounts AS Accounts_1 ON Accounts.ID = "
      "Accounts_1.ParentID;");
  CheckViewAccountsRecursive(*db_);
  EXPECT_EQ(
      QueryText("viewAccountsRecursive"),
      "SELECT Accounts.ID, Accounts.Code, Accounts.Name, Accounts.Balance, Accounts.ChildrensBalance, "
      "Accounts_1.* FROM Accounts INNER JOIN Accounts AS Accounts_1 ON Accounts.ID = Accounts_1.ParentID "
      "ORDER BY Accounts_1.Position, Accounts_1.Code;");
}

TEST_F(StartupChecksTest, RecursiveViewWithAnOrderByIsKeptAsItIs) {
  const std::string own =
      "SELECT Accounts.ID, Accounts_1.* FROM Accounts INNER JOIN Accounts AS Accounts_1 ON "
      "Accounts.ID = Accounts_1.ParentID ORDER BY Accounts_1.Code;";
  StoreQuery("viewAccountsRecursive", own);
  CheckViewAccountsRecursive(*db_);
  EXPECT_EQ(QueryText("viewAccountsRecursive"), own);
}

TEST_F(StartupChecksTest, AMissingRecursiveViewIsWritten) {
  db_->QueryDefs().Delete("viewAccountsRecursive");
  CheckViewAccountsRecursive(*db_);
  EXPECT_EQ(QueryText("viewAccountsRecursive"), kViewAccountsRecursiveSql);
}

TEST_F(StartupChecksTest, TheRewrittenRecursiveViewRunsInTreeOrder) {
  StoreQuery("viewAccountsRecursive", "SELECT Accounts.ID FROM Accounts;");
  CheckViewAccountsRecursive(*db_);
  int32_t root = AddAccount("A", Currency());
  for (auto [code, position] : {std::pair{"1020", 2}, std::pair{"1010", 1}}) {
    int32_t id = AddAccount(code, Currency());
    db_->Execute("UPDATE Accounts SET ParentID = " + std::to_string(root) +
                     ", [Position] = " + std::to_string(position) + " WHERE ID = " + std::to_string(id) + ";",
                 store::dbFailOnError);
  }
  auto rows = db_->OpenRecordset("viewAccountsRecursive", store::dbOpenSnapshot);
  std::vector<std::string> codes;
  for (; !rows->Eof(); rows->MoveNext()) codes.push_back(ReadString(rows->Value("Accounts_1.Code")));
  EXPECT_EQ(codes, (std::vector<std::string>{"1010", "1020"}));
}

TEST_F(StartupChecksTest, SearchViewsAreWrittenAnewWhateverTheyHeld) {
  StoreQuery("viewAccountsIndexGL", "SELECT AccountsIndex.ID FROM AccountsIndex;");
  db_->QueryDefs().Delete("viewAccountsIndexDetail");
  CheckQueries(*db_);
  EXPECT_EQ(
      QueryText("viewAccountsIndexGL"),
      "PARAMETERS Search Text; SELECT AccountsIndex.ID, AccountsIndex.SearchName, AccountsIndex.MasterID, "
      "AccountsIndex.IsSum FROM AccountsIndex WHERE (((AccountsIndex.SearchName) Like [Search] & \"*\") AND "
      "((AccountsIndex.MasterID)=0) AND ((AccountsIndex.IsSum)=False)) ORDER BY AccountsIndex.SearchName;");
  EXPECT_EQ(QueryText("viewAccountsIndexDetail"),
            "PARAMETERS Search Text; SELECT AccountsIndex.ID, AccountsIndex.SearchName, "
            "AccountsIndex.MasterID From "
            "AccountsIndex WHERE (((AccountsIndex.SearchName) Like [Search] & \"*\") AND "
            "((AccountsIndex.MasterID)>0)) ORDER BY AccountsIndex.SearchName;");
}

TEST_F(StartupChecksTest, SearchViewOfGeneralLedgerFindsByTheStartOfTheName) {
  CheckQueries(*db_);
  db_->Execute(
      "INSERT INTO AccountsIndex (ID, SearchName, IsMaster, IsSum, MasterID) VALUES (7, 'Kasse', False, "
      "False, 0);",
      store::dbFailOnError);
  db_->Execute(
      "INSERT INTO AccountsIndex (ID, SearchName, IsMaster, IsSum, MasterID) VALUES (8, 'Kunde', False, "
      "False, 3);",
      store::dbFailOnError);
  auto query = db_->QueryDefs().Item("viewAccountsIndexGL");
  query->Parameters().Item("Search").Value("Ka");
  auto rows = query->OpenRecordset(store::dbOpenSnapshot);
  ASSERT_FALSE(rows->Eof());
  EXPECT_EQ(ReadLong(rows->Value("ID")), 7);
  rows->MoveNext();
  EXPECT_TRUE(rows->Eof());
}

TEST_F(StartupChecksTest, NullLiegenCodeOfOldRowsBecomesZero) {
  int32_t id = AddAccount("1000", Currency());
  UpdateAccountsTable(*db_);
  ASSERT_TRUE(ValueOf("SELECT LiegenCode FROM Accounts WHERE ID = " + std::to_string(id) + ";", "LiegenCode")
                  .IsNull());
  db_->Execute("UPDATE Accounts SET LiegenCode = 5 WHERE ID = " + std::to_string(id) + ";",
               store::dbFailOnError);
  int32_t other = AddAccount("1001", Currency());
  db_->Execute("UPDATE Accounts SET LiegenCode = Null WHERE ID = " + std::to_string(other) + ";",
               store::dbFailOnError);
  CheckAccounts(*db_);
  EXPECT_EQ(ReadLong(ValueOf("SELECT LiegenCode FROM Accounts WHERE ID = " + std::to_string(id) + ";",
                             "LiegenCode")),
            5);
  Variant fixed =
      ValueOf("SELECT LiegenCode FROM Accounts WHERE ID = " + std::to_string(other) + ";", "LiegenCode");
  EXPECT_FALSE(fixed.IsNull());
  EXPECT_EQ(ReadLong(fixed), 0);
}

TEST_F(StartupChecksTest, LiegenCodeOfRowsThatPredateTheColumnReadsZeroAfterTheChecks) {
  int32_t id = AddAccount("1000", Currency());
  RunInternalChecks(*db_);
  Variant value =
      ValueOf("SELECT LiegenCode FROM Accounts WHERE ID = " + std::to_string(id) + ";", "LiegenCode");
  EXPECT_FALSE(value.IsNull());
  EXPECT_EQ(ReadLong(value), 0);
}

TEST_F(StartupChecksTest, UnbalancedOpeningRaisesTheEventOnceWithNameAndSum) {
  AddAccount("1000", Currency::FromUnits(250));
  AddAccount("2000", Currency::FromUnits(-150));
  RunInternalChecks(*db_, RecordingSinks());
  ASSERT_EQ(unbalanced_.size(), 1u);
  EXPECT_EQ(unbalanced_[0].first, db_->Name());
  EXPECT_EQ(unbalanced_[0].second, Currency::FromUnits(100));
}

TEST_F(StartupChecksTest, BalancedOpeningRaisesNoEvent) {
  AddAccount("1000", Currency::FromUnits(250));
  AddAccount("2000", Currency::FromUnits(-250));
  AddAccount("9000", Currency::FromUnits(99), true);  // a sum holds no opening of its own
  RunInternalChecks(*db_, RecordingSinks());
  EXPECT_TRUE(unbalanced_.empty());
}

TEST_F(StartupChecksTest, ChecksSaveTheOpeningBalancesOnEveryRow) {
  int32_t plain = AddAccount("1000", Currency::FromUnits(100));
  int32_t sum = AddAccount("9000", Currency::FromUnits(40), true);
  RunInternalChecks(*db_, RecordingSinks());
  EXPECT_EQ(ReadCurrency(
                ValueOf("SELECT SaveOB FROM Accounts WHERE ID = " + std::to_string(plain) + ";", "SaveOB")),
            Currency::FromUnits(100));
  EXPECT_EQ(
      ReadCurrency(ValueOf("SELECT SaveOB FROM Accounts WHERE ID = " + std::to_string(sum) + ";", "SaveOB")),
      Currency::FromUnits(40));
  EXPECT_EQ(workspace_->TransactionLevel(), 0);
}

TEST_F(StartupChecksTest, ChecksAddTheColumnsOfBookEntriesAndDefinitiveSets) {
  RunInternalChecks(*db_);
  EXPECT_TRUE(HasField("BookEntries", "DefinitiveJournal"));
  EXPECT_TRUE(HasField("BookEntries", "Tag"));
  EXPECT_TRUE(HasField("BookEntries", "Tags"));
  EXPECT_FALSE(HasField("BookEntries", "Mark1"));  // the repairs add the free flags
  EXPECT_TRUE(HasField("DefinitiveSets", "Number"));
}

TEST_F(StartupChecksTest, ChecksOnAFileWithoutAccountsRaiseTheStoreError) {
  db_->Close();
  std::string bare = (folder_ / "bare.qdb6f").string();
  engine_->CreateDatabase(bare)->Close();
  db_ = workspace_->OpenDatabase(bare);
  try {
    RunInternalChecks(*db_);
    ADD_FAILURE() << "no error";
  } catch (const Error& error) {
    EXPECT_NE(error.Number(), 0);
  }
}

// ---- the start-up repairs ----

TEST_F(StartupChecksTest, RepairsDeleteAccountsWithoutACode) {
  AddAccount("1000", Currency());
  AddAccount("", Currency());
  AddAccount("", Currency());
  RunStartupRepairs(*db_);
  EXPECT_EQ(CountOf("Accounts"), 1);
  EXPECT_EQ(CountOf("Accounts WHERE Code = '1000'"), 1);
}

TEST_F(StartupChecksTest, AnEmptyCodeIsNotAMissingCode) {
  db_->Execute("INSERT INTO Accounts (Code, Name) VALUES ('', 'blank');", store::dbFailOnError);
  RunStartupRepairs(*db_);
  EXPECT_EQ(CountOf("Accounts"), 1);
}

TEST_F(StartupChecksTest, RepairsDeleteScratchQueriesAndKeepTheOthers) {
  StoreQuery("tempX", "SELECT Accounts.ID FROM Accounts;");
  StoreQuery("tempMovSums", "SELECT Movements.AccountID FROM Movements;");
  StoreQuery("45267123456789temp", "SELECT Accounts.ID FROM Accounts;");
  StoreQuery("viewTemp", "SELECT Accounts.ID FROM Accounts;");
  StoreQuery("mytemp", "SELECT Accounts.ID FROM Accounts;");
  int before = db_->QueryDefs().Count();
  RunStartupRepairs(*db_);
  EXPECT_FALSE(HasQuery("tempX"));
  EXPECT_FALSE(HasQuery("tempMovSums"));
  EXPECT_FALSE(HasQuery("45267123456789temp"));
  EXPECT_TRUE(HasQuery("viewTemp"));
  EXPECT_TRUE(HasQuery("mytemp"));
  EXPECT_TRUE(HasQuery("viewAccountsRecursive"));
  EXPECT_EQ(db_->QueryDefs().Count(), before - 3);
}

TEST_F(StartupChecksTest, ScratchNamesBeginWithTempOrAreDigitsBeforeTemp) {
  EXPECT_TRUE(IsScratchQueryName("temp"));
  EXPECT_TRUE(IsScratchQueryName("tempX"));
  EXPECT_TRUE(IsScratchQueryName("TempX"));
  EXPECT_TRUE(IsScratchQueryName("1temp"));
  EXPECT_TRUE(IsScratchQueryName("45267123456789temp"));
  EXPECT_FALSE(IsScratchQueryName("tem"));
  EXPECT_FALSE(IsScratchQueryName("12temp3"));
  EXPECT_FALSE(IsScratchQueryName("1.5temp"));
  EXPECT_FALSE(IsScratchQueryName("-12temp"));
  EXPECT_FALSE(IsScratchQueryName("xtemp"));
  EXPECT_FALSE(IsScratchQueryName("viewAccountsRecursive"));
  EXPECT_FALSE(IsScratchQueryName(""));
}

TEST_F(StartupChecksTest, RepairsAddTheFreeFlagsOfBookEntriesAsFalse) {
  db_->Execute("INSERT INTO BookEntries (JournalID, DocumentID) VALUES (1, 'A1');", store::dbFailOnError);
  RunStartupRepairs(*db_);
  for (int i = 1; i <= 6; ++i) {
    std::string mark = "Mark" + std::to_string(i);
    ASSERT_TRUE(HasField("BookEntries", mark)) << mark;
    EXPECT_EQ(FieldOf("BookEntries", mark).DefaultValue(), "False");
    EXPECT_FALSE(ReadBoolean(ValueOf("SELECT " + mark + " FROM BookEntries;", mark))) << mark;
  }
}

TEST_F(StartupChecksTest, RepairsBringVatAccountsUpToDate) {
  auto vat = db_->TableDefs().Item("VatAccounts");
  vat->Indexes().Delete("Code");
  RunStartupRepairs(*db_);
  EXPECT_TRUE(HasIndex("VatAccounts", "Code"));
  EXPECT_FALSE(db_->TableDefs().Item("VatAccounts")->Indexes().Item("Code")->Unique());
}

TEST_F(StartupChecksTest, RepairsYieldAfterEachRepairButTheLast) {
  testing::CountingHooks hooks;
  State().hooks = &hooks;
  RunStartupRepairs(*db_);
  EXPECT_EQ(hooks.yields, 2);
}

TEST_F(StartupChecksTest, RepairsOnAFileWithoutTheirTablesRaiseNothing) {
  db_->Close();
  std::string bare = (folder_ / "bare.qdb6f").string();
  engine_->CreateDatabase(bare)->Close();
  db_ = workspace_->OpenDatabase(bare);
  EXPECT_NO_THROW(RunStartupRepairs(*db_));
}

TEST_F(StartupChecksTest, RunningChecksAndRepairsTwiceChangesNothing) {
  AddAccount("1000", Currency::FromUnits(3));
  RunInternalChecks(*db_);
  RunStartupRepairs(*db_);
  std::string schema = SchemaDump();
  RunInternalChecks(*db_);
  RunStartupRepairs(*db_);
  EXPECT_EQ(SchemaDump(), schema);
  EXPECT_EQ(CountOf("Accounts"), 1);
}

}  // namespace
}  // namespace ldg
