// RecalcBalances: the repair path that rebuilds every stored Balance of the open
// database from the opening balances and all movements, of every journal and
// date, and on request every ChildrensBalance from those balances. It works
// row by row without a transaction, yielding to the host after each account;
// nobody may post meanwhile. FCBalance and WorkedBalance are never touched.
#pragma once

namespace ldg {

// Balance := OpeningBalance + the sum of the account's movements, for every
// account; then, when asked, ChildrensBalance of every master and detail
// account := the sum over its children of Balance + ChildrensBalance.
void RecalcBalances(bool recalc_children_balances);

}  // namespace ldg
