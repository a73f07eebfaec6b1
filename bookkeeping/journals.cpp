#include "bookkeeping/journals.hpp"

#include <string>

#include "engine/current_objects.hpp"
#include "store/constants.hpp"
#include "store/database.hpp"
#include "store/store_error.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/keys.hpp"
#include "support/messages.hpp"
#include "support/nullable.hpp"
#include "support/sql_text.hpp"

namespace ldg {
namespace {

constexpr int32_t kMsgNoJournalWithID = 1150;
constexpr int32_t kErrJournalDuplicate = MessageNumber(1151);

// The name tried at a given attempt: as given at 0, else followed by " (n)".
Variant NameOfAttempt(const Variant& name, int32_t counter) {
  if (counter == 0) return name;
  const std::string text = name.IsNull() ? std::string() : CStr(name);
  return Variant(text + " (" + std::to_string(counter) + ")");
}

}  // namespace

Journals::Journals() {
  auto rows = CurrentDatabase().OpenRecordset("viewJournals", store::dbOpenSnapshot);
  for (; !rows->Eof(); rows->MoveNext()) {
    auto journal = std::make_shared<Journal>();
    journal->LoadRecord(*rows);
    AddItem(journal);
  }
  rows->Close();
}

// The number of attempts isn't limited: every duplicate of the insert tries the next number.
std::shared_ptr<Journal> Journals::Add(const Variant& name) {
  auto journal = std::make_shared<Journal>();
  for (int32_t counter = 0;; ++counter) {
    journal->Code(Variant(counter));
    journal->Name(NameOfAttempt(name, counter));
    try {
      journal->Update();
      break;
    } catch (const Error& error) {
      if (error.Number() != kErrJournalDuplicate) RaiseError(error.Number(), error.Description());
    }
  }
  AddItem(journal);
  return journal;
}

std::shared_ptr<Journal> Journals::Item(const Variant& index_or_key) const {
  if (const std::optional<int32_t> id = TryKeyToID(index_or_key)) return ItemByKey(*id);
  return items_.Item(CLng(index_or_key));
}

void Journals::Remove(const Variant& index_or_key) { Item(index_or_key)->DeleteRecord(); }

// A code that is no number can't be pasted into the statement without changing it, so it is
// refused as the statement would be.
int32_t Journals::IDByCode(const Variant& code) const {
  if (!IsNumeric(code)) store::RaiseStore(store::kErrSyntax);
  auto rows = CurrentDatabase().OpenRecordset(
      "SELECT * FROM Journals WHERE (Code=" + DoubleToSqlText(CDbl(code)) + ");", store::dbOpenSnapshot);
  const int32_t id = rows->Eof() ? 0 : ReadLong(*rows, "ID");
  rows->Close();
  return id;
}

void Journals::AddItem(const std::shared_ptr<Journal>& journal) {
  items_.Add(CStr(BuildKey(journal->ID())), journal);
}

std::shared_ptr<Journal> Journals::ItemByKey(int32_t id) const {
  const auto* journal = items_.Find(CStr(BuildKey(id)));
  if (journal == nullptr) RaiseMessage(kMsgNoJournalWithID, Variant(id));
  return *journal;
}

}  // namespace ldg
