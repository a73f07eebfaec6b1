#include "bookkeeping/book_entry.hpp"

#include <algorithm>
#include <string>
#include <string_view>

#include "bookkeeping/book_entries.hpp"
#include "bookkeeping/book_entry_dump.hpp"
#include "bookkeeping/journal.hpp"
#include "bookkeeping/journals.hpp"
#include "bookkeeping/periods2.hpp"
#include "bookkeeping/posting_handles.hpp"
#include "engine/current_objects.hpp"
#include "engine/engine.hpp"
#include "store/constants.hpp"
#include "store/store_error.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/keys.hpp"
#include "support/messages.hpp"
#include "support/nullable.hpp"
#include "support/sql_text.hpp"
#include "support/text.hpp"

namespace ldg {
namespace {

constexpr int32_t kMsgUpdateOfNewEntry = 1164;
constexpr int32_t kMsgAppendOfStoredEntry = 1165;
constexpr int32_t kMsgJournalNotFound = 1166;
constexpr int32_t kMsgInvalidEntryDate = 1167;
constexpr int32_t kMsgDateNotInYear = 1168;
constexpr int32_t kMsgJournalLocked = 1169;
constexpr int32_t kMsgPermanentlyLocked = 1170;
constexpr int32_t kMsgNoEntryWithID = 1204;
constexpr int32_t kMsgDefinitiveNotDeletable = 1206;
constexpr int32_t kMsgDeleteOfNewEntry = 1207;
constexpr int32_t kMsgDefinitiveCannotBeUndone = 1219;
// A locked period is reported under the number of 1227 with a text of its own.
constexpr int32_t kErrPeriodLocked = MessageNumber(1227);
constexpr const char* kPeriodLockedText = "Periode ist gesperrt!";
constexpr size_t kDocumentIDDigits = std::string_view(kNumericDocumentIDFormat).size();

bool IsDigits(const std::string& text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

// A number, or a text of digits only, is a numeric document number.
bool IsNumericDocumentID(const Variant& value) {
  if (value.IsNumber()) return true;
  return value.Type() == VarType::kString && IsDigits(value.AsString());
}

// Null stays Null; a numeric value becomes its fourteen-digit text; "" becomes Null.
Variant StoredDocumentID(const Variant& value) {
  if (value.IsNull() || value.IsEmpty()) return Variant::Null();
  if (IsNumericDocumentID(value)) {
    if (value.IsNumber()) return Variant(Format(value, kNumericDocumentIDFormat));
    const std::string& digits = value.AsString();
    if (digits.size() >= kDocumentIDDigits) return value;
    return Variant(std::string(kDocumentIDDigits - digits.size(), '0') + digits);
  }
  if (CStr(value).empty()) return Variant::Null();
  return value;
}

// Whether two values of a Variant member differ, as the dirty check sees them.
bool Differs(const Variant& a, const Variant& b) {
  const bool a_missing = a.IsNull() || a.IsEmpty();
  const bool b_missing = b.IsNull() || b.IsEmpty();
  if (a_missing || b_missing) return a_missing != b_missing;
  if (a.Type() == b.Type()) return !(a == b);
  if (IsDate(a) && IsDate(b)) return CDate(a) != CDate(b);
  return CStr(a) != CStr(b);
}

// "<field> = '<text>'", or "<field> = NULL" for "": the text goes between quotes as it is.
std::string QuotedPiece(const std::string& field, const Variant& value) {
  const std::string text = PastedText(value);
  if (text.empty()) return field + " = NULL";
  return field + " = '" + text + "'";
}

void RefuseQuotedText(const Variant& value) { store::RefuseQuote(PastedText(value)); }

}  // namespace

BookEntry::BookEntry() : movements_(std::make_unique<ldg::Movements>()) { movements_->SetBookEntry(this); }

BookEntry::~BookEntry() { Tini(); }

void BookEntry::Tini() {
  if (!movements_) return;
  movements_->Tini();
  movements_->ClearBookEntry();
}

void BookEntry::DocumentID(const Variant& value) {
  current_.document_id = value;
  is_system_ = !value.IsNull() && !value.IsEmpty() && LCase(CStr(value)) == "system";
}

void BookEntry::Definitive(bool value) {
  if (current_.definitive_key != 0) {
    if (!value) RaiseMessage(kMsgDefinitiveCannotBeUndone);
    return;
  }
  current_.definitive_key = value ? -1 : 0;
}

bool BookEntry::Mark(int32_t index) const {
  if (index < 1 || index > 6) RaiseRuntime(kErrSubscript);
  return current_.marks[static_cast<size_t>(index - 1)];
}

void BookEntry::Mark(int32_t index, bool value) {
  if (index < 1 || index > 6) RaiseRuntime(kErrSubscript);
  current_.marks[static_cast<size_t>(index - 1)] = value;
}

bool BookEntry::TaxAutomatismActive() const { return movements_->TaxAutomatism(); }
void BookEntry::TaxAutomatismActive(bool value) { movements_->SetTaxAutomatism(value); }
bool BookEntry::BalancingAutomatismActive() const { return movements_->BalancingAutomatism(); }
void BookEntry::BalancingAutomatismActive(bool value) { movements_->SetBalancingAutomatism(value); }

void BookEntry::AppendEntry(int32_t journal_id) {
  if (journal_id != 0) current_.journal_id = journal_id;
  if (current_.id != 0) RaiseMessage(kMsgAppendOfStoredEntry);
  Validate();
  store::Workspace& workspace = CurrentWorkspace();
  workspace.BeginTrans();
  try {
    ExecuteAppend();
    movements_->AppendAll();
    // Deliberate: a definitive request (-1) goes into the stored copy too, so
    // that this object's next Update fails its validation (pinned by a test).
    TakeStoredCopy();
    movements_->TakeStoredCopies();
    workspace.CommitTrans();
  } catch (const Error& error) {
    current_.id = 0;
    movements_->ClearIDs();
    RollbackAndRaise(error);
  }
}

void BookEntry::Update() {
  if (current_.id == 0) RaiseMessage(kMsgUpdateOfNewEntry);
  Validate();
  RefuseQuotesInChangedTexts();
  store::Workspace& workspace = CurrentWorkspace();
  workspace.BeginTrans();
  try {
    if (current_.definitive_key == -1) MakeDefinitiveRun();
    ExecuteUpdate();
    movements_->UpdateAll();
    TakeStoredCopy();
    movements_->TakeStoredCopies();
    workspace.CommitTrans();
  } catch (const Error& error) {
    // Unlike the append path nothing is reset: the object keeps the failed state.
    RollbackAndRaise(error);
  }
  // No later update can reach this again: validation refuses a definitive entry.
  if (current_.definitive_key > 0) CurrentEngine().NotifyCallback(Variant(current_.definitive_number));
}

void BookEntry::MakeDefinitiveRun() {
  Engine& engine = CurrentEngine();
  if (!engine.BookEntries()) RaiseRuntime(kErrObjectNotSet);
  const std::shared_ptr<DefinitiveSet> set =
      engine.BookEntries()->DefinitiveSets()->Add(DefinitiveRunDate(), DefinitiveRunUser());
  current_.definitive_key = set->ID();
  current_.definitive_number = set->Number();
}

void BookEntry::Validate() {
  if (stored_.definitive_key != 0) RaiseMessage(kMsgPermanentlyLocked);
  Engine& engine = CurrentEngine();
  std::shared_ptr<Journal> journal;
  try {
    if (!engine.Journals()) RaiseRuntime(kErrObjectNotSet);
    journal = engine.Journals()->Item(BuildKey(current_.journal_id));
  } catch (const Error&) {
    RaiseMessage(kMsgJournalNotFound);
  }
  if (!journal) RaiseMessage(kMsgJournalNotFound);
  if (CBool(journal->Locked())) RaiseMessage(kMsgJournalLocked);
  if (!IsDate(current_.entry_date)) RaiseMessage(kMsgInvalidEntryDate);
  const OleDate day = DateValue(current_.entry_date);
  if (day < DateValue(engine.YearBeginn()) || day > DateValue(engine.YearEnd())) {
    RaiseMessage(kMsgDateNotInYear);
  }
  if (!engine.Periods2()) RaiseRuntime(kErrObjectNotSet);
  if (engine.Periods2()->Locked(current_.entry_date)) RaiseError(kErrPeriodLocked, kPeriodLockedText);
  movements_->Validate();
}

void BookEntry::ExecuteAppend() {
  store::Recordset& table = SharedBookEntriesTable();
  table.AddNew();
  current_.id = ReadLong(table.Value("ID"));
  table.Value("JournalID", Variant(current_.journal_id));
  table.Value("Date", current_.entry_date);
  table.Value("DocumentID", StoredDocumentID(current_.document_id));
  table.Value("Tag", PastedText(current_.tag).empty() ? Variant::Null() : current_.tag);
  // A request (-1) isn't stored by an append.
  table.Value("Definitive",
              current_.definitive_key >= 1 ? Variant(current_.definitive_key) : Variant::Null());
  table.Value("Marked", Variant(current_.marked));
  table.Value("Automatic", Variant(current_.automatic));
  table.Value("Infotext", current_.infotext.empty() ? Variant::Null() : Variant(current_.infotext));
  table.Value("ClientID", Variant(current_.client_id));
  table.Value("Tags", tags_.empty() ? Variant::Null() : Variant(tags_));
  for (int i = 0; i < 6; ++i) {
    table.Value("Mark" + std::to_string(i + 1), Variant(current_.marks[static_cast<size_t>(i)]));
  }
  table.Update();
}

void BookEntry::ExecuteUpdate() {
  const std::string set = GetUpdateSet();
  if (set.empty()) return;
  CurrentDatabase().Execute(
      "UPDATE BookEntries SET " + set + " WHERE (ID=" + std::to_string(current_.id) + ");",
      store::dbFailOnError);
}

std::string BookEntry::GetUpdateSet() {
  const Values& c = current_;
  const Values& s = stored_;
  std::string set;
  if (c.journal_id != s.journal_id) AppendAssignment(set, "JournalID = " + std::to_string(c.journal_id));
  if (Differs(c.entry_date, s.entry_date)) {
    AppendAssignment(
        set, "BookEntries.Date = " + (IsDate(c.entry_date) ? CStr(DateLiteral(c.entry_date)) : "NULL"));
  }
  if (IsNumericDocumentID(current_.document_id))
    current_.document_id = StoredDocumentID(current_.document_id);
  if (Differs(c.document_id, s.document_id)) {
    RefuseQuotedText(c.document_id);
    AppendAssignment(set, QuotedPiece("DocumentID", c.document_id));
  }
  if (Differs(c.tag, s.tag)) {
    RefuseQuotedText(c.tag);
    AppendAssignment(set, QuotedPiece("Tag", c.tag));
  }
  if (c.definitive_key != s.definitive_key)
    AppendAssignment(set, "Definitive = " + std::to_string(c.definitive_key));
  if (c.definitive_number != s.definitive_number) {
    AppendAssignment(set, "DefinitiveJournal = " + std::to_string(c.definitive_number));
  }
  for (size_t i = 0; i < c.marks.size(); ++i) {
    if (c.marks[i] != s.marks[i]) {
      AppendAssignment(set, "Mark" + std::to_string(i + 1) + " = " + BooleanToSqlText(c.marks[i]));
    }
  }
  if (c.marked != s.marked) AppendAssignment(set, std::string("Marked = ") + BooleanToSqlText(c.marked));
  if (c.automatic != s.automatic)
    AppendAssignment(set, std::string("Automatic = ") + BooleanToSqlText(c.automatic));
  if (c.infotext != s.infotext) {
    store::RefuseQuote(c.infotext);
    AppendAssignment(set, QuotedPiece("InfoText", Variant(c.infotext)));
  }
  if (c.client_id != s.client_id) {
    // Deliberate: the ClientID piece replaces everything built before it (pinned by a test).
    set = "ClientID = " + (c.client_id == 0 ? std::string("NULL") : std::to_string(c.client_id));
  }
  return set;
}

// The texts that GetUpdateSet would paste between quotes, checked before the
// transaction opens so that a refused text leaves everything as it was.
void BookEntry::RefuseQuotesInChangedTexts() const {
  const Values& c = current_;
  const Values& s = stored_;
  if (Differs(c.document_id, s.document_id)) RefuseQuotedText(c.document_id);
  if (Differs(c.tag, s.tag)) RefuseQuotedText(c.tag);
  if (c.infotext != s.infotext) store::RefuseQuote(c.infotext);
}

void BookEntry::Delete() {
  if (current_.id == 0) RaiseMessage(kMsgDeleteOfNewEntry);
  if (current_.definitive_key != 0) RaiseMessage(kMsgDefinitiveNotDeletable);
  store::Workspace& workspace = CurrentWorkspace();
  workspace.BeginTrans();
  try {
    movements_->DeleteAll();
    store::Recordset& table = SharedBookEntriesTable();
    table.Index("PrimaryKey");
    table.Seek("=", Variant(current_.id));
    if (!table.NoMatch()) table.Delete();
    workspace.CommitTrans();
  } catch (const Error& error) {
    RollbackAndRaise(error);
  }
  movements_->ReleaseRemoved();
}

std::string BookEntry::Dump() const { return DumpBookEntry(*this, *movements_); }

std::shared_ptr<BookEntry> BookEntry::FreshCopy() {
  if (current_.id == 0) return nullptr;
  Engine& engine = CurrentEngine();
  if (!engine.BookEntries()) RaiseRuntime(kErrObjectNotSet);
  std::shared_ptr<BookEntry> copy = engine.BookEntries()->Item(BuildKey(current_.id));
  copy->MakeNew();
  return copy;
}

std::shared_ptr<BookEntry> BookEntry::Copy() {
  std::shared_ptr<BookEntry> copy = FreshCopy();
  if (!copy) return nullptr;
  for (const auto& line : copy->Movements()) line->ClearID();
  return copy;
}

std::shared_ptr<BookEntry> BookEntry::Cancel() {
  std::shared_ptr<BookEntry> storno = FreshCopy();
  if (!storno) return nullptr;
  // The amounts are turned directly: the automatisms don't run on a storno.
  for (const auto& line : storno->Movements()) line->MakeStorno();
  return storno;
}

void BookEntry::AddListener(BookEntryEvents* listener) {
  if (listener && std::find(listeners_.begin(), listeners_.end(), listener) == listeners_.end()) {
    listeners_.push_back(listener);
  }
}

void BookEntry::RemoveListener(BookEntryEvents* listener) {
  listeners_.erase(std::remove(listeners_.begin(), listeners_.end(), listener), listeners_.end());
}

void BookEntry::RaiseAmountChanged(int32_t internal_id) {
  const std::vector<BookEntryEvents*> listeners = listeners_;
  for (BookEntryEvents* listener : listeners) listener->AmountChanged(internal_id);
}

void BookEntry::MakeNew() {
  current_.id = 0;
  current_.journal_id = 0;
  current_.definitive_key = 0;
  TakeStoredCopy();
}

void BookEntry::Load(int32_t id) {
  store::Recordset& table = SharedBookEntriesTable();
  if (table.Index() != "PrimaryKey") table.Index("PrimaryKey");
  table.Seek("=", Variant(id));
  if (table.NoMatch()) RaiseMessage(kMsgNoEntryWithID);
  current_.id = ReadLong(table, "ID");
  current_.journal_id = ReadLong(table, "JournalID");
  current_.entry_date = table.Value("Date");
  DocumentID(table.Value("DocumentID"));
  current_.tag = table.Value("Tag");
  current_.definitive_key = ReadLong(table, "Definitive");
  current_.definitive_number = ReadLong(table, "DefinitiveJournal");
  current_.marked = ReadBoolean(table, "Marked");
  current_.automatic = ReadBoolean(table, "Automatic");
  current_.infotext = ReadString(table, "Infotext");
  current_.client_id = ReadLong(table, "ClientID");
  tags_ = ReadString(table, "Tags");
  for (size_t i = 0; i < current_.marks.size(); ++i) {
    current_.marks[i] = ReadBoolean(table, "Mark" + std::to_string(i + 1));
  }
  movements_->LoadFromDatabase(current_.id);
  TakeStoredCopy();
}

}  // namespace ldg
