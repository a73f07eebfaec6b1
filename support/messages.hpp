// The engine's message table and the raising of its messages.
//
// Every message of the engine has an id; the error raised for it carries the
// number kErrorBase + id, the application title as source and the message's
// text, with its placeholders "1%" and "2%" filled. The table is fixed: its
// ids and texts (misspellings, trailing blanks and the literal "/n/n" of 1198
// included) are what front ends show and compare, so they are never
// corrected. An id outside the table has no text: the lookup gives Empty and
// a raise carries an empty description, never a different error.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "support/error.hpp"
#include "support/variant.hpp"

namespace ldg {

// Numbers that front ends read from errors, with the names they have always had.
enum lgrErrors : int32_t {
  lgrErrCanceled = 0,
  lgrErrUnkown = 1000,
  lgrErrDuplicateKey = 3022,
  lgrErrChangeKey = 3021,
  lgrErrNoKey = 3058,
  lgrErrDataUsed = 3200,
};

// Answers of the front ends' error dialogs; nothing in the engine returns them.
// Two names share 0 on purpose.
enum TryReturnCodes : int32_t {
  lgrTryAgain = 1,
  lgrStopTry = 0,
  lgrErrorRemoved = 0,
};

struct MessageEntry {
  int32_t id;
  std::string_view text;
};

// The whole table, in ascending order of id (133 entries).
std::span<const MessageEntry> MessageTable();

// The text of a message id as a String Variant; Empty for an id without a text
// and for an id that is no number.
Variant Message(const Variant& id);
// The same as plain text; "" for an id without a text.
std::string MessageText(int32_t id);

// Replaces the first "1%" of the text by the value's text (as CStr gives it,
// Null as nothing); a text without "1%" comes back unchanged. "%1" is not a
// placeholder.
std::string Fill1(std::string_view text, const Variant& value);
// Fill1 with the first value, then the same with "2%" and the second value.
std::string Fill2(std::string_view text, const Variant& value1, const Variant& value2);

// The error number of a message id.
constexpr int32_t MessageNumber(int32_t id) { return kErrorBase + id; }

// The error of a message, filled, as it would be raised.
Error MessageError(int32_t id);
Error MessageError(int32_t id, const Variant& value);
Error MessageError(int32_t id, const Variant& value1, const Variant& value2);

// Raises the message: number kErrorBase + id, the application title as source.
[[noreturn]] void RaiseMessage(int32_t id);
[[noreturn]] void RaiseMessage(int32_t id, const Variant& value);
[[noreturn]] void RaiseMessage(int32_t id, const Variant& value1, const Variant& value2);

// Raises a given number with a given text and source.
[[noreturn]] void RaiseError(int32_t number, std::string_view description,
                             std::string_view source = kAppTitle);

// Raises where the number is a Variant, as the raising call of the run time
// takes it: the number is converted to Long first. A text that is no number
// therefore fails that conversion and the caller gets run-time error 13, never
// the description. Three callers hand a text there deliberately and rely on it.
[[noreturn]] void RaiseError(const Variant& number, std::string_view description,
                             std::string_view source = kAppTitle);

}  // namespace ldg
