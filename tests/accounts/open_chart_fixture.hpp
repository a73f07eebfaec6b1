// An Engine with a year file of 2026 made by the creation and left open, and
// helpers that write accounts, journals, book entries and movements straight
// through the record store, so that a test can lay out any chart and any
// movements without the classes under test.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "engine/engine.hpp"
#include "engine/engine_state.hpp"
#include "store/constants.hpp"
#include "store/database.hpp"
#include "support/conversions.hpp"
#include "support/currency.hpp"
#include "support/nullable.hpp"
#include "support/ole_date.hpp"
#include "support/sql_text.hpp"
#include "support/variant.hpp"
#include "tests/engine/created_year_file_fixture.hpp"

namespace ldg::chart_testing {

using year_files_testing::Day;
using year_files_testing::ErrorOf;

inline OleDate Date(int year, int month, int day) { return OleDate::FromYmd(year, month, day); }

// The flags of a row written straight into Accounts.
struct AccountRow {
  bool is_sum = false;
  bool is_master = false;
  bool is_general_ledger = true;
  bool is_debit = true;
  int32_t master_id = 0;  // a master gets its own ID when this is -1
  Currency opening_balance;
  Currency balance;
  Currency childrens_balance;
};

class OpenChartTest : public year_files_testing::CreatedYearFileTest {
 protected:
  void SetUp() override {
    CreatedYearFileTest::SetUp();
    std::filesystem::create_directories(folder_ / "config");
    ::setenv("XDG_CONFIG_HOME", (folder_ / "config").c_str(), 1);
    engine_ = std::make_unique<Engine>();
    engine_->AppPath(year_files_testing::TemplateFolder());
    Variant user("");
    Variant password("");
    Variant product("ldg");
    engine_->Init(user, password, product);
    engine_->CreateDatabase(Variant(PathOf("chart2026.qdb6f")), Day(2026, 1, 1), Day(2026, 12, 31));
  }

  void TearDown() override {
    engine_.reset();
    CreatedYearFileTest::TearDown();
  }

  store::Database& Db() { return *State().database; }

  // The ID of the account with that code, 0 when there is none.
  int32_t IdOf(const std::string& code) {
    return ReadLong(Scalar("SELECT ID FROM Accounts WHERE Code = " + QuoteText(code) + ";", "ID"));
  }
  int32_t RootA() { return IdOf("A"); }
  int32_t RootB() { return IdOf("B"); }

  // A row written straight into Accounts below parent_id, inheriting its Class.
  int32_t InsertAccount(int32_t parent_id, const std::string& code, const std::string& name,
                        const AccountRow& row = {}) {
    const int16_t account_class =
        static_cast<int16_t>(ReadLong(Scalar("SELECT Class FROM Accounts WHERE ID = " +
                                             std::to_string(parent_id) + ";", "Class")));
    auto table = Db().OpenRecordset("Accounts", store::dbOpenTable);
    table->AddNew();
    const int32_t id = ReadLong(table->Value("ID"));
    table->Value("ParentID", Variant(parent_id));
    table->Value("Code", Variant(code));
    table->Value("Name", Variant(name));
    table->Value("Class", Variant(account_class));
    table->Value("Position", Variant(int32_t{0}));
    table->Value("IsGeneralLedger", Variant(row.is_general_ledger));
    table->Value("IsDebit", Variant(row.is_debit));
    table->Value("IsSum", Variant(row.is_sum));
    table->Value("IsMaster", Variant(row.is_master));
    table->Value("MasterID", Variant(row.master_id == -1 ? id : row.master_id));
    table->Value("OpeningBalance", Variant(row.opening_balance));
    table->Value("Balance", Variant(row.balance));
    table->Value("ChildrensBalance", Variant(row.childrens_balance));
    table->Update();
    table->Close();
    return id;
  }
  int32_t InsertSum(int32_t parent_id, const std::string& code, const std::string& name) {
    AccountRow row;
    row.is_sum = true;
    return InsertAccount(parent_id, code, name, row);
  }

  int32_t InsertJournal(int32_t code, const std::string& name) {
    auto table = Db().OpenRecordset("Journals", store::dbOpenTable);
    table->AddNew();
    const int32_t id = ReadLong(table->Value("ID"));
    table->Value("Code", Variant(code));
    table->Value("Name", Variant(name));
    table->Update();
    table->Close();
    return id;
  }

  int32_t InsertEntry(int32_t journal_id, OleDate date, const std::string& document_id = "") {
    auto table = Db().OpenRecordset("BookEntries", store::dbOpenTable);
    table->AddNew();
    const int32_t id = ReadLong(table->Value("ID"));
    table->Value("JournalID", Variant(journal_id));
    table->Value("Date", Variant(date));
    if (!document_id.empty()) table->Value("DocumentID", Variant(document_id));
    table->Update();
    table->Close();
    return id;
  }

  // A movement row only: the stored balances are left as they are.
  int32_t InsertMovement(int32_t entry_id, int32_t account_id, Currency amount, Currency fc_amount = {}) {
    auto table = Db().OpenRecordset("Movements", store::dbOpenTable);
    table->AddNew();
    const int32_t id = ReadLong(table->Value("ID"));
    table->Value("EntryID", Variant(entry_id));
    table->Value("AccountID", Variant(account_id));
    table->Value("Amount", Variant(amount));
    table->Value("FCAmount", Variant(fc_amount));
    table->Update();
    table->Close();
    return id;
  }

  Variant Scalar(const std::string& sql, const std::string& column) {
    auto rows = Db().OpenRecordset(sql, store::dbOpenSnapshot);
    Variant value = rows->Eof() ? Variant() : rows->Value(column);
    rows->Close();
    return value;
  }
  Currency StoredCurrency(int32_t id, const std::string& column) {
    return CCur(Scalar("SELECT " + column + " FROM Accounts WHERE ID = " + std::to_string(id) + ";", column));
  }

  std::unique_ptr<Engine> engine_;
};

}  // namespace ldg::chart_testing
