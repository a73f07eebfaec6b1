#include "store/sqlite/query_defs.hpp"

#include "store/constants.hpp"
#include "store/sqlite/names.hpp"
#include "store/sqlite/sqlite_recordset.hpp"
#include "store/sqlite/value_codec.hpp"
#include "store/store_error.hpp"
#include "support/error.hpp"

namespace ldg::store::sqlite {

void SqliteParameters::Reset(const std::vector<jet::Parameter>& declared) {
  std::vector<std::unique_ptr<SqliteParameter>> fresh;
  for (const auto& parameter : declared) {
    auto item = std::make_unique<SqliteParameter>(parameter.name, parameter.type);
    for (const auto& old : items_) {
      if (NamesEqual(old->Name(), parameter.name)) item->Value(old->Value());
    }
    fresh.push_back(std::move(item));
  }
  items_ = std::move(fresh);
}

std::vector<Variant> SqliteParameters::Values() const {
  std::vector<Variant> values;
  int missing = 0;
  for (const auto& item : items_) {
    if (item->Value().IsEmpty()) ++missing;
    values.push_back(item->Type() == FieldType::kUnknown ? item->Value()
                                                         : Coerce(item->Value(), item->Type()));
  }
  if (missing > 0) RaiseStore(kErrTooFewParameters, std::to_string(missing));
  return values;
}

Parameter& SqliteParameters::Item(std::string_view name) const {
  for (const auto& item : items_) {
    if (NamesEqual(item->Name(), name)) return *item;
  }
  RaiseStore(kErrItemNotFound);
}

Parameter& SqliteParameters::Item(int ordinal) const {
  if (ordinal < 0 || ordinal >= Count()) RaiseStore(kErrItemNotFound);
  return *items_[static_cast<size_t>(ordinal)];
}

SqliteQueryDef::SqliteQueryDef(std::shared_ptr<Connection> connection, std::shared_ptr<Catalog> catalog,
                               std::string name, std::string jet_sql, bool stored)
    : connection_(std::move(connection)),
      catalog_(std::move(catalog)),
      name_(std::move(name)),
      sql_(std::move(jet_sql)),
      stored_(stored) {}

void SqliteQueryDef::Name(std::string_view name) {
  if (stored_) catalog_->RenameQuery(name_, name);
  name_ = name;
}

void SqliteQueryDef::SQL(std::string_view jet_sql) {
  if (stored_) catalog_->SaveQuery(name_, jet_sql);
  sql_ = jet_sql;
  translation_.reset();
}

std::shared_ptr<const jet::Translation> SqliteQueryDef::Translation() {
  if (!translation_ || translated_at_ != catalog_->Version()) {
    translation_ = catalog_->Translate(sql_);
    translated_at_ = catalog_->Version();
    parameters_.Reset(translation_->parameters);
  }
  return translation_;
}

store::Parameters& SqliteQueryDef::Parameters() {
  Translation();
  return parameters_;
}

std::unique_ptr<Recordset> SqliteQueryDef::OpenRecordset(RecordsetTypeEnum type) {
  auto translation = Translation();
  if (type == dbOpenTable) RaiseStore(kErrNotSupported);
  return sqlite::OpenRecordset(RecordsetSource{connection_, catalog_, "", translation, parameters_.Values()},
                               type == dbOpenDefault ? dbOpenDynaset : type);
}

void SqliteQueryDef::Execute(int options) {
  auto translation = Translation();
  records_affected_ = RunAction(*connection_, *translation, parameters_.Values(), options);
}

std::shared_ptr<QueryDef> SqliteQueryDefs::Item(std::string_view name) const {
  const QueryInfo* query = catalog_->FindQuery(name);
  if (!query) RaiseStore(kErrItemNotFound);
  return std::make_shared<SqliteQueryDef>(connection_, catalog_, query->name, query->sql, true);
}

std::shared_ptr<QueryDef> SqliteQueryDefs::Item(int ordinal) const {
  const auto& queries = catalog_->Queries();
  if (ordinal < 0 || static_cast<size_t>(ordinal) >= queries.size()) RaiseStore(kErrItemNotFound);
  const QueryInfo& query = queries[static_cast<size_t>(ordinal)];
  return std::make_shared<SqliteQueryDef>(connection_, catalog_, query.name, query.sql, true);
}

void SqliteQueryDefs::Append(const std::shared_ptr<QueryDef>& query) {
  auto own = std::dynamic_pointer_cast<SqliteQueryDef>(query);
  if (!own || own->Name().empty()) RaiseStore(kErrInvalidArgument);
  if (catalog_->FindQuery(own->Name()) || catalog_->FindTable(own->Name()))
    RaiseStore(kErrObjectExists, own->Name());
  catalog_->SaveQuery(own->Name(), own->SQL());
  own->Stored();
}

int32_t RunAction(Connection& connection, const jet::Translation& translation,
                  const std::vector<Variant>& parameters, int options) {
  if (translation.kind == jet::StatementKind::kSelect) RaiseStore(kErrNotSupported);
  try {
    return BindAndRun(connection, translation, parameters);
  } catch (const Error& error) {
    bool refused = error.Number() == kErrDuplicate || error.Number() == kErrRelatedRecords ||
                   error.Number() == kErrNullInKey;
    if ((options & dbFailOnError) == 0 && refused) return 0;
    throw;
  }
}

}  // namespace ldg::store::sqlite
