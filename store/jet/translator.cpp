// How a Jet statement becomes SQLite text:
//  1. The lexer cuts the text into tokens; the parser builds the statement's
//     tree (a PARAMETERS header, then SELECT, INSERT, UPDATE or DELETE).
//     Nothing is repaired: a stray apostrophe or an empty IN () fails here.
//  2. The declared parameters are numbered first, in their order (?1, ?2, ...).
//  3. The FROM clause is bound source by source. A table comes from the
//     catalog with its columns in field order. A stored query is translated
//     in turn (its own parameters joining the list) and becomes a WITH entry
//     whose columns carry the query's output names; a query already being
//     expanded is a circular reference. Every source is emitted with its Jet
//     name or alias as SQLite alias.
//  4. Every expression is bound against the sources: a declared parameter
//     shadows a column; a column name is looked for in the innermost select
//     first, then outwards; a name that nothing resolves is an implicit
//     parameter. Each bound expression carries its Jet type.
//  5. Where a value meets a column the value is adjusted to the column's
//     storage: a number literal meeting a Currency column becomes exact
//     ten-thousandths from its decimal text, True and False are -1 and 0, a
//     Boolean column compared with True tests for non-zero, text compares
//     through the NOCASE collation (case folded), and a parameter notes the type it meets.
//  6. The select list is expanded (* and t.* in field order) and named as Jet
//     names it: aliases as given, a column name that occurs twice qualified
//     as Alias.Column, other expressions Expr1000, Expr1001, ...
//  7. A select over an ordered stored query and no ORDER BY of its own takes
//     the query's order, through hidden ordering columns of the WITH entry.
//  8. The SQLite text is put together: joined UPDATE as UPDATE ... FROM, SET
//     targets unqualified, DELETE without its star, Like/&/First as the
//     registered functions, every identifier double-quoted.
#include "store/jet/translator.hpp"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>

#include "store/jet/jet_error.hpp"
#include "store/jet/parser.hpp"
#include "support/currency.hpp"
#include "support/text.hpp"

namespace ldg::store::jet {
namespace {

constexpr const char* kCollate = " COLLATE NOCASE";

std::string Quote(std::string_view name) {
  std::string out = "\"";
  for (char c : name) {
    if (c == '"') out += '"';
    out += c;
  }
  return out + "\"";
}

std::string StringLiteral(std::string_view text) {
  std::string out = "'";
  for (char c : text) {
    if (c == '\'') out += '\'';
    out += c;
  }
  return out + "'";
}

std::string RealLiteral(double value) {
  char buffer[40];
  std::snprintf(buffer, sizeof buffer, "%.17g", value);
  std::string text = buffer;
  if (text.find_first_of(".en") == std::string::npos) text += ".0";
  return text;
}

std::string Join(const std::vector<std::string>& parts, std::string_view separator) {
  std::string out;
  for (size_t i = 0; i < parts.size(); ++i) {
    if (i > 0) out += separator;
    out += parts[i];
  }
  return out;
}

bool IsText(FieldType type) { return type == FieldType::kText || type == FieldType::kMemo; }

bool IsWholeNumber(FieldType type) {
  return type == FieldType::kByte || type == FieldType::kInteger || type == FieldType::kLong ||
         type == FieldType::kBoolean;
}

bool IsFloating(FieldType type) { return type == FieldType::kSingle || type == FieldType::kDouble; }

int NumericRank(FieldType type) {
  switch (type) {
    case FieldType::kBoolean:
    case FieldType::kByte:
      return 1;
    case FieldType::kInteger:
      return 2;
    case FieldType::kLong:
      return 3;
    case FieldType::kSingle:
      return 4;
    case FieldType::kDouble:
      return 5;
    default:
      return 0;
  }
}

bool IsIntegralLiteral(std::string_view text) { return text.find_first_of(".eE") == std::string_view::npos; }

FieldType LiteralType(std::string_view text) {
  if (!IsIntegralLiteral(text)) return FieldType::kDouble;
  const long long value = std::strtoll(std::string(text).c_str(), nullptr, 10);
  if (text.size() > 11 || value > INT32_MAX || value < INT32_MIN) return FieldType::kDouble;
  return FieldType::kLong;
}

// A number literal as exact ten-thousandths, half to even at the fourth decimal.
std::string ScaledLiteral(std::string_view text) {
  std::optional<Currency> amount = Currency::Parse(text);
  if (!amount) amount = Currency::FromDouble(std::strtod(std::string(text).c_str(), nullptr));
  return std::to_string(amount->Raw());
}

struct Column {
  std::string name;  // the identifier inside its source
  FieldType type = FieldType::kUnknown;
  std::string base_table;
  std::string base_column;
};

struct OrderKey {
  std::string column;
  bool descending = false;
};

struct SourceScope {
  std::string ref;  // the Jet name or alias that qualifies its columns
  std::vector<Column> columns;
  bool is_table = false;
  std::string table;      // catalog name of a table
  std::string updatable;  // for a query: the table its rows write to
  std::vector<OrderKey> order;
};

struct Scope {
  std::vector<SourceScope> sources;
  const Scope* outer = nullptr;
};

struct Typed {
  std::string sql;
  FieldType type = FieldType::kUnknown;
  const Expr* number = nullptr;  // an unscaled number literal
  int parameter = -1;
  bool predicate = false;
  bool boolean_literal = false;
  bool truth = false;
  bool aggregate = false;
  const Column* column = nullptr;
  const SourceScope* source = nullptr;
};

struct SelectResult {
  std::string sql;
  std::vector<ResultColumn> columns;
  std::vector<OrderKey> hidden_order;
  std::string updatable;
};

struct QueryInfo {
  std::string name;
  std::vector<Column> columns;
  std::vector<OrderKey> order;
  std::string updatable;
};

class Translator {
 public:
  explicit Translator(const Catalog& catalog) : catalog_(catalog) {}

  Translation Run(std::string_view text) {
    Statement statement = ParseStatement(text);
    declared_ = &statement.parameters;
    Declare(statement.parameters);
    Translation translation;
    std::string body;
    switch (statement.kind) {
      case Statement::Kind::kSelect: {
        translation.kind = StatementKind::kSelect;
        SelectResult result = BindSelect(*statement.select, nullptr, nullptr, false);
        body = std::move(result.sql);
        translation.columns = std::move(result.columns);
        translation.updatable_table = std::move(result.updatable);
        break;
      }
      case Statement::Kind::kInsert:
        translation.kind = StatementKind::kInsert;
        body = BindInsert(statement);
        break;
      case Statement::Kind::kUpdate:
        translation.kind = StatementKind::kUpdate;
        body = BindUpdate(statement);
        break;
      case Statement::Kind::kDelete:
        translation.kind = StatementKind::kDelete;
        body = BindDelete(statement);
        break;
    }
    translation.sql = ctes_.empty() ? body : "WITH " + Join(ctes_, ", ") + " " + body;
    translation.parameters = std::move(parameters_);
    return translation;
  }

 private:
  // --- parameters ----------------------------------------------------------

  void Declare(const std::vector<ParameterDeclaration>& declarations) {
    for (const ParameterDeclaration& declaration : declarations) {
      const int index = ParameterIndex(declaration.name);
      if (parameters_[static_cast<size_t>(index)].type == FieldType::kUnknown) {
        parameters_[static_cast<size_t>(index)].type = declaration.type;
      }
    }
  }

  int ParameterIndex(const std::string& name) {
    for (size_t i = 0; i < parameters_.size(); ++i) {
      if (EqualsNoCase(parameters_[i].name, name)) return static_cast<int>(i);
    }
    Parameter parameter;
    parameter.name = name;
    parameters_.push_back(std::move(parameter));
    return static_cast<int>(parameters_.size() - 1);
  }

  Typed ParameterReference(const std::string& name) {
    Typed typed;
    typed.parameter = ParameterIndex(name);
    typed.type = parameters_[static_cast<size_t>(typed.parameter)].type;
    typed.sql = "?" + std::to_string(typed.parameter + 1);
    return typed;
  }

  void NoteMeets(const Typed& value, FieldType type) {
    if (value.parameter < 0 || type == FieldType::kUnknown) return;
    Parameter& parameter = parameters_[static_cast<size_t>(value.parameter)];
    if (parameter.meets == FieldType::kUnknown) parameter.meets = type;
  }

  // --- sources -------------------------------------------------------------

  const QueryInfo& ExpandQuery(const std::string& name) {
    const std::string key = FoldCase(name);
    if (auto found = queries_.find(key); found != queries_.end()) return found->second;
    for (const std::string& open : expanding_) {
      if (open == key)
        RaiseStoreError(kErrCircularQuery, "Circular reference caused by query '" + name + "'.");
    }
    std::optional<std::string> text = catalog_.QueryText(name);
    if (!text) RaiseUnknownTable(name);
    Statement inner = ParseStatement(*text);
    if (inner.kind != Statement::Kind::kSelect) RaiseUnknownTable(name);
    expanding_.push_back(key);
    const std::vector<ParameterDeclaration>* outer_declared = declared_;
    declared_ = &inner.parameters;
    Declare(inner.parameters);
    SelectResult result = BindSelect(*inner.select, nullptr, nullptr, true);
    declared_ = outer_declared;
    expanding_.pop_back();

    QueryInfo info;
    info.name = name;
    for (const ResultColumn& column : result.columns) {
      info.columns.push_back({column.name, column.type, column.base_table, column.base_column});
    }
    info.order = std::move(result.hidden_order);
    info.updatable = std::move(result.updatable);
    ctes_.push_back(Quote(name) + " AS (" + result.sql + ")");
    return queries_.emplace(key, std::move(info)).first->second;
  }

  static std::string Aliased(const std::string& physical, const std::string& ref) {
    return physical == Quote(ref) ? physical : physical + " AS " + Quote(ref);
  }

  // Adds a named or derived source to scope and returns its FROM text.
  std::string BindSingleSource(const Source& source, Scope& scope) {
    SourceScope bound;
    std::string sql;
    if (source.kind == Source::Kind::kDerived) {
      SelectResult result = BindSelect(*source.derived, nullptr, nullptr, true);
      bound.ref = source.alias;
      for (const ResultColumn& column : result.columns) {
        bound.columns.push_back({column.name, column.type, column.base_table, column.base_column});
      }
      bound.order = std::move(result.hidden_order);
      sql = "(" + result.sql + ") AS " + Quote(bound.ref);
    } else {
      bound.ref = source.alias.empty() ? source.name : source.alias;
      if (std::optional<std::vector<Catalog::Column>> columns = catalog_.TableColumns(source.name)) {
        bound.is_table = true;
        bound.table = source.name;
        for (const Catalog::Column& column : *columns) {
          bound.columns.push_back({column.name, column.type, source.name, column.name});
        }
        sql = Aliased(catalog_.PhysicalName(source.name), bound.ref);
      } else {
        const QueryInfo& query = ExpandQuery(source.name);
        bound.columns = query.columns;
        bound.order = query.order;
        bound.updatable = query.updatable;
        sql = Aliased(Quote(query.name), bound.ref);
      }
    }
    scope.sources.push_back(std::move(bound));
    return sql;
  }

  std::string BindSource(const Source& source, Scope& scope) {
    if (source.kind != Source::Kind::kJoin) return BindSingleSource(source, scope);
    std::string left = BindSource(*source.left, scope);
    std::string right = BindSource(*source.right, scope);
    if (source.right->kind == Source::Kind::kJoin) right = "(" + right + ")";
    const Typed on = BindExpr(*source.on, scope);
    static constexpr const char* kJoins[] = {" INNER JOIN ", " LEFT JOIN ", " RIGHT JOIN "};
    return left + kJoins[static_cast<int>(source.join)] + right + " ON " + on.sql;
  }

  // The leftmost source when rows come out in its order: a single source or
  // a chain of LEFT joins hanging off it.
  static bool KeepsLeftmostOrder(const std::vector<std::unique_ptr<Source>>& from) {
    if (from.size() != 1) return false;
    const Source* source = from[0].get();
    while (source->kind == Source::Kind::kJoin) {
      if (source->join != Source::JoinType::kLeft) return false;
      source = source->left.get();
    }
    return true;
  }

  // --- names -----------------------------------------------------------------

  const std::vector<ParameterDeclaration>& Declared() const { return *declared_; }

  static const Column* FindColumn(const SourceScope& source, std::string_view name) {
    for (const Column& column : source.columns) {
      if (EqualsNoCase(column.name, name)) return &column;
    }
    return nullptr;
  }

  static Typed ColumnReference(const SourceScope& source, const Column& column) {
    Typed typed;
    typed.sql = Quote(source.ref) + "." + Quote(column.name);
    typed.type = column.type;
    typed.column = &column;
    typed.source = &source;
    return typed;
  }

  // Looks for an unqualified column in one select's sources.
  static std::optional<Typed> FindUnqualified(const Scope& scope, std::string_view name) {
    std::optional<Typed> found;
    for (const SourceScope& source : scope.sources) {
      if (const Column* column = FindColumn(source, name)) {
        if (found) {
          RaiseStoreError(3079, "The field '" + std::string(name) +
                                    "' could refer to more than one table in the FROM clause.");
        }
        found = ColumnReference(source, *column);
      }
    }
    return found;
  }

  Typed ResolveName(const std::vector<std::string>& parts, const Scope& scope) {
    const std::string whole = Join(parts, ".");
    if (parts.size() == 1) {
      for (const ParameterDeclaration& declaration : Declared()) {
        if (EqualsNoCase(declaration.name, parts[0])) return ParameterReference(declaration.name);
      }
    }
    for (const Scope* level = &scope; level != nullptr; level = level->outer) {
      if (parts.size() > 1) {
        for (const SourceScope& source : level->sources) {
          if (!EqualsNoCase(source.ref, parts[0])) continue;
          const std::vector<std::string> rest(parts.begin() + 1, parts.end());
          if (const Column* column = FindColumn(source, Join(rest, ".")))
            return ColumnReference(source, *column);
        }
      }
      if (std::optional<Typed> found = FindUnqualified(*level, whole)) return *found;
    }
    return ParameterReference(whole);
  }

  // --- expressions -------------------------------------------------------------

  // The SQL of value where it meets a column or value of type target.
  // Assigning also turns numbers and predicates into Booleans and Currency
  // into the target's plain numbers; comparing leaves those to SQLite.
  std::string Coerce(const Typed& value, FieldType target, bool assigning = false) {
    NoteMeets(value, target);
    if (target == FieldType::kCurrency && value.type != FieldType::kCurrency) {
      if (value.number != nullptr) return ScaledLiteral(value.number->text);
      if (IsWholeNumber(value.type)) return "(" + value.sql + " * 10000)";
      if (IsFloating(value.type) || value.type == FieldType::kDate) {
        return "CAST(ROUND((" + value.sql + ") * 10000) AS INTEGER)";
      }
      return value.sql;
    }
    if (!assigning) return value.sql;
    if (target == FieldType::kBoolean) {
      if (value.number != nullptr)
        return std::strtod(value.number->text.c_str(), nullptr) != 0.0 ? "-1" : "0";
      if (value.predicate) return "-(" + value.sql + ")";
      return value.sql;
    }
    if (value.type == FieldType::kCurrency && target != FieldType::kCurrency &&
        target != FieldType::kUnknown && !IsText(target)) {
      return "(" + value.sql + " / 10000.0)";
    }
    return value.sql;
  }

  static std::string AsReal(const Typed& value) {
    if (value.type == FieldType::kCurrency) return "(" + value.sql + " / 10000.0)";
    return "CAST(" + value.sql + " AS REAL)";
  }

  static std::string AsValue(const Typed& value) {
    if (value.type == FieldType::kCurrency) return "(" + value.sql + " / 10000.0)";
    if (value.predicate) return "-(" + value.sql + ")";
    return value.sql;
  }

  static Typed Predicate(std::string sql) {
    Typed typed;
    typed.sql = std::move(sql);
    typed.type = FieldType::kBoolean;
    typed.predicate = true;
    return typed;
  }

  Typed Compare(const std::string& op, const Typed& left, const Typed& right) {
    const Typed* column = left.boolean_literal ? &right : &left;
    const Typed* literal = left.boolean_literal ? &left : &right;
    if (literal->boolean_literal && column->type == FieldType::kBoolean && !column->boolean_literal &&
        (op == "=" || op == "<>")) {
      const bool wants_true = (op == "=") == literal->truth;
      Typed result = Predicate("(" + column->sql + (wants_true ? " <> 0)" : " = 0)"));
      result.aggregate = column->aggregate;
      return result;
    }
    std::string left_sql, right_sql;
    if (left.type == FieldType::kCurrency && right.number == nullptr && IsFloating(right.type)) {
      left_sql = AsReal(left);
      right_sql = right.sql;
    } else if (right.type == FieldType::kCurrency && left.number == nullptr && IsFloating(left.type)) {
      left_sql = left.sql;
      right_sql = AsReal(right);
    } else if (left.type == FieldType::kCurrency && right.type != FieldType::kCurrency) {
      left_sql = left.sql;
      right_sql = Coerce(right, FieldType::kCurrency);
    } else if (right.type == FieldType::kCurrency && left.type != FieldType::kCurrency) {
      left_sql = Coerce(left, FieldType::kCurrency);
      right_sql = right.sql;
    } else {
      NoteMeets(left, right.type);
      NoteMeets(right, left.type);
      left_sql = AsValue(left);
      right_sql = AsValue(right);
    }
    std::string sql = "(" + left_sql + " " + op + " ";
    if (IsText(left.type) || IsText(right.type)) {
      sql += "(" + right_sql + ")" + kCollate + ")";
    } else {
      sql += right_sql + ")";
    }
    Typed result = Predicate(std::move(sql));
    result.aggregate = left.aggregate || right.aggregate;
    return result;
  }

  Typed Arithmetic(const std::string& op, const Typed& left, const Typed& right) {
    Typed result;
    result.aggregate = left.aggregate || right.aggregate;
    const bool left_currency = left.type == FieldType::kCurrency;
    const bool right_currency = right.type == FieldType::kCurrency;
    if (op == "/") {
      result.sql = "(" + AsReal(left) + " / " + AsReal(right) + ")";
      result.type = FieldType::kDouble;
      return result;
    }
    if (left_currency || right_currency) {
      const Typed& currency = left_currency ? left : right;
      const Typed& other = left_currency ? right : left;
      const bool other_whole =
          other.number != nullptr ? IsIntegralLiteral(other.number->text) : IsWholeNumber(other.type);
      if (op == "*") {
        if (other.type == FieldType::kCurrency) {
          result.sql = "jet_cur_mul(" + left.sql + ", " + right.sql + ")";
          result.type = FieldType::kCurrency;
        } else if (other_whole || other.type == FieldType::kUnknown) {
          NoteMeets(other, FieldType::kLong);
          result.sql = "(" + left.sql + " * " + right.sql + ")";
          result.type = FieldType::kCurrency;
        } else {
          result.sql = "(" + AsReal(left) + " * " + AsReal(right) + ")";
          result.type = FieldType::kDouble;
        }
        return result;
      }
      if (other.number == nullptr && IsFloating(other.type)) {
        result.sql = "(" + AsReal(left) + " " + op + " " + AsReal(right) + ")";
        result.type = FieldType::kDouble;
        return result;
      }
      result.sql = "(" + Coerce(left, currency.type) + " " + op + " " + Coerce(right, currency.type) + ")";
      result.type = FieldType::kCurrency;
      return result;
    }
    if (op == "+" && IsText(left.type) && IsText(right.type)) {
      result.sql = "(" + left.sql + " || " + right.sql + ")";
      result.type = FieldType::kText;
      return result;
    }
    result.sql = "(" + AsValue(left) + " " + op + " " + AsValue(right) + ")";
    if (left.type == FieldType::kDate || right.type == FieldType::kDate) {
      result.type = (op == "-" && left.type == right.type) ? FieldType::kDouble : FieldType::kDate;
    } else {
      const int rank = std::max(NumericRank(left.type), NumericRank(right.type));
      static constexpr FieldType kByRank[] = {FieldType::kUnknown, FieldType::kInteger, FieldType::kInteger,
                                              FieldType::kLong,    FieldType::kSingle,  FieldType::kDouble};
      result.type =
          (NumericRank(left.type) == 0 || NumericRank(right.type) == 0) ? FieldType::kUnknown : kByRank[rank];
    }
    return result;
  }

  Typed BindCall(const Expr& expr, const Scope& scope) {
    const std::string name = FoldCase(expr.text);
    Typed result;
    result.aggregate = true;
    const bool known = name == "sum" || name == "min" || name == "max" || name == "count" ||
                       name == "first" || name == "avg";
    if (!known)
      RaiseStoreError(kErrUndefinedFunction, "Undefined function '" + expr.text + "' in expression.");
    if (expr.args.size() != 1) RaiseSyntax();
    const Expr& argument = *expr.args[0];
    if (argument.kind == Expr::Kind::kName && argument.parts.back() == "*") {
      if (name != "count" || argument.parts.size() != 1) RaiseSyntax();
      result.sql = "COUNT(*)";
      result.type = FieldType::kLong;
      return result;
    }
    const Typed value = BindExpr(argument, scope);
    const std::string inner = value.predicate ? "-(" + value.sql + ")" : value.sql;
    if (name == "count") {
      result.sql = "COUNT(" + inner + ")";
      result.type = FieldType::kLong;
    } else if (name == "sum") {
      result.sql = "SUM(" + inner + ")";
      if (value.type == FieldType::kCurrency || value.type == FieldType::kUnknown) {
        result.type = value.type;
      } else if (IsWholeNumber(value.type)) {
        result.type = FieldType::kLong;
      } else {
        result.type = FieldType::kDouble;
      }
    } else if (name == "avg") {
      result.sql = "AVG(" + AsValue(value) + ")";
      result.type = FieldType::kDouble;
    } else {
      result.sql = (name == "first" ? "jet_first(" : name == "min" ? "MIN(" : "MAX(") + inner + ")";
      result.type = value.predicate ? FieldType::kBoolean : value.type;
    }
    return result;
  }

  Typed BindExpr(const Expr& expr, const Scope& scope) {
    Typed result;
    switch (expr.kind) {
      case Expr::Kind::kNumber:
        result.sql = expr.text;
        result.type = LiteralType(expr.text);
        result.number = &expr;
        return result;
      case Expr::Kind::kString:
        result.sql = StringLiteral(expr.text);
        result.type = FieldType::kText;
        return result;
      case Expr::Kind::kDate:
        result.sql = RealLiteral(expr.date);
        result.type = FieldType::kDate;
        return result;
      case Expr::Kind::kBoolean:
        result.sql = expr.truth ? "-1" : "0";
        result.type = FieldType::kBoolean;
        result.boolean_literal = true;
        result.truth = expr.truth;
        return result;
      case Expr::Kind::kNull:
        result.sql = "NULL";
        return result;
      case Expr::Kind::kName:
        if (expr.parts.back() == "*") RaiseSyntax();
        return ResolveName(expr.parts, scope);
      case Expr::Kind::kUnary: {
        const Typed operand = BindExpr(*expr.args[0], scope);
        if (expr.text == "NOT") {
          result = Predicate("NOT (" + operand.sql + ")");
        } else if (expr.text == "-") {
          result.sql = "-(" + (operand.type == FieldType::kCurrency ? operand.sql : AsValue(operand)) + ")";
          result.type = operand.predicate ? FieldType::kLong : operand.type;
        } else {
          result = operand;
        }
        result.aggregate = operand.aggregate;
        return result;
      }
      case Expr::Kind::kBinary:
        return BindBinary(expr, scope);
      case Expr::Kind::kLike: {
        const Typed value = BindExpr(*expr.args[0], scope);
        const Typed pattern = BindExpr(*expr.args[1], scope);
        NoteMeets(pattern, FieldType::kText);
        result = Predicate(std::string(expr.negated ? "NOT " : "") + "jet_like(" + AsValue(value) + ", " +
                           AsValue(pattern) + ")");
        result.aggregate = value.aggregate;
        return result;
      }
      case Expr::Kind::kIsNull: {
        const Typed value = BindExpr(*expr.args[0], scope);
        result = Predicate("(" + value.sql + (expr.negated ? " IS NOT NULL)" : " IS NULL)"));
        result.aggregate = value.aggregate;
        return result;
      }
      case Expr::Kind::kInList: {
        const Typed value = BindExpr(*expr.args[0], scope);
        std::vector<std::string> items;
        for (size_t i = 1; i < expr.args.size(); ++i) {
          const Typed item = BindExpr(*expr.args[i], scope);
          items.push_back(Coerce(item, value.type));
        }
        const std::string left = IsText(value.type) ? "(" + value.sql + ")" + kCollate : value.sql;
        result = Predicate("(" + left + (expr.negated ? " NOT IN (" : " IN (") + Join(items, ", ") + "))");
        result.aggregate = value.aggregate;
        return result;
      }
      case Expr::Kind::kInSelect: {
        const Typed value = BindExpr(*expr.args[0], scope);
        const SelectResult inner = BindSelect(*expr.select, &scope, nullptr, false);
        result = Predicate("(" + value.sql + (expr.negated ? " NOT IN (" : " IN (") + inner.sql + "))");
        result.aggregate = value.aggregate;
        return result;
      }
      case Expr::Kind::kBetween: {
        const Typed value = BindExpr(*expr.args[0], scope);
        const Typed low = BindExpr(*expr.args[1], scope);
        const Typed high = BindExpr(*expr.args[2], scope);
        const std::string left = IsText(value.type) ? "(" + value.sql + ")" + kCollate : value.sql;
        result = Predicate("(" + left + (expr.negated ? " NOT BETWEEN " : " BETWEEN ") +
                           Coerce(low, value.type) + " AND " + Coerce(high, value.type) + ")");
        result.aggregate = value.aggregate;
        return result;
      }
      case Expr::Kind::kCall:
        return BindCall(expr, scope);
      case Expr::Kind::kSubquery: {
        const SelectResult inner = BindSelect(*expr.select, &scope, nullptr, false);
        result.sql = "(" + inner.sql + ")";
        result.type = inner.columns.empty() ? FieldType::kUnknown : inner.columns[0].type;
        return result;
      }
    }
    RaiseSyntax();
  }

  Typed BindBinary(const Expr& expr, const Scope& scope) {
    const Typed left = BindExpr(*expr.args[0], scope);
    const Typed right = BindExpr(*expr.args[1], scope);
    const std::string& op = expr.text;
    if (op == "AND" || op == "OR") {
      Typed result = Predicate("(" + left.sql + " " + op + " " + right.sql + ")");
      result.aggregate = left.aggregate || right.aggregate;
      return result;
    }
    if (op == "=" || op == "<>" || op == "<" || op == ">" || op == "<=" || op == ">=") {
      return Compare(op, left, right);
    }
    if (op == "&") {
      Typed result;
      result.sql = "jet_cat(" + AsValue(left) + ", " + AsValue(right) + ")";
      result.type = FieldType::kText;
      result.aggregate = left.aggregate || right.aggregate;
      NoteMeets(left, FieldType::kText);
      NoteMeets(right, FieldType::kText);
      return result;
    }
    if (op == "+" || op == "-" || op == "*" || op == "/") return Arithmetic(op, left, right);
    RaiseSyntax();
  }

  // --- SELECT ------------------------------------------------------------------

  struct Output {
    std::string sql;
    std::string name;
    std::string qualifier;  // for a plain column: its source's Jet name
    bool plain_column = false;
    FieldType type = FieldType::kUnknown;
    std::string base_table, base_column;
  };

  static Output ColumnOutput(const SourceScope& source, const Column& column) {
    Output output;
    output.sql = Quote(source.ref) + "." + Quote(column.name);
    output.name = column.name;
    output.qualifier = source.ref;
    output.plain_column = true;
    output.type = column.type;
    output.base_table = column.base_table;
    output.base_column = column.base_column;
    return output;
  }

  SelectResult BindSelect(const Select& select, const Scope* outer, const std::vector<FieldType>* targets,
                          bool as_source) {
    Scope scope;
    scope.outer = outer;
    std::vector<std::string> from;
    for (const std::unique_ptr<Source>& source : select.from) from.push_back(BindSource(*source, scope));

    std::vector<Output> outputs;
    bool aggregate = false;
    int expression_number = 1000;
    for (const SelectItem& item : select.items) {
      const Expr& expr = *item.expr;
      if (expr.kind == Expr::Kind::kName && expr.parts.back() == "*") {
        ExpandStar(expr.parts, scope, outputs);
        continue;
      }
      Typed value = BindExpr(expr, scope);
      aggregate = aggregate || value.aggregate;
      Output output;
      if (targets != nullptr && outputs.size() < targets->size()) {
        output.sql = Coerce(value, (*targets)[outputs.size()], true);
      } else {
        output.sql = value.predicate ? "-(" + value.sql + ")" : value.sql;
      }
      output.type = value.type;
      if (value.column != nullptr && value.source != nullptr) {
        output.plain_column = item.alias.empty();
        output.qualifier = value.source->ref;
        output.base_table = value.column->base_table;
        output.base_column = value.column->base_column;
      }
      if (!item.alias.empty()) {
        output.name = item.alias;
      } else if (value.column != nullptr) {
        output.name = value.column->name;
      } else {
        output.name = "Expr" + std::to_string(expression_number++);
      }
      outputs.push_back(std::move(output));
    }
    NameDuplicates(outputs);

    SelectResult result;
    std::string sql = select.distinct ? "SELECT DISTINCT " : "SELECT ";
    for (size_t i = 0; i < outputs.size(); ++i) {
      if (i > 0) sql += ", ";
      sql += outputs[i].sql + " AS " + Quote(outputs[i].name);
      result.columns.push_back(
          {outputs[i].name, outputs[i].type, outputs[i].base_table, outputs[i].base_column});
    }

    std::string tail;
    if (!from.empty()) tail += " FROM " + Join(from, ", ");
    if (select.where) tail += " WHERE " + BindExpr(*select.where, scope).sql;
    if (!select.group_by.empty()) {
      std::vector<std::string> groups;
      for (const ExprPtr& group : select.group_by) groups.push_back(Ordered(BindExpr(*group, scope)));
      tail += " GROUP BY " + Join(groups, ", ");
    }
    if (select.having) tail += " HAVING " + BindExpr(*select.having, scope).sql;

    std::vector<std::pair<std::string, bool>> order;
    for (const OrderItem& item : select.order_by) {
      const Typed key = BindExpr(*item.expr, scope);
      aggregate = aggregate || key.aggregate;
      order.emplace_back(Ordered(key), item.descending);
    }
    if (order.empty() && select.group_by.empty() && !aggregate && !select.distinct &&
        KeepsLeftmostOrder(select.from)) {
      const SourceScope& leftmost = scope.sources.front();
      for (const OrderKey& key : leftmost.order) {
        order.emplace_back(Quote(leftmost.ref) + "." + Quote(key.column), key.descending);
      }
    }
    if (as_source && !select.distinct) {
      for (size_t i = 0; i < order.size(); ++i) {
        const std::string hidden = "__order" + std::to_string(i + 1);
        sql += ", " + order[i].first + " AS " + Quote(hidden);
        result.hidden_order.push_back({hidden, order[i].second});
      }
    }
    if (!order.empty()) {
      std::vector<std::string> keys;
      for (const auto& [key, descending] : order) keys.push_back(key + (descending ? " DESC" : ""));
      tail += " ORDER BY " + Join(keys, ", ");
    }
    result.sql = sql + tail;
    if (!select.distinct && select.group_by.empty() && !aggregate && scope.sources.size() == 1 &&
        select.from.size() == 1 && select.from[0]->kind == Source::Kind::kNamed) {
      const SourceScope& only = scope.sources.front();
      result.updatable = only.is_table ? only.table : only.updatable;
    }
    return result;
  }

  static std::string Ordered(const Typed& key) {
    if (IsText(key.type)) return "(" + key.sql + ")" + kCollate;
    return key.predicate ? "-(" + key.sql + ")" : key.sql;
  }

  static void ExpandStar(const std::vector<std::string>& parts, const Scope& scope,
                         std::vector<Output>& outputs) {
    if (parts.size() == 1) {
      if (scope.sources.empty()) RaiseSyntax();
      for (const SourceScope& source : scope.sources) {
        for (const Column& column : source.columns) outputs.push_back(ColumnOutput(source, column));
      }
      return;
    }
    const std::vector<std::string> qualifier(parts.begin(), parts.end() - 1);
    const std::string name = Join(qualifier, ".");
    for (const SourceScope& source : scope.sources) {
      if (!EqualsNoCase(source.ref, name)) continue;
      for (const Column& column : source.columns) outputs.push_back(ColumnOutput(source, column));
      return;
    }
    RaiseSyntax();
  }

  // A plain column whose name occurs more than once is named Alias.Column.
  static void NameDuplicates(std::vector<Output>& outputs) {
    std::vector<bool> qualify(outputs.size(), false);
    for (size_t i = 0; i < outputs.size(); ++i) {
      if (!outputs[i].plain_column) continue;
      for (size_t j = 0; j < outputs.size(); ++j) {
        if (i != j && outputs[j].plain_column && EqualsNoCase(outputs[i].name, outputs[j].name)) {
          qualify[i] = true;
          break;
        }
      }
    }
    for (size_t i = 0; i < outputs.size(); ++i) {
      if (qualify[i]) outputs[i].name = outputs[i].qualifier + "." + outputs[i].name;
    }
  }

  // --- INSERT, UPDATE, DELETE -----------------------------------------------------

  std::vector<Catalog::Column> TableColumnsOrRaise(const std::string& table) {
    std::optional<std::vector<Catalog::Column>> columns = catalog_.TableColumns(table);
    if (!columns) RaiseUnknownTable(table);
    return std::move(*columns);
  }

  std::string BindInsert(const Statement& statement) {
    const std::vector<Catalog::Column> columns = TableColumnsOrRaise(statement.insert_table);
    std::vector<std::string> names;
    std::vector<FieldType> types;
    if (statement.insert_columns.empty()) {
      for (const Catalog::Column& column : columns) {
        names.push_back(Quote(column.name));
        types.push_back(column.type);
      }
    } else {
      for (const std::string& wanted : statement.insert_columns) {
        const Catalog::Column* found = nullptr;
        for (const Catalog::Column& column : columns) {
          if (EqualsNoCase(column.name, wanted)) found = &column;
        }
        if (found == nullptr) {
          RaiseStoreError(3127, "The INSERT INTO statement names an unknown field: '" + wanted + "'.");
        }
        names.push_back(Quote(found->name));
        types.push_back(found->type);
      }
    }
    std::string rows;
    size_t count = 0;
    if (statement.select) {
      SelectResult result = BindSelect(*statement.select, nullptr, &types, false);
      count = result.columns.size();
      rows = std::move(result.sql);
    } else {
      const Scope empty;
      std::vector<std::string> values;
      for (const ExprPtr& value : statement.insert_values) {
        const Typed typed = BindExpr(*value, empty);
        values.push_back(values.size() < types.size() ? Coerce(typed, types[values.size()], true)
                                                      : typed.sql);
      }
      count = values.size();
      rows = "VALUES (" + Join(values, ", ") + ")";
    }
    if (count != names.size()) {
      RaiseStoreError(3346, "Number of query values and destination fields are not the same.");
    }
    return "INSERT INTO " + catalog_.PhysicalName(statement.insert_table) + " (" + Join(names, ", ") + ") " +
           rows;
  }

  // Collects the sources of an inner join tree and its ON conditions.
  void FlattenInner(const Source& source, std::vector<const Source*>& sources,
                    std::vector<const Expr*>& conditions) {
    if (source.kind != Source::Kind::kJoin) {
      sources.push_back(&source);
      return;
    }
    if (source.join != Source::JoinType::kInner) {
      RaiseStoreError(kErrNotSupported, "An UPDATE over an outer join is not supported.");
    }
    FlattenInner(*source.left, sources, conditions);
    FlattenInner(*source.right, sources, conditions);
    conditions.push_back(source.on.get());
  }

  std::string BindUpdate(const Statement& statement) {
    std::vector<const Source*> sources;
    std::vector<const Expr*> conditions;
    FlattenInner(*statement.from[0], sources, conditions);
    Scope scope;
    std::vector<std::string> from;
    for (const Source* source : sources) from.push_back(BindSingleSource(*source, scope));

    const SourceScope* target = nullptr;
    size_t target_index = 0;
    std::vector<std::string> sets;
    for (const Assignment& assignment : statement.assignments) {
      const Column* column = nullptr;
      for (size_t i = 0; i < scope.sources.size() && column == nullptr; ++i) {
        const SourceScope& source = scope.sources[i];
        if (target != nullptr && &source != target) continue;
        if (assignment.target.size() > 1) {
          if (!EqualsNoCase(source.ref, assignment.target[0])) continue;
          column = FindColumn(source, Join({assignment.target.begin() + 1, assignment.target.end()}, "."));
        } else {
          column = FindColumn(source, assignment.target[0]);
        }
        if (column != nullptr) {
          target = &source;
          target_index = i;
        }
      }
      if (column == nullptr || !target->is_table) {
        RaiseStoreError(kErrNotSupported,
                        "Cannot update '" + Join(assignment.target, ".") + "'; field not updatable.");
      }
      const Typed value = BindExpr(*assignment.value, scope);
      sets.push_back(Quote(column->name) + " = " + Coerce(value, column->type, true));
    }
    std::vector<std::string> where;
    for (const Expr* condition : conditions) where.push_back(BindExpr(*condition, scope).sql);
    if (statement.where) where.push_back(BindExpr(*statement.where, scope).sql);

    std::string sql = "UPDATE " + from[target_index] + " SET " + Join(sets, ", ");
    std::vector<std::string> others;
    for (size_t i = 0; i < from.size(); ++i) {
      if (i != target_index) others.push_back(from[i]);
    }
    if (!others.empty()) sql += " FROM " + Join(others, ", ");
    if (!where.empty()) sql += " WHERE " + Join(where, " AND ");
    return sql;
  }

  std::string BindDelete(const Statement& statement) {
    Scope scope;
    std::vector<std::string> from;
    for (const std::unique_ptr<Source>& source : statement.from) from.push_back(BindSource(*source, scope));
    const SourceScope* target = &scope.sources.front();
    if (!statement.delete_star.empty()) {
      target = nullptr;
      for (const SourceScope& source : scope.sources) {
        if (EqualsNoCase(source.ref, statement.delete_star)) target = &source;
      }
      if (target == nullptr) RaiseSyntax();
    }
    if (!target->is_table) RaiseStoreError(kErrNotSupported, "Could not delete from the tables named.");
    const std::string where = statement.where ? BindExpr(*statement.where, scope).sql : "";
    const bool single = statement.from.size() == 1 && statement.from[0]->kind == Source::Kind::kNamed;
    if (single) return "DELETE FROM " + from[0] + (where.empty() ? "" : " WHERE " + where);
    return "DELETE FROM " + catalog_.PhysicalName(target->table) + " WHERE rowid IN (SELECT " +
           Quote(target->ref) + ".rowid FROM " + Join(from, ", ") + (where.empty() ? "" : " WHERE " + where) +
           ")";
  }

  const Catalog& catalog_;
  std::vector<Parameter> parameters_;
  const std::vector<ParameterDeclaration>* declared_ = nullptr;
  std::vector<std::string> ctes_;
  std::map<std::string, QueryInfo> queries_;
  std::vector<std::string> expanding_;
};

}  // namespace

Translation Translate(std::string_view jet_sql, const Catalog& catalog) {
  return Translator(catalog).Run(jet_sql);
}

}  // namespace ldg::store::jet
