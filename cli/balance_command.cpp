// ldg balance FILE [--at DATE]: the trial balance of a year file (see
// cli/trial_balance.hpp), with the stored balances or those at the end of a day.
#include "cli/dated_listing.hpp"
#include "cli/trial_balance.hpp"

namespace ldg::cli {
namespace {

const bool kRegistered = RegisterDatedListing({
    "balance",
    "Show the trial balance of a year file",
    "Balances after the entries of this day (yyyy-mm-dd)",
    [](Engine& engine, const std::optional<OleDate>& at_date) { return TrialBalance(engine, at_date); },
});

}  // namespace
}  // namespace ldg::cli
