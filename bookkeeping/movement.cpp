#include "bookkeeping/movement.hpp"

#include <string>

#include "accounts/account.hpp"
#include "accounts/accounts.hpp"
#include "bookkeeping/book_entry.hpp"
#include "bookkeeping/movements.hpp"
#include "bookkeeping/posting_handles.hpp"
#include "engine/current_objects.hpp"
#include "store/constants.hpp"
#include "store/database.hpp"
#include "store/store_error.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/messages.hpp"
#include "support/nullable.hpp"
#include "support/sql_text.hpp"
#include "support/text.hpp"

namespace ldg {
namespace {

constexpr int32_t kMsgInvalidValuta = 1163;
constexpr int32_t kMsgAccountNotSet = 1172;
constexpr int32_t kMsgValutaNotADate = 1173;
constexpr int32_t kMsgSignDiffers = 1174;
constexpr int32_t kMsgNoBookingOnSums = 1220;
constexpr int32_t kMsgNoBookingOnMasters = 1221;
constexpr int32_t kMsgStornoText = 1224;
// The one sum that a system entry (the closing) may book on.
constexpr int32_t kProfitSumID = 2;

int32_t IdOf(const std::shared_ptr<Account>& account) { return account ? account->ID() : 0; }
std::string CodeOf(const std::shared_ptr<Account>& account) { return account ? CStr(account->Code()) : ""; }

// A value above 0 counts as 1, every other value as -1.
int SignForCheck(Currency value) { return value > Currency() ? 1 : -1; }

std::string NumberOrNull(int32_t value) { return value == 0 ? "NULL" : std::to_string(value); }
Variant LongOrNull(int32_t value) { return value >= 1 ? Variant(value) : Variant::Null(); }

}  // namespace

int32_t Movement::CurrencyKeyOf(const ldg::Account& account) {
  return account.ForeinCurrency() ? account.FCID() : 0;
}

void Movement::Account(std::shared_ptr<ldg::Account> account) {
  if (IdOf(current_.account) == IdOf(account)) return;
  current_.account = std::move(account);
  if (current_.account && owner_ != nullptr) owner_->OnAccountChanged(*this);
}

void Movement::BalancingAccountID(const Variant& value) {
  current_.balancing_account_id = value.IsNull() ? 0 : CLng(value);
}

// Comparing with Null is never a difference, so a Null text changes nothing.
void Movement::Text(const Variant& value) {
  if (value.IsNull()) return;
  const std::string text = CStr(value);
  if (text == current_.text) return;
  current_.text = text;
  if (owner_ != nullptr) owner_->OnTextChanged(*this);
}

void Movement::ChangeAmount(Currency amount, bool change_fc_amount) {
  if (amount == current_.amount) return;
  current_.amount = amount;
  if (owner_ != nullptr) owner_->OnAmountChanged(*this, change_fc_amount);
}

void Movement::ChangeFCAmount(Currency fc_amount, bool change_amount) {
  if (fc_amount == current_.fc_amount) return;
  current_.fc_amount = fc_amount;
  if (owner_ != nullptr) owner_->OnFCAmountChanged(*this, change_amount);
}

Variant Movement::FCID() const { return current_.fc_id == 0 ? Variant::Null() : Variant(current_.fc_id); }

void Movement::FCID(const Variant& value) { current_.fc_id = value.IsNull() ? 0 : CLng(value); }

void Movement::FCAmount(Currency value) {
  balance_destination_ = false;
  ChangeFCAmount(value, false);
}

// An empty text counts as no date at all, so that a cleared input field can be handed over.
void Movement::Valuta(const Variant& value) {
  if (!IsGivenText(value)) {
    current_.valuta = Variant::Null();
  } else if (IsDate(value)) {
    current_.valuta = Variant(CDate(value));
  } else {
    RaiseMessage(kMsgInvalidValuta);
  }
}

Variant Movement::TaxID() const { return current_.tax_id == 0 ? Variant::Null() : Variant(current_.tax_id); }

void Movement::TaxID(const Variant& value) {
  const int32_t old_tax_id = current_.tax_id;
  previous_tax_id_ = old_tax_id;
  current_.tax_id = value.IsNull() ? 0 : CLng(value);
  if (value.IsNull()) return;  // comparing with Null is never a difference: no report
  if (current_.tax_id != old_tax_id && owner_ != nullptr) owner_->OnTaxChanged(*this);
}

void Movement::BalanceDestination(bool value) {
  balance_destination_ = value;
  if (value && owner_ != nullptr) owner_->SetBalanceDestination(internal_id_);
}

void Movement::MainMovement(bool value) {
  main_movement_ = value;
  if (value && owner_ != nullptr) owner_->ClearOtherMainMovements(internal_id_);
}

std::shared_ptr<Movement> Movement::AutomatismOwner() const {
  if (owner_ == nullptr) return nullptr;
  try {
    return owner_->FindOwner(internal_id_);
  } catch (const Error&) {
    return nullptr;
  }
}

void Movement::Validate() {
  const auto& account = current_.account;
  if (!account) RaiseMessage(kMsgAccountNotSet);
  if (account->IsSum()) {
    const ldg::BookEntry* entry = owner_ != nullptr ? owner_->BookEntry() : nullptr;
    const bool system_entry = entry != nullptr && entry->IsSystem();
    if (!system_entry || account->ID() != kProfitSumID) RaiseMessage(kMsgNoBookingOnSums);
  }
  if (account->MasterID() == account->ID()) RaiseMessage(kMsgNoBookingOnMasters);
  // Null and Empty pass as the empty text does.
  if (IsGivenText(current_.valuta) && !IsDate(current_.valuta)) RaiseMessage(kMsgValutaNotADate);
  if (current_.fc_id != 0 && !current_.fc_amount.IsZero() &&
      SignForCheck(current_.amount) != SignForCheck(current_.fc_amount)) {
    RaiseMessage(kMsgSignDiffers);
  }
}

void Movement::ShiftBalances(ldg::Account& account, Currency amount, Currency fc_amount, bool reload) {
  if (reload) account.ReloadBalances();
  account.SetBalance(account.Balance() + amount);
  account.SetFCBalance(account.FCBalance() + fc_amount);
  // Every caller runs inside the entry's transaction, which is rolled back as a
  // whole when this fails.
  account.UpdateInCallersTransaction();
}

void Movement::Save() {
  Validate();
  if (current_.id == 0) {
    ShiftBalances(*current_.account, current_.amount, current_.fc_amount, true);
    Insert();
    return;
  }
  if (CodeOf(current_.account) != CodeOf(stored_.account)) {
    if (stored_.account) ShiftBalances(*stored_.account, -stored_.amount, -stored_.fc_amount, true);
    ShiftBalances(*current_.account, current_.amount, current_.fc_amount, true);
  } else {
    ShiftBalances(*current_.account, current_.amount - stored_.amount, current_.fc_amount - stored_.fc_amount,
                  true);
  }
  ExecuteUpdate();
}

// Save has validated the line just before.
void Movement::Insert() {
  store::Recordset& table = SharedMovementsTable();
  const ldg::Account& account = *current_.account;
  const ldg::BookEntry* entry = owner_ != nullptr ? owner_->BookEntry() : nullptr;
  if (entry == nullptr) RaiseRuntime(kErrObjectNotSet);
  table.AddNew();
  current_.id = ReadLong(table.Value("ID"));
  table.Value("EntryID", Variant(entry->ID()));
  table.Value("AccountID", Variant(account.ID()));
  table.Value("BalancingAccountID", LongOrNull(current_.balancing_account_id));
  table.Value("Text", current_.text.empty() ? Variant::Null() : Variant(current_.text));
  table.Value("Amount", Variant(current_.amount));
  // The account's currency is written, not the line's own key.
  table.Value("FCID", LongOrNull(CurrencyKeyOf(account)));
  table.Value("FCAmount", Variant(current_.fc_amount));
  table.Value("Reference", IsGivenText(current_.reference) ? current_.reference : Variant::Null());
  table.Value("Valuta", IsDate(current_.valuta) ? Variant(CDate(current_.valuta)) : Variant::Null());
  table.Value("TaxID", LongOrNull(current_.tax_id));
  table.Value("TaxManual", Variant(current_.tax_manual));
  table.Value("IsNetAmount", Variant(current_.is_net_amount));
  // Still the tax line's internal number here; the collection writes its real ID once all lines are stored.
  table.Value("DependentMovementID", LongOrNull(current_.dependent_movement_id));
  table.Value("IsDependent", Variant(current_.is_dependent));
  table.Value("MasterID", Variant(account.MasterID()));
  table.Update();
}

std::string Movement::GetUpdateSet() {
  std::string set;
  if (CodeOf(current_.account) != CodeOf(stored_.account)) {
    AppendAssignment(set, "AccountID = " + std::to_string(IdOf(current_.account)));
  }
  if (current_.balancing_account_id != stored_.balancing_account_id) {
    AppendAssignment(set, "BalancingAccountID = " + NumberOrNull(current_.balancing_account_id));
  }
  if (current_.text != stored_.text) {
    if (current_.text.empty()) {
      AppendAssignment(set, "[Text] = NULL");
    } else {
      // Deliberate: the doubling works on the member, so the object shows the doubled apostrophes.
      current_.text = Replace(current_.text, "'", "''");
      AppendAssignment(set, "[Text] = '" + current_.text + "'");
    }
  }
  if (current_.amount != stored_.amount)
    AppendAssignment(set, "Amount = " + CurrencyToSqlText(current_.amount));
  if (current_.fc_id != stored_.fc_id) AppendAssignment(set, "FCID = " + NumberOrNull(current_.fc_id));
  if (current_.fc_amount != stored_.fc_amount)
    AppendAssignment(set, "FCAmount = " + CurrencyToSqlText(current_.fc_amount));
  // A Null reference or value date compares as no difference and is never written.
  if (!current_.reference.IsNull() && CStr(current_.reference) != CStr(stored_.reference)) {
    const std::string reference = CStr(current_.reference);
    // The reference goes between quotes as it stands: one holding a quote can't be written.
    store::RefuseQuote(reference);
    AppendAssignment(set,
                     reference.empty() ? std::string("Reference =NULL") : "Reference ='" + reference + "'");
  }
  if (!current_.valuta.IsNull() &&
      !(IsDate(current_.valuta) && CDate(current_.valuta) == CDate(stored_.valuta))) {
    AppendAssignment(set, IsDate(current_.valuta) ? "Valuta = " + CStr(DateLiteral(current_.valuta))
                                                  : std::string("Valuta = NULL"));
  }
  if (current_.tax_id != stored_.tax_id) AppendAssignment(set, "TaxID = " + NumberOrNull(current_.tax_id));
  if (current_.tax_manual != stored_.tax_manual) {
    AppendAssignment(set, std::string("TaxManual = ") + BooleanToSqlText(current_.tax_manual));
  }
  if (current_.is_net_amount != stored_.is_net_amount) {
    AppendAssignment(set, std::string("IsNetAmount = ") + BooleanToSqlText(current_.is_net_amount));
  }
  if (current_.dependent_movement_id != stored_.dependent_movement_id) {
    AppendAssignment(set, "DependentMovementID = " + NumberOrNull(current_.dependent_movement_id));
  }
  if (current_.is_dependent != stored_.is_dependent) {
    AppendAssignment(set, std::string("IsDependent = ") + BooleanToSqlText(current_.is_dependent));
  }
  // Deliberate: this piece replaces all that was built before it.
  if (current_.master_id != stored_.master_id) set = "MasterID = " + NumberOrNull(current_.master_id);
  return set;
}

void Movement::ExecuteUpdate() {
  Validate();
  const std::string set = GetUpdateSet();
  if (set.empty()) return;
  CurrentDatabase().Execute(
      "UPDATE Movements SET " + set + " WHERE (ID=" + std::to_string(current_.id) + ");",
      store::dbFailOnError);
}

// The stored amounts sit on the account the line was stored with; no refresh here, unlike Save.
void Movement::DeleteFromDatabase() {
  if (current_.id == 0) return;
  const auto& account = stored_.account ? stored_.account : current_.account;
  if (!account) RaiseRuntime(kErrObjectNotSet);
  ShiftBalances(*account, -stored_.amount, -stored_.fc_amount, false);
  CurrentDatabase().Execute("DELETE FROM Movements WHERE ID=" + std::to_string(current_.id) + ";",
                            store::dbFailOnError);
}

void Movement::LoadFromRecord(store::Recordset& record) {
  current_.id = ReadLong(record, "ID");
  const int32_t account_id = ReadLong(record, "AccountID");
  current_.account = account_id == 0 ? nullptr : CurrentAccounts().Item(Variant(account_id));
  current_.balancing_account_id = ReadLong(record, "BalancingAccountID");
  current_.text = ReadString(record, "Text");
  current_.amount = ReadCurrency(record, "Amount");
  current_.fc_id = ReadLong(record, "FCID");
  current_.fc_amount = ReadCurrency(record, "FCAmount");
  current_.reference = record.Value("Reference");
  current_.valuta = record.Value("Valuta");
  current_.tax_id = ReadLong(record, "TaxID");
  current_.tax_manual = ReadBoolean(record, "TaxManual");
  current_.is_net_amount = ReadBoolean(record, "IsNetAmount");
  current_.dependent_movement_id = ReadLong(record, "DependentMovementID");
  current_.is_dependent = ReadBoolean(record, "IsDependent");
  current_.master_id = ReadLong(record, "MasterID");
  TakeStoredCopy();
}

void Movement::TakeStoredCopy() {
  stored_ = current_;
  if (stored_.reference.IsNull() || stored_.reference.IsEmpty()) stored_.reference = Variant(std::string());
  stored_.valuta = IsDate(stored_.valuta) ? Variant(CDate(stored_.valuta)) : Variant(OleDate());
  stored_fc_manual_rate_ = fc_manual_rate_;
}

void Movement::MakeStorno() {
  current_.id = 0;
  const ldg::BookEntry* entry = owner_ != nullptr ? owner_->BookEntry() : nullptr;
  const Variant document_id = entry != nullptr ? entry->DocumentID() : Variant();
  std::string document_text;
  if (!document_id.IsNull() && !document_id.IsEmpty()) {
    document_text = CStr(document_id);
    // Leading zeros and blanks of a numeric document number vanish.
    const double number = Val(document_text);
    if (number != 0) document_text = CStr(Variant(number));
  }
  current_.text = MessageText(kMsgStornoText) + document_text;
  current_.amount = -current_.amount;
  current_.fc_amount = -current_.fc_amount;
}

}  // namespace ldg
