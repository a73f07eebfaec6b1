#include "cli/table_output.hpp"

#include <gtest/gtest.h>

#include <sstream>

#include "support/error.hpp"

namespace ldg::cli {
namespace {

TableOutput SampleTable() {
  TableOutput table({"Code", "Name", "Balance"});
  table.AlignRight(2);
  table.AddRow({"1000", "Kasse", "1'250.00"});
  table.AddRow({"2000", "Kreditoren, \"Lieferanten\"", "-80.50"});
  return table;
}

std::string Printed(const TableOutput& table, OutputFormat format) {
  std::ostringstream out;
  table.Print(out, format);
  return out.str();
}

TEST(TableOutput, TextAlignsColumnsCountingCharactersNotBytes) {
  TableOutput table({"Name", "Saldo"});
  table.AlignRight(1);
  table.AddRow({"Bäckerei", "5.00"});
  table.AddRow({"Post", "12.00"});
  EXPECT_EQ(Printed(table, OutputFormat::kText),
            "Name      Saldo\n"
            "--------  -----\n"
            "Bäckerei   5.00\n"
            "Post      12.00\n");
}

TEST(TableOutput, CsvQuotesCellsWithCommasAndQuotes) {
  EXPECT_EQ(Printed(SampleTable(), OutputFormat::kCsv),
            "Code,Name,Balance\r\n"
            "1000,Kasse,1'250.00\r\n"
            "2000,\"Kreditoren, \"\"Lieferanten\"\"\",-80.50\r\n");
}

TEST(TableOutput, JsonIsAnArrayOfObjectsKeyedByColumn) {
  EXPECT_EQ(Printed(SampleTable(), OutputFormat::kJson),
            "[\n"
            " {\"Code\": \"1000\", \"Name\": \"Kasse\", \"Balance\": \"1'250.00\"},\n"
            " {\"Code\": \"2000\", \"Name\": \"Kreditoren, \\\"Lieferanten\\\"\", \"Balance\": \"-80.50\"}\n"
            "]\n");
}

TableOutput AmountTable() {
  TableOutput table({"Name", "Amount"});
  table.AmountColumn(1);
  table.AddRow({"O'Brien", "1'250'000.00"});
  return table;
}

TEST(TableOutput, AmountColumnsKeepTheirSeparatorsInText) {
  EXPECT_EQ(Printed(AmountTable(), OutputFormat::kText),
            "Name           Amount\n"
            "-------  ------------\n"
            "O'Brien  1'250'000.00\n");
}

TEST(TableOutput, AmountColumnsArePlainNumbersInCsvAndJsonOtherColumnsUntouched) {
  EXPECT_EQ(Printed(AmountTable(), OutputFormat::kCsv), "Name,Amount\r\nO'Brien,1250000.00\r\n");
  EXPECT_EQ(Printed(AmountTable(), OutputFormat::kJson),
            "[\n {\"Name\": \"O'Brien\", \"Amount\": \"1250000.00\"}\n]\n");
}

TEST(TableOutput, EmptyJsonListIsAnEmptyArray) {
  EXPECT_EQ(Printed(TableOutput({"A"}), OutputFormat::kJson), "[]\n");
}

TEST(TableOutput, UnknownFormatNamesTheChoices) {
  try {
    ParseOutputFormat("xml");
    FAIL() << "no error";
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), 5);
    EXPECT_EQ(error.Description(), "Unknown output format 'xml': use text, csv or json.");
  }
}

}  // namespace
}  // namespace ldg::cli
