#include "engine/schema/template_builder.hpp"

#include <string>

#include "store/constants.hpp"
#include "support/error.hpp"
#include "support/variant.hpp"

namespace ldg::schema {

namespace {

// Runs one step and names the object in the text of a store error.
template <typename Step>
void Making(const std::string& what, Step&& step) {
  try {
    step();
  } catch (const Error& error) {
    throw Error(error.Number(), error.Source(), what + ": " + error.Description());
  }
}

}  // namespace

// One transaction for the whole build: a single write to the disk instead of
// one per object.
void TemplateBuilder::Build(store::DBEngine& engine, std::string_view path) const {
  engine.CreateDatabase(path)->Close();
  std::shared_ptr<store::Workspace> workspace = engine.CreateWorkspace("TemplateBuilder", "", "");
  std::shared_ptr<store::Database> database = workspace->OpenDatabase(path);
  workspace->BeginTrans();
  try {
    BuildInto(*database);
    workspace->CommitTrans();
  } catch (...) {
    workspace->Rollback();
    database->Close();
    workspace->Close();
    throw;
  }
  database->Close();
  workspace->Close();
}

void TemplateBuilder::BuildInto(store::Database& database) const {
  for (const TableDescription& table : schema_.tables) AddTable(database, table);
  for (const RelationDescription& relation : schema_.relations) AddRelation(database, relation);
  for (const QueryDescription& query : schema_.queries) AddQuery(database, query);
  for (const PropertyDescription& property : schema_.properties) AddProperty(database, property);
}

// The table is appended with its fields first, and its indexes are added to
// the stored table afterwards, as the schema upkeep does.
void TemplateBuilder::AddTable(store::Database& database, const TableDescription& table) const {
  Making("table " + table.name, [&] {
    std::shared_ptr<store::TableDef> table_def = database.CreateTableDef(table.name);
    for (const FieldDescription& field : table.fields) {
      std::shared_ptr<store::Field> field_def = table_def->CreateField(field.name, field.type, field.size);
      if (field.counter) field_def->Attributes(store::dbAutoIncrField);
      if (field.default_value) field_def->DefaultValue(*field.default_value);
      table_def->Fields().Append(field_def);
    }
    database.TableDefs().Append(table_def);
  });
  std::shared_ptr<store::TableDef> stored = database.TableDefs().Item(table.name);
  for (const IndexDescription& index : table.indexes) {
    Making("index " + table.name + "." + index.name, [&] { AddIndex(*stored, index); });
  }
}

void TemplateBuilder::AddIndex(store::TableDef& table_def, const IndexDescription& index) const {
  std::shared_ptr<store::Index> index_def = table_def.CreateIndex(index.name);
  index_def->Primary(index.primary);
  index_def->Unique(index.unique);
  for (const std::string& field : index.fields) index_def->Fields().Append(index_def->CreateField(field));
  table_def.Indexes().Append(index_def);
}

void TemplateBuilder::AddRelation(store::Database& database, const RelationDescription& relation) const {
  Making("relation " + relation.name, [&] {
    int32_t attributes = relation.rule == DeleteRule::kCascade ? store::dbRelationDeleteCascade : 0;
    std::shared_ptr<store::Relation> relation_def =
        database.CreateRelation(relation.name, relation.table, relation.foreign_table, attributes);
    std::shared_ptr<store::Field> field = relation_def->CreateField(relation.field);
    field->ForeignName(relation.foreign_field);
    relation_def->Fields().Append(field);
    database.Relations().Append(relation_def);
  });
}

// A query created with a name is stored at once.
void TemplateBuilder::AddQuery(store::Database& database, const QueryDescription& query) const {
  Making("query " + query.name, [&] { database.CreateQueryDef(query.name, query.sql); });
}

void TemplateBuilder::AddProperty(store::Database& database, const PropertyDescription& property) const {
  Making("property " + property.name, [&] {
    database.Properties().Append(
        database.CreateProperty(property.name, store::FieldType::kText, Variant(property.value)));
  });
}

}  // namespace ldg::schema
