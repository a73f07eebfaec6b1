// A table definition: a local table, or a linked one (Connect ";DATABASE=path"
// and SourceTableName name the table of another file). TableDefs.Item of an
// unknown name raises 3265; callers use that failure as the existence test.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "store/field.hpp"
#include "store/field_type.hpp"
#include "store/index.hpp"

namespace ldg::store {

class TableDef {
 public:
  virtual ~TableDef() = default;

  virtual std::string Name() const = 0;
  virtual void Name(std::string_view name) = 0;
  virtual store::Fields& Fields() = 0;
  virtual store::Indexes& Indexes() = 0;
  // size 0 takes the default: 50 characters for Text.
  virtual std::shared_ptr<Field> CreateField(std::string_view name, FieldType type, int32_t size = 0) = 0;
  virtual std::shared_ptr<Index> CreateIndex(std::string_view name) = 0;
  virtual std::string Connect() const = 0;
  virtual void Connect(std::string_view connect) = 0;
  virtual std::string SourceTableName() const = 0;
  virtual void SourceTableName(std::string_view name) = 0;
};

class TableDefs {
 public:
  virtual ~TableDefs() = default;

  virtual int Count() const = 0;
  virtual std::shared_ptr<TableDef> Item(std::string_view name) const = 0;
  virtual std::shared_ptr<TableDef> Item(int ordinal) const = 0;
  virtual bool Contains(std::string_view name) const = 0;
  // Creates the table (or the link) in the file; 3012 when the name is taken by a table or query.
  virtual void Append(const std::shared_ptr<TableDef>& table) = 0;
  virtual void Delete(std::string_view name) = 0;
  virtual void Refresh() = 0;
};

}  // namespace ldg::store
