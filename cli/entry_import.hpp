// EntryImport: book entries read from CSV text and posted all together or not
// at all. The header names the columns entry, date, doc, account, amount and
// text, in any order, and optionally journal. The rows with the same value in
// entry form one book entry, in the order of their first row; its first row
// gives the date, the document number and the journal, and a later row may
// leave them empty or repeat them. Without a journal column, or where it is
// empty, the entries go into the default journal.
//
// Every row is checked before anything is written; then all entries are posted
// through BookEntries.Append inside one outer transaction of the workspace,
// reporting progress to the host hooks as "Import". Any failure rolls the whole
// import back and raises its error again with the line in front of the text:
// "Line 7: ...", for a posting error the line where the entry begins.
#pragma once

#include <cstdint>
#include <istream>
#include <string>

#include "cli/entry_poster.hpp"
#include "engine/engine.hpp"

namespace ldg::cli {

class EntryImport {
 public:
  EntryImport(Engine& engine, std::string default_journal);

  struct Counts {
    int32_t entries = 0;
    int32_t lines = 0;
  };
  Counts Run(std::istream& csv);

 private:
  Engine& engine_;
  std::string default_journal_;
  EntryPoster poster_;
};

}  // namespace ldg::cli
