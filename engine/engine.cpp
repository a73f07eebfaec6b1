#include "engine/engine.hpp"

#include <algorithm>
#include <filesystem>
#include <functional>

#include "engine/business_years.hpp"
#include "engine/current_objects.hpp"
#include "engine/database_creator.hpp"
#include "engine/db_controller.hpp"
#include "engine/db_log.hpp"
#include "engine/db_options.hpp"
#include "engine/engine_state.hpp"
#include "engine/files_years.hpp"
#include "engine/opening_balance.hpp"
#include "engine/options.hpp"
#include "engine/security.hpp"
#include "engine/session.hpp"
#include "engine/settings.hpp"
#include "engine/startup_checks.hpp"
#include "engine/subsystems.hpp"
#include "store/lock_file.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/locale.hpp"
#include "support/platform.hpp"
#include "support/version.hpp"

namespace ldg {

namespace {

constexpr const char* kWorkspaceName = "VelmoraFinance";

// The folder of the running program, unless LDG_APP_PATH names another.
std::string ProgramFolder() {
  const std::string configured = EnvironmentValue("LDG_APP_PATH");
  if (!configured.empty()) return configured;
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? std::string() : program.parent_path().string();
}

// Runs one step of a close whose errors are ignored.
void IgnoringErrors(const std::function<void()>& step) {
  try {
    step();
  } catch (const std::exception&) {
  }
}

}  // namespace

Engine::Engine() {
  DisableDataExecutionPrevention(CurrentPlatform());
  app_path_ = ProgramFolder();
  CloseDatabase();
  State().engine = nullptr;
  // Writes into the machine's locale only on a platform that has one; deliberate.
  WriteSystemSeparators(CurrentPlatform());
  State().engine = this;
  skip_close_trace_ = false;
  db_log_ = std::make_shared<ldg::DbLog>();
}

Engine::~Engine() {
  IgnoringErrors([this] { Tini(); });
  if (State().session == session_.get()) State().session = nullptr;
  db_log_.reset();
}

void Engine::Tini() {
  CloseDatabase();
  if (State().engine == this) State().engine = nullptr;
}

void Engine::Callback(std::shared_ptr<ldg::Callback> callback) { callback_ = std::move(callback); }

std::string Engine::DatabaseName() const {
  return State().database ? State().database->Name() : std::string();
}

void Engine::CloseDatabase() {
  if (State().database) CloseOpenDatabase();
  if (skip_close_trace_) {
    skip_close_trace_ = false;
  } else {
    IgnoringErrors([this] { Trace("CloseDatabase", "1"); });
  }
}

void Engine::CloseOpenDatabase() {
  IgnoringErrors([this] {
    const Currency balance = OpeningBalance();
    if (balance != Currency()) {
      const Variant name(DatabaseName());
      Raise([&](EngineEvents& listener) { listener.OpeningBalaceUnbalancedOnClose(name, balance); });
    }
  });
  IgnoringErrors([this] { db_log_->DbClose(); });
  IgnoringErrors([this] { ReleaseObjectTree(); });
  Variant name;
  IgnoringErrors([&name] { name = State().database->Name(); });
  IgnoringErrors([] { State().database->Close(); });
  State().database.reset();
  controller_.reset();
  IgnoringErrors([this] { ReleaseObjectTreeReversed(); });
  if (!mute_) {
    IgnoringErrors([&] { Raise([&](EngineEvents& listener) { listener.DatabaseClosed(name); }); });
  }
}

std::shared_ptr<store::Workspace> Engine::Workspace() const { return State().workspace; }

void Engine::Workspace(const std::shared_ptr<store::Workspace>& /*workspace*/) {
  // Deliberate: the value is ignored and the current workspace stored back over itself (pinned by a test).
  auto current = State().workspace;
  State().workspace = current;
}

void Engine::Init(Variant& user, Variant& password, Variant& app_product_name) {
  State().workspace.reset();
  State().database.reset();
  State().session = nullptr;
  session_.reset();
  State().workspace = Security().Login(user, password, kWorkspaceName, app_product_name);
  if (State().workspace) {
    session_ = std::make_shared<Session>();
    session_->User(user);
    session_->Password(password);
    State().session = session_.get();
  }
  State().version_logged = false;
  Raise([](EngineEvents& listener) { listener.Initialized(); });
}

void Engine::OpenDatabase(const Variant& database_name) {
  skip_close_trace_ = true;
  CloseDatabase();
  Trace("OpenDatabase", "1", database_name);
  const bool in_use = store::IsDatabaseInUse(CStr(database_name));
  CurrentWorkspace();
  controller_ = std::make_unique<DbController>();
  State().database = controller_->OpenDatabase(database_name);
  db_log_->DbOpen(*State().database);
  State().year_id = CInt(Variant(controller_->YearID()));
  State().year_beginn = controller_->YearBeginn();
  State().year_end = controller_->YearEnd();
  State().year_status_id = controller_->YearStatusID();
  State().Hooks().Yield();
  if (!in_use) {
    StartupCheckSinks sinks;
    sinks.trace = [this](std::string_view procedure, std::string_view step, std::string_view name) {
      Trace(Variant(procedure), Variant(step), Variant(name));
    };
    sinks.opening_balance_unbalanced = [this](const std::string& name, Currency balance) {
      RaiseOpeningBalaceUnbalancedOnOpen(Variant(name), balance);
    };
    RunInternalChecks(*State().database, sinks);
  }
  Trace("OpenDatabase", "2", database_name);
  if (!in_use) RunStartupRepairs(*State().database);
  Trace("OpenDatabase", "3", database_name);
  BuildObjectTree();
  Trace("OpenDatabase", "4", database_name);
  // The process's current directory stays as it is: bare file names of the
  // year chain are resolved against the folder of the current database.
  if (!session_) RaiseRuntime(kErrObjectNotSet);
  session_->SetDatabase(*State().database);
  GetLocales();
  SetUpAmountAgent();
  InitFC2();
  if (!mute_) Raise([&](EngineEvents& listener) { listener.DatabaseOpened(database_name); });
}

void Engine::AddClientDatabase(double instance_id, const std::string& module_name,
                               const std::string& database_name) {
  ldg::AddClientDatabase(instance_id, module_name, database_name);
}
Variant Engine::GetClientDatabaseInfo(const Variant& instance_id, Variant& module_name,
                                      Variant& database_name) {
  return ldg::GetClientDatabaseInfo(instance_id, module_name, database_name);
}
bool Engine::IsSameInstance(const Variant& database_name) {
  return ldg::IsSameInstance(*this, database_name);
}
void Engine::CreateDatabase(const Variant& database_name, const Variant& begin, const Variant& end,
                            const std::optional<Variant>& year_id) {
  ldg::CreateDatabase(*this, database_name, begin, end, year_id);
}
std::string Engine::Compact() { return ldg::Compact(*this); }

Variant Engine::YearID() const { return Variant(State().year_id); }
Variant Engine::YearBeginn() const { return State().year_beginn; }
Variant Engine::YearEnd() const { return State().year_end; }
Variant Engine::YearStatusID() const { return Variant(State().year_status_id); }
Variant Engine::YearStatus() const { return Variant(YearStatusText(State().year_status_id)); }
std::shared_ptr<store::Database> Engine::Database() const { return State().database; }
double Engine::InstanceID() const { return session_ ? session_->DatabaseInstanceID() : 0; }
Variant Engine::User() const { return session_ ? session_->User() : Variant(); }

void Engine::BeginTrans() { CurrentWorkspace().BeginTrans(); }
void Engine::CommitTrans() { CurrentWorkspace().CommitTrans(); }
void Engine::Rollback() { CurrentWorkspace().Rollback(); }

Variant Engine::GetSetting(const Variant& name, const Variant& default_value) const {
  return ReadSetting(CStr(name), default_value);
}

void Engine::SaveSetting(const Variant& name, const Variant& value) { WriteSetting(CStr(name), CStr(value)); }

void Engine::GetLocales() {
  EngineState& state = State();
  SystemSeparators separators{state.system_decimal_separator, state.system_thousand_separator,
                              state.system_currency_symbol};
  ldg::GetLocales(separators);
  state.system_decimal_separator = separators.decimal_separator;
  state.system_thousand_separator = separators.thousand_separator;
  state.system_currency_symbol = separators.currency_symbol;
}

void Engine::DoAccountsIndex() {
  store::Database& database = CurrentDatabase();
  database.Execute("DELETE * FROM AccountsIndex;");
  database.QueryDefs().Item("workFillAccountsIndexCodes")->Execute();
  database.QueryDefs().Item("workFillAccountsIndexNames")->Execute();
}

std::string Engine::Version() const { return VersionText(); }

Currency Engine::OpeningBalance() const { return ldg::OpeningBalance(CurrentDatabase()); }
Currency Engine::SavedOpeningBalance() const { return ldg::SavedOpeningBalance(CurrentDatabase()); }
void Engine::SaveOpeningBalance() { ldg::SaveOpeningBalance(CurrentDatabase(), State().workspace.get()); }

void Engine::RestoreOpeningBalance() {
  ldg::RestoreOpeningBalance(CurrentDatabase(), State().workspace.get(), [this] { RecalcBalances(true); });
}

void Engine::RecalcBalances(bool recalc_children_balances) {
  CurrentDatabase();  // raises when nothing is open
  if (const auto& recalc = RegisteredSubsystems().recalc_balances) recalc(recalc_children_balances);
}

void Engine::DebugLog(Variant v0, Variant v1, Variant v2, Variant v3, Variant v4, Variant v5, Variant v6,
                      Variant v7, Variant v8, Variant v9) {
  Raise([&](EngineEvents& listener) { listener.DebugLog(v0, v1, v2, v3, v4, v5, v6, v7, v8, v9); });
}

void Engine::AddListener(EngineEvents* listener) {
  if (listener && std::find(listeners_.begin(), listeners_.end(), listener) == listeners_.end()) {
    listeners_.push_back(listener);
  }
}

void Engine::RemoveListener(EngineEvents* listener) {
  listeners_.erase(std::remove(listeners_.begin(), listeners_.end(), listener), listeners_.end());
}

void Engine::NotifyCallback(const Variant& value) {
  if (callback_) callback_->Action(Variant("DoneDefinitive"), value);
}

void Engine::Trace(const Variant& procedure, const Variant& step, const Variant& text) {
  if (!State().version_logged) {
    State().version_logged = true;
    DebugLog("Engine", "Initialize", "Version=\"" + Version() + "\"");
  }
  DebugLog("Engine", procedure, step, text);
}

void Engine::RaiseDatabaseCreated(const Variant& database_name) {
  if (!mute_) Raise([&](EngineEvents& listener) { listener.DatabaseCreated(database_name); });
}

void Engine::RaiseOpeningBalaceUnbalancedOnOpen(const Variant& database_name, Currency balance) {
  Raise([&](EngineEvents& listener) { listener.OpeningBalaceUnbalancedOnOpen(database_name, balance); });
}

template <typename Event>
void Engine::Raise(Event event) {
  const std::vector<EngineEvents*> listeners = listeners_;
  for (EngineEvents* listener : listeners) event(*listener);
}

void Engine::BuildObjectTree() {
  CreateJournals();
  CreatePeriods2();
  CreateBudgetPeriods();
  CreateTaxes();
  CreateForeinCurrencies();
  CreateFC2();
  CreateVat2System();
  CreateAccounts();
  State().accounts = accounts_.get();
  CreateMasterAccounts();
  State().master_accounts = master_accounts_.get();
  CreateAccountsGroups();
  CreateBookEntries();
  CreateAmountAgent();
  options_ = std::make_shared<ldg::Options>();
  db_options_ = std::make_shared<ldg::DbOptions>(CurrentDatabase());
  CreateFilesYears();
}

void Engine::ReleaseObjectTree() {
  journals_.reset();
  periods2_.reset();
  budget_periods_.reset();
  taxes_.reset();
  forein_currencies_.reset();
  IgnoringErrors([this] { TiniVat2System(); });
  vat2_system_.reset();
  accounts_.reset();
  State().accounts = nullptr;
  master_accounts_.reset();
  State().master_accounts = nullptr;
  accounts_groups_.reset();
  book_entries_.reset();
  amount_agent_.reset();
  State().amount_agent = nullptr;
  options_.reset();
  db_options_.reset();
  files_years_.reset();
  fc2_.reset();
  ReleaseSharedScratchObjects();
}

// A reference that a constructor or an event handler put back can't survive the second pass.
void Engine::ReleaseObjectTreeReversed() {
  files_years_.reset();
  db_options_.reset();
  options_.reset();
  amount_agent_.reset();
  State().amount_agent = nullptr;
  book_entries_.reset();
  accounts_groups_.reset();
  State().master_accounts = nullptr;
  master_accounts_.reset();
  State().accounts = nullptr;
  accounts_.reset();
  vat2_system_.reset();
  fc2_.reset();
  forein_currencies_.reset();
  taxes_.reset();
  budget_periods_.reset();
  periods2_.reset();
  journals_.reset();
  ReleaseSharedScratchObjects();
}

void Engine::SetUpAmountAgent() {
  const ldg::Options& options = *options_;
  AmountAgentSymbols symbols;
  symbols.decimal_separator = options.DecimalSep();
  symbols.thousand_separator = options.ThousandSep();
  symbols.system_decimal_separator = State().system_decimal_separator;
  symbols.system_thousand_separator = State().system_thousand_separator;
  symbols.neg_bookkeeping_symbol = options.NegBookkeepingSymbol();
  symbols.pos_bookkeeping_symbol = options.PosBookkeepingSymbol();
  symbols.neg_arithmetic_symbol = options.NegArithmeticSymbol();
  symbols.pos_arithmetic_symbol = options.PosArithmeticSymbol();
  symbols.cur_code_pos = options.CurCodePos();
  symbols.base_currency_code = options.BaseCurrencyCode();
  symbols.decimals = options.Decimals();
  symbols.round = CCur(options.BaseCurrencyRound());
  SetAmountAgentSymbols(symbols);
}

// The open steps: those of the layers above the engine call what they registered, the rest leave
// their member empty until their layer exists.
void Engine::CreateJournals() {
  if (const auto& create = RegisteredSubsystems().create_journals) journals_ = create();
}
void Engine::CreatePeriods2() {
  if (const auto& create = RegisteredSubsystems().create_periods2) periods2_ = create();
}
void Engine::CreateBudgetPeriods() {}     // budget periods at open: not yet wired
void Engine::CreateTaxes() {}             // taxes at open: not yet wired
void Engine::CreateForeinCurrencies() {}  // foreign currencies at open: not yet wired
void Engine::CreateFC2() {}               // second currency store at open: not yet wired
void Engine::CreateVat2System() {}        // VAT settlement system at open: not yet wired
void Engine::CreateAccounts() {
  if (const auto& create = RegisteredSubsystems().create_accounts) accounts_ = create();
}
void Engine::CreateMasterAccounts() {
  if (const auto& create = RegisteredSubsystems().create_master_accounts) master_accounts_ = create();
}
void Engine::CreateAccountsGroups() {
  if (const auto& create = RegisteredSubsystems().create_accounts_groups) accounts_groups_ = create();
}
void Engine::CreateBookEntries() {
  if (const auto& create = RegisteredSubsystems().create_book_entries) book_entries_ = create();
}
void Engine::CreateAmountAgent() {
  if (const auto& create = RegisteredSubsystems().create_amount_agent) amount_agent_ = create();
  State().amount_agent = amount_agent_.get();
}
void Engine::SetAmountAgentSymbols(const AmountAgentSymbols& symbols) {
  const auto& set_symbols = RegisteredSubsystems().set_amount_agent_symbols;
  if (amount_agent_ && set_symbols) set_symbols(*amount_agent_, symbols);
}
void Engine::InitFC2() {}                      // second currency store set-up at open: not yet wired
void Engine::TiniVat2System() {}               // VAT settlement system shut-down at close: not yet wired
void Engine::ReleaseSharedScratchObjects() {
  if (const auto& release = RegisteredSubsystems().release_shared_scratch_objects) release();
}

void Engine::CreateFilesYears() { files_years_ = std::make_shared<ldg::FilesYears>(); }

}  // namespace ldg
