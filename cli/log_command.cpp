// ldg log FILE: the database log of a year file as a table, one row per
// connection, with the rows chosen as the log's view chooses them. --delete
// removes rows as the view's delete button does: every row of the scope but
// the command's own.
#include <CLI/CLI.hpp>
#include <ctime>
#include <iostream>
#include <memory>
#include <string>

#include "cli/command.hpp"
#include "cli/opened_year_file.hpp"
#include "cli/table_output.hpp"
#include "engine/db_log.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"

namespace ldg::cli {
namespace {

struct Arguments {
  std::string file;
  std::string format = "text";
  bool without_online = false;
  bool without_offline = false;
  bool without_me = false;
  std::string scope;
  int days = 30;
};

std::string Text(const Variant& value) {
  return value.IsNull() || value.IsEmpty() ? std::string() : CStr(value);
}

OleDate Today() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return OleDate::FromYmd(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
}

DbLogScope ScopeNamed(const std::string& name) {
  if (name == "all") return DbLogScope::kAll;
  if (name == "offline") return DbLogScope::kOffline;
  if (name == "online") return DbLogScope::kOnline;
  if (name == "older") return DbLogScope::kOpenedBefore;
  throw Error(kErrInvalidCall, "ldg", "--delete takes all, offline, online or older");
}

void Run(const Arguments& arguments) {
  const OutputFormat format = ParseOutputFormat(arguments.format);
  OpenedYearFile opened(arguments.file);
  DbLog& log = *opened.engine().DbLog();
  if (!arguments.scope.empty()) {
    log.DeleteRows(ScopeNamed(arguments.scope), OleDate(Today().Serial() - arguments.days));
    std::cerr << "Fertig\n";
  }
  TableOutput table({"User", "Computer", "[Me]", "Time in", "Time out", "Comment", "ID"});
  table.AlignRight(6);
  for (const DbLogUser& user :
       log.Users(arguments.without_online, arguments.without_offline, arguments.without_me)) {
    table.AddRow({Text(user.user_name), Text(user.computer_name), user.me, Text(user.time_open),
                  Text(user.time_close), Text(user.comment), Text(user.id)});
  }
  table.Print(std::cout, format);
}

const bool kRegistered = RegisterCommand([](CLI::App& app) {
  auto* command = app.add_subcommand("log", "Show who has a year file open, and clean the log out");
  auto arguments = std::make_shared<Arguments>();
  command->add_option("file", arguments->file, "The year file")->required();
  command->add_option("--format", arguments->format, "text, csv or json")->capture_default_str();
  command->add_flag("--without-online", arguments->without_online, "Leave out connections still open");
  command->add_flag("--without-offline", arguments->without_offline, "Leave out closed connections");
  command->add_flag("--without-me", arguments->without_me, "Leave out this command's own connection");
  command->add_option("--delete", arguments->scope,
                      "Delete rows but this command's own: all, offline, online, or older (than --days)");
  command->add_option("--days", arguments->days, "Age in days for --delete older")->capture_default_str();
  command->callback([arguments] { Run(*arguments); });
});

}  // namespace
}  // namespace ldg::cli
