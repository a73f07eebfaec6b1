// Engine: the one object a front end creates. It logs on to the record store,
// opens one business-year database at a time, checks that the file belongs to
// the family, runs the start-up checks and repairs unless somebody else has the
// file open, builds the object tree of that database and hands it out. It also
// forwards transactions and settings, and raises the trace and the events of
// EngineEvents. There is one open database per Engine, and the engine-wide
// values of this thread (engine/engine_state.hpp) follow what it opens.
//
// Members are listed in the order of the object model. The engine never
// changes the process's current directory and never touches the machine's
// locale: those creation steps go through support/platform.hpp, which does
// nothing here.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/callback.hpp"
#include "engine/engine_events.hpp"
#include "engine/subsystems.hpp"
#include "store/database.hpp"
#include "store/workspace.hpp"
#include "support/currency.hpp"
#include "support/variant.hpp"

namespace ldg {

class Journals;
class Periods2;
class BudgetPeriods;
class Taxes;
class ForeinCurrencies;
class FC2;
class Vat2System;
class Accounts;
class MasterAccounts;
class AccountsGroups;
class BookEntries;
class AmountAgent;
class Options;
class DbOptions;
class FilesYears;
class DbLog;
class BagBookEnteries;
class Session;
class DbController;

class Engine {
 public:
  // Switches the execution policy off, takes AppPath, closes what the thread's
  // previous engine left open, writes the system separators, becomes the
  // thread's current engine and creates its DbLog.
  Engine();
  // Closes any open database, clears the current engine, releases DbLog.
  ~Engine();
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  // Closes any open database, then clears the current-engine value.
  void Tini();
  void Callback(std::shared_ptr<ldg::Callback> callback);
  // Name of the current database, or "".
  std::string DatabaseName() const;
  // Errors of the close are ignored; with nothing open only the trace runs.
  void CloseDatabase();
  std::shared_ptr<store::Workspace> Workspace() const;
  // Deliberately does nothing with the value: the current workspace is stored
  // back over itself (pinned by a test).
  void Workspace(const std::shared_ptr<store::Workspace>& workspace);
  // Logs on. An empty user becomes "Admin" with an empty password, and the
  // caller's variables are changed to match.
  void Init(Variant& user, Variant& password, Variant& app_product_name);
  void OpenDatabase(const Variant& database_name);
  // Year files (engine/database_creator.hpp).
  void AddClientDatabase(double instance_id, const std::string& module_name,
                         const std::string& database_name);
  Variant GetClientDatabaseInfo(const Variant& instance_id, Variant& module_name, Variant& database_name);
  bool IsSameInstance(const Variant& database_name);
  void CreateDatabase(const Variant& database_name, const Variant& begin, const Variant& end,
                      const std::optional<Variant>& year_id = std::nullopt);
  std::string Compact();

  Variant YearID() const;
  Variant YearBeginn() const;
  Variant YearEnd() const;
  Variant YearStatusID() const;
  // The text of the year status (messages 1208 to 1211); "" for any other.
  Variant YearStatus() const;
  std::shared_ptr<store::Database> Database() const;
  double InstanceID() const;
  Variant User() const;

  // Forwarded to the current workspace, with no logic of their own.
  void BeginTrans();
  void CommitTrans();
  void Rollback();

  // The client option of that name for the open database's instance, or the default.
  Variant GetSetting(const Variant& name, const Variant& default_value) const;
  // Writes the value as text; nothing without an open database.
  void SaveSetting(const Variant& name, const Variant& value);

  // When true, DatabaseOpened, DatabaseClosed and DatabaseCreated are not raised.
  bool Mute() const { return mute_; }
  void Mute(bool mute) { mute_ = mute; }

  // Reads the user's locale into the system separators and currency symbol.
  void GetLocales();
  // Rebuilds the accounts search index, outside any transaction.
  void DoAccountsIndex();
  // Empty operations kept in the interface.
  void TestCloturePhaseOne() {}
  void ExportDatabase(const Variant& /*destination_database*/) {}
  void DebugMode() {}
  void ServiceEntry() {}

  // "06.01.039 - 14.03.2023".
  std::string Version() const;

  // The opening balances of the open chart (engine/opening_balance.hpp).
  Currency OpeningBalance() const;
  Currency SavedOpeningBalance() const;
  void SaveOpeningBalance();
  // Copies the saved openings back, then recalculates every balance with ChildrensBalance.
  void RestoreOpeningBalance();
  // Rebuilds every stored Balance from the movements; ChildrensBalance too when asked.
  void RecalcBalances(bool recalc_children_balances);

  // Raises the DebugLog event with the ten values.
  void DebugLog(Variant v0 = Variant(), Variant v1 = Variant(), Variant v2 = Variant(),
                Variant v3 = Variant(), Variant v4 = Variant(), Variant v5 = Variant(),
                Variant v6 = Variant(), Variant v7 = Variant(), Variant v8 = Variant(),
                Variant v9 = Variant());

  // The folder the component runs from; the template file is looked up there only.
  const std::string& AppPath() const { return app_path_; }
  void AppPath(std::string path) { app_path_ = std::move(path); }

  // The object tree of the open database; empty while none is open.
  std::shared_ptr<ldg::Periods2> Periods2() const { return periods2_; }
  void Periods2(std::shared_ptr<ldg::Periods2> value) { periods2_ = std::move(value); }
  std::shared_ptr<ldg::BudgetPeriods> BudgetPeriods() const { return budget_periods_; }
  void BudgetPeriods(std::shared_ptr<ldg::BudgetPeriods> value) { budget_periods_ = std::move(value); }
  std::shared_ptr<ldg::Taxes> Taxes() const { return taxes_; }
  void Taxes(std::shared_ptr<ldg::Taxes> value) { taxes_ = std::move(value); }
  std::shared_ptr<ldg::ForeinCurrencies> ForeinCurrencies() const { return forein_currencies_; }
  void ForeinCurrencies(std::shared_ptr<ldg::ForeinCurrencies> value) {
    forein_currencies_ = std::move(value);
  }
  std::shared_ptr<ldg::Options> Options() const { return options_; }
  void Options(std::shared_ptr<ldg::Options> value) { options_ = std::move(value); }
  std::shared_ptr<ldg::Accounts> Accounts() const { return accounts_; }
  void Accounts(std::shared_ptr<ldg::Accounts> value) { accounts_ = std::move(value); }
  std::shared_ptr<ldg::MasterAccounts> MasterAccounts() const { return master_accounts_; }
  void MasterAccounts(std::shared_ptr<ldg::MasterAccounts> value) { master_accounts_ = std::move(value); }
  std::shared_ptr<ldg::AccountsGroups> AccountsGroups() const { return accounts_groups_; }
  void AccountsGroups(std::shared_ptr<ldg::AccountsGroups> value) { accounts_groups_ = std::move(value); }
  std::shared_ptr<ldg::BookEntries> BookEntries() const { return book_entries_; }
  void BookEntries(std::shared_ptr<ldg::BookEntries> value) { book_entries_ = std::move(value); }
  std::shared_ptr<ldg::Journals> Journals() const { return journals_; }
  void Journals(std::shared_ptr<ldg::Journals> value) { journals_ = std::move(value); }
  std::shared_ptr<ldg::DbOptions> DbOptions() const { return db_options_; }
  void DbOptions(std::shared_ptr<ldg::DbOptions> value) { db_options_ = std::move(value); }
  std::shared_ptr<ldg::FC2> FC2() const { return fc2_; }
  void FC2(std::shared_ptr<ldg::FC2> value) { fc2_ = std::move(value); }
  std::shared_ptr<ldg::Vat2System> Vat2System() const { return vat2_system_; }
  void Vat2System(std::shared_ptr<ldg::Vat2System> value) { vat2_system_ = std::move(value); }
  std::shared_ptr<ldg::FilesYears> FilesYears() const { return files_years_; }
  void FilesYears(std::shared_ptr<ldg::FilesYears> value) { files_years_ = std::move(value); }
  // Created with the engine; survives open and close.
  std::shared_ptr<ldg::DbLog> DbLog() const { return db_log_; }
  void DbLog(std::shared_ptr<ldg::DbLog> value) { db_log_ = std::move(value); }
  // A free slot that the engine never fills or reads.
  std::shared_ptr<ldg::BagBookEnteries> BagBookEnteries() const { return bag_book_enteries_; }
  void BagBookEnteries(std::shared_ptr<ldg::BagBookEnteries> value) { bag_book_enteries_ = std::move(value); }
  // Stored and returned; nothing in the engine reads them.
  bool LDG5() const { return ldg5_; }
  void LDG5(bool value) { ldg5_ = value; }
  bool LDG6() const { return ldg6_; }
  void LDG6(bool value) { ldg6_ = value; }

  // Events: a listener stays registered until removed; the caller keeps it alive.
  void AddListener(EngineEvents* listener);
  void RemoveListener(EngineEvents* listener);

  // For the engine's own modules.
  // Tells the callback object (if any) Action("DoneDefinitive", value).
  void NotifyCallback(const Variant& value);
  // One trace line ("Engine", procedure, step, text); the first after each Init
  // is preceded by the version line.
  void Trace(const Variant& procedure, const Variant& step = Variant(), const Variant& text = Variant());
  void RaiseDatabaseCreated(const Variant& database_name);
  void RaiseOpeningBalaceUnbalancedOnOpen(const Variant& database_name, Currency balance);
  // The controller of the last open; null before the first.
  const ldg::DbController* Controller() const { return controller_.get(); }

 private:

  void CloseOpenDatabase();
  void ReleaseObjectTree();
  void ReleaseObjectTreeReversed();
  void BuildObjectTree();
  void SetUpAmountAgent();

  // The open steps; those of the layers above the engine go through engine/subsystems.hpp.
  void CreateJournals();
  void CreatePeriods2();
  void CreateBudgetPeriods();
  void CreateTaxes();
  void CreateForeinCurrencies();
  void CreateFC2();
  void CreateVat2System();
  void CreateAccounts();
  void CreateMasterAccounts();
  void CreateAccountsGroups();
  void CreateBookEntries();
  void CreateAmountAgent();
  void CreateFilesYears();
  void SetAmountAgentSymbols(const AmountAgentSymbols& symbols);
  void InitFC2();
  void TiniVat2System();
  void ReleaseSharedScratchObjects();

  template <typename Event>
  void Raise(Event event);

  std::string app_path_;
  std::shared_ptr<ldg::Journals> journals_;
  std::shared_ptr<ldg::Periods2> periods2_;
  std::shared_ptr<ldg::BudgetPeriods> budget_periods_;
  std::shared_ptr<ldg::Taxes> taxes_;
  std::shared_ptr<ldg::ForeinCurrencies> forein_currencies_;
  std::shared_ptr<ldg::FC2> fc2_;
  std::shared_ptr<ldg::Vat2System> vat2_system_;
  std::shared_ptr<ldg::Accounts> accounts_;
  std::shared_ptr<ldg::MasterAccounts> master_accounts_;
  std::shared_ptr<ldg::AccountsGroups> accounts_groups_;
  std::shared_ptr<ldg::BookEntries> book_entries_;
  std::shared_ptr<ldg::AmountAgent> amount_agent_;
  std::shared_ptr<ldg::Options> options_;
  std::shared_ptr<ldg::DbOptions> db_options_;
  std::shared_ptr<ldg::FilesYears> files_years_;
  std::shared_ptr<ldg::DbLog> db_log_;
  std::shared_ptr<ldg::BagBookEnteries> bag_book_enteries_;
  std::shared_ptr<ldg::Session> session_;
  std::unique_ptr<ldg::DbController> controller_;
  std::shared_ptr<ldg::Callback> callback_;
  std::vector<EngineEvents*> listeners_;
  bool mute_ = false;
  bool skip_close_trace_ = false;
  bool ldg5_ = false;
  bool ldg6_ = false;
};

}  // namespace ldg
