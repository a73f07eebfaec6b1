// ldg post FILE --journal J --date D [--doc N] --line ACCOUNT:AMOUNT[:TEXT] ...:
// posts one book entry through BookEntries.Append and prints its new ID. Each
// --line names an account by its code, a signed amount (debit positive, credit
// negative, "." and up to four decimals) and an optional text, which may hold
// colons itself. The journal is named by its code or its name.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "cli/chart_listing.hpp"
#include "cli/command.hpp"
#include "cli/entry_draft.hpp"
#include "cli/entry_poster.hpp"
#include "cli/opened_year_file.hpp"
#include "support/error.hpp"

namespace ldg::cli {
namespace {

struct Arguments {
  std::string file;
  std::string journal;
  std::string date;
  std::string doc;
  std::vector<std::string> lines;
};

[[noreturn]] void FailLine(const std::string& text) {
  throw Error(kErrInvalidCall, kAppTitle,
              "--line takes ACCOUNT:AMOUNT[:TEXT] with an amount such as -1250.50 (\".\" and up to 4 "
              "decimals), not '" +
                  text + "'.");
}

DraftLine LineOf(const std::string& text) {
  const size_t first = text.find(':');
  if (first == std::string::npos || first == 0) FailLine(text);
  const size_t second = text.find(':', first + 1);
  const std::string amount_text =
      text.substr(first + 1, second == std::string::npos ? std::string::npos : second - first - 1);
  const std::optional<Currency> amount = ReadAmount(amount_text);
  if (!amount) FailLine(text);
  return DraftLine{text.substr(0, first), *amount,
                   second == std::string::npos ? "" : text.substr(second + 1)};
}

// Everything that can be checked without the file is checked before it is opened.
EntryDraft DraftOf(const Arguments& arguments) {
  EntryDraft draft;
  draft.journal = arguments.journal;
  draft.date = ParseIsoDate(arguments.date, "--date");
  draft.document = arguments.doc;
  for (const std::string& line : arguments.lines) draft.lines.push_back(LineOf(line));
  return draft;
}

void Run(const Arguments& arguments) {
  const EntryDraft draft = DraftOf(arguments);
  OpenedYearFile opened(arguments.file);
  std::cout << EntryPoster(opened.engine()).Post(draft) << "\n";
}

const bool kRegistered = RegisterCommand([](CLI::App& app) {
  auto* command = app.add_subcommand("post", "Post one book entry and print its ID");
  auto arguments = std::make_shared<Arguments>();
  command->add_option("file", arguments->file, "The year file")->required();
  command->add_option("--journal", arguments->journal, "Code or name of the journal")->required();
  command->add_option("--date", arguments->date, "Entry date (yyyy-mm-dd)")->required();
  command->add_option("--doc", arguments->doc, "Document number; digits only make a numeric one");
  command
      ->add_option("--line", arguments->lines,
                   "ACCOUNT:AMOUNT[:TEXT], amount positive on the debit side, negative on the credit side")
      ->required()
      ->take_all();
  command->callback([arguments] { Run(*arguments); });
});

}  // namespace
}  // namespace ldg::cli
