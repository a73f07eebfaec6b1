// Account: one node of the chart of accounts (a sum, a plain account, a master
// or a detail account below a master), one row of table Accounts. The object
// holds the row's fields and a stored copy taken when the row was read or last
// written; Update validates and writes back only what differs. Accounts are never
// cached: every lookup builds a fresh object, and two objects of one ID are
// independent copies, so a posting re-reads the stored balances first
// (ReloadBalances).
//
// The members are implemented in three files: the record itself
// (account.cpp), its balances (account_balances.cpp) and its place in the tree
// (account_tree.cpp). Tax, currency and budget objects belong to layers above
// and are reached through accounts/account_links.hpp.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "store/recordset.hpp"
#include "support/currency.hpp"
#include "support/ole_date.hpp"
#include "support/string_splitter.hpp"
#include "support/variant.hpp"

namespace ldg {

class Subaccounts;
class Tax;
class ForeinCurrency;
class Budget;

// Kinds of node.
enum AccountTypes : int16_t {
  lgrAccGLSum = 1,
  lgrAccGLNormal = 2,
  lgrAccGLMaster = 3,
  lgrAccDetail = 4,
};

// Class 1 is the balance sheet ("A") and class 2 the income statement ("B"),
// although the names read the other way round; the numbers are what counts.
enum AccountPlanClasses : int16_t {
  lgrGLRoot = 0,
  lgrResult = 1,
  lgrBalance = 2,
};

// Published for front ends; no operation of the engine takes it.
enum BalanceModes : int16_t {
  lgrAccBalanceBeforeDate = 1,
  lgrAccBalanceBeforeMovement = 2,
  lgrAccBalanceBeforePeriod = 3,
};

class Account : public Object {
 public:
  // Every field starts at 0, False or empty; only Subaccounts is made.
  Account();
  ~Account() override;

  std::shared_ptr<ldg::Subaccounts> Subaccounts() const { return subaccounts_; }
  void Subaccounts(std::shared_ptr<ldg::Subaccounts> value) { subaccounts_ = std::move(value); }
  int32_t ParentID() const { return current_.parent_id; }
  int32_t ID() const { return current_.id; }
  Variant Code() const { return Variant(current_.code); }
  // Stored as given, without trimming.
  void Code(const Variant& value);
  Variant Name() const { return Variant(current_.name); }
  // Trims, and cuts off an ending " (wird gelöscht)" so that a FullName handed back doesn't grow.
  void Name(const Variant& value);
  // Name trimmed, with " (wird gelöscht)" behind it when the account is marked for deletion.
  std::string FullName() const;
  // Code trimmed, a blank, FullName.
  std::string FullCodeName() const;
  bool IsDebit() const { return current_.is_debit; }
  void IsDebit(bool value) { current_.is_debit = value; }
  std::string StandartTextDebit() const { return current_.standart_text_debit; }
  void StandartTextDebit(std::string value) { current_.standart_text_debit = std::move(value); }
  std::string StandartTextCredit() const { return current_.standart_text_credit; }
  void StandartTextCredit(std::string value) { current_.standart_text_credit = std::move(value); }
  std::string Tags() const { return current_.tags; }
  void Tags(std::string value) { current_.tags = std::move(value); }
  std::string Postfix() const { return current_.postfix; }
  void Postfix(std::string value) { current_.postfix = std::move(value); }
  int32_t FCID() const { return current_.fc_id; }
  // Writes the key only: ForeinCurrency keeps its object until the row is read again.
  void FCID(int32_t value) { current_.fc_id = value; }
  int32_t FCID2() const { return current_.fc_id2; }
  void FCID2(int32_t value) { current_.fc_id2 = value; }
  // 1 for a sum, 3 for a master, else 2: a detail account reads as 2 here (deliberate).
  int16_t NodeType() const;
  int32_t Position() const { return current_.position; }
  void Position(int32_t value) { current_.position = value; }
  bool IsGeneralLedger() const { return current_.is_general_ledger; }
  int16_t Class() const { return current_.account_class; }
  bool IsSum() const { return current_.is_sum; }
  void IsSum(bool value) { current_.is_sum = value; }
  bool IsMaster() const { return current_.is_master; }
  void IsMaster(bool value) { current_.is_master = value; }
  int32_t MasterID() const { return current_.master_id; }
  std::shared_ptr<ldg::ForeinCurrency> ForeinCurrency() const { return current_.forein_currency; }
  // Writes the reference only; FCID stays.
  void ForeinCurrency(std::shared_ptr<ldg::ForeinCurrency> value) { current_.forein_currency = std::move(value); }
  bool FCCanChooseRate() const { return current_.fc_can_choose_rate; }
  void FCCanChooseRate(bool value) { current_.fc_can_choose_rate = value; }
  std::shared_ptr<ldg::Tax> Tax() const { return current_.tax; }
  // Also copies the tax's ID into TaxID, or 0 for none.
  void Tax(std::shared_ptr<ldg::Tax> value);
  int32_t TaxID() const { return current_.tax_id; }
  bool TaxCanChoose() const { return current_.tax_can_choose; }
  void TaxCanChoose(bool value) { current_.tax_can_choose = value; }
  bool ActivateValuta() const { return current_.activate_valuta; }
  void ActivateValuta(bool value) { current_.activate_valuta = value; }
  bool ActivateReference() const { return current_.activate_reference; }
  void ActivateReference(bool value) { current_.activate_reference = value; }
  // Reading fails: the value is handed to the budget object as if it had a
  // default member, which it hasn't (deliberate; callers read Budget()->YearBudget()).
  Currency YearBudget();
  void YearBudget(Currency value) { current_.year_budget = value; }
  Currency OpeningBalance() const { return current_.opening_balance; }
  // Shifts Balance by the difference; guarded (sums, masters, marked accounts).
  void OpeningBalance(Currency value);
  Currency WorkedOpeningBalance() const { return current_.worked_opening_balance; }
  void WorkedOpeningBalance(Currency value);
  int32_t LiegenCode() const { return current_.liegen_code; }
  void LiegenCode(int32_t value) { current_.liegen_code = value; }
  // 0 for sums and masters.
  Currency FCOpeningBalance() const;
  void FCOpeningBalance(Currency value);
  Currency Balance() const { return current_.balance; }
  // 0 for sums and masters, without an error.
  Currency FCBalance() const;
  // A sum adds up its tree; a master or detail account adds ChildrensBalance.
  Currency BalanceWithChildrens();
  Currency WorkedBalance() const { return current_.worked_balance; }
  void WorkedBalance(Currency value);
  int32_t ReferenceNr() const { return current_.reference_nr; }

  // Stores the account on its own: Validate and write, in one transaction.
  void Update();
  // Update for a caller inside its own transaction that takes back all it wrote
  // when an error comes out of here (the posting of an entry's lines): the same
  // checks and writes, without a nested transaction per call.
  void UpdateInCallersTransaction();
  // The steps of Update; they open no transaction of their own.
  void ExecuteInsert();
  void ExecuteUpdate();
  void Delete(bool recursive = false);
  void DeleteNormal();
  // False for the class roots.
  bool CanDelete() const;
  void Move(int32_t destination_id);
  void CheckDestination(const Account& destination);
  int16_t Kind() const;
  // AtDate is a day of the open year or the day before it; JournalsToExclude a
  // text of journal ids separated by ";".
  Currency BalanceAtDate(OleDate at_date, const Variant& journals_to_exclude = Variant());
  Currency FCBalanceAtDate(OleDate at_date, const Variant& journals_to_exclude = Variant());
  void ValidateAtDate(OleDate at_date) const;
  // Prepares the engine-wide balance view: dated, without journals, or the plain tree.
  void CreateViews(const Variant& at_date = Variant(), const Variant& journals_to_exclude = Variant());
  // Accounts.Item(ParentID); for a class root the general ledger root object.
  std::shared_ptr<Account> Parent() const;
  // Made on first use, bound to this account's ID at every call.
  std::shared_ptr<ldg::Budget> Budget();
  bool DeleteOnCloture() const { return current_.delete_on_cloture; }
  // Writes the flag at once, with its checks and marks.
  void DeleteOnCloture(bool value);
  std::vector<std::shared_ptr<Account>> Children() const;
  bool HasChangedBalances() const;
  bool HasChanged() const;

  // For the engine's own classes.
  void SetParentID(int32_t value) { current_.parent_id = value; }
  void SetGeneralLedger(bool value) { current_.is_general_ledger = value; }
  void SetClass(int16_t value) { current_.account_class = value; }
  void SetMasterID(int32_t value) { current_.master_id = value; }
  // Reads the current row of the record set, or of the shared accounts table.
  void LoadRecord(store::Recordset* record = nullptr);
  // The general ledger root above the two class roots, which has no row.
  void InitRoot();
  void TakeStoredCopy() { stored_ = current_; }
  // The stored balances win over what this object holds (before a posting).
  void ReloadBalances();
  void SetBalance(Currency value);
  void SetFCBalance(Currency value) { current_.fc_balance = value; }
  Currency ChildrensBalance() const { return current_.childrens_balance; }
  void ChildrensBalance(Currency value);

 private:
  // The row's fields and the three object references; held twice, as the
  // current values and as the stored copy.
  struct Values {
    int32_t id = 0;
    int32_t parent_id = 0;
    int32_t position = 0;
    std::string code;
    std::string name;
    int16_t account_class = 0;
    bool is_general_ledger = false;
    bool is_debit = false;
    bool is_sum = false;
    bool is_master = false;
    int32_t master_id = 0;
    Currency opening_balance;
    Currency balance;
    Currency childrens_balance;
    Currency fc_opening_balance;
    Currency fc_balance;
    bool fc_can_choose_rate = false;
    int32_t fc_id = 0;
    int32_t fc_id2 = 0;
    int32_t tax_id = 0;
    bool tax_can_choose = false;
    bool activate_valuta = false;
    bool activate_reference = false;
    Currency year_budget;
    int32_t reference_nr = 0;
    bool delete_on_cloture = false;
    Currency worked_balance;
    Currency worked_opening_balance;
    int32_t liegen_code = 0;
    std::string tags;
    std::string postfix;
    std::string standart_text_debit;
    std::string standart_text_credit;
    std::shared_ptr<ldg::Tax> tax;
    std::shared_ptr<ldg::ForeinCurrency> forein_currency;
    std::shared_ptr<ldg::Budget> budget;
  };

  // account.cpp
  void Validate() const;
  void WriteRecord(store::Recordset& table);
  void WriteBalances(store::Recordset& table);
  void AddIndexEntries();
  void RemoveIndexEntries();
  void RefreshIndexEntries();

  // account_balances.cpp
  void GuardBalanceChange(int32_t deletion_message) const;
  void PropagateBalance();
  Currency TreeSum();
  void AskSumsAtDate(OleDate at_date, const Variant& journals_to_exclude);
  void RunViewQuery();
  void ParseJournalList(const Variant& journals_to_exclude);
  void RunListQuery();

  // account_tree.cpp
  void DeleteRecursive(int32_t id);
  void DeleteOne(int32_t id);

  std::shared_ptr<ldg::Subaccounts> subaccounts_;
  Values current_;
  Values stored_;

  // The dated balance cache of this object.
  bool has_date_asked_ = false;
  OleDate date_asked_;
  Variant sum_of_amount_;
  Variant sum_of_fc_amount_;
  StringSplitter splitter_;
  Variant views_date_;
  Variant views_journals_;
};

}  // namespace ldg
