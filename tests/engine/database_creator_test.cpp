#include "engine/database_creator.hpp"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "engine/engine_state.hpp"
#include "store/store_error.hpp"
#include "support/conversions.hpp"
#include "support/messages.hpp"
#include "tests/engine/created_year_file_fixture.hpp"

namespace ldg {
namespace {

using year_files_testing::Day;
using year_files_testing::ErrorOf;

// Whole seconds of a day that passes only while the creation pauses.
class FakeClock : public CreationClock {
 public:
  explicit FakeClock(int32_t pause_ms) : pause_ms_(pause_ms) {}
  int32_t SecondsSinceMidnight() override { return static_cast<int32_t>(36000 + elapsed_ms / 1000); }
  void PauseBetweenAttempts() override {
    elapsed_ms += pause_ms_;
    ++pauses;
  }
  int64_t elapsed_ms = 0;
  int pauses = 0;

 private:
  int32_t pause_ms_;
};

class DatabaseCreatorTest : public year_files_testing::CreatedYearFileTest {
 protected:
  void TearDown() override {
    SetCreationClockForTesting(nullptr);
    CreatedYearFileTest::TearDown();
  }

  void ExpectRefused(const Variant& begin, const Variant& end, const std::optional<Variant>& year_id,
                     uint32_t number, const char* text) {
    const Error error = ErrorOf([&] {
      CreateYearFile(year_files_testing::TemplateFolder(), Variant(PathOf("neu.qdb")), begin, end, year_id);
    });
    EXPECT_EQ(error.Number(), static_cast<int32_t>(number));
    EXPECT_EQ(error.Description(), text);
    EXPECT_FALSE(std::filesystem::exists(PathOf("neu.qdb")));
  }

  Variant ValueOf(store::Database& database, const std::string& sql, const std::string& column) {
    auto rows = database.OpenRecordset(sql, store::dbOpenSnapshot);
    return rows->Eof() ? Variant() : rows->Value(column);
  }
};

TEST_F(DatabaseCreatorTest, RefusesABeginThatIsNoDateFirst) {
  ExpectRefused(Variant("abc"), Variant("xyz"), Variant("abc"), 0x800404A7u,
                "Beginn date for new business year is not a valide date!");
}

TEST_F(DatabaseCreatorTest, RefusesAYearIdThatIsNoLongBeforeLookingAtTheEnd) {
  ExpectRefused(Day(2023, 1, 1), Variant("xyz"), Variant("abc"), 0x800404BEu,
                "Optional parameter BsnYearID is invalid");
}

TEST_F(DatabaseCreatorTest, RefusesAYearIdBeyondALong) {
  ExpectRefused(Day(2023, 1, 1), Day(2023, 12, 31), Variant(3000000000.0), 0x800404BEu,
                "Optional parameter BsnYearID is invalid");
}

TEST_F(DatabaseCreatorTest, RefusesAnEndThatIsNoDate) {
  ExpectRefused(Day(2023, 1, 1), Variant("xyz"), std::nullopt, 0x800404A8u,
                "End date for new business year is not a valide date!");
}

TEST_F(DatabaseCreatorTest, RefusesABeginEqualToTheEnd) {
  ExpectRefused(Day(2023, 1, 1), Day(2023, 1, 1), std::nullopt, 0x800404A9u,
                "Beginn date must preced end date in order to define a valid business year!");
}

TEST_F(DatabaseCreatorTest, StampsTheFileAndRenamesTheYearQuery) {
  auto database = Open(MakeYearFile("firma2023.qdb"));
  EXPECT_EQ(CStr(database->Properties().Item("Creator")->Value()), "Velmora AG");
  EXPECT_EQ(CStr(database->Properties().Item("Product")->Value()), "Velmora Suite V6");
  EXPECT_EQ(ErrorOf([&] { database->Properties().Item("Owner"); }).Number(), store::kErrPropertyNotFound);
  EXPECT_EQ(ErrorOf([&] { database->Properties().Item("Project"); }).Number(), store::kErrPropertyNotFound);
  EXPECT_TRUE(database->QueryDefs().Contains("viewBusinessYear6Get"));
  EXPECT_FALSE(database->QueryDefs().Contains("viewBusinessYear5Get"));
}

TEST_F(DatabaseCreatorTest, RegistersTheModuleWithThePresentMomentAsInstanceId) {
  const double before = CDbl(Variant(CDate(Variant(OleDate::FromYmd(2000, 1, 1)))));
  auto database = Open(MakeYearFile("firma2023.qdb"));
  auto modules = database->OpenRecordset("ModuleRegistration", store::dbOpenTable);
  ASSERT_FALSE(modules->Eof());
  EXPECT_EQ(CStr(modules->Value("ModuleName")), "Velmora Finance");
  EXPECT_EQ(CStr(modules->Value("ModuleVersion")), "6");
  const double instance_id = CDbl(modules->Value("InstanceID"));
  EXPECT_GT(instance_id, before);
  EXPECT_NE(instance_id, static_cast<double>(static_cast<int64_t>(instance_id)));
  EXPECT_EQ(State().last_created_instance_id, instance_id);
  modules->MoveNext();
  EXPECT_TRUE(modules->Eof());
}

TEST_F(DatabaseCreatorTest, AddModuleRegistrationKeepsAGivenInstanceId) {
  auto database = Open(MakeYearFile("firma2023.qdb"));
  EXPECT_EQ(AddModuleRegistration(*database, 45000.25), 45000.25);
  EXPECT_EQ(State().last_created_instance_id, 45000.25);
  EXPECT_EQ(Count(*database, "ModuleRegistration WHERE InstanceID = 45000.25"), 1);
}

TEST_F(DatabaseCreatorTest, AddsTheTwoClassRoots) {
  auto database = Open(MakeYearFile("firma2023.qdb"));
  auto roots = database->OpenRecordset("SELECT * FROM Accounts ORDER BY Code;", store::dbOpenSnapshot);
  ASSERT_FALSE(roots->Eof());
  EXPECT_EQ(CStr(roots->Value("Code")), "A");
  EXPECT_EQ(CStr(roots->Value("Name")), "Bilanz");
  EXPECT_EQ(CLng(roots->Value("Class")), 1);
  EXPECT_EQ(CLng(roots->Value("Position")), 1);
  EXPECT_TRUE(CBool(roots->Value("IsGeneralLedger")));
  EXPECT_TRUE(CBool(roots->Value("IsDebit")));
  EXPECT_TRUE(CBool(roots->Value("IsSum")));
  EXPECT_EQ(CStr(roots->Value("CreatedBy")), "System");
  EXPECT_EQ(CLng(roots->Value("ReferenceNr")), 0);
  EXPECT_TRUE(roots->Value("ParentID").IsNull());
  EXPECT_GT(CDbl(roots->Value("CreateDate")), 40000.0);
  roots->MoveNext();
  EXPECT_EQ(CStr(roots->Value("Code")), "B");
  EXPECT_EQ(CStr(roots->Value("Name")), "Erfolgsrechnung");
  EXPECT_EQ(CLng(roots->Value("Class")), 2);
  EXPECT_EQ(CLng(roots->Value("Position")), 2);
  EXPECT_FALSE(CBool(roots->Value("IsDebit")));
  EXPECT_TRUE(CBool(roots->Value("IsSum")));
  roots->MoveNext();
  EXPECT_TRUE(roots->Eof());
}

TEST_F(DatabaseCreatorTest, RebuildsTheSearchIndexWhichHoldsNoSumAccounts) {
  auto database = Open(MakeYearFile("firma2023.qdb"));
  EXPECT_EQ(Count(*database, "AccountsIndex"), 0);
}

TEST_F(DatabaseCreatorTest, AddsTheYearWithItsFirstPeriodAndBudgetPeriod) {
  auto database = Open(MakeYearFile("firma2023.qdb", Variant("01.07.2023"), Variant("30.06.2024")));
  EXPECT_EQ(CLng(ValueOf(*database, "SELECT * FROM BusinessYears;", "ID")), 1);
  EXPECT_EQ(CStr(ValueOf(*database, "SELECT * FROM BusinessYears;", "DbName")), "firma2023.qdb");
  EXPECT_EQ(CLng(ValueOf(*database, "SELECT * FROM BusinessYears;", "Status")), 1);
  for (const char* table : {"Periods", "BudgetPeriods"}) {
    const std::string sql = std::string("SELECT * FROM ") + table + ";";
    EXPECT_EQ(Count(*database, table), 1) << table;
    EXPECT_EQ(CLng(ValueOf(*database, sql, "BusinessYearID")), 1) << table;
    EXPECT_EQ(CDate(ValueOf(*database, sql, "Beginn")), OleDate::FromYmd(2023, 7, 1)) << table;
    EXPECT_EQ(CDate(ValueOf(*database, sql, "End")), OleDate::FromYmd(2024, 6, 30)) << table;
  }
}

TEST_F(DatabaseCreatorTest, TakesAGivenYearIdAndZeroAsItStands) {
  CreateYearFile(year_files_testing::TemplateFolder(), Variant(PathOf("sieben.qdb")), Day(2023, 1, 1),
                 Day(2023, 12, 31), Variant("7"));
  CreateYearFile(year_files_testing::TemplateFolder(), Variant(PathOf("null.qdb")), Day(2023, 1, 1),
                 Day(2023, 12, 31), Variant(int32_t{0}));
  auto seven = Open(PathOf("sieben.qdb"));
  EXPECT_EQ(CLng(ValueOf(*seven, "SELECT * FROM Periods;", "BusinessYearID")), 7);
  auto zero = Open(PathOf("null.qdb"));
  EXPECT_EQ(CLng(ValueOf(*zero, "SELECT * FROM BusinessYears;", "ID")), 0);
  EXPECT_EQ(CLng(ValueOf(*zero, "SELECT * FROM BudgetPeriods;", "BusinessYearID")), 0);
}

TEST_F(DatabaseCreatorTest, AddsTheFirstJournal) {
  auto database = Open(MakeYearFile("firma2023.qdb"));
  EXPECT_EQ(Count(*database, "Journals"), 1);
  EXPECT_EQ(CLng(ValueOf(*database, "SELECT * FROM Journals;", "Code")), 1);
  EXPECT_EQ(CStr(ValueOf(*database, "SELECT * FROM Journals;", "Name")), "Journal");
}

TEST_F(DatabaseCreatorTest, AddsTheLaterColumnsOfAccounts) {
  auto database = Open(MakeYearFile("firma2023.qdb"));
  auto accounts = database->OpenRecordset("Accounts", store::dbOpenTable);
  for (const char* column : {"DeleteOnCloture", "SaveOB", "WorkedOpeningBalance", "WorkedBalance", "PostFix",
                             "Tags", "FCID2", "KeyPositionCode", "LiegenCode"}) {
    EXPECT_TRUE(accounts->Fields().Contains(column)) << column;
  }
}

TEST_F(DatabaseCreatorTest, CreatingOverAnExistingFileReplacesIt) {
  {
    std::ofstream junk(PathOf("firma2023.qdb"));
    junk << "no database at all";
  }
  MakeYearFile("firma2023.qdb");
  MakeYearFile("firma2023.qdb", Day(2025, 1, 1), Day(2025, 12, 31));
  auto database = Open(PathOf("firma2023.qdb"));
  EXPECT_EQ(Count(*database, "ModuleRegistration"), 1);
  EXPECT_EQ(Count(*database, "BusinessYears"), 1);
  EXPECT_EQ(CDate(ValueOf(*database, "SELECT * FROM BusinessYears;", "Beginn")),
            OleDate::FromYmd(2025, 1, 1));
}

TEST_F(DatabaseCreatorTest, AMissingTemplateGivesTheFailedOpensErrorAfterAllAttempts) {
  FakeClock clock(kOpenAttemptSpacingMs);
  SetCreationClockForTesting(&clock);
  const Error error = ErrorOf([&] {
    CreateYearFile(PathOf("kein_ordner"), Variant(PathOf("neu.qdb")), Day(2023, 1, 1), Day(2023, 12, 31),
                   std::nullopt);
  });
  EXPECT_EQ(error.Number(), store::kErrFileNotFound);
  EXPECT_EQ(error.Description().find("Beginn"), std::string::npos);
  EXPECT_FALSE(error.Description().empty());
  EXPECT_EQ(clock.pauses, kOpenAttempts);
  EXPECT_EQ(clock.elapsed_ms, int64_t{kOpenWaitSeconds} * 1000);
}

TEST_F(DatabaseCreatorTest, TheWaitStopsOnceMoreThanTheBoundHasPassed) {
  FakeClock clock(1000);
  SetCreationClockForTesting(&clock);
  const Error error = ErrorOf([&] {
    CreateYearFile(PathOf("kein_ordner"), Variant(PathOf("neu.qdb")), Day(2023, 1, 1), Day(2023, 12, 31),
                   std::nullopt);
  });
  EXPECT_EQ(error.Number(), store::kErrFileNotFound);
  // The attempt made at second 121 is the first after more than 120 seconds.
  EXPECT_EQ(clock.pauses, 121);
}

TEST_F(DatabaseCreatorTest, AFailureInsideTheFillRollsBackAndLeavesTheCopy) {
  const std::filesystem::path app = folder_ / "app";
  std::filesystem::create_directories(app);
  std::filesystem::copy_file(std::filesystem::path(year_files_testing::TemplateFolder()) / kTemplateFileName,
                             app / kTemplateFileName);
  {
    auto broken = State().DBEngine().OpenDatabase((app / kTemplateFileName).string());
    broken->QueryDefs().Delete("workFillAccountsIndexNames");
    broken->Close();
  }
  const Error error = ErrorOf([&] {
    CreateYearFile(app.string(), Variant(PathOf("neu.qdb")), Day(2023, 1, 1), Day(2023, 12, 31),
                   std::nullopt);
  });
  EXPECT_EQ(error.Number(), store::kErrItemNotFound);
  EXPECT_EQ(error.Source(), "ldg");
  EXPECT_EQ(State().workspace->TransactionLevel(), 0);
  ASSERT_TRUE(std::filesystem::exists(PathOf("neu.qdb")));
  auto left = Open(PathOf("neu.qdb"));
  EXPECT_EQ(Count(*left, "ModuleRegistration"), 0);
  EXPECT_EQ(Count(*left, "Accounts"), 0);
  EXPECT_EQ(CStr(left->Properties().Item("Creator")->Value()), "Velmora AG");
}

TEST_F(DatabaseCreatorTest, ACreatedFileOpensInThePlainSqliteShell) {
  if (std::system("command -v sqlite3 > /dev/null 2>&1") != 0) GTEST_SKIP() << "no sqlite3 program";
  const std::string path = MakeYearFile("firma2023.qdb");
  const std::string command =
      "sqlite3 '" + path +
      "' 'SELECT count(*) FROM \"Journals\"; SELECT \"ModuleVersion\" FROM \"ModuleRegistration\";'";
  FILE* pipe = ::popen(command.c_str(), "r");
  ASSERT_NE(pipe, nullptr);
  std::string output;
  char buffer[256];
  while (std::fgets(buffer, sizeof buffer, pipe)) output += buffer;
  EXPECT_EQ(::pclose(pipe), 0);
  EXPECT_EQ(output, "1\n6\n");
}

// The attachments of another module, across two files of one chain.
class ClientDatabaseTest : public DatabaseCreatorTest {
 protected:
  void SetUp() override {
    DatabaseCreatorTest::SetUp();
    MakeYearFile("firma2023.qdb");
    MakeYearFile("firma2024.qdb", Day(2024, 1, 1), Day(2024, 12, 31));
    auto older = Open(PathOf("firma2023.qdb"));
    older->Execute(
        "INSERT INTO BusinessYears (ID, Beginn, End, Status, DbName) VALUES (2, #1/1/2024#, "
        "#12/31/2024#, 1, 'firma2024.qdb');");
    older->Execute("UPDATE BusinessYears SET Status = 2 WHERE ID = 1;");
    older->Close();
    auto newer = Open(PathOf("firma2024.qdb"));
    newer->Execute("UPDATE BusinessYears SET ID = 2;");
    newer->Execute(
        "INSERT INTO BusinessYears (ID, Beginn, End, Status, DbName) VALUES (1, #1/1/2023#, "
        "#12/31/2023#, 2, 'firma2023.qdb');");
    State().database = newer;
  }
};

TEST_F(ClientDatabaseTest, AttachesToEveryFileOfTheChain) {
  AddClientDatabase(45000.125, "Velmora Payroll", "lohn.qdb");
  EXPECT_EQ(Count(*State().database, "sysAttachedDatabases WHERE AttachedDBInstanceID = 45000.125"), 1);
  auto older = Open(PathOf("firma2023.qdb"));
  EXPECT_EQ(Count(*older,
                  "sysAttachedDatabases WHERE AttachedDBModuleName = 'Velmora Payroll' AND "
                  "AttachedDBName = 'lohn.qdb'"),
            1);
}

TEST_F(ClientDatabaseTest, AMissingYearFileFailsAfterTheEarlierFilesWereChanged) {
  State().database->Execute(
      "INSERT INTO BusinessYears (ID, Beginn, End, Status, DbName) VALUES (0, #1/1/2022#, "
      "#12/31/2022#, 4, 'fehlt.qdb');");
  State().database->Execute("UPDATE BusinessYears SET ID = 3 WHERE ID = 0;");
  const Error error = ErrorOf([] { AddClientDatabase(45000.125, "Velmora Payroll", "lohn.qdb"); });
  EXPECT_EQ(error.Number(), store::kErrFileNotFound);
  auto older = Open(PathOf("firma2023.qdb"));
  EXPECT_EQ(Count(*older, "sysAttachedDatabases"), 1);
  EXPECT_EQ(Count(*State().database, "sysAttachedDatabases"), 1);
}

TEST_F(ClientDatabaseTest, GetClientDatabaseInfoFillsTheArgumentsOfAKnownId) {
  AddClientDatabase(45000.125, "Velmora Payroll", "lohn.qdb");
  Variant module("vorher");
  Variant name("vorher");
  const Variant found = GetClientDatabaseInfo(Variant(45000.125), module, name);
  EXPECT_EQ(found, Variant(true));
  EXPECT_EQ(CStr(module), "Velmora Payroll");
  EXPECT_EQ(CStr(name), "lohn.qdb");
}

TEST_F(ClientDatabaseTest, GetClientDatabaseInfoOfAnUnknownIdIsEmptyNotFalse) {
  AddClientDatabase(45000.125, "Velmora Payroll", "lohn.qdb");
  Variant module("vorher");
  Variant name("vorher");
  const Variant found = GetClientDatabaseInfo(Variant(12.5), module, name);
  EXPECT_TRUE(found.IsEmpty());
  EXPECT_EQ(CStr(module), "vorher");
  EXPECT_EQ(CStr(name), "vorher");
}

}  // namespace
}  // namespace ldg
