// A listing command of the form `ldg NAME FILE [--at DATE] [--format text|csv|json]`:
// it opens the year file and prints the table its builder makes, for the
// stored state or for a date.
#pragma once

#include <functional>
#include <optional>

#include "cli/table_output.hpp"
#include "engine/engine.hpp"
#include "support/ole_date.hpp"

namespace ldg::cli {

struct DatedListing {
  const char* name;
  const char* description;
  const char* at_help;
  std::function<TableOutput(Engine& engine, const std::optional<OleDate>& at_date)> build;
};

// Registers the command; call it from a namespace-scope initialiser as RegisterCommand.
bool RegisterDatedListing(DatedListing listing);

}  // namespace ldg::cli
