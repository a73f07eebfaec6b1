// Accounts: the engine-wide entry to the chart of the open database. It hands
// out fresh Account objects by ID or by code (never cached), creates accounts
// under the placement rules, runs the type-ahead search and tells its listeners
// when accounts come and go. Created when a database opens, it opens the
// handles that all Account objects share (accounts/account_handles.hpp) and
// releases them at its end.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "accounts/accounts_events.hpp"
#include "store/field.hpp"
#include "support/currency.hpp"
#include "support/variant.hpp"

namespace ldg {

class Account;
class AccountsIndex;

enum RelativePosition : int16_t {
  lgrAccRelLast = 1,
  lgrAccRelNext = 2,
  lgrAccRelPrevious = 3,
  lgrAccRelChild = 4,
  lgrAccRelAutomatic = 5,
};

// The optional arguments of Accounts::Add; a missing one is std::nullopt.
struct NewAccount {
  std::optional<int16_t> relationship;
  Variant code;  // Empty when not given
  Variant name;  // Empty when not given
  std::optional<bool> is_sum;
  std::optional<bool> is_master;
  std::optional<bool> is_debit;
  // Accepted for the callers' sake and ignored: callers set them on the result and Update.
  std::optional<Currency> opening_value;
  std::optional<Currency> value;
  std::optional<int32_t> fc_id;
  std::optional<Currency> fc_opening_value;
  std::optional<Currency> fc_value;
  Variant fc_can_choose_rate;
  std::optional<int32_t> tax_id;
  std::optional<bool> tax_can_choose;
  std::optional<bool> activate_valuta;
  std::optional<bool> activate_reference;
  std::optional<Currency> year_budget;
  std::optional<int32_t> liegen_code;
};

class Accounts {
 public:
  Accounts();
  ~Accounts();
  Accounts(const Accounts&) = delete;
  Accounts& operator=(const Accounts&) = delete;

  // Drops and reopens the shared accounts table record set; errors are ignored.
  void Refresh();
  std::shared_ptr<Account> Add(int32_t relative_id, const NewAccount& options = {});
  // By the run-time type of the argument: Integer or Long by ID, an Account
  // object itself, Nothing gives null, anything else by code (first word of
  // the trimmed text). An unknown account gives null, never an error.
  std::shared_ptr<Account> Item(const Variant& account_info);
  // By a store field: text and memo by code, Long and Integer by ID, other types null.
  std::shared_ptr<Account> Item(const store::Field& field);
  std::shared_ptr<Account> Item(const std::shared_ptr<Account>& account) { return account; }
  Variant ItemExists(const Variant& account_info);
  // The MasterID of Item(ID), read from the account's row without building
  // the account. Nothing when that can't tell: no such row, or a row whose
  // account would also link its currency or tax (which may fail).
  std::optional<int32_t> StoredMasterID(int32_t id);
  // What defaults to 5, the general ledger and the detail accounts.
  std::shared_ptr<AccountsIndex> Search(const Variant& search_text, const Variant& what = Variant());
  int32_t NewClientID();
  std::string NewClientCode();
  void SignalUpdated(std::shared_ptr<Account>& account);
  // Fetches Item(id), yields to the host, raises Deleted with that object.
  void SignalDeleted(int32_t id);
  void SignalCreated(std::shared_ptr<Account>& account);

  // Events: a listener stays registered until removed; the caller keeps it alive.
  void AddListener(AccountsEvents* listener);
  void RemoveListener(AccountsEvents* listener);

 private:
  std::shared_ptr<Account> ItemByID(int32_t id);
  std::shared_ptr<Account> ItemByCode(const std::string& text);

  std::vector<AccountsEvents*> listeners_;
};

}  // namespace ldg
