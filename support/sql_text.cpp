#include "support/sql_text.hpp"

#include <cmath>
#include <cstdio>

#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/text.hpp"

namespace ldg {
namespace {

std::string Literal(OleDate date, const char* pattern) {
  CivilTime civil = date.ToCivil();
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, pattern, civil.month, civil.day, civil.year);
  return buffer;
}

}  // namespace

std::string PastedText(const Variant& value) {
  return value.IsNull() || value.IsEmpty() ? std::string() : CStr(value);
}

Variant DoubleApostrophes(const Variant& text) {
  if (text.IsNull()) return text;
  return Variant(Replace(CStr(text), "'", "''"));
}

std::string QuoteText(std::string_view text, std::string_view quote) {
  std::string doubled(quote);
  doubled += quote;
  std::string quoted(quote);
  quoted += quote.empty() ? std::string(text) : Replace(text, quote, doubled);
  quoted += quote;
  return quoted;
}

Variant DateLiteral(const Variant& date) {
  if (!IsDate(date)) return Variant();
  return Variant(Literal(CDate(date), "#%d/%d/%d#"));
}

std::string DateLiteralPadded(OleDate date) { return Literal(date, "#%02d/%02d/%04d#"); }

std::string DateRangeCondition(std::string_view field_name, const Variant& date_from,
                               const Variant& date_to) {
  bool has_from = IsDate(date_from);
  bool has_to = IsDate(date_to);
  std::string field(field_name);
  if (has_from && has_to) {
    OleDate from = CDate(date_from);
    OleDate to = CDate(date_to);
    if (from == to) return "(" + field + "=" + DateLiteralPadded(from) + ")";
    if (from > to) return "FALSE";
    return "(" + field + " BETWEEN " + DateLiteralPadded(from) + " AND " + DateLiteralPadded(to) + ")";
  }
  if (has_from) return "(" + field + ">=" + DateLiteralPadded(CDate(date_from)) + ")";
  if (has_to) return "(" + field + "<=" + DateLiteralPadded(CDate(date_to)) + ")";
  return "";
}

std::string DoubleToSqlText(double value) {
  if (!std::isfinite(value)) RaiseRuntime(kErrOverflow);
  return CStr(Variant(value));
}

std::string CurrencyToSqlText(Currency value) { return value.ToString(); }

const char* BooleanToSqlText(bool value) { return value ? "True" : "False"; }

void AppendAssignment(std::string& set, std::string_view assignment) {
  if (!set.empty()) set += ", ";
  set += assignment;
}

}  // namespace ldg
