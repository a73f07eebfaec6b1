#include "engine/options.hpp"

#include <string>

#include "engine/engine_state.hpp"
#include "engine/settings.hpp"
#include "support/conversions.hpp"

namespace ldg {

namespace {

Variant Read(std::string_view option, const Variant& default_value) {
  return ReadSetting("Option" + std::string(option), default_value);
}

void Write(std::string_view option, const Variant& value) {
  WriteSetting("Option" + std::string(option), CStr(value));
}

void WriteInteger(std::string_view option, int16_t value) { Write(option, Variant(std::to_string(value))); }

}  // namespace

Variant Options::ClientName() const { return Read("ClientName", ""); }
void Options::ClientName(const Variant& value) { Write("ClientName", value); }
Variant Options::ClientExtraText() const { return Read("ClientExtraText", ""); }
void Options::ClientExtraText(const Variant& value) { Write("ClientExtraText", value); }
Variant Options::BaseCurrencyCode() const { return Read("BaseCurrencyCode", "CHF"); }
void Options::BaseCurrencyCode(const Variant& value) { Write("BaseCurrencyCode", value); }
int16_t Options::Decimals() const { return CInt(Read("Decimals", "2")); }
void Options::Decimals(int16_t value) { WriteInteger("Decimals", value); }
Variant Options::DecimalSep() const { return Read("DecimalSep", "."); }
void Options::DecimalSep(const Variant& value) { Write("DecimalSep", value); }
Variant Options::ThousandSep() const { return Read("ThousandSep", "'"); }
void Options::ThousandSep(const Variant& value) { Write("ThousandSep", value); }
int16_t Options::CurCodePos() const { return CInt(Read("CurCodePos", Variant(int16_t{1}))); }
void Options::CurCodePos(int16_t value) { WriteInteger("CurCodePos", value); }
Variant Options::PosArithmeticSymbol() const { return Read("PosArithmeticSymbol", ""); }
void Options::PosArithmeticSymbol(const Variant& value) { Write("PosArithmeticSymbol", value); }
Variant Options::NegArithmeticSymbol() const { return Read("NegArithmeticSymbol", ""); }
void Options::NegArithmeticSymbol(const Variant& value) { Write("NegArithmeticSymbol", value); }
Variant Options::PosBookkeepingSymbol() const { return Read("PosBookkeepingSymbol", " S "); }
void Options::PosBookkeepingSymbol(const Variant& value) { Write("PosBookkeepingSymbol", value); }
Variant Options::NegBookkeepingSymbol() const { return Read("NegBookkeepingSymbol", " H "); }
void Options::NegBookkeepingSymbol(const Variant& value) { Write("NegBookkeepingSymbol", value); }

// Two spellings of one row, deliberate: the store ignores the case of names.
int16_t Options::DocIDFlags() const { return CInt(Read("DocIDFlags", Variant(int16_t{0}))); }
void Options::DocIDFlags(int16_t value) { WriteInteger("docIDFlags", value); }

// Deliberate: the default "" fails the conversion with 13 (pinned by a test).
int16_t Options::PeriodLockFlags() const { return CInt(Read("PeriodLockFlags", "")); }
void Options::PeriodLockFlags(int16_t value) { WriteInteger("PeriodLockFlags", value); }

bool Options::DoNotForceArchive() const {
  const Variant value = Read("DoNotForceArchive", Variant(int16_t{1}));
  return IsNumeric(value) && CDbl(value) == 1;
}
void Options::DoNotForceArchive(bool value) { Write("DoNotForceArchive", value ? "1" : "0"); }

Variant Options::BaseCurrencyRound() const { return Read("BaseCurrencyRound", "0.01"); }
void Options::BaseCurrencyRound(const Variant& value) { Write("BaseCurrencyRound", value); }

bool Options::BelegIDAuto() const {
  const Variant value = Read("BelegIDAuto", "");
  if (value.IsNull()) return true;
  const std::string text = CStr(value);
  return text.empty() || text == "True";
}
void Options::BelegIDAuto(bool value) { Write("BelegIDAuto", value ? "True" : "False"); }

std::string Options::SysDecimalSep() const { return State().system_decimal_separator; }
std::string Options::SysThousandSep() const { return State().system_thousand_separator; }

Variant Options::Value(std::string_view option_name) const { return Read(option_name, ""); }
void Options::Value(std::string_view option_name, const Variant& value) { Write(option_name, value); }

}  // namespace ldg
