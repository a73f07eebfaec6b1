// A workspace: the databases opened through it share one transaction.
// BeginTrans nests; Rollback undoes the innermost level only; CommitTrans or
// Rollback without BeginTrans is a store error (3034). A transaction still open
// when the workspace goes is rolled back.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "store/database.hpp"

namespace ldg::store {

class Workspace {
 public:
  virtual ~Workspace() = default;

  virtual std::string Name() const = 0;
  // Opens for shared reading and writing. A missing file fails with 3024, a
  // file that is not a database of this store with 3343.
  virtual std::shared_ptr<Database> OpenDatabase(std::string_view path) = 0;
  virtual void BeginTrans() = 0;
  virtual void CommitTrans() = 0;
  virtual void Rollback() = 0;
  // The nesting depth of the open transaction; 0 for none.
  virtual int TransactionLevel() const = 0;
  virtual void Close() = 0;
};

}  // namespace ldg::store
