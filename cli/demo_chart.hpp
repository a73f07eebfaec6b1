// The chart of accounts of the demo company, a small Zurich trustee firm: the
// Swiss SME chart's structure in German, with sums for the groups, a master
// account for the customers and one for the suppliers, and opening balances on
// the balance sheet that add up to 0. Built through Accounts::Add, as a front
// end would build it, into the chart of the open year file.
#pragma once

#include <cstdint>
#include <vector>

#include "accounts/accounts.hpp"

namespace ldg::cli {

enum class DemoNode { kSum, kAccount, kMaster, kDetail };

struct DemoAccount {
  const char* parent_code;  // "A" and "B" are the class roots of every year file
  const char* code;
  const char* name;
  DemoNode node;
  bool is_debit;
  int64_t opening_rappen;  // opening balance in hundredths of a franc; debit positive
};

// In the order they are added: every parent before its children.
const std::vector<DemoAccount>& DemoChart();

void AddDemoChart(Accounts& accounts);

}  // namespace ldg::cli
