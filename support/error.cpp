#include "support/error.hpp"

#include <utility>

namespace ldg {

Error::Error(int32_t number, std::string source, std::string description)
    : std::runtime_error(description),
      number_(number),
      source_(std::move(source)),
      description_(std::move(description)) {}

std::string RuntimeErrorText(int32_t number) {
  switch (number) {
    case kErrInvalidCall: return "Invalid procedure call or argument";
    case kErrOverflow: return "Overflow";
    case kErrSubscript: return "Subscript out of range";
    case kErrDivisionByZero: return "Division by zero";
    case kErrTypeMismatch: return "Type mismatch";
    case kErrObjectNotSet: return "Object variable or With block variable not set";
    case kErrInvalidUseOfNull: return "Invalid use of Null";
    case kErrNotSupported: return "Object doesn't support this property or method";
    default: return "";
  }
}

void RaiseRuntime(int32_t number) { throw Error(number, "", RuntimeErrorText(number)); }

}  // namespace ldg
