#include "bookkeeping/journal.hpp"

#include <string>

#include "bookkeeping/book_entries.hpp"
#include "bookkeeping/book_entry.hpp"
#include "engine/current_objects.hpp"
#include "engine/engine.hpp"
#include "engine/engine_state.hpp"
#include "store/constants.hpp"
#include "store/database.hpp"
#include "store/store_error.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/messages.hpp"
#include "support/nullable.hpp"
#include "support/sql_text.hpp"

namespace ldg {
namespace {

constexpr int32_t kMsgJournalLockedLock = 1153;
constexpr int32_t kMsgJournalAlreadyUnlocked = 1155;
constexpr int32_t kMsgJournalAlreadyPermanentlyLocked = 1156;
constexpr int32_t kMsgJournalDuplicate = 1151;
constexpr int32_t kMsgUnlockedEntriesFound = 1177;
// The update path reports a duplicate under this number with the text of 1151, so that
// Journals.Add, which retries on the insert's number only, doesn't retry on it.
constexpr int32_t kErrJournalDuplicateOnUpdate = static_cast<int32_t>(0x80040469u);

bool SameName(const Variant& a, const Variant& b) {
  if (a.IsNull() || b.IsNull()) return a.IsNull() && b.IsNull();
  return CStr(a) == CStr(b);
}

}  // namespace

void Journal::Code(const Variant& value) { code_ = CLng(value); }

void Journal::ChangeLock(int32_t how) {
  switch (how) {
    case lgrJLMLock:
      // Deliberate: a merely locked journal reports the text of a permanent lock (pinned by a test).
      if (locked_) RaiseMessage(kMsgJournalLockedLock);
      locked_ = true;
      UpdateStored();
      break;
    case lgrJLMUnlock:
      // Deliberate: LockedPermanently isn't consulted, the two flags are independent (pinned by a test).
      if (!locked_) RaiseMessage(kMsgJournalAlreadyUnlocked);
      locked_ = false;
      UpdateStored();
      break;
    case lgrJLMLockPermanently:
      if (locked_permanently_) RaiseMessage(kMsgJournalAlreadyPermanentlyLocked);
      CheckAllEntriesDefinitive();
      locked_permanently_ = true;
      UpdateStored();
      break;
    default:
      break;
  }
}

void Journal::Update() {
  if (id_ == 0) {
    Insert();
  } else {
    UpdateStored();
  }
}

void Journal::Append(BookEntry& entry) const { entry.AppendEntry(id_); }

void Journal::Delete(int32_t book_entry_id) const {
  Engine* engine = State().engine;
  if (engine == nullptr || !engine->BookEntries()) RaiseRuntime(kErrObjectNotSet);
  engine->BookEntries()->Delete(book_entry_id);
}

std::shared_ptr<BookEntry> Journal::Item(int32_t /*book_entry_id*/) const { return nullptr; }

void Journal::LoadRecord(const Record& record) {
  id_ = ReadLong(record, "ID");
  code_ = ReadLong(record, "Code");
  name_ = record.Value("Name");
  locked_ = ReadBoolean(record, "Locked");
  locked_permanently_ = ReadBoolean(record, "LockedPermanently");
  TakeStoredCopy();
}

void Journal::DeleteRecord() const {
  try {
    CurrentDatabase().Execute("Delete From Journals WHERE (Journals.ID=" + std::to_string(id_) + ")",
                              store::dbFailOnError);
  } catch (const Error& error) {
    RaiseError(error.Number(), error.Description());
  }
}

void Journal::Insert() {
  try {
    auto table = CurrentDatabase().OpenRecordset("Journals", store::dbOpenTable);
    table->Index("PrimaryKey");
    table->AddNew();
    table->Value("Code", Variant(code_));
    table->Value("Name", name_);
    table->Value("Locked", Variant(locked_));
    table->Value("LockedPermanently", Variant(locked_permanently_));
    id_ = ReadLong(table->Value("ID"));
    table->Update();
    table->Close();
  } catch (const Error& error) {
    id_ = 0;
    if (error.Number() == store::kErrDuplicate) RaiseMessage(kMsgJournalDuplicate);
    RaiseError(error.Number(), error.Description());
  }
  TakeStoredCopy();
}

void Journal::UpdateStored() {
  try {
    const std::string set = UpdateSet();
    if (!set.empty()) {
      CurrentDatabase().Execute(
          "UPDATE Journals SET " + set + " WHERE (Journals.ID=" + std::to_string(id_) + ")",
          store::dbFailOnError);
    }
  } catch (const Error& error) {
    code_ = stored_code_;
    name_ = stored_name_;
    locked_ = stored_locked_;
    // Deliberate: LockedPermanently keeps the value that failed to be written (pinned by a test).
    if (error.Number() == store::kErrDuplicate) {
      RaiseError(kErrJournalDuplicateOnUpdate, MessageText(kMsgJournalDuplicate));
    }
    RaiseError(error.Number(), error.Description());
  }
  TakeStoredCopy();
}

// The pieces that differ from the stored copy. The name goes between quotes as it is, so a name
// holding a quote can't be written this way: the statement is refused before it runs.
std::string Journal::UpdateSet() const {
  std::string set;
  if (code_ != stored_code_) AppendAssignment(set, "Code=" + std::to_string(code_));
  if (!SameName(name_, stored_name_)) {
    const std::string name = PastedText(name_);
    store::RefuseQuote(name);
    AppendAssignment(set, "Name='" + name + "'");
  }
  if (locked_ != stored_locked_) AppendAssignment(set, std::string("Locked=") + BooleanToSqlText(locked_));
  if (locked_permanently_ != stored_locked_permanently_) {
    AppendAssignment(set, std::string("LockedPermanently=") + BooleanToSqlText(locked_permanently_));
  }
  return set;
}

void Journal::CheckAllEntriesDefinitive() const {
  auto entries = CurrentDatabase().OpenRecordset(
      "SELECT BookEntries.* FROM BookEntries WHERE (Definitive Is Null) AND (JournalID=" +
          std::to_string(id_) + ");",
      store::dbOpenSnapshot);
  const bool open_entries = !entries->Eof();
  entries->Close();
  if (open_entries) RaiseMessage(kMsgUnlockedEntriesFound);
}

void Journal::TakeStoredCopy() {
  stored_code_ = code_;
  stored_name_ = name_;
  stored_locked_ = locked_;
  stored_locked_permanently_ = locked_permanently_;
}

}  // namespace ldg
