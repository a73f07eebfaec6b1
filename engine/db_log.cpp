#include "engine/db_log.hpp"

#include <ctime>

#include "engine/engine_state.hpp"
#include "engine/schema_upkeep.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/nullable.hpp"
#include "support/paths.hpp"
#include "support/platform.hpp"
#include "support/sql_text.hpp"

namespace ldg {

namespace {

OleDate Now() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return OleDate::FromCivil(CivilTime{local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                                      local.tm_min, local.tm_sec});
}

std::string WhereClause(const std::string& condition) {
  return condition.empty() ? "" : "WHERE (" + condition + ")";
}

void CloseIgnoringErrors(store::Database& database) {
  try {
    database.Close();
  } catch (const Error&) {
  }
}

}  // namespace

DbLog::~DbLog() { DbClose(); }

bool DbLog::DbOpen(store::Database& database, const Variant& comment) {
  connection_ = State().DBEngine().OpenDatabase(database.Name());
  UpdateDbLogTable(*connection_);
  auto log = connection_->OpenRecordset("DbLog", store::dbOpenTable);
  log->AddNew();
  log->Value("TimeOpen", Variant(Now()));
  WriteCutText(*log, "COMPUTERNAME", ComputerName());
  WriteCutText(*log, "USERNAME", UserName());
  if (!comment.IsEmpty() && !comment.IsNull()) WriteCutText(*log, "Comment", CStr(comment));
  log->Update();
  // The row just written, not the last row of the table: another session may add one meanwhile.
  log->Bookmark(log->LastModified());
  my_id_ = ReadLong(*log, "ID");
  log->Close();
  return true;
}

void DbLog::DbClose() {
  if (!connection_) return;
  try {
    auto log = connection_->OpenRecordset("DbLog", store::dbOpenTable);
    log->Index("PrimaryKey");
    log->Seek("=", Variant(my_id_));
    log->Edit();
    log->Value("TimeClose", Variant(Now()));
    log->Update();
    log->Close();
  } catch (const Error&) {
    // A read-only file, or a row cleaned out meanwhile: the close goes on.
  }
  CloseIgnoringErrors(*connection_);
  connection_.reset();
}

std::vector<DbLogUser> DbLog::Users(bool without_online, bool without_offline, bool without_me) const {
  std::vector<DbLogUser> users;
  if (!connection_) return users;
  const std::string sql = "SELECT * FROM DbLog " +
                          WhereClause(Selection(without_online, without_offline, without_me, my_id_)) +
                          " ORDER BY TimeOpen;";
  auto rows = connection_->OpenRecordset(sql, store::dbOpenSnapshot);
  for (; !rows->Eof(); rows->MoveNext()) {
    DbLogUser user;
    user.id = rows->Value("ID");
    user.me = ReadLong(user.id) == my_id_ ? "*" : " ";
    user.time_open = rows->Value("TimeOpen");
    user.time_close = rows->Value("TimeClose");
    user.computer_name = rows->Value("COMPUTERNAME");
    user.user_name = rows->Value("USERNAME");
    user.comment = rows->Value("Comment");
    users.push_back(std::move(user));
  }
  rows->Close();
  return users;
}

void DbLog::ShowIt(bool /*without_online*/, bool /*without_offline*/, bool /*without_me*/) const {
  State().Hooks().ShowDbLog();
}

void DbLog::CleanOut(bool without_online, bool without_offline, bool without_me) {
  if (!connection_) return;
  connection_->Execute("DELETE * FROM DbLog " +
                       WhereClause(Selection(without_online, without_offline, without_me, my_id_)) + ";");
}

void DbLog::DeleteRows(DbLogScope scope, OleDate limit) {
  if (!connection_) return;
  connection_->Execute("DELETE * FROM DbLog WHERE ((" + ScopeCondition(scope, limit) + ") AND (ID <> " +
                       std::to_string(my_id_) + "));");
}

std::string DbLog::Selection(bool without_online, bool without_offline, bool without_me, int32_t my_id) {
  const std::string id = std::to_string(my_id);
  if (without_online && without_offline) return without_me ? "FALSE" : "ID = " + id;
  if (without_online)
    return without_me ? "NOT (TimeClose IS NULL)" : "(NOT (TimeClose IS NULL)) OR (ID = " + id + ")";
  if (without_offline) {
    return without_me ? "(TimeClose IS NULL) AND (ID <> " + id + ")"
                      : "(TimeClose IS NULL) OR (ID = " + id + ")";
  }
  return without_me ? "ID <> " + id : "";
}

std::string DbLog::ScopeCondition(DbLogScope scope, OleDate limit) {
  switch (scope) {
    case DbLogScope::kAll:
      return "TRUE";
    case DbLogScope::kOffline:
      return "NOT (TimeClose IS NULL)";
    case DbLogScope::kOnline:
      return "TimeClose IS NULL";
    case DbLogScope::kOpenedBefore:
      return "TimeOpen < " + CStr(DateLiteral(Variant(limit)));
  }
  return "TRUE";
}

std::string DbLog::Title() const {
  return connection_ ? "DbLog: " + FileNameOf(connection_->Name()) : "(Keine Datenbank offen)";
}

}  // namespace ldg
