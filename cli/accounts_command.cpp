// ldg accounts FILE [--at DATE]: the chart of accounts of a year file as a
// tree, with each account's balance: the stored one, or the one at a date.
#include "cli/chart_listing.hpp"
#include "cli/dated_listing.hpp"

namespace ldg::cli {
namespace {

const bool kRegistered = RegisterDatedListing({
    "accounts",
    "Show the chart of accounts of a year file with balances",
    "Balances at this date (yyyy-mm-dd) instead of the stored ones",
    [](Engine& engine, const std::optional<OleDate>& at_date) { return ChartListing(*engine.Accounts(), at_date); },
});

}  // namespace
}  // namespace ldg::cli
