// The trial balance of a year file: every account that takes postings (plain
// and detail accounts, in the chart's order) with its balance on the debit or
// the credit side, and a last row "Total" with both sides' sums, which are
// equal in a balanced chart. `ldg balance` and `ldg demo` print it.
//
// Without a date the balances are the stored ones. With a date they are the
// opening balance plus every movement dated up to and including that day, one
// grouped query over the year's movements; dates from the day before the year
// to its last day are valid, as for the engine's dated balances.
#pragma once

#include <optional>

#include "cli/table_output.hpp"
#include "engine/engine.hpp"
#include "support/ole_date.hpp"

namespace ldg::cli {

TableOutput TrialBalance(Engine& engine, const std::optional<OleDate>& at_date = std::nullopt);

}  // namespace ldg::cli
