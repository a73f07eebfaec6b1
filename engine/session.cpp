#include "engine/session.hpp"

#include "support/messages.hpp"
#include "support/nullable.hpp"

namespace ldg {

namespace {
constexpr int32_t kInstanceProblem = kErrorBase + 0x3EA;
}  // namespace

void Session::SetDatabase(store::Database& database) {
  auto instance = database.OpenRecordset("viewInstance", store::dbOpenSnapshot);
  // The field is read before any test of the row, so an empty set fails here
  // with the store's own 3021.
  const Variant first = instance->Fields().Item(0).Value();
  if (first.IsNull()) {
    RaiseError(kInstanceProblem,
               "Klarse Sersion: Problem mit dem Indentificationscode der Datenbank " + database.Name() + "!");
  }
  database_instance_id_ = ReadDouble(first);
  module_name_ = instance->Value("ModuleName");
  module_version_ = instance->Value("ModuleVersion");
  instance->Close();
  database_name_ = database.Name();
}

}  // namespace ldg
