#include "cli/entry_poster.hpp"

#include <algorithm>
#include <memory>

#include "accounts/account.hpp"
#include "accounts/accounts.hpp"
#include "bookkeeping/book_entries.hpp"
#include "bookkeeping/book_entry.hpp"
#include "bookkeeping/journals.hpp"
#include "bookkeeping/movements.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/text.hpp"
#include "support/variant.hpp"

namespace ldg::cli {

namespace {

bool IsDigits(const std::string& text) {
  return !text.empty() && text.size() <= 9 &&
         std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

int32_t JournalIDByName(const Journals& journals, const std::string& name) {
  for (const auto& journal : journals) {
    if (CStr(journal->Name()) == name) return journal->ID();
  }
  return 0;
}

}  // namespace

int32_t EntryPoster::Post(const EntryDraft& draft) {
  BookEntry entry;
  entry.JournalID(JournalID(draft.journal));
  entry.EntryDate(Variant(draft.date));
  if (!draft.document.empty()) entry.DocumentID(Variant(draft.document));
  for (const DraftLine& line : draft.lines) {
    NewMovement values;
    values.account_id = AccountID(line.account);
    values.amount = line.amount;
    if (!line.text.empty()) values.text = Variant(line.text);
    entry.Movements().Add(values);
  }
  // The entry releases its lines when it goes, after a failure too.
  engine_.BookEntries()->Append(entry);
  return entry.ID();
}

int32_t EntryPoster::JournalID(const std::string& journal) {
  const auto known = journal_ids_.find(journal);
  if (known != journal_ids_.end()) return known->second;
  const Journals& journals = *engine_.Journals();
  int32_t id = IsDigits(journal) ? journals.IDByCode(Variant(static_cast<int32_t>(std::stol(journal)))) : 0;
  if (id == 0) id = JournalIDByName(journals, journal);
  if (id == 0) throw Error(kErrInvalidCall, kAppTitle, "No journal has the code or name '" + journal + "'.");
  return journal_ids_[journal] = id;
}

int32_t EntryPoster::AccountID(const std::string& code) {
  const auto known = account_ids_.find(code);
  if (known != account_ids_.end()) return known->second;
  const std::shared_ptr<Account> account = code.empty() ? nullptr : engine_.Accounts()->Item(Variant(code));
  // Item reads the first word of the text: "1000 x" must not find 1000.
  if (!account || Trim(CStr(account->Code())) != code) {
    throw Error(kErrInvalidCall, kAppTitle, "No account has the code '" + code + "'.");
  }
  return account_ids_[code] = account->ID();
}

}  // namespace ldg::cli
