// The catalog of one database file: what SQLite doesn't keep of the store's
// schema (field types and sizes, defaults, index names per table, relations,
// stored queries as Jet text, linked tables, user properties), in tables named
// "_ldg_..." that TableDefs never shows. It is read into memory once, written
// through on every change and read again after; Version() tells record sets and
// the translation cache that the schema moved. It also owns the file's lock.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "store/field_type.hpp"
#include "store/jet/translator.hpp"
#include "store/lock_file.hpp"
#include "support/variant.hpp"

namespace ldg::store::sqlite {

class Connection;

struct FieldInfo {
  std::string name;
  FieldType type = FieldType::kText;
  int32_t size = 0;
  std::string default_value;
  int32_t attributes = 0;
  bool IsCounter() const;
};

struct IndexInfo {
  std::string name;
  std::string sql_name;  // the SQLite index; empty when the index is the table's rowid
  bool primary = false;
  bool unique = false;
  std::vector<std::string> fields;
};

struct TableInfo {
  std::string name;
  std::vector<FieldInfo> fields;
  std::vector<IndexInfo> indexes;
  std::string connect;  // linked tables only
  std::string source;
  bool IsLink() const { return !connect.empty(); }
  int FieldOrdinal(std::string_view field) const;  // -1 when absent
  const FieldInfo* FindField(std::string_view field) const;
  const IndexInfo* FindIndex(std::string_view index) const;
  const IndexInfo* PrimaryIndex() const;
  const FieldInfo* Counter() const;
};

struct RelationInfo {
  std::string name;
  std::string table;          // parent
  std::string foreign_table;  // child
  int32_t attributes = 0;
  std::vector<std::string> fields;
  std::vector<std::string> foreign_fields;
};

struct QueryInfo {
  std::string name;
  std::string sql;
};

struct PropertyInfo {
  std::string name;
  FieldType type = FieldType::kText;
  Variant value;
};

class Catalog : public jet::Catalog {
 public:
  Catalog(Connection& connection, std::string alias, std::string path, std::unique_ptr<LockFile> lock);
  ~Catalog() override;

  // Creates the catalog tables in a new, empty file.
  static void CreateCatalogTables(Connection& connection, const std::string& alias);

  // Reads the catalog; 3343 when the file has none.
  void Load();
  void ReleaseLock();

  Connection& Conn() const { return connection_; }
  const std::string& Alias() const { return alias_; }
  const std::string& Path() const { return path_; }
  uint64_t Version() const;

  // Tables in creation order, local and linked.
  const std::vector<TableInfo>& Tables() const;
  const TableInfo* FindTable(std::string_view name) const;

  // Where a table's rows are: its own file, or the linked file's.
  struct Target {
    const Catalog* catalog = nullptr;
    const TableInfo* table = nullptr;  // the table of the file that holds the rows
    std::string physical;              // "\"f1\".\"Accounts\""
  };
  std::optional<Target> Resolve(std::string_view table) const;

  void CreateTable(const TableInfo& table);
  void CreateLink(std::string_view name, std::string_view connect, std::string_view source);
  void DropTable(std::string_view name);
  void RenameTable(std::string_view name, std::string_view new_name);
  void AddField(std::string_view table, const FieldInfo& field);
  void DropField(std::string_view table, std::string_view field);
  // Writes a changed definition of an existing field (name, size, default, attributes).
  void ChangeField(std::string_view table, std::string_view field, const FieldInfo& changed);
  void AddIndex(std::string_view table, IndexInfo index);
  void DropIndex(std::string_view table, std::string_view index);

  const std::vector<RelationInfo>& Relations() const;
  void AddRelation(const RelationInfo& relation);
  void DropRelation(std::string_view name);

  const std::vector<QueryInfo>& Queries() const;
  const QueryInfo* FindQuery(std::string_view name) const;
  void SaveQuery(std::string_view name, std::string_view jet_sql);
  void DeleteQuery(std::string_view name);
  void RenameQuery(std::string_view name, std::string_view new_name);

  const std::vector<PropertyInfo>& Properties() const;
  void SaveProperty(const PropertyInfo& property);
  void DeleteProperty(std::string_view name);

  // The translation of a Jet text, kept per text until the schema changes.
  std::shared_ptr<const jet::Translation> Translate(std::string_view jet_sql) const;

  // jet::Catalog
  std::optional<std::vector<Column>> TableColumns(std::string_view table) const override;
  std::optional<std::string> QueryText(std::string_view name) const override;
  std::string PhysicalName(std::string_view table) const override;

 private:
  void ReloadIfRolledBack() const;
  void Change(const std::vector<std::string>& statements);
  void ThrowIfNameTaken(std::string_view name) const;
  void WriteDefaultTrigger(std::vector<std::string>& out, const TableInfo& table,
                           const FieldInfo& field) const;
  std::string Qualified(std::string_view name) const;
  std::shared_ptr<Catalog> LinkedCatalog(const TableInfo& link) const;

  Connection& connection_;
  std::string alias_;
  std::string path_;
  std::unique_ptr<LockFile> lock_;
  std::vector<TableInfo> tables_;
  std::vector<RelationInfo> relations_;
  std::vector<QueryInfo> queries_;
  std::vector<PropertyInfo> properties_;
  uint64_t version_ = 0;
  mutable uint64_t loaded_at_rollback_ = 0;
  mutable std::map<std::string, std::shared_ptr<Catalog>> links_;  // by folded link name
  mutable std::unordered_map<std::string, std::shared_ptr<const jet::Translation>> translations_;
  mutable uint64_t translations_version_ = 0;
};

// The path a Connect text (";DATABASE=path") names, made absolute against
// the folder of the linking file.
std::string LinkedPath(std::string_view connect, const std::string& linking_file);

}  // namespace ldg::store::sqlite
