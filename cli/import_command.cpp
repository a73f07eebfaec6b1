// ldg import FILE ENTRIES.csv [--journal J]: posts the book entries of a CSV
// file (see cli/entry_import.hpp) all together or not at all, with a progress
// bar on standard error when that is a terminal, and tells how many it posted.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>

#include "cli/command.hpp"
#include "cli/entry_import.hpp"
#include "cli/opened_year_file.hpp"
#include "cli/progress_bar.hpp"
#include "support/error.hpp"

namespace ldg::cli {
namespace {

struct Arguments {
  std::string file;
  std::string entries;
  std::string journal = "1";
};

void Run(const Arguments& arguments) {
  std::ifstream csv(arguments.entries, std::ios::binary);
  if (!csv) throw Error(kErrInvalidCall, kAppTitle, "Can't read the file '" + arguments.entries + "'.");
  OpenedYearFile opened(arguments.file);
  EntryImport::Counts counts;
  {
    ProgressBar bar(std::cerr, isatty(STDERR_FILENO) != 0);
    counts = EntryImport(opened.engine(), arguments.journal).Run(csv);
  }
  std::cout << "Imported " << counts.entries << " book entries with " << counts.lines << " lines.\n";
}

const bool kRegistered = RegisterCommand([](CLI::App& app) {
  auto* command = app.add_subcommand("import", "Post the book entries of a CSV file, all or none");
  auto arguments = std::make_shared<Arguments>();
  command->add_option("file", arguments->file, "The year file")->required();
  command
      ->add_option("entries", arguments->entries,
                   "CSV with the columns entry,date,doc,account,amount,text and optionally journal")
      ->required();
  command->add_option("--journal", arguments->journal, "Code or name of the journal of rows without one")
      ->capture_default_str();
  command->callback([arguments] { Run(*arguments); });
});

}  // namespace
}  // namespace ldg::cli
