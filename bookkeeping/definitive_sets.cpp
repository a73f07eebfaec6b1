#include "bookkeeping/definitive_sets.hpp"

#include <ctime>

#include "engine/current_objects.hpp"
#include "engine/engine.hpp"
#include "engine/engine_state.hpp"
#include "store/constants.hpp"
#include "store/database.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/keys.hpp"
#include "support/messages.hpp"
#include "support/nullable.hpp"
#include "support/text.hpp"

namespace ldg {
namespace {

constexpr int32_t kMsgDateOutOfYear = 1103;
constexpr int32_t kMsgNotADate = 1185;
constexpr int32_t kMsgNoDefinitiveSet = 1186;
// An unknown key is reported under the number of 1105 with the text of 1186.
constexpr int32_t kErrNoDefinitiveSet = MessageNumber(1105);

bool IsMissing(const Variant& value) {
  return value.IsEmpty() || value.IsNull() || (value.Type() == VarType::kString && value.AsString().empty());
}

Variant DateOrNull(const Variant& value) { return IsDate(value) ? Variant(CDate(value)) : Variant::Null(); }

int32_t NextNumber(store::Database& database) {
  auto rows =
      database.OpenRecordset("SELECT Max(Number) as MaxSetNr FROM DefinitiveSets;", store::dbOpenSnapshot);
  const int32_t highest = rows->Eof() ? 0 : ReadLong(*rows, "MaxSetNr");
  rows->Close();
  return highest + 1;
}

}  // namespace

OleDate DefinitiveRunDate() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return OleDate::FromYmd(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
}

std::string DefinitiveRunUser() {
  if (State().engine == nullptr) return std::string();
  const Variant user = State().engine->User();
  return user.IsNull() || user.IsEmpty() ? std::string() : CStr(user);
}

void DefinitiveSet::LoadFromRecord(const store::Recordset& record) {
  id_ = ReadLong(record, "ID");
  number_ = ReadLong(record, "Number");
  transaction_date_ = ReadDate(record, "Date");
  user_ = ReadString(record, "User");
  beginn_date_ = record.Value("Beginn");
  end_date_ = record.Value("End");
  excluded_journals_ = ReadString(record, "ExcludedJournals");
  users_entries_only_ = ReadBoolean(record, "UsersEntriesOnly");
}

DefinitiveSets::DefinitiveSets() { Refresh(); }

std::shared_ptr<DefinitiveSet> DefinitiveSets::Add(OleDate transaction_date, const std::string& user,
                                                   const Variant& date_beginn, const Variant& date_end,
                                                   const std::string& excluded_journals,
                                                   bool users_entries_only) {
  CheckSelectionDate(date_beginn);
  CheckSelectionDate(date_end);
  store::Database& database = CurrentDatabase();
  auto table = database.OpenRecordset("DefinitiveSets", store::dbOpenTable);
  table->AddNew();
  table->Value("Number", Variant(NextNumber(database)));
  table->Value("Date", Variant(transaction_date));
  table->Value("User", Variant(user));
  table->Value("Beginn", DateOrNull(date_beginn));
  table->Value("End", DateOrNull(date_end));
  table->Value("ExcludedJournals",
               Trim(excluded_journals).empty() ? Variant::Null() : Variant(excluded_journals));
  table->Value("UsersEntriesOnly", Variant(users_entries_only));
  table->Update();
  table->Bookmark(table->LastModified());
  auto set = std::make_shared<DefinitiveSet>();
  set->LoadFromRecord(*table);
  table->Close();
  sets_.push_back(set);
  return set;
}

void DefinitiveSets::CheckSelectionDate(const Variant& date) {
  if (IsMissing(date)) return;
  if (!IsDate(date)) RaiseMessage(kMsgNotADate);
  const OleDate day = DateValue(date);
  const Engine& engine = CurrentEngine();
  if (day < DateValue(engine.YearBeginn()) || day > DateValue(engine.YearEnd())) {
    RaiseMessage(kMsgDateOutOfYear);
  }
}

std::shared_ptr<DefinitiveSet> DefinitiveSets::Item(const Variant& index_or_key) const {
  const std::optional<int32_t> id = TryKeyToID(index_or_key);
  if (!id) return ItemAtPosition(sets_, index_or_key);
  for (const auto& set : sets_) {
    if (set->ID() == *id) return set;
  }
  // The text keeps its "%1": the fill only knows "1%".
  RaiseError(kErrNoDefinitiveSet, Fill1(MessageText(kMsgNoDefinitiveSet), Variant(*id)));
}

void DefinitiveSets::Refresh() {
  sets_.clear();
  auto rows =
      CurrentDatabase().OpenRecordset("SELECT * FROM DefinitiveSets ORDER BY ID;", store::dbOpenSnapshot);
  for (; !rows->Eof(); rows->MoveNext()) {
    auto set = std::make_shared<DefinitiveSet>();
    set->LoadFromRecord(*rows);
    sets_.push_back(set);
  }
  rows->Close();
}

}  // namespace ldg
