// A book entry as the command line takes it in, by codes and texts: a journal
// named by its code or its name, a date, a document number and lines of
// account code, signed amount (debit positive, credit negative) and text.
// `ldg post`, `ldg import` and the demo fill drafts; EntryPoster posts them.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/currency.hpp"
#include "support/ole_date.hpp"

namespace ldg::cli {

struct DraftLine {
  std::string account;
  Currency amount;
  std::string text;
};

struct EntryDraft {
  std::string journal;
  OleDate date;
  // Digits only are a number (stored in its 14-digit form), anything else a text; "" none.
  std::string document;
  std::vector<DraftLine> lines;
};

// An amount written with digits, an optional "-" in front and "." with one to
// four decimals ("1250", "-80.5", "0.0125"), read exactly; nothing for any
// other text: no "+", no blanks, no thousands signs, no exponent.
std::optional<Currency> ReadAmount(std::string_view text);

}  // namespace ldg::cli
