#include "store/store_error.hpp"

#include "support/error.hpp"

namespace ldg::store {

namespace {

std::string Fill(std::string_view text, std::string_view name) {
  std::string out(text);
  if (auto at = out.find("%s"); at != std::string::npos) out.replace(at, 2, name);
  return out;
}

}  // namespace

std::string StoreErrorText(int32_t number, std::string_view name) {
  switch (number) {
    case kErrInvalidArgument:
      return "Invalid argument.";
    case kErrObjectExists:
      return Fill("Object '%s' already exists.", name);
    case kErrUpdateWithoutAddNew:
      return "Update or CancelUpdate without AddNew or Edit.";
    case kErrNoCurrentRecord:
      return "No current record.";
    case kErrDuplicate:
      return "The changes you requested to the table were not successful because they would create duplicate "
             "values in the index, primary key, or relationship. Change the data in the field or fields that "
             "contain duplicate data, remove the index, or redefine the index to permit duplicate entries "
             "and "
             "try again.";
    case kErrFileNotFound:
      return Fill("Could not find file '%s'.", name);
    case kErrReadOnly:
      return "Cannot update. Database or object is read-only.";
    case kErrNoTransaction:
      return "You tried to commit or rollback a transaction without first beginning a transaction.";
    case kErrCouldNotLock:
      return "Could not lock file.";
    case kErrNullInKey:
      return "Index or primary key cannot contain a Null value.";
    case kErrTooFewParameters:
      return Fill("Too few parameters. Expected %s.", name);
    case kErrSyntax:
      return "Syntax error (missing operator) in query expression.";
    case kErrTableNotFound:
      return Fill(
          "The database engine cannot find the input table or query '%s'. Make sure it "
          "exists and that its name is spelled correctly.",
          name);
    case kErrNullNotAllowed:
      return "You tried to assign the Null value to a variable that is not a Variant data type.";
    case kErrFieldTooSmall:
      return "The field is too small to accept the amount of data you attempted to add. Try inserting or "
             "pasting less data.";
    case kErrRecordDeleted:
      return "Record is deleted.";
    case kErrRelatedRecords:
      return Fill("The record cannot be deleted or changed because table '%s' includes related records.",
                  name);
    case kErrInvalidBookmark:
      return "Not a valid bookmark.";
    case kErrDatabaseExists:
      return "Database already exists.";
    case kErrLocked:
      return "Could not update; currently locked.";
    case kErrNotSupported:
      return "Operation is not supported for this type of object.";
    case kErrItemNotFound:
      return "Item not found in this collection.";
    case kErrPropertyNotFound:
      return "Property not found.";
    case kErrNotAnIndex:
      return Fill("'%s' is not an index in this table.", name);
    case kErrNoCurrentIndex:
      return "Operation invalid without a current index.";
    case kErrUnrecognizedFormat:
      return Fill("Unrecognized database format '%s'.", name);
    case kErrConversion:
      return "Data type conversion error.";
    default:
      return Fill("Reserved error (%s); there is no message for this error.", name);
  }
}

void RaiseStore(int32_t number, std::string_view name) {
  throw Error(number, kStoreSource, StoreErrorText(number, name));
}

void RefuseQuote(std::string_view text) {
  if (text.find('\'') != std::string_view::npos) RaiseStore(kErrSyntax);
}

}  // namespace ldg::store
