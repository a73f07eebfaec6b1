// Periods2: the accounting periods of the open business year and their locks.
// The year is cut into consecutive periods that cover it without gap or
// overlap; each row of the table "Periods2" holds a period's first day
// (DateFrom, unique), its last day (DateTo, always derived here) and its
// LockingState: 0 open, 1 locked, 2 permanently locked. A book entry dated in a
// locked period can't be saved.
//
// After every completed change the first period starts on the year's first
// day, each period ends the day before the next one starts, the last ends on
// the year's last day, and there is at least one period. So a period's lock
// stays with its start date when a neighbour is added or removed, and the
// period before a new start date simply shrinks.
//
// Nothing here raises for a refused change: the operation answers False (or
// does nothing) and the table stays as it was. Every member that takes
// IndexOrDate reads a Date Variant or a date text as the date of the period
// that holds it, and anything else as a one-based position; a period that
// can't be located reads as the "closed" answer (LockingState 2, Locked and
// Permanent True, empty texts, zero dates).
//
// One table-type record set on the table, over the index DateFrom, lives as
// long as the object; its current row is whatever the last locating step left.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "accounts/keyed_collection.hpp"
#include "store/recordset.hpp"
#include "support/ole_date.hpp"
#include "support/variant.hpp"

namespace ldg {

// Bits of the option PeriodLockFlags. The engine only stores them; a front end
// that offers the lock commands honours them.
enum PerFlags : int32_t {
  lgrPerFlagOnlyCompletelyBookedCanBeLocked = 1,
  lgrPerFlagPermanentLockActive = 2,
};

class Periods2 {
 public:
  // Brings the table up to date on the engine's current database, opens it and
  // normalises it, so a fresh year file gets one open period over the whole year.
  Periods2();
  ~Periods2();
  Periods2(const Periods2&) = delete;
  Periods2& operator=(const Periods2&) = delete;

  // Never 0.
  int32_t Count() const { return periods_.Count(); }
  // "2026 - Jahr", "2026-S1    (01.01.2026 - 30.06.2026)", "2026-Q3    (...)",
  // "2026 - März", else "Von dd.mm.yyyy bis dd.mm.yyyy" or "Am dd.mm.yyyy".
  std::string Text(const Variant& index_or_date);
  // Clamped to 0..2.
  int32_t LockingState(const Variant& index_or_date);
  // A permanent lock is final: nothing changes a period in state 2. Other
  // values are clamped to 0..2.
  void LockingState(const Variant& index_or_date, int32_t value);
  // States 1 and 2 alike.
  bool Locked(const Variant& index_or_date);
  // True sets state 1, False state 0.
  void Locked(const Variant& index_or_date, bool value);
  bool Permanent(const Variant& index_or_date);
  // True sets state 2; False does nothing.
  void Permanent(const Variant& index_or_date, bool value);
  OleDate DateFrom(const Variant& index_or_date);
  OleDate DateTo(const Variant& index_or_date);
  // "Key" followed by the period's first day as text ("Key01.04.2026").
  std::string Key(const Variant& index_or_date);

  // Starts a new period on the date. False for a date outside the year or one
  // that already starts a period. No lock is tested: a period may start inside
  // a locked one, and the new period is open.
  bool Add(OleDate date_from);
  // False for the first period and for a locked one.
  bool Remove(const Variant& index_or_date);

  // Each replaces all periods when none is locked, else answers False and
  // changes nothing. SetYear leaves one period; SetMonth starts one each month
  // from the year's first day; SetQuarter and SetSemester start at the end of
  // the calendar quarter or half year that holds the year's first day, so a
  // year that begins inside one gets a short first period.
  bool SetYear();
  bool SetMonth();
  bool SetQuarter();
  bool SetSemester();
  // True when no period is locked.
  bool CheckUnlock();
  // Deletes every period, locked ones included, and leaves one open period over the year.
  void Reset();

 private:
  void Normalise();
  void DeleteRowsOutsideTheYear();
  void DeriveDateTo();
  void RebuildCollection();
  // Leaves the period's row current; false when the value names no period of the year.
  bool Locate(const Variant& index_or_date);
  // The state from the rows kept in memory; nothing when the table can't tell
  // whether its rows changed since they were read.
  std::optional<int32_t> KnownState(const Variant& index_or_date);
  void ReadStates(uint64_t version);
  bool DateOf(const Variant& index_or_date, OleDate& date) const;
  int32_t CurrentState() const;
  OleDate CurrentDateFrom() const;
  OleDate CurrentDateTo() const;
  // Reset, then a period from first_start on every months_step months.
  void SetSteps(OleDate first_start, int months_step);

  struct KnownPeriod {
    bool has_start = false;
    OleDate start;
    int32_t state = 0;
  };

  std::unique_ptr<store::Recordset> table_;
  KeyedCollection<OleDate> periods_;
  // The rows in index order as last read, and the table's version then.
  std::vector<KnownPeriod> states_;
  uint64_t states_version_ = 0;
};

}  // namespace ldg
