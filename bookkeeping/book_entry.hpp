// BookEntry: one posting document: a journal, an entry date, a document number
// and lines (Movements) that sum to zero. A new entry is built in memory and
// posted with BookEntries::Append or Journal::Append; a stored one is read with
// BookEntries::Item, changed and written with Update. Every write is one
// transaction of the workspace covering the entry row, all its lines and the
// stored balances of every account touched. A definitive entry can be neither
// changed nor deleted.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "bookkeeping/movements.hpp"
#include "support/variant.hpp"

namespace ldg {

// What an entry tells its listeners: the line whose amount changed as the
// result of a caller's change.
class BookEntryEvents {
 public:
  virtual ~BookEntryEvents() = default;
  virtual void AmountChanged(int32_t /*internal_id*/) {}
};

class BookEntry : public Object {
 public:
  BookEntry();
  ~BookEntry() override;
  BookEntry(const BookEntry&) = delete;
  BookEntry& operator=(const BookEntry&) = delete;

  std::string Tags() const { return tags_; }
  void Tags(std::string value) { tags_ = std::move(value); }
  // Breaks the cycle between the entry and its lines.
  void Tini();
  ldg::Movements& Movements() { return *movements_; }
  int32_t ID() const { return current_.id; }
  int32_t JournalID() const { return current_.journal_id; }
  void JournalID(int32_t value) { current_.journal_id = value; }
  Variant EntryDate() const { return current_.entry_date; }
  void EntryDate(const Variant& value) { current_.entry_date = value; }
  Variant DocumentID() const { return current_.document_id; }
  // Sets the system flag when the value, in lower case, is "system".
  void DocumentID(const Variant& value);
  Variant Tag() const { return current_.tag; }
  void Tag(const Variant& value) { current_.tag = value; }
  bool Definitive() const { return current_.definitive_key != 0; }
  // False on a definitive entry raises 1219; True on an open one is a request (-1).
  void Definitive(bool value);
  bool Marked() const { return current_.marked; }
  void Marked(bool value) { current_.marked = value; }
  // One-based, 1 to 6; error 9 outside.
  bool Mark(int32_t index) const;
  void Mark(int32_t index, bool value);
  bool Automatic() const { return current_.automatic; }
  std::string Infotext() const { return current_.infotext; }
  void Infotext(std::string value) { current_.infotext = std::move(value); }
  int32_t ClientID() const { return current_.client_id; }
  void ClientID(int32_t value) { current_.client_id = value; }
  bool TaxAutomatismActive() const;
  void TaxAutomatismActive(bool value);
  bool BalancingAutomatismActive() const;
  void BalancingAutomatismActive(bool value);
  void Update();
  void Validate();
  void ExecuteAppend();
  void ExecuteUpdate();
  // A change of ClientID replaces the pieces built before it (deliberate).
  std::string GetUpdateSet();
  void Delete();
  // Writes the entry and its lines to a CSV file in the temporary folder; returns its path.
  std::string Dump() const;
  // A new, unsaved entry read afresh from the database; null for a new entry.
  std::shared_ptr<BookEntry> Copy();
  // The storno: a new, unsaved entry whose lines reverse this one's.
  std::shared_ptr<BookEntry> Cancel();
  bool BalanceOnMovementAddition() const { return balance_on_movement_addition_; }
  void BalanceOnMovementAddition(bool value) { balance_on_movement_addition_ = value; }

  // Events: a listener stays registered until removed; the caller keeps it alive.
  void AddListener(BookEntryEvents* listener);
  void RemoveListener(BookEntryEvents* listener);
  void RaiseAmountChanged(int32_t internal_id);

  // For the engine's own classes.
  // The posting path of BookEntries::Append and Journal::Append; a journal
  // given here becomes the entry's journal.
  void AppendEntry(int32_t journal_id = 0);
  void MakeNew();
  void Load(int32_t id);
  bool IsSystem() const { return is_system_; }
  void IsSystem(bool value) { is_system_ = value; }
  int32_t DefinitiveKey() const { return current_.definitive_key; }
  int32_t DefinitiveNumber() const { return current_.definitive_number; }

 private:
  struct Values {
    int32_t id = 0;
    int32_t journal_id = 0;
    Variant entry_date;
    Variant document_id;
    Variant tag;
    int32_t definitive_key = 0;
    int32_t definitive_number = 0;
    std::array<bool, 6> marks{};
    bool marked = false;
    bool automatic = false;
    std::string infotext;
    int32_t client_id = 0;
  };

  void TakeStoredCopy() { stored_ = current_; }
  std::shared_ptr<BookEntry> FreshCopy();
  // Records a definitive run of this entry alone and takes its ID and Number.
  void MakeDefinitiveRun();
  // Store error 3075 when a changed text that the update pastes between quotes holds a quote.
  void RefuseQuotesInChangedTexts() const;

  Values current_;
  Values stored_;
  std::string tags_;
  bool is_system_ = false;
  bool balance_on_movement_addition_ = false;
  std::unique_ptr<ldg::Movements> movements_;
  std::vector<BookEntryEvents*> listeners_;
};

}  // namespace ldg
