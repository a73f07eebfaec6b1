// The store's field types, numbered as the record-store constants the engine
// uses (dbBoolean = 1, dbLong = 4, dbCurrency = 5, ...).
#pragma once

namespace ldg::store {

enum class FieldType : int {
  kUnknown = 0,
  kBoolean = 1,
  kByte = 2,
  kInteger = 3,
  kLong = 4,
  kCurrency = 5,
  kSingle = 6,
  kDouble = 7,
  kDate = 8,
  kText = 10,
  kMemo = 12,
};

}  // namespace ldg::store
