// Opt: typed per-user values of the front ends and the engine, kept in the
// per-user settings store. Three path parts (base, program, options) name the
// place: joined they give the application name and the section the store sees;
// by default the application "Velmora\LDG6" and the section
// "Interface\Options". A value is stored as its type name, ">" and its text
// ("Long>12") and read back in that type. Opt never touches the record store.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/settings_store.hpp"
#include "support/variant.hpp"

namespace ldg {

class Opt {
 public:
  explicit Opt(SettingsStore store = SettingsStore());

  // Replaces the path parts that are given, recomputes the application name
  // and the section and reloads the items.
  void Init(std::optional<std::string> base_path = std::nullopt,
            std::optional<std::string> prog_path = std::nullopt,
            std::optional<std::string> options_path = std::nullopt);

  const std::string& BasePath() const { return base_path_; }
  const std::string& ProgPath() const { return prog_path_; }
  const std::string& OptionsPath() const { return options_path_; }
  // The parts trimmed and joined with "\", empty parts left out.
  const std::string& FullPath() const { return full_path_; }
  const std::string& AppName() const { return app_name_; }
  const std::string& Section() const { return section_; }

  // The names of the items of the section.
  std::vector<std::string> Items();
  // The value of an item read in its stored type; the default when missing.
  // Without a stored type name the type of the default holds.
  Variant Item(std::string_view name, const Variant& default_value = Variant());
  // Stores the value as its type name, ">" and its text (the let of Item).
  void LetItem(std::string_view name, const Variant& value);
  // Delete one item, or all items of the section; a missing one is no error.
  void ItemDel(std::string_view name);
  void ItemDelAll();
  // Writes every loaded item back to the store.
  void Update();

  // The stored form of a value, and a stored form read back (with the type of
  // the default when the text names none).
  static std::string StoredForm(const Variant& value);
  static Variant ReadStoredForm(std::string_view stored, const Variant& default_value = Variant());

 private:
  void Recompute();
  void LoadIfNeeded();

  SettingsStore store_;
  std::string base_path_ = "Velmora\\LDG6";
  std::string prog_path_ = "Interface";
  std::string options_path_ = "Options";
  std::string full_path_;
  std::string app_name_;
  std::string section_;
  bool loaded_ = false;
  SettingsPairs items_;
};

}  // namespace ldg
