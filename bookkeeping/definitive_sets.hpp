// DefinitiveSets: the runs that made book entries definitive, one row of table
// DefinitiveSets each, read whole into memory in ID order and keyed "ID<n>".
// A set is written once and never changed or removed.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "store/recordset.hpp"
#include "support/ole_date.hpp"
#include "support/variant.hpp"

namespace ldg {

// The ways a front end lets the user choose entries for a run; published only.
enum LockModes : int16_t {
  lgrLockModeSingle = 1,
  lgrLockModeEntryJournal = 2,
  lgrLockModePeriod = 3,
  lgrLockModeDateRange = 4,
  lgrLockModeDocIDRange = 5,
  lgrLockModeMarked = 6,
  lgrLockModeUser = 7,
};

// The day and the user that a definitive run records: today's date of the
// local clock, without time, and the engine's current user ("" without one).
OleDate DefinitiveRunDate();
std::string DefinitiveRunUser();

class DefinitiveSet {
 public:
  int32_t ID() const { return id_; }
  int32_t Number() const { return number_; }
  OleDate TransactionDate() const { return transaction_date_; }
  std::string User() const { return user_; }
  Variant BeginnDate() const { return beginn_date_; }
  Variant EndDate() const { return end_date_; }
  std::string ExcludedJournals() const { return excluded_journals_; }
  bool UsersEntriesOnly() const { return users_entries_only_; }

  // For DefinitiveSets.
  void LoadFromRecord(const store::Recordset& record);

 private:
  int32_t id_ = 0;
  int32_t number_ = 0;
  OleDate transaction_date_;
  std::string user_;
  Variant beginn_date_;
  Variant end_date_;
  std::string excluded_journals_;
  bool users_entries_only_ = false;
};

class DefinitiveSets {
 public:
  DefinitiveSets();

  std::shared_ptr<DefinitiveSet> Add(OleDate transaction_date, const std::string& user,
                                     const Variant& date_beginn = Variant(),
                                     const Variant& date_end = Variant(),
                                     const std::string& excluded_journals = "",
                                     bool users_entries_only = false);
  // A key "ID<n>" (0x80040451 with the text of 1186, its "%1" left as it is) or a one-based
  // position (error 9).
  std::shared_ptr<DefinitiveSet> Item(const Variant& index_or_key) const;
  auto begin() const { return sets_.begin(); }
  auto end() const { return sets_.end(); }
  void Refresh();
  int32_t Count() const { return static_cast<int32_t>(sets_.size()); }

 private:
  // Raises 1185 for what is no date and 1103 for a date outside the open year;
  // Empty, Null and "" pass unchecked.
  static void CheckSelectionDate(const Variant& date);

  std::vector<std::shared_ptr<DefinitiveSet>> sets_;
};

}  // namespace ldg
