#include "support/csv_reader.hpp"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "support/error.hpp"

namespace ldg {
namespace {

using Fields = std::vector<std::string>;

// Every record of the text, each with the line it began on.
std::vector<std::pair<size_t, Fields>> ReadAll(const std::string& text) {
  std::istringstream in(text);
  CsvReader reader(in);
  std::vector<std::pair<size_t, Fields>> records;
  Fields fields;
  while (reader.Next(fields)) records.emplace_back(reader.LineNumber(), fields);
  return records;
}

std::string FailureOf(const std::string& text) {
  try {
    ReadAll(text);
  } catch (const Error& error) {
    EXPECT_EQ(error.Number(), kErrInvalidCall);
    EXPECT_EQ(error.Source(), kAppTitle);
    return error.Description();
  }
  return "";
}

TEST(CsvReader, SplitsPlainFieldsAtCommas) {
  const auto records = ReadAll("a,b,c\n1,,3\n");
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[0].second, (Fields{"a", "b", "c"}));
  EXPECT_EQ(records[1].second, (Fields{"1", "", "3"}));
}

TEST(CsvReader, QuotedFieldsHoldCommasAndDoubledQuotes) {
  const auto records = ReadAll("\"x, y\",\"say \"\"hi\"\"\",\"\"\n");
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].second, (Fields{"x, y", "say \"hi\"", ""}));
}

TEST(CsvReader, CrLfAndLfBothEndARecord) {
  const auto records = ReadAll("a,b\r\nc,d\ne,f\r\n");
  ASSERT_EQ(records.size(), 3u);
  EXPECT_EQ(records[0].second, (Fields{"a", "b"}));
  EXPECT_EQ(records[1].second, (Fields{"c", "d"}));
  EXPECT_EQ(records[2].second, (Fields{"e", "f"}));
}

TEST(CsvReader, TheLastRecordNeedsNoLineBreak) {
  const auto records = ReadAll("a,b\nc,\"d\"");
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[1].second, (Fields{"c", "d"}));
}

TEST(CsvReader, TrailingCommaGivesAnEmptyLastField) {
  const auto records = ReadAll("a,\n");
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].second, (Fields{"a", ""}));
}

TEST(CsvReader, QuotedFieldsHoldLineBreaksAndLineNumbersCountThem) {
  const auto records = ReadAll("h\n\"one\ntwo\r\nthree\",x\nlast\n");
  ASSERT_EQ(records.size(), 3u);
  EXPECT_EQ(records[1].second, (Fields{"one\ntwo\r\nthree", "x"}));
  EXPECT_EQ(records[1].first, 2u);
  EXPECT_EQ(records[2].second, (Fields{"last"}));
  EXPECT_EQ(records[2].first, 5u);
}

TEST(CsvReader, EmptyLinesAreSkippedButCounted) {
  const auto records = ReadAll("a\n\n\r\nb\n");
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(records[0].first, 1u);
  EXPECT_EQ(records[1].first, 4u);
  EXPECT_EQ(records[1].second, (Fields{"b"}));
}

TEST(CsvReader, EmptyInputHasNoRecords) {
  EXPECT_TRUE(ReadAll("").empty());
  EXPECT_TRUE(ReadAll("\n\n").empty());
}

TEST(CsvReader, DropsAByteOrderMark) {
  const auto records = ReadAll(
      "\xEF\xBB\xBF"
      "entry,date\n");
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].second, (Fields{"entry", "date"}));
}

TEST(CsvReader, KeepsBlanksAndNonAsciiText) {
  const auto records = ReadAll(" a , Erlöse \n");
  ASSERT_EQ(records.size(), 1u);
  EXPECT_EQ(records[0].second, (Fields{" a ", " Erlöse "}));
}

TEST(CsvReader, AnUnclosedQuoteNamesTheLineWhereItOpened) {
  EXPECT_EQ(FailureOf("a\nb,\"open\nmore\n"), "CSV line 2: a quoted field is not closed.");
}

TEST(CsvReader, TextAfterAClosingQuoteFails) {
  EXPECT_EQ(FailureOf("a\n\"x\"y,z\n"), "CSV line 2: text follows the closing quote of a field.");
}

TEST(CsvReader, AQuoteInsideAPlainFieldFails) {
  EXPECT_EQ(FailureOf("a\nb\nx\"y\n"),
            "CSV line 3: a quote stands inside a field that does not begin with one.");
}

TEST(CsvReader, ALoneCarriageReturnFails) {
  EXPECT_EQ(FailureOf("a\rb\n"), "CSV line 1: a carriage return stands alone.");
}

TEST(CsvReader, ALoneCarriageReturnAfterAQuotedFieldOrOnAnEmptyLineFails) {
  EXPECT_EQ(FailureOf("a\n\"x\"\ry\n"), "CSV line 2: a carriage return stands alone.");
  EXPECT_EQ(FailureOf("a\n\n\rb\n"), "CSV line 3: a carriage return stands alone.");
}

TEST(CsvReader, HeaderNamesTheColumns) {
  std::istringstream in("entry,date,amount\n1,2026-01-05,10\n");
  CsvReader reader(in);
  ASSERT_TRUE(reader.ReadHeader());
  EXPECT_EQ(reader.Header(), (Fields{"entry", "date", "amount"}));
  EXPECT_EQ(reader.Column("amount"), 2u);
  EXPECT_EQ(reader.Column("journal"), std::nullopt);
  EXPECT_EQ(reader.Column("Amount"), std::nullopt);
  Fields fields;
  ASSERT_TRUE(reader.Next(fields));
  EXPECT_EQ(reader.LineNumber(), 2u);
  EXPECT_EQ(fields[1], "2026-01-05");
  EXPECT_FALSE(reader.Next(fields));
}

TEST(CsvReader, HeaderOfEmptyInputIsMissing) {
  std::istringstream in("");
  CsvReader reader(in);
  EXPECT_FALSE(reader.ReadHeader());
}

}  // namespace
}  // namespace ldg
