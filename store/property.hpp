// A named user property of a database (Creator, Product, Owner, Project),
// kept in the file apart from the tables, and the collection that holds them.
// Item of an unknown name raises 3270: callers use that failure as the
// existence test.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "store/field_type.hpp"
#include "support/variant.hpp"

namespace ldg::store {

class Property {
 public:
  virtual ~Property() = default;

  virtual std::string Name() const = 0;
  virtual FieldType Type() const = 0;
  virtual Variant Value() const = 0;
  virtual void Value(const Variant& value) = 0;
};

class Properties {
 public:
  virtual ~Properties() = default;

  virtual int Count() const = 0;
  virtual std::shared_ptr<Property> Item(std::string_view name) const = 0;
  virtual std::shared_ptr<Property> Item(int ordinal) const = 0;
  // Stores a property made by Database::CreateProperty; 3012 if the name exists.
  virtual void Append(const std::shared_ptr<Property>& property) = 0;
  virtual void Delete(std::string_view name) = 0;
  virtual void Refresh() = 0;
};

}  // namespace ldg::store
