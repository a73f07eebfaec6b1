#include "store/sqlite/connection.hpp"

#include <sqlite3.h>
#include <sys/stat.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <fstream>
#include <functional>

#include "store/jet/jet_error.hpp"
#include "store/sqlite/catalog.hpp"
#include "store/sqlite/jet_functions.hpp"
#include "store/sqlite/names.hpp"
#include "store/store_error.hpp"
#include "support/error.hpp"

namespace ldg::store::sqlite {

namespace {

constexpr int kBusyTimeoutMs = 10000;
constexpr size_t kMaxStatements = 512;
constexpr const char* kRelatedRecordsTag = "ldg3200:";
constexpr int kSubJournalInMemory = 1 << 20;

bool FileExists(const std::string& path) {
  struct stat info {};
  return stat(path.c_str(), &info) == 0 && S_ISREG(info.st_mode);
}

// A file this store can read: empty, or starting with SQLite's header.
bool LooksLikeDatabase(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  char header[16] = {};
  in.read(header, sizeof header);
  if (in.gcount() == 0) return true;
  return in.gcount() == 16 && std::string_view(header, 16) == std::string_view("SQLite format 3\0", 16);
}

// A savepoint inside a transaction copies each page it changes into a
// sub-journal, which SQLite holds in memory up to 64 KiB and then moves to a
// temporary file for the rest of the transaction. A posted entry, a savepoint
// of its own, changes about that much, so many entries in one transaction
// would write their pages out one by one. With a larger bound they stay in
// memory; the sub-journal empties whenever the last savepoint ends. The bound
// can only be set before SQLite starts in the process: later the call fails
// and nothing changes.
void KeepSubJournalsInMemory() {
  static const int result = sqlite3_config(SQLITE_CONFIG_STMTJRNL_SPILL, kSubJournalInMemory);
  (void)result;
}

}  // namespace

StatementUse::~StatementUse() {
  sqlite3_reset(statement_);
  sqlite3_clear_bindings(statement_);
}

std::string CanonicalPath(const std::string& path) {
  char resolved[PATH_MAX];
  if (realpath(path.c_str(), resolved) != nullptr) return resolved;
  return path;
}

Connection::Connection() {
  KeepSubJournalsInMemory();
  int code = sqlite3_open_v2(
      ":memory:", &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX,
      nullptr);
  if (code != SQLITE_OK) Raise(code);
  sqlite3_extended_result_codes(db_, 1);
  sqlite3_busy_timeout(db_, kBusyTimeoutMs);
  RegisterJetFunctions(db_);
  sqlite3_update_hook(db_, &Connection::OnRowWritten, this);
  sqlite3_rollback_hook(db_, &Connection::OnRollback, this);
}

Connection::~Connection() {
  if (level_ > 0) sqlite3_exec(db_, "ROLLBACK", nullptr, nullptr, nullptr);
  ClearStatements();
  files_.clear();
  sqlite3_close_v2(db_);
}

void Connection::ClearStatements() {
  ++statement_generation_;
  for (auto& [text, statement] : statements_) sqlite3_finalize(statement);
  statements_.clear();
}

sqlite3_stmt* Connection::Prepare(const std::string& sql) {
  if (auto found = statements_.find(sql); found != statements_.end()) return found->second;
  // Statements with values pasted in are many: keep the cache bounded. A
  // caller that keeps a statement across a call of Prepare checks
  // StatementGeneration before it uses the statement again.
  if (statements_.size() >= kMaxStatements) ClearStatements();
  sqlite3_stmt* statement = nullptr;
  int code = sqlite3_prepare_v3(db_, sql.c_str(), static_cast<int>(sql.size()), SQLITE_PREPARE_PERSISTENT,
                                &statement, nullptr);
  if (code != SQLITE_OK) Raise(code);
  statements_.emplace(sql, statement);
  return statement;
}

void Connection::NoteWrite() {
  ++write_count_;
  MoveAllVersions();
}

const uint64_t* Connection::TableVersionSlot(std::string_view alias, std::string_view table) {
  std::string key = FoldName(alias) + "." + FoldName(table);
  return &table_versions_.try_emplace(std::move(key), 0).first->second;
}

uint64_t Connection::TableVersion(const uint64_t* slot) const {
  // In autocommit mode (also after SQLite ended a transaction on its own) nothing holds the files.
  if (level_ == 0 || sqlite3_get_autocommit(db_) != 0) return 0;
  return std::max(*slot, all_tables_version_);
}

void Connection::OnRowWritten(void* self, int, const char* alias, const char* table, long long) {
  auto& connection = *static_cast<Connection*>(self);
  ++connection.row_writes_;
  std::string& key = connection.version_key_;
  key.assign(alias);
  key += '.';
  key += table;
  for (char& c : key) c = FoldAscii(c);
  connection.table_versions_[key] = ++connection.version_sequence_;
}

void Connection::OnRollback(void* self) { static_cast<Connection*>(self)->MoveAllVersions(); }

void Connection::RunTransactionStatement(const std::string& sql) {
  ++write_count_;
  StatementUse use(Prepare(sql));
  Step(use);
}

void Connection::Exec(const std::string& sql) {
  NoteWrite();
  int code = sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) Raise(code);
}

bool Connection::Step(sqlite3_stmt* statement) {
  int code = sqlite3_step(statement);
  if (code == SQLITE_ROW) return true;
  if (code == SQLITE_DONE) return false;
  Raise(code);
}

std::vector<uint64_t> Connection::ContentMark() const {
  std::vector<uint64_t> mark{write_count_};
  for (const auto& [alias, file] : files_) {
    unsigned int version = 0;
    sqlite3_file_control(db_, alias.c_str(), SQLITE_FCNTL_DATA_VERSION, &version);
    mark.push_back(std::hash<std::string>{}(alias));
    mark.push_back(version);
  }
  return mark;
}

std::vector<uint64_t> Connection::FreshContentMark() {
  // Starting a read makes SQLite check each file for commits of others since
  // its last read; their data versions then show them.
  for (const auto& [alias, file] : files_) {
    StatementUse use(Prepare("PRAGMA " + alias + ".data_version"));
    while (Step(use)) {
    }
  }
  return ContentMark();
}

void Connection::Raise(int code) const {
  int extended = sqlite3_extended_errcode(db_);
  std::string message = sqlite3_errmsg(db_);
  if (auto at = message.find(kRelatedRecordsTag); at != std::string::npos) {
    RaiseStore(kErrRelatedRecords, message.substr(at + std::string_view(kRelatedRecordsTag).size()));
  }
  switch (extended) {
    case SQLITE_CONSTRAINT_UNIQUE:
    case SQLITE_CONSTRAINT_PRIMARYKEY:
      RaiseStore(kErrDuplicate);
    case SQLITE_CONSTRAINT_NOTNULL:
      RaiseStore(kErrNullInKey);
    default:
      break;
  }
  switch (code & 0xFF) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      RaiseStore(kErrLocked);
    case SQLITE_NOTADB:
      RaiseStore(kErrUnrecognizedFormat, message);
    case SQLITE_CANTOPEN:
      RaiseStore(kErrFileNotFound, message);
    default:
      break;
  }
  if (message == "integer overflow") RaiseRuntime(kErrOverflow);
  // The Like function reports a pattern it refuses with the text of its 3075.
  if (message == "Invalid pattern string.") jet::RaiseStoreError(jet::kErrSyntax, message);
  RaiseStore(kErrReserved, message);
}

std::string Connection::AliasOf(const std::string& path) const {
  std::string canonical = CanonicalPath(path);
  for (const auto& [alias, file] : files_) {
    if (file.path == canonical) return alias;
  }
  return "";
}

std::shared_ptr<Catalog> Connection::OpenFile(const std::string& path, bool create) {
  if (create && FileExists(path)) RaiseStore(kErrDatabaseExists);
  if (create) std::ofstream(path, std::ios::binary).flush();
  std::string canonical = CanonicalPath(path);
  if (std::string alias = AliasOf(canonical); !alias.empty()) {
    ++files_[alias].uses;
    return files_[alias].catalog;
  }
  if (!FileExists(canonical)) RaiseStore(kErrFileNotFound, path);
  if (!LooksLikeDatabase(canonical)) RaiseStore(kErrUnrecognizedFormat, path);
  auto lock = std::make_unique<LockFile>(canonical);
  std::string alias = "f";
  alias += std::to_string(next_alias_++);
  sqlite3_stmt* attach = Prepare("ATTACH DATABASE ?1 AS ?2");
  {
    StatementUse use(attach);
    sqlite3_bind_text(attach, 1, canonical.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_text(attach, 2, alias.c_str(), -1, SQLITE_TRANSIENT);
    Step(attach);
  }
  ClearStatements();
  std::shared_ptr<Catalog> catalog;
  try {
    catalog = std::make_shared<Catalog>(*this, alias, canonical, std::move(lock));
    if (create) Catalog::CreateCatalogTables(*this, alias);
    catalog->Load();
  } catch (...) {
    sqlite3_exec(db_, ("DETACH DATABASE " + alias).c_str(), nullptr, nullptr, nullptr);
    throw;
  }
  files_[alias] = AttachedFile{canonical, catalog, 1};
  return catalog;
}

void Connection::CloseFile(const std::string& alias) {
  auto found = files_.find(alias);
  if (found == files_.end() || --found->second.uses > 0) return;
  ClearStatements();
  if (sqlite3_exec(db_, ("DETACH DATABASE " + alias).c_str(), nullptr, nullptr, nullptr) == SQLITE_OK) {
    found->second.catalog->ReleaseLock();
    files_.erase(found);
  } else {
    found->second.uses = 0;  // still attached (a transaction holds it); reused if opened again
  }
}

void Connection::BeginTrans() {
  // Rows kept from before the transaction may have been changed by others since.
  if (level_ == 0) MoveAllVersions();
  RunTransactionStatement(level_ == 0 ? std::string("BEGIN") : "SAVEPOINT ldg_" + std::to_string(level_ + 1));
  ++level_;
}

void Connection::CommitTrans() {
  if (level_ == 0) RaiseStore(kErrNoTransaction);
  RunTransactionStatement(level_ == 1 ? std::string("COMMIT") : "RELEASE ldg_" + std::to_string(level_));
  --level_;
}

void Connection::Rollback() {
  if (level_ == 0) RaiseStore(kErrNoTransaction);
  ++rollback_count_;
  MoveAllVersions();
  if (level_ == 1) {
    Exec("ROLLBACK");
  } else {
    std::string name = "ldg_" + std::to_string(level_);
    Exec("ROLLBACK TO " + name + "; RELEASE " + name);
  }
  --level_;
}

}  // namespace ldg::store::sqlite
