// The root of the record store, and the factory that gives its SQLite
// implementation. The engine codes against these interfaces only.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "store/database.hpp"
#include "store/workspace.hpp"

namespace ldg::store {

class DBEngine {
 public:
  virtual ~DBEngine() = default;

  virtual std::shared_ptr<Workspace> CreateWorkspace(std::string_view name, std::string_view user,
                                                     std::string_view password, int type = dbUseJet) = 0;
  // A private connection outside every workspace, with its own transactions.
  virtual std::shared_ptr<Database> OpenDatabase(std::string_view path) = 0;
  // A new empty file; 3204 when the file exists. The locale text is accepted and ignored.
  virtual std::shared_ptr<Database> CreateDatabase(std::string_view path,
                                                   std::string_view locale = dbLangGeneral) = 0;
  // Writes a compacted copy of a closed file; 3204 when the destination exists.
  virtual void CompactDatabase(std::string_view source, std::string_view destination) = 0;
  virtual std::string SystemDB() const = 0;
  virtual void SystemDB(std::string_view path) = 0;
};

// The SQLite-backed store.
std::unique_ptr<DBEngine> NewSqliteEngine();

}  // namespace ldg::store
