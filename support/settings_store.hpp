// The per-user settings store: values addressed by application, section and
// key, kept in one small text file of the user's own
// ($XDG_CONFIG_HOME/ldg/settings, else $HOME/.config/ldg/settings). Names
// compare ignoring case and keep the case they were first written with;
// values are kept verbatim, whatever characters they hold. Every call reads
// the file afresh and every change rewrites it whole through a temporary file
// and a rename, so a reader never sees half a file. A section may exist with
// no keys in it (the registry's empty keys live that way).
//
// The file holds one record a line, its fields separated by tabs: a section
// line "application, section", then one line "application, section, key,
// value" for each of its keys. "%", tab, line feed, carriage return and "#"
// are written as "%" and two hex digits; a line beginning with "#" is a
// comment.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ldg {

using SettingsPairs = std::vector<std::pair<std::string, std::string>>;

class SettingsStore {
 public:
  // The user's store, its folder taken from the environment now.
  SettingsStore();
  // A store kept in the given folder (tests point it at a folder of their own).
  explicit SettingsStore(std::filesystem::path folder);

  // $XDG_CONFIG_HOME/ldg, else $HOME/.config/ldg (without $HOME, the user's
  // home folder of the password database).
  static std::filesystem::path DefaultFolder();
  const std::filesystem::path& FilePath() const { return file_; }

  // The run time's calls. GetSetting gives the default when the value is
  // missing; GetAllSettings gives the keys and values of a section in the
  // order they were first written, nothing for a missing section;
  // DeleteSetting removes one key, or with no key the whole section, and
  // raises run-time error 5 when that is missing.
  std::string GetSetting(std::string_view app, std::string_view section, std::string_view key,
                         std::string_view default_value = "") const;
  void SaveSetting(std::string_view app, std::string_view section, std::string_view key,
                   std::string_view value);
  SettingsPairs GetAllSettings(std::string_view app, std::string_view section) const;
  void DeleteSetting(std::string_view app, std::string_view section, std::string_view key);
  void DeleteSetting(std::string_view app, std::string_view section);

  // The value of a key, nothing when the key is missing.
  std::optional<std::string> Read(std::string_view app, std::string_view section, std::string_view key) const;
  bool SectionExists(std::string_view app, std::string_view section) const;
  // Creates an empty section unless it exists.
  void CreateSection(std::string_view app, std::string_view section);
  // The names of the sections of an application, in the order they were made.
  std::vector<std::string> SectionNames(std::string_view app) const;

 private:
  struct Section {
    std::string app;
    std::string name;
    SettingsPairs values;
  };
  using Sections = std::vector<Section>;

  Sections Load() const;
  void Save(const Sections& sections) const;
  static Section* Find(Sections& sections, std::string_view app, std::string_view section);
  static const Section* Find(const Sections& sections, std::string_view app, std::string_view section);

  std::filesystem::path file_;
};

}  // namespace ldg
