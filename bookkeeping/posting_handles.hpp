// PostingHandles: the table record sets on BookEntries and Movements that the
// BookEntries collection opens for the open database and that BookEntry and
// Movement share: their current row and, for BookEntries, their current index
// are shared state. Held per thread.
#pragma once

#include <memory>

#include "store/recordset.hpp"

namespace ldg {

struct PostingHandles {
  // "BookEntries" as a table record set, Index "PrimaryKey".
  std::unique_ptr<store::Recordset> book_entries_table;
  // "Movements" as a table record set, Index "PrimaryKey".
  std::unique_ptr<store::Recordset> movements_table;

  void Open();
  void Release();
};

// This thread's handles.
PostingHandles& SharedPostingHandles();

// The shared tables; run-time error 91 while no BookEntries has opened them.
store::Recordset& SharedBookEntriesTable();
store::Recordset& SharedMovementsTable();

}  // namespace ldg
