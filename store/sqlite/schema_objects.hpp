// The schema collections of a database over its catalog: table definitions
// with their fields and indexes, relations, and user properties. An object
// made by a Create... call lives on its own until it is appended; from then on
// its changes go straight to the file.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/property.hpp"
#include "store/relation.hpp"
#include "store/sqlite/catalog.hpp"
#include "store/table_def.hpp"

namespace ldg::store::sqlite {

class DefinitionField final : public Field {
 public:
  explicit DefinitionField(FieldInfo info) : info_(std::move(info)) {}
  // From now on changes are written to the table's field in the catalog.
  void Bind(std::shared_ptr<Catalog> catalog, std::string table);
  const FieldInfo& Info() const { return info_; }

  std::string Name() const override { return info_.name; }
  void Name(std::string_view name) override;
  FieldType Type() const override { return info_.type; }
  int32_t Size() const override { return info_.size; }
  void Size(int32_t size) override;
  std::string DefaultValue() const override { return info_.default_value; }
  void DefaultValue(std::string_view expression) override;
  int32_t Attributes() const override { return info_.attributes; }
  void Attributes(int32_t attributes) override;
  std::string ForeignName() const override { return foreign_name_; }
  void ForeignName(std::string_view name) override { foreign_name_ = name; }
  Variant Value() const override;
  void Value(const Variant& value) override;

 private:
  void Write(const FieldInfo& changed);

  FieldInfo info_;
  std::string foreign_name_;
  std::shared_ptr<Catalog> catalog_;
  std::string table_;
};

class DefinitionFields final : public Fields {
 public:
  DefinitionFields() = default;
  // The fields of an appended table, read from and written to the catalog.
  DefinitionFields(std::shared_ptr<Catalog> catalog, std::string table);
  void Rename(std::string table) { table_ = std::move(table); }
  const std::vector<std::shared_ptr<DefinitionField>>& All() const;

  int Count() const override { return static_cast<int>(All().size()); }
  Field& Item(std::string_view name) const override;
  Field& Item(int ordinal) const override;
  bool Contains(std::string_view name) const override;
  void Append(const std::shared_ptr<Field>& field) override;
  void Delete(std::string_view name) override;
  void Refresh() override;

 private:
  std::shared_ptr<Catalog> catalog_;
  std::string table_;
  mutable std::vector<std::shared_ptr<DefinitionField>> items_;
  mutable uint64_t version_ = 0;
};

class SqliteIndex final : public Index {
 public:
  explicit SqliteIndex(std::string name) : name_(std::move(name)) {}
  explicit SqliteIndex(const IndexInfo& info);
  IndexInfo Info() const;

  std::string Name() const override { return name_; }
  bool Primary() const override { return primary_; }
  void Primary(bool primary) override { primary_ = primary; }
  bool Unique() const override { return unique_; }
  void Unique(bool unique) override { unique_ = unique; }
  store::Fields& Fields() override { return fields_; }
  std::shared_ptr<Field> CreateField(std::string_view name) override;

 private:
  std::string name_;
  bool primary_ = false;
  bool unique_ = false;
  DefinitionFields fields_;
};

class SqliteIndexes final : public Indexes {
 public:
  SqliteIndexes() = default;
  SqliteIndexes(std::shared_ptr<Catalog> catalog, std::string table)
      : catalog_(std::move(catalog)), table_(std::move(table)) {}
  void Rename(std::string table) { table_ = std::move(table); }
  const std::vector<std::shared_ptr<SqliteIndex>>& Pending() const { return pending_; }

  int Count() const override;
  std::shared_ptr<Index> Item(std::string_view name) const override;
  std::shared_ptr<Index> Item(int ordinal) const override;
  bool Contains(std::string_view name) const override;
  void Append(const std::shared_ptr<Index>& index) override;
  void Delete(std::string_view name) override;
  void Refresh() override {}

 private:
  const TableInfo& Table() const;

  std::shared_ptr<Catalog> catalog_;
  std::string table_;
  std::vector<std::shared_ptr<SqliteIndex>> pending_;
};

class SqliteTableDef final : public TableDef {
 public:
  explicit SqliteTableDef(std::string name) : name_(std::move(name)) {}
  // A table definition of the file.
  SqliteTableDef(std::shared_ptr<Catalog> catalog, const TableInfo& table);
  void Appended(std::shared_ptr<Catalog> catalog);
  TableInfo Pending() const;
  bool IsAppended() const { return catalog_ != nullptr; }

  std::string Name() const override { return name_; }
  void Name(std::string_view name) override;
  store::Fields& Fields() override { return *fields_; }
  store::Indexes& Indexes() override { return *indexes_; }
  std::shared_ptr<Field> CreateField(std::string_view name, FieldType type, int32_t size) override;
  std::shared_ptr<Index> CreateIndex(std::string_view name) override;
  std::string Connect() const override { return connect_; }
  void Connect(std::string_view connect) override { connect_ = connect; }
  std::string SourceTableName() const override { return source_; }
  void SourceTableName(std::string_view name) override { source_ = name; }

 private:
  std::shared_ptr<Catalog> catalog_;
  std::string name_;
  std::string connect_;
  std::string source_;
  std::unique_ptr<DefinitionFields> fields_ = std::make_unique<DefinitionFields>();
  std::unique_ptr<SqliteIndexes> indexes_ = std::make_unique<SqliteIndexes>();
};

class SqliteTableDefs final : public TableDefs {
 public:
  explicit SqliteTableDefs(std::shared_ptr<Catalog> catalog) : catalog_(std::move(catalog)) {}
  int Count() const override;
  std::shared_ptr<TableDef> Item(std::string_view name) const override;
  std::shared_ptr<TableDef> Item(int ordinal) const override;
  bool Contains(std::string_view name) const override;
  void Append(const std::shared_ptr<TableDef>& table) override;
  void Delete(std::string_view name) override;
  void Refresh() override {}

 private:
  std::shared_ptr<Catalog> catalog_;
};

class SqliteRelation final : public Relation {
 public:
  SqliteRelation(std::string name, std::string table, std::string foreign_table, int32_t attributes);
  explicit SqliteRelation(const RelationInfo& info);
  RelationInfo Info() const;

  std::string Name() const override { return name_; }
  std::string Table() const override { return table_; }
  void Table(std::string_view table) override { table_ = table; }
  std::string ForeignTable() const override { return foreign_table_; }
  void ForeignTable(std::string_view table) override { foreign_table_ = table; }
  int32_t Attributes() const override { return attributes_; }
  void Attributes(int32_t attributes) override { attributes_ = attributes; }
  store::Fields& Fields() override { return fields_; }
  std::shared_ptr<Field> CreateField(std::string_view name) override;

 private:
  std::string name_;
  std::string table_;
  std::string foreign_table_;
  int32_t attributes_ = 0;
  DefinitionFields fields_;
};

class SqliteRelations final : public Relations {
 public:
  explicit SqliteRelations(std::shared_ptr<Catalog> catalog) : catalog_(std::move(catalog)) {}
  int Count() const override { return static_cast<int>(catalog_->Relations().size()); }
  std::shared_ptr<Relation> Item(std::string_view name) const override;
  std::shared_ptr<Relation> Item(int ordinal) const override;
  bool Contains(std::string_view name) const override;
  void Append(const std::shared_ptr<Relation>& relation) override;
  void Delete(std::string_view name) override { catalog_->DropRelation(name); }
  void Refresh() override {}

 private:
  std::shared_ptr<Catalog> catalog_;
};

class SqliteProperty final : public Property {
 public:
  SqliteProperty(PropertyInfo info, std::shared_ptr<Catalog> catalog)
      : info_(std::move(info)), catalog_(std::move(catalog)) {}
  const PropertyInfo& Info() const { return info_; }
  void Bind(std::shared_ptr<Catalog> catalog) { catalog_ = std::move(catalog); }

  std::string Name() const override { return info_.name; }
  FieldType Type() const override { return info_.type; }
  Variant Value() const override { return info_.value; }
  void Value(const Variant& value) override;

 private:
  PropertyInfo info_;
  std::shared_ptr<Catalog> catalog_;  // null until appended
};

class SqliteProperties final : public Properties {
 public:
  explicit SqliteProperties(std::shared_ptr<Catalog> catalog) : catalog_(std::move(catalog)) {}
  int Count() const override { return static_cast<int>(catalog_->Properties().size()); }
  std::shared_ptr<Property> Item(std::string_view name) const override;
  std::shared_ptr<Property> Item(int ordinal) const override;
  void Append(const std::shared_ptr<Property>& property) override;
  void Delete(std::string_view name) override { catalog_->DeleteProperty(name); }
  void Refresh() override {}

 private:
  std::shared_ptr<Catalog> catalog_;
};

}  // namespace ldg::store::sqlite
