// The few effects the engine has on the machine around it, behind one narrow
// interface: the process's data-execution policy, writes into the system
// locale and the broadcast that tells other programs of them. On this
// platform the default does none of them: the machine's locale is never
// changed. Also the names of the computer and the user, and the environment.
#pragma once

#include <string>
#include <string_view>

namespace ldg {

// The items of the system locale that the engine writes at creation.
enum class LocaleItem {
  kMonetaryDecimalSeparator,
  kMonetaryThousandSeparator,
  kDecimalSeparator,
  kThousandSeparator,
};

class Platform {
 public:
  virtual ~Platform() = default;

  // Sets the process's data-execution policy (0 switches it off).
  virtual void SetDataExecutionPolicy(int flags);
  // Writes one item of the system locale; true when it was written.
  virtual bool SetSystemLocaleItem(LocaleItem item, std::string_view text);
  // Tells every top-level window that settings changed.
  virtual void BroadcastSettingChange();
};

// The platform in use: the default of no effects, or the one a test set.
Platform& CurrentPlatform();
// Hook for tests: uses the given platform on this thread; nullptr brings the
// default back. The caller keeps the object alive while it is set.
void SetPlatformForTesting(Platform* platform);

// Switches the data-execution policy off.
void DisableDataExecutionPrevention(Platform& platform);
// Writes "." and "'" as monetary decimal and thousand separators, then as
// decimal and thousand separators, in this order; when the last write
// succeeds, broadcasts the change.
void WriteSystemSeparators(Platform& platform);

// The value of an environment variable; the empty text when it is unset.
std::string EnvironmentValue(const char* name);
// $COMPUTERNAME, else the host name.
std::string ComputerName();
// $USERNAME, else the login name of the process's user.
std::string UserName();
// The login name of the process's user, as the operating system has it.
std::string SystemUserName();
// $HOME, else the home folder the operating system has for the process's user.
std::string UserHomeFolder();

}  // namespace ldg
