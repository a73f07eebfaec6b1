// Journals: the journals of the open database, as the engine hands them out.
// The collection is filled once, when it is created, from the view
// "viewJournals" in the view's order, and lives as long as the open database;
// each journal is kept under the key "ID" followed by its ID ("ID12").
//
// The collection never reloads: a journal that Remove deletes from the
// database stays in it, and rows written by others don't appear.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

#include "accounts/keyed_collection.hpp"
#include "bookkeeping/journal.hpp"
#include "support/variant.hpp"

namespace ldg {

class Journals {
 public:
  using Collection = KeyedCollection<std::shared_ptr<Journal>>;
  using Entry = Collection::Entry;

  class Iterator {
   public:
    using Base = decltype(std::declval<const Collection&>().begin());
    explicit Iterator(Base at) : at_(at) {}
    const std::shared_ptr<Journal>& operator*() const { return at_->second; }
    Iterator& operator++() {
      ++at_;
      return *this;
    }
    bool operator==(const Iterator& other) const = default;

   private:
    Base at_;
  };

  // Reads every journal of the engine's current database.
  Journals();
  Journals(const Journals&) = delete;
  Journals& operator=(const Journals&) = delete;

  // Creates and stores a journal under the first free number, starting at 0. From the second
  // attempt on the name gets the suffix " (n)", n being the number tried.
  std::shared_ptr<Journal> Add(const Variant& name);
  // A key ("ID12") names the journal with that ID, raising message 1150 when there is none;
  // anything else is a one-based position, raising run-time error 9 outside 1 to Count.
  std::shared_ptr<Journal> Item(const Variant& index_or_key) const;
  // The enumeration of NewEnum, in the order of the collection.
  Iterator begin() const { return Iterator(items_.begin()); }
  Iterator end() const { return Iterator(items_.end()); }
  int32_t Count() const { return items_.Count(); }
  // Deletes the journal's row. Deliberately, the object stays in the collection (pinned by a test).
  void Remove(const Variant& index_or_key);
  // The ID of the first journal with that code, 0 when there is none.
  int32_t IDByCode(const Variant& code) const;
  // The ID of the system journal (code 9999999), 0 when there is none.
  int32_t IDSystem() const { return IDByCode(Variant(kSystemJournalCode)); }

 private:
  void AddItem(const std::shared_ptr<Journal>& journal);
  std::shared_ptr<Journal> ItemByKey(int32_t id) const;

  Collection items_;
};

}  // namespace ldg
