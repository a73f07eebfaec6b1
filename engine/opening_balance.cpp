#include "engine/opening_balance.hpp"

#include <string_view>

#include "support/nullable.hpp"

namespace ldg {

namespace {

constexpr const char* kOpeningBalanceSql =
    "SELECT Sum(Accounts.OpeningBalance) AS [SumOfOpeningBalance] From Accounts Where (((Accounts.IsSum) = "
    "False)) "
    "GROUP BY Accounts.IsMaster HAVING (((Accounts.IsMaster)=False));";
constexpr const char* kSavedOpeningBalanceSql =
    "SELECT Sum(Accounts.SaveOB) AS [SumOfSaveOB] From Accounts Where (((Accounts.IsSum) = False)) "
    "GROUP BY Accounts.IsMaster HAVING (((Accounts.IsMaster)=False));";

Currency FirstSum(store::Database& database, std::string_view sql, std::string_view column) {
  auto rows = database.OpenRecordset(sql, store::dbOpenSnapshot);
  Currency sum;
  if (!rows->Eof()) sum = ReadCurrency(*rows, column);
  rows->Close();
  return sum;
}

void CopyColumn(store::Database& database, store::Workspace* workspace, std::string_view from,
                std::string_view to) {
  auto accounts = database.OpenRecordset("Accounts", store::dbOpenTable);
  if (workspace) workspace->BeginTrans();
  while (!accounts->Eof()) {
    accounts->Edit();
    accounts->Value(to, accounts->Value(from));
    accounts->Update();
    accounts->MoveNext();
  }
  if (workspace) workspace->CommitTrans();
  accounts->Close();
}

}  // namespace

Currency OpeningBalance(store::Database& database) {
  return FirstSum(database, kOpeningBalanceSql, "SumOfOpeningBalance");
}

Currency SavedOpeningBalance(store::Database& database) {
  return FirstSum(database, kSavedOpeningBalanceSql, "SumOfSaveOB");
}

void SaveOpeningBalance(store::Database& database, store::Workspace* workspace) {
  CopyColumn(database, workspace, "OpeningBalance", "SaveOB");
}

void RestoreOpeningBalance(store::Database& database, store::Workspace* workspace,
                           const std::function<void()>& recalc_balances) {
  CopyColumn(database, workspace, "SaveOB", "OpeningBalance");
  if (recalc_balances) recalc_balances();
}

}  // namespace ldg
