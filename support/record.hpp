// Record: the current row of a record set, as the typed field helpers see it.
//
// The store's record sets implement it; the helpers in support/ read and write
// fields only through it and never know which store is behind. A field's value
// is a Variant exactly as stored: a Null column reads as Null, never as the
// default of its type (only the typed readers map Null to a default).
#pragma once

#include <cstdint>
#include <string_view>

#include "support/variant.hpp"

namespace ldg {

class Record {
 public:
  virtual ~Record() = default;

  // The value of the named field in the current row.
  virtual Variant Value(std::string_view field) const = 0;
  // Sets the named field of the row being edited.
  virtual void Value(std::string_view field, const Variant& value) = 0;
  // The declared size of a text field in characters; 0 when the field has none.
  virtual int32_t Size(std::string_view field) const = 0;
};

}  // namespace ldg
