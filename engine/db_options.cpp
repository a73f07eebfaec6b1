#include "engine/db_options.hpp"

#include "support/error.hpp"
#include "support/nullable.hpp"
#include "support/sql_text.hpp"

namespace ldg {

DbOptions::DbOptions(store::Database& database)
    : settings_(database.OpenRecordset("Settings", store::dbOpenDynaset)) {}

DbOptions::~DbOptions() {
  try {
    settings_->Close();
  } catch (const Error&) {
  }
}

void DbOptions::FindName(std::string_view name) const {
  settings_->FindFirst("SettingSection=" + QuoteText(name));
}

std::string DbOptions::Value(std::string_view name) const {
  FindName(name);
  if (settings_->NoMatch()) return "";
  return ReadString(settings_->Value("SettingSpace"));
}

void DbOptions::Value(std::string_view name, std::string_view value) {
  FindName(name);
  if (value.empty()) {
    if (!settings_->NoMatch()) settings_->Delete();
    return;
  }
  if (settings_->NoMatch()) {
    settings_->AddNew();
    settings_->Value("SettingSection", Variant(name));
  } else {
    settings_->Edit();
  }
  settings_->Value("SettingSpace", Variant(value));
  settings_->Update();
}

}  // namespace ldg
