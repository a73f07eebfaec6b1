// The Jet SQL translator: turns the Jet text that the engine and the stored
// queries are written in into SQLite text, once per distinct text. It parses
// (tokenizer and recursive-descent parser, never regular expressions), resolves
// names against the catalog, types every expression, and emits SQLite text in
// which every identifier is double-quoted, every Jet string literal is a
// single-quoted one, dates are OLE day numbers, Booleans are -1/0, numeric
// literals that meet a Currency column are scaled to ten-thousandths, and the
// Jet-only pieces call the functions that RegisterJetFunctions installs.
// It never repairs a statement: what Jet rejects fails here with Jet's number.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/field_type.hpp"
#include "support/variant.hpp"

namespace ldg::store::jet {

// What the translator needs to know of one database's schema. The store's
// catalog implements it; tests may implement it in memory.
class Catalog {
 public:
  struct Column {
    std::string name;
    FieldType type = FieldType::kUnknown;
  };

  virtual ~Catalog() = default;
  // The columns of a table or linked table in field order; nullopt when no
  // table of that name (case-insensitive) exists.
  virtual std::optional<std::vector<Column>> TableColumns(std::string_view table) const = 0;
  // The Jet text of a stored query; nullopt when none of that name exists.
  virtual std::optional<std::string> QueryText(std::string_view name) const = 0;
  // The SQLite text naming a table in a statement: "\"Accounts\"" for a local
  // table, "\"y1\".\"BusinessYears\"" for a linked one.
  virtual std::string PhysicalName(std::string_view table) const = 0;
};

enum class StatementKind { kSelect, kInsert, kUpdate, kDelete };

struct Parameter {
  std::string name;                             // as declared or referenced, without brackets
  FieldType type = FieldType::kUnknown;         // declared type; kUnknown for an implicit one
  // The type of the column the parameter is compared with or assigned to
  // (kUnknown when it meets none): a Currency one must be bound as
  // ten-thousandths, a Date one as the OLE day number, a Boolean one as -1/0.
  FieldType meets = FieldType::kUnknown;
};

struct ResultColumn {
  std::string name;                             // the Jet output name ("ID", "Accounts_1.ID", "Expr1000")
  FieldType type = FieldType::kUnknown;
  std::string base_table;                       // the table a plain column comes from, else empty
  std::string base_column;
};

struct Translation {
  StatementKind kind = StatementKind::kSelect;
  std::string sql;                              // SQLite text; parameters are ?1 .. ?n in the order below
  std::vector<Parameter> parameters;            // declared by PARAMETERS first, then implicit ones
  std::vector<ResultColumn> columns;            // SELECT only
  std::string updatable_table;                  // SELECT of one base table: writes land there
};

// Raises ldg::Error with the store's numbers: 3075 for a syntax error in an
// expression, 3078 for an unknown table or query, 3131 for a malformed FROM,
// 3000-range others as Jet gives them.
Translation Translate(std::string_view jet_sql, const Catalog& catalog);

// A FindFirst criterion (the body of a WHERE clause) compiled against the
// columns of a record set, evaluated over one row's values in column order.
class Criterion {
 public:
  virtual ~Criterion() = default;
  virtual bool Matches(const std::vector<Variant>& row) const = 0;
};

std::unique_ptr<Criterion> CompileCriterion(std::string_view criterion, const std::vector<ResultColumn>& columns);

}  // namespace ldg::store::jet
