// Fills the engine's registry with what the bookkeeping layer builds at open
// and what the chart of accounts reaches in it. Each slot is one assignment;
// the layer's classes add theirs here.
#include <memory>

#include "accounts/account_links.hpp"
#include "bookkeeping/amount_agent.hpp"
#include "bookkeeping/book_entries.hpp"
#include "bookkeeping/journals.hpp"
#include "bookkeeping/periods2.hpp"
#include "engine/engine.hpp"
#include "engine/engine_state.hpp"
#include "engine/subsystems.hpp"
#include "support/error.hpp"

namespace ldg {
namespace {

// Journals.Item of the current engine; error 91 while no journals are open.
void OpenJournalItem(const Variant& index_or_key) {
  Engine* engine = State().engine;
  if (engine == nullptr || !engine->Journals()) RaiseRuntime(kErrObjectNotSet);
  engine->Journals()->Item(index_or_key);
}

const bool registered = [] {
  RegisteredSubsystems().create_journals = [] { return std::make_shared<Journals>(); };
  RegisteredSubsystems().create_periods2 = [] { return std::make_shared<Periods2>(); };
  RegisteredSubsystems().create_book_entries = [] { return std::make_shared<BookEntries>(); };
  RegisteredSubsystems().create_amount_agent = [] { return std::make_shared<AmountAgent>(); };
  RegisteredSubsystems().set_amount_agent_symbols = SetEngineSymbols;
  RegisteredAccountLinks().journal_item = OpenJournalItem;
  return true;
}();

}  // namespace
}  // namespace ldg
