#include "accounts/account_handles.hpp"

#include "engine/engine_state.hpp"
#include "store/constants.hpp"
#include "store/database.hpp"
#include "support/error.hpp"

namespace ldg {

void AccountHandles::Open() {
  store::Database& database = *State().database;
  accounts_table = database.OpenRecordset("Accounts", store::dbOpenTable);
  accounts_table->Index("PrimaryKey");
  index_table = database.OpenRecordset("AccountsIndex", store::dbOpenTable);
  store::QueryDefs& queries = database.QueryDefs();
  delete_index_entry = queries.Item("DeleteAccountsIndexEntry");
  index_detail = queries.Item("viewAccountsIndexDetail");
  index_gl = queries.Item("viewAccountsIndexGL");
  index_groups = queries.Item("viewAccountsIndexGroups");
  balance_at_date = queries.Item("viewBalanceAtDate");
}

void AccountHandles::Release() {
  ReleaseBalanceView();
  store::CloseAndDrop(accounts_table);
  store::CloseAndDrop(index_table);
  delete_index_entry.reset();
  index_gl.reset();
  index_detail.reset();
  index_groups.reset();
  balance_at_date.reset();
  last_journal_list.clear();
}

void AccountHandles::ReleaseBalanceView() {
  store::CloseAndDrop(balance_view);
  balance_view_query.reset();
  balance_view_is_plain = true;
  balance_view_sums.reset();
  balance_view_through.reset();
  store::CloseAndDrop(day_movements);
  day_sums.clear();
  if (temp_query_name.empty()) return;
  const std::string name = temp_query_name;
  temp_query_name.clear();
  if (!State().database) return;
  try {
    State().database->QueryDefs().Delete(name);
  } catch (const Error&) {  // a clean-up runs to its end whatever fails
  }
}

void AccountHandles::OpenPlainBalanceView(store::Database& database) {
  balance_view_query = database.QueryDefs().Item("viewAccountsRecursive");
  balance_view_is_plain = true;
  balance_view = balance_view_query->OpenRecordset(store::dbOpenSnapshot);
}

AccountHandles& SharedAccountHandles() {
  thread_local AccountHandles handles;
  return handles;
}

store::Recordset& SharedAccountsTable() { return Dereferenced(SharedAccountHandles().accounts_table); }

store::Recordset& SharedBalanceView() { return Dereferenced(SharedAccountHandles().balance_view); }

}  // namespace ldg
