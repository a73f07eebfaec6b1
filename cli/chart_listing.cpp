#include "cli/chart_listing.hpp"

#include <memory>
#include <regex>

#include "accounts/account.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/number_text.hpp"
#include "support/text.hpp"
#include "support/text_helpers.hpp"
#include "support/variant.hpp"

namespace ldg::cli {

namespace {

class ChartRows {
 public:
  ChartRows(TableOutput& table, const std::optional<OleDate>& at_date) : table_(table), at_date_(at_date) {}

  // Each node's Children are asked for once: they are read afresh at every call.
  void Add(Account& account, int depth) {
    const Currency balance = at_date_ ? account.BalanceAtDate(*at_date_) : account.BalanceWithChildrens();
    table_.AddRow({std::string(2 * static_cast<size_t>(depth), ' ') + Trim(CStr(account.Code())),
                   account.FullName(), KindName(account.Kind()), FormatMoney(balance)});
    for (const auto& child : account.Children()) Add(*child, depth + 1);
  }

 private:
  TableOutput& table_;
  const std::optional<OleDate>& at_date_;
};

}  // namespace

std::string KindName(int16_t kind) {
  switch (kind) {
    case lgrAccGLSum:
      return "Sum";
    case lgrAccGLNormal:
      return "Account";
    case lgrAccGLMaster:
      return "Master";
    case lgrAccDetail:
      return "Detail";
    default:
      return std::to_string(kind);
  }
}

std::optional<OleDate> ReadIsoDate(const std::string& text) {
  static const std::regex kIsoDate(R"(\d{4}-\d{2}-\d{2})");
  if (!std::regex_match(text, kIsoDate)) return std::nullopt;
  return ReadDateText(text);
}

OleDate ParseIsoDate(const std::string& text, const std::string& option) {
  const std::optional<OleDate> date = ReadIsoDate(text);
  if (!date)
    throw Error(kErrInvalidCall, kAppTitle, option + " takes a date as yyyy-mm-dd, not '" + text + "'.");
  return *date;
}

std::optional<OleDate> ParseOptionalIsoDate(const std::string& text, const std::string& option) {
  if (text.empty()) return std::nullopt;
  return ParseIsoDate(text, option);
}

Variant IsoDateOption(const std::string& text, const std::string& option) {
  return text.empty() ? Variant() : Variant(ParseIsoDate(text, option));
}

TableOutput ChartListing(Accounts& accounts, const std::optional<OleDate>& at_date) {
  TableOutput table({"Code", "Name", "Kind", "Balance"});
  table.AmountColumn(3);
  ChartRows rows(table, at_date);
  for (const auto& root : accounts.Item(Variant(int32_t{0}))->Children()) rows.Add(*root, 0);
  return table;
}

}  // namespace ldg::cli
