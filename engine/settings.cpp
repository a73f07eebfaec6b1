#include "engine/settings.hpp"

#include "engine/engine_state.hpp"
#include "engine/session.hpp"
#include "support/error.hpp"

namespace ldg {

namespace {

double InstanceID() { return State().session ? State().session->DatabaseInstanceID() : 0; }

std::unique_ptr<store::Recordset> SeekSetting(store::Database& database, std::string_view name) {
  auto settings = database.OpenRecordset("Settings", store::dbOpenTable);
  settings->Index("PrimaryKey");
  settings->Seek("=", Variant(InstanceID()), Variant(name));
  return settings;
}

void DiscardEdit(store::Recordset& settings) {
  try {
    settings.CancelUpdate();
  } catch (const Error&) {
  }
}

}  // namespace

Variant ReadSetting(std::string_view name, const Variant& default_value) {
  if (!State().database) return default_value;
  auto settings = SeekSetting(*State().database, name);
  Variant result = settings->NoMatch() ? default_value : settings->Value("SettingSpace");
  settings->Close();
  return result;
}

void WriteSetting(std::string_view name, std::string_view text) {
  if (!State().database) return;
  auto settings = SeekSetting(*State().database, name);
  if (settings->NoMatch()) {
    settings->AddNew();
    settings->Value("SettingModuleID", Variant(InstanceID()));
    settings->Value("SettingSection", Variant(name));
  } else {
    settings->Edit();
  }
  settings->Value("SettingSpace", Variant(text));
  try {
    settings->Update();
  } catch (const Error&) {
    // Deliberate: a failing write is swallowed and the value is lost (pinned by a test).
    DiscardEdit(*settings);
  }
  settings->Close();
}

}  // namespace ldg
