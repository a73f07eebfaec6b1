// Security: the logon to the record store. It reads the workgroup file of the
// product from the per-user settings, makes an empty user "Admin" and creates
// the workspace. Front ends never see it.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "store/workspace.hpp"
#include "support/variant.hpp"

namespace ldg {

class Security {
 public:
  // An empty workspace name raises 0x800403E8, source "Security", "Desired
  // workspace name missing!". An empty user becomes "Admin" with an empty
  // password: both arguments are changed for the caller.
  std::shared_ptr<store::Workspace> Login(Variant& user, Variant& password, std::string_view workspace_name,
                                          const Variant& product_name);
  // The operating system's name of the process's user.
  std::string GetSystemUser() const;
  // No registered user is kept: always the empty value.
  Variant GetRegisteredUser() const { return Variant(); }
};

}  // namespace ldg
