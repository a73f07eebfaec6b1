// A workspace: one SQLite connection that every database opened through it is
// attached to, so that BeginTrans spans them all.
#pragma once

#include <memory>
#include <string>

#include "store/sqlite/connection.hpp"
#include "store/workspace.hpp"

namespace ldg::store::sqlite {

class SqliteWorkspace final : public Workspace {
 public:
  explicit SqliteWorkspace(std::string name)
      : name_(std::move(name)), connection_(std::make_shared<Connection>()) {}
  ~SqliteWorkspace() override;

  std::string Name() const override { return name_; }
  std::shared_ptr<Database> OpenDatabase(std::string_view path) override;
  void BeginTrans() override { connection_->BeginTrans(); }
  void CommitTrans() override { connection_->CommitTrans(); }
  void Rollback() override { connection_->Rollback(); }
  int TransactionLevel() const override { return connection_->TransactionLevel(); }
  void Close() override;

 private:
  std::string name_;
  std::shared_ptr<Connection> connection_;
};

}  // namespace ldg::store::sqlite
