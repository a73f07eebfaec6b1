#include "store/sqlite/jet_functions.hpp"

#include <sqlite3.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>

#include "store/jet/like_pattern.hpp"
#include "store/sqlite/names.hpp"
#include "support/currency.hpp"
#include "support/error.hpp"
#include "support/text.hpp"

namespace ldg::store::sqlite {
namespace {

constexpr int kFlags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;

// The letter a folded Latin-1 letter is sorted with ("ä" with "a").
char32_t BaseLetter(char32_t c) {
  static constexpr char kBases[] =
      "aaaaaaaceeeeiiii"
      "dnooooo/ouuuuyty";  // U+00E0 .. U+00FF
  if (c < 0xE0 || c > 0xFF || c == 0xF7) return c;
  return static_cast<char32_t>(kBases[c - 0xE0]);
}

int CompareBaseLetters(std::string_view a, std::string_view b) {
  size_t i = 0, j = 0;
  while (i < a.size() && j < b.size()) {
    const auto first = static_cast<unsigned char>(a[i]);
    const auto second = static_cast<unsigned char>(b[j]);
    char32_t x = 0;
    char32_t y = 0;
    if ((first | second) < 0x80) {
      // Two ASCII characters, a byte each: FoldCase makes A to Z lower case and keeps the rest.
      x = static_cast<unsigned char>(FoldAscii(a[i++]));
      y = static_cast<unsigned char>(FoldAscii(b[j++]));
    } else {
      x = BaseLetter(FoldCase(DecodeUtf8(a, i)));
      y = BaseLetter(FoldCase(DecodeUtf8(b, j)));
    }
    if (x != y) return x < y ? -1 : 1;
  }
  if (i < a.size()) return 1;
  return j < b.size() ? -1 : 0;
}

// Case never counts. Accents count only between texts that are otherwise
// equal, so "Ä300" sorts between "a100" and "B200" yet differs from "A300".
int CompareJet(void*, int length_a, const void* a, int length_b, const void* b) {
  const std::string_view left(static_cast<const char*>(a), static_cast<size_t>(length_a));
  const std::string_view right(static_cast<const char*>(b), static_cast<size_t>(length_b));
  const int base = CompareBaseLetters(left, right);
  return base != 0 ? base : CompareNoCase(left, right);
}

// A value as "&" shows it: whole numbers without decimals, doubles with up to
// 15 significant digits.
std::string JetText(sqlite3_value* value) {
  switch (sqlite3_value_type(value)) {
    case SQLITE_NULL:
      return "";
    case SQLITE_INTEGER:
      return std::to_string(sqlite3_value_int64(value));
    case SQLITE_FLOAT: {
      char buffer[40];
      std::snprintf(buffer, sizeof buffer, "%.15g", sqlite3_value_double(value));
      return buffer;
    }
    default: {
      const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
      return std::string(text ? text : "", static_cast<size_t>(sqlite3_value_bytes(value)));
    }
  }
}

void JetCat(sqlite3_context* context, int, sqlite3_value** args) {
  if (sqlite3_value_type(args[0]) == SQLITE_NULL && sqlite3_value_type(args[1]) == SQLITE_NULL) {
    sqlite3_result_null(context);
    return;
  }
  const std::string text = JetText(args[0]) + JetText(args[1]);
  sqlite3_result_text(context, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
}

void JetLike(sqlite3_context* context, int, sqlite3_value** args) {
  if (sqlite3_value_type(args[0]) == SQLITE_NULL || sqlite3_value_type(args[1]) == SQLITE_NULL) {
    sqlite3_result_null(context);
    return;
  }
  try {
    // Most statements pass a constant pattern: compile it once per statement.
    auto* pattern = static_cast<jet::LikePattern*>(sqlite3_get_auxdata(context, 1));
    if (pattern == nullptr) {
      pattern = new jet::LikePattern(JetText(args[1]));
      sqlite3_set_auxdata(context, 1, pattern, [](void* p) { delete static_cast<jet::LikePattern*>(p); });
      pattern = static_cast<jet::LikePattern*>(sqlite3_get_auxdata(context, 1));
      if (pattern == nullptr) {  // SQLite dropped it at once: the pattern is not constant
        const jet::LikePattern once(JetText(args[1]));
        sqlite3_result_int(context, once.Matches(JetText(args[0])) ? -1 : 0);
        return;
      }
    }
    sqlite3_result_int(context, pattern->Matches(JetText(args[0])) ? -1 : 0);
  } catch (const Error& error) {
    sqlite3_result_error(context, error.Description().c_str(), -1);
  }
}

struct FirstState {
  bool seen;
  sqlite3_value* value;
};

void JetFirstStep(sqlite3_context* context, int, sqlite3_value** args) {
  auto* state = static_cast<FirstState*>(sqlite3_aggregate_context(context, sizeof(FirstState)));
  if (state == nullptr) {
    sqlite3_result_error_nomem(context);
    return;
  }
  if (state->seen) return;
  state->seen = true;
  state->value = sqlite3_value_dup(args[0]);
}

void JetFirstFinal(sqlite3_context* context) {
  auto* state = static_cast<FirstState*>(sqlite3_aggregate_context(context, 0));
  if (state == nullptr || state->value == nullptr) {
    sqlite3_result_null(context);
  } else {
    sqlite3_result_value(context, state->value);
  }
  if (state != nullptr) sqlite3_value_free(state->value);
}

// The product of two Currency values held as ten-thousandths, rounded half to
// even back to ten-thousandths; "integer overflow" as SUM reports it.
void JetCurrencyProduct(sqlite3_context* context, int, sqlite3_value** args) {
  if (sqlite3_value_type(args[0]) == SQLITE_NULL || sqlite3_value_type(args[1]) == SQLITE_NULL) {
    sqlite3_result_null(context);
    return;
  }
  try {
    const Currency product =
        Currency::FromRaw(sqlite3_value_int64(args[0])) * Currency::FromRaw(sqlite3_value_int64(args[1]));
    sqlite3_result_int64(context, product.Raw());
  } catch (const Error&) {
    sqlite3_result_error(context, "integer overflow", -1);
  }
}

}  // namespace

void RegisterJetFunctions(sqlite3* db) {
  // A double-quoted word is always a name; a slip must fail instead of
  // quietly becoming a string.
  sqlite3_db_config(db, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  sqlite3_db_config(db, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
  // Files declare their text columns NOCASE, so that any SQLite tool can read
  // them; the store replaces that ASCII-only collation on its own connections
  // with case folding over all of Unicode. "JET" names the same comparison.
  sqlite3_create_collation_v2(db, "NOCASE", SQLITE_UTF8, nullptr, CompareJet, nullptr);
  sqlite3_create_collation_v2(db, "JET", SQLITE_UTF8, nullptr, CompareJet, nullptr);
  sqlite3_create_function_v2(db, "jet_like", 2, kFlags, nullptr, JetLike, nullptr, nullptr, nullptr);
  sqlite3_create_function_v2(db, "jet_cat", 2, kFlags, nullptr, JetCat, nullptr, nullptr, nullptr);
  sqlite3_create_function_v2(db, "jet_first", 1, kFlags, nullptr, nullptr, JetFirstStep, JetFirstFinal,
                             nullptr);
  sqlite3_create_function_v2(db, "jet_cur_mul", 2, kFlags, nullptr, JetCurrencyProduct, nullptr, nullptr,
                             nullptr);
}

}  // namespace ldg::store::sqlite
