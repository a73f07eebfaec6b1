// The client options of the open database: rows of the table "Settings" keyed
// by the open instance's id and a name, every value kept as text. One routine
// reads and one writes, for Engine::GetSetting and SaveSetting and for every
// property of Options. Both use the thread's current database and session.
#pragma once

#include <string_view>

#include "support/variant.hpp"

namespace ldg {

// The SettingSpace of the row, or the default when no database is open or the
// row is missing.
Variant ReadSetting(std::string_view name, const Variant& default_value);
// Adds or changes the row; nothing without an open database. A failing Update
// is swallowed and the value is then lost.
void WriteSetting(std::string_view name, std::string_view text);

}  // namespace ldg
