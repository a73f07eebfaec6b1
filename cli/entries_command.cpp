// ldg entries FILE [--from DATE] [--to DATE]: the book entries of a year file,
// one row per line, in the order of date, entry and line, each row with its
// entry's ID, date, document number and journal code. A numeric document
// number shows without its leading zeros. One query over the year, as a
// listing of many entries should do, rather than an object per entry.
#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>

#include "cli/chart_listing.hpp"
#include "cli/command.hpp"
#include "cli/opened_year_file.hpp"
#include "cli/table_output.hpp"
#include "store/constants.hpp"
#include "store/database.hpp"
#include "store/recordset.hpp"
#include "support/conversions.hpp"
#include "support/format.hpp"
#include "support/nullable.hpp"
#include "support/sql_text.hpp"
#include "support/text.hpp"
#include "support/text_helpers.hpp"

namespace ldg::cli {
namespace {

struct Arguments {
  std::string file;
  std::string from;
  std::string to;
  std::string format = "text";
};

std::string DocumentText(const std::string& text) {
  if (text.size() != 14 || text.find_first_not_of("0123456789") != std::string::npos) return text;
  const size_t first = text.find_first_not_of('0');
  return first == std::string::npos ? "0" : text.substr(first);
}

std::string Statement(const Variant& from, const Variant& to) {
  const std::string condition = DateRangeCondition("BookEntries.Date", from, to);
  return "SELECT BookEntries.ID AS EntryID, BookEntries.Date AS EntryDate, BookEntries.DocumentID, "
         "Journals.Code AS JournalCode, Accounts.Code AS AccountCode, Movements.Text, Movements.Amount "
         "FROM ((BookEntries INNER JOIN Movements ON BookEntries.ID = Movements.EntryID) "
         "INNER JOIN Accounts ON Movements.AccountID = Accounts.ID) "
         "LEFT JOIN Journals ON BookEntries.JournalID = Journals.ID" +
         (condition.empty() ? std::string() : " WHERE " + condition) +
         " ORDER BY BookEntries.Date, BookEntries.ID, Movements.ID;";
}

TableOutput EntryListing(store::Database& database, const Variant& from, const Variant& to) {
  TableOutput table({"Entry", "Date", "Doc", "Journal", "Account", "Text", "Amount"});
  table.AlignRight(0);
  table.AmountColumn(6);
  auto rows = database.OpenRecordset(Statement(from, to), store::dbOpenSnapshot);
  for (; !rows->Eof(); rows->MoveNext()) {
    table.AddRow({std::to_string(ReadLong(*rows, "EntryID")), Format(rows->Value("EntryDate"), "yyyy-mm-dd"),
                  DocumentText(ReadString(*rows, "DocumentID")), ReadString(*rows, "JournalCode"),
                  Trim(ReadString(*rows, "AccountCode")), ReadString(*rows, "Text"),
                  FormatMoney(ReadCurrency(*rows, "Amount"))});
  }
  rows->Close();
  return table;
}

void Run(const Arguments& arguments) {
  const OutputFormat format = ParseOutputFormat(arguments.format);
  const Variant from = IsoDateOption(arguments.from, "--from");
  const Variant to = IsoDateOption(arguments.to, "--to");
  OpenedYearFile opened(arguments.file);
  EntryListing(*opened.engine().Database(), from, to).Print(std::cout, format);
}

const bool kRegistered = RegisterCommand([](CLI::App& app) {
  auto* command = app.add_subcommand("entries", "List the book entries of a year file, one row per line");
  auto arguments = std::make_shared<Arguments>();
  command->add_option("file", arguments->file, "The year file")->required();
  command->add_option("--from", arguments->from, "First day (yyyy-mm-dd)");
  command->add_option("--to", arguments->to, "Last day (yyyy-mm-dd)");
  command->add_option("--format", arguments->format, "text, csv or json")->capture_default_str();
  command->callback([arguments] { Run(*arguments); });
});

}  // namespace
}  // namespace ldg::cli
