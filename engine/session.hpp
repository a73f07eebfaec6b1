// Session: who is logged on and which database instance is open. Created by
// Engine::Init, it keeps the user and password as the logon left them, and on
// each open the instance id, module name and version that the file's
// "viewInstance" gives. Front ends never see it; the settings read the
// instance id through the thread's current session.
#pragma once

#include "store/database.hpp"
#include "support/variant.hpp"

namespace ldg {

class Session {
 public:
  const Variant& User() const { return user_; }
  void User(Variant user) { user_ = std::move(user); }
  const Variant& Password() const { return password_; }
  void Password(Variant password) { password_ = std::move(password); }
  const Variant& DatabaseName() const { return database_name_; }
  double DatabaseInstanceID() const { return database_instance_id_; }
  const Variant& ModuleName() const { return module_name_; }
  const Variant& ModuleVersion() const { return module_version_; }

  // Reads the instance of the database from "viewInstance". A null first field
  // raises 0x800403EA with the German text; no row at all fails on reading the
  // field with the store's 3021.
  void SetDatabase(store::Database& database);

 private:
  Variant user_;
  Variant password_;
  Variant database_name_;
  double database_instance_id_ = 0;
  Variant module_name_;
  Variant module_version_;
};

}  // namespace ldg
