#include "bookkeeping/periods2.hpp"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>

#include "engine/current_objects.hpp"
#include "engine/engine_state.hpp"
#include "engine/schema_upkeep.hpp"
#include "store/constants.hpp"
#include "store/database.hpp"
#include "support/conversions.hpp"
#include "support/date_helpers.hpp"
#include "support/error.hpp"
#include "support/nullable.hpp"

namespace ldg {
namespace {

constexpr int32_t kStateOpen = 0;
constexpr int32_t kStateLocked = 1;
constexpr int32_t kStatePermanent = 2;

OleDate YearBeginn() { return CDate(State().year_beginn); }
OleDate YearEndDate() { return CDate(State().year_end); }

bool InYear(OleDate date) { return date >= YearBeginn() && date <= YearEndDate(); }

OleDate DayBefore(OleDate date) { return OleDate(date.Serial() - 1); }
OleDate DayAfter(OleDate date) { return OleDate(date.Serial() + 1); }

std::string KeyOf(OleDate date_from) { return "Key" + CStr(Variant(date_from)); }

int32_t Clamped(int32_t state) { return std::clamp(state, kStateOpen, kStatePermanent); }

// "2026-Q3    (01.07.2026 - 30.09.2026)".
std::string NumberedPeriodText(OleDate from, OleDate to, const char* letter, int number) {
  return std::to_string(from.Year()) + "-" + letter + std::to_string(number) + "    (" +
         ShortDate(Variant(from)) + " - " + ShortDate(Variant(to)) + ")";
}

}  // namespace

Periods2::Periods2() {
  store::Database& database = CurrentDatabase();
  UpdatePeriods2Table(database);
  table_ = database.OpenRecordset("Periods2", store::dbOpenTable);
  table_->Index("DateFrom");
  Normalise();
}

Periods2::~Periods2() {
  periods_.Clear();
  try {
    table_->Close();
  } catch (const Error&) {
    // the database may already be gone at the end of the object's life
  }
}

// ---- Normalisation ----

void Periods2::Normalise() {
  DeleteRowsOutsideTheYear();
  // A year always has a period that starts on its first day; Add normalises again.
  table_->Seek("=", Variant(YearBeginn()));
  if (table_->NoMatch()) {
    Add(YearBeginn());
    return;
  }
  DeriveDateTo();
  RebuildCollection();
}

void Periods2::DeleteRowsOutsideTheYear() {
  if (table_->RecordCount() == 0) return;
  for (table_->MoveFirst(); !table_->Eof(); table_->MoveNext()) {
    if (!InYear(CurrentDateFrom())) table_->Delete();
  }
}

// From the last period backwards, each ends the day before its successor starts.
void Periods2::DeriveDateTo() {
  OleDate next_start = DayAfter(YearEndDate());
  for (table_->MoveLast(); !table_->Bof(); table_->MovePrevious()) {
    table_->Edit();
    table_->Value("DateTo", Variant(DayBefore(next_start)));
    table_->Update();
    next_start = CurrentDateFrom();
  }
}

void Periods2::RebuildCollection() {
  periods_.Clear();
  if (table_->RecordCount() == 0) return;
  for (table_->MoveFirst(); !table_->Eof(); table_->MoveNext()) {
    const OleDate date_from = CurrentDateFrom();
    periods_.Add(KeyOf(date_from), date_from);
  }
}

// ---- Locating ----

bool Periods2::DateOf(const Variant& index_or_date, OleDate& date) const {
  if (IsDate(index_or_date)) {
    date = CDate(index_or_date);
    return true;
  }
  int32_t position = 0;
  try {
    position = CLng(index_or_date);
  } catch (const Error&) {
    return false;  // a value that is neither a date nor a number names no period
  }
  if (position < 1 || position > Count()) return false;
  date = periods_.Item(position);
  return true;
}

// The period is the row with the greatest DateFrom not after the date: the row
// before the first one that starts later, or the last row when none does.
bool Periods2::Locate(const Variant& index_or_date) {
  OleDate date;
  if (!DateOf(index_or_date, date) || !InYear(date)) return false;
  table_->Seek(">", Variant(date));
  table_->MovePrevious();
  return !table_->Bof() && !table_->Eof();
}

int32_t Periods2::CurrentState() const { return Clamped(ReadLong(*table_, "LockingState")); }
OleDate Periods2::CurrentDateFrom() const { return ReadDate(*table_, "DateFrom"); }
OleDate Periods2::CurrentDateTo() const { return ReadDate(*table_, "DateTo"); }

// ---- Reading members ----

std::string Periods2::Text(const Variant& index_or_date) {
  if (!Locate(index_or_date)) return "";
  const OleDate from = CurrentDateFrom();
  const OleDate to = CurrentDateTo();
  if (from == YearStart(from) && to == YearEnd(from)) return YearName(static_cast<int16_t>(from.Year()));
  if (from == SemesterStart(from) && to == SemesterEnd(from)) {
    return NumberedPeriodText(from, to, "S", from.Month() <= 6 ? 1 : 2);
  }
  if (from == QuarterStart(from) && to == QuarterEnd(from)) {
    return NumberedPeriodText(from, to, "Q", (from.Month() - 1) / 3 + 1);
  }
  if (from == MonthStart(from) && to == MonthEnd(from)) return MonthPeriodName(from);
  return DateRangeText(Variant(from), Variant(to));
}

int32_t Periods2::LockingState(const Variant& index_or_date) {
  if (const std::optional<int32_t> known = KnownState(index_or_date)) return *known;
  if (!Locate(index_or_date)) return kStatePermanent;
  return CurrentState();
}

// Posting asks for the lock of every entry's date: inside a transaction the
// states are read once and kept while the table stays unchanged. The answer is
// the one Locate gives: the row before the first that starts after the date,
// or the last row when none does.
std::optional<int32_t> Periods2::KnownState(const Variant& index_or_date) {
  const uint64_t version = table_->TableVersion();
  if (version == 0) return std::nullopt;
  OleDate date;
  if (!DateOf(index_or_date, date) || !InYear(date)) return kStatePermanent;
  if (version != states_version_) ReadStates(version);
  if (states_.empty()) return std::nullopt;
  auto later = std::find_if(states_.begin(), states_.end(), [&](const KnownPeriod& period) {
    return period.has_start && period.start > date;
  });
  if (later == states_.begin()) return kStatePermanent;
  return std::prev(later)->state;
}

void Periods2::ReadStates(uint64_t version) {
  states_.clear();
  states_version_ = 0;
  if (table_->RecordCount() == 0) return;
  for (table_->MoveFirst(); !table_->Eof(); table_->MoveNext()) {
    const Variant start = table_->Value("DateFrom");
    states_.push_back(KnownPeriod{!start.IsNull(), ReadDate(start), CurrentState()});
  }
  states_version_ = version;
}

bool Periods2::Locked(const Variant& index_or_date) { return LockingState(index_or_date) >= kStateLocked; }

bool Periods2::Permanent(const Variant& index_or_date) {
  return LockingState(index_or_date) == kStatePermanent;
}

OleDate Periods2::DateFrom(const Variant& index_or_date) {
  if (!Locate(index_or_date)) return OleDate();
  return CurrentDateFrom();
}

OleDate Periods2::DateTo(const Variant& index_or_date) {
  if (!Locate(index_or_date)) return OleDate();
  return CurrentDateTo();
}

std::string Periods2::Key(const Variant& index_or_date) {
  if (!Locate(index_or_date)) return "";
  return KeyOf(CurrentDateFrom());
}

// ---- Lock changes ----

void Periods2::LockingState(const Variant& index_or_date, int32_t value) {
  if (!Locate(index_or_date)) return;
  if (CurrentState() == kStatePermanent) return;
  table_->Edit();
  table_->Value("LockingState", Variant(Clamped(value)));
  table_->Update();
}

void Periods2::Locked(const Variant& index_or_date, bool value) {
  LockingState(index_or_date, value ? kStateLocked : kStateOpen);
}

void Periods2::Permanent(const Variant& index_or_date, bool value) {
  if (value) LockingState(index_or_date, kStatePermanent);
}

bool Periods2::CheckUnlock() {
  if (table_->RecordCount() == 0) return true;
  for (table_->MoveFirst(); !table_->Eof(); table_->MoveNext()) {
    if (ReadLong(*table_, "LockingState") > kStateOpen) return false;
  }
  return true;
}

// ---- Structural changes ----

// Deliberately no lock test: a new start inside a locked period gives an open period (pinned by a test).
bool Periods2::Add(OleDate date_from) {
  if (!InYear(date_from)) return false;
  try {
    table_->Seek("=", Variant(date_from));
    if (!table_->NoMatch()) return false;
    table_->AddNew();
    table_->Value("DateFrom", Variant(date_from));
    table_->Update();
  } catch (const Error&) {
    if (table_->EditMode() != 0) table_->CancelUpdate();
    return false;
  }
  Normalise();
  return true;
}

bool Periods2::Remove(const Variant& index_or_date) {
  if (!Locate(index_or_date)) return false;
  if (CurrentDateFrom() == YearBeginn()) return false;
  if (CurrentState() >= kStateLocked) return false;
  table_->Delete();
  Normalise();
  return true;
}

void Periods2::Reset() {
  if (table_->RecordCount() > 0) {
    for (table_->MoveLast(); !table_->Bof(); table_->MovePrevious()) table_->Delete();
  }
  Add(YearBeginn());
  Normalise();
}

void Periods2::SetSteps(OleDate first_start, int months_step) {
  Reset();
  for (OleDate start = first_start; start <= YearEndDate(); start = DateAdd("m", months_step, start)) {
    Add(start);
  }
}

bool Periods2::SetYear() {
  if (!CheckUnlock()) return false;
  Reset();
  return true;
}

bool Periods2::SetMonth() {
  if (!CheckUnlock()) return false;
  SetSteps(YearBeginn(), 1);
  return true;
}

bool Periods2::SetQuarter() {
  if (!CheckUnlock()) return false;
  SetSteps(DayAfter(QuarterEnd(YearBeginn())), 3);
  return true;
}

bool Periods2::SetSemester() {
  if (!CheckUnlock()) return false;
  SetSteps(DayAfter(SemesterEnd(YearBeginn())), 6);
  return true;
}

}  // namespace ldg
