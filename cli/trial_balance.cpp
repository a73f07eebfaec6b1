#include "cli/trial_balance.hpp"

#include <map>
#include <memory>
#include <string>

#include "accounts/account.hpp"
#include "accounts/accounts.hpp"
#include "store/constants.hpp"
#include "store/database.hpp"
#include "store/recordset.hpp"
#include "support/conversions.hpp"
#include "support/messages.hpp"
#include "support/sql_text.hpp"
#include "support/text.hpp"
#include "support/text_helpers.hpp"

namespace ldg::cli {

namespace {

constexpr int32_t kDateOutsideYearMessage = 1161;

// The sum of the movements of each account dated up to and including the day.
std::map<int32_t, Currency> MovementsUpTo(Engine& engine, OleDate at_date) {
  const OleDate first = CDate(engine.YearBeginn());
  if (at_date < OleDate(first.Serial() - 1) || at_date > CDate(engine.YearEnd())) {
    throw MessageError(kDateOutsideYearMessage);
  }
  auto rows = engine.Database()->OpenRecordset(
      "SELECT Movements.AccountID, Sum(Movements.Amount) AS Total FROM BookEntries INNER JOIN Movements ON "
      "BookEntries.ID = Movements.EntryID WHERE (BookEntries.Date <= " +
          CStr(DateLiteral(Variant(at_date))) + ") GROUP BY Movements.AccountID;",
      store::dbOpenSnapshot);
  std::map<int32_t, Currency> totals;
  for (; !rows->Eof(); rows->MoveNext()) totals[CLng(rows->Value("AccountID"))] = CCur(rows->Value("Total"));
  rows->Close();
  return totals;
}

class TrialRows {
 public:
  TrialRows(TableOutput& table, const std::optional<std::map<int32_t, Currency>>& dated)
      : table_(table), dated_(dated) {}

  // Each node's Children are asked for once: they are read afresh at every call.
  void Add(Account& account) {
    if (!account.IsSum() && !account.IsMaster()) AddRow(account);
    for (const auto& child : account.Children()) Add(*child);
  }

  void AddTotals() { table_.AddRow({"", "Total", FormatMoney(debit_), FormatMoney(credit_)}); }

 private:
  void AddRow(Account& account) {
    const Currency balance = BalanceOf(account);
    std::string debit, credit;
    if (balance > Currency()) {
      debit = FormatMoney(balance);
      debit_ += balance;
    } else if (balance < Currency()) {
      credit = FormatMoney(-balance);
      credit_ -= balance;
    }
    table_.AddRow({Trim(CStr(account.Code())), account.FullName(), debit, credit});
  }

  Currency BalanceOf(const Account& account) const {
    if (!dated_) return account.Balance();
    const auto moved = dated_->find(account.ID());
    return account.OpeningBalance() + (moved == dated_->end() ? Currency() : moved->second);
  }

  TableOutput& table_;
  const std::optional<std::map<int32_t, Currency>>& dated_;
  Currency debit_;
  Currency credit_;
};

}  // namespace

TableOutput TrialBalance(Engine& engine, const std::optional<OleDate>& at_date) {
  std::optional<std::map<int32_t, Currency>> dated;
  if (at_date) dated = MovementsUpTo(engine, *at_date);
  TableOutput table({"Code", "Name", "Debit", "Credit"});
  table.AmountColumn(2);
  table.AmountColumn(3);
  TrialRows rows(table, dated);
  for (const auto& root : engine.Accounts()->Item(Variant(int32_t{0}))->Children()) rows.Add(*root);
  rows.AddTotals();
  return table;
}

}  // namespace ldg::cli
