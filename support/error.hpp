// The one error type of the engine. Every failure travels as an Error carrying
// a number, a source and a text, never as a status return. Numbers of the
// engine's own messages are 0x80040000 + message id, as a signed 32-bit value;
// run-time errors (5, 6, 9, 11, 13, 91, 94, 438) and store errors (3021, 3022,
// 3058, 3200, ...) keep their plain numbers.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace ldg {

// The component's application title: the source of most errors.
inline constexpr const char* kAppTitle = "ldg";

// Base of the numbers of the engine's own messages.
inline constexpr int32_t kErrorBase = static_cast<int32_t>(0x80040000u);

class Error : public std::runtime_error {
 public:
  Error(int32_t number, std::string source, std::string description);

  int32_t Number() const { return number_; }
  const std::string& Source() const { return source_; }
  const std::string& Description() const { return description_; }

 private:
  int32_t number_;
  std::string source_;
  std::string description_;
};

// Run-time error numbers with the run time's own texts.
enum RuntimeErrors : int32_t {
  kErrInvalidCall = 5,
  kErrOverflow = 6,
  kErrSubscript = 9,
  kErrDivisionByZero = 11,
  kErrTypeMismatch = 13,
  kErrObjectNotSet = 91,
  kErrInvalidUseOfNull = 94,
  kErrNotSupported = 438,
};

// The run time's text for one of the numbers above; empty for any other.
std::string RuntimeErrorText(int32_t number);

// Raises a run-time error with its own text and an empty source.
[[noreturn]] void RaiseRuntime(int32_t number);

// The object a pointer points to; run-time error 91 when it points to none.
template <typename Pointer>
auto& Dereferenced(const Pointer& pointer) {
  if (!pointer) RaiseRuntime(kErrObjectNotSet);
  return *pointer;
}

}  // namespace ldg
