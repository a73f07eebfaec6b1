#include "support/settings_store.hpp"

#include <unistd.h>

#include <atomic>
#include <fstream>
#include <system_error>

#include "support/error.hpp"
#include "support/file_system.hpp"
#include "support/platform.hpp"
#include "support/text.hpp"

namespace ldg {
namespace fs = std::filesystem;

namespace {

constexpr const char* kFileName = "settings";
constexpr const char* kFileHeader = "# ldg per-user settings: application, section, key, value\n";
constexpr int32_t kErrPathFileAccess = 75;

std::string Escape(std::string_view text) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  std::string escaped;
  escaped.reserve(text.size());
  for (char c : text) {
    if (c == '%' || c == '\t' || c == '\n' || c == '\r' || c == '#') {
      auto byte = static_cast<unsigned char>(c);
      escaped += '%';
      escaped += kHex[byte >> 4];
      escaped += kHex[byte & 0x0F];
    } else {
      escaped += c;
    }
  }
  return escaped;
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

std::string Unescape(std::string_view text) {
  std::string plain;
  plain.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '%' && i + 2 < text.size() && HexDigit(text[i + 1]) >= 0 && HexDigit(text[i + 2]) >= 0) {
      plain += static_cast<char>(HexDigit(text[i + 1]) * 16 + HexDigit(text[i + 2]));
      i += 2;
    } else {
      plain += text[i];
    }
  }
  return plain;
}

std::vector<std::string> SplitFields(std::string_view line) {
  std::vector<std::string> fields;
  size_t start = 0;
  while (true) {
    size_t tab = line.find('\t', start);
    fields.push_back(Unescape(line.substr(start, tab == std::string_view::npos ? tab : tab - start)));
    if (tab == std::string_view::npos) return fields;
    start = tab + 1;
  }
}

}  // namespace

SettingsStore::SettingsStore() : SettingsStore(DefaultFolder()) {}

SettingsStore::SettingsStore(fs::path folder) : file_(std::move(folder) / kFileName) {}

fs::path SettingsStore::DefaultFolder() {
  std::string config = EnvironmentValue("XDG_CONFIG_HOME");
  if (!config.empty()) return fs::path(config) / "ldg";
  return fs::path(UserHomeFolder()) / ".config" / "ldg";
}

std::string SettingsStore::GetSetting(std::string_view app, std::string_view section, std::string_view key,
                                      std::string_view default_value) const {
  return Read(app, section, key).value_or(std::string(default_value));
}

void SettingsStore::SaveSetting(std::string_view app, std::string_view section, std::string_view key,
                                std::string_view value) {
  Sections sections = Load();
  Section* found = Find(sections, app, section);
  if (!found) {
    sections.push_back({std::string(app), std::string(section), {}});
    found = &sections.back();
  }
  for (auto& [name, stored] : found->values) {
    if (EqualsNoCase(name, key)) {
      stored = value;
      Save(sections);
      return;
    }
  }
  found->values.emplace_back(key, value);
  Save(sections);
}

SettingsPairs SettingsStore::GetAllSettings(std::string_view app, std::string_view section) const {
  Sections sections = Load();
  const Section* found = Find(sections, app, section);
  return found ? found->values : SettingsPairs{};
}

void SettingsStore::DeleteSetting(std::string_view app, std::string_view section, std::string_view key) {
  Sections sections = Load();
  Section* found = Find(sections, app, section);
  if (found) {
    for (auto it = found->values.begin(); it != found->values.end(); ++it) {
      if (EqualsNoCase(it->first, key)) {
        found->values.erase(it);
        Save(sections);
        return;
      }
    }
  }
  RaiseRuntime(kErrInvalidCall);
}

void SettingsStore::DeleteSetting(std::string_view app, std::string_view section) {
  Sections sections = Load();
  for (auto it = sections.begin(); it != sections.end(); ++it) {
    if (EqualsNoCase(it->app, app) && EqualsNoCase(it->name, section)) {
      sections.erase(it);
      Save(sections);
      return;
    }
  }
  RaiseRuntime(kErrInvalidCall);
}

std::optional<std::string> SettingsStore::Read(std::string_view app, std::string_view section,
                                               std::string_view key) const {
  Sections sections = Load();
  const Section* found = Find(sections, app, section);
  if (!found) return std::nullopt;
  for (const auto& [name, value] : found->values) {
    if (EqualsNoCase(name, key)) return value;
  }
  return std::nullopt;
}

bool SettingsStore::SectionExists(std::string_view app, std::string_view section) const {
  Sections sections = Load();
  return Find(sections, app, section) != nullptr;
}

void SettingsStore::CreateSection(std::string_view app, std::string_view section) {
  Sections sections = Load();
  if (Find(sections, app, section)) return;
  sections.push_back({std::string(app), std::string(section), {}});
  Save(sections);
}

std::vector<std::string> SettingsStore::SectionNames(std::string_view app) const {
  std::vector<std::string> names;
  for (const Section& section : Load()) {
    if (EqualsNoCase(section.app, app)) names.push_back(section.name);
  }
  return names;
}

SettingsStore::Sections SettingsStore::Load() const {
  Sections sections;
  std::optional<std::string> content = ReadTextFile(file_.string());
  if (!content) return sections;
  size_t start = 0;
  while (start < content->size()) {
    size_t end = content->find('\n', start);
    if (end == std::string::npos) end = content->size();
    std::string_view line(content->data() + start, end - start);
    start = end + 1;
    // A raw carriage return comes only from an editor; the store writes it escaped.
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    if (line.empty() || line.front() == '#') continue;
    std::vector<std::string> fields = SplitFields(line);
    if (fields.size() != 2 && fields.size() != 4) continue;
    Section* section = Find(sections, fields[0], fields[1]);
    if (!section) {
      sections.push_back({fields[0], fields[1], {}});
      section = &sections.back();
    }
    if (fields.size() == 4) section->values.emplace_back(fields[2], fields[3]);
  }
  return sections;
}

void SettingsStore::Save(const Sections& sections) const {
  std::string content = kFileHeader;
  for (const Section& section : sections) {
    std::string prefix = Escape(section.app) + '\t' + Escape(section.name);
    content += prefix + '\n';
    for (const auto& [key, value] : section.values) {
      content += prefix + '\t' + Escape(key) + '\t' + Escape(value) + '\n';
    }
  }
  std::error_code error;
  fs::create_directories(file_.parent_path(), error);
  fs::path temporary = file_;
  static std::atomic<unsigned> writes{0};
  temporary += ".tmp" + std::to_string(::getpid()) + "." + std::to_string(++writes);
  {
    std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
    out << content;
    out.close();
    if (!out) {
      fs::remove(temporary, error);
      throw Error(kErrPathFileAccess, "", "Path/File access error");
    }
  }
  fs::rename(temporary, file_, error);
  if (error) {
    fs::remove(temporary, error);
    throw Error(kErrPathFileAccess, "", "Path/File access error");
  }
}

SettingsStore::Section* SettingsStore::Find(Sections& sections, std::string_view app,
                                            std::string_view section) {
  for (Section& candidate : sections) {
    if (EqualsNoCase(candidate.app, app) && EqualsNoCase(candidate.name, section)) return &candidate;
  }
  return nullptr;
}

const SettingsStore::Section* SettingsStore::Find(const Sections& sections, std::string_view app,
                                                  std::string_view section) {
  for (const Section& candidate : sections) {
    if (EqualsNoCase(candidate.app, app) && EqualsNoCase(candidate.name, section)) return &candidate;
  }
  return nullptr;
}

}  // namespace ldg
