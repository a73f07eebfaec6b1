#include "engine/startup_checks.hpp"

#include <string>
#include <vector>

#include "engine/engine_state.hpp"
#include "engine/opening_balance.hpp"
#include "engine/schema_upkeep.hpp"
#include "support/text.hpp"

namespace ldg {

const char* const kViewAccountsRecursiveSql =
    "SELECT Accounts.ID, Accounts.Code, Accounts.Name, Accounts.Balance, Accounts.ChildrensBalance, "
    "Accounts_1.* "
    "FROM Accounts INNER JOIN Accounts AS Accounts_1 ON Accounts.ID = Accounts_1.ParentID "
    "ORDER BY Accounts_1.Position, Accounts_1.Code;";

const char* const kViewAccountsIndexGLSql =
    "PARAMETERS Search Text; SELECT AccountsIndex.ID, AccountsIndex.SearchName, AccountsIndex.MasterID, "
    "AccountsIndex.IsSum FROM AccountsIndex WHERE (((AccountsIndex.SearchName) Like [Search] & \"*\") AND "
    "((AccountsIndex.MasterID)=0) AND ((AccountsIndex.IsSum)=False)) ORDER BY AccountsIndex.SearchName;";

const char* const kViewAccountsIndexDetailSql =
    "PARAMETERS Search Text; SELECT AccountsIndex.ID, AccountsIndex.SearchName, AccountsIndex.MasterID From "
    "AccountsIndex WHERE (((AccountsIndex.SearchName) Like [Search] & \"*\") AND "
    "((AccountsIndex.MasterID)>0)) "
    "ORDER BY AccountsIndex.SearchName;";

namespace {

void Yield() { State().Hooks().Yield(); }

template <typename Step>
void IgnoringErrors(Step&& step) {
  try {
    step();
  } catch (...) {
  }
}

// The stored text of a query; empty when there is no such query.
std::string StoredText(store::Database& database, std::string_view name) {
  if (!database.QueryDefs().Contains(name)) return "";
  return database.QueryDefs().Item(name)->SQL();
}

void WriteQuery(store::Database& database, std::string_view name, std::string_view sql) {
  if (database.QueryDefs().Contains(name)) database.QueryDefs().Delete(name);
  database.CreateQueryDef(name, sql);
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

void CheckViewAccountsRecursive(store::Database& database) {
  // A missing query counts as one without an order: it is written.
  if (StoredText(database, "viewAccountsRecursive").find("ORDER BY") != std::string::npos) return;
  WriteQuery(database, "viewAccountsRecursive", kViewAccountsRecursiveSql);
}

void CheckAccounts(store::Database& database, const StartupCheckSinks& sinks) {
  UpdateAccountsTable(database);
  database.Execute("UPDATE Accounts SET LiegenCode = 0 WHERE (LiegenCode Is Null);");
  Currency balance = OpeningBalance(database);
  SaveOpeningBalance(database, State().workspace.get());
  if (!balance.IsZero() && sinks.opening_balance_unbalanced) {
    sinks.opening_balance_unbalanced(database.Name(), balance);
  }
}

void CheckBookEntries(store::Database& database) { UpdateBookEntriesTable(database); }

void CheckDefinitiveSets(store::Database& database) { UpdateDefinitiveSetsTable(database); }

void CheckQueries(store::Database& database) {
  IgnoringErrors([&] { WriteQuery(database, "viewAccountsIndexGL", kViewAccountsIndexGLSql); });
  IgnoringErrors([&] { WriteQuery(database, "viewAccountsIndexDetail", kViewAccountsIndexDetailSql); });
}

void RunInternalChecks(store::Database& database, const StartupCheckSinks& sinks) {
  auto step = [&](const char* number, const char* name, auto&& check) {
    if (sinks.trace) sinks.trace("InternalChecks", number, name);
    check();
    Yield();
  };
  step("1", "Start", [] {});
  step("2", "CheckViewAccountsRecursive", [&] { CheckViewAccountsRecursive(database); });
  step("3", "CheckAccounts", [&] { CheckAccounts(database, sinks); });
  step("4", "CheckBookEntries", [&] { CheckBookEntries(database); });
  step("5", "CheckDefinitiveSets", [&] { CheckDefinitiveSets(database); });
  step("6", "CheckQueries", [&] { CheckQueries(database); });
  step("7", "Done", [] {});
}

void DeleteAccountsWithoutCode(store::Database& database) {
  IgnoringErrors([&] { database.Execute("DELETE * FROM Accounts WHERE (((Accounts.Code) Is Null));"); });
}

bool IsScratchQueryName(std::string_view name) {
  if (name.size() >= 4 && EqualsNoCase(name.substr(0, 4), "temp")) return true;
  size_t digits = 0;
  while (digits < name.size() && IsDigit(name[digits])) ++digits;
  return digits > 0 && EqualsNoCase(name.substr(digits), "temp");
}

void DeleteScratchQueries(store::Database& database) {
  std::vector<std::string> scratch;
  IgnoringErrors([&] {
    auto& queries = database.QueryDefs();
    for (int i = 0; i < queries.Count(); ++i) {
      std::string name = queries.Item(i)->Name();
      if (IsScratchQueryName(name)) scratch.push_back(name);
    }
  });
  for (const auto& name : scratch) IgnoringErrors([&] { database.QueryDefs().Delete(name); });
}

void UpdateVatAccountsAndBookEntries(store::Database& database) {
  UpdateVatAccountsTable(database);
  UpdateBookEntriesMarks(database);
}

void RunStartupRepairs(store::Database& database) {
  DeleteAccountsWithoutCode(database);
  Yield();
  DeleteScratchQueries(database);
  Yield();
  UpdateVatAccountsAndBookEntries(database);
}

}  // namespace ldg
