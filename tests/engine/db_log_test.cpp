#include "engine/db_log.hpp"

#include <gtest/gtest.h>

#include <string>

#include "engine/host_hooks.hpp"
#include "store/field_type.hpp"
#include "support/platform.hpp"
#include "tests/engine/engine_file_fixture.hpp"

namespace ldg {
namespace {

class DbLogTest : public testing::EngineFileTest {
 protected:
  void SetUp() override {
    EngineFileTest::SetUp();
    path_ = MakeYearFile();
    workspace_ = State().DBEngine().CreateWorkspace("test", "Admin", "");
    database_ = workspace_->OpenDatabase(path_);
  }
  void TearDown() override {
    log_.DbClose();
    database_->Close();
    database_.reset();
    workspace_.reset();
    EngineFileTest::TearDown();
  }

  // A row of a session that crashed: opened, never closed.
  void AddCrashedRow() {
    log_.Database()->Execute(
        "INSERT INTO DbLog (TimeOpen, COMPUTERNAME, USERNAME) VALUES (#1/2/2024#, 'alt', 'beat');",
        store::dbFailOnError);
  }
  void AddClosedRow() {
    log_.Database()->Execute(
        "INSERT INTO DbLog (TimeOpen, TimeClose, COMPUTERNAME, USERNAME) VALUES (#1/1/2024#, #1/1/2024#, "
        "'alt', "
        "'carla');",
        store::dbFailOnError);
  }
  int32_t Rows(const std::string& where = "") { return CountOf(path_, "DbLog" + where); }

  std::string path_;
  std::shared_ptr<store::Workspace> workspace_;
  std::shared_ptr<store::Database> database_;
  DbLog log_;
};

TEST_F(DbLogTest, DbOpenAddsTheSessionsRowOnline) {
  EXPECT_TRUE(log_.DbOpen(*database_));
  EXPECT_GT(log_.MyID(), 0);
  const std::string mine = " WHERE ID = " + std::to_string(log_.MyID());
  EXPECT_EQ(Rows(mine + " AND TimeClose IS NULL AND TimeOpen IS NOT NULL"), 1);
  EXPECT_EQ(CStr(ValueOf(path_, "SELECT COMPUTERNAME FROM DbLog" + mine + ";", "COMPUTERNAME")),
            ComputerName());
  EXPECT_EQ(CStr(ValueOf(path_, "SELECT USERNAME FROM DbLog" + mine + ";", "USERNAME")), UserName());
}

TEST_F(DbLogTest, DbOpenKeepsTheComment) {
  log_.DbOpen(*database_, Variant("Nachtlauf"));
  EXPECT_EQ(CStr(ValueOf(path_, "SELECT Comment FROM DbLog;", "Comment")), "Nachtlauf");
}

TEST_F(DbLogTest, DbCloseWritesTheClosingTimeAndDropsTheConnection) {
  log_.DbOpen(*database_);
  const int32_t my_id = log_.MyID();
  log_.DbClose();
  EXPECT_EQ(log_.Database(), nullptr);
  EXPECT_EQ(Rows(" WHERE TimeClose IS NOT NULL AND ID = " + std::to_string(my_id)), 1);
}

TEST_F(DbLogTest, ACrashedSessionCountsAsOnline) {
  log_.DbOpen(*database_);
  AddCrashedRow();
  AddClosedRow();
  const auto online_others = log_.Users(false, true, true);
  ASSERT_EQ(online_others.size(), 1u);
  EXPECT_EQ(CStr(online_others[0].user_name), "beat");
  EXPECT_EQ(online_others[0].me, " ");
}

TEST_F(DbLogTest, UsersWithoutOnlineAndOfflineGivesOnlyTheOwnRow) {
  log_.DbOpen(*database_);
  AddCrashedRow();
  AddClosedRow();
  const auto users = log_.Users(true, true, false);
  ASSERT_EQ(users.size(), 1u);
  EXPECT_EQ(CLng(users[0].id), log_.MyID());
  EXPECT_EQ(users[0].me, "*");
}

TEST_F(DbLogTest, UsersAreOrderedByTheirOpeningTime) {
  log_.DbOpen(*database_);
  AddCrashedRow();
  AddClosedRow();
  const auto users = log_.Users();
  ASSERT_EQ(users.size(), 3u);
  EXPECT_EQ(CStr(users[0].user_name), "carla");
  EXPECT_EQ(CStr(users[1].user_name), "beat");
  EXPECT_EQ(users[2].me, "*");
}

TEST_F(DbLogTest, UsersWithoutConnectionIsEmpty) { EXPECT_TRUE(log_.Users().empty()); }

TEST_F(DbLogTest, TheFlagsSelectAsTheirTableSays) {
  EXPECT_EQ(DbLog::Selection(true, true, false, 5), "ID = 5");
  EXPECT_EQ(DbLog::Selection(true, true, true, 5), "FALSE");
  EXPECT_EQ(DbLog::Selection(true, false, false, 5), "(NOT (TimeClose IS NULL)) OR (ID = 5)");
  EXPECT_EQ(DbLog::Selection(true, false, true, 5), "NOT (TimeClose IS NULL)");
  EXPECT_EQ(DbLog::Selection(false, false, true, 5), "ID <> 5");
  EXPECT_EQ(DbLog::Selection(false, false, false, 5), "");
  EXPECT_EQ(DbLog::Selection(false, true, true, 5), "(TimeClose IS NULL) AND (ID <> 5)");
  EXPECT_EQ(DbLog::Selection(false, true, false, 5), "(TimeClose IS NULL) OR (ID = 5)");
}

TEST_F(DbLogTest, CleanOutWithoutMeKeepsOnlyTheOwnRow) {
  log_.DbOpen(*database_);
  AddCrashedRow();
  AddClosedRow();
  log_.CleanOut(false, false, true);
  EXPECT_EQ(Rows(), 1);
  EXPECT_EQ(Rows(" WHERE ID = " + std::to_string(log_.MyID())), 1);
}

TEST_F(DbLogTest, CleanOutOfEverythingTakesTheOwnRowAndTheCloseStillSucceeds) {
  log_.DbOpen(*database_);
  AddCrashedRow();
  log_.CleanOut();
  EXPECT_EQ(Rows(), 0);
  EXPECT_NO_THROW(log_.DbClose());
  EXPECT_EQ(Rows(), 0);
}

TEST_F(DbLogTest, TheDeleteOfAllRowsNeverRemovesTheOwnRow) {
  log_.DbOpen(*database_);
  AddCrashedRow();
  AddClosedRow();
  log_.DeleteRows(DbLogScope::kAll);
  EXPECT_EQ(Rows(), 1);
  EXPECT_EQ(Rows(" WHERE ID = " + std::to_string(log_.MyID())), 1);
}

TEST_F(DbLogTest, TheDeleteOfOfflineRowsKeepsTheOnlineOnes) {
  log_.DbOpen(*database_);
  AddCrashedRow();
  AddClosedRow();
  log_.DeleteRows(DbLogScope::kOffline);
  EXPECT_EQ(Rows(), 2);
  EXPECT_EQ(Rows(" WHERE TimeClose IS NOT NULL"), 0);
}

TEST_F(DbLogTest, TheDeleteOfOldRowsTakesThoseOpenedBeforeTheLimit) {
  log_.DbOpen(*database_);
  AddCrashedRow();
  AddClosedRow();
  log_.DeleteRows(DbLogScope::kOpenedBefore, OleDate::FromYmd(2024, 1, 2));
  EXPECT_EQ(Rows(" WHERE USERNAME = 'carla'"), 0);
  EXPECT_EQ(Rows(" WHERE USERNAME = 'beat'"), 1);
}

TEST_F(DbLogTest, TheDeleteScopesHaveTheirConditions) {
  EXPECT_EQ(DbLog::ScopeCondition(DbLogScope::kAll, OleDate()), "TRUE");
  EXPECT_EQ(DbLog::ScopeCondition(DbLogScope::kOffline, OleDate()), "NOT (TimeClose IS NULL)");
  EXPECT_EQ(DbLog::ScopeCondition(DbLogScope::kOnline, OleDate()), "TimeClose IS NULL");
  EXPECT_EQ(DbLog::ScopeCondition(DbLogScope::kOpenedBefore, OleDate::FromYmd(2024, 3, 5)),
            "TimeOpen < #3/5/2024#");
}

TEST_F(DbLogTest, ARolledBackTransactionLeavesTheLogRow) {
  workspace_->BeginTrans();
  log_.DbOpen(*database_);
  database_->Execute(
      "INSERT INTO Settings (SettingModuleID, SettingSection, SettingSpace) VALUES (1, 'x', 'y');");
  workspace_->Rollback();
  EXPECT_EQ(Rows(" WHERE ID = " + std::to_string(log_.MyID())), 1);
  EXPECT_EQ(CountOf(path_, "Settings"), 0);
}

TEST_F(DbLogTest, AStrayColumnIsPrunedAtOpen) {
  log_.DbOpen(*database_);
  log_.DbClose();
  WithFile(path_, [](store::Database& file) {
    auto table = file.TableDefs().Item("DbLog");
    table->Fields().Append(table->CreateField("Foo", store::FieldType::kText, 20));
  });
  log_.DbOpen(*database_);
  EXPECT_FALSE(log_.Database()->TableDefs().Item("DbLog")->Fields().Contains("Foo"));
  EXPECT_EQ(Rows(), 2);
}

TEST_F(DbLogTest, ShowItAsksTheHost) {
  struct Hooks : HostHooks {
    void ShowDbLog() override { ++shown; }
    int shown = 0;
  } hooks;
  State().hooks = &hooks;
  log_.ShowIt();
  EXPECT_EQ(hooks.shown, 1);
}

TEST_F(DbLogTest, TheTitleSaysWhenNoDatabaseIsOpen) {
  EXPECT_EQ(log_.Title(), "(Keine Datenbank offen)");
  log_.DbOpen(*database_);
  EXPECT_EQ(log_.Title(), "DbLog: book.qdb6f");
}

}  // namespace
}  // namespace ldg
