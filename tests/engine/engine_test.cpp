#include "engine/engine.hpp"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <future>
#include <thread>

#include "engine/db_log.hpp"
#include "engine/db_options.hpp"
#include "engine/engine_state.hpp"
#include "engine/files_years.hpp"
#include "engine/options.hpp"
#include "engine/security.hpp"
#include "engine/session.hpp"
#include "store/lock_file.hpp"
#include "support/locale.hpp"
#include "support/messages.hpp"
#include "support/settings_store.hpp"
#include "tests/engine/engine_file_fixture.hpp"

namespace ldg {
namespace {

constexpr int32_t kNotOurs = static_cast<int32_t>(0x80040000u);
constexpr const char* kVersionLine = "DebugLog|Engine|Initialize|Version=\"06.01.039 - 14.03.2023\"";

class EngineTest : public testing::EngineFileTest {
 protected:
  // A year file whose opening balances leave 100 over.
  std::string MakeUnbalancedYearFile() {
    return MakeYearFile("book.qdb6f", 2024, [](store::Database& database) {
      database.Execute(
          "INSERT INTO Accounts (Code, Name, IsSum, IsMaster, MasterID, OpeningBalance) "
          "VALUES ('1000', 'Kasse', False, False, 0, 100);",
          store::dbFailOnError);
    });
  }

  void SetUp() override {
    EngineFileTest::SetUp();
    engine_ = std::make_unique<Engine>();
    engine_->AddListener(&events_);
  }

  void TearDown() override {
    engine_.reset();
    EngineFileTest::TearDown();
  }

  void LogOn(const std::string& user = "Anna") {
    Variant name(user), password("geheim"), product("ldg tests");
    engine_->Init(name, password, product);
  }

  std::string OpenFresh(const std::string& name = "book.qdb6f") {
    const std::string path = MakeYearFile(name);
    LogOn();
    engine_->OpenDatabase(Variant(path));
    return path;
  }

  void AddScratchQuery(const std::string& path) {
    WithFile(path, [](store::Database& database) {
      database.CreateQueryDef("tempScratch", "SELECT * FROM Settings;");
    });
  }

  bool HasQuery(const std::string& path, const std::string& name) {
    bool found = false;
    WithFile(path, [&](store::Database& database) { found = database.QueryDefs().Contains(name); });
    return found;
  }

  std::unique_ptr<Engine> engine_;
  testing::RecordingEvents events_;
};

TEST_F(EngineTest, CloseDatabaseWithNothingOpenRaisesNothingAndStillTraces) {
  LogOn();
  events_.events.clear();
  EXPECT_NO_THROW(engine_->CloseDatabase());
  EXPECT_FALSE(events_.HasPrefix("DatabaseClosed"));
  ASSERT_EQ(events_.events.size(), 2u);
  EXPECT_EQ(events_.events[0], kVersionLine);
  EXPECT_EQ(events_.events[1], "DebugLog|Engine|CloseDatabase|1");
}

TEST_F(EngineTest, TheVersionLineComesOnlyBeforeTheFirstTraceAfterInit) {
  LogOn();
  events_.events.clear();
  engine_->CloseDatabase();
  engine_->CloseDatabase();
  ASSERT_EQ(events_.events.size(), 3u);
  EXPECT_EQ(events_.events[2], "DebugLog|Engine|CloseDatabase|1");
  LogOn();
  events_.events.clear();
  engine_->CloseDatabase();
  EXPECT_EQ(events_.events.front(), kVersionLine);
}

TEST_F(EngineTest, InitRaisesInitialized) {
  LogOn();
  EXPECT_TRUE(events_.Has("Initialized"));
}

TEST_F(EngineTest, InitWithAnEmptyUserLogsOnAsAdmin) {
  Variant user(""), password("geheim"), product("ldg tests");
  engine_->Init(user, password, product);
  EXPECT_EQ(CStr(engine_->User()), "Admin");
  EXPECT_EQ(CStr(user), "Admin");
  EXPECT_EQ(CStr(password), "");
}

TEST_F(EngineTest, InitKeepsTheGivenUser) {
  LogOn("Beat");
  EXPECT_EQ(CStr(engine_->User()), "Beat");
  ASSERT_NE(State().session, nullptr);
  EXPECT_EQ(CStr(State().session->Password()), "geheim");
}

TEST_F(EngineTest, InitTakesTheWorkgroupFileOfTheProduct) {
  SettingsStore().SaveSetting("ldg tests", "Workgroup", "SystemDB", "/srv/system.mdw");
  LogOn();
  EXPECT_EQ(State().DBEngine().SystemDB(), "/srv/system.mdw");
  State().DBEngine().SystemDB("");
}

TEST_F(EngineTest, InitMakesTheWorkspaceCurrent) {
  LogOn();
  ASSERT_NE(engine_->Workspace(), nullptr);
  EXPECT_EQ(engine_->Workspace(), State().workspace);
  EXPECT_EQ(engine_->Workspace()->Name(), "VelmoraFinance");
}

TEST_F(EngineTest, LoginWithoutWorkspaceNameRaisesTheSecurityError) {
  Variant user("Anna"), password("");
  const Error error = ErrorOf([&] { Security().Login(user, password, "", Variant("ldg tests")); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800403E8u));
  EXPECT_EQ(error.Source(), "Security");
  EXPECT_EQ(error.Description(), "Desired workspace name missing!");
}

TEST_F(EngineTest, SettingTheWorkspaceLeavesTheCurrentOneUnchanged) {
  LogOn();
  auto current = engine_->Workspace();
  auto other = State().DBEngine().CreateWorkspace("other", "Admin", "");
  engine_->Workspace(other);
  EXPECT_EQ(engine_->Workspace(), current);
  engine_->Workspace(nullptr);
  EXPECT_EQ(engine_->Workspace(), current);
}

TEST_F(EngineTest, OpenDatabaseBuildsTheTreeAndRaisesDatabaseOpened) {
  const std::string path = OpenFresh();
  EXPECT_EQ(engine_->DatabaseName(), path);
  EXPECT_NE(engine_->Options(), nullptr);
  EXPECT_NE(engine_->DbOptions(), nullptr);
  EXPECT_NE(engine_->FilesYears(), nullptr);
  EXPECT_NE(engine_->Database(), nullptr);
  EXPECT_EQ(engine_->InstanceID(), testing::kTestInstanceID);
  EXPECT_EQ(events_.events.back(), "DatabaseOpened " + path);
}

TEST_F(EngineTest, OpenDatabaseCopiesTheYear) {
  OpenFresh();
  EXPECT_EQ(CLng(engine_->YearID()), 2024);
  EXPECT_EQ(CDate(engine_->YearBeginn()), OleDate::FromYmd(2024, 1, 1));
  EXPECT_EQ(CDate(engine_->YearEnd()), OleDate::FromYmd(2024, 12, 31));
  EXPECT_EQ(CLng(engine_->YearStatusID()), 1);
  EXPECT_EQ(CStr(engine_->YearStatus()), "Aktiv");
}

TEST_F(EngineTest, OpenDatabaseTracesItsFourSteps) {
  const std::string path = OpenFresh();
  std::vector<std::string> steps;
  for (const auto& line : events_.events) {
    if (line.rfind("DebugLog|Engine|OpenDatabase", 0) == 0) steps.push_back(line);
  }
  ASSERT_EQ(steps.size(), 4u);
  for (int step = 1; step <= 4; ++step) {
    EXPECT_EQ(steps[step - 1], "DebugLog|Engine|OpenDatabase|" + std::to_string(step) + "|" + path);
  }
  // The close that the open performs itself leaves no trace.
  EXPECT_FALSE(events_.Has("DebugLog|Engine|CloseDatabase|1"));
}

TEST_F(EngineTest, OpenDatabaseLogsTheSessionInTheFile) {
  const std::string path = OpenFresh();
  const int32_t my_id = engine_->DbLog()->MyID();
  EXPECT_GT(my_id, 0);
  EXPECT_EQ(CountOf(path, "DbLog WHERE TimeClose IS NULL AND ID = " + std::to_string(my_id)), 1);
}

TEST_F(EngineTest, ARenamedFileOpensAndItsYearRowTakesTheNewName) {
  const std::string original = MakeYearFile("alt.qdb6f");
  const std::string renamed = (folder_ / "neu.qdb6f").string();
  std::filesystem::rename(original, renamed);
  LogOn();
  engine_->OpenDatabase(Variant(renamed));
  EXPECT_EQ(CLng(engine_->YearID()), 2024);
  engine_->CloseDatabase();
  EXPECT_EQ(CStr(ValueOf(renamed, "SELECT DbName FROM BusinessYears;", "DbName")), "neu.qdb6f");
}

TEST_F(EngineTest, YearStatusGivesTheTextOfEachStatus) {
  const std::string path = MakeYearFile();
  LogOn();
  const char* texts[] = {"Aktiv", "Abschluss", "Archiv", "Entfernt"};
  for (int status = 1; status <= 4; ++status) {
    engine_->CloseDatabase();
    WithFile(path, [&](store::Database& database) {
      database.Execute("UPDATE BusinessYears SET Status = " + std::to_string(status) + ";",
                       store::dbFailOnError);
    });
    engine_->OpenDatabase(Variant(path));
    EXPECT_EQ(CStr(engine_->YearStatus()), texts[status - 1]);
    EXPECT_EQ(CStr(engine_->YearStatus()), MessageText(1207 + status));
  }
}

TEST_F(EngineTest, YearStatusOutsideOneToFourIsEmpty) {
  const std::string path = MakeYearFile("book.qdb6f", 2024, [](store::Database& database) {
    database.Execute("UPDATE BusinessYears SET Status = 7;", store::dbFailOnError);
  });
  LogOn();
  engine_->OpenDatabase(Variant(path));
  EXPECT_EQ(CStr(engine_->YearStatus()), "");
}

TEST_F(EngineTest, CloseDatabaseReleasesTheTreeAndRaisesDatabaseClosed) {
  const std::string path = OpenFresh();
  events_.events.clear();
  engine_->CloseDatabase();
  EXPECT_EQ(engine_->Options(), nullptr);
  EXPECT_EQ(engine_->DbOptions(), nullptr);
  EXPECT_EQ(engine_->FilesYears(), nullptr);
  EXPECT_EQ(engine_->Database(), nullptr);
  EXPECT_EQ(engine_->DatabaseName(), "");
  EXPECT_TRUE(events_.Has("DatabaseClosed " + path));
  EXPECT_EQ(events_.events.back(), "DebugLog|Engine|CloseDatabase|1");
  EXPECT_NE(engine_->DbLog(), nullptr);
}

TEST_F(EngineTest, CloseDatabaseWritesTheClosingTimeAndLetsGoOfTheFile) {
  const std::string path = OpenFresh();
  const int32_t my_id = engine_->DbLog()->MyID();
  engine_->CloseDatabase();
  EXPECT_EQ(CountOf(path, "DbLog WHERE TimeClose IS NOT NULL AND ID = " + std::to_string(my_id)), 1);
  EXPECT_FALSE(std::filesystem::exists(store::LockFilePath(path)));
}

TEST_F(EngineTest, YearValuesStayAfterTheClose) {
  OpenFresh();
  engine_->CloseDatabase();
  EXPECT_EQ(CLng(engine_->YearID()), 2024);
  EXPECT_EQ(CLng(engine_->YearStatusID()), 1);
}

TEST_F(EngineTest, ASecondOpenClosesTheFirstDatabase) {
  const std::string first = OpenFresh("first.qdb6f");
  const std::string second = MakeYearFile("second.qdb6f");
  events_.events.clear();
  engine_->OpenDatabase(Variant(second));
  EXPECT_TRUE(events_.Has("DatabaseClosed " + first));
  EXPECT_EQ(engine_->DatabaseName(), second);
}

TEST_F(EngineTest, MuteSuppressesOpenedAndClosed) {
  const std::string path = MakeYearFile();
  LogOn();
  engine_->Mute(true);
  EXPECT_TRUE(engine_->Mute());
  engine_->OpenDatabase(Variant(path));
  engine_->CloseDatabase();
  EXPECT_FALSE(events_.HasPrefix("DatabaseOpened"));
  EXPECT_FALSE(events_.HasPrefix("DatabaseClosed"));
  EXPECT_TRUE(events_.Has("DebugLog|Engine|CloseDatabase|1"));
}

TEST_F(EngineTest, MuteLetsTheUnbalancedOpeningThrough) {
  const std::string path = MakeUnbalancedYearFile();
  LogOn();
  engine_->Mute(true);
  engine_->OpenDatabase(Variant(path));
  EXPECT_FALSE(events_.HasPrefix("DatabaseOpened"));
  EXPECT_TRUE(events_.HasPrefix("OpeningBalaceUnbalancedOnOpen"));
}

TEST_F(EngineTest, AnUnbalancedOpeningIsReportedAtTheClose) {
  const std::string path = MakeUnbalancedYearFile();
  LogOn();
  engine_->OpenDatabase(Variant(path));
  events_.events.clear();
  engine_->CloseDatabase();
  ASSERT_FALSE(events_.events.empty());
  EXPECT_EQ(events_.events.front(), "OpeningBalaceUnbalancedOnClose " + path + " 100");
}

TEST_F(EngineTest, AFreeFileRunsTheChecksAndRepairs) {
  const std::string path = MakeYearFile();
  AddScratchQuery(path);
  LogOn();
  engine_->OpenDatabase(Variant(path));
  EXPECT_TRUE(events_.HasPrefix("DebugLog|Engine|InternalChecks"));
  engine_->CloseDatabase();
  EXPECT_FALSE(HasQuery(path, "tempScratch"));
}

TEST_F(EngineTest, AStaleLockFileIsDeletedAndTheChecksRun) {
  const std::string path = MakeYearFile();
  AddScratchQuery(path);
  std::ofstream(store::LockFilePath(path)) << "left by a crashed session";
  LogOn();
  engine_->OpenDatabase(Variant(path));
  EXPECT_TRUE(events_.HasPrefix("DebugLog|Engine|InternalChecks"));
  engine_->CloseDatabase();
  EXPECT_FALSE(HasQuery(path, "tempScratch"));
  EXPECT_FALSE(std::filesystem::exists(store::LockFilePath(path)));
}

TEST_F(EngineTest, AFileAnotherConnectionHoldsIsOpenedWithoutSchemaChanges) {
  const std::string path = MakeYearFile();
  AddScratchQuery(path);
  auto other = State().DBEngine().OpenDatabase(path);
  LogOn();
  engine_->OpenDatabase(Variant(path));
  EXPECT_FALSE(events_.HasPrefix("DebugLog|Engine|InternalChecks"));
  EXPECT_NE(engine_->Options(), nullptr);
  EXPECT_NE(engine_->DbOptions(), nullptr);
  EXPECT_NE(engine_->FilesYears(), nullptr);
  EXPECT_TRUE(events_.Has("DatabaseOpened " + path));
  engine_->CloseDatabase();
  EXPECT_TRUE(other->QueryDefs().Contains("tempScratch"));
  other->Close();
}

TEST_F(EngineTest, AFileAnEngineOfAnotherThreadHoldsIsOpenedWithoutSchemaChanges) {
  const std::string path = MakeYearFile();
  AddScratchQuery(path);
  std::promise<void> opened;
  std::promise<void> done;
  std::thread holder([&] {
    Engine other;
    Variant user(""), password(""), product("ldg tests");
    other.Init(user, password, product);
    // The other engine holds the file while this one opens it; its own checks ran before.
    other.OpenDatabase(Variant(path));
    opened.set_value();
    done.get_future().wait();
  });
  opened.get_future().wait();
  AddScratchQuery(path);
  LogOn();
  engine_->OpenDatabase(Variant(path));
  EXPECT_FALSE(events_.HasPrefix("DebugLog|Engine|InternalChecks"));
  EXPECT_NE(engine_->Options(), nullptr);
  engine_->CloseDatabase();
  done.set_value();
  holder.join();
  EXPECT_TRUE(HasQuery(path, "tempScratch"));
}

TEST_F(EngineTest, AYearIdAboveTheIntegerRangeOverflowsAfterTheFileIsOpen) {
  const std::string path = MakeYearFile("book.qdb6f", 40000);
  LogOn();
  const Error error = ErrorOf([&] { engine_->OpenDatabase(Variant(path)); });
  EXPECT_EQ(error.Number(), 6);
  EXPECT_EQ(error.Description(), "Overflow");
  EXPECT_EQ(engine_->DatabaseName(), path);
  EXPECT_GT(engine_->DbLog()->MyID(), 0);
  EXPECT_FALSE(events_.HasPrefix("DebugLog|Engine|OpenDatabase|2"));
  EXPECT_NO_THROW(engine_->CloseDatabase());
  EXPECT_EQ(engine_->Database(), nullptr);
}

TEST_F(EngineTest, AFileWithoutModuleTableIsNotOurs) {
  const std::string path = (folder_ / "foreign.qdb6f").string();
  State().DBEngine().CreateDatabase(path)->Close();
  LogOn();
  const Error error = ErrorOf([&] { engine_->OpenDatabase(Variant(path)); });
  EXPECT_EQ(error.Number(), kNotOurs);
  EXPECT_EQ(error.Source(), "ldg");
  EXPECT_EQ(error.Description(), path + "\r\nis not a Velmora database.");
}

TEST_F(EngineTest, AFileOfAnotherCreatorIsNotOurs) {
  const std::string path = MakeYearFile("book.qdb6f", 2024, [](store::Database& database) {
    database.Properties().Item("Creator")->Value(Variant("Someone Else"));
  });
  LogOn();
  const Error error = ErrorOf([&] { engine_->OpenDatabase(Variant(path)); });
  EXPECT_EQ(error.Number(), kNotOurs);
  EXPECT_EQ(error.Description(), path + "\r\nis not a Velmora Finance V6 database.");
}

TEST_F(EngineTest, AFileWithoutProductPropertyIsNotOurs) {
  const std::string path = MakeYearFile(
      "book.qdb6f", 2024, [](store::Database& database) { database.Properties().Delete("Product"); });
  LogOn();
  const Error error = ErrorOf([&] { engine_->OpenDatabase(Variant(path)); });
  EXPECT_EQ(error.Number(), kNotOurs);
  EXPECT_EQ(error.Description(), path + "\r\nis not a Velmora Finance V6 database.");
}

TEST_F(EngineTest, AFileWithoutModuleRowIsNotOurs) {
  const std::string path = MakeYearFile("book.qdb6f", 2024, [](store::Database& database) {
    database.Execute("DELETE * FROM ModuleRegistration;", store::dbFailOnError);
  });
  LogOn();
  const Error error = ErrorOf([&] { engine_->OpenDatabase(Variant(path)); });
  EXPECT_EQ(error.Number(), kNotOurs);
  EXPECT_EQ(error.Description(), path + "\r\nis not a Velmora Finance database.");
}

TEST_F(EngineTest, AFileWithoutItsYearRowFails) {
  const std::string path = MakeYearFile("book.qdb6f", 2024, [](store::Database& database) {
    database.Execute("DELETE * FROM BusinessYears;", store::dbFailOnError);
  });
  LogOn();
  const Error error = ErrorOf([&] { engine_->OpenDatabase(Variant(path)); });
  EXPECT_EQ(error.Number(), kNotOurs);
  EXPECT_EQ(error.Description(), "Business year definition could not be found!");
}

TEST_F(EngineTest, AFailedOpenLeavesNoDatabaseCurrent) {
  OpenFresh("first.qdb6f");
  const std::string foreign = (folder_ / "foreign.qdb6f").string();
  State().DBEngine().CreateDatabase(foreign)->Close();
  EXPECT_THROW(engine_->OpenDatabase(Variant(foreign)), Error);
  EXPECT_EQ(engine_->Database(), nullptr);
  EXPECT_EQ(engine_->Options(), nullptr);
}

TEST_F(EngineTest, AMissingFileFailsWithTheStoresError) {
  LogOn();
  const Error error = ErrorOf([&] { engine_->OpenDatabase(Variant((folder_ / "none.qdb6f").string())); });
  EXPECT_EQ(error.Number(), 3024);
}

TEST_F(EngineTest, AnInstanceWithoutIdFailsWithTheGermanText) {
  const std::string path = MakeYearFile("book.qdb6f", 2024, [](store::Database& database) {
    database.Execute("UPDATE ModuleRegistration SET InstanceID = Null;", store::dbFailOnError);
  });
  LogOn();
  const Error error = ErrorOf([&] { engine_->OpenDatabase(Variant(path)); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800403EAu));
  EXPECT_EQ(error.Description(),
            "Klarse Sersion: Problem mit dem Indentificationscode der Datenbank " + path + "!");
}

TEST_F(EngineTest, AnInstanceQueryWithoutRowFailsWithNoCurrentRecord) {
  const std::string path = MakeYearFile("book.qdb6f", 2024, [](store::Database& database) {
    database.QueryDefs()
        .Item("viewInstance")
        ->SQL(
            "SELECT ModuleRegistration.InstanceID, ModuleRegistration.ModuleName, "
            "ModuleRegistration.ModuleVersion "
            "FROM ModuleRegistration WHERE (((ModuleRegistration.ModuleName)=\"Nobody\"));");
  });
  LogOn();
  const Error error = ErrorOf([&] { engine_->OpenDatabase(Variant(path)); });
  EXPECT_EQ(error.Number(), 3021);
}

TEST_F(EngineTest, DatabaseCreatedIsRaisedUnlessMuted) {
  engine_->RaiseDatabaseCreated(Variant("neu.qdb6f"));
  EXPECT_TRUE(events_.Has("DatabaseCreated neu.qdb6f"));
  events_.events.clear();
  engine_->Mute(true);
  engine_->RaiseDatabaseCreated(Variant("neu.qdb6f"));
  EXPECT_TRUE(events_.events.empty());
}

TEST_F(EngineTest, DebugLogHandsOnAllTenValues) {
  engine_->DebugLog("0", "1", "2", "3", "4", "5", "6", "7", "8", "9");
  EXPECT_EQ(events_.events.back(), "DebugLog|0|1|2|3|4|5|6|7|8|9");
}

TEST_F(EngineTest, VersionPadsItsNumbers) { EXPECT_EQ(engine_->Version(), "06.01.039 - 14.03.2023"); }

TEST_F(EngineTest, TheCallbackHearsDoneDefinitive) {
  struct Recorder : Callback {
    void Action(const Variant& text, const Variant& value) override {
      heard = CStr(text) + " " + CStr(value);
    }
    std::string heard;
  };
  auto recorder = std::make_shared<Recorder>();
  engine_->NotifyCallback(Variant(int32_t{7}));
  engine_->Callback(recorder);
  engine_->NotifyCallback(Variant(int32_t{7}));
  EXPECT_EQ(recorder->heard, "DoneDefinitive 7");
}

TEST_F(EngineTest, TransactionsGoToTheCurrentWorkspace) {
  OpenFresh();
  engine_->BeginTrans();
  EXPECT_EQ(State().workspace->TransactionLevel(), 1);
  engine_->SaveSetting(Variant("OptionClientName"), Variant("Muster AG"));
  engine_->Rollback();
  EXPECT_EQ(State().workspace->TransactionLevel(), 0);
  EXPECT_EQ(CStr(engine_->Options()->ClientName()), "");
  engine_->BeginTrans();
  engine_->SaveSetting(Variant("OptionClientName"), Variant("Muster AG"));
  engine_->CommitTrans();
  EXPECT_EQ(CStr(engine_->Options()->ClientName()), "Muster AG");
}

TEST_F(EngineTest, GetLocalesReadsTheUsersLocale) {
  SetUserLocaleForTesting(LocaleItems{",", ".", "EUR"});
  engine_->GetLocales();
  SetUserLocaleForTesting(std::nullopt);
  EXPECT_EQ(State().system_decimal_separator, ",");
  EXPECT_EQ(State().system_thousand_separator, ".");
  EXPECT_EQ(State().system_currency_symbol, "EUR");
  engine_->GetLocales();
  EXPECT_EQ(State().system_decimal_separator, ".");
}

TEST_F(EngineTest, FreeSlotsKeepWhatTheyAreGiven) {
  engine_->LDG5(true);
  EXPECT_TRUE(engine_->LDG5());
  EXPECT_FALSE(engine_->LDG6());
  EXPECT_EQ(engine_->BagBookEnteries(), nullptr);
}

TEST_F(EngineTest, TheNewEngineIsTheCurrentOne) {
  EXPECT_EQ(State().engine, engine_.get());
  engine_->Tini();
  EXPECT_EQ(State().engine, nullptr);
}

TEST_F(EngineTest, AppPathComesFromTheEnvironmentWhenSet) {
  ::setenv("LDG_APP_PATH", "/opt/ldg", 1);
  Engine engine;
  ::unsetenv("LDG_APP_PATH");
  EXPECT_EQ(engine.AppPath(), "/opt/ldg");
  EXPECT_FALSE(engine_->AppPath().empty());
}

TEST_F(EngineTest, DoAccountsIndexRebuildsTheSearchIndex) {
  const std::string path = MakeYearFile("book.qdb6f", 2024, [](store::Database& database) {
    database.Execute(
        "INSERT INTO Accounts (Code, Name, IsSum, IsMaster, MasterID) VALUES ('1000', 'Kasse', "
        "False, False, 0);",
        store::dbFailOnError);
  });
  LogOn();
  engine_->OpenDatabase(Variant(path));
  engine_->Database()->Execute("INSERT INTO AccountsIndex (SearchName) VALUES ('stale');");
  engine_->DoAccountsIndex();
  auto rows = engine_->Database()->OpenRecordset(
      "SELECT Count(*) AS N FROM AccountsIndex WHERE SearchName = 'stale';", store::dbOpenSnapshot);
  EXPECT_EQ(CLng(rows->Value("N")), 0);
  rows->Close();
}

TEST_F(EngineTest, DoAccountsIndexWithoutDatabaseFailsWithObjectNotSet) {
  const Error error = ErrorOf([&] { engine_->DoAccountsIndex(); });
  EXPECT_EQ(error.Number(), 91);
}

}  // namespace
}  // namespace ldg
