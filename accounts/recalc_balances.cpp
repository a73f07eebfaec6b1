#include "accounts/recalc_balances.hpp"

#include <cstdint>
#include <memory>
#include <string>

#include "accounts/account_handles.hpp"
#include "engine/current_objects.hpp"
#include "engine/engine_state.hpp"
#include "store/constants.hpp"
#include "store/database.hpp"
#include "support/conversions.hpp"
#include "support/currency.hpp"
#include "support/error.hpp"
#include "support/nullable.hpp"
#include "support/sql_text.hpp"

namespace ldg {

namespace {

constexpr const char* kProgressWork = "RecalcBalances";

void SetBalance(store::Database& database, int32_t id, Currency balance) {
  database.Execute("UPDATE Accounts Set Accounts.Balance = " + CurrencyToSqlText(balance) +
                   " WHERE ID = " + std::to_string(id));
}

void SetChildrensBalance(store::Database& database, int32_t id, Currency total) {
  database.Execute("UPDATE Accounts SET Accounts.ChildrensBalance = " + CurrencyToSqlText(total) +
                   " WHERE Accounts.ID = " + std::to_string(id) + ";");
}

// The movements' sums per account, as a scratch query; one left from an earlier run is used as it is.
void CreateMovementSums(store::Database& database) {
  try {
    database.CreateQueryDef(
        "tempMovSums",
        "SELECT Movements.AccountID, Sum(Movements.Amount) AS [Summe von Amount] From Movements "
        "GROUP BY Movements.AccountID;");
  } catch (const Error&) {
  }
}

int32_t RowCount(store::Recordset& rows) {
  if (rows.Eof()) return 0;
  rows.MoveLast();
  const int32_t count = rows.RecordCount();
  rows.MoveFirst();
  return count;
}

void RecalcOwnBalances(store::Database& database) {
  database.Execute("UPDATE Accounts SET Accounts.Balance = 0;");
  CreateMovementSums(database);
  std::unique_ptr<store::Recordset> sums = database.OpenRecordset(
      "SELECT Accounts.ID AS AccountID, tempMovSums.[Summe von Amount] FROM Accounts LEFT JOIN tempMovSums "
      "ON "
      "Accounts.ID = tempMovSums.AccountID;",
      store::dbOpenSnapshot);
  std::unique_ptr<store::Recordset> table = database.OpenRecordset("Accounts", store::dbOpenTable);
  table->Index("PrimaryKey");
  HostHooks& hooks = State().Hooks();
  const int32_t total = RowCount(*sums);
  int32_t done = 0;
  for (; !sums->Eof(); sums->MoveNext()) {
    const int32_t id = ReadLong(*sums, "AccountID");
    table->Seek("=", Variant(id));
    const Currency opening = ReadCurrency(*table, "OpeningBalance");
    const Variant sum = sums->Value("Summe von Amount");
    SetBalance(database, id, sum.IsNull() ? opening : CCur(sum) + opening);
    hooks.Progress(kProgressWork, ++done, total);
    hooks.Yield();
  }
  sums->Close();
  table->Close();
  hooks.Beep();
}

// The total of the children of id, each child's ChildrensBalance written on the way.
Currency SubtreeTotal(store::Database& database, store::Recordset& view, int32_t id) {
  const std::string criterion = "Accounts.ID=" + std::to_string(id);
  Currency result;
  view.FindFirst(criterion);
  while (!view.NoMatch()) {
    const store::BookmarkValue mark = view.Bookmark();
    const int32_t child_id = ReadLong(view, "Accounts_1.ID");
    const Currency child_total = SubtreeTotal(database, view, child_id);
    result += child_total;
    SetChildrensBalance(database, child_id, child_total);
    view.Bookmark(mark);
    result += ReadCurrency(view, "Accounts_1.Balance");
    view.FindNext(criterion);
  }
  return result;
}

void RecalcChildrensBalances(store::Database& database) {
  database.Execute("UPDATE Accounts SET Accounts.ChildrensBalance = 0;");
  // The plain tree becomes the shared balance view.
  AccountHandles& handles = SharedAccountHandles();
  handles.ReleaseBalanceView();
  handles.OpenPlainBalanceView(database);
  std::unique_ptr<store::Recordset> masters =
      database.OpenRecordset("SELECT * FROM Accounts WHERE IsMaster = True;", store::dbOpenSnapshot);
  for (; !masters->Eof(); masters->MoveNext()) {
    const int32_t id = ReadLong(*masters, "ID");
    SetChildrensBalance(database, id, SubtreeTotal(database, *handles.balance_view, id));
  }
  masters->Close();
}

}  // namespace

void RecalcBalances(bool recalc_children_balances) {
  store::Database& database = CurrentDatabase();
  RecalcOwnBalances(database);
  if (recalc_children_balances) RecalcChildrensBalances(database);
}

}  // namespace ldg
