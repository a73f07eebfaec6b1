// An open database file. Sources of OpenRecordset are a table, a stored query
// or a Jet statement; statements are translated once per text and schema
// state, and the prepared statement is kept.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "store/constants.hpp"
#include "store/field_type.hpp"
#include "store/property.hpp"
#include "store/query_def.hpp"
#include "store/recordset.hpp"
#include "store/relation.hpp"
#include "store/table_def.hpp"
#include "support/variant.hpp"

namespace ldg::store {

class Database {
 public:
  virtual ~Database() = default;

  // The path of the file as it was opened.
  virtual std::string Name() const = 0;
  virtual std::unique_ptr<Recordset> OpenRecordset(std::string_view source,
                                                   RecordsetTypeEnum type = dbOpenDefault) = 0;
  // options: 0 or dbFailOnError.
  virtual void Execute(std::string_view jet_sql, int options = 0) = 0;
  virtual int32_t RecordsAffected() const = 0;

  virtual store::TableDefs& TableDefs() = 0;
  virtual store::QueryDefs& QueryDefs() = 0;
  virtual store::Relations& Relations() = 0;
  virtual store::Properties& Properties() = 0;

  // With a name the query is stored at once (3012 if the name is taken);
  // without one it is a temporary object.
  virtual std::shared_ptr<QueryDef> CreateQueryDef(std::string_view name = "",
                                                   std::string_view jet_sql = "") = 0;
  virtual std::shared_ptr<TableDef> CreateTableDef(std::string_view name = "") = 0;
  virtual std::shared_ptr<Relation> CreateRelation(std::string_view name = "", std::string_view table = "",
                                                   std::string_view foreign_table = "",
                                                   int32_t attributes = 0) = 0;
  virtual std::shared_ptr<Property> CreateProperty(std::string_view name, FieldType type,
                                                   const Variant& value) = 0;

  virtual void Close() = 0;
};

}  // namespace ldg::store
