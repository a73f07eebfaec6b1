// Registry: a wrapper of one open key of a hierarchical key store with four
// roots. Select a root, name the path with Key and SubKey, open it, then
// enumerate, create and delete sub keys, and read, write and delete values:
// texts, and Byte, Integer and Long as 32-bit numbers. The keys live in the
// per-user settings store, each root a namespace of its own there (its
// application name), each key a section named by its path below the root, each
// value a key of that section. Names compare ignoring case.
//
// Failures raise 0x80040001 with the source "ldg": a key that cannot be opened,
// or an operation on a key that is not open, with a text beginning
// "Key not opened: "; a delete that fails with a text beginning "Error ".
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/settings_store.hpp"
#include "support/variant.hpp"

namespace ldg {

class Registry {
 public:
  enum RootKey : uint32_t {
    kClassesRoot = 0x80000000u,
    kCurrentUser = 0x80000001u,
    kLocalMachine = 0x80000002u,
    kUsers = 0x80000003u,
  };

  // Starts on the root of the current user, with no key open.
  explicit Registry(SettingsStore store = SettingsStore());

  // Select the root that KeyOpen starts from.
  void KeyOpenLocalMachine() { root_ = kLocalMachine; }
  void KeyOpenCurrentUser() { root_ = kCurrentUser; }
  void KeyOpenClassesRoot() { root_ = kClassesRoot; }
  void KeyOpenUsers() { root_ = kUsers; }
  uint32_t Root() const { return root_; }

  // The path of the key below the root: Key, then SubKey below it.
  const std::string& Key() const { return key_; }
  void Key(std::string key) { key_ = std::move(key); }
  const std::string& SubKey() const { return sub_key_; }
  void SubKey(std::string sub_key) { sub_key_ = std::move(sub_key); }

  // Opens the key that Root, Key and SubKey name; it must exist.
  void KeyOpen();
  void KeyClose();
  bool IsOpen() const { return open_path_.has_value(); }

  // The names of the open key's sub keys in case-insensitive order, and of its
  // values in the order they were first written; nothing after the last.
  std::optional<std::string> SubKeyFirst();
  std::optional<std::string> SubKeyNext();
  std::optional<std::string> ValueNameFirst();
  std::optional<std::string> ValueNameNext();

  // Creates a sub key of the open key (with the keys between, for a path);
  // an existing one stays as it is.
  void SubKeyCreate(std::string_view name);
  // Deletes a sub key of the open key that has no sub keys of its own.
  void SubKeyDelete(std::string_view name);
  void ValueNameDelete(std::string_view name);

  // A text reads as String, a number as Long; a missing value reads as Empty.
  Variant Value(std::string_view name) const;
  // A String is written as text; a Byte, Integer or Long as a 32-bit number;
  // any other kind raises a type mismatch (error 13).
  void Value(std::string_view name, const Variant& value);

  // "HKEY_CURRENT_USER" and its kin: the namespace of a root in the store.
  static std::string RootName(uint32_t root);

 private:
  const std::string& OpenPath() const;
  std::string OpenApp() const { return RootName(open_root_); }
  std::string Describe(uint32_t root, std::string_view path) const;
  std::vector<std::string> ChildNames(const std::string& path) const;
  [[noreturn]] void RaiseNotOpened(uint32_t root, std::string_view path) const;
  [[noreturn]] void RaiseDeleteFailed(std::string_view what, std::string_view reason) const;

  SettingsStore store_;
  uint32_t root_ = kCurrentUser;
  std::string key_;
  std::string sub_key_;
  std::optional<std::string> open_path_;
  uint32_t open_root_ = kCurrentUser;
  std::vector<std::string> sub_keys_;
  size_t next_sub_key_ = 0;
  std::vector<std::string> value_names_;
  size_t next_value_name_ = 0;
};

}  // namespace ldg
