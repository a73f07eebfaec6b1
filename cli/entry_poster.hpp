// EntryPoster: posts drafts (cli/entry_draft.hpp) into the open year file as
// any front end posts: a BookEntry with its journal, date and document number,
// one line per draft line through Movements.Add with the automatisms off, and
// BookEntries.Append, which validates and writes it in one transaction. It
// looks each journal and account up once and keeps its ID for later drafts.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "cli/entry_draft.hpp"
#include "engine/engine.hpp"

namespace ldg::cli {

class EntryPoster {
 public:
  explicit EntryPoster(Engine& engine) : engine_(engine) {}

  // Posts the draft and returns the new entry's ID. An unknown journal or
  // account is a run-time error 5 naming it; the engine's own errors pass
  // through as they are.
  int32_t Post(const EntryDraft& draft);

  // The ID of the journal with that code, or else with that name.
  int32_t JournalID(const std::string& journal);
  int32_t AccountID(const std::string& code);

 private:
  Engine& engine_;
  std::map<std::string, int32_t> journal_ids_;
  std::map<std::string, int32_t> account_ids_;
};

}  // namespace ldg::cli
