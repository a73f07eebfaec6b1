#include "store/jet/lexer.hpp"

#include <cctype>

#include "store/jet/jet_error.hpp"
#include "support/ole_date.hpp"

namespace ldg::store::jet {
namespace {

bool IsNameChar(char c) {
  const auto u = static_cast<unsigned char>(c);
  return std::isalnum(u) || c == '_' || u >= 0x80;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool EqualsAsciiNoCase(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i]))) {
      return false;
    }
  }
  return true;
}

class DateReader {
 public:
  explicit DateReader(std::string_view text) : text_(text) {}

  double Read() {
    SkipBlanks();
    CivilTime time;
    bool has_date = false;
    const size_t start = pos_;
    int first = Number();
    if (Peek() == '/' || Peek() == '-') {
      const char separator = text_[pos_++];
      const int second = Number();
      Expect(separator);
      const size_t year_start = pos_;
      int year = Number();
      if (pos_ - year_start <= 2) year += year < 30 ? 2000 : 1900;
      time.month = first;
      time.day = second;
      time.year = year;
      has_date = true;
      SkipBlanks();
      if (AtEnd()) return Finish(time, has_date);
      first = Number();
    } else {
      pos_ = start;
      first = Number();
    }
    ReadTime(first, time);
    return Finish(time, has_date);
  }

 private:
  void ReadTime(int hour, CivilTime& time) {
    Expect(':');
    time.hour = hour;
    time.minute = Number();
    if (Peek() == ':') {
      ++pos_;
      time.second = Number();
    }
    SkipBlanks();
    if (!AtEnd()) {
      const std::string_view rest = text_.substr(pos_);
      const bool pm = EqualsAsciiNoCase(rest, "PM");
      if (!pm && !EqualsAsciiNoCase(rest, "AM")) RaiseSyntax();
      if (time.hour < 1 || time.hour > 12) RaiseSyntax();
      if (time.hour == 12) time.hour = 0;
      if (pm) time.hour += 12;
      pos_ = text_.size();
    }
  }

  double Finish(const CivilTime& time, bool has_date) {
    SkipBlanks();
    if (!AtEnd()) RaiseSyntax();
    if (time.hour > 23 || time.minute > 59 || time.second > 59) RaiseSyntax();
    if (has_date) {
      static constexpr int kDays[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
      if (time.year < 100 || time.year > 9999 || time.month < 1 || time.month > 12 || time.day < 1 ||
          time.day > kDays[time.month - 1]) {
        RaiseSyntax();
      }
      const bool leap = (time.year % 4 == 0 && time.year % 100 != 0) || time.year % 400 == 0;
      if (time.month == 2 && time.day == 29 && !leap) RaiseSyntax();
    }
    return OleDate::FromCivil(time).Serial();
  }

  int Number() {
    SkipBlanks();
    const size_t start = pos_;
    int value = 0;
    while (!AtEnd() && IsDigit(text_[pos_]) && pos_ - start < 5) value = value * 10 + (text_[pos_++] - '0');
    if (pos_ == start || (!AtEnd() && IsDigit(text_[pos_]))) RaiseSyntax();
    return value;
  }

  void Expect(char c) {
    if (Peek() != c) RaiseSyntax();
    ++pos_;
  }
  char Peek() const { return AtEnd() ? '\0' : text_[pos_]; }
  bool AtEnd() const { return pos_ >= text_.size(); }
  void SkipBlanks() {
    while (!AtEnd() && text_[pos_] == ' ') ++pos_;
  }

  std::string_view text_;
  size_t pos_ = 0;
};

class Lexer {
 public:
  explicit Lexer(std::string_view text) : text_(text) {}

  std::vector<Token> Run() {
    std::vector<Token> tokens;
    while (true) {
      SkipWhitespace();
      Token token;
      token.pos = pos_;
      if (pos_ >= text_.size()) {
        tokens.push_back(token);
        return tokens;
      }
      const char c = text_[pos_];
      if (c == '\0') RaiseSyntax();
      if (c == '[') {
        ReadBracketed(token);
      } else if (c == '\'' || c == '"') {
        ReadString(token, c);
      } else if (c == '#') {
        ReadDate(token);
      } else if (IsDigit(c) || (c == '.' && pos_ + 1 < text_.size() && IsDigit(text_[pos_ + 1]) &&
                                !PreviousIsName(tokens))) {
        ReadNumberOrName(token);
      } else if (IsNameChar(c)) {
        ReadName(token);
      } else {
        ReadSymbol(token);
      }
      tokens.push_back(std::move(token));
    }
  }

 private:
  static bool PreviousIsName(const std::vector<Token>& tokens) {
    return !tokens.empty() && (tokens.back().kind == TokenKind::kName || tokens.back().IsSymbol(")"));
  }

  void SkipWhitespace() {
    while (pos_ < text_.size() &&
           (text_[pos_] == ' ' || text_[pos_] == '\t' || text_[pos_] == '\r' || text_[pos_] == '\n')) {
      ++pos_;
    }
  }

  void ReadBracketed(Token& token) {
    const size_t close = text_.find(']', pos_ + 1);
    if (close == std::string_view::npos || close == pos_ + 1) RaiseSyntax();
    token.kind = TokenKind::kName;
    token.bracketed = true;
    token.text = std::string(text_.substr(pos_ + 1, close - pos_ - 1));
    pos_ = close + 1;
  }

  void ReadString(Token& token, char quote) {
    token.kind = TokenKind::kString;
    ++pos_;
    while (true) {
      if (pos_ >= text_.size()) RaiseSyntax();
      const char c = text_[pos_++];
      if (c == '\0') RaiseSyntax();
      if (c == quote) {
        if (pos_ < text_.size() && text_[pos_] == quote) {
          token.text += quote;
          ++pos_;
          continue;
        }
        return;
      }
      token.text += c;
    }
  }

  void ReadDate(Token& token) {
    const size_t close = text_.find('#', pos_ + 1);
    if (close == std::string_view::npos) RaiseSyntax();
    token.kind = TokenKind::kDate;
    token.text = std::string(text_.substr(pos_ + 1, close - pos_ - 1));
    token.date = ParseDateLiteral(token.text);
    pos_ = close + 1;
  }

  void ReadNumberOrName(Token& token) {
    const size_t start = pos_;
    while (pos_ < text_.size() && IsDigit(text_[pos_])) ++pos_;
    if (pos_ < text_.size() && IsNameChar(text_[pos_]) && !IsExponent()) {
      pos_ = start;
      ReadName(token);
      return;
    }
    if (pos_ + 1 < text_.size() && text_[pos_] == '.' && IsDigit(text_[pos_ + 1])) {
      ++pos_;
      while (pos_ < text_.size() && IsDigit(text_[pos_])) ++pos_;
    } else if (pos_ < text_.size() && text_[pos_] == '.' &&
               (pos_ + 1 >= text_.size() || !IsNameChar(text_[pos_ + 1]))) {
      ++pos_;  // "5." is a number
    }
    if (IsExponent()) {
      ++pos_;
      if (text_[pos_] == '+' || text_[pos_] == '-') ++pos_;
      while (pos_ < text_.size() && IsDigit(text_[pos_])) ++pos_;
    }
    if (pos_ < text_.size() && IsNameChar(text_[pos_])) RaiseSyntax();
    token.kind = TokenKind::kNumber;
    token.text = std::string(text_.substr(start, pos_ - start));
  }

  // An "E" that starts the exponent of a number: E, an optional sign, a digit.
  bool IsExponent() const {
    if (pos_ >= text_.size() || (text_[pos_] != 'e' && text_[pos_] != 'E')) return false;
    size_t next = pos_ + 1;
    if (next < text_.size() && (text_[next] == '+' || text_[next] == '-')) ++next;
    if (next >= text_.size() || !IsDigit(text_[next])) return false;
    ++next;
    while (next < text_.size() && IsDigit(text_[next])) ++next;
    return next >= text_.size() || !IsNameChar(text_[next]);
  }

  void ReadName(Token& token) {
    const size_t start = pos_;
    while (pos_ < text_.size() && IsNameChar(text_[pos_])) ++pos_;
    token.kind = TokenKind::kName;
    token.text = std::string(text_.substr(start, pos_ - start));
  }

  void ReadSymbol(Token& token) {
    static constexpr std::string_view kTwo[] = {"<>", "<=", ">="};
    for (std::string_view two : kTwo) {
      if (text_.substr(pos_, 2) == two) {
        token.kind = TokenKind::kSymbol;
        token.text = std::string(two);
        pos_ += 2;
        return;
      }
    }
    static constexpr std::string_view kOne = "(),;.*=<>+-/&\\";
    if (kOne.find(text_[pos_]) == std::string_view::npos) RaiseSyntax();
    token.kind = TokenKind::kSymbol;
    token.text = std::string(1, text_[pos_++]);
  }

  std::string_view text_;
  size_t pos_ = 0;
};

}  // namespace

bool Token::IsKeyword(std::string_view keyword) const {
  return kind == TokenKind::kName && !bracketed && EqualsAsciiNoCase(text, keyword);
}

std::vector<Token> Tokenize(std::string_view text) { return Lexer(text).Run(); }

double ParseDateLiteral(std::string_view text) { return DateReader(text).Read(); }

}  // namespace ldg::store::jet
