#include "cli/entry_draft.hpp"

#include <regex>
#include <string>

namespace ldg::cli {

std::optional<Currency> ReadAmount(std::string_view text) {
  static const std::regex kAmount(R"(-?\d+(\.\d{1,4})?)");
  const std::string candidate(text);
  if (!std::regex_match(candidate, kAmount)) return std::nullopt;
  // Overflow of the 64-bit range gives nothing as well.
  return Currency::Parse(candidate);
}

}  // namespace ldg::cli
