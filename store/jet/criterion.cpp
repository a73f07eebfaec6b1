// FindFirst criteria: a WHERE body evaluated in memory over one row of a
// record set, with the same reading of names, literals and Like as the
// translator's SQL: Null compares as unknown, text ignores case, a number
// literal meets a Currency value exactly from its decimal text.
#include <cstdio>
#include <cstdlib>
#include <map>
#include <optional>

#include "store/jet/jet_error.hpp"
#include "store/jet/like_pattern.hpp"
#include "store/jet/parser.hpp"
#include "store/jet/translator.hpp"
#include "support/currency.hpp"
#include "support/text.hpp"

namespace ldg::store::jet {
namespace {

struct Value {
  enum class Kind { kNull, kNumber, kCurrency, kText };
  Kind kind = Kind::kNull;
  double number = 0.0;
  int64_t raw = 0;
  std::string text;
  const std::string* literal = nullptr;  // the decimal text of a number literal
};

Value Number(double number) {
  Value value;
  value.kind = Value::Kind::kNumber;
  value.number = number;
  return value;
}

Value Truth(std::optional<bool> truth) { return truth ? Number(*truth ? -1.0 : 0.0) : Value(); }

[[noreturn]] void RaiseMismatch() {
  RaiseStoreError(kErrTypeMismatch, "Data type mismatch in criteria expression.");
}

std::optional<double> TextAsNumber(const std::string& text) {
  if (text.empty()) return std::nullopt;
  char* end = nullptr;
  const double number = std::strtod(text.c_str(), &end);
  if (end == nullptr || *end != '\0') return std::nullopt;
  return number;
}

double AsDouble(const Value& value) {
  switch (value.kind) {
    case Value::Kind::kNumber:
      return value.number;
    case Value::Kind::kCurrency:
      return static_cast<double>(value.raw) / Currency::kScale;
    case Value::Kind::kText:
      if (std::optional<double> number = TextAsNumber(value.text)) return *number;
      RaiseMismatch();
    case Value::Kind::kNull:
      break;
  }
  RaiseMismatch();
}

std::string AsText(const Value& value) {
  switch (value.kind) {
    case Value::Kind::kText:
      return value.text;
    case Value::Kind::kCurrency:
      return Currency::FromRaw(value.raw).ToString();
    case Value::Kind::kNumber: {
      if (value.literal != nullptr) return *value.literal;
      char buffer[40];
      std::snprintf(buffer, sizeof buffer, "%.15g", value.number);
      return buffer;
    }
    case Value::Kind::kNull:
      break;
  }
  return "";
}

std::optional<bool> Truthy(const Value& value) {
  if (value.kind == Value::Kind::kNull) return std::nullopt;
  if (value.kind == Value::Kind::kCurrency) return value.raw != 0;
  return AsDouble(value) != 0.0;
}

int Sign(double difference) { return difference < 0 ? -1 : difference > 0 ? 1 : 0; }

std::optional<int> CompareValues(const Value& a, const Value& b) {
  if (a.kind == Value::Kind::kNull || b.kind == Value::Kind::kNull) return std::nullopt;
  if (a.kind == Value::Kind::kText && b.kind == Value::Kind::kText)
    return Sign(CompareNoCase(a.text, b.text));
  if (a.kind == Value::Kind::kCurrency && b.kind == Value::Kind::kCurrency)
    return Sign(static_cast<double>(a.raw > b.raw) - static_cast<double>(a.raw < b.raw));
  const Value* currency = a.kind == Value::Kind::kCurrency   ? &a
                          : b.kind == Value::Kind::kCurrency ? &b
                                                             : nullptr;
  const Value* other = currency == &a ? &b : &a;
  if (currency != nullptr && other->literal != nullptr) {
    if (std::optional<Currency> exact = Currency::Parse(*other->literal)) {
      const int64_t left = a.kind == Value::Kind::kCurrency ? a.raw : exact->Raw();
      const int64_t right = b.kind == Value::Kind::kCurrency ? b.raw : exact->Raw();
      return left < right ? -1 : left > right ? 1 : 0;
    }
  }
  return Sign(AsDouble(a) - AsDouble(b));
}

class CompiledCriterion : public Criterion {
 public:
  CompiledCriterion(std::string_view text, const std::vector<ResultColumn>& columns)
      : root_(ParseCriterion(text)), columns_(columns) {
    Resolve(*root_);
  }

  bool Matches(const std::vector<Variant>& row) const override {
    return Truthy(Evaluate(*root_, row)).value_or(false);
  }

 private:
  void Resolve(const Expr& expr) {
    switch (expr.kind) {
      case Expr::Kind::kName:
        indexes_[&expr] = ColumnIndex(expr.parts);
        return;
      case Expr::Kind::kCall:
        RaiseStoreError(kErrUndefinedFunction, "Undefined function '" + expr.text + "' in expression.");
      case Expr::Kind::kInSelect:
      case Expr::Kind::kSubquery:
        RaiseStoreError(kErrNotSupported, "A criterion cannot hold a subquery.");
      default:
        for (const ExprPtr& argument : expr.args) Resolve(*argument);
    }
  }

  // The field named exactly; else for T.C the one field of table T, column C;
  // else for C the one field whose column is C.
  size_t ColumnIndex(const std::vector<std::string>& parts) const {
    std::string whole;
    for (const std::string& part : parts) whole += (whole.empty() ? "" : ".") + part;
    for (size_t i = 0; i < columns_.size(); ++i) {
      if (EqualsNoCase(columns_[i].name, whole)) return i;
    }
    std::optional<size_t> found;
    for (size_t i = 0; i < columns_.size(); ++i) {
      const ResultColumn& column = columns_[i];
      const bool match = parts.size() == 2 ? EqualsNoCase(column.base_table, parts[0]) &&
                                                 EqualsNoCase(column.base_column, parts[1])
                                           : parts.size() == 1 && EqualsNoCase(column.base_column, parts[0]);
      if (!match) continue;
      if (found) RaiseUnknown(whole);
      found = i;
    }
    if (!found) RaiseUnknown(whole);
    return *found;
  }

  [[noreturn]] static void RaiseUnknown(const std::string& name) {
    RaiseStoreError(kErrUnknownField,
                    "The name '" + name + "' in the criterion is not a field of the record set.");
  }

  static Value FromVariant(const Variant& variant) {
    Value value;
    switch (variant.Type()) {
      case VarType::kEmpty:
      case VarType::kNull:
        return value;
      case VarType::kBoolean:
        return Number(variant.AsBoolean() ? -1.0 : 0.0);
      case VarType::kByte:
        return Number(variant.AsByte());
      case VarType::kInteger:
        return Number(variant.AsInteger());
      case VarType::kLong:
        return Number(variant.AsLong());
      case VarType::kSingle:
        return Number(variant.AsSingle());
      case VarType::kDouble:
        return Number(variant.AsDouble());
      case VarType::kDecimal:
        return Number(variant.AsDecimal().ToDouble());
      case VarType::kDate:
        return Number(variant.AsDate().Serial());
      case VarType::kCurrency:
        value.kind = Value::Kind::kCurrency;
        value.raw = variant.AsCurrency().Raw();
        return value;
      case VarType::kString:
        value.kind = Value::Kind::kText;
        value.text = variant.AsString();
        return value;
      default:
        RaiseMismatch();
    }
  }

  Value Evaluate(const Expr& expr, const std::vector<Variant>& row) const {
    switch (expr.kind) {
      case Expr::Kind::kNumber: {
        Value value = Number(std::strtod(expr.text.c_str(), nullptr));
        value.literal = &expr.text;
        return value;
      }
      case Expr::Kind::kString: {
        Value value;
        value.kind = Value::Kind::kText;
        value.text = expr.text;
        return value;
      }
      case Expr::Kind::kDate:
        return Number(expr.date);
      case Expr::Kind::kBoolean:
        return Number(expr.truth ? -1.0 : 0.0);
      case Expr::Kind::kNull:
        return Value();
      case Expr::Kind::kName: {
        const size_t index = indexes_.at(&expr);
        return index < row.size() ? FromVariant(row[index]) : Value();
      }
      case Expr::Kind::kUnary: {
        Value operand = Evaluate(*expr.args[0], row);
        if (expr.text == "NOT") {
          const std::optional<bool> truth = Truthy(operand);
          return Truth(truth ? std::optional<bool>(!*truth) : std::nullopt);
        }
        if (expr.text == "-" && operand.kind == Value::Kind::kCurrency) {
          operand.raw = (-Currency::FromRaw(operand.raw)).Raw();
        } else if (expr.text == "-" && operand.kind != Value::Kind::kNull) {
          operand = Number(-AsDouble(operand));
        }
        return operand;
      }
      case Expr::Kind::kBinary:
        return EvaluateBinary(expr, row);
      case Expr::Kind::kLike: {
        const Value value = Evaluate(*expr.args[0], row);
        const Value pattern = Evaluate(*expr.args[1], row);
        if (value.kind == Value::Kind::kNull || pattern.kind == Value::Kind::kNull) return Value();
        const bool match = LikePattern(AsText(pattern)).Matches(AsText(value));
        return Truth(match != expr.negated);
      }
      case Expr::Kind::kIsNull:
        return Truth((Evaluate(*expr.args[0], row).kind == Value::Kind::kNull) != expr.negated);
      case Expr::Kind::kInList: {
        const Value value = Evaluate(*expr.args[0], row);
        std::optional<bool> found = false;
        for (size_t i = 1; i < expr.args.size() && found != std::optional<bool>(true); ++i) {
          const std::optional<int> order = CompareValues(value, Evaluate(*expr.args[i], row));
          if (!order) {
            found = std::nullopt;
          } else if (*order == 0) {
            found = true;
          }
        }
        if (found && expr.negated) found = !*found;
        return Truth(found);
      }
      case Expr::Kind::kBetween: {
        const Value value = Evaluate(*expr.args[0], row);
        const std::optional<int> low = CompareValues(value, Evaluate(*expr.args[1], row));
        const std::optional<int> high = CompareValues(value, Evaluate(*expr.args[2], row));
        if (!low || !high) return Value();
        return Truth((*low >= 0 && *high <= 0) != expr.negated);
      }
      default:
        RaiseSyntax();
    }
  }

  Value EvaluateBinary(const Expr& expr, const std::vector<Variant>& row) const {
    const std::string& op = expr.text;
    const Value left = Evaluate(*expr.args[0], row);
    if (op == "AND" || op == "OR") {
      const std::optional<bool> a = Truthy(left);
      if (a && *a == (op == "OR")) return Truth(a);
      const std::optional<bool> b = Truthy(Evaluate(*expr.args[1], row));
      if (b && *b == (op == "OR")) return Truth(b);
      if (!a || !b) return Value();
      return Truth(op == "AND");
    }
    const Value right = Evaluate(*expr.args[1], row);
    if (op == "&") {
      if (left.kind == Value::Kind::kNull && right.kind == Value::Kind::kNull) return Value();
      Value value;
      value.kind = Value::Kind::kText;
      value.text = AsText(left) + AsText(right);
      return value;
    }
    if (left.kind == Value::Kind::kNull || right.kind == Value::Kind::kNull) return Value();
    if (op == "=" || op == "<>" || op == "<" || op == ">" || op == "<=" || op == ">=") {
      const int order = *CompareValues(left, right);
      const bool result = op == "="    ? order == 0
                          : op == "<>" ? order != 0
                          : op == "<"  ? order < 0
                          : op == ">"  ? order > 0
                          : op == "<=" ? order <= 0
                                       : order >= 0;
      return Truth(result);
    }
    if (left.kind == Value::Kind::kCurrency && right.kind == Value::Kind::kCurrency &&
        (op == "+" || op == "-")) {
      const Currency a = Currency::FromRaw(left.raw), b = Currency::FromRaw(right.raw);
      Value value;
      value.kind = Value::Kind::kCurrency;
      value.raw = (op == "+" ? a + b : a - b).Raw();
      return value;
    }
    const double a = AsDouble(left), b = AsDouble(right);
    if (op == "+") return Number(a + b);
    if (op == "-") return Number(a - b);
    if (op == "*") return Number(a * b);
    if (b == 0.0) RaiseStoreError(11, "Division by zero");
    return Number(a / b);
  }

  ExprPtr root_;
  std::vector<ResultColumn> columns_;
  std::map<const Expr*, size_t> indexes_;
};

}  // namespace

std::unique_ptr<Criterion> CompileCriterion(std::string_view criterion,
                                            const std::vector<ResultColumn>& columns) {
  return std::make_unique<CompiledCriterion>(criterion, columns);
}

}  // namespace ldg::store::jet
