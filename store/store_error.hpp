// The store's errors: each keeps the number the engine tests for (3021 no
// current record, 3022 duplicate in a unique index, 3200 related records, ...)
// with its fixed text. Every failing store operation raises one of these.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ldg::store {

enum StoreErrors : int32_t {
  kErrReserved = 3000,
  kErrInvalidArgument = 3001,
  kErrObjectExists = 3012,
  kErrUpdateWithoutAddNew = 3020,
  kErrNoCurrentRecord = 3021,
  kErrDuplicate = 3022,
  kErrFileNotFound = 3024,
  kErrReadOnly = 3027,
  kErrNoTransaction = 3034,
  kErrCouldNotLock = 3050,
  kErrNullInKey = 3058,
  kErrTooFewParameters = 3061,
  kErrSyntax = 3075,
  kErrTableNotFound = 3078,
  kErrNullNotAllowed = 3162,
  kErrFieldTooSmall = 3163,
  kErrRecordDeleted = 3167,
  kErrRelatedRecords = 3200,
  kErrInvalidBookmark = 3159,
  kErrDatabaseExists = 3204,
  kErrLocked = 3218,
  kErrNotSupported = 3251,
  kErrItemNotFound = 3265,
  kErrPropertyNotFound = 3270,
  kErrNotAnIndex = 3800,
  kErrNoCurrentIndex = 3019,
  kErrUnrecognizedFormat = 3343,
  kErrConversion = 3421,
};

// The fixed text of a store error; "<name>" style fills come from the caller.
std::string StoreErrorText(int32_t number, std::string_view name = "");

// Raises ldg::Error with the number, its text (filled with name where the text
// names an object) and the store as source.
[[noreturn]] void RaiseStore(int32_t number, std::string_view name = "");

// A text about to be pasted between single quotes must hold none itself: it
// would end its quotes early, so the broken statement's syntax error 3075 is
// raised before any statement runs.
void RefuseQuote(std::string_view text);

// The source the store's errors carry.
inline constexpr const char* kStoreSource = "ldg.store";

}  // namespace ldg::store
