// BookEntries: the access point to every book entry of the open year. It keeps
// no list: each Item loads a new BookEntry with all its lines. It owns the two
// table record sets through which entries and lines are read and inserted
// (shared with BookEntry and Movement through SharedPostingHandles()) and the
// DefinitiveSets of the year.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "bookkeeping/definitive_sets.hpp"
#include "support/variant.hpp"

namespace ldg {

class BookEntry;

// Bits of the option DocIDFlags; stored and handed back, honoured by front ends.
enum DocIDFlags : int16_t {
  lgrDocIDFlagNumeric = 1,
  lgrDocIDFlagAutomatic = 2,
  lgrDocIDFlagEditable = 4,
  lgrDocIDFlagAllowDuplicates = 8,
};

// The stored form of a numeric document number: fourteen digits, left-padded with zeros.
inline constexpr const char* kNumericDocumentIDFormat = "00000000000000";

class BookEntries {
 public:
  BookEntries();
  ~BookEntries();
  BookEntries(const BookEntries&) = delete;
  BookEntries& operator=(const BookEntries&) = delete;

  std::shared_ptr<ldg::DefinitiveSets> DefinitiveSets() const { return definitive_sets_; }
  void DefinitiveSets(std::shared_ptr<ldg::DefinitiveSets> value) { definitive_sets_ = std::move(value); }
  void Append(BookEntry& entry);
  void Delete(int32_t book_entry_id);
  // "ID<n>" loads by ID (1204); anything else is a document number as stored (1205).
  std::shared_ptr<BookEntry> Item(const Variant& doc_id_or_key);
  std::shared_ptr<BookEntry> ItemByTag(const std::string& mask);
  std::shared_ptr<BookEntry> ItemByTags(const std::string& mask);
  // Null when nothing matches, no error.
  std::shared_ptr<BookEntry> ItemByField(const std::string& field, const std::string& mask);
  int32_t Count();
  int32_t GetIDUsingDocID(const std::string& doc_id);
  Variant GetNextNumericDocID(const Variant& this_doc_id = Variant(), bool force = false);
  // JournalsToExclude is a list of journal IDs separated by ","; returns the number made definitive.
  int32_t DoDefinitive(const Variant& journals_to_exclude = Variant(), const Variant& beginn_date = Variant(),
                       const Variant& end_date = Variant(), bool users_entries_only = false);
  int32_t DateRangeCount(const Variant& definitive = Variant(), const Variant& date_from = Variant(),
                         const Variant& date_to = Variant());

 private:
  std::shared_ptr<ldg::DefinitiveSets> definitive_sets_;
};

}  // namespace ldg
