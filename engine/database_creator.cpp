#include "engine/database_creator.hpp"

#include <chrono>
#include <ctime>
#include <filesystem>
#include <system_error>
#include <thread>

#include "engine/business_years.hpp"
#include "engine/current_objects.hpp"
#include "engine/engine.hpp"
#include "engine/engine_state.hpp"
#include "engine/schema_upkeep.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/file_system.hpp"
#include "support/folders.hpp"
#include "support/messages.hpp"
#include "support/nullable.hpp"
#include "support/paths.hpp"
#include "support/text.hpp"

namespace ldg {
namespace {

class SystemClock : public CreationClock {
 public:
  int32_t SecondsSinceMidnight() override {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return local.tm_hour * 3600 + local.tm_min * 60 + local.tm_sec;
  }
  void PauseBetweenAttempts() override {
    std::this_thread::sleep_for(std::chrono::milliseconds(kOpenAttemptSpacingMs));
  }
};

thread_local CreationClock* test_clock = nullptr;

CreationClock& Clock() {
  thread_local SystemClock system_clock;
  return test_clock ? *test_clock : system_clock;
}

OleDate Now() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return OleDate::FromCivil(
      {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec});
}

template <typename Step>
void IgnoringErrors(Step step) {
  try {
    step();
  } catch (...) {
    // The step is optional: the file may lack what it removes or already have what it adds.
  }
}

void ValidateCreation(const Variant& begin, const Variant& end, const std::optional<Variant>& year_id) {
  if (!IsDate(begin)) RaiseMessage(1191);
  if (year_id) {
    try {
      CLng(*year_id);
    } catch (const Error&) {
      RaiseMessage(1214);
    }
  }
  if (!IsDate(end)) RaiseMessage(1192);
  if (!(DateValue(begin) < DateValue(end))) RaiseMessage(1193);
}

// Copies the template over the target; a failure shows only later, when the
// copy does not open. Side files of an earlier database of that name go too,
// so that nothing of it is replayed into the copy.
void CopyTemplate(const std::string& app_path, const std::string& target) {
  std::error_code ignored;
  std::filesystem::remove(target + "-wal", ignored);
  std::filesystem::remove(target + "-shm", ignored);
  std::filesystem::remove(target + "-journal", ignored);
  std::filesystem::copy_file(JoinPath(app_path, kTemplateFileName), target,
                             std::filesystem::copy_options::overwrite_existing, ignored);
}

// Tries to open the fresh copy until it opens, for at most kOpenAttempts
// attempts and no longer than kOpenWaitSeconds; then raises the last failure.
std::shared_ptr<store::Database> OpenFreshCopy(store::Workspace& workspace, const std::string& path) {
  CreationClock& clock = Clock();
  const int32_t start = clock.SecondsSinceMidnight();
  int32_t number = 0;
  std::string description;
  for (int attempt = 0; attempt < kOpenAttempts; ++attempt) {
    try {
      return workspace.OpenDatabase(path);
    } catch (const Error& error) {
      number = error.Number();
      description = error.Description();
    }
    if (clock.SecondsSinceMidnight() - start > kOpenWaitSeconds) RaiseError(number, description);
    clock.PauseBetweenAttempts();
  }
  RaiseError(number, description);
}

void ReplaceTextProperty(store::Database& database, std::string_view name, std::string_view value) {
  IgnoringErrors([&] { database.Properties().Delete(name); });
  database.Properties().Append(database.CreateProperty(name, store::FieldType::kText, Variant(value)));
}

void StampFile(store::Database& database) {
  IgnoringErrors([&] { database.Properties().Delete("Owner"); });
  IgnoringErrors([&] { database.Properties().Delete("Project"); });
  ReplaceTextProperty(database, "Creator", "Velmora AG");
  ReplaceTextProperty(database, "Product", "Velmora Suite V6");
  IgnoringErrors([&] { database.QueryDefs().Item("viewBusinessYear5Get")->Name("viewBusinessYear6Get"); });
}

void AddRootAccount(store::Recordset& accounts, const char* code, int32_t name_id, int16_t account_class,
                    bool is_debit, OleDate now) {
  accounts.AddNew();
  accounts.Value("Code", Variant(code));
  accounts.Value("Name", Variant(MessageText(name_id)));
  accounts.Value("Class", Variant(account_class));
  accounts.Value("Position", Variant(static_cast<int32_t>(account_class)));
  accounts.Value("IsGeneralLedger", Variant(true));
  accounts.Value("IsDebit", Variant(is_debit));
  accounts.Value("IsSum", Variant(true));
  accounts.Value("CreatedBy", Variant("System"));
  accounts.Value("CreateDate", Variant(now));
  accounts.Value("ReferenceNr", Variant(int32_t{0}));
  accounts.Update();
}

void RebuildSearchIndex(store::Database& database) {
  database.Execute("DELETE * FROM AccountsIndex;");
  database.QueryDefs().Item("workFillAccountsIndexCodes")->Execute();
  database.QueryDefs().Item("workFillAccountsIndexNames")->Execute();
}

void AddFirstJournal(store::Database& database) {
  auto journals = database.OpenRecordset("Journals", store::dbOpenTable);
  journals->AddNew();
  journals->Value("Code", Variant(int32_t{1}));
  journals->Value("Name", Variant(MessageText(1213)));
  journals->Update();
  journals->Close();
}

void FillNewFile(store::Database& database, const Variant& begin, const Variant& end,
                 const std::optional<Variant>& year_id) {
  AddModuleRegistration(database, 0);
  AddRootAccounts(database);
  RebuildSearchIndex(database);
  const int32_t id = year_id ? CLng(*year_id) : NextBusinessYearID(database);
  AddBusinessYear(database, id, begin, end);
  AddFirstPeriods(database);
  AddFirstJournal(database);
}

void AddPeriodRow(store::Database& database, std::string_view table, const Variant& year_id,
                  const Variant& beginn, const Variant& end) {
  auto periods = database.OpenRecordset(table, store::dbOpenTable);
  periods->AddNew();
  periods->Value("BusinessYearID", year_id);
  periods->Value("Beginn", beginn);
  periods->Value("End", end);
  periods->Update();
  periods->Close();
}

void AddAttachment(store::Database& database, double instance_id, const std::string& module_name,
                   const std::string& database_name) {
  auto attached = database.OpenRecordset("sysAttachedDatabases", store::dbOpenTable);
  attached->AddNew();
  attached->Value("AttachedDBInstanceID", Variant(instance_id));
  attached->Value("AttachedDBModuleName", Variant(module_name));
  attached->Value("AttachedDBName", Variant(database_name));
  attached->Update();
  attached->Close();
}

}  // namespace

void SetCreationClockForTesting(CreationClock* clock) { test_clock = clock; }

double AddModuleRegistration(store::Database& database, double instance_id) {
  const double id = instance_id > 0 ? instance_id : Now().Serial();
  auto modules = database.OpenRecordset("ModuleRegistration", store::dbOpenTable);
  modules->AddNew();
  modules->Value("InstanceID", Variant(id));
  modules->Value("ModuleName", Variant(kFinanceModuleName));
  modules->Value("ModuleVersion", Variant("6"));
  modules->Update();
  modules->Close();
  State().last_created_instance_id = id;
  return id;
}

void AddRootAccounts(store::Database& database) {
  const OleDate now = Now();
  auto accounts = database.OpenRecordset("Accounts", store::dbOpenTable);
  AddRootAccount(*accounts, "A", 1194, 1, true, now);
  AddRootAccount(*accounts, "B", 1195, 2, false, now);
  accounts->Close();
}

void AddFirstPeriods(store::Database& database) {
  auto query = database.QueryDefs().Item("viewBusinessYear6Get");
  query->Parameters().Item("DbName").Value(Variant(YearFileNameOf(database.Name())));
  auto year = query->OpenRecordset(store::dbOpenSnapshot);
  if (year->Eof()) RaiseMessage(1000);
  const Variant id = year->Value("ID");
  const Variant beginn = year->Value("Beginn");
  const Variant end = year->Value("End");
  year->Close();
  AddPeriodRow(database, "Periods", id, beginn, end);
  AddPeriodRow(database, "BudgetPeriods", id, beginn, end);
}

void CreateYearFile(const std::string& app_path, const Variant& database_name, const Variant& begin,
                    const Variant& end, const std::optional<Variant>& year_id) {
  ValidateCreation(begin, end, year_id);
  const std::string path = CStr(database_name);
  store::Workspace& workspace = CurrentWorkspace();
  CopyTemplate(app_path, path);
  std::shared_ptr<store::Database> database = OpenFreshCopy(workspace, path);
  StampFile(*database);

  bool in_transaction = false;
  try {
    workspace.BeginTrans();
    in_transaction = true;
    FillNewFile(*database, begin, end, year_id);
    workspace.CommitTrans();
    in_transaction = false;
    UpdateAccountsTable(*database);
    database->Close();
  } catch (const Error& error) {
    const int32_t number = error.Number();
    const std::string description = error.Description();
    if (in_transaction) IgnoringErrors([&] { workspace.Rollback(); });
    IgnoringErrors([&] { database->Close(); });
    RaiseError(number, description);
  }
}

void CreateDatabase(Engine& engine, const Variant& database_name, const Variant& begin, const Variant& end,
                    const std::optional<Variant>& year_id) {
  CreateYearFile(engine.AppPath(), database_name, begin, end, year_id);
  engine.CloseDatabase();
  engine.OpenDatabase(database_name);
  engine.RaiseDatabaseCreated(database_name);
}

bool IsSameInstance(Engine& engine, const Variant& database_name) {
  std::shared_ptr<store::Database> other = CurrentWorkspace().OpenDatabase(CStr(database_name));
  auto modules =
      other->OpenRecordset("SELECT * FROM ModuleRegistration WHERE ModuleName = 'Velmora Finance';");
  if (modules->Eof() || modules->Value("ModuleName").IsNull()) RaiseMessage(1201);
  const double instance_id = CDbl(modules->Value("InstanceID"));
  modules->Close();
  const bool same = instance_id == engine.InstanceID();
  other->Close();
  return same;
}

void AddClientDatabase(double instance_id, const std::string& module_name, const std::string& database_name) {
  store::Database& current = CurrentDatabase();
  const std::string current_name = current.Name();
  auto years = current.OpenRecordset("sysBsnYear", store::dbOpenSnapshot);
  while (!years->Eof()) {
    const std::string year_file = ReadString(years->Value("BsnYearDBName"));
    // The files of a chain lie side by side: names compare without their folder.
    if (LCase(FileNameOf(year_file)) == LCase(FileNameOf(current_name))) {
      AddAttachment(current, instance_id, module_name, database_name);
    } else {
      auto other = CurrentWorkspace().OpenDatabase(JoinPath(FolderOf(current_name), year_file));
      AddAttachment(*other, instance_id, module_name, database_name);
      other->Close();
    }
    years->MoveNext();
  }
  years->Close();
}

Variant GetClientDatabaseInfo(const Variant& instance_id, Variant& module_name, Variant& database_name) {
  auto attached = CurrentDatabase().OpenRecordset("sysAttachedDatabases", store::dbOpenSnapshot);
  attached->FindFirst("AttachedDBInstanceID =" + CStr(instance_id));
  // Deliberately Empty, not False, when the id is unknown; pinned by a test.
  if (attached->NoMatch()) return Variant();
  module_name = attached->Value("AttachedDBModuleName");
  database_name = attached->Value("AttachedDBName");
  attached->Close();
  return Variant(true);
}

std::string Compact(Engine& engine) {
  const std::string name = CurrentDatabase().Name();
  const std::string temporary = TempFilePath(ExtensionOf(name));
  engine.CloseDatabase();
  IgnoringErrors([&] {
    DeleteFile(temporary);
    State().DBEngine().CompactDatabase(name, temporary);
  });
  if (!FileExists(temporary)) {
    // Deliberately raised with the text as the number: the caller gets run-time error 13.
    RaiseError(Variant("Komprimieren fehlgeschlagen!"), "");
  }
  DeleteFile(name);
  std::error_code ignored;
  std::filesystem::copy_file(temporary, name, std::filesystem::copy_options::overwrite_existing, ignored);
  DeleteFile(temporary);
  engine.OpenDatabase(Variant(name));
  return "";
}

}  // namespace ldg
