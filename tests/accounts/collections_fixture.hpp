// The open chart with the accounts collections at hand: the engine's Accounts,
// fresh objects by ID, row counts, a host that counts its turns, and a guard
// that puts the account links back after a test changed them.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "accounts/account.hpp"
#include "accounts/account_links.hpp"
#include "accounts/accounts.hpp"
#include "accounts/accounts_events.hpp"
#include "accounts/master_accounts.hpp"
#include "engine/host_hooks.hpp"
#include "tests/accounts/open_chart_fixture.hpp"

namespace ldg::chart_testing {

class CountingYields : public HostHooks {
 public:
  void Yield() override { ++yields; }
  int yields = 0;
};

// Records what Accounts tells its listeners, in order.
class RecordingListener : public AccountsEvents {
 public:
  void Created(std::shared_ptr<Account>& account) override { Note("Created", account); }
  void Updated(std::shared_ptr<Account>& account) override { Note("Updated", account); }
  void Deleted(std::shared_ptr<Account>& account) override { Note("Deleted", account); }

  std::vector<std::string> events;
  std::vector<std::shared_ptr<Account>> accounts;

 private:
  void Note(const char* event, std::shared_ptr<Account>& account) {
    events.emplace_back(event);
    accounts.push_back(account);
  }
};

// The account links as they were when the guard was made, restored at its end.
class LinksGuard {
 public:
  LinksGuard() : saved_(RegisteredAccountLinks()) {}
  ~LinksGuard() { RegisteredAccountLinks() = saved_; }
  LinksGuard(const LinksGuard&) = delete;
  LinksGuard& operator=(const LinksGuard&) = delete;

 private:
  AccountLinks saved_;
};

// The open chart with the sum 1 "Aktiven" under root A holding 1000 "Kasse" and 1020 "Bank".
class CashAndBankTest : public OpenChartTest {
 protected:
  void SetUp() override {
    OpenChartTest::SetUp();
    assets_ = InsertSum(RootA(), "1", "Aktiven");
    cash_ = InsertAccount(assets_, "1000", "Kasse");
    bank_ = InsertAccount(assets_, "1020", "Bank");
  }

  int32_t assets_ = 0;
  int32_t cash_ = 0;
  int32_t bank_ = 0;
};

class CollectionsTest : public OpenChartTest {
 protected:
  void TearDown() override {
    State().hooks = nullptr;
    OpenChartTest::TearDown();
  }

  ldg::Accounts& Accs() { return *engine_->Accounts(); }
  ldg::MasterAccounts& Masters() { return *engine_->MasterAccounts(); }
  std::shared_ptr<Account> Fresh(int32_t id) { return Accs().Item(Variant(id)); }

  int32_t RowCount(const std::string& from_where) {
    return CLng(Scalar("SELECT Count(*) AS N " + from_where + ";", "N"));
  }
  int32_t IndexRows(int32_t id) { return RowCount("FROM AccountsIndex WHERE ID = " + std::to_string(id)); }
  Variant Column(int32_t id, const std::string& column) {
    return Scalar("SELECT " + column + " FROM Accounts WHERE ID = " + std::to_string(id) + ";", column);
  }
  int32_t MasterRow(int32_t parent_id, const std::string& code, const std::string& name) {
    AccountRow row;
    row.is_master = true;
    row.master_id = -1;
    return InsertAccount(parent_id, code, name, row);
  }
  int32_t DetailRow(int32_t parent_id, int32_t master_id, const std::string& code, const std::string& name) {
    AccountRow row;
    row.is_general_ledger = false;
    row.master_id = master_id;
    return InsertAccount(parent_id, code, name, row);
  }
};

}  // namespace ldg::chart_testing
