// A stored query (or a temporary one made without a name). Its SQL is kept as
// written in Jet text and translated when it runs. Parameters are those the
// text declares with PARAMETERS, then the names it uses that no table has.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "store/constants.hpp"
#include "store/field_type.hpp"
#include "store/recordset.hpp"
#include "support/variant.hpp"

namespace ldg::store {

class Parameter {
 public:
  virtual ~Parameter() = default;

  virtual std::string Name() const = 0;
  virtual FieldType Type() const = 0;
  virtual Variant Value() const = 0;
  virtual void Value(const Variant& value) = 0;
};

class Parameters {
 public:
  virtual ~Parameters() = default;

  virtual int Count() const = 0;
  virtual Parameter& Item(std::string_view name) const = 0;
  virtual Parameter& Item(int ordinal) const = 0;
};

class QueryDef {
 public:
  virtual ~QueryDef() = default;

  virtual std::string Name() const = 0;
  // Renames a stored query.
  virtual void Name(std::string_view name) = 0;
  virtual std::string SQL() const = 0;
  virtual void SQL(std::string_view jet_sql) = 0;
  virtual store::Parameters& Parameters() = 0;
  // 3061 "Too few parameters. Expected n." while a parameter has no value.
  virtual std::unique_ptr<Recordset> OpenRecordset(RecordsetTypeEnum type = dbOpenDynaset) = 0;
  virtual void Execute(int options = 0) = 0;
  virtual int32_t RecordsAffected() const = 0;
  virtual void Close() = 0;
};

class QueryDefs {
 public:
  virtual ~QueryDefs() = default;

  virtual int Count() const = 0;
  virtual std::shared_ptr<QueryDef> Item(std::string_view name) const = 0;
  virtual std::shared_ptr<QueryDef> Item(int ordinal) const = 0;
  virtual bool Contains(std::string_view name) const = 0;
  virtual void Append(const std::shared_ptr<QueryDef>& query) = 0;
  virtual void Delete(std::string_view name) = 0;
  virtual void Refresh() = 0;
};

}  // namespace ldg::store
