#include "support/format.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "support/conversions.hpp"
#include "support/number_text.hpp"
#include "support/text.hpp"

namespace ldg {

namespace {

// A number as its decimal digits: value = 0.digits x 10^int_len, digits without leading or trailing zeros
// (empty for zero).
struct Digits {
  bool negative = false;
  std::string digits;
  long int_len = 0;

  bool IsZero() const { return digits.empty(); }
};

void Normalize(Digits& number) {
  const size_t first = number.digits.find_first_not_of('0');
  if (first == std::string::npos) {
    number.digits.clear();
    number.int_len = 0;
    return;
  }
  number.digits.erase(0, first);
  number.int_len -= static_cast<long>(first);
  number.digits.erase(number.digits.find_last_not_of('0') + 1);
}

// A double with the run time's 15 significant digits (7 for a Single): Format(2.675, "0.00") is "2.68".
Digits FromDouble(double value, int significant) {
  Digits number;
  if (value == 0 || std::isnan(value) || std::isinf(value)) return number;
  char buffer[64];
  std::snprintf(buffer, sizeof buffer, "%.*e", significant - 1, value);
  std::string_view text(buffer);
  number.negative = text.front() == '-';
  if (number.negative) text.remove_prefix(1);
  const size_t e = text.find('e');
  for (char c : text.substr(0, e)) {
    if (c >= '0' && c <= '9') number.digits += c;  // whatever decimal sign the C library uses
  }
  number.int_len = std::stol(std::string(text.substr(e + 1))) + 1;
  Normalize(number);
  return number;
}

// An exact decimal text such as "-12.5".
Digits FromExactText(std::string_view text) {
  Digits number;
  if (!text.empty() && text.front() == '-') {
    number.negative = true;
    text.remove_prefix(1);
  }
  const size_t point = text.find('.');
  number.int_len = static_cast<long>(point == std::string_view::npos ? text.size() : point);
  for (char c : text) {
    if (c != '.') number.digits += c;
  }
  Normalize(number);
  return number;
}

// Rounds half away from zero to `decimals` places, as Format rounds.
void RoundAway(Digits& number, int decimals) {
  const long keep = number.int_len + decimals;
  if (keep < 0 || static_cast<size_t>(keep) >= number.digits.size()) {
    if (keep < 0) number.digits.clear();
    Normalize(number);
    return;
  }
  const bool up = number.digits[static_cast<size_t>(keep)] >= '5';
  number.digits.resize(static_cast<size_t>(keep));
  if (up) {
    long i = keep - 1;
    while (i >= 0 && number.digits[static_cast<size_t>(i)] == '9')
      number.digits[static_cast<size_t>(i--)] = '0';
    if (i < 0) {
      number.digits.insert(number.digits.begin(), '1');
      ++number.int_len;
    } else {
      ++number.digits[static_cast<size_t>(i)];
    }
  }
  Normalize(number);
}

std::string IntegerDigits(const Digits& number) {
  if (number.int_len <= 0) return "";
  std::string out = number.digits.substr(0, static_cast<size_t>(number.int_len));
  out.append(static_cast<size_t>(number.int_len) - out.size(), '0');
  return out;
}

std::string FractionDigits(const Digits& number, int decimals) {
  std::string out;
  for (long i = number.int_len; i < number.int_len + decimals; ++i) {
    out += (i >= 0 && static_cast<size_t>(i) < number.digits.size()) ? number.digits[static_cast<size_t>(i)]
                                                                     : '0';
  }
  return out;
}

// ---- patterns

struct Token {
  enum Kind { kLiteral, kZero, kHash } kind;
  std::string text;
};

struct NumberPattern {
  std::vector<Token> integer;
  std::vector<Token> fraction;
  bool has_point = false;
  bool grouping = false;
  int percent = 0;
};

void AddLiteral(std::vector<Token>& tokens, std::string_view text) {
  if (!tokens.empty() && tokens.back().kind == Token::kLiteral) {
    tokens.back().text += text;
  } else {
    tokens.push_back({Token::kLiteral, std::string(text)});
  }
}

// Reads a quoted text or an escaped character at pattern[i]; false when there is none.
bool ReadQuoted(std::string_view pattern, size_t& i, std::string& literal) {
  if (pattern[i] == '"') {
    const size_t close = pattern.find('"', i + 1);
    const size_t end = close == std::string_view::npos ? pattern.size() : close;
    literal = std::string(pattern.substr(i + 1, end - i - 1));
    i = close == std::string_view::npos ? pattern.size() : close + 1;
    return true;
  }
  if (pattern[i] == '\\' && i + 1 < pattern.size()) {
    size_t next = i + 1;
    DecodeUtf8(pattern, next);
    literal = std::string(pattern.substr(i + 1, next - i - 1));
    i = next;
    return true;
  }
  return false;
}

std::vector<std::string_view> SplitSections(std::string_view pattern) {
  std::vector<std::string_view> sections;
  size_t start = 0;
  size_t i = 0;
  std::string ignored;
  while (i < pattern.size()) {
    if (ReadQuoted(pattern, i, ignored)) continue;
    if (pattern[i] == ';') {
      sections.push_back(pattern.substr(start, i - start));
      start = i + 1;
    }
    ++i;
  }
  sections.push_back(pattern.substr(start));
  return sections;
}

NumberPattern ParseNumberPattern(std::string_view pattern) {
  NumberPattern result;
  size_t i = 0;
  while (i < pattern.size()) {
    std::vector<Token>& tokens = result.has_point ? result.fraction : result.integer;
    std::string literal;
    if (ReadQuoted(pattern, i, literal)) {
      AddLiteral(tokens, literal);
      continue;
    }
    const char c = pattern[i++];
    if (c == '0' || c == '#') {
      tokens.push_back({c == '0' ? Token::kZero : Token::kHash, ""});
    } else if (c == '.' && !result.has_point) {
      result.has_point = true;
    } else if (c == ',' && !result.has_point) {
      result.grouping = true;
    } else if (c == '%') {
      ++result.percent;
      AddLiteral(tokens, "%");
    } else {
      AddLiteral(tokens, std::string_view(&c, 1));
    }
  }
  return result;
}

bool IsPlaceholder(const Token& token) { return token.kind != Token::kLiteral; }

std::string RenderInteger(const NumberPattern& pattern, const Digits& number) {
  const std::vector<Token>& tokens = pattern.integer;
  // Every place from the first "0" on shows a digit.
  size_t placeholders = 0;
  size_t first_zero = 0;
  for (const Token& token : tokens) {
    if (!IsPlaceholder(token)) continue;
    ++placeholders;
    if (token.kind == Token::kZero && first_zero == 0) first_zero = placeholders;
  }
  const size_t min_digits = first_zero == 0 ? 0 : placeholders - first_zero + 1;
  std::string digits = IntegerDigits(number);
  if (digits.size() < min_digits) digits.insert(0, min_digits - digits.size(), '0');

  std::vector<std::string> pieces;  // right to left
  size_t emitted = 0;
  size_t remaining = digits.size();
  const auto emit_digit = [&]() {
    if (pattern.grouping && emitted > 0 && emitted % 3 == 0) pieces.push_back("'");
    pieces.push_back(std::string(1, digits[--remaining]));
    ++emitted;
  };
  size_t seen = 0;
  for (auto it = tokens.rbegin(); it != tokens.rend(); ++it) {
    if (!IsPlaceholder(*it)) {
      pieces.push_back(it->text);
      continue;
    }
    ++seen;
    if (seen == placeholders) {
      while (remaining > 0) emit_digit();
    } else if (remaining > 0) {
      emit_digit();
    }
  }
  if (placeholders == 0) {
    // No place for the digits: they stand right before the decimal sign.
    std::string out;
    for (const Token& token : tokens) out += token.text;
    return out + digits;
  }
  std::string out;
  for (auto it = pieces.rbegin(); it != pieces.rend(); ++it) out += *it;
  return out;
}

std::string RenderFraction(const NumberPattern& pattern, const Digits& number, int decimals) {
  const std::string digits = FractionDigits(number, decimals);
  // Trailing "#" places drop their zeros.
  std::vector<bool> shown(digits.size(), true);
  size_t index = digits.size();
  for (auto it = pattern.fraction.rbegin(); it != pattern.fraction.rend(); ++it) {
    if (!IsPlaceholder(*it)) continue;
    --index;
    if (it->kind != Token::kHash || digits[index] != '0') break;
    shown[index] = false;
  }
  std::string out;
  index = 0;
  for (const Token& token : pattern.fraction) {
    if (!IsPlaceholder(token)) {
      out += token.text;
      continue;
    }
    if (shown[index]) out += digits[index];
    ++index;
  }
  return out;
}

std::string FormatNumber(Digits number, std::string_view pattern) {
  const std::vector<std::string_view> sections = SplitSections(pattern);
  std::string_view section = sections[0];
  bool show_sign = number.negative;
  if (number.negative && sections.size() >= 2 && !sections[1].empty()) {
    section = sections[1];
    show_sign = false;
  } else if (number.IsZero() && sections.size() >= 3 && !sections[2].empty()) {
    section = sections[2];
  }
  const NumberPattern parsed = ParseNumberPattern(section);
  number.int_len += 2L * parsed.percent;
  int decimals = 0;
  for (const Token& token : parsed.fraction) decimals += IsPlaceholder(token) ? 1 : 0;
  RoundAway(number, decimals);
  std::string out = RenderInteger(parsed, number);
  if (parsed.has_point) out += "." + RenderFraction(parsed, number, decimals);
  // A value that rounds to zero shows without its sign.
  return show_sign && !number.IsZero() ? "-" + out : out;
}

// ---- dates

constexpr const char* kMonthNames[] = {"Januar", "Februar", "März",      "April",   "Mai",      "Juni",
                                       "Juli",   "August",  "September", "Oktober", "November", "Dezember"};
constexpr const char* kMonthShort[] = {"Jan", "Feb", "Mär", "Apr", "Mai", "Jun",
                                       "Jul", "Aug", "Sep", "Okt", "Nov", "Dez"};
constexpr const char* kDayNames[] = {"Sonntag",    "Montag",  "Dienstag", "Mittwoch",
                                     "Donnerstag", "Freitag", "Samstag"};
constexpr const char* kDayShort[] = {"So", "Mo", "Di", "Mi", "Do", "Fr", "Sa"};

bool IsDateLetter(char c) {
  switch (c | 0x20) {
    case 'y':
    case 'm':
    case 'd':
    case 'h':
    case 'n':
    case 's':
    case 'q':
    case 'w':
      return true;
    default:
      return false;
  }
}

// A pattern with date letters and no digit places. Digit places make it a number pattern whose letters are
// literals, as in the amount format "#,##0.00 H;#,##0.00 S".
bool IsDatePattern(std::string_view pattern) {
  size_t i = 0;
  std::string ignored;
  bool date_letter = false;
  while (i < pattern.size()) {
    if (ReadQuoted(pattern, i, ignored)) continue;
    if (pattern[i] == '0' || pattern[i] == '#') return false;
    date_letter = date_letter || IsDateLetter(pattern[i]);
    ++i;
  }
  return date_letter;
}

struct DateToken {
  char letter = 0;  // lower case; 0 for a literal
  size_t count = 0;
  std::string text;
};

std::vector<DateToken> ParseDatePattern(std::string_view pattern) {
  std::vector<DateToken> tokens;
  size_t i = 0;
  while (i < pattern.size()) {
    std::string literal;
    if (ReadQuoted(pattern, i, literal)) {
      tokens.push_back({0, 0, literal});
      continue;
    }
    const char c = pattern[i];
    if (IsDateLetter(c)) {
      const char letter = static_cast<char>(c | 0x20);
      size_t count = 0;
      while (i < pattern.size() && static_cast<char>(pattern[i] | 0x20) == letter) ++i, ++count;
      tokens.push_back({letter, count, ""});
    } else {
      tokens.push_back({0, 0, std::string(1, c)});
      ++i;
    }
  }
  // "m" after an hour or before a second is the minute.
  for (size_t k = 0; k < tokens.size(); ++k) {
    if (tokens[k].letter != 'm' || tokens[k].count > 2) continue;
    const DateToken* before = nullptr;
    for (size_t b = k; b-- > 0;) {
      if (tokens[b].letter) {
        before = &tokens[b];
        break;
      }
    }
    const DateToken* after = nullptr;
    for (size_t a = k + 1; a < tokens.size(); ++a) {
      if (tokens[a].letter) {
        after = &tokens[a];
        break;
      }
    }
    if ((before && before->letter == 'h') || (after && after->letter == 's')) tokens[k].letter = 'n';
  }
  return tokens;
}

std::string Padded(int value, size_t width) {
  std::string text = std::to_string(value);
  if (text.size() < width) text.insert(0, width - text.size(), '0');
  return text;
}

std::string FormatDateValue(OleDate date, std::string_view pattern) {
  const CivilTime t = date.ToCivil();
  const long day_of_year = DaysFromCivil(t.year, t.month, t.day) - DaysFromCivil(t.year, 1, 1) + 1;
  const int weekday = date.Weekday();
  std::string out;
  for (const DateToken& token : ParseDatePattern(pattern)) {
    const size_t n = token.count;
    switch (token.letter) {
      case 0:
        out += token.text;
        break;
      case 'y':
        if (n >= 3) {
          out += Padded(t.year, 4);
        } else if (n == 2) {
          out += Padded(t.year % 100, 2);
        } else {
          out += std::to_string(day_of_year);
        }
        break;
      case 'q':
        out += std::to_string((t.month - 1) / 3 + 1);
        break;
      case 'm':
        if (n >= 4) {
          out += kMonthNames[t.month - 1];
        } else if (n == 3) {
          out += kMonthShort[t.month - 1];
        } else {
          out += Padded(t.month, n);
        }
        break;
      case 'd':
        if (n >= 4) {
          out += kDayNames[weekday - 1];
        } else if (n == 3) {
          out += kDayShort[weekday - 1];
        } else {
          out += Padded(t.day, n);
        }
        break;
      case 'w': {
        if (n >= 2) {
          const int first_weekday = OleDate(static_cast<double>(DaysFromCivil(t.year, 1, 1))).Weekday();
          out += std::to_string((day_of_year + first_weekday - 2) / 7 + 1);
        } else {
          out += std::to_string(weekday);
        }
        break;
      }
      case 'h':
        out += Padded(t.hour, std::min<size_t>(n, 2));
        break;
      case 'n':
        out += Padded(t.minute, std::min<size_t>(n, 2));
        break;
      case 's':
        out += Padded(t.second, std::min<size_t>(n, 2));
        break;
    }
  }
  return out;
}

std::string_view NamedPattern(std::string_view pattern) {
  if (EqualsNoCase(pattern, "Short Date")) return "dd.mm.yyyy";
  if (EqualsNoCase(pattern, "Long Time")) return "hh:mm:ss";
  if (EqualsNoCase(pattern, "Short Time")) return "hh:mm";
  if (EqualsNoCase(pattern, "Fixed")) return "0.00";
  if (EqualsNoCase(pattern, "Standard")) return "#,##0.00";
  if (EqualsNoCase(pattern, "Percent")) return "0.00%";
  if (EqualsNoCase(pattern, "General Number")) return "";
  return pattern;
}

std::optional<Digits> NumberDigits(const Variant& value) {
  switch (value.Type()) {
    case VarType::kBoolean:
      return FromExactText(value.AsBoolean() ? "-1" : "0");
    case VarType::kByte:
    case VarType::kInteger:
    case VarType::kLong:
    case VarType::kDecimal:
    case VarType::kCurrency:
      return FromExactText(CStr(value));
    case VarType::kSingle:
      return FromDouble(value.AsSingle(), 7);
    case VarType::kDouble:
      return FromDouble(value.AsDouble(), 15);
    case VarType::kDate:
      return FromDouble(value.AsDate().Serial(), 15);
    case VarType::kString:
      if (!IsNumeric(value)) return std::nullopt;
      return FromDouble(CDbl(value), 15);
    default:
      return std::nullopt;
  }
}

std::optional<OleDate> DateOf(const Variant& value) {
  switch (value.Type()) {
    case VarType::kDate:
      return value.AsDate();
    case VarType::kString:
      if (IsDate(value)) return CDate(value);
      if (IsNumeric(value)) return CDate(CDbl(value));
      return std::nullopt;
    default:
      if (value.IsNumber() || value.Type() == VarType::kBoolean) return CDate(value);
      return std::nullopt;
  }
}

}  // namespace

std::string Format(const Variant& value, std::string_view pattern) {
  if (value.IsNull() || value.IsEmpty()) return "";
  pattern = NamedPattern(pattern);
  if (pattern.empty()) return CStr(value);
  if (IsDatePattern(pattern)) {
    std::optional<OleDate> date = DateOf(value);
    return date ? FormatDateValue(*date, pattern) : CStr(value);
  }
  std::optional<Digits> number = NumberDigits(value);
  return number ? FormatNumber(*number, pattern) : CStr(value);
}

}  // namespace ldg
