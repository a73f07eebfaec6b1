// Test helpers: a scratch folder removed at the end of a test, and environment
// variables set or unset for one test and restored afterwards. Every test that
// can reach the per-user settings store points XDG_CONFIG_HOME at a scratch
// folder, so the user's own settings are never read or written.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <optional>
#include <random>
#include <string>

namespace ldg::testing {

class ScratchFolder {
 public:
  ScratchFolder() {
    std::random_device random;
    path_ = std::filesystem::temp_directory_path() /
            ("ldg_test_" + std::to_string(::getpid()) + "_" + std::to_string(random()));
    std::filesystem::create_directories(path_);
  }
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::permissions(path_, std::filesystem::perms::owner_all, std::filesystem::perm_options::add,
                                 ignored);
    std::filesystem::remove_all(path_, ignored);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }
  std::string String() const { return path_.string(); }
  // Creates a sub folder and gives its path.
  std::string MakeFolder(const std::string& relative) const {
    std::filesystem::create_directories(path_ / relative);
    return (path_ / relative).string();
  }

 private:
  std::filesystem::path path_;
};

class ScopedEnvironment {
 public:
  ScopedEnvironment() = default;
  ~ScopedEnvironment() {
    for (const auto& [name, value] : saved_) {
      if (value) {
        ::setenv(name.c_str(), value->c_str(), 1);
      } else {
        ::unsetenv(name.c_str());
      }
    }
  }
  ScopedEnvironment(const ScopedEnvironment&) = delete;
  ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

  void Set(const std::string& name, const std::string& value) {
    Save(name);
    ::setenv(name.c_str(), value.c_str(), 1);
  }
  void Unset(const std::string& name) {
    Save(name);
    ::unsetenv(name.c_str());
  }

 private:
  void Save(const std::string& name) {
    if (saved_.count(name)) return;
    const char* value = std::getenv(name.c_str());
    saved_[name] = value ? std::optional<std::string>(value) : std::nullopt;
  }

  std::map<std::string, std::optional<std::string>> saved_;
};

}  // namespace ldg::testing
