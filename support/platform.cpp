#include "support/platform.hpp"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

namespace ldg {
namespace {

thread_local Platform* platform_for_testing = nullptr;

// One field of the process's user in the password database; empty when the
// user has no entry.
std::string PasswordEntryField(char* passwd::*field) {
  passwd entry{};
  passwd* found = nullptr;
  char buffer[4096];
  if (getpwuid_r(geteuid(), &entry, buffer, sizeof buffer, &found) != 0 || !found || !(found->*field))
    return {};
  return found->*field;
}

}  // namespace

void Platform::SetDataExecutionPolicy(int) {}

bool Platform::SetSystemLocaleItem(LocaleItem, std::string_view) { return false; }

void Platform::BroadcastSettingChange() {}

Platform& CurrentPlatform() {
  static Platform no_effects;
  return platform_for_testing ? *platform_for_testing : no_effects;
}

void SetPlatformForTesting(Platform* platform) { platform_for_testing = platform; }

void DisableDataExecutionPrevention(Platform& platform) { platform.SetDataExecutionPolicy(0); }

void WriteSystemSeparators(Platform& platform) {
  platform.SetSystemLocaleItem(LocaleItem::kMonetaryDecimalSeparator, ".");
  platform.SetSystemLocaleItem(LocaleItem::kMonetaryThousandSeparator, "'");
  platform.SetSystemLocaleItem(LocaleItem::kDecimalSeparator, ".");
  if (platform.SetSystemLocaleItem(LocaleItem::kThousandSeparator, "'")) platform.BroadcastSettingChange();
}

std::string EnvironmentValue(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

std::string ComputerName() {
  std::string name = EnvironmentValue("COMPUTERNAME");
  if (!name.empty()) return name;
  char host[256] = {};
  if (gethostname(host, sizeof host - 1) != 0) return {};
  return host;
}

std::string UserName() {
  std::string name = EnvironmentValue("USERNAME");
  return name.empty() ? SystemUserName() : name;
}

std::string SystemUserName() {
  std::string name = PasswordEntryField(&passwd::pw_name);
  return name.empty() ? EnvironmentValue("LOGNAME") : name;
}

std::string UserHomeFolder() {
  std::string home = EnvironmentValue("HOME");
  return home.empty() ? PasswordEntryField(&passwd::pw_dir) : home;
}

}  // namespace ldg
