// What the engine knows of the open year file, as a two-column table: file,
// year, dates, status, instance and the client options. `ldg info` and
// `ldg demo` print it.
#pragma once

#include "cli/table_output.hpp"
#include "engine/engine.hpp"

namespace ldg::cli {

TableOutput YearFileSummary(Engine& engine);

}  // namespace ldg::cli
