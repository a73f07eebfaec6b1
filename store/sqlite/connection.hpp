// One SQLite connection with every database file ATTACHed under an alias of
// its own, so one transaction spans all files of a workspace. It keeps
// prepared statements by text (re-running a text costs no parse), maps SQLite
// failures to the store's error numbers, and nests transactions: level 1 is
// BEGIN, deeper levels are savepoints.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace ldg::store::sqlite {

class Catalog;

// A prepared statement in use: reset and unbound again when it goes.
class StatementUse {
 public:
  explicit StatementUse(sqlite3_stmt* statement) : statement_(statement) {}
  ~StatementUse();
  StatementUse(const StatementUse&) = delete;
  StatementUse& operator=(const StatementUse&) = delete;
  sqlite3_stmt* get() const { return statement_; }
  operator sqlite3_stmt*() const { return statement_; }

 private:
  sqlite3_stmt* statement_;
};

class Connection : public std::enable_shared_from_this<Connection> {
 public:
  Connection();
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  sqlite3* Handle() const { return db_; }

  // The cached prepared statement for the text.
  sqlite3_stmt* Prepare(const std::string& sql);
  // Moves whenever the cached statements are finalized: a statement kept from
  // Prepare is good while this stays the same.
  uint64_t StatementGeneration() const { return statement_generation_; }
  // Runs a statement that returns no rows (several separated by ";" allowed).
  void Exec(const std::string& sql);
  // Steps a statement; true for a row, false when done; raises on failure.
  bool Step(sqlite3_stmt* statement);
  // Raises the store error for an SQLite failure code.
  [[noreturn]] void Raise(int code) const;

  // Counts every write through this connection; cached rows compare it.
  uint64_t WriteCount() const { return write_count_; }
  // A write whose rows aren't known one by one: every table's version moves.
  void NoteWrite();
  // A record set's own write of a row by rowid: SQLite reports its rows (and
  // those of the triggers it sets off) to the tables' versions.
  void NoteRowWrite() { ++write_count_; }

  // Versions of the tables' rows, for rows kept in memory inside one
  // transaction. A row written in a table, also by a trigger, moves that
  // table's version; NoteWrite, a rollback and the start of a transaction move
  // them all. Outside a transaction a version reads 0 ("can't tell"): other
  // connections may commit between two statements. The slot of a table stays
  // valid as long as the connection.
  const uint64_t* TableVersionSlot(std::string_view alias, std::string_view table);
  uint64_t TableVersion(const uint64_t* slot) const;
  // Rows inserted, updated or deleted through this connection, triggers included.
  uint64_t RowWrites() const { return row_writes_; }
  // Counts rollbacks; a catalog reloads when it changed.
  uint64_t RollbackCount() const { return rollback_count_; }

  // A mark of what the attached files hold as this connection last read them:
  // its own write count and each file's data version, which a commit moves.
  // Equal marks mean the same rows. FreshContentMark first starts a read of
  // each file, so that commits of other connections since then show.
  std::vector<uint64_t> ContentMark() const;
  std::vector<uint64_t> FreshContentMark();

  // Attaches a file (or finds it attached already) and gives its catalog.
  // A missing file fails with 3024, a file of another kind with 3343. With
  // create the file must not exist yet and is made with an empty catalog.
  std::shared_ptr<Catalog> OpenFile(const std::string& path, bool create = false);
  // Drops one use of an attached file; the last use detaches it.
  void CloseFile(const std::string& alias);
  // The alias a file is attached under, or empty.
  std::string AliasOf(const std::string& path) const;

  void BeginTrans();
  void CommitTrans();
  void Rollback();
  int TransactionLevel() const { return level_; }

 private:
  struct AttachedFile {
    std::string path;
    std::shared_ptr<Catalog> catalog;
    int uses = 0;
  };

  void ClearStatements();
  // BEGIN, COMMIT, SAVEPOINT and RELEASE: prepared once, and no table's version moves.
  void RunTransactionStatement(const std::string& sql);
  void MoveAllVersions() { all_tables_version_ = ++version_sequence_; }
  static void OnRowWritten(void* self, int operation, const char* alias, const char* table, long long rowid);
  static void OnRollback(void* self);

  sqlite3* db_ = nullptr;
  std::unordered_map<std::string, sqlite3_stmt*> statements_;
  std::map<std::string, AttachedFile> files_;  // by alias
  uint64_t write_count_ = 0;
  uint64_t statement_generation_ = 0;
  uint64_t row_writes_ = 0;
  uint64_t version_sequence_ = 0;
  uint64_t all_tables_version_ = 0;
  std::unordered_map<std::string, uint64_t> table_versions_;  // by folded "alias.table"
  std::string version_key_;                                   // scratch for the row hook
  uint64_t rollback_count_ = 0;
  int level_ = 0;
  int next_alias_ = 1;
};

// The canonical form of a path, so that two spellings of one file attach once.
std::string CanonicalPath(const std::string& path);

}  // namespace ldg::store::sqlite
