#include "store/sqlite/sqlite_workspace.hpp"

#include "store/sqlite/sqlite_database.hpp"

namespace ldg::store::sqlite {

SqliteWorkspace::~SqliteWorkspace() { Close(); }

std::shared_ptr<Database> SqliteWorkspace::OpenDatabase(std::string_view path) {
  std::string name(path);
  return std::make_shared<SqliteDatabase>(connection_, connection_->OpenFile(name), name);
}

void SqliteWorkspace::Close() {
  // A transaction nobody ended is rolled back when the workspace goes.
  while (connection_->TransactionLevel() > 0) {
    try {
      connection_->Rollback();
    } catch (...) {
      break;
    }
  }
}

}  // namespace ldg::store::sqlite
