// AccountLinks: what an account reaches in the layers above the chart of
// accounts: taxes and currencies by ID, its budget, and the check of a journal
// id. Those layers fill the slots at program start (their registration files);
// an empty slot raises run-time error 91, as a member call on Nothing would, so
// that an account whose TaxID or FCID isn't 0 fails its lookup until taxes and
// currencies are linked.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "support/currency.hpp"
#include "support/variant.hpp"

namespace ldg {

class Tax;
class ForeinCurrency;
class Budget;

struct AccountLinks {
  // Taxes.Item under the key "ID" + id.
  std::function<std::shared_ptr<ldg::Tax>(int32_t tax_id)> tax_item;
  // Tax.ID of a tax object.
  std::function<int32_t(const ldg::Tax& tax)> tax_id;
  // ForeinCurrencies.Item under the key "ID" + id.
  std::function<std::shared_ptr<ldg::ForeinCurrency>(int32_t fc_id)> forein_currency_item;
  // A new budget object.
  std::function<std::shared_ptr<ldg::Budget>()> new_budget;
  // Binds the budget to an account's ID.
  std::function<void(ldg::Budget& budget, int32_t account_id)> bind_budget;
  // Writes the budget's period amounts and gives its YearBudget.
  std::function<Currency(ldg::Budget& budget)> write_budget;
  // Journals.Item of the open engine; raises when there is no such journal.
  std::function<void(const Variant& index_or_key)> journal_item;
};

// The links of the process; filled before main runs.
AccountLinks& RegisteredAccountLinks();

// The calls through the slots; an empty slot raises run-time error 91.
std::shared_ptr<Tax> LinkedTax(int32_t tax_id);
int32_t LinkedTaxID(const Tax& tax);
std::shared_ptr<ForeinCurrency> LinkedForeinCurrency(int32_t fc_id);
std::shared_ptr<Budget> LinkedNewBudget();
void LinkedBindBudget(Budget& budget, int32_t account_id);
Currency LinkedWriteBudget(Budget& budget);
void LinkedJournalItem(const Variant& index_or_key);

}  // namespace ldg
