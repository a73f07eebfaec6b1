#include "bookkeeping/posting_handles.hpp"

#include "engine/engine_state.hpp"
#include "store/constants.hpp"
#include "store/database.hpp"
#include "support/error.hpp"

namespace ldg {
namespace {

std::unique_ptr<store::Recordset> OpenTable(store::Database& database, const char* table) {
  auto records = database.OpenRecordset(table, store::dbOpenTable);
  records->Index("PrimaryKey");
  return records;
}

// A handle is closed even when its database has already gone.
void CloseAndDrop(std::unique_ptr<store::Recordset>& records) {
  if (records) {
    try {
      records->Close();
    } catch (const Error&) {
    }
  }
  records.reset();
}

}  // namespace

void PostingHandles::Open() {
  if (!State().database) RaiseRuntime(kErrObjectNotSet);
  Release();
  book_entries_table = OpenTable(*State().database, "BookEntries");
  movements_table = OpenTable(*State().database, "Movements");
}

void PostingHandles::Release() {
  CloseAndDrop(book_entries_table);
  CloseAndDrop(movements_table);
}

PostingHandles& SharedPostingHandles() {
  thread_local PostingHandles handles;
  return handles;
}

store::Recordset& SharedBookEntriesTable() {
  std::unique_ptr<store::Recordset>& table = SharedPostingHandles().book_entries_table;
  if (!table) RaiseRuntime(kErrObjectNotSet);
  return *table;
}

store::Recordset& SharedMovementsTable() {
  std::unique_ptr<store::Recordset>& table = SharedPostingHandles().movements_table;
  if (!table) RaiseRuntime(kErrObjectNotSet);
  return *table;
}

}  // namespace ldg
