#include "support/registry.hpp"

#include <algorithm>
#include <charconv>

#include "support/error.hpp"
#include "support/text.hpp"

namespace ldg {
namespace {

constexpr int32_t kRegistryError = kErrorBase + 1;
// Stored values carry their kind in front of their text.
constexpr std::string_view kTextPrefix = "sz:";
constexpr std::string_view kNumberPrefix = "dword:";

std::vector<std::string> SplitKeyPath(std::string_view path) {
  std::vector<std::string> parts;
  size_t start = 0;
  while (start <= path.size()) {
    size_t backslash = path.find('\\', start);
    if (backslash == std::string_view::npos) backslash = path.size();
    if (backslash > start) parts.emplace_back(path.substr(start, backslash - start));
    start = backslash + 1;
  }
  return parts;
}

// The path with empty parts left out: "\a\\b\" is "a\b".
std::string NormalizeKeyPath(std::string_view path) {
  std::string normal;
  for (const std::string& part : SplitKeyPath(path)) {
    if (!normal.empty()) normal += '\\';
    normal += part;
  }
  return normal;
}

std::string ChildPath(std::string_view parent, std::string_view name) {
  std::string child(parent);
  std::string tail = NormalizeKeyPath(name);
  if (tail.empty()) return child;
  if (!child.empty()) child += '\\';
  return child + tail;
}

bool StartsWithNoCase(std::string_view text, std::string_view prefix) {
  return Len(text) >= Len(prefix) && EqualsNoCase(Left(text, Len(prefix)), prefix);
}

}  // namespace

Registry::Registry(SettingsStore store) : store_(std::move(store)) {}

std::string Registry::RootName(uint32_t root) {
  switch (root) {
    case kClassesRoot:
      return "HKEY_CLASSES_ROOT";
    case kCurrentUser:
      return "HKEY_CURRENT_USER";
    case kLocalMachine:
      return "HKEY_LOCAL_MACHINE";
    case kUsers:
      return "HKEY_USERS";
    default:
      return "HKEY_" + std::to_string(root);
  }
}

void Registry::KeyOpen() {
  std::string path = NormalizeKeyPath(key_ + "\\" + sub_key_);
  if (!path.empty() && !store_.SectionExists(RootName(root_), path)) RaiseNotOpened(root_, path);
  open_path_ = path;
  open_root_ = root_;
  sub_keys_.clear();
  value_names_.clear();
}

void Registry::KeyClose() {
  open_path_.reset();
  sub_keys_.clear();
  value_names_.clear();
}

std::optional<std::string> Registry::SubKeyFirst() {
  sub_keys_ = ChildNames(OpenPath());
  next_sub_key_ = 0;
  return SubKeyNext();
}

std::optional<std::string> Registry::SubKeyNext() {
  if (next_sub_key_ >= sub_keys_.size()) return std::nullopt;
  return sub_keys_[next_sub_key_++];
}

std::optional<std::string> Registry::ValueNameFirst() {
  value_names_.clear();
  for (const auto& item : store_.GetAllSettings(OpenApp(), OpenPath())) value_names_.push_back(item.first);
  next_value_name_ = 0;
  return ValueNameNext();
}

std::optional<std::string> Registry::ValueNameNext() {
  if (next_value_name_ >= value_names_.size()) return std::nullopt;
  return value_names_[next_value_name_++];
}

void Registry::SubKeyCreate(std::string_view name) {
  std::string path = OpenPath();
  for (const std::string& part : SplitKeyPath(name)) {
    path = ChildPath(path, part);
    store_.CreateSection(OpenApp(), path);
  }
}

void Registry::SubKeyDelete(std::string_view name) {
  std::string path = ChildPath(OpenPath(), name);
  if (path == OpenPath() || !store_.SectionExists(OpenApp(), path)) {
    RaiseDeleteFailed("key " + Describe(open_root_, path), "the key does not exist");
  }
  if (!ChildNames(path).empty()) {
    RaiseDeleteFailed("key " + Describe(open_root_, path), "the key has sub keys");
  }
  store_.DeleteSetting(OpenApp(), path);
}

void Registry::ValueNameDelete(std::string_view name) {
  const std::string& path = OpenPath();
  if (!store_.Read(OpenApp(), path, name)) {
    RaiseDeleteFailed("value \"" + std::string(name) + "\" of " + Describe(open_root_, path),
                      "the value does not exist");
  }
  store_.DeleteSetting(OpenApp(), path, name);
}

Variant Registry::Value(std::string_view name) const {
  std::optional<std::string> stored = store_.Read(OpenApp(), OpenPath(), name);
  if (!stored) return Variant();
  std::string_view text(*stored);
  if (text.starts_with(kNumberPrefix)) {
    text.remove_prefix(kNumberPrefix.size());
    int32_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return Variant(number);
  }
  if (text.starts_with(kTextPrefix)) text.remove_prefix(kTextPrefix.size());
  return Variant(std::string(text));
}

void Registry::Value(std::string_view name, const Variant& value) {
  const std::string& path = OpenPath();
  std::string stored;
  switch (value.Type()) {
    case VarType::kString:
      stored = std::string(kTextPrefix) + value.AsString();
      break;
    case VarType::kByte:
      stored = std::string(kNumberPrefix) + std::to_string(value.AsByte());
      break;
    case VarType::kInteger:
      stored = std::string(kNumberPrefix) + std::to_string(value.AsInteger());
      break;
    case VarType::kLong:
      stored = std::string(kNumberPrefix) + std::to_string(value.AsLong());
      break;
    default:
      RaiseRuntime(kErrTypeMismatch);
  }
  store_.SaveSetting(OpenApp(), path, name, stored);
}

const std::string& Registry::OpenPath() const {
  if (!open_path_) RaiseNotOpened(root_, NormalizeKeyPath(key_ + "\\" + sub_key_));
  return *open_path_;
}

std::string Registry::Describe(uint32_t root, std::string_view path) const {
  std::string text = RootName(root);
  if (!path.empty()) text += "\\" + std::string(path);
  return text;
}

std::vector<std::string> Registry::ChildNames(const std::string& path) const {
  std::string prefix = path.empty() ? std::string() : path + "\\";
  std::vector<std::string> names;
  for (const std::string& section : store_.SectionNames(OpenApp())) {
    if (section.empty() || !StartsWithNoCase(section, prefix)) continue;
    std::string rest = Mid(section, Len(prefix) + 1);
    if (!rest.empty() && rest.find('\\') == std::string::npos) names.push_back(rest);
  }
  std::sort(names.begin(), names.end(),
            [](const std::string& a, const std::string& b) { return CompareNoCase(a, b) < 0; });
  return names;
}

void Registry::RaiseNotOpened(uint32_t root, std::string_view path) const {
  throw Error(kRegistryError, kAppTitle, "Key not opened: " + Describe(root, path));
}

void Registry::RaiseDeleteFailed(std::string_view what, std::string_view reason) const {
  throw Error(kRegistryError, kAppTitle, "Error deleting " + std::string(what) + ": " + std::string(reason));
}

}  // namespace ldg
