// ldg account add FILE --code C --name N --parent CODE: adds an account to the
// chart through the engine's placement rules and prints its new ID. By default
// the new account is a child of --parent; --position last, next or previous
// makes it a sibling of that account instead.
#include <CLI/CLI.hpp>
#include <iostream>
#include <map>
#include <memory>
#include <string>

#include "accounts/account.hpp"
#include "accounts/accounts.hpp"
#include "cli/command.hpp"
#include "cli/opened_year_file.hpp"
#include "support/error.hpp"
#include "support/variant.hpp"

namespace ldg::cli {
namespace {

struct Arguments {
  std::string file;
  std::string code;
  std::string name;
  std::string relative_code;
  std::string position = "child";
  bool is_sum = false;
  bool is_master = false;
  bool debit = false;
  bool credit = false;
};

int16_t RelationshipNamed(const std::string& name) {
  static const std::map<std::string, int16_t> kRelationships = {{"last", lgrAccRelLast},
                                                                {"next", lgrAccRelNext},
                                                                {"previous", lgrAccRelPrevious},
                                                                {"child", lgrAccRelChild}};
  const auto found = kRelationships.find(name);
  if (found == kRelationships.end()) {
    throw Error(kErrInvalidCall, kAppTitle,
                "--position takes last, next, previous or child, not '" + name + "'.");
  }
  return found->second;
}

NewAccount NewAccountOf(const Arguments& arguments) {
  NewAccount account;
  account.relationship = RelationshipNamed(arguments.position);
  account.code = Variant(arguments.code);
  account.name = Variant(arguments.name);
  account.is_sum = arguments.is_sum;
  account.is_master = arguments.is_master;
  // Neither flag: the new account takes its parent's side.
  if (arguments.debit) account.is_debit = true;
  if (arguments.credit) account.is_debit = false;
  return account;
}

void Run(const Arguments& arguments) {
  const NewAccount options = NewAccountOf(arguments);
  OpenedYearFile opened(arguments.file);
  Accounts& accounts = *opened.engine().Accounts();
  const std::shared_ptr<Account> relative = accounts.Item(Variant(arguments.relative_code));
  if (!relative) {
    throw Error(kErrInvalidCall, kAppTitle, "No account has the code '" + arguments.relative_code + "'.");
  }
  const std::shared_ptr<Account> added = accounts.Add(relative->ID(), options);
  std::cout << added->ID() << "\n";
}

const bool kRegistered = RegisterCommand([](CLI::App& app) {
  auto* account = app.add_subcommand("account", "Change the chart of accounts of a year file");
  account->require_subcommand(1);
  auto* command = account->add_subcommand("add", "Add an account to the chart and print its ID");
  auto arguments = std::make_shared<Arguments>();
  command->add_option("file", arguments->file, "The year file")->required();
  command->add_option("--code", arguments->code, "Code of the new account")->required();
  command->add_option("--name", arguments->name, "Name of the new account")->required();
  command
      ->add_option("--parent", arguments->relative_code,
                   "Code of the account the new one goes below (or beside, with --position)")
      ->required();
  command->add_flag("--sum", arguments->is_sum, "The new account is a sum");
  command->add_flag("--master", arguments->is_master, "The new account is a master of detail accounts");
  auto* debit =
      command->add_flag("--debit", arguments->debit, "The account normally stands on the debit side");
  auto* credit =
      command->add_flag("--credit", arguments->credit, "The account normally stands on the credit side");
  debit->excludes(credit);
  command->add_option("--position", arguments->position, "last, next, previous or child of --parent")
      ->capture_default_str();
  command->callback([arguments] { Run(*arguments); });
});

}  // namespace
}  // namespace ldg::cli
