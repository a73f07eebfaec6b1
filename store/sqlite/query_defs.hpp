// Stored and temporary queries over a database's catalog. A stored query keeps
// its Jet text as written; it is translated (once per text and schema state)
// when it runs, so it may name tables that don't exist yet when it is stored.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/query_def.hpp"
#include "store/sqlite/catalog.hpp"
#include "store/sqlite/connection.hpp"

namespace ldg::store::sqlite {

class SqliteParameter final : public Parameter {
 public:
  SqliteParameter(std::string name, FieldType type) : name_(std::move(name)), type_(type) {}
  std::string Name() const override { return name_; }
  FieldType Type() const override { return type_; }
  Variant Value() const override { return value_; }
  void Value(const Variant& value) override { value_ = value; }

 private:
  std::string name_;
  FieldType type_;
  Variant value_;
};

class SqliteParameters final : public Parameters {
 public:
  void Reset(const std::vector<jet::Parameter>& declared);
  std::vector<Variant> Values() const;  // 3061 while one has no value
  int Count() const override { return static_cast<int>(items_.size()); }
  Parameter& Item(std::string_view name) const override;
  Parameter& Item(int ordinal) const override;

 private:
  std::vector<std::unique_ptr<SqliteParameter>> items_;
};

class SqliteQueryDef final : public QueryDef {
 public:
  SqliteQueryDef(std::shared_ptr<Connection> connection, std::shared_ptr<Catalog> catalog, std::string name,
                 std::string jet_sql, bool stored);
  void Stored() { stored_ = true; }

  std::string Name() const override { return name_; }
  void Name(std::string_view name) override;
  std::string SQL() const override { return sql_; }
  void SQL(std::string_view jet_sql) override;
  store::Parameters& Parameters() override;
  std::unique_ptr<Recordset> OpenRecordset(RecordsetTypeEnum type) override;
  void Execute(int options) override;
  int32_t RecordsAffected() const override { return records_affected_; }
  void Close() override {}

 private:
  std::shared_ptr<const jet::Translation> Translation();

  std::shared_ptr<Connection> connection_;
  std::shared_ptr<Catalog> catalog_;
  std::string name_;
  std::string sql_;
  bool stored_;
  SqliteParameters parameters_;
  std::shared_ptr<const jet::Translation> translation_;
  uint64_t translated_at_ = 0;
  int32_t records_affected_ = 0;
};

class SqliteQueryDefs final : public QueryDefs {
 public:
  SqliteQueryDefs(std::shared_ptr<Connection> connection, std::shared_ptr<Catalog> catalog)
      : connection_(std::move(connection)), catalog_(std::move(catalog)) {}
  int Count() const override { return static_cast<int>(catalog_->Queries().size()); }
  std::shared_ptr<QueryDef> Item(std::string_view name) const override;
  std::shared_ptr<QueryDef> Item(int ordinal) const override;
  bool Contains(std::string_view name) const override { return catalog_->FindQuery(name) != nullptr; }
  void Append(const std::shared_ptr<QueryDef>& query) override;
  void Delete(std::string_view name) override { catalog_->DeleteQuery(name); }
  void Refresh() override {}

 private:
  std::shared_ptr<Connection> connection_;
  std::shared_ptr<Catalog> catalog_;
};

// Runs an action statement. Without dbFailOnError a write that a key or a
// relation refuses changes nothing and raises nothing, as the store always
// did; any other failure raises.
int32_t RunAction(Connection& connection, const jet::Translation& translation,
                  const std::vector<Variant>& parameters, int options);

}  // namespace ldg::store::sqlite
