// The open chart of 2026 with a few plain accounts, a master with a detail,
// the creation's journal, and helpers that build, post and read book entries
// through the classes under test. TablesDump gives every row of every table
// but the database log, so a test can prove that a refused posting left the
// file exactly as it was.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bookkeeping/book_entries.hpp"
#include "bookkeeping/book_entry.hpp"
#include "bookkeeping/definitive_sets.hpp"
#include "bookkeeping/journal.hpp"
#include "bookkeeping/journals.hpp"
#include "bookkeeping/movement.hpp"
#include "bookkeeping/movements.hpp"
#include "bookkeeping/periods2.hpp"
#include "engine/callback.hpp"
#include "store/table_def.hpp"
#include "support/conversions.hpp"
#include "support/keys.hpp"
#include "support/messages.hpp"
#include "tests/accounts/balance_fixture.hpp"

namespace ldg::book_entry_testing {

using balance_testing::Amount;
using balance_testing::Describe;
using balance_testing::Expected;
using balance_testing::ExpectedMessage;
using chart_testing::Date;
using chart_testing::ErrorOf;

// One line of an entry: the account and the amount.
struct Line {
  int32_t account_id;
  const char* amount;
};

// Remembers every action the engine tells its callback.
class RecordingCallback : public Callback {
 public:
  void Action(const Variant& text, const Variant& value) override {
    actions.push_back(CStr(text) + "=" + CStr(value));
  }
  std::vector<std::string> actions;
};

class BookEntryTest : public balance_testing::BalanceTest {
 protected:
  void SetUp() override {
    BalanceTest::SetUp();
    journal_id_ = engine_->Journals()->Item(Variant(int32_t{1}))->ID();
    cash_ = InsertPlain(RootA(), "1000");
    bank_ = InsertPlain(RootA(), "1020", Amount("500"), Amount("500"));
    revenue_ = InsertPlain(RootB(), "3000");
    master_ = InsertMaster(RootA(), "1100");
    detail_ = InsertDetail(master_, master_, "1100.01");
  }

  BookEntries& Entries() { return *engine_->BookEntries(); }
  Journals& AllJournals() { return *engine_->Journals(); }
  Periods2& Periods() { return *engine_->Periods2(); }

  // A new, unsaved entry of the journal with one line per given line.
  std::shared_ptr<BookEntry> NewEntry(OleDate date, const std::vector<Line>& lines,
                                      const Variant& document_id = Variant("B1")) {
    auto entry = std::make_shared<BookEntry>();
    entry->JournalID(journal_id_);
    entry->EntryDate(Variant(date));
    entry->DocumentID(document_id);
    for (const Line& line : lines) {
      NewMovement values;
      values.account_id = line.account_id;
      values.amount = Amount(line.amount);
      values.text = Variant("Zeile " + std::to_string(line.account_id));
      entry->Movements().Add(values);
    }
    return entry;
  }

  // A balanced entry of 100 from revenue to cash, appended.
  std::shared_ptr<BookEntry> Posted(OleDate date = Date(2026, 3, 10),
                                    const Variant& document_id = Variant("B1")) {
    auto entry = NewEntry(date, {{cash_, "100"}, {revenue_, "-100"}}, document_id);
    Entries().Append(*entry);
    return entry;
  }

  Variant EntryColumn(int32_t id, const std::string& column) {
    return Scalar("SELECT " + column + " FROM BookEntries WHERE ID = " + std::to_string(id) + ";", column);
  }
  int32_t Rows(const std::string& table) {
    return ReadLong(Scalar("SELECT Count(*) AS N FROM " + table + ";", "N"));
  }

  // Every row of every table but the database log, each table's rows sorted.
  std::string TablesDump() {
    std::string dump;
    store::TableDefs& tables = Db().TableDefs();
    for (int i = 0; i < tables.Count(); ++i) {
      const std::string name = tables.Item(i)->Name();
      if (name == "DbLog") continue;
      dump += "[" + name + "]\n";
      std::vector<std::string> rows;
      auto records = Db().OpenRecordset("SELECT * FROM [" + name + "];", store::dbOpenSnapshot);
      for (; !records->Eof(); records->MoveNext()) {
        std::string row;
        for (int f = 0; f < records->Fields().Count(); ++f) {
          const Variant value = records->Fields().Item(f).Value();
          row += (value.IsNull() ? std::string("<null>") : CStr(value)) + "|";
        }
        rows.push_back(row);
      }
      records->Close();
      std::sort(rows.begin(), rows.end());
      for (const std::string& row : rows) dump += row + "\n";
    }
    return dump;
  }

  // The stored Balance of the account: its opening balance and the sum of its movements.
  void ExpectBalanceMatchesMovements(int32_t account_id) {
    const Variant sum = Scalar(
        "SELECT Sum(Amount) AS S FROM Movements WHERE AccountID = " + std::to_string(account_id) + ";", "S");
    const Currency movements = sum.IsNull() ? Currency() : CCur(sum);
    EXPECT_EQ(StoredCurrency(account_id, "Balance"), StoredCurrency(account_id, "OpeningBalance") + movements)
        << "account " << account_id;
  }
  void ExpectBalancesMatchMovements() {
    for (int32_t id : {cash_, bank_, revenue_, master_, detail_}) ExpectBalanceMatchesMovements(id);
  }

  // Locks a period of its own that holds the day.
  void LockPeriodOf(OleDate first_day) {
    Periods().Add(first_day);
    Periods().Locked(Variant(first_day), true);
  }

  int32_t journal_id_ = 0;
  int32_t cash_ = 0;
  int32_t bank_ = 0;
  int32_t revenue_ = 0;
  int32_t master_ = 0;
  int32_t detail_ = 0;
};

}  // namespace ldg::book_entry_testing
