// The record itself: fields, kinds, validation, reading and writing the row,
// and the account's rows in the search table. Balances and the tree rules are
// in account_balances.cpp and account_tree.cpp.
#include "accounts/account.hpp"

#include <exception>
#include <string_view>

#include "accounts/account_handles.hpp"
#include "accounts/account_links.hpp"
#include "accounts/accounts.hpp"
#include "accounts/subaccounts.hpp"
#include "engine/current_objects.hpp"
#include "engine/engine_state.hpp"
#include "store/constants.hpp"
#include "store/workspace.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/messages.hpp"
#include "support/nullable.hpp"
#include "support/text.hpp"

namespace ldg {

namespace {

constexpr std::string_view kMarkedForDeletion = " (wird gelöscht)";
constexpr const char* kValidationSource = "ldg(Account validation)";

bool EndsWith(std::string_view text, std::string_view ending) {
  return text.size() >= ending.size() && text.substr(text.size() - ending.size()) == ending;
}

// A failed write leaves no edit buffer behind on the shared table.
template <typename Write>
void InEditBuffer(store::Recordset& table, Write write) {
  try {
    write();
  } catch (...) {
    try {
      if (table.EditMode() != 0) table.CancelUpdate();
    } catch (const Error&) {
    }
    throw;
  }
}

}  // namespace

Account::Account() : subaccounts_(std::make_shared<ldg::Subaccounts>()) {}

Account::~Account() = default;

void Account::Code(const Variant& value) { current_.code = CStr(value); }

void Account::Name(const Variant& value) {
  std::string name = Trim(CStr(value));
  if (EndsWith(name, kMarkedForDeletion)) name.resize(name.size() - kMarkedForDeletion.size());
  current_.name = std::move(name);
}

std::string Account::FullName() const {
  std::string name = Trim(current_.name);
  if (current_.delete_on_cloture) name += kMarkedForDeletion;
  return name;
}

std::string Account::FullCodeName() const { return Trim(current_.code) + " " + FullName(); }

int16_t Account::NodeType() const {
  if (current_.is_sum) return lgrAccGLSum;
  if (current_.is_master) return lgrAccGLMaster;
  return lgrAccGLNormal;
}

int16_t Account::Kind() const {
  if (!current_.is_general_ledger) return current_.is_master ? lgrAccGLMaster : lgrAccDetail;
  if (current_.is_sum) return lgrAccGLSum;
  if (current_.is_master) return lgrAccGLMaster;
  if (current_.master_id != 0) return lgrAccDetail;
  return lgrAccGLNormal;
}

void Account::Tax(std::shared_ptr<ldg::Tax> value) {
  current_.tax_id = value ? LinkedTaxID(*value) : 0;
  current_.tax = std::move(value);
}

// Deliberate: the value is handed to the budget object's default member, which
// it doesn't have, so a read always fails; callers read Budget()->YearBudget().
Currency Account::YearBudget() {
  if (RegisteredAccountLinks().new_budget) Budget();
  RaiseRuntime(kErrNotSupported);
}

std::shared_ptr<ldg::Budget> Account::Budget() {
  if (!current_.budget) current_.budget = LinkedNewBudget();
  LinkedBindBudget(*current_.budget, current_.id);
  return current_.budget;
}

std::shared_ptr<Account> Account::Parent() const {
  return CurrentAccounts().Item(Variant(current_.parent_id));
}

std::vector<std::shared_ptr<Account>> Account::Children() const { return subaccounts_->Items(); }

bool Account::HasChanged() const {
  const Values& c = current_;
  const Values& s = stored_;
  return c.code != s.code || c.name != s.name || c.is_sum != s.is_sum || c.is_master != s.is_master ||
         c.master_id != s.master_id || c.fc_can_choose_rate != s.fc_can_choose_rate || c.fc_id != s.fc_id ||
         c.fc_id2 != s.fc_id2 || c.tax_id != s.tax_id || c.tax_can_choose != s.tax_can_choose ||
         c.activate_valuta != s.activate_valuta || c.activate_reference != s.activate_reference ||
         c.year_budget != s.year_budget || c.reference_nr != s.reference_nr ||
         c.delete_on_cloture != s.delete_on_cloture || c.liegen_code != s.liegen_code || c.tags != s.tags ||
         c.postfix != s.postfix || c.standart_text_debit != s.standart_text_debit ||
         c.standart_text_credit != s.standart_text_credit || c.is_debit != s.is_debit;
}

bool Account::HasChangedBalances() const {
  const Values& c = current_;
  const Values& s = stored_;
  return c.opening_balance != s.opening_balance || c.balance != s.balance ||
         c.childrens_balance != s.childrens_balance || c.fc_opening_balance != s.fc_opening_balance ||
         c.fc_balance != s.fc_balance || c.worked_balance != s.worked_balance ||
         c.worked_opening_balance != s.worked_opening_balance;
}

void Account::Update() {
  store::Workspace& workspace = CurrentWorkspace();
  workspace.BeginTrans();
  try {
    UpdateInCallersTransaction();
    workspace.CommitTrans();
  } catch (...) {
    // The error goes on as it came; the object keeps its values and its stored copy.
    try {
      workspace.Rollback();
    } catch (const Error&) {
    }
    throw;
  }
}

void Account::UpdateInCallersTransaction() {
  Validate();
  if (current_.id != 0) {
    ExecuteUpdate();
  } else {
    ExecuteInsert();
  }
}

// A new account has no ID yet, so the first rule only holds for a stored one:
// that lets a sibling of a class root, whose parent is the row-less root 0, be stored.
void Account::Validate() const {
  if (current_.id != 0 && current_.id == current_.parent_id) {
    RaiseError(MessageNumber(lgrErrUnkown), "Internal Error", kValidationSource);
  }
  if (!current_.tax && current_.tax_can_choose) RaiseMessage(1131);
  if (!current_.forein_currency && current_.fc_can_choose_rate) RaiseMessage(1149);
}

void Account::ExecuteInsert() {
  ExecuteUpdate();
  AddIndexEntries();
  subaccounts_->BindParent(Variant(current_.id));
}

void Account::ExecuteUpdate() {
  if (current_.budget) current_.year_budget = LinkedWriteBudget(*current_.budget);
  // A code can be set once: only a stored account without one may still receive it.
  if (current_.code != stored_.code && !stored_.code.empty()) RaiseMessage(1237);
  bool wrote = false;
  if (HasChanged()) {
    WriteRecord(SharedAccountsTable());
    RefreshIndexEntries();
    wrote = true;
  }
  if (HasChangedBalances()) {
    WriteBalances(SharedAccountsTable());
    PropagateBalance();
    wrote = true;
  }
  if (wrote) TakeStoredCopy();
}

void Account::WriteRecord(store::Recordset& table) {
  const bool adding = current_.id == 0;
  if (!adding) {
    table.Seek("=", Variant(current_.id));
    if (table.NoMatch()) return;
    table.Edit();
  } else {
    table.AddNew();
  }
  InEditBuffer(table, [&] {
    if (adding) {
      current_.id = ReadLong(table.Value("ID"));
      // The code is written only with a new row: an edit never touches it.
      table.Value("Code", NullableWrite("Str", Variant(current_.code)));
    }
    // ParentID is a plain Long: a class root that is updated holds 0 from then on, not Null.
    table.Value("ParentID", Variant(current_.parent_id));
    table.Value("Position", Variant(current_.position));
    table.Value("Name", NullableWrite("Str", Variant(current_.name)));
    table.Value("Class", Variant(current_.account_class));
    table.Value("IsGeneralLedger", Variant(current_.is_general_ledger));
    table.Value("IsDebit", Variant(current_.is_debit));
    table.Value("IsSum", Variant(current_.is_sum));
    table.Value("IsMaster", Variant(current_.is_master));
    // A master's MasterID is its own ID, also when the ID has only just come into being.
    if (current_.is_master) current_.master_id = current_.id;
    table.Value("MasterID", Variant(current_.master_id));
    table.Value("FCCanChooseRate", Variant(current_.fc_can_choose_rate));
    table.Value("FCID", NullableWrite("Lng", Variant(current_.fc_id)));
    table.Value("FCID2", NullableWrite("Lng", Variant(current_.fc_id2)));
    table.Value("TaxID", NullableWrite("Lng", Variant(current_.tax_id)));
    table.Value("TaxCanChoose", Variant(current_.tax_can_choose));
    table.Value("ActivateValuta", Variant(current_.activate_valuta));
    table.Value("ActivateReference", Variant(current_.activate_reference));
    table.Value("Budget", Variant(current_.year_budget));
    table.Value("ReferenceNr", Variant(current_.reference_nr));
    table.Value("DeleteOnCloture", Variant(current_.delete_on_cloture));
    table.Value("LiegenCode", Variant(current_.liegen_code));
    table.Value("Tags", NullableWrite("Str", Variant(current_.tags)));
    table.Value("PostFix", NullableWrite("Str", Variant(current_.postfix)));
    table.Value("StandartTextDebit", NullableWrite("Str", Variant(current_.standart_text_debit)));
    table.Value("StandartTextCredit", NullableWrite("Str", Variant(current_.standart_text_credit)));
    table.Update();
  });
}

void Account::WriteBalances(store::Recordset& table) {
  table.Seek("=", Variant(current_.id));
  if (table.NoMatch()) return;
  table.Edit();
  InEditBuffer(table, [&] {
    table.Value("OpeningBalance", Variant(current_.opening_balance));
    table.Value("Balance", Variant(current_.balance));
    table.Value("ChildrensBalance", Variant(current_.childrens_balance));
    table.Value("FCOpeningBalance", Variant(current_.fc_opening_balance));
    table.Value("FCBalance", Variant(current_.fc_balance));
    table.Value("WorkedBalance", Variant(current_.worked_balance));
    table.Value("WorkedOpeningBalance", Variant(current_.worked_opening_balance));
    table.Update();
  });
}

void Account::LoadRecord(store::Recordset* record) {
  const store::Recordset& row = record != nullptr ? *record : SharedAccountsTable();
  Values& c = current_;
  c.id = ReadLong(row, "ID");
  c.parent_id = ReadLong(row, "ParentID");
  c.position = ReadLong(row, "Position");
  c.code = ReadString(row, "Code");
  c.name = ReadString(row, "Name");
  c.account_class = ReadInteger(row, "Class");
  c.is_general_ledger = ReadBoolean(row, "IsGeneralLedger");
  c.is_debit = ReadBoolean(row, "IsDebit");
  c.is_sum = ReadBoolean(row, "IsSum");
  c.is_master = ReadBoolean(row, "IsMaster");
  c.master_id = ReadLong(row, "MasterID");
  c.opening_balance = ReadCurrency(row, "OpeningBalance");
  c.balance = ReadCurrency(row, "Balance");
  c.childrens_balance = ReadCurrency(row, "ChildrensBalance");
  c.fc_opening_balance = ReadCurrency(row, "FCOpeningBalance");
  c.fc_balance = ReadCurrency(row, "FCBalance");
  c.fc_id = ReadLong(row, "FCID");
  c.fc_id2 = ReadLong(row, "FCID2");
  c.tax_id = ReadLong(row, "TaxID");
  c.activate_valuta = ReadBoolean(row, "ActivateValuta");
  c.activate_reference = ReadBoolean(row, "ActivateReference");
  c.year_budget = ReadCurrency(row, "Budget");
  c.reference_nr = ReadLong(row, "ReferenceNr");
  c.delete_on_cloture = ReadBoolean(row, "DeleteOnCloture");
  c.worked_balance = ReadCurrency(row, "WorkedBalance");
  c.worked_opening_balance = ReadCurrency(row, "WorkedOpeningBalance");
  c.liegen_code = ReadLong(row, "LiegenCode");
  c.tags = ReadString(row, "Tags");
  c.postfix = ReadString(row, "PostFix");
  c.standart_text_debit = ReadString(row, "StandartTextDebit");
  c.standart_text_credit = ReadString(row, "StandartTextCredit");
  subaccounts_->BindParent(Variant(c.id));
  // Without a currency or a tax the choice flag keeps what this object held.
  if (c.fc_id != 0) {
    c.forein_currency = LinkedForeinCurrency(c.fc_id);
    c.fc_can_choose_rate = ReadBoolean(row, "FCCanChooseRate");
  } else {
    c.forein_currency.reset();
  }
  if (c.tax_id != 0) {
    c.tax = LinkedTax(c.tax_id);
    c.tax_can_choose = ReadBoolean(row, "TaxCanChoose");
  } else {
    c.tax.reset();
  }
  TakeStoredCopy();
}

void Account::InitRoot() {
  current_.id = 0;
  current_.parent_id = 0;
  current_.is_sum = true;
  current_.is_general_ledger = true;
  current_.code.clear();
  current_.name = "Finanzbuchhaltung";
  subaccounts_->BindParent(Variant(int32_t{0}));
}

void Account::AddIndexEntries() {
  if (current_.is_sum) return;
  store::Recordset& index = *SharedAccountHandles().index_table;
  for (const std::string* search_name : {&current_.code, &current_.name}) {
    index.AddNew();
    InEditBuffer(index, [&] {
      index.Value("ID", Variant(current_.id));
      index.Value("SearchName", Variant(*search_name));
      index.Value("IsMaster", Variant(current_.is_master));
      index.Value("MasterID", Variant(current_.master_id));
      index.Update();
    });
  }
}

void Account::RemoveIndexEntries() {
  if (current_.is_sum) return;
  store::QueryDef& query = *SharedAccountHandles().delete_index_entry;
  query.Parameters().Item("ID").Value(Variant(current_.id));
  query.Execute(store::dbFailOnError);
}

void Account::RefreshIndexEntries() {
  if (current_.is_sum) return;
  if (current_.code == stored_.code && current_.name == stored_.name) return;
  RemoveIndexEntries();
  AddIndexEntries();
}

}  // namespace ldg
