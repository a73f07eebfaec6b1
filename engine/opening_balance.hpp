// The opening balances of the chart as a whole: their sum, the sum of the
// saved copy in SaveOB, and the copy between the two columns. In a balanced
// chart the opening balances sum to 0; sums and master accounts hold none of
// their own and are left out of both sums. The copies touch every row of
// Accounts, sums and masters included, and hold no handler: a failure leaves
// the transaction open for the caller.
#pragma once

#include <functional>

#include "store/database.hpp"
#include "store/workspace.hpp"
#include "support/currency.hpp"

namespace ldg {

// The sum of OpeningBalance over plain and detail accounts; 0 for an empty chart.
Currency OpeningBalance(store::Database& database);
// The same over SaveOB.
Currency SavedOpeningBalance(store::Database& database);

// Copies OpeningBalance to SaveOB on every row, in one transaction of the
// workspace when one is given.
void SaveOpeningBalance(store::Database& database, store::Workspace* workspace = nullptr);
// Copies SaveOB back to OpeningBalance on every row, commits, then runs
// recalc_balances (the recalculation of every Balance with ChildrensBalance).
void RestoreOpeningBalance(store::Database& database, store::Workspace* workspace = nullptr,
                           const std::function<void()>& recalc_balances = {});

}  // namespace ldg
