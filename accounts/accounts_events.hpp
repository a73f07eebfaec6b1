// AccountsEvents: what the Accounts collection tells its listeners. Every
// method has an empty default; a host overrides the ones it wants and registers
// the listener with Accounts::AddListener. The account is passed by reference,
// as the object model does; Deleted may carry null (the one-row delete of a
// recursive delete signals after the row is gone).
#pragma once

#include <memory>

namespace ldg {

class Account;

class AccountsEvents {
 public:
  virtual ~AccountsEvents() = default;
  virtual void Created(std::shared_ptr<Account>& /*account*/) {}
  virtual void Updated(std::shared_ptr<Account>& /*account*/) {}
  virtual void Deleted(std::shared_ptr<Account>& /*account*/) {}
};

}  // namespace ldg
