// An index of a table definition. Its name is the table's own ("PrimaryKey"
// exists once per table); the store maps it to a name unique in the file.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "store/field.hpp"

namespace ldg::store {

class Index {
 public:
  virtual ~Index() = default;

  virtual std::string Name() const = 0;
  virtual bool Primary() const = 0;
  virtual void Primary(bool primary) = 0;
  virtual bool Unique() const = 0;
  virtual void Unique(bool unique) = 0;
  // The indexed columns in key order.
  virtual store::Fields& Fields() = 0;
  virtual std::shared_ptr<Field> CreateField(std::string_view name) = 0;
};

class Indexes {
 public:
  virtual ~Indexes() = default;

  virtual int Count() const = 0;
  virtual std::shared_ptr<Index> Item(std::string_view name) const = 0;
  virtual std::shared_ptr<Index> Item(int ordinal) const = 0;
  virtual bool Contains(std::string_view name) const = 0;
  // Builds the index; 3022 when existing rows break a unique one, 3012 when the name exists.
  virtual void Append(const std::shared_ptr<Index>& index) = 0;
  virtual void Delete(std::string_view name) = 0;
  virtual void Refresh() = 0;
};

}  // namespace ldg::store
