#include <sqlite3.h>
#include <sys/stat.h>

#include "store/db_engine.hpp"
#include "store/sqlite/catalog.hpp"
#include "store/sqlite/connection.hpp"
#include "store/sqlite/sqlite_database.hpp"
#include "store/sqlite/sqlite_workspace.hpp"
#include "store/store_error.hpp"

namespace ldg::store {

namespace {

bool Exists(const std::string& path) {
  struct stat info {};
  return stat(path.c_str(), &info) == 0;
}

class SqliteDBEngine final : public DBEngine {
 public:
  std::shared_ptr<Workspace> CreateWorkspace(std::string_view name, std::string_view, std::string_view,
                                             int) override {
    return std::make_shared<sqlite::SqliteWorkspace>(std::string(name));
  }

  std::shared_ptr<Database> OpenDatabase(std::string_view path) override {
    auto connection = std::make_shared<sqlite::Connection>();
    std::string name(path);
    return std::make_shared<sqlite::SqliteDatabase>(connection, connection->OpenFile(name), name);
  }

  std::shared_ptr<Database> CreateDatabase(std::string_view path, std::string_view) override {
    std::string name(path);
    if (Exists(name)) RaiseStore(kErrDatabaseExists);
    auto connection = std::make_shared<sqlite::Connection>();
    try {
      return std::make_shared<sqlite::SqliteDatabase>(connection, connection->OpenFile(name, true), name);
    } catch (...) {
      connection.reset();
      std::remove(name.c_str());
      throw;
    }
  }

  void CompactDatabase(std::string_view source, std::string_view destination) override {
    std::string to(destination);
    if (Exists(to)) RaiseStore(kErrDatabaseExists);
    auto connection = std::make_shared<sqlite::Connection>();
    auto catalog = connection->OpenFile(std::string(source));
    sqlite3_stmt* vacuum = connection->Prepare("VACUUM " + catalog->Alias() + " INTO ?1");
    {
      sqlite::StatementUse use(vacuum);
      sqlite3_bind_text(vacuum, 1, to.c_str(), -1, SQLITE_TRANSIENT);
      connection->Step(vacuum);
    }
    connection->CloseFile(catalog->Alias());
  }

  std::string SystemDB() const override { return system_db_; }
  void SystemDB(std::string_view path) override { system_db_ = path; }

 private:
  std::string system_db_;
};

}  // namespace

std::unique_ptr<DBEngine> NewSqliteEngine() { return std::make_unique<SqliteDBEngine>(); }

}  // namespace ldg::store
