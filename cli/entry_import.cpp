#include "cli/entry_import.hpp"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "cli/chart_listing.hpp"
#include "engine/engine_state.hpp"
#include "support/csv_reader.hpp"
#include "support/error.hpp"

namespace ldg::cli {

namespace {

constexpr const char* kProgressWork = "Import";

[[noreturn]] void FailOnLine(size_t line, const std::string& what) {
  throw Error(kErrInvalidCall, kAppTitle, "Line " + std::to_string(line) + ": " + what);
}

// Raises the error again, its number and source kept, with the line in front of its text.
[[noreturn]] void RaiseOnLine(size_t line, const Error& error) {
  throw Error(error.Number(), error.Source(), "Line " + std::to_string(line) + ": " + error.Description());
}

enum Column : size_t { kEntry, kDate, kDoc, kAccount, kAmount, kText, kJournal, kColumnCount };
constexpr std::array<const char*, kColumnCount> kColumnNames = {"entry",  "date", "doc",    "account",
                                                                "amount", "text", "journal"};

// The position of each column in the file's rows; the journal's may be missing.
std::array<std::optional<size_t>, kColumnCount> ColumnsOf(const CsvReader& reader) {
  std::array<std::optional<size_t>, kColumnCount> columns;
  for (size_t column = 0; column < kColumnCount; ++column) {
    columns[column] = reader.Column(kColumnNames[column]);
    if (!columns[column] && column != kJournal) {
      FailOnLine(1, "the header has no column '" + std::string(kColumnNames[column]) + "'.");
    }
  }
  for (const std::string& name : reader.Header()) {
    if (std::find(kColumnNames.begin(), kColumnNames.end(), name) == kColumnNames.end()) {
      FailOnLine(1, "the header has a column '" + name +
                        "' that is not entry, date, doc, account, amount, text or journal.");
    }
  }
  return columns;
}

// One row's values by column; "" for a missing journal column.
class Row {
 public:
  Row(const std::vector<std::string>& fields, const std::array<std::optional<size_t>, kColumnCount>& columns)
      : fields_(fields), columns_(columns) {}
  const std::string& operator[](Column column) const {
    static const std::string kNone;
    return columns_[column] ? fields_[*columns_[column]] : kNone;
  }

 private:
  const std::vector<std::string>& fields_;
  const std::array<std::optional<size_t>, kColumnCount>& columns_;
};

OleDate DateOf(const std::string& text, size_t line) {
  const std::optional<OleDate> date = ReadIsoDate(text);
  if (!date) FailOnLine(line, "'" + text + "' is not a date as yyyy-mm-dd.");
  return *date;
}

Currency AmountOf(const std::string& text, size_t line) {
  const std::optional<Currency> amount = ReadAmount(text);
  if (!amount)
    FailOnLine(line, "'" + text + "' is not an amount such as -1250.50 (\".\" and up to 4 decimals).");
  return *amount;
}

// A later row of an entry may leave a value of the entry empty or repeat it.
void CheckSame(const std::string& value, const std::string& first, const char* what, size_t line,
               size_t first_line) {
  if (value.empty() || value == first) return;
  FailOnLine(line, "the entry began on line " + std::to_string(first_line) + " with another " + what + ".");
}

// An entry as read, before it is posted.
struct PendingEntry {
  size_t first_line = 0;
  std::string date_text;
  EntryDraft draft;
};

// Looks a journal or an account up now, so that a wrong one names its line.
template <typename Lookup>
void CheckOnLine(size_t line, Lookup lookup) {
  try {
    lookup();
  } catch (const Error& error) {
    RaiseOnLine(line, error);
  }
}

PendingEntry NewEntry(const Row& row, size_t line, EntryPoster& poster, const std::string& default_journal) {
  PendingEntry entry{
      line,
      row[kDate],
      {row[kJournal].empty() ? default_journal : row[kJournal], DateOf(row[kDate], line), row[kDoc], {}}};
  CheckOnLine(line, [&] { poster.JournalID(entry.draft.journal); });
  return entry;
}

void CheckSameEntry(const PendingEntry& entry, const Row& row, size_t line) {
  CheckSame(row[kDate], entry.date_text, "date", line, entry.first_line);
  CheckSame(row[kDoc], entry.draft.document, "document number", line, entry.first_line);
  CheckSame(row[kJournal], entry.draft.journal, "journal", line, entry.first_line);
}

DraftLine LineOf(const Row& row, size_t line, EntryPoster& poster) {
  DraftLine draft_line{row[kAccount], AmountOf(row[kAmount], line), row[kText]};
  CheckOnLine(line, [&] { poster.AccountID(draft_line.account); });
  return draft_line;
}

// Every row, checked, grouped into entries in the order of their first rows.
std::vector<PendingEntry> ReadAll(std::istream& csv, EntryPoster& poster,
                                  const std::string& default_journal) {
  CsvReader reader(csv);
  if (!reader.ReadHeader()) FailOnLine(1, "the file is empty; it needs a header row.");
  const auto columns = ColumnsOf(reader);
  std::vector<PendingEntry> entries;
  std::map<std::string, size_t> position_of_key;
  std::vector<std::string> fields;
  while (reader.Next(fields)) {
    const size_t line = reader.LineNumber();
    if (fields.size() != reader.Header().size()) {
      FailOnLine(line, std::to_string(fields.size()) + " fields where the header has " +
                           std::to_string(reader.Header().size()) + ".");
    }
    const Row row(fields, columns);
    if (row[kEntry].empty()) FailOnLine(line, "the entry is empty.");
    DraftLine draft_line = LineOf(row, line, poster);
    const auto [at, is_new] = position_of_key.try_emplace(row[kEntry], entries.size());
    if (is_new) {
      entries.push_back(NewEntry(row, line, poster, default_journal));
    } else {
      CheckSameEntry(entries[at->second], row, line);
    }
    entries[at->second].draft.lines.push_back(std::move(draft_line));
  }
  return entries;
}

// All entries in one outer transaction; a failure names the line where its entry begins.
void PostAll(Engine& engine, EntryPoster& poster, const std::vector<PendingEntry>& entries) {
  HostHooks& hooks = State().Hooks();
  const auto total = static_cast<int64_t>(entries.size());
  int64_t done = 0;
  engine.BeginTrans();
  const PendingEntry* current = nullptr;
  try {
    hooks.Progress(kProgressWork, 0, total);
    for (const PendingEntry& entry : entries) {
      current = &entry;
      poster.Post(entry.draft);
      hooks.Progress(kProgressWork, ++done, total);
    }
    current = nullptr;
    engine.CommitTrans();
  } catch (const Error& error) {
    engine.Rollback();
    if (current == nullptr) throw;
    RaiseOnLine(current->first_line, error);
  } catch (...) {
    engine.Rollback();
    throw;
  }
}

}  // namespace

EntryImport::EntryImport(Engine& engine, std::string default_journal)
    : engine_(engine), default_journal_(std::move(default_journal)), poster_(engine) {}

EntryImport::Counts EntryImport::Run(std::istream& csv) {
  const std::vector<PendingEntry> entries = ReadAll(csv, poster_, default_journal_);
  PostAll(engine_, poster_, entries);
  Counts counts;
  counts.entries = static_cast<int32_t>(entries.size());
  for (const PendingEntry& entry : entries) counts.lines += static_cast<int32_t>(entry.draft.lines.size());
  return counts;
}

}  // namespace ldg::cli
