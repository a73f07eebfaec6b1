#include "cli/options_listing.hpp"

#include <cctype>
#include <functional>

#include "support/conversions.hpp"
#include "support/error.hpp"

namespace ldg::cli {
namespace {

using Reader = std::function<Variant(const Options&)>;

const std::vector<std::pair<std::string, Reader>>& Readers() {
  static const std::vector<std::pair<std::string, Reader>> readers = {
      {"ClientName", [](const Options& o) { return o.ClientName(); }},
      {"ClientExtraText", [](const Options& o) { return o.ClientExtraText(); }},
      {"BaseCurrencyCode", [](const Options& o) { return o.BaseCurrencyCode(); }},
      {"Decimals", [](const Options& o) { return Variant(o.Decimals()); }},
      {"DecimalSep", [](const Options& o) { return o.DecimalSep(); }},
      {"ThousandSep", [](const Options& o) { return o.ThousandSep(); }},
      {"CurCodePos", [](const Options& o) { return Variant(o.CurCodePos()); }},
      {"PosArithmeticSymbol", [](const Options& o) { return o.PosArithmeticSymbol(); }},
      {"NegArithmeticSymbol", [](const Options& o) { return o.NegArithmeticSymbol(); }},
      {"PosBookkeepingSymbol", [](const Options& o) { return o.PosBookkeepingSymbol(); }},
      {"NegBookkeepingSymbol", [](const Options& o) { return o.NegBookkeepingSymbol(); }},
      {"DocIDFlags", [](const Options& o) { return Variant(o.DocIDFlags()); }},
      {"PeriodLockFlags", [](const Options& o) { return Variant(o.PeriodLockFlags()); }},
      {"DoNotForceArchive",
       [](const Options& o) { return Variant(o.DoNotForceArchive() ? "True" : "False"); }},
      {"BaseCurrencyRound", [](const Options& o) { return o.BaseCurrencyRound(); }},
      {"BelegIDAuto", [](const Options& o) { return Variant(o.BelegIDAuto() ? "True" : "False"); }},
  };
  return readers;
}

std::string Shown(const Reader& reader, const Options& options) {
  try {
    const Variant value = reader(options);
    return value.IsNull() ? std::string() : CStr(value);
  } catch (const Error&) {
    return "";
  }
}

bool SameName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i])))
      return false;
  }
  return true;
}

}  // namespace

std::vector<std::pair<std::string, std::string>> OptionValues(const Options& options) {
  std::vector<std::pair<std::string, std::string>> values;
  for (const auto& [name, reader] : Readers()) values.emplace_back(name, Shown(reader, options));
  return values;
}

std::string OptionValue(const Options& options, std::string_view name) {
  for (const auto& [known, reader] : Readers()) {
    if (SameName(known, name)) return Shown(reader, options);
  }
  return Shown([name](const Options& o) { return o.Value(name); }, options);
}

}  // namespace ldg::cli
