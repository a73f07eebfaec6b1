// EngineState: the engine-wide values, held once per hosting thread and read
// directly by every class: the current engine, workspace, database, session,
// accounts, master accounts and amount agent, the open year's id, dates and
// status, the system separators, and the record store's root service. Two
// threads that each create an Engine get two independent sets; nothing locks.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "engine/host_hooks.hpp"
#include "store/db_engine.hpp"
#include "support/variant.hpp"

namespace ldg {

class Engine;
class Session;
class Accounts;
class MasterAccounts;
class AmountAgent;

struct EngineState {
  Engine* engine = nullptr;
  std::shared_ptr<store::Workspace> workspace;
  std::shared_ptr<store::Database> database;
  Session* session = nullptr;
  Accounts* accounts = nullptr;
  MasterAccounts* master_accounts = nullptr;
  AmountAgent* amount_agent = nullptr;

  // The open year; these stay after a close.
  int16_t year_id = 0;
  Variant year_beginn;
  Variant year_end;
  int16_t year_status_id = 0;

  std::string system_decimal_separator = ".";
  std::string system_thousand_separator = "'";
  std::string system_currency_symbol = "CHF";

  bool version_logged = false;
  double last_created_instance_id = 0;

  // The record store's root service of this thread.
  store::DBEngine& DBEngine();
  // The host's hooks; no-ops until a host sets its own.
  HostHooks& Hooks() { return hooks ? *hooks : default_hooks; }
  HostHooks* hooks = nullptr;

 private:
  std::unique_ptr<store::DBEngine> db_engine_;
  HostHooks default_hooks;
};

// This thread's engine-wide values.
EngineState& State();

}  // namespace ldg
