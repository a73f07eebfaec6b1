// The syntax tree of one Jet statement or criterion, as the parser reads it:
// names stay as written (resolution and typing happen in the translator).
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "store/field_type.hpp"

namespace ldg::store::jet {

struct Select;

struct Expr {
  enum class Kind {
    kNumber,   // text: as written
    kString,   // text: the value
    kDate,     // date
    kBoolean,  // truth
    kNull,
    kName,      // parts: a.b.c; a last part "*" is a star
    kUnary,     // text: "-", "+" or "NOT"; args[0]
    kBinary,    // text: operator ("=", "<>", "&", "AND", ...); args[0], args[1]
    kLike,      // negated; args: value, pattern
    kIsNull,    // negated; args[0]
    kInList,    // negated; args[0] value, then the list
    kInSelect,  // negated; args[0]; select
    kBetween,   // negated; args: value, low, high
    kCall,      // text: function name as written; args (a Count(*) has one star kName)
    kSubquery,  // select
  };

  Kind kind = Kind::kNull;
  std::string text;
  std::vector<std::string> parts;
  double date = 0.0;
  bool truth = false;
  bool negated = false;
  std::vector<std::unique_ptr<Expr>> args;
  std::unique_ptr<Select> select;
};

using ExprPtr = std::unique_ptr<Expr>;

struct Source {
  enum class Kind { kNamed, kDerived, kJoin };
  enum class JoinType { kInner, kLeft, kRight };

  Kind kind = Kind::kNamed;
  std::string name;   // table or stored query
  std::string alias;  // empty when none is given
  std::unique_ptr<Select> derived;
  JoinType join = JoinType::kInner;
  std::unique_ptr<Source> left, right;
  ExprPtr on;
};

struct SelectItem {
  ExprPtr expr;
  std::string alias;
};

struct OrderItem {
  ExprPtr expr;
  bool descending = false;
};

struct Select {
  bool distinct = false;
  std::vector<SelectItem> items;
  std::vector<std::unique_ptr<Source>> from;  // comma-separated parts
  ExprPtr where;
  std::vector<ExprPtr> group_by;
  ExprPtr having;
  std::vector<OrderItem> order_by;
};

struct ParameterDeclaration {
  std::string name;
  FieldType type = FieldType::kUnknown;
};

struct Assignment {
  std::vector<std::string> target;  // name parts
  ExprPtr value;
};

struct Statement {
  enum class Kind { kSelect, kInsert, kUpdate, kDelete };

  Kind kind = Kind::kSelect;
  std::vector<ParameterDeclaration> parameters;
  std::unique_ptr<Select> select;             // SELECT, and the rows of INSERT ... SELECT
  std::string insert_table;                   // INSERT
  std::vector<std::string> insert_columns;    // empty: every column in field order
  std::vector<ExprPtr> insert_values;         // INSERT ... VALUES
  std::vector<std::unique_ptr<Source>> from;  // UPDATE target (may be a join), DELETE source
  std::vector<Assignment> assignments;
  std::string delete_star;  // "t" of DELETE t.* (empty for * or none)
  ExprPtr where;
};

}  // namespace ldg::store::jet
