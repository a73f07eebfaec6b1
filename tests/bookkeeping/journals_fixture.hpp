// The open year file of the chart's fixture, with helpers to read and lay out
// the Journals table straight through the record store. The creation writes one
// journal (code 1, "Journal") into every new file; tests that need an empty
// table delete it and read a collection of their own.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>

#include "bookkeeping/journal.hpp"
#include "bookkeeping/journals.hpp"
#include "support/nullable.hpp"
#include "tests/accounts/open_chart_fixture.hpp"

namespace ldg::journal_testing {

using chart_testing::Date;
using chart_testing::OpenChartTest;
using year_files_testing::ErrorOf;

class JournalsTest : public OpenChartTest {
 protected:
  // Deletes every journal row and gives a collection read from the empty table.
  std::shared_ptr<Journals> EmptyJournals() {
    Db().Execute("DELETE FROM Journals;", store::dbFailOnError);
    return std::make_shared<Journals>();
  }

  Variant StoredJournal(int32_t id, const std::string& column) {
    return Scalar("SELECT " + column + " FROM Journals WHERE ID = " + std::to_string(id) + ";", column);
  }
  int32_t JournalRows() { return ReadLong(Scalar("SELECT Count(*) AS N FROM Journals;", "N")); }

  // A book entry of the journal whose Definitive is set to the given set number.
  int32_t InsertDefinitiveEntry(int32_t journal_id, int32_t definitive) {
    const int32_t id = InsertEntry(journal_id, Date(2026, 3, 1));
    Db().Execute("UPDATE BookEntries SET Definitive = " + std::to_string(definitive) +
                     " WHERE ID = " + std::to_string(id) + ";",
                 store::dbFailOnError);
    return id;
  }
};

}  // namespace ldg::journal_testing
