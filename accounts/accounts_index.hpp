// AccountsIndex: the result of one type-ahead search over the chart. The rows
// live in table AccountsIndex, each account once under its code and once under
// its name; the object keeps one record set per searched zone and turns a
// position in one of them into a fresh Account through the shared accounts
// table. Made by Accounts::Search, one object per search.
#pragma once

#include <cstdint>
#include <memory>

#include "store/recordset.hpp"
#include "support/variant.hpp"

namespace ldg {

class Account;

enum SearchZones : int16_t {
  lgiSZGeneralLedger = 1,
  lgiSZAccountGroups = 2,
  lgiSZDetailAccounts = 4,
};

enum AccountsIndexClass : int16_t {
  lgrAccIndexGL = 1,
  lgrAccIndexDetail = 2,
  lgrAccIndexGroups = 3,
};

enum AccountInfo : int16_t {
  lgrAccInfoID = 0,
  lgrAccInfoCode = 1,
  lgrAccInfoName = 2,
  lgrAccInfoIsMaster = 3,
  lgrAccInfoMasterID = 4,
};

class AccountsIndex {
 public:
  // What is a single zone bit.
  int32_t Count(int16_t what);
  std::shared_ptr<Account> Item(int16_t what, int32_t index);
  // The group hit if any, else the general ledger hit, else the detail hit, else null.
  std::shared_ptr<Account> FirstItem();
  std::shared_ptr<Account> AccountLookup(store::Recordset& records);
  // What counts zones by position here: 1 general ledger, 2 detail accounts.
  Variant ItemInfo(int16_t what, int32_t index);

  // Used by Accounts::Search, in this order.
  void SearchText(const Variant& text) { search_text_ = text; }
  void Zones(int16_t zones) { zones_ = zones; }
  void Run();

 private:
  // The record set of a zone bit (1, 4 or 2), null when that zone wasn't searched;
  // 0x800403E8 "Invalid parameter value." for any other value.
  store::Recordset* ZoneRecords(int16_t what);
  int32_t& ZoneCount(int16_t what);
  // Seeks the ID of the current row of records in the shared accounts table.
  store::Recordset& SeekAccountOf(const store::Recordset& records);
  // Called first by Run; does nothing, a place for a check before the search.
  void BeforeRun() {}

  Variant search_text_;
  int16_t zones_ = 0;
  std::unique_ptr<store::Recordset> general_ledger_hits_;
  std::unique_ptr<store::Recordset> detail_hits_;
  std::unique_ptr<store::Recordset> group_hits_;
  int32_t general_ledger_count_ = 0;
  int32_t detail_count_ = 0;
  int32_t group_count_ = 0;
};

}  // namespace ldg
