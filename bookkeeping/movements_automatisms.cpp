// The change handlers of Movements: what follows when a caller changes the
// account, tax, amount or foreign amount of a line in memory. They create and
// fold back tax lines, keep base and foreign amounts in step, mirror the result
// to the other main line of a simple entry and let the destination line take up
// the difference. Nothing is written to the database here.
#include <memory>

#include "accounts/account.hpp"
#include "accounts/account_links.hpp"
#include "bookkeeping/book_entry.hpp"
#include "bookkeeping/movements.hpp"
#include "support/error.hpp"
#include "support/keys.hpp"

namespace ldg {
namespace {

int16_t SignOf(Currency value) { return value < Currency() ? -1 : 1; }
Currency Signed(int16_t sign, Currency value) { return sign < 0 ? -value : value; }

bool HasTaxLine(const Movement& line) { return line.DependentMovementID() != 0; }
int32_t TaxKeyOf(const Movement& line) { return line.TaxID().IsNull() ? 0 : line.TaxID().AsLong(); }

// A tax by its ID, as the tax collection looks it up (its own error for an unknown ID).
std::shared_ptr<Tax> TaxOf(int32_t tax_id) { return LinkedTax(tax_id); }

// ---- Tax and currency arithmetic --------------------------------------------
// Splitting an amount into net and tax needs the kind and dated rate of a tax;
// converting between base and foreign amounts needs the dated rate and unit of a
// currency. Both come from the master data layer, which isn't linked into this
// library. Until it is, each of these steps raises run-time error 91, as the
// lookup of a tax or a currency does while that layer is missing: a line never
// silently keeps an amount that should have been split or converted.

// Sets the line's net amount, its tax line's account, text and tax amount; gives the gross amount.
Currency ApplyTaxSplit(Movement& /*line*/, const std::shared_ptr<Tax>& /*tax*/,
                       const std::shared_ptr<Tax>& /*old_tax*/, int16_t /*sign*/, Currency /*abs_amount*/) {
  RaiseRuntime(kErrObjectNotSet);
}

// The caller's amount split by the line's tax into the line's net and its tax line's amount; gives the gross.
Currency SplitChangedAmount(Movement& /*line*/, const std::shared_ptr<Tax>& /*tax*/, Movement& /*tax_line*/,
                            int16_t /*sign*/, Currency /*abs_amount*/) {
  RaiseRuntime(kErrObjectNotSet);
}

// The other main line's net and tax, by its own tax, when only that line carries a tax line.
void MirrorOntoTaxedCounterpart(Movement& /*counterpart*/, const std::shared_ptr<Tax>& /*counterpart_tax*/,
                                int16_t /*sign*/, Currency /*gross*/) {
  RaiseRuntime(kErrObjectNotSet);
}

// The rate implied by a base and a foreign amount, per unit of the line's currency.
Currency ImpliedRate(const Movement& /*line*/, Currency /*abs_amount*/, Currency /*abs_fc_amount*/) {
  RaiseRuntime(kErrObjectNotSet);
}

// The base amount of a foreign amount at the dated rate, with the tax of the line's account.
void ConvertForeignAmount(Movement& /*line*/, int16_t /*sign*/, Currency /*abs_fc_amount*/) {
  RaiseRuntime(kErrObjectNotSet);
}

// The foreign amount of the line's amount, by its manual rate or the dated rate.
Currency ForeignAmountOf(const Movement& /*line*/) { RaiseRuntime(kErrObjectNotSet); }

// ---- End of tax and currency arithmetic ---------------------------------------

}  // namespace

void Movements::RecalcFCAmount(Movement& line) {
  if (line.FCID().IsNull()) return;
  // Assigned through the property: BalanceDestination is cleared and a change reports back.
  line.FCAmount(ForeignAmountOf(line));
}

void Movements::OnTaxChanged(Movement& line) {
  if (line.IsDependent()) return;
  const int32_t tax_id = TaxKeyOf(line);
  // A line whose tax is cleared has no tax to look up; the old one is looked up all the same.
  const std::shared_ptr<Tax> tax = tax_id != 0 ? TaxOf(tax_id) : nullptr;
  const std::shared_ptr<Tax> old_tax = line.PreviousTaxID() != 0 ? TaxOf(line.PreviousTaxID()) : nullptr;
  const int16_t sign = SignOf(line.Amount());
  const Currency abs_amount = line.Amount().Abs();
  Currency gross = abs_amount;
  if (tax_id != 0 && tax_automatism_) {
    gross = ApplyTaxSplit(line, tax, old_tax, sign, abs_amount);
  } else if (HasTaxLine(line) && tax_automatism_) {
    // Deliberate: the tax line's amount is added with its sign, so for a negative line it subtracts.
    const std::shared_ptr<Movement> tax_line = ItemByInternalID(line.DependentMovementID());
    gross = abs_amount + tax_line->Amount();
    line.SetAmountSilently(Signed(sign, gross));
    Remove(BuildKey(tax_line->InternalID()));
    line.SetDependentMovementID(0);
  }
  RecalcBalancingAccounts();
  if (simple_mode_ && balancing_automatism_) MirrorToCounterpart(line, sign, gross);
}

void Movements::OnAccountChanged(Movement& line) {
  const std::shared_ptr<ldg::Account> account = line.Account();
  line.FCManualRate(Currency());
  line.FCID(Variant(Movement::CurrencyKeyOf(*account)));
  const int32_t old_tax_id = TaxKeyOf(line);
  const std::shared_ptr<Tax> old_tax = old_tax_id != 0 ? TaxOf(old_tax_id) : nullptr;
  const std::shared_ptr<Tax> tax = account->Tax();
  line.SetTaxID(tax ? account->TaxID() : 0);
  if (line.IsDependent()) return;
  if (account->ActivateValuta()) line.Valuta(Variant(RateDate()));
  if (line.FCID().IsNull()) {
    line.FCAmount(Currency());
  } else {
    RecalcFCAmount(line);
  }
  const int16_t sign = SignOf(line.Amount());
  const Currency abs_amount = line.Amount().Abs();
  Currency gross = abs_amount;
  if (tax && tax_automatism_) {
    gross = ApplyTaxSplit(line, tax, old_tax, sign, abs_amount);
  } else if (HasTaxLine(line) && tax_automatism_) {
    // The tax folds back into the line.
    const std::shared_ptr<Movement> tax_line = ItemByInternalID(line.DependentMovementID());
    gross = abs_amount + tax_line->Amount().Abs();
    Remove(BuildKey(tax_line->InternalID()));
    line.SetDependentMovementID(0);
    line.SetAmountSilently(Signed(sign, gross));
  }
  RecalcBalancingAccounts();
  if (simple_mode_ && balancing_automatism_) MirrorToCounterpart(line, sign, gross);
}

void Movements::MirrorToCounterpart(Movement& line, int16_t sign, Currency gross) {
  const std::shared_ptr<Movement> counterpart = Counterpart(line.InternalID());
  if (HasTaxLine(line)) {
    line.TaxManual(false);
    counterpart->SetAmountSilently(Signed(static_cast<int16_t>(-sign), gross.Abs()));
    RecalcFCAmount(*counterpart);
  } else if (HasTaxLine(*counterpart)) {
    MirrorOntoTaxedCounterpart(*counterpart, TaxOf(TaxKeyOf(*counterpart)), sign, gross);
  } else {
    counterpart->SetAmountSilently(Signed(static_cast<int16_t>(-sign), line.Amount().Abs()));
    RecalcFCAmount(*counterpart);
  }
}

void Movements::OnAmountChanged(Movement& line, bool change_fc_amount) {
  const Currency abs_amount = line.Amount().Abs();
  if (change_fc_amount || line.FCID().IsNull()) {
    line.FCManualRate(Currency());
  } else {
    line.FCManualRate(ImpliedRate(line, abs_amount, line.FCAmount().Abs()));
  }
  std::shared_ptr<Movement> tax_owner;
  if (line.IsDependent() && tax_automatism_) {
    tax_owner = FindOwner(line.InternalID());
    if (!tax_owner || !tax_owner->Account()) RaiseRuntime(kErrObjectNotSet);
    // Where the account allows no choice of tax, the typed amount of its tax line simply stands.
    if (!tax_owner->Account()->TaxCanChoose()) return;
    tax_owner->TaxManual(true);
    tax_owner->SetTaxID(0);
  }
  const int16_t sign = SignOf(line.Amount());
  line.SetFCAmountSilently(Signed(sign, line.FCAmount().Abs()));
  Currency gross = abs_amount;
  if (HasTaxLine(line) && !line.TaxManual() && tax_automatism_) {
    const std::shared_ptr<Tax> tax = TaxOf(TaxKeyOf(line));
    gross = SplitChangedAmount(line, tax, *ItemByInternalID(line.DependentMovementID()), sign, abs_amount);
  } else {
    line.SetAmountSilently(Signed(sign, abs_amount));
  }
  if (change_fc_amount) RecalcFCAmount(line);
  if (tax_owner) {
    // A typed tax amount makes the lines independent until they are next recounted.
    simple_mode_ = false;
    return;
  }
  if (simple_mode_ && balancing_automatism_) {
    const std::shared_ptr<Movement> counterpart = Counterpart(line.InternalID());
    const auto opposite = static_cast<int16_t>(-sign);
    if ((!HasTaxLine(line) && !HasTaxLine(*counterpart)) || !tax_automatism_) {
      counterpart->SetAmountSilently(Signed(opposite, line.Amount().Abs()));
      RecalcFCAmount(*counterpart);
    } else if (HasTaxLine(line)) {
      counterpart->SetAmountSilently(Signed(opposite, gross));
      RecalcFCAmount(*counterpart);
    } else {
      MirrorOntoTaxedCounterpart(*counterpart, TaxOf(TaxKeyOf(*counterpart)), sign, abs_amount);
    }
  }
  Rebalance();
  if (entry_ != nullptr) entry_->RaiseAmountChanged(line.InternalID());
}

// No event is raised for a foreign amount change.
void Movements::OnFCAmountChanged(Movement& line, bool change_amount) {
  const Currency abs_fc_amount = line.FCAmount().Abs();
  if (!change_amount) {
    line.FCManualRate(line.FCID().IsNull() ? Currency()
                                           : ImpliedRate(line, line.Amount().Abs(), abs_fc_amount));
  }
  const int16_t sign = SignOf(line.FCAmount());
  line.SetAmountSilently(Signed(sign, line.Amount().Abs()));
  if (!line.FCID().IsNull()) {
    line.SetFCAmountSilently(Signed(sign, abs_fc_amount));
    if (change_amount) ConvertForeignAmount(line, sign, abs_fc_amount);
  }
  Rebalance();
}

}  // namespace ldg
