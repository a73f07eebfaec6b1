// Movement: one line of a book entry: one signed amount on one account, with
// its text, foreign amount, tax and links to other lines. A line belongs to one
// Movements collection, owned by one BookEntry: the line holds the record, the
// collection holds the logic that keeps the lines consistent, and every change
// with consequences for other lines is reported to the owning collection.
// Saving a line also carries its effect onto the stored balance of its account,
// inside the book entry's transaction.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "store/recordset.hpp"
#include "support/currency.hpp"
#include "support/variant.hpp"

namespace ldg {

class Account;
class Movements;

// Published for callers that pack a line's state into one number; unused here.
enum MovFlags : int16_t {
  lgrMovFlagTaxManual = 128,
  lgrMovFlagDependent = 64,
  lgrMovFlagIsNetAmount = 32,
  lgrMovFlagIsDebit = 16,
};

class Movement : public Object {
 public:
  int32_t ID() const { return current_.id; }
  int32_t InternalID() const { return internal_id_; }
  std::shared_ptr<ldg::Account> Account() const { return current_.account; }
  // Reports OnAccountChanged when the ID changes to a real account and the line has an owner.
  void Account(std::shared_ptr<ldg::Account> account);
  int32_t BalancingAccountID() const { return current_.balancing_account_id; }
  // Null stores 0.
  void BalancingAccountID(const Variant& value);
  Variant Text() const { return Variant(current_.text); }
  void Text(const Variant& value);
  void ChangeAmount(Currency amount, bool change_fc_amount);
  void ChangeFCAmount(Currency fc_amount, bool change_amount);
  Currency Amount() const { return current_.amount; }
  void Amount(Currency value) { ChangeAmount(value, false); }
  // Null for 0.
  Variant FCID() const;
  void FCID(const Variant& value);
  Currency FCAmount() const { return current_.fc_amount; }
  // Clears BalanceDestination first.
  void FCAmount(Currency value);
  Variant Reference() const { return current_.reference; }
  void Reference(const Variant& value) { current_.reference = value; }
  Variant Valuta() const { return current_.valuta; }
  // A date is stored, Null or Empty store Null, anything else raises 1163.
  void Valuta(const Variant& value);
  // Null for 0.
  Variant TaxID() const;
  // Null stores 0 without a report (deliberate: comparing with Null is never a difference).
  void TaxID(const Variant& value);
  void SetTaxID(int32_t value) { current_.tax_id = value; }
  bool TaxManual() const { return current_.tax_manual; }
  void TaxManual(bool value) { current_.tax_manual = value; }
  bool IsNetAmount() const { return current_.is_net_amount; }
  void IsNetAmount(bool value) { current_.is_net_amount = value; }
  int32_t DependentMovementID() const { return current_.dependent_movement_id; }
  bool IsDependent() const { return current_.is_dependent; }
  int32_t MasterID() const { return current_.master_id; }
  Currency FCManualRate() const { return fc_manual_rate_; }
  void FCManualRate(Currency value) { fc_manual_rate_ = value; }
  void ExecuteUpdate();
  // Doubles the apostrophes of Text in the member itself (deliberate).
  std::string GetUpdateSet();
  void Validate();
  // The line that owns this tax line; null without an owner collection.
  std::shared_ptr<Movement> AutomatismOwner() const;
  bool BalanceDestination() const { return balance_destination_; }
  void BalanceDestination(bool value);
  bool MainMovement() const { return main_movement_; }
  void MainMovement(bool value);

  // For the owning collection.
  void SetOwner(Movements* owner) { owner_ = owner; }
  void ClearOwner() { owner_ = nullptr; }
  Movements* Owner() const { return owner_; }
  void SetID(int32_t id) { current_.id = id; }
  void SetInternalID(int32_t id) { internal_id_ = id; }
  void ClearID() { current_.id = 0; }
  void SetTextSilently(const std::string& text) { current_.text = text; }
  void SetAmountSilently(Currency amount) { current_.amount = amount; }
  void SetFCAmountSilently(Currency fc_amount) { current_.fc_amount = fc_amount; }
  void SetAccountSilently(std::shared_ptr<ldg::Account> account) { current_.account = std::move(account); }
  int32_t PreviousTaxID() const { return previous_tax_id_; }
  void SetDependentMovementID(int32_t id) { current_.dependent_movement_id = id; }
  void SetIsDependent(bool value) { current_.is_dependent = value; }
  void SetBalanceDestinationFlag(bool value) { balance_destination_ = value; }
  void SetMainMovementFlag(bool value) { main_movement_ = value; }
  // Writes the line and its effect on the stored balances, inside the entry's transaction.
  void Save();
  // Takes the stored amounts off the account and deletes the row.
  void DeleteFromDatabase();
  void LoadFromRecord(store::Recordset& record);
  void TakeStoredCopy();
  // The reverse line of a storno.
  void MakeStorno();
  // The ID of the account's currency, 0 when it has none.
  static int32_t CurrencyKeyOf(const ldg::Account& account);

 private:
  struct Values {
    int32_t id = 0;
    std::shared_ptr<ldg::Account> account;
    int32_t balancing_account_id = 0;
    std::string text;
    Currency amount;
    int32_t fc_id = 0;
    Currency fc_amount;
    Variant reference = Variant::Null();
    Variant valuta = Variant::Null();
    int32_t tax_id = 0;
    bool tax_manual = false;
    bool is_net_amount = false;
    int32_t dependent_movement_id = 0;
    bool is_dependent = false;
    int32_t master_id = 0;
  };

  void Insert();
  // Refreshes the account's balances from its row, shifts them, updates the account.
  static void ShiftBalances(ldg::Account& account, Currency amount, Currency fc_amount, bool reload);

  int32_t internal_id_ = 0;
  Values current_;
  Values stored_;
  Currency fc_manual_rate_;
  Currency stored_fc_manual_rate_;
  int32_t previous_tax_id_ = 0;
  bool balance_destination_ = false;
  bool main_movement_ = false;
  Movements* owner_ = nullptr;
};

}  // namespace ldg
