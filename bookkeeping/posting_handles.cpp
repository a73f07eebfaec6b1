#include "bookkeeping/posting_handles.hpp"

#include "engine/current_objects.hpp"
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

}  // namespace

void PostingHandles::Open() {
  store::Database& database = CurrentDatabase();
  Release();
  book_entries_table = OpenTable(database, "BookEntries");
  movements_table = OpenTable(database, "Movements");
}

void PostingHandles::Release() {
  store::CloseAndDrop(book_entries_table);
  store::CloseAndDrop(movements_table);
}

PostingHandles& SharedPostingHandles() {
  thread_local PostingHandles handles;
  return handles;
}

store::Recordset& SharedBookEntriesTable() { return Dereferenced(SharedPostingHandles().book_entries_table); }

store::Recordset& SharedMovementsTable() { return Dereferenced(SharedPostingHandles().movements_table); }

}  // namespace ldg
