// A database file open on a connection (a workspace's, or a private one).
// Closing it detaches the file and drops its lock.
#pragma once

#include <memory>
#include <string>

#include "store/database.hpp"
#include "store/sqlite/catalog.hpp"
#include "store/sqlite/connection.hpp"
#include "store/sqlite/query_defs.hpp"
#include "store/sqlite/schema_objects.hpp"

namespace ldg::store::sqlite {

class SqliteDatabase final : public Database {
 public:
  SqliteDatabase(std::shared_ptr<Connection> connection, std::shared_ptr<Catalog> catalog, std::string name);
  ~SqliteDatabase() override;

  std::string Name() const override { return name_; }
  std::unique_ptr<Recordset> OpenRecordset(std::string_view source, RecordsetTypeEnum type) override;
  void Execute(std::string_view jet_sql, int options) override;
  int32_t RecordsAffected() const override { return records_affected_; }
  store::TableDefs& TableDefs() override { return table_defs_; }
  store::QueryDefs& QueryDefs() override { return query_defs_; }
  store::Relations& Relations() override { return relations_; }
  store::Properties& Properties() override { return properties_; }
  std::shared_ptr<QueryDef> CreateQueryDef(std::string_view name, std::string_view jet_sql) override;
  std::shared_ptr<TableDef> CreateTableDef(std::string_view name) override;
  std::shared_ptr<Relation> CreateRelation(std::string_view name, std::string_view table,
                                           std::string_view foreign_table, int32_t attributes) override;
  std::shared_ptr<Property> CreateProperty(std::string_view name, FieldType type,
                                           const Variant& value) override;
  void Close() override;

 private:
  void RequireOpen() const;

  std::shared_ptr<Connection> connection_;
  std::shared_ptr<Catalog> catalog_;
  std::string name_;
  bool open_ = true;
  int32_t records_affected_ = 0;
  SqliteTableDefs table_defs_;
  SqliteQueryDefs query_defs_;
  SqliteRelations relations_;
  SqliteProperties properties_;
};

}  // namespace ldg::store::sqlite
