#include "store/sqlite/sqlite_database.hpp"

#include "store/sqlite/sqlite_recordset.hpp"
#include "store/store_error.hpp"

namespace ldg::store::sqlite {

namespace {

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() &&
         (text.front() == ' ' || text.front() == '\t' || text.front() == '\n' || text.front() == '\r')) {
    text.remove_prefix(1);
  }
  while (!text.empty() &&
         (text.back() == ' ' || text.back() == '\t' || text.back() == '\n' || text.back() == '\r')) {
    text.remove_suffix(1);
  }
  return text;
}

}  // namespace

SqliteDatabase::SqliteDatabase(std::shared_ptr<Connection> connection, std::shared_ptr<Catalog> catalog,
                               std::string name)
    : connection_(std::move(connection)),
      catalog_(std::move(catalog)),
      name_(std::move(name)),
      table_defs_(catalog_),
      query_defs_(connection_, catalog_),
      relations_(catalog_),
      properties_(catalog_) {}

SqliteDatabase::~SqliteDatabase() {
  try {
    Close();
  } catch (...) {  // a destructor never throws; the file is detached with its connection
  }
}

void SqliteDatabase::RequireOpen() const {
  if (!open_) RaiseStore(kErrInvalidArgument);
}

std::unique_ptr<Recordset> SqliteDatabase::OpenRecordset(std::string_view source, RecordsetTypeEnum type) {
  RequireOpen();
  std::string_view name = Trimmed(source);
  if (name.size() > 2 && name.front() == '[' && name.back() == ']') name = name.substr(1, name.size() - 2);
  if (catalog_->FindTable(name)) {
    return sqlite::OpenRecordset(RecordsetSource{connection_, catalog_, std::string(name), nullptr, {}},
                                 type);
  }
  std::shared_ptr<const jet::Translation> translation;
  if (const QueryInfo* query = catalog_->FindQuery(name)) {
    translation = catalog_->Translate(query->sql);
  } else {
    translation = catalog_->Translate(source);
  }
  if (!translation->parameters.empty()) {
    RaiseStore(kErrTooFewParameters, std::to_string(translation->parameters.size()));
  }
  return sqlite::OpenRecordset(RecordsetSource{connection_, catalog_, "", translation, {}}, type);
}

void SqliteDatabase::Execute(std::string_view jet_sql, int options) {
  RequireOpen();
  records_affected_ = 0;
  std::shared_ptr<const jet::Translation> translation;
  if (const QueryInfo* query = catalog_->FindQuery(Trimmed(jet_sql))) {
    translation = catalog_->Translate(query->sql);
  } else {
    translation = catalog_->Translate(jet_sql);
  }
  if (!translation->parameters.empty()) {
    RaiseStore(kErrTooFewParameters, std::to_string(translation->parameters.size()));
  }
  records_affected_ = RunAction(*connection_, *translation, {}, options);
}

std::shared_ptr<QueryDef> SqliteDatabase::CreateQueryDef(std::string_view name, std::string_view jet_sql) {
  RequireOpen();
  auto query =
      std::make_shared<SqliteQueryDef>(connection_, catalog_, std::string(name), std::string(jet_sql), false);
  if (!name.empty()) query_defs_.Append(query);
  return query;
}

std::shared_ptr<TableDef> SqliteDatabase::CreateTableDef(std::string_view name) {
  RequireOpen();
  return std::make_shared<SqliteTableDef>(std::string(name));
}

std::shared_ptr<Relation> SqliteDatabase::CreateRelation(std::string_view name, std::string_view table,
                                                         std::string_view foreign_table, int32_t attributes) {
  RequireOpen();
  return std::make_shared<SqliteRelation>(std::string(name), std::string(table), std::string(foreign_table),
                                          attributes);
}

std::shared_ptr<Property> SqliteDatabase::CreateProperty(std::string_view name, FieldType type,
                                                         const Variant& value) {
  RequireOpen();
  return std::make_shared<SqliteProperty>(PropertyInfo{std::string(name), type, value}, nullptr);
}

void SqliteDatabase::Close() {
  if (!open_) return;
  open_ = false;
  connection_->CloseFile(catalog_->Alias());
}

}  // namespace ldg::store::sqlite
