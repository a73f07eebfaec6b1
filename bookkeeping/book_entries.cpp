#include "bookkeeping/book_entries.hpp"

#include <regex>
#include <string>
#include <string_view>

#include "bookkeeping/book_entry.hpp"
#include "bookkeeping/posting_handles.hpp"
#include "engine/current_objects.hpp"
#include "engine/engine.hpp"
#include "engine/engine_state.hpp"
#include "engine/options.hpp"
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

constexpr int32_t kMsgNoEntryWithDocumentID = 1205;
constexpr int32_t kMsgNotADate = 1185;
constexpr int32_t kMsgNothingToMakeDefinitive = 1187;

bool IsGiven(const Variant& value) { return !value.IsEmpty() && !value.IsNull(); }

// A field name is pasted as it is, so it must be a plain name.
void RefuseNonName(const std::string& field) {
  static const std::regex name(R"([A-Za-z_][A-Za-z0-9_]*(\.[A-Za-z_][A-Za-z0-9_]*)?)");
  if (!std::regex_match(field, name)) store::RaiseStore(store::kErrSyntax);
}

// The excluded journals are pasted into "not in (...)": only a list of whole numbers may go there.
void RefuseNonIDList(const std::string& list) {
  static const std::regex ids(R"(\s*[-+]?\d+\s*(,\s*[-+]?\d+\s*)*)");
  if (!std::regex_match(list, ids)) store::RaiseStore(store::kErrSyntax);
}

// One condition of a selection date: ">= #..#" or "<= #..#"; 1185 for what is no date.
void AddDateCondition(std::string& condition, const Variant& date, const char* comparison) {
  if (!IsGivenText(date)) return;
  if (!IsDate(date)) RaiseMessage(kMsgNotADate);
  condition += " AND (BookEntries.Date " + std::string(comparison) + " " + CStr(DateLiteral(date)) + ")";
}

int32_t CountOf(const std::string& sql, const char* column) {
  auto rows = CurrentDatabase().OpenRecordset(sql, store::dbOpenSnapshot);
  const int32_t count = rows->Eof() ? 0 : ReadLong(*rows, column);
  rows->Close();
  return count;
}

// The option BelegIDAuto of the open file.
bool AutomaticDocumentIDs() {
  const Engine* engine = State().engine;
  if (engine == nullptr || !engine->Options()) RaiseRuntime(kErrObjectNotSet);
  return engine->Options()->BelegIDAuto();
}

std::shared_ptr<BookEntry> LoadEntry(int32_t id) {
  auto entry = std::make_shared<BookEntry>();
  entry->Load(id);
  return entry;
}

}  // namespace

BookEntries::BookEntries() {
  SharedPostingHandles().Open();
  definitive_sets_ = std::make_shared<ldg::DefinitiveSets>();
}

BookEntries::~BookEntries() { SharedPostingHandles().Release(); }

void BookEntries::Append(BookEntry& entry) { entry.AppendEntry(); }

void BookEntries::Delete(int32_t book_entry_id) { Item(BuildKey(book_entry_id))->Delete(); }

std::shared_ptr<BookEntry> BookEntries::Item(const Variant& doc_id_or_key) {
  if (doc_id_or_key.Type() == VarType::kString && doc_id_or_key.AsString().rfind("ID", 0) == 0) {
    return LoadEntry(CLng(Variant(doc_id_or_key.AsString().substr(2))));
  }
  store::Recordset& table = SharedBookEntriesTable();
  table.Index("DocumentID");
  table.Seek("=", doc_id_or_key);
  // Deliberate: the index stays on DocumentID after a miss; the load by ID sets its own (pinned by a test).
  if (table.NoMatch()) RaiseMessage(kMsgNoEntryWithDocumentID);
  auto entry = LoadEntry(ReadLong(table, "ID"));
  table.Index("PrimaryKey");
  return entry;
}

std::shared_ptr<BookEntry> BookEntries::ItemByTag(const std::string& mask) {
  return ItemByField("Tag", mask);
}

std::shared_ptr<BookEntry> BookEntries::ItemByTags(const std::string& mask) {
  return ItemByField("Tags", mask);
}

std::shared_ptr<BookEntry> BookEntries::ItemByField(const std::string& field, const std::string& mask) {
  RefuseNonName(field);
  store::RefuseQuote(mask);
  auto rows = CurrentDatabase().OpenRecordset(
      "SELECT * FROM BookEntries WHERE(" + field + " Like '*" + mask + "*');", store::dbOpenSnapshot);
  if (rows->Eof()) {
    rows->Close();
    return nullptr;
  }
  const int32_t id = ReadLong(*rows, "ID");
  rows->Close();
  return Item(BuildKey(id));
}

int32_t BookEntries::Count() {
  try {
    store::Recordset& table = SharedBookEntriesTable();
    table.MoveLast();
    return table.RecordCount();
  } catch (const Error&) {
    return 0;
  }
}

int32_t BookEntries::GetIDUsingDocID(const std::string& doc_id) {
  auto table = CurrentDatabase().OpenRecordset("BookEntries", store::dbOpenTable);
  const double number = Val(doc_id);
  const Variant wanted =
      number > 0 ? Variant(Format(Variant(number), kNumericDocumentIDFormat)) : Variant(doc_id);
  table->Index("DocumentID");
  table->Seek("=", wanted);
  const int32_t id = table->NoMatch() ? 0 : ReadLong(*table, "ID");
  table->Close();
  return id;
}

Variant BookEntries::GetNextNumericDocID(const Variant& this_doc_id, bool force) {
  if (!this_doc_id.IsEmpty()) return this_doc_id;
  if (!force && !AutomaticDocumentIDs()) return Variant("");
  std::string digits;
  for (size_t i = 0; i < std::string_view(kNumericDocumentIDFormat).size(); ++i) digits += "[0-9]";
  auto rows = CurrentDatabase().OpenRecordset("SELECT DocumentID FROM BookEntries WHERE (DocumentID LIKE \"" +
                                                  digits + "\") ORDER BY DocumentID DESC;",
                                              store::dbOpenSnapshot);
  const double next = rows->Eof() ? 1.0 : Val(ReadString(*rows, "DocumentID")) + 1.0;
  rows->Close();
  return Variant(next);
}

int32_t BookEntries::DoDefinitive(const Variant& journals_to_exclude, const Variant& beginn_date,
                                  const Variant& end_date, bool users_entries_only) {
  std::string condition = "(BookEntries.Definitive is Null)";
  const std::string excluded = IsGivenText(journals_to_exclude) ? CStr(journals_to_exclude) : std::string();
  if (!excluded.empty()) {
    RefuseNonIDList(excluded);
    condition += " AND (BookEntries.JournalID not in (" + excluded + "))";
  }
  AddDateCondition(condition, beginn_date, ">=");
  AddDateCondition(condition, end_date, "<=");
  const std::string user = DefinitiveRunUser();
  if (users_entries_only) {
    store::RefuseQuote(user);
    condition += " AND (BookEntries.CreatedBy = '" + user + "' OR BookEntries.ChangedBy = '" + user + "')";
  }
  const int32_t count =
      CountOf("SELECT Count(BookEntries.ID) AS [EntriesCount] FROM BookEntries  WHERE " + condition + ";",
              "EntriesCount");
  if (count == 0) RaiseMessage(kMsgNothingToMakeDefinitive);

  store::Workspace& workspace = CurrentWorkspace();
  workspace.BeginTrans();
  int32_t number = 0;
  try {
    const std::shared_ptr<DefinitiveSet> set =
        definitive_sets_->Add(DefinitiveRunDate(), user, IsGiven(beginn_date) ? beginn_date : Variant(""),
                              IsGiven(end_date) ? end_date : Variant(""), excluded, users_entries_only);
    number = set->Number();
    CurrentDatabase().Execute("UPDATE BookEntries SET BookEntries.Definitive = " + std::to_string(set->ID()) +
                                  ", BookEntries.DefinitiveJournal = " + std::to_string(number) + " WHERE " +
                                  condition + ";",
                              store::dbFailOnError);
    workspace.CommitTrans();
  } catch (const Error& error) {
    RollbackAndRaise(error);
  }
  if (State().engine) State().engine->NotifyCallback(Variant(number));
  return count;
}

int32_t BookEntries::DateRangeCount(const Variant& definitive, const Variant& date_from,
                                    const Variant& date_to) {
  std::string condition;
  if (!definitive.IsEmpty()) {
    condition =
        CBool(definitive) ? "(BookEntries.Definitive Is NOT Null)" : "(BookEntries.Definitive Is Null)";
  }
  const std::string dates = DateRangeCondition("BookEntries.Date", date_from, date_to);
  if (!condition.empty() && !dates.empty()) {
    condition = "(" + condition + " AND " + dates + ")";
  } else if (condition.empty()) {
    condition = dates;
  }
  std::string sql = "SELECT Count(BookEntries.ID) AS Anzahl FROM BookEntries";
  if (!condition.empty()) sql += " WHERE " + condition;
  return CountOf(sql + ";", "Anzahl");
}

}  // namespace ldg
