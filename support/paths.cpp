#include "support/paths.hpp"

#include <vector>

namespace ldg {
namespace {

std::string_view TrimBlanks(std::string_view text) {
  size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  size_t last = text.find_last_not_of(' ');
  return text.substr(first, last - first + 1);
}

size_t LastSeparator(std::string_view path) {
  for (size_t i = path.size(); i > 0; --i) {
    if (IsPathSeparator(path[i - 1])) return i - 1;
  }
  return std::string_view::npos;
}

}  // namespace

bool IsPathSeparator(char c) { return c == '/' || c == '\\'; }

std::string FolderOf(std::string_view path) {
  if (TrimBlanks(path).empty()) return {};
  for (size_t i = path.size(); i > 0; --i) {
    char c = path[i - 1];
    if (c == ':' || IsPathSeparator(c)) return std::string(path.substr(0, i));
  }
  return {};
}

void ParentPath(std::string& path) {
  if (!path.empty() && path.back() == ':') path += '/';
  // Each part keeps the separator that followed it; the last part has none.
  std::vector<std::string> parts(1);
  for (char c : path) {
    parts.back() += c;
    if (IsPathSeparator(c)) parts.emplace_back();
  }
  std::string parent;
  for (size_t i = 0; i + 1 < parts.size(); ++i) parent += parts[i];
  path = parent;
}

std::string FileNameOf(std::string_view path) {
  size_t separator = LastSeparator(path);
  if (separator == std::string_view::npos) return std::string(path);
  return std::string(path.substr(separator + 1));
}

std::string BaseNameOf(std::string_view path) {
  std::string name = FileNameOf(path);
  size_t dot = name.rfind('.');
  if (dot == std::string::npos) return name;
  return name.substr(0, dot);
}

std::string ExtensionOf(std::string_view path) {
  std::string name = FileNameOf(path);
  size_t dot = name.rfind('.');
  if (dot == std::string::npos) return ".";
  return name.substr(dot);
}

std::string JoinPath(std::string_view folder, std::string_view name) {
  std::string_view head = TrimBlanks(folder);
  std::string_view tail = TrimBlanks(name);
  if (!tail.empty() && IsPathSeparator(tail.front())) tail.remove_prefix(1);
  if (head.empty()) return std::string(tail);
  std::string joined(head);
  if (!IsPathSeparator(joined.back())) joined += '/';
  joined += tail;
  return joined;
}

}  // namespace ldg
