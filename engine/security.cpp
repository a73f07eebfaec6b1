#include "engine/security.hpp"

#include "engine/engine_state.hpp"
#include "support/conversions.hpp"
#include "support/messages.hpp"
#include "support/platform.hpp"
#include "support/settings_store.hpp"

namespace ldg {

namespace {
constexpr int32_t kWorkspaceNameMissing = kErrorBase + 0x3E8;
}  // namespace

std::shared_ptr<store::Workspace> Security::Login(Variant& user, Variant& password,
                                                  std::string_view workspace_name,
                                                  const Variant& product_name) {
  if (workspace_name.empty())
    RaiseError(kWorkspaceNameMissing, "Desired workspace name missing!", "Security");
  const std::string system_db = SettingsStore().GetSetting(CStr(product_name), "Workgroup", "SystemDB", "");
  if (!system_db.empty()) State().DBEngine().SystemDB(system_db);
  if (CStr(user).empty()) {
    user = "Admin";
    password = "";
  }
  return State().DBEngine().CreateWorkspace(workspace_name, CStr(user), CStr(password), store::dbUseJet);
}

std::string Security::GetSystemUser() const { return SystemUserName(); }

}  // namespace ldg
