// A relation between a parent table (Table) and a child table (ForeignTable).
// It is checked only when a parent row is deleted: a restricting relation
// refuses with 3200 while child rows exist, a cascading one
// (dbRelationDeleteCascade) deletes them. Inserts and changes are never checked.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "store/field.hpp"

namespace ldg::store {

class Relation {
 public:
  virtual ~Relation() = default;

  virtual std::string Name() const = 0;
  virtual std::string Table() const = 0;
  virtual void Table(std::string_view table) = 0;
  virtual std::string ForeignTable() const = 0;
  virtual void ForeignTable(std::string_view table) = 0;
  virtual int32_t Attributes() const = 0;
  virtual void Attributes(int32_t attributes) = 0;
  // Name is the parent's column, ForeignName the child's.
  virtual store::Fields& Fields() = 0;
  virtual std::shared_ptr<Field> CreateField(std::string_view name) = 0;
};

class Relations {
 public:
  virtual ~Relations() = default;

  virtual int Count() const = 0;
  virtual std::shared_ptr<Relation> Item(std::string_view name) const = 0;
  virtual std::shared_ptr<Relation> Item(int ordinal) const = 0;
  virtual bool Contains(std::string_view name) const = 0;
  virtual void Append(const std::shared_ptr<Relation>& relation) = 0;
  virtual void Delete(std::string_view name) = 0;
  virtual void Refresh() = 0;
};

}  // namespace ldg::store
