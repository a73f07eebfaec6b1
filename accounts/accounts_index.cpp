#include "accounts/accounts_index.hpp"

#include "accounts/account.hpp"
#include "accounts/account_handles.hpp"
#include "store/query_def.hpp"
#include "support/error.hpp"
#include "support/messages.hpp"

namespace ldg {

namespace {

constexpr int32_t kInvalidParameterNumber = MessageNumber(1000);
constexpr const char* kInvalidParameterText = "Invalid parameter value.";
constexpr const char* kInternalErrorText = "internal error.";

[[noreturn]] void RaiseInvalidParameter() { RaiseError(kInvalidParameterNumber, kInvalidParameterText); }

std::unique_ptr<store::Recordset> OpenZone(const std::shared_ptr<store::QueryDef>& query,
                                           const Variant& text) {
  if (!query) RaiseRuntime(kErrObjectNotSet);
  query->Parameters().Item("Search").Value(text);
  return query->OpenRecordset();
}

std::shared_ptr<Account> LoadSharedAccount() {
  auto account = std::make_shared<Account>();
  account->LoadRecord();
  return account;
}

}  // namespace

void AccountsIndex::Run() {
  BeforeRun();
  general_ledger_hits_.reset();
  detail_hits_.reset();
  group_hits_.reset();
  AccountHandles& handles = SharedAccountHandles();
  if (zones_ & lgiSZGeneralLedger) general_ledger_hits_ = OpenZone(handles.index_gl, search_text_);
  if (zones_ & lgiSZDetailAccounts) detail_hits_ = OpenZone(handles.index_detail, search_text_);
  if (zones_ & lgiSZAccountGroups) group_hits_ = OpenZone(handles.index_groups, search_text_);
}

store::Recordset* AccountsIndex::ZoneRecords(int16_t what) {
  switch (what) {
    case lgiSZGeneralLedger:
      return general_ledger_hits_.get();
    case lgiSZDetailAccounts:
      return detail_hits_.get();
    case lgiSZAccountGroups:
      return group_hits_.get();
    default:
      RaiseInvalidParameter();
  }
}

int32_t& AccountsIndex::ZoneCount(int16_t what) {
  switch (what) {
    case lgiSZGeneralLedger:
      return general_ledger_count_;
    case lgiSZDetailAccounts:
      return detail_count_;
    case lgiSZAccountGroups:
      return group_count_;
    default:
      RaiseInvalidParameter();
  }
}

int32_t AccountsIndex::Count(int16_t what) {
  store::Recordset* records = ZoneRecords(what);
  if (records == nullptr) RaiseRuntime(kErrObjectNotSet);
  if (records->Eof()) return 0;
  records->MoveLast();
  int32_t& count = ZoneCount(what);
  count = records->RecordCount();
  records->MoveFirst();
  return count;
}

store::Recordset& AccountsIndex::SeekAccountOf(const store::Recordset& records) {
  store::Recordset& accounts = *SharedAccountHandles().accounts_table;
  accounts.Seek("=", records.Value("ID"));
  if (accounts.NoMatch()) RaiseError(kErrorBase, kInternalErrorText);
  return accounts;
}

std::shared_ptr<Account> AccountsIndex::Item(int16_t what, int32_t index) {
  if (what != lgiSZGeneralLedger && what != lgiSZAccountGroups && what != lgiSZDetailAccounts) {
    RaiseInvalidParameter();
  }
  const int32_t count = Count(what);
  if (index < 1 || index > count) RaiseRuntime(kErrSubscript);
  store::Recordset& records = *ZoneRecords(what);
  // Deliberately the zero-based position set to the one-based index: Item gives
  // the row behind the one it names, and the last index fails in the store.
  records.AbsolutePosition(index);
  SeekAccountOf(records);
  return LoadSharedAccount();
}

std::shared_ptr<Account> AccountsIndex::AccountLookup(store::Recordset& records) {
  records.MoveFirst();
  SeekAccountOf(records);
  return LoadSharedAccount();
}

std::shared_ptr<Account> AccountsIndex::FirstItem() {
  std::shared_ptr<Account> general_ledger;
  std::shared_ptr<Account> detail;
  std::shared_ptr<Account> group;
  if (general_ledger_hits_ && !general_ledger_hits_->Eof())
    general_ledger = AccountLookup(*general_ledger_hits_);
  if (detail_hits_ && !detail_hits_->Eof()) detail = AccountLookup(*detail_hits_);
  if (group_hits_ && !group_hits_->Eof()) group = AccountLookup(*group_hits_);
  if (group) return group;
  if (general_ledger) return general_ledger;
  return detail;
}

Variant AccountsIndex::ItemInfo(int16_t what, int32_t index) {
  int16_t zone = 0;
  switch (what) {
    case 1:
      zone = lgiSZGeneralLedger;
      break;
    case 2:
      zone = lgiSZDetailAccounts;
      break;
    default:
      RaiseInvalidParameter();
  }
  const int32_t count = Count(zone);
  if (index < 1 || index > count) RaiseRuntime(kErrSubscript);
  store::Recordset& records = *ZoneRecords(zone);
  records.AbsolutePosition(index - 1);
  const store::Recordset& accounts = SeekAccountOf(records);
  VariantArray info(5);
  info[lgrAccInfoID] = accounts.Value("ID");
  info[lgrAccInfoCode] = accounts.Value("Code");
  info[lgrAccInfoName] = accounts.Value("Name");
  info[lgrAccInfoIsMaster] = accounts.Value("IsMaster");
  info[lgrAccInfoMasterID] = accounts.Value("MasterID");
  return Variant(std::move(info));
}

}  // namespace ldg
