// The chart of accounts as a listing: one row per account, from the two class
// roots down, each indented by two blanks per level below the roots, with its
// code, name, kind and balance. `ldg accounts` and `ldg demo` print it.
//
// Without a date the balance is the stored one with the children's
// (BalanceWithChildrens); with a date it is the account's balance at that
// date (BalanceAtDate), so sums and masters show their dated tree sum.
#pragma once

#include <optional>
#include <string>

#include "accounts/accounts.hpp"
#include "cli/table_output.hpp"
#include "support/ole_date.hpp"
#include "support/variant.hpp"

namespace ldg::cli {

TableOutput ChartListing(Accounts& accounts, const std::optional<OleDate>& at_date = std::nullopt);

// The word for an account's Kind: "Sum", "Account", "Master" or "Detail".
std::string KindName(int16_t kind);

// A date given as yyyy-mm-dd; nothing for any other text or a day that does not exist.
std::optional<OleDate> ReadIsoDate(const std::string& text);
// A date given as yyyy-mm-dd; anything else is an ldg::Error naming the option.
OleDate ParseIsoDate(const std::string& text, const std::string& option);
// An optional date option: nothing when the text is empty, else as ParseIsoDate.
std::optional<OleDate> ParseOptionalIsoDate(const std::string& text, const std::string& option);
// The same as a Variant: Empty when the text is empty, else the date.
Variant IsoDateOption(const std::string& text, const std::string& option);

}  // namespace ldg::cli
