// DbController: opens a year file on the current workspace and proves that it
// belongs to the family (the ModuleRegistration table, the Creator and Product
// properties, the module row), then reads the file's own business year. It
// keeps what one open found. Front ends never see it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "store/database.hpp"
#include "support/variant.hpp"

namespace ldg {

class DbController {
 public:
  // Opens shared for reading and writing. Errors of the store pass unchanged;
  // a foreign file raises 0x80040000 with its name, CR LF and the reason.
  std::shared_ptr<store::Database> OpenDatabase(const Variant& name);

  const std::shared_ptr<store::Database>& Database() const { return database_; }
  const std::string& Name() const { return name_; }
  double InstanceID() const { return instance_id_; }
  const Variant& Version() const { return version_; }
  int32_t YearID() const { return year_id_; }
  const Variant& YearBeginn() const { return year_beginn_; }
  const Variant& YearEnd() const { return year_end_; }
  int16_t YearStatusID() const { return year_status_id_; }

 private:
  void CheckFamily();
  void ReadModuleRow();
  void ReadBusinessYearRow();
  [[noreturn]] void RaiseNotOurs(const char* reason) const;

  std::shared_ptr<store::Database> database_;
  std::string name_;
  double instance_id_ = 0;
  Variant version_;
  int32_t year_id_ = 0;
  Variant year_beginn_;
  Variant year_end_;
  int16_t year_status_id_ = 0;
};

}  // namespace ldg
