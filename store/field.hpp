// A field: a column of a record set (read and written through Value) or of a
// table, index or relation definition (Name, Size, DefaultValue, Attributes,
// ForeignName). Fields.Item of an unknown name raises 3265; callers use that
// failure as the existence test. Names compare without regard to case.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "store/field_type.hpp"
#include "support/variant.hpp"

namespace ldg::store {

class Field {
 public:
  virtual ~Field() = default;

  virtual std::string Name() const = 0;
  virtual void Name(std::string_view name) = 0;
  virtual FieldType Type() const = 0;
  // Text length in characters; the byte width of other types.
  virtual int32_t Size() const = 0;
  virtual void Size(int32_t size) = 0;
  // The default as an expression text ("0", "False", "\"CHF\""); empty for none.
  virtual std::string DefaultValue() const = 0;
  virtual void DefaultValue(std::string_view expression) = 0;
  virtual int32_t Attributes() const = 0;
  virtual void Attributes(int32_t attributes) = 0;
  // For a field of a relation: the column of the foreign table.
  virtual std::string ForeignName() const = 0;
  virtual void ForeignName(std::string_view name) = 0;

  // The column of the current row of a record set; a Null column reads Null.
  virtual Variant Value() const = 0;
  virtual void Value(const Variant& value) = 0;
};

class Fields {
 public:
  virtual ~Fields() = default;

  virtual int Count() const = 0;
  // The field lives as long as its collection.
  virtual Field& Item(std::string_view name) const = 0;
  virtual Field& Item(int ordinal) const = 0;
  virtual bool Contains(std::string_view name) const = 0;
  virtual void Append(const std::shared_ptr<Field>& field) = 0;
  virtual void Delete(std::string_view name) = 0;
  virtual void Refresh() = 0;
};

}  // namespace ldg::store
