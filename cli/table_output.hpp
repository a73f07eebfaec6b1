// TableOutput: the rows a listing command prints, shown as an aligned text
// table, as CSV (RFC 4180) or as JSON (an array of objects keyed by column).
// Every listing takes --format text|csv|json.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace ldg::cli {

enum class OutputFormat { kText, kCsv, kJson };

// "text", "csv" or "json"; anything else is an ldg::Error.
OutputFormat ParseOutputFormat(const std::string& name);

class TableOutput {
 public:
  explicit TableOutput(std::vector<std::string> columns);

  // Right-aligns the column in text form (amounts, numbers).
  void AlignRight(size_t column);
  // An amount column: right-aligned in text form; in CSV and JSON its cells
  // lose their thousands separators, so that other programs read plain numbers.
  void AmountColumn(size_t column);
  void AddRow(std::vector<std::string> cells);
  size_t RowCount() const { return rows_.size(); }

  void Print(std::ostream& out, OutputFormat format) const;

 private:
  void PrintText(std::ostream& out) const;
  void PrintCsv(std::ostream& out) const;
  void PrintJson(std::ostream& out) const;
  // A cell as CSV and JSON show it.
  std::string PlainCell(size_t row, size_t column) const;

  std::vector<std::string> columns_;
  std::vector<bool> right_aligned_;
  std::vector<bool> amounts_;
  std::vector<std::vector<std::string>> rows_;
};

}  // namespace ldg::cli
