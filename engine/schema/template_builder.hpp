// Writes a schema description into a database through the record store's
// public interface: tables with their fields, then their indexes, then the
// relations, the stored queries and the text properties, in the order of the
// description. It creates objects only; it never writes a row, and it never
// changes or removes an object that is already there (a name that is taken
// fails with the store's error).
#pragma once

#include <string_view>

#include "engine/schema/schema_description.hpp"
#include "store/database.hpp"
#include "store/db_engine.hpp"

namespace ldg::schema {

class TemplateBuilder {
 public:
  explicit TemplateBuilder(const SchemaDescription& schema) : schema_(schema) {}

  // Creates a new database file at path (the store refuses an existing one
  // with 3204), builds the description into it in one transaction and closes
  // it; a failed build rolls back what it made.
  void Build(store::DBEngine& engine, std::string_view path) const;

  // Builds the description into an open database that holds none of its
  // objects yet. A store error keeps its number and source; its text is
  // prefixed with the object being made ("table Accounts: ...").
  void BuildInto(store::Database& database) const;

 private:
  void AddTable(store::Database& database, const TableDescription& table) const;
  void AddIndex(store::TableDef& table_def, const IndexDescription& index) const;
  void AddRelation(store::Database& database, const RelationDescription& relation) const;
  void AddQuery(store::Database& database, const QueryDescription& query) const;
  void AddProperty(store::Database& database, const PropertyDescription& property) const;

  const SchemaDescription& schema_;
};

}  // namespace ldg::schema
