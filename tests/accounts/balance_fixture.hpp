// The open chart of 2026 with what the balance and tree tests lay out: masters
// with detail trees, marks, the rows of taxes and currencies that make an account
// a dependency, and the posting steps of a movement (reload, set, update).
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

#include "accounts/account.hpp"
#include "accounts/account_handles.hpp"
#include "accounts/accounts.hpp"
#include "bookkeeping/journal.hpp"
#include "bookkeeping/journals.hpp"
#include "engine/engine.hpp"
#include "store/constants.hpp"
#include "support/currency.hpp"
#include "support/error.hpp"
#include "support/messages.hpp"
#include "support/nullable.hpp"
#include "tests/accounts/open_chart_fixture.hpp"

namespace ldg::balance_testing {

using chart_testing::AccountRow;
using chart_testing::Date;
using chart_testing::ErrorOf;

inline Currency Amount(const char* text) { return *Currency::Parse(text); }

class BalanceTest : public chart_testing::OpenChartTest {
 protected:
  std::shared_ptr<Account> Load(int32_t id) {
    std::shared_ptr<Account> account = engine_->Accounts()->Item(Variant(id));
    EXPECT_TRUE(account) << "no account " << id;
    return account;
  }

  int32_t InsertPlain(int32_t parent_id, const std::string& code, Currency opening = {},
                      Currency balance = {}) {
    AccountRow row;
    row.opening_balance = opening;
    row.balance = balance;
    return InsertAccount(parent_id, code, "Konto " + code, row);
  }
  int32_t InsertMaster(int32_t parent_id, const std::string& code, Currency childrens_balance = {}) {
    AccountRow row;
    row.is_master = true;
    row.master_id = -1;
    row.childrens_balance = childrens_balance;
    return InsertAccount(parent_id, code, "Sammel " + code, row);
  }
  int32_t InsertDetail(int32_t parent_id, int32_t master_id, const std::string& code, Currency opening = {},
                       Currency balance = {}, Currency childrens_balance = {}) {
    AccountRow row;
    row.is_general_ledger = false;
    row.master_id = master_id;
    row.opening_balance = opening;
    row.balance = balance;
    row.childrens_balance = childrens_balance;
    return InsertAccount(parent_id, code, "Detail " + code, row);
  }

  void SetColumn(int32_t id, const std::string& column, const std::string& value) {
    Db().Execute("UPDATE Accounts SET " + column + " = " + value + " WHERE ID = " + std::to_string(id) + ";");
  }
  void MarkRow(int32_t id) { SetColumn(id, "DeleteOnCloture", "True"); }
  bool IsMarked(int32_t id) {
    return CBool(Scalar("SELECT DeleteOnCloture FROM Accounts WHERE ID = " + std::to_string(id) + ";",
                        "DeleteOnCloture"));
  }

  // A tax whose history row books on the account.
  void InsertTaxHistory(int32_t account_id) {
    auto taxes = Db().OpenRecordset("Taxes", store::dbOpenTable);
    taxes->AddNew();
    const int32_t tax_id = ReadLong(taxes->Value("ID"));
    taxes->Value("Code", Variant("V" + std::to_string(account_id)));
    taxes->Update();
    taxes->Close();
    auto history = Db().OpenRecordset("TaxHistories", store::dbOpenTable);
    history->AddNew();
    history->Value("TaxID", Variant(tax_id));
    history->Value("AccountID", Variant(account_id));
    history->Value("Rate", Variant(Amount("7.7")));
    history->Update();
    history->Close();
  }
  // A currency whose exchange loss and gain go to the two accounts (0 for none).
  void InsertForeinCurrency(const std::string& code, int32_t loss_account_id, int32_t gain_account_id) {
    auto currencies = Db().OpenRecordset("ForeinCurrencies", store::dbOpenTable);
    currencies->AddNew();
    currencies->Value("Code", Variant(code));
    currencies->Value("RateCode", Variant(code));
    if (loss_account_id != 0) currencies->Value("AccountExchangeLostID", Variant(loss_account_id));
    if (gain_account_id != 0) currencies->Value("AccountExchangeGainID", Variant(gain_account_id));
    currencies->Update();
    currencies->Close();
  }

  // What a posting does to the account of a movement.
  void Post(int32_t account_id, Currency amount) {
    std::shared_ptr<Account> account = Load(account_id);
    account->ReloadBalances();
    account->SetBalance(account->Balance() + amount);
    account->Update();
  }

  // A movement on its own book entry in the journal.
  void InsertMovementOn(int32_t journal_id, OleDate date, int32_t account_id, Currency amount,
                        Currency fc_amount = {}) {
    InsertMovement(InsertEntry(journal_id, date), account_id, amount, fc_amount);
  }

  // A journal of the open Journals collection.
  int32_t AddJournal(const std::string& name) { return engine_->Journals()->Add(Variant(name))->ID(); }

  AccountHandles& Handles() { return SharedAccountHandles(); }
};

// Number and text of an error, for one comparison.
inline std::string Describe(const Error& error) {
  return std::to_string(error.Number()) + " " + error.Source() + ": " + error.Description();
}
inline std::string Expected(int32_t number, const std::string& source, const std::string& text) {
  return std::to_string(number) + " " + source + ": " + text;
}
inline std::string ExpectedMessage(int32_t message_id, const std::string& text) {
  return Expected(MessageNumber(message_id), kAppTitle, text);
}

}  // namespace ldg::balance_testing
