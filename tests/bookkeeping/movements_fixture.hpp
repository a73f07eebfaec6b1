// The book entry fixture with what the tests of lines need besides: a tax
// account, entries whose rows (including a tax line and its link) are written
// straight into the file and loaded through the classes under test, a stand-in
// for the tax collection, and a listener that records AmountChanged.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "accounts/account.hpp"
#include "accounts/account_links.hpp"
#include "accounts/accounts.hpp"
#include "bookkeeping/book_entry.hpp"
#include "bookkeeping/movement.hpp"
#include "bookkeeping/movements.hpp"
#include "support/keys.hpp"
#include "support/messages.hpp"
#include "tests/bookkeeping/book_entries_fixture.hpp"

namespace ldg::movement_testing {

using balance_testing::Amount;
using balance_testing::Describe;
using balance_testing::Expected;
using balance_testing::ExpectedMessage;
using book_entry_testing::Line;
using chart_testing::Date;
using chart_testing::ErrorOf;

// A line of an entry's collection by its position.
inline Variant Position(int32_t position) { return Variant(position); }

// The bare number of states the lines should never reach.
inline const int32_t kBareError = kErrorBase;

// Records the internal numbers that an entry reports with AmountChanged.
class AmountChangedRecorder : public BookEntryEvents {
 public:
  void AmountChanged(int32_t internal_id) override { internal_ids.push_back(internal_id); }
  std::vector<int32_t> internal_ids;
};

// Puts a tax lookup into the process's links for the life of the object: IDs in
// the list give a tax (no object: the arithmetic isn't reached), others raise
// the tax collection's error.
class TaxLookupStandIn {
 public:
  explicit TaxLookupStandIn(std::vector<int32_t> known_ids) : saved_(RegisteredAccountLinks().tax_item) {
    RegisteredAccountLinks().tax_item = [known_ids](int32_t tax_id) -> std::shared_ptr<Tax> {
      for (int32_t known : known_ids) {
        if (known == tax_id) return nullptr;
      }
      RaiseMessage(1130, Variant(tax_id));
    };
  }
  ~TaxLookupStandIn() { RegisteredAccountLinks().tax_item = saved_; }
  TaxLookupStandIn(const TaxLookupStandIn&) = delete;
  TaxLookupStandIn& operator=(const TaxLookupStandIn&) = delete;

 private:
  std::function<std::shared_ptr<Tax>(int32_t)> saved_;
};

class MovementsTest : public book_entry_testing::BookEntryTest {
 protected:
  void SetUp() override {
    BookEntryTest::SetUp();
    tax_account_ = InsertPlain(RootA(), "2200");
  }

  // The rows of a stored entry: the first line owns a tax line (behind it), the
  // last is the counter line. Balances are left as they are.
  struct TaxedRows {
    int32_t entry_id = 0;
    int32_t owner_id = 0;
    int32_t tax_line_id = 0;
    int32_t counter_id = 0;
  };
  TaxedRows StoreTaxedEntry(const char* owner_amount, const char* tax_amount, int32_t owner_tax_id = 0) {
    TaxedRows rows;
    rows.entry_id = InsertEntry(journal_id_, Date(2026, 3, 10), "T1");
    rows.owner_id = InsertMovement(rows.entry_id, cash_, Amount(owner_amount));
    rows.tax_line_id = InsertMovement(rows.entry_id, tax_account_, Amount(tax_amount));
    rows.counter_id = InsertMovement(rows.entry_id, revenue_, -(Amount(owner_amount) + Amount(tax_amount)));
    SetMovementColumn(rows.owner_id, "DependentMovementID", std::to_string(rows.tax_line_id));
    if (owner_tax_id != 0) SetMovementColumn(rows.owner_id, "TaxID", std::to_string(owner_tax_id));
    SetMovementColumn(rows.tax_line_id, "IsDependent", "True");
    return rows;
  }

  void SetMovementColumn(int32_t id, const std::string& column, const std::string& value) {
    Db().Execute("UPDATE Movements SET " + column + " = " + value + " WHERE ID = " + std::to_string(id) + ";",
                 store::dbFailOnError);
  }
  Variant MovementColumn(int32_t id, const std::string& column) {
    return Scalar("SELECT " + column + " FROM Movements WHERE ID = " + std::to_string(id) + ";", column);
  }
  int32_t MovementRows(int32_t entry_id) {
    return ReadLong(
        Scalar("SELECT Count(*) AS N FROM Movements WHERE EntryID = " + std::to_string(entry_id) + ";", "N"));
  }

  std::shared_ptr<BookEntry> LoadEntry(int32_t id) { return Entries().Item(BuildKey(id)); }

  std::shared_ptr<Account> AccountOf(int32_t id) { return engine_->Accounts()->Item(Variant(id)); }

  std::shared_ptr<Movement> LineAt(const std::shared_ptr<BookEntry>& entry, int32_t position) {
    return entry->Movements().Item(Position(position));
  }

  // A new entry of the journal on 10 March with lines added empty, one per account.
  std::shared_ptr<BookEntry> EntryWithAccounts(const std::vector<int32_t>& account_ids) {
    auto entry = std::make_shared<BookEntry>();
    entry->JournalID(journal_id_);
    entry->EntryDate(Variant(Date(2026, 3, 10)));
    entry->DocumentID(Variant("M1"));
    for (int32_t id : account_ids) {
      NewMovement values;
      values.account_id = id;
      entry->Movements().Add(values);
    }
    return entry;
  }

  int32_t tax_account_ = 0;
};

// The movements fixture recording the AmountChanged events of the entries it watches.
class WatchedMovementsTest : public MovementsTest {
 protected:
  void TearDown() override {
    for (auto& entry : watched_) entry->RemoveListener(&events_);
    watched_.clear();
    MovementsTest::TearDown();
  }

  // An entry whose AmountChanged events the test records.
  std::shared_ptr<BookEntry> Watched(std::shared_ptr<BookEntry> entry) {
    entry->AddListener(&events_);
    watched_.push_back(entry);
    return entry;
  }

  // Cash against revenue with the balancing automatism on, its events recorded.
  std::shared_ptr<BookEntry> SimpleEntry() {
    auto entry = Watched(EntryWithAccounts({cash_, revenue_}));
    entry->BalancingAutomatismActive(true);
    return entry;
  }

  AmountChangedRecorder events_;
  std::vector<std::shared_ptr<BookEntry>> watched_;
};

}  // namespace ldg::movement_testing
