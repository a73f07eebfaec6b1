// DbLog: who has the database open. Each open adds one row with the time,
// computer and user, and each close writes its closing time; a row without one
// is a connection still online, or a session that crashed. The rows are
// written on a private connection of their own, so that a rollback of
// bookkeeping work never undoes them. It also lists the rows, cleans them out,
// and deletes them as the log's dialog does, never one's own row there.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "store/database.hpp"
#include "support/ole_date.hpp"
#include "support/variant.hpp"

namespace ldg {

// One row of the log as Users gives it; me is "*" for one's own row, " " else.
struct DbLogUser {
  Variant id;
  std::string me;
  Variant time_open;
  Variant time_close;
  Variant computer_name;
  Variant user_name;
  Variant comment;
};

// What the dialog's delete aims at; one's own row always stays.
enum class DbLogScope { kAll, kOffline, kOnline, kOpenedBefore };

class DbLog {
 public:
  DbLog() = default;
  ~DbLog();
  DbLog(const DbLog&) = delete;
  DbLog& operator=(const DbLog&) = delete;

  // Opens the private connection to the database's file, brings the table up
  // to date and adds this session's row. True when the row was written.
  bool DbOpen(store::Database& database, const Variant& comment = Variant());
  // Writes the closing time, ignoring errors, and drops the connection.
  void DbClose();

  // The rows chosen by the flags, by TimeOpen; none without a connection.
  std::vector<DbLogUser> Users(bool without_online = false, bool without_offline = false,
                               bool without_me = false) const;
  // Asks the host to show the log.
  void ShowIt(bool without_online = false, bool without_offline = false, bool without_me = false) const;
  // Deletes the rows chosen by the flags, one's own included unless without_me.
  void CleanOut(bool without_online = false, bool without_offline = false, bool without_me = false);
  int32_t MyID() const { return my_id_; }
  const std::shared_ptr<store::Database>& Database() const { return connection_; }

  // The dialog's delete: the rows of the scope but one's own. The limit is
  // used by kOpenedBefore only.
  void DeleteRows(DbLogScope scope, OleDate limit = OleDate());

  // The selection of the three flags, without "WHERE"; "" for none.
  static std::string Selection(bool without_online, bool without_offline, bool without_me, int32_t my_id);
  // The condition of a delete scope.
  static std::string ScopeCondition(DbLogScope scope, OleDate limit);
  // The title of the log's view: the file's name, or "(Keine Datenbank offen)".
  std::string Title() const;

 private:
  std::shared_ptr<store::Database> connection_;
  int32_t my_id_ = 0;
};

}  // namespace ldg
