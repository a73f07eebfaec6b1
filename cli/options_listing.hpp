// The client options of a year file as texts, in the order Options lists them,
// for the commands that show them. An option that cannot be read as its type
// (PeriodLockFlags never written) shows as "".
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/options.hpp"

namespace ldg::cli {

std::vector<std::pair<std::string, std::string>> OptionValues(const Options& options);
// One option by name: a known one through its property (with its default),
// any other as the row "Option" + name.
std::string OptionValue(const Options& options, std::string_view name);

}  // namespace ldg::cli
