// Subsystems: what the layers above the engine register so that the engine can
// build their part of the object tree at open and call into them, without a
// header of engine/ naming a folder above it. Each layer fills its slots once,
// at program start (see <folder>/<folder>_registration.cpp); an empty slot means
// that layer isn't linked, and the engine leaves that member empty.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "support/currency.hpp"
#include "support/variant.hpp"

namespace ldg {

class Journals;
class Accounts;
class MasterAccounts;
class AccountsGroups;
class Periods2;
class AmountAgent;
class BookEntries;

// What the engine's amount agent is given at open, in the order it takes them;
// the rounding unit is set after the eleven symbols.
struct AmountAgentSymbols {
  Variant decimal_separator;
  Variant thousand_separator;
  std::string system_decimal_separator;
  std::string system_thousand_separator;
  Variant neg_bookkeeping_symbol;
  Variant pos_bookkeeping_symbol;
  Variant neg_arithmetic_symbol;
  Variant pos_arithmetic_symbol;
  int16_t cur_code_pos = 0;
  Variant base_currency_code;
  int16_t decimals = 0;
  Currency round;
};

struct Subsystems {
  std::function<std::shared_ptr<ldg::Journals>()> create_journals;
  std::function<std::shared_ptr<ldg::Accounts>()> create_accounts;
  std::function<std::shared_ptr<ldg::MasterAccounts>()> create_master_accounts;
  std::function<std::shared_ptr<ldg::AccountsGroups>()> create_accounts_groups;
  std::function<std::shared_ptr<ldg::Periods2>()> create_periods2;
  std::function<std::shared_ptr<ldg::BookEntries>()> create_book_entries;
  std::function<std::shared_ptr<ldg::AmountAgent>()> create_amount_agent;
  std::function<void(ldg::AmountAgent& agent, const AmountAgentSymbols& symbols)> set_amount_agent_symbols;
  // Drops the engine-wide scratch query and record sets (the dated balance view).
  std::function<void()> release_shared_scratch_objects;
  // Rebuilds every stored Balance from the movements, and ChildrensBalance when asked.
  std::function<void(bool recalc_children_balances)> recalc_balances;
};

// The one registry of the process; filled before main runs, read-only after.
Subsystems& RegisteredSubsystems();

}  // namespace ldg
