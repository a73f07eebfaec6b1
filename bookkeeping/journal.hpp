// Journal: a named, numbered group of book entries. It carries two lock flags:
// Locked stops new postings into the journal, LockedPermanently marks that all
// of its entries are definitive. The two flags are independent of each other,
// and only ChangeLock changes them.
//
// A journal is new while its ID is 0 and stored afterwards. It keeps a stored
// copy of the values last read from or written to the database; Update inserts
// a new journal through a table-type record set and writes only what differs
// from that copy for a stored one. Nothing here opens a transaction: the
// caller's transaction, if any, covers each write. Every statement runs on the
// engine's current database.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "support/record.hpp"
#include "support/variant.hpp"

namespace ldg {

class BookEntry;

enum JournalLockModes : int32_t {
  lgrJLMLock = 1,
  lgrJLMUnlock = 2,
  lgrJLMLockPermanently = 3,
};

// The code of the journal that receives the entries the system itself creates.
inline constexpr int32_t kSystemJournalCode = 9999999;

class Journal {
 public:
  Journal() = default;
  Journal(const Journal&) = delete;
  Journal& operator=(const Journal&) = delete;

  int32_t ID() const { return id_; }
  Variant Code() const { return Variant(code_); }
  // Stores the value converted to Long.
  void Code(const Variant& value);
  Variant Name() const { return name_; }
  void Name(const Variant& value) { name_ = value; }
  // Read only: a Boolean Variant.
  Variant Locked() const { return Variant(locked_); }
  Variant LockedPermanently() const { return Variant(locked_permanently_); }

  // Locks, unlocks or locks permanently (JournalLockModes); any other value does nothing.
  void ChangeLock(int32_t how);
  // ID 0 inserts; otherwise writes what differs from the stored copy, and nothing when all is equal.
  void Update();
  // Posts the book entry into this journal: the entry's append with this journal's ID.
  void Append(BookEntry& entry) const;
  // Forwards to the engine's BookEntries::Delete, whatever journal the entry belongs to.
  void Delete(int32_t book_entry_id) const;
  // Deliberately a stub: returns no book entry for any ID (pinned by a test).
  std::shared_ptr<BookEntry> Item(int32_t book_entry_id) const;

 private:
  friend class Journals;

  // Reads ID, Code, Name, Locked and LockedPermanently, then takes the stored copy.
  void LoadRecord(const Record& record);
  // Deletes the journal's row; the relations of the database decide whether it may go.
  void DeleteRecord() const;

  void Insert();
  void UpdateStored();
  std::string UpdateSet() const;
  void CheckAllEntriesDefinitive() const;
  void TakeStoredCopy();

  int32_t id_ = 0;
  int32_t code_ = 0;
  Variant name_;
  bool locked_ = false;
  bool locked_permanently_ = false;

  int32_t stored_code_ = 0;
  Variant stored_name_;
  bool stored_locked_ = false;
  bool stored_locked_permanently_ = false;
};

}  // namespace ldg
