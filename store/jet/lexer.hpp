// The tokenizer of Jet SQL text: names (bare, [bracketed], or starting with
// digits such as 452505312345678temp), numbers, '...' and "..." strings with
// doubled quotes, #m/d/yyyy# dates with an optional time, and operators. It
// never repairs text: an unterminated string, bracket or date is a syntax error.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ldg::store::jet {

enum class TokenKind { kName, kNumber, kString, kDate, kSymbol, kEnd };

struct Token {
  TokenKind kind = TokenKind::kEnd;
  std::string text;   // name, number as written, string value, or symbol
  double date = 0.0;  // OLE day number of a date
  bool bracketed = false;
  size_t pos = 0;

  bool IsSymbol(std::string_view symbol) const { return kind == TokenKind::kSymbol && text == symbol; }
  // A bare (unbracketed) name equal to the keyword, ignoring ASCII case.
  bool IsKeyword(std::string_view keyword) const;
};

// The tokens of text, ending with one kEnd token.
std::vector<Token> Tokenize(std::string_view text);

// The OLE day number of the inside of a #...# literal ("3/1/2002",
// "03/01/2002 10:30:00", "10:30 PM"); raises the syntax error when it is no date.
double ParseDateLiteral(std::string_view text);

}  // namespace ldg::store::jet
