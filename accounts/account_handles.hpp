// AccountHandles: the record sets and stored queries that every Account of the
// open database shares, opened when Accounts is created and released when it
// ends, plus the engine-wide dated balance view. Held per thread, like the rest
// of the engine-wide state. Positions on the shared record sets hold only until
// the next call into the accounts classes.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "store/query_def.hpp"
#include "store/recordset.hpp"
#include "support/currency.hpp"
#include "support/ole_date.hpp"

namespace ldg::store {
class Database;
}  // namespace ldg::store

namespace ldg {

struct AccountHandles {
  // "Accounts" as a table record set, Index "PrimaryKey".
  std::unique_ptr<store::Recordset> accounts_table;
  // "AccountsIndex" as a table record set.
  std::unique_ptr<store::Recordset> index_table;
  std::shared_ptr<store::QueryDef> delete_index_entry;  // DeleteAccountsIndexEntry
  std::shared_ptr<store::QueryDef> index_gl;            // viewAccountsIndexGL
  std::shared_ptr<store::QueryDef> index_detail;        // viewAccountsIndexDetail
  std::shared_ptr<store::QueryDef> index_groups;        // viewAccountsIndexGroups
  std::shared_ptr<store::QueryDef> balance_at_date;     // viewBalanceAtDate

  // The balance view: viewAccountsRecursive, or a dated query over it.
  std::shared_ptr<store::QueryDef> balance_view_query;
  std::unique_ptr<store::Recordset> balance_view;
  // True while balance_view reads viewAccountsRecursive itself.
  bool balance_view_is_plain = true;
  // Name of the scratch query of the dated view, "" when there is none.
  std::string temp_query_name;
  // The date and journal list balance_view was built for, as the statement of
  // its dated sums ("" for the plain view); none when not known. An object
  // asking for the same reuses the view instead of building it again.
  std::optional<std::string> balance_view_sums;
  // The day up to which the dated view counts movements when it leaves no
  // journal out; none otherwise. A plain account asked for that day takes its
  // sum from the view, less the movements of the day itself.
  std::optional<OleDate> balance_view_through;
  // The movements dated on that day, and their sums per account ID.
  std::unique_ptr<store::Recordset> day_movements;
  std::map<int32_t, Currency> day_sums;
  // The journal list last used by BalanceAtDate.
  std::string last_journal_list;

  // Opens the shared handles on the current database.
  void Open();
  // Releases every handle, the balance view and its scratch query included.
  void Release();
  // Drops the balance view and its scratch query (deleted from QueryDefs).
  void ReleaseBalanceView();
  // Opens viewAccountsRecursive as the balance view, once the one before is released.
  void OpenPlainBalanceView(store::Database& database);
};

// This thread's handles.
AccountHandles& SharedAccountHandles();

// The shared accounts table; run-time error 91 while no Accounts has opened it.
store::Recordset& SharedAccountsTable();
// The engine-wide balance view; run-time error 91 while none is built.
store::Recordset& SharedBalanceView();

}  // namespace ldg
