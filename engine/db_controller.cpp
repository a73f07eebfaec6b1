#include "engine/db_controller.hpp"

#include "engine/business_years.hpp"
#include "engine/engine_state.hpp"
#include "support/conversions.hpp"
#include "support/messages.hpp"
#include "support/nullable.hpp"

namespace ldg {

namespace {

constexpr const char* kCreator = "Velmora AG";
constexpr const char* kProduct = "Velmora Suite V6";

// A property that is missing counts as not equal.
bool PropertyEquals(store::Database& database, std::string_view name, std::string_view expected) {
  try {
    const Variant value = database.Properties().Item(name)->Value();
    return !value.IsNull() && CStr(value) == expected;
  } catch (const Error&) {
    return false;
  }
}

}  // namespace

std::shared_ptr<store::Database> DbController::OpenDatabase(const Variant& name) {
  database_ = State().workspace->OpenDatabase(CStr(name));
  name_ = database_->Name();
  CheckFamily();
  ReadModuleRow();
  ReadBusinessYearRow();
  return database_;
}

void DbController::CheckFamily() {
  try {
    database_->TableDefs().Item("ModuleRegistration");
  } catch (const Error&) {
    RaiseNotOurs("is not a Velmora database.");
  }
  if (!PropertyEquals(*database_, "Creator", kCreator) || !PropertyEquals(*database_, "Product", kProduct)) {
    RaiseNotOurs("is not a Velmora Finance V6 database.");
  }
}

void DbController::ReadModuleRow() {
  auto modules = database_->OpenRecordset("ModuleRegistration", store::dbOpenSnapshot);
  modules->FindFirst("ModuleName='Velmora Finance'");
  if (modules->NoMatch()) RaiseNotOurs("is not a Velmora Finance database.");
  instance_id_ = ReadDouble(*modules, "InstanceID");
  version_ = modules->Value("ModuleVersion");
  modules->Close();
}

void DbController::ReadBusinessYearRow() {
  const BusinessYearRow year = ReadBusinessYear(*database_);
  year_id_ = year.id;
  year_beginn_ = year.beginn;
  year_end_ = year.end;
  year_status_id_ = CInt(Variant(year.status));
}

void DbController::RaiseNotOurs(const char* reason) const { RaiseError(kErrorBase, name_ + "\r\n" + reason); }

}  // namespace ldg
