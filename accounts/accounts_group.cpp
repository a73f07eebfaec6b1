#include "accounts/accounts_group.hpp"

#include <string>
#include <string_view>

#include "accounts/account.hpp"
#include "accounts/accounts.hpp"
#include "engine/current_objects.hpp"
#include "store/constants.hpp"
#include "store/database.hpp"
#include "store/store_error.hpp"
#include "store/workspace.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/keys.hpp"
#include "support/messages.hpp"
#include "support/sql_text.hpp"

namespace ldg {

namespace {

Variant NullWhenEmpty(const Variant& value) { return value.IsEmpty() ? Variant::Null() : value; }

// "Column='value'" when the value differs from its stored copy. A value holding
// an apostrophe would end its quotes early, so it fails as the broken statement
// would, before anything runs.
void AddChange(std::string& list, std::string_view column, const Variant& value, const Variant& stored) {
  if (value == stored) return;
  const std::string text = PastedText(value);
  store::RefuseQuote(text);
  AppendAssignment(list, std::string(column) + "='" + text + "'");
}

// Runs a write inside one transaction; on failure rolls back and raises the
// same number and text again.
template <typename Step>
void InTransaction(Step step) {
  store::Workspace& workspace = CurrentWorkspace();
  workspace.BeginTrans();
  try {
    step();
    workspace.CommitTrans();
  } catch (const Error& error) {
    RollbackAndRaise(error);
  }
}

}  // namespace

void AccountsGroup::LoadRow(int32_t id, const Variant& system_code, const Variant& description) {
  id_ = id;
  system_code_ = system_code;
  description_ = description;
  TakeStoredCopy();
}

void AccountsGroup::TakeStoredCopy() {
  stored_system_code_ = system_code_;
  stored_name_ = name_;
  stored_description_ = description_;
}

void AccountsGroup::Update() {
  if (id_ == 0) {
    Insert();
  } else {
    Write();
  }
}

void AccountsGroup::Insert() {
  Validate();
  int32_t new_id = 0;
  InTransaction([&] {
    auto table = CurrentDatabase().OpenRecordset("AccountsGroups", store::dbOpenTable);
    table->Index("PrimaryKey");
    table->AddNew();
    table->Value("Name", name_);
    table->Value("Description", NullWhenEmpty(description_));
    table->Value("SystemCode", NullWhenEmpty(system_code_));
    new_id = CLng(table->Value("ID"));
    table->Update();
    table->Close();
  });
  id_ = new_id;
  TakeStoredCopy();
}

void AccountsGroup::Write() {
  InTransaction([&] {
    std::string list;
    AddChange(list, "SystemCode", system_code_, stored_system_code_);
    AddChange(list, "Name", name_, stored_name_);
    AddChange(list, "Description", description_, stored_description_);
    if (list.empty()) return;
    CurrentDatabase().Execute(
        "UPDATE AccountsGroups SET " + list + " WHERE (AccountsGroups.ID=" + std::to_string(id_) + ");",
        store::dbFailOnError);
    TakeStoredCopy();
  });
}

void AccountsGroup::LoadMembersIfNeeded() {
  if (members_loaded_) return;
  members_.Clear();
  auto rows = CurrentDatabase().OpenRecordset(
      "SELECT * FROM AccountsGroupAssignements WHERE AccountGroupID= " + std::to_string(id_) + ";",
      store::dbOpenSnapshot);
  while (!rows->Eof()) {
    AddMember(CLng(rows->Value("AccountID")));
    rows->MoveNext();
  }
  rows->Close();
  members_loaded_ = true;
}

void AccountsGroup::AddMember(int32_t account_id) {
  members_.Add(BuildKey(account_id).AsString(), CurrentAccounts().Item(Variant(account_id)));
}

int32_t AccountsGroup::Count() {
  LoadMembersIfNeeded();
  return members_.Count();
}

void AccountsGroup::Append(int32_t account_id) {
  LoadMembersIfNeeded();
  auto table = CurrentDatabase().OpenRecordset("AccountsGroupAssignements", store::dbOpenTable);
  table->AddNew();
  table->Value("AccountID", Variant(account_id));
  table->Value("AccountGroupID", Variant(id_));
  table->Update();
  table->Close();
  AddMember(account_id);
}

void AccountsGroup::Remove(int32_t account_id) {
  LoadMembersIfNeeded();
  members_.Remove(BuildKey(account_id).AsString());
  // Deliberate: the statement names no group, so the account leaves every group
  // in the table while other group objects keep it until they reload.
  CurrentDatabase().Execute(
      "DELETE FROM AccountsGroupAssignements WHERE AccountID = " + std::to_string(account_id) + ";",
      store::dbFailOnError);
}

std::shared_ptr<Account> AccountsGroup::Item(int32_t index) {
  LoadMembersIfNeeded();
  return members_.Item(index);
}

}  // namespace ldg
