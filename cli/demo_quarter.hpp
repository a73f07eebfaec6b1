// The first quarter of 2026 of the demo company, a small Zurich trustee firm:
// its services and some goods sold on account with 8.1 % VAT, the customers
// paying, goods bought from the suppliers with input tax and paid, the rent,
// the wages and their social insurance, cash for the till, bank charges and
// the quarter's depreciation. Posted through BookEntries.Append into the
// journal with code 1, one numbered document per entry, after the demo chart.
#pragma once

#include <cstdint>
#include <vector>

#include "engine/engine.hpp"

namespace ldg::cli {

struct DemoLine {
  const char* account_code;
  int64_t rappen;  // hundredths of a franc; debit positive
};

struct DemoEntry {
  int month;
  int day;
  const char* text;
  std::vector<DemoLine> lines;
};

// In the order they are posted; the documents are numbered 1 upward in that order.
const std::vector<DemoEntry>& DemoQuarter();

// Posts every entry of the quarter; returns how many.
int32_t PostDemoQuarter(Engine& engine);

}  // namespace ldg::cli
