#include "accounts/accounts.hpp"

#include <algorithm>

#include "accounts/account.hpp"
#include "accounts/account_handles.hpp"
#include "accounts/account_links.hpp"
#include "accounts/accounts_index.hpp"
#include "accounts/master_accounts.hpp"
#include "accounts/subaccounts.hpp"
#include "engine/current_objects.hpp"
#include "engine/engine_state.hpp"
#include "store/constants.hpp"
#include "store/database.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/messages.hpp"
#include "support/nullable.hpp"
#include "support/text.hpp"
#include "support/text_helpers.hpp"

namespace ldg {

namespace {

// Puts the shared table's index back however the lookup ends.
class IndexRestorer {
 public:
  explicit IndexRestorer(store::Recordset& table) : table_(table), index_(table.Index()) {}
  ~IndexRestorer() {
    try {
      table_.Index(index_);
    } catch (const Error&) {
    }
  }
  IndexRestorer(const IndexRestorer&) = delete;
  IndexRestorer& operator=(const IndexRestorer&) = delete;

 private:
  store::Recordset& table_;
  std::string index_;
};

// Runs read on the row the shared table finds under the index, the index put
// back afterwards; false when there is no such row.
template <typename Read>
bool ReadSoughtRow(const char* index, const Variant& value, Read read) {
  store::Recordset& table = SharedAccountsTable();
  IndexRestorer restore(table);
  table.Index(index);
  table.Seek("=", value);
  if (table.NoMatch()) return false;
  read(table);
  return true;
}

// The account of the row the shared table finds under the index, null when none.
std::shared_ptr<Account> SeekAccount(const char* index, const Variant& value) {
  std::shared_ptr<Account> account;
  ReadSoughtRow(index, value, [&](store::Recordset& table) {
    account = std::make_shared<Account>();
    account->LoadRecord(&table);
  });
  return account;
}

std::shared_ptr<Account> Required(std::shared_ptr<Account> account) {
  if (!account) RaiseRuntime(kErrObjectNotSet);
  return account;
}

// The new account's Position among its siblings; the numbers handed to the siblings
// land on objects read afresh, which die at once (deliberate: only the new
// account's Position is ever stored).
int32_t SiblingPosition(Account& parent, int32_t relative_id, int16_t relationship) {
  Subaccounts& siblings = *parent.Subaccounts();
  const int32_t count = siblings.Count();
  const int32_t place = siblings.ItemIndex(relative_id);
  int32_t position = 0;
  switch (relationship) {
    case lgrAccRelLast:
      position = count + 1;
      break;
    case lgrAccRelPrevious:
      position = place;
      break;
    case lgrAccRelNext:
      position = place + 1;
      break;
    default:
      return 0;
  }
  for (int32_t k = 1; k <= count; ++k) {
    const bool moves_up = relationship == lgrAccRelPrevious ? k >= place
                          : relationship == lgrAccRelNext   ? k > place
                                                            : false;
    Required(siblings.Item(k))->Position(moves_up ? k + 1 : k);
  }
  return position;
}

}  // namespace

Accounts::Accounts() { SharedAccountHandles().Open(); }

Accounts::~Accounts() {
  try {
    SharedAccountHandles().Release();
  } catch (...) {  // an end never fails
  }
}

void Accounts::Refresh() {
  auto& table = SharedAccountHandles().accounts_table;
  store::CloseAndDrop(table);
  try {
    table = CurrentDatabase().OpenRecordset("Accounts", store::dbOpenTable);
    table->Index("PrimaryKey");
  } catch (const Error&) {  // a Refresh never fails
  }
}

std::shared_ptr<Account> Accounts::Add(int32_t relative_id, const NewAccount& options) {
  const bool is_sum = options.is_sum.value_or(false);
  const bool is_master = options.is_master.value_or(false);
  if (is_sum && is_master) RaiseMessage(1008);
  const int16_t relationship = options.relationship.value_or(0);

  std::shared_ptr<Account> parent;
  int32_t position = 0;
  if (relationship != lgrAccRelChild) {
    if (relative_id == 0) RaiseMessage(1016);
    std::shared_ptr<Account> relative = Required(Item(Variant(relative_id)));
    parent = Required(Item(Variant(relative->ParentID())));
    if (relative->MasterID() != 0) {
      if (is_sum || is_master) RaiseMessage(1009);
      if (parent->MasterID() == 0) RaiseMessage(1010);
    }
    position = SiblingPosition(*parent, relative_id, relationship);
  } else {
    if (relative_id == 0) RaiseMessage(1015);
    parent = Required(Item(Variant(relative_id)));
    if (parent->MasterID() != 0 && (is_sum || is_master)) RaiseMessage(1009);
  }
  if (parent->MasterID() == 0 && parent->IsGeneralLedger() && !parent->IsSum()) RaiseMessage(1002);

  std::shared_ptr<Tax> tax;
  if (options.tax_id && *options.tax_id > 0) tax = LinkedTax(*options.tax_id);

  auto account = std::make_shared<Account>();
  account->SetParentID(parent->ID());
  account->Position(position);
  account->SetGeneralLedger(parent->MasterID() != 0 && !is_master ? false : parent->IsGeneralLedger());
  account->IsSum(is_sum);
  account->IsMaster(is_master);
  account->IsDebit(options.is_debit.value_or(parent->IsDebit()));
  account->SetMasterID(parent->MasterID());
  account->SetClass(parent->Class());
  if (!options.code.IsEmpty()) account->Code(options.code);
  if (!options.name.IsEmpty()) account->Name(options.name);
  account->ActivateValuta(options.activate_valuta.value_or(false));
  account->ActivateReference(options.activate_reference.value_or(false));
  if (tax) account->Tax(tax);
  account->LiegenCode(options.liegen_code.value_or(0));

  account->Update();
  if (is_master) {
    account->Update();
    if (State().master_accounts != nullptr) State().master_accounts->Reload();
  }
  parent->Subaccounts()->Update();
  SignalCreated(account);
  return account;
}

std::shared_ptr<Account> Accounts::Item(const Variant& account_info) {
  switch (account_info.Type()) {
    case VarType::kInteger:
    case VarType::kLong:
      return ItemByID(CLng(account_info));
    case VarType::kObject: {
      if (account_info.IsNothing()) return nullptr;
      if (auto account = std::dynamic_pointer_cast<Account>(account_info.AsObject())) return account;
      return ItemByCode(CStr(account_info));
    }
    default:
      return ItemByCode(CStr(account_info));
  }
}

std::shared_ptr<Account> Accounts::Item(const store::Field& field) {
  switch (field.Type()) {
    case store::FieldType::kText:
    case store::FieldType::kMemo:
      return ItemByCode(CStr(field.Value()));
    case store::FieldType::kLong:
    case store::FieldType::kInteger:
      return ItemByID(CLng(field.Value()));
    default:
      return nullptr;
  }
}

std::shared_ptr<Account> Accounts::ItemByID(int32_t id) {
  if (id == 0) {
    auto root = std::make_shared<Account>();
    root->InitRoot();
    return root;
  }
  if (id < 0) return nullptr;
  return SeekAccount("ID", Variant(id));
}

std::optional<int32_t> Accounts::StoredMasterID(int32_t id) {
  if (id == 0) return 0;  // the class roots' parent, which has no row
  if (id < 0) return std::nullopt;
  std::optional<int32_t> master_id;
  ReadSoughtRow("ID", Variant(id), [&](store::Recordset& table) {
    if (ReadLong(table, "FCID") == 0 && ReadLong(table, "TaxID") == 0)
      master_id = ReadLong(table, "MasterID");
  });
  return master_id;
}

std::shared_ptr<Account> Accounts::ItemByCode(const std::string& text) {
  const std::string trimmed = Trim(text);
  if (trimmed.empty()) return nullptr;
  // The first word alone, so that a FullCodeName finds its account.
  const std::string code = trimmed.substr(0, trimmed.find(' '));
  return SeekAccount("Code", Variant(code));
}

Variant Accounts::ItemExists(const Variant& account_info) { return Variant(Item(account_info) != nullptr); }

std::shared_ptr<AccountsIndex> Accounts::Search(const Variant& search_text, const Variant& what) {
  auto index = std::make_shared<AccountsIndex>();
  index->SearchText(search_text);
  index->Zones(what.IsEmpty() ? int16_t{lgiSZGeneralLedger | lgiSZDetailAccounts} : CInt(what));
  index->Run();
  return index;
}

int32_t Accounts::NewClientID() {
  std::string pattern;
  for (int k = 0; k < 8; ++k) pattern += "[1234567890]";
  pattern += "*";
  auto rows = CurrentDatabase().OpenRecordset(
      "SELECT Code FROM Accounts WHERE (Code Like \"" + pattern + "\") ORDER BY Code DESC;",
      store::dbOpenSnapshot);
  const int32_t highest = rows->Eof() ? 0 : CLng(Variant(Left(CStr(rows->Value("Code")), 8)));
  rows->Close();
  return highest + 1;
}

std::string Accounts::NewClientCode() { return NumberPadded(NewClientID(), 8); }

void Accounts::SignalUpdated(std::shared_ptr<Account>& account) {
  const std::vector<AccountsEvents*> listeners = listeners_;
  for (AccountsEvents* listener : listeners) listener->Updated(account);
}

void Accounts::SignalDeleted(int32_t id) {
  std::shared_ptr<Account> account = Item(Variant(id));
  State().Hooks().Yield();
  const std::vector<AccountsEvents*> listeners = listeners_;
  for (AccountsEvents* listener : listeners) listener->Deleted(account);
}

void Accounts::SignalCreated(std::shared_ptr<Account>& account) {
  const std::vector<AccountsEvents*> listeners = listeners_;
  for (AccountsEvents* listener : listeners) listener->Created(account);
}

void Accounts::AddListener(AccountsEvents* listener) { listeners_.push_back(listener); }

void Accounts::RemoveListener(AccountsEvents* listener) {
  listeners_.erase(std::remove(listeners_.begin(), listeners_.end(), listener), listeners_.end());
}

}  // namespace ldg
