// The store errors that the Jet translator and the criterion evaluator raise,
// with their numbers and texts, so that every file raises them the same way.
#pragma once

#include <string>
#include <string_view>

namespace ldg::store::jet {

inline constexpr int kErrSyntax = 3075;        // syntax error in an expression
inline constexpr int kErrSyntaxFrom = 3131;    // malformed FROM clause
inline constexpr int kErrUnknownTable = 3078;  // no table or query of that name
inline constexpr int kErrUnknownField = 3070;  // a criterion names no field of the record set
inline constexpr int kErrUndefinedFunction = 3085;
inline constexpr int kErrCircularQuery = 3103;
inline constexpr int kErrTrailingText = 3142;  // characters after the end of the statement
inline constexpr int kErrTypeMismatch = 3464;  // data type mismatch in a criterion
inline constexpr int kErrNotSupported = 3251;  // a form this store does not carry out

[[noreturn]] void RaiseSyntax();
[[noreturn]] void RaiseStoreError(int number, std::string text);
[[noreturn]] void RaiseUnknownTable(std::string_view name);

}  // namespace ldg::store::jet
