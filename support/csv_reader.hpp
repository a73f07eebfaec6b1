// CsvReader: reads comma-separated text as RFC 4180 has it, one record at a
// time from a stream: fields in double quotes may hold commas, line breaks and
// doubled quotes (""); records end with CRLF or LF. Lines with nothing on them
// are skipped, a UTF-8 byte order mark at the start is dropped. Each record
// knows the line it began on, so a caller can name the line of a bad value.
// Malformed quoting raises an ldg::Error (run-time error 5) naming its line.
#pragma once

#include <cstddef>
#include <istream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ldg {

class CsvReader {
 public:
  explicit CsvReader(std::istream& in);
  CsvReader(const CsvReader&) = delete;
  CsvReader& operator=(const CsvReader&) = delete;

  // The next record into fields; false at the end of the input.
  bool Next(std::vector<std::string>& fields);
  // The one-based line on which the record last read began.
  size_t LineNumber() const { return record_line_; }

  // Reads the first record as the names of the columns; false on empty input.
  bool ReadHeader();
  const std::vector<std::string>& Header() const { return header_; }
  // The position of a column by its name in the header, compared exactly.
  std::optional<size_t> Column(std::string_view name) const;

 private:
  enum class FieldEnd { kComma, kRecord, kInput };

  FieldEnd ReadField(std::string& field);
  FieldEnd ReadQuotedField(std::string& field);
  FieldEnd ReadPlainField(std::string& field);
  // Consumes a line break (LF or CRLF) whose first character was just read;
  // a CR with no LF after it is an error.
  FieldEnd EndOfLine(int character);
  void SkipByteOrderMark();
  [[noreturn]] void Fail(size_t line, const std::string& what) const;

  std::streambuf& in_;
  size_t line_ = 1;
  size_t record_line_ = 0;
  std::vector<std::string> header_;
};

}  // namespace ldg
