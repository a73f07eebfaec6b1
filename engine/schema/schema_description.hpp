// The schema description: a plain-text account of a database file's tables,
// fields, indexes, relations, stored queries and text properties, read into
// plain structs. template.schema beside this file describes the template
// ldg6f.qdb6f in this format; its header comment explains the format.
//
// Parsing checks the form and the cross references (an index or relation
// naming an unknown field, a name used twice) and raises SchemaSyntaxError
// with the one-based line number and the line's text on the first fault. It
// never touches a database: TemplateBuilder does that.
#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "store/field_type.hpp"

namespace ldg::schema {

// The store's default length of a text column, taken by a bare "Text".
inline constexpr int kDefaultTextSize = 50;
inline constexpr int kMaxTextSize = 255;

struct FieldDescription {
  std::string name;
  store::FieldType type = store::FieldType::kUnknown;
  int size = 0;                              // Text only: 1 to 255
  bool counter = false;                      // Long auto-increment
  std::optional<std::string> default_value;  // the DefaultValue text, as written
};

struct IndexDescription {
  std::string name;
  bool primary = false;
  bool unique = false;  // always true for a primary index
  std::vector<std::string> fields;
};

struct TableDescription {
  std::string name;
  std::vector<FieldDescription> fields;
  std::vector<IndexDescription> indexes;

  // Case-insensitive lookups; nullptr when absent.
  const FieldDescription* Field(std::string_view field_name) const;
  const IndexDescription* Index(std::string_view index_name) const;
};

enum class DeleteRule { kRestrict, kCascade };

// foreign_table.foreign_field refers to table.field; checked when a row of
// table is deleted.
struct RelationDescription {
  std::string name;
  std::string table;
  std::string field;
  std::string foreign_table;
  std::string foreign_field;
  DeleteRule rule = DeleteRule::kRestrict;
};

struct QueryDescription {
  std::string name;
  std::string sql;  // Jet text, exactly as written
};

struct PropertyDescription {
  std::string name;
  std::string value;  // always a text property
};

struct SchemaDescription {
  std::vector<TableDescription> tables;
  std::vector<RelationDescription> relations;
  std::vector<QueryDescription> queries;
  std::vector<PropertyDescription> properties;

  // Case-insensitive lookups; nullptr when absent.
  const TableDescription* Table(std::string_view name) const;
  const RelationDescription* Relation(std::string_view name) const;
  const QueryDescription* Query(std::string_view name) const;
  const PropertyDescription* Property(std::string_view name) const;
};

class SchemaSyntaxError : public std::runtime_error {
 public:
  SchemaSyntaxError(int line, std::string line_text, const std::string& problem);

  int Line() const { return line_; }
  const std::string& LineText() const { return line_text_; }

 private:
  int line_;
  std::string line_text_;
};

SchemaDescription ParseSchemaDescription(std::string_view text);

// Reads and parses a file; a file that can't be read raises std::runtime_error
// naming it.
SchemaDescription LoadSchemaDescription(const std::filesystem::path& file);

// The type word of the format ("Long", "Text(50)") for a field.
std::string TypeWord(const FieldDescription& field);

}  // namespace ldg::schema
