#include "store/jet/parser.hpp"

#include <cctype>
#include <string>
#include <vector>

#include "store/jet/jet_error.hpp"
#include "store/jet/lexer.hpp"

namespace ldg::store::jet {
namespace {

constexpr int kMaxDepth = 200;

constexpr std::string_view kReserved[] = {
    "SELECT", "FROM",  "WHERE", "GROUP",      "ORDER",    "BY",          "HAVING", "AND",    "OR",
    "NOT",    "IN",    "IS",    "NULL",       "LIKE",     "BETWEEN",     "AS",     "ON",     "INNER",
    "LEFT",   "RIGHT", "OUTER", "JOIN",       "SET",      "UPDATE",      "DELETE", "INSERT", "INTO",
    "VALUES", "TRUE",  "FALSE", "PARAMETERS", "DISTINCT", "DISTINCTROW", "UNION",  "ASC",    "DESC",
    "XOR",    "MOD",   "ALL",   "TOP",        "EXISTS"};

FieldType ParameterType(std::string_view word) {
  struct Entry {
    std::string_view word;
    FieldType type;
  };
  static constexpr Entry kTypes[] = {
      {"TEXT", FieldType::kText},         {"CHAR", FieldType::kText},
      {"VARCHAR", FieldType::kText},      {"STRING", FieldType::kText},
      {"ALPHANUMERIC", FieldType::kText}, {"MEMO", FieldType::kMemo},
      {"LONGTEXT", FieldType::kMemo},     {"LONG", FieldType::kLong},
      {"INTEGER", FieldType::kLong},      {"INT", FieldType::kLong},
      {"INTEGER4", FieldType::kLong},     {"SHORT", FieldType::kInteger},
      {"SMALLINT", FieldType::kInteger},  {"INTEGER2", FieldType::kInteger},
      {"BYTE", FieldType::kByte},         {"TINYINT", FieldType::kByte},
      {"INTEGER1", FieldType::kByte},     {"CURRENCY", FieldType::kCurrency},
      {"MONEY", FieldType::kCurrency},    {"SINGLE", FieldType::kSingle},
      {"REAL", FieldType::kSingle},       {"FLOAT4", FieldType::kSingle},
      {"IEEESINGLE", FieldType::kSingle}, {"DOUBLE", FieldType::kDouble},
      {"FLOAT", FieldType::kDouble},      {"FLOAT8", FieldType::kDouble},
      {"NUMBER", FieldType::kDouble},     {"IEEEDOUBLE", FieldType::kDouble},
      {"NUMERIC", FieldType::kDouble},    {"DATETIME", FieldType::kDate},
      {"DATE", FieldType::kDate},         {"TIME", FieldType::kDate},
      {"TIMESTAMP", FieldType::kDate},    {"BIT", FieldType::kBoolean},
      {"YESNO", FieldType::kBoolean},     {"BOOLEAN", FieldType::kBoolean},
      {"LOGICAL", FieldType::kBoolean},   {"VALUE", FieldType::kUnknown},
      {"VARIANT", FieldType::kUnknown},
  };
  for (const Entry& entry : kTypes) {
    if (entry.word.size() != word.size()) continue;
    bool same = true;
    for (size_t i = 0; i < word.size() && same; ++i) {
      same = std::toupper(static_cast<unsigned char>(word[i])) == entry.word[i];
    }
    if (same) return entry.type;
  }
  RaiseSyntax();
}

ExprPtr MakeExpr(Expr::Kind kind) {
  auto expr = std::make_unique<Expr>();
  expr->kind = kind;
  return expr;
}

ExprPtr MakeBinary(std::string op, ExprPtr left, ExprPtr right) {
  ExprPtr expr = MakeExpr(Expr::Kind::kBinary);
  expr->text = std::move(op);
  expr->args.push_back(std::move(left));
  expr->args.push_back(std::move(right));
  return expr;
}

class Parser {
 public:
  explicit Parser(std::string_view text) : tokens_(Tokenize(text)) {}

  Statement ParseWhole() {
    Statement statement;
    if (Peek().IsKeyword("PARAMETERS")) ParseParameters(statement);
    if (Peek().IsKeyword("SELECT")) {
      statement.kind = Statement::Kind::kSelect;
      statement.select = ParseSelect();
    } else if (Peek().IsKeyword("INSERT")) {
      ParseInsert(statement);
    } else if (Peek().IsKeyword("UPDATE")) {
      ParseUpdate(statement);
    } else if (Peek().IsKeyword("DELETE")) {
      ParseDelete(statement);
    } else {
      RaiseStoreError(kErrSyntax, "Invalid SQL statement; expected DELETE, INSERT, SELECT or UPDATE.");
    }
    if (Peek().IsSymbol(";")) Next();
    if (Peek().kind != TokenKind::kEnd) {
      RaiseStoreError(kErrTrailingText, "Characters found after end of SQL statement.");
    }
    return statement;
  }

  ExprPtr ParseWholeExpression() {
    ExprPtr expr = ParseExpression();
    if (Peek().kind != TokenKind::kEnd) RaiseSyntax();
    return expr;
  }

 private:
  // --- statements -------------------------------------------------------

  void ParseParameters(Statement& statement) {
    Next();
    while (true) {
      ParameterDeclaration declaration;
      declaration.name = ExpectName();
      const Token& type = Next();
      if (type.kind != TokenKind::kName || type.bracketed) RaiseSyntax();
      declaration.type = ParameterType(type.text);
      if (Peek().IsSymbol("(")) {
        Next();
        if (Next().kind != TokenKind::kNumber) RaiseSyntax();
        Expect(")");
      }
      statement.parameters.push_back(std::move(declaration));
      if (Peek().IsSymbol(",")) {
        Next();
        continue;
      }
      Expect(";");
      return;
    }
  }

  void ParseInsert(Statement& statement) {
    statement.kind = Statement::Kind::kInsert;
    Next();
    ExpectKeyword("INTO");
    statement.insert_table = ExpectName();
    if (Peek().IsSymbol("(")) {
      Next();
      while (true) {
        statement.insert_columns.push_back(LastPart(ParseNameParts()));
        if (Peek().IsSymbol(",")) {
          Next();
          continue;
        }
        Expect(")");
        break;
      }
    }
    if (Peek().IsKeyword("SELECT")) {
      statement.select = ParseSelect();
    } else if (Peek().IsKeyword("VALUES")) {
      Next();
      Expect("(");
      statement.insert_values = ParseExpressionList();
      Expect(")");
    } else {
      RaiseSyntax();
    }
  }

  void ParseUpdate(Statement& statement) {
    statement.kind = Statement::Kind::kUpdate;
    Next();
    statement.from.push_back(ParseJoinedSource());
    ExpectKeyword("SET");
    while (true) {
      Assignment assignment;
      assignment.target = ParseNameParts();
      Expect("=");
      assignment.value = ParseExpression();
      statement.assignments.push_back(std::move(assignment));
      if (!Peek().IsSymbol(",")) break;
      Next();
    }
    if (Peek().IsKeyword("WHERE")) {
      Next();
      statement.where = ParseExpression();
    }
  }

  void ParseDelete(Statement& statement) {
    statement.kind = Statement::Kind::kDelete;
    Next();
    if (Peek().IsSymbol("*")) {
      Next();
    } else if (Peek().kind == TokenKind::kName && !Peek().IsKeyword("FROM")) {
      statement.delete_star = ExpectName();
      Expect(".");
      Expect("*");
    }
    ExpectKeyword("FROM");
    statement.from = ParseSourceList();
    if (Peek().IsKeyword("WHERE")) {
      Next();
      statement.where = ParseExpression();
    }
  }

  std::unique_ptr<Select> ParseSelect() {
    Guard guard(depth_);
    ExpectKeyword("SELECT");
    auto select = std::make_unique<Select>();
    if (Peek().IsKeyword("DISTINCT")) {
      Next();
      select->distinct = true;
    } else if (Peek().IsKeyword("DISTINCTROW") || Peek().IsKeyword("ALL")) {
      Next();
    }
    while (true) {
      SelectItem item;
      if (Peek().IsSymbol("*")) {
        Next();
        item.expr = MakeExpr(Expr::Kind::kName);
        item.expr->parts = {"*"};
      } else {
        item.expr = ParseExpression();
      }
      if (Peek().IsKeyword("AS")) {
        Next();
        item.alias = ExpectName();
      }
      select->items.push_back(std::move(item));
      if (!Peek().IsSymbol(",")) break;
      Next();
    }
    if (Peek().IsKeyword("FROM")) {
      Next();
      select->from = ParseSourceList();
    }
    if (Peek().IsKeyword("WHERE")) {
      Next();
      select->where = ParseExpression();
    }
    if (Peek().IsKeyword("GROUP")) {
      Next();
      ExpectKeyword("BY");
      select->group_by = ParseExpressionList();
    }
    if (Peek().IsKeyword("HAVING")) {
      Next();
      select->having = ParseExpression();
    }
    if (Peek().IsKeyword("ORDER")) {
      Next();
      ExpectKeyword("BY");
      while (true) {
        OrderItem item;
        item.expr = ParseExpression();
        if (Peek().IsKeyword("DESC")) {
          Next();
          item.descending = true;
        } else if (Peek().IsKeyword("ASC")) {
          Next();
        }
        select->order_by.push_back(std::move(item));
        if (!Peek().IsSymbol(",")) break;
        Next();
      }
    }
    return select;
  }

  // --- FROM --------------------------------------------------------------

  std::vector<std::unique_ptr<Source>> ParseSourceList() {
    std::vector<std::unique_ptr<Source>> sources;
    while (true) {
      sources.push_back(ParseJoinedSource());
      if (!Peek().IsSymbol(",")) return sources;
      Next();
    }
  }

  std::unique_ptr<Source> ParseJoinedSource() {
    Guard guard(depth_);
    std::unique_ptr<Source> source = ParsePrimarySource();
    while (true) {
      Source::JoinType type;
      if (Peek().IsKeyword("INNER")) {
        type = Source::JoinType::kInner;
      } else if (Peek().IsKeyword("LEFT")) {
        type = Source::JoinType::kLeft;
      } else if (Peek().IsKeyword("RIGHT")) {
        type = Source::JoinType::kRight;
      } else {
        return source;
      }
      Next();
      if (type != Source::JoinType::kInner && Peek().IsKeyword("OUTER")) Next();
      if (!Peek().IsKeyword("JOIN")) RaiseFrom();
      Next();
      auto join = std::make_unique<Source>();
      join->kind = Source::Kind::kJoin;
      join->join = type;
      join->left = std::move(source);
      join->right = ParsePrimarySource();
      if (!Peek().IsKeyword("ON")) RaiseFrom();
      Next();
      join->on = ParseExpression();
      source = std::move(join);
    }
  }

  std::unique_ptr<Source> ParsePrimarySource() {
    if (Peek().IsSymbol("(")) {
      Next();
      if (Peek().IsKeyword("SELECT")) {
        auto source = std::make_unique<Source>();
        source->kind = Source::Kind::kDerived;
        source->derived = ParseSelect();
        if (Peek().IsSymbol(";")) Next();
        Expect(")");
        if (Peek().IsKeyword("AS")) Next();
        if (!IsAliasToken(Peek())) RaiseFrom();
        source->alias = Next().text;
        return source;
      }
      std::unique_ptr<Source> inner = ParseJoinedSource();
      if (!Peek().IsSymbol(")")) RaiseFrom();
      Next();
      return inner;
    }
    const Token& name = Peek();
    if (name.kind != TokenKind::kName || (!name.bracketed && IsReserved(name.text))) RaiseFrom();
    auto source = std::make_unique<Source>();
    source->name = Next().text;
    if (Peek().IsKeyword("AS")) {
      Next();
      if (!IsAliasToken(Peek())) RaiseFrom();
      source->alias = Next().text;
    } else if (IsAliasToken(Peek())) {
      source->alias = Next().text;
    }
    return source;
  }

  [[noreturn]] static void RaiseFrom() { RaiseStoreError(kErrSyntaxFrom, "Syntax error in FROM clause."); }

  // --- expressions -------------------------------------------------------

  std::vector<ExprPtr> ParseExpressionList() {
    std::vector<ExprPtr> list;
    while (true) {
      list.push_back(ParseExpression());
      if (!Peek().IsSymbol(",")) return list;
      Next();
    }
  }

  ExprPtr ParseExpression() {
    Guard guard(depth_);
    ExprPtr left = ParseAnd();
    while (Peek().IsKeyword("OR")) {
      Next();
      left = MakeBinary("OR", std::move(left), ParseAnd());
    }
    return left;
  }

  ExprPtr ParseAnd() {
    ExprPtr left = ParseNot();
    while (Peek().IsKeyword("AND")) {
      Next();
      left = MakeBinary("AND", std::move(left), ParseNot());
    }
    return left;
  }

  ExprPtr ParseNot() {
    Guard guard(depth_);
    if (Peek().IsKeyword("NOT")) {
      Next();
      ExprPtr expr = MakeExpr(Expr::Kind::kUnary);
      expr->text = "NOT";
      expr->args.push_back(ParseNot());
      return expr;
    }
    return ParseComparison();
  }

  ExprPtr ParseComparison() {
    ExprPtr left = ParseConcat();
    static constexpr std::string_view kOperators[] = {"=", "<>", "<", ">", "<=", ">="};
    for (std::string_view op : kOperators) {
      if (Peek().IsSymbol(op)) {
        Next();
        return MakeBinary(std::string(op), std::move(left), ParseConcat());
      }
    }
    bool negated = false;
    if (Peek().IsKeyword("NOT") &&
        (Peek(1).IsKeyword("LIKE") || Peek(1).IsKeyword("IN") || Peek(1).IsKeyword("BETWEEN"))) {
      Next();
      negated = true;
    }
    if (Peek().IsKeyword("LIKE")) {
      Next();
      ExprPtr expr = MakeExpr(Expr::Kind::kLike);
      expr->negated = negated;
      expr->args.push_back(std::move(left));
      expr->args.push_back(ParseConcat());
      return expr;
    }
    if (Peek().IsKeyword("BETWEEN")) {
      Next();
      ExprPtr expr = MakeExpr(Expr::Kind::kBetween);
      expr->negated = negated;
      expr->args.push_back(std::move(left));
      expr->args.push_back(ParseConcat());
      ExpectKeyword("AND");
      expr->args.push_back(ParseConcat());
      return expr;
    }
    if (Peek().IsKeyword("IN")) {
      Next();
      return ParseIn(std::move(left), negated);
    }
    if (Peek().IsKeyword("IS")) {
      Next();
      ExprPtr expr = MakeExpr(Expr::Kind::kIsNull);
      if (Peek().IsKeyword("NOT")) {
        Next();
        expr->negated = true;
      }
      ExpectKeyword("NULL");
      expr->args.push_back(std::move(left));
      return expr;
    }
    return left;
  }

  ExprPtr ParseIn(ExprPtr left, bool negated) {
    Expect("(");
    ExprPtr expr;
    if (Peek().IsKeyword("SELECT")) {
      expr = MakeExpr(Expr::Kind::kInSelect);
      expr->args.push_back(std::move(left));
      expr->select = ParseSelect();
      if (Peek().IsSymbol(";")) Next();
    } else {
      if (Peek().IsSymbol(")")) RaiseSyntax();  // Jet refuses an empty list
      expr = MakeExpr(Expr::Kind::kInList);
      expr->args.push_back(std::move(left));
      for (ExprPtr& item : ParseExpressionList()) expr->args.push_back(std::move(item));
    }
    expr->negated = negated;
    Expect(")");
    return expr;
  }

  ExprPtr ParseConcat() {
    ExprPtr left = ParseAdditive();
    while (Peek().IsSymbol("&")) {
      Next();
      left = MakeBinary("&", std::move(left), ParseAdditive());
    }
    return left;
  }

  ExprPtr ParseAdditive() {
    ExprPtr left = ParseMultiplicative();
    while (Peek().IsSymbol("+") || Peek().IsSymbol("-")) {
      std::string op = Next().text;
      left = MakeBinary(std::move(op), std::move(left), ParseMultiplicative());
    }
    return left;
  }

  ExprPtr ParseMultiplicative() {
    ExprPtr left = ParseUnary();
    while (Peek().IsSymbol("*") || Peek().IsSymbol("/")) {
      std::string op = Next().text;
      left = MakeBinary(std::move(op), std::move(left), ParseUnary());
    }
    return left;
  }

  ExprPtr ParseUnary() {
    Guard guard(depth_);
    if (Peek().IsSymbol("-") || Peek().IsSymbol("+")) {
      std::string op = Next().text;
      ExprPtr operand = ParseUnary();
      if (op == "-" && operand->kind == Expr::Kind::kNumber && operand->text[0] != '-') {
        operand->text = "-" + operand->text;
        return operand;
      }
      ExprPtr expr = MakeExpr(Expr::Kind::kUnary);
      expr->text = op;
      expr->args.push_back(std::move(operand));
      return expr;
    }
    return ParsePrimary();
  }

  ExprPtr ParsePrimary() {
    const Token& token = Peek();
    switch (token.kind) {
      case TokenKind::kNumber: {
        ExprPtr expr = MakeExpr(Expr::Kind::kNumber);
        expr->text = Next().text;
        return expr;
      }
      case TokenKind::kString: {
        ExprPtr expr = MakeExpr(Expr::Kind::kString);
        expr->text = Next().text;
        return expr;
      }
      case TokenKind::kDate: {
        ExprPtr expr = MakeExpr(Expr::Kind::kDate);
        expr->date = Next().date;
        return expr;
      }
      case TokenKind::kSymbol:
        if (token.IsSymbol("(")) return ParseParenthesised();
        RaiseSyntax();
      case TokenKind::kName:
        break;
      case TokenKind::kEnd:
        RaiseSyntax();
    }
    if (token.IsKeyword("TRUE") || token.IsKeyword("FALSE")) {
      ExprPtr expr = MakeExpr(Expr::Kind::kBoolean);
      expr->truth = Next().IsKeyword("TRUE");
      return expr;
    }
    if (token.IsKeyword("NULL")) {
      Next();
      return MakeExpr(Expr::Kind::kNull);
    }
    if (!token.bracketed && IsReserved(token.text)) RaiseSyntax();
    if (!token.bracketed && Peek(1).IsSymbol("(")) return ParseCall();
    ExprPtr expr = MakeExpr(Expr::Kind::kName);
    expr->parts = ParseNameParts(true);
    return expr;
  }

  ExprPtr ParseParenthesised() {
    Next();
    if (Peek().IsKeyword("SELECT")) {
      ExprPtr expr = MakeExpr(Expr::Kind::kSubquery);
      expr->select = ParseSelect();
      if (Peek().IsSymbol(";")) Next();
      Expect(")");
      return expr;
    }
    ExprPtr inner = ParseExpression();
    Expect(")");
    return inner;
  }

  ExprPtr ParseCall() {
    ExprPtr expr = MakeExpr(Expr::Kind::kCall);
    expr->text = Next().text;
    Expect("(");
    if (Peek().IsSymbol("*")) {
      Next();
      ExprPtr star = MakeExpr(Expr::Kind::kName);
      star->parts = {"*"};
      expr->args.push_back(std::move(star));
    } else if (!Peek().IsSymbol(")")) {
      expr->args = ParseExpressionList();
    }
    Expect(")");
    return expr;
  }

  // a, a.b, [a].[b c], q.Accounts_1.ID and, when star_allowed, t.*.
  std::vector<std::string> ParseNameParts(bool star_allowed = false) {
    std::vector<std::string> parts;
    parts.push_back(ExpectName());
    while (Peek().IsSymbol(".")) {
      Next();
      if (star_allowed && Peek().IsSymbol("*")) {
        Next();
        parts.push_back("*");
        return parts;
      }
      const Token& token = Next();
      if (token.kind != TokenKind::kName) RaiseSyntax();
      parts.push_back(token.text);
    }
    return parts;
  }

  static std::string LastPart(std::vector<std::string> parts) { return std::move(parts.back()); }

  // --- tokens ------------------------------------------------------------

  struct Guard {
    explicit Guard(int& depth) : depth_(depth) {
      if (++depth_ > kMaxDepth) RaiseSyntax();
    }
    ~Guard() { --depth_; }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;
    int& depth_;
  };

  static bool IsReserved(std::string_view word) {
    Token probe;
    probe.kind = TokenKind::kName;
    probe.text = std::string(word);
    for (std::string_view reserved : kReserved) {
      if (probe.IsKeyword(reserved)) return true;
    }
    return false;
  }

  static bool IsAliasToken(const Token& token) {
    return token.kind == TokenKind::kName && (token.bracketed || !IsReserved(token.text));
  }

  std::string ExpectName() {
    const Token& token = Next();
    if (!IsAliasToken(token)) RaiseSyntax();
    return token.text;
  }

  void Expect(std::string_view symbol) {
    if (!Next().IsSymbol(symbol)) RaiseSyntax();
  }

  void ExpectKeyword(std::string_view keyword) {
    if (!Next().IsKeyword(keyword)) RaiseSyntax();
  }

  const Token& Peek(size_t ahead = 0) const {
    const size_t index = position_ + ahead;
    return index < tokens_.size() ? tokens_[index] : tokens_.back();
  }

  const Token& Next() {
    const Token& token = Peek();
    if (position_ < tokens_.size() - 1) ++position_;
    return token;
  }

  std::vector<Token> tokens_;
  size_t position_ = 0;
  int depth_ = 0;
};

}  // namespace

Statement ParseStatement(std::string_view text) { return Parser(text).ParseWhole(); }

ExprPtr ParseCriterion(std::string_view text) { return Parser(text).ParseWholeExpression(); }

}  // namespace ldg::store::jet
