// The small checks and the three start-up repairs that an open runs on a file
// nobody else has open. The checks bring the stored queries the engine writes
// itself and the later columns of Accounts, BookEntries and DefinitiveSets up
// to date, set a Null LiegenCode to 0, save the opening balances and report an
// unbalanced opening. The repairs delete accounts without a code and scratch
// queries, and bring VatAccounts and the free flags of BookEntries up to date.
// Neither reports to the caller what it changed, and neither must ever run on a
// file that another connection holds: the caller decides that.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "store/database.hpp"
#include "support/currency.hpp"

namespace ldg {

struct StartupCheckSinks {
  // A trace line ("InternalChecks", step, name); step is "1" to "7".
  std::function<void(std::string_view procedure, std::string_view step, std::string_view name)> trace;
  // The opening balances don't sum to 0: the database's name and the sum.
  std::function<void(const std::string& database_name, Currency balance)> opening_balance_unbalanced;
};

// The seven steps of the internal checks, each traced before and followed by a
// yield to the host. Errors of the query rewrite of step 6 are ignored; the
// column upkeep suppresses its own errors; anything else reaches the caller.
void RunInternalChecks(store::Database& database, const StartupCheckSinks& sinks = {});

// The three start-up repairs, each followed by a yield but for the last.
// Errors of the first two are ignored.
void RunStartupRepairs(store::Database& database);

// The steps one by one, for the open and for the verify repairs.
void CheckViewAccountsRecursive(store::Database& database);
void CheckAccounts(store::Database& database, const StartupCheckSinks& sinks = {});
void CheckBookEntries(store::Database& database);
void CheckDefinitiveSets(store::Database& database);
void CheckQueries(store::Database& database);

void DeleteAccountsWithoutCode(store::Database& database);
// A scratch query's name begins with "temp", or is digits followed by "temp".
bool IsScratchQueryName(std::string_view name);
void DeleteScratchQueries(store::Database& database);
void UpdateVatAccountsAndBookEntries(store::Database& database);

// The texts the engine writes for its own stored queries, whatever the template holds.
extern const char* const kViewAccountsRecursiveSql;
extern const char* const kViewAccountsIndexGLSql;
extern const char* const kViewAccountsIndexDetailSql;

}  // namespace ldg
