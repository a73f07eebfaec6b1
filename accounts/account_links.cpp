#include "accounts/account_links.hpp"

#include "support/error.hpp"

namespace ldg {

namespace {

template <typename Slot>
const Slot& Linked(const Slot& slot) {
  if (!slot) RaiseRuntime(kErrObjectNotSet);
  return slot;
}

}  // namespace

AccountLinks& RegisteredAccountLinks() {
  static AccountLinks links;
  return links;
}

std::shared_ptr<Tax> LinkedTax(int32_t tax_id) { return Linked(RegisteredAccountLinks().tax_item)(tax_id); }

int32_t LinkedTaxID(const Tax& tax) { return Linked(RegisteredAccountLinks().tax_id)(tax); }

std::shared_ptr<ForeinCurrency> LinkedForeinCurrency(int32_t fc_id) {
  return Linked(RegisteredAccountLinks().forein_currency_item)(fc_id);
}

std::shared_ptr<Budget> LinkedNewBudget() { return Linked(RegisteredAccountLinks().new_budget)(); }

void LinkedBindBudget(Budget& budget, int32_t account_id) {
  Linked(RegisteredAccountLinks().bind_budget)(budget, account_id);
}

Currency LinkedWriteBudget(Budget& budget) { return Linked(RegisteredAccountLinks().write_budget)(budget); }

void LinkedJournalItem(const Variant& index_or_key) {
  Linked(RegisteredAccountLinks().journal_item)(index_or_key);
}

}  // namespace ldg
