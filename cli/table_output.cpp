#include "cli/table_output.hpp"

#include <algorithm>

#include "support/error.hpp"
#include "support/text.hpp"

namespace ldg::cli {

namespace {

std::string CsvCell(const std::string& cell) {
  if (cell.find_first_of(",\"\r\n") == std::string::npos) return cell;
  std::string quoted = "\"";
  for (char c : cell) {
    if (c == '"') quoted += '"';
    quoted += c;
  }
  return quoted + "\"";
}

std::string JsonString(const std::string& text) {
  std::string out = "\"";
  for (unsigned char c : text) {
    switch (c) {
      case '"': out += "\\\""; break;
      case '\\': out += "\\\\"; break;
      case '\n': out += "\\n"; break;
      case '\r': out += "\\r"; break;
      case '\t': out += "\\t"; break;
      default:
        if (c < 0x20) {
          static const char* kHex = "0123456789abcdef";
          out += "\\u00";
          out += kHex[c >> 4];
          out += kHex[c & 15];
        } else {
          out += static_cast<char>(c);
        }
    }
  }
  return out + "\"";
}

}  // namespace

OutputFormat ParseOutputFormat(const std::string& name) {
  if (name == "text") return OutputFormat::kText;
  if (name == "csv") return OutputFormat::kCsv;
  if (name == "json") return OutputFormat::kJson;
  throw Error(kErrInvalidCall, kAppTitle, "Unknown output format '" + name + "': use text, csv or json.");
}

TableOutput::TableOutput(std::vector<std::string> columns)
    : columns_(std::move(columns)), right_aligned_(columns_.size(), false), amounts_(columns_.size(), false) {}

void TableOutput::AlignRight(size_t column) { right_aligned_.at(column) = true; }

void TableOutput::AmountColumn(size_t column) {
  AlignRight(column);
  amounts_.at(column) = true;
}

std::string TableOutput::PlainCell(size_t row, size_t column) const {
  std::string cell = rows_[row][column];
  if (amounts_[column]) std::erase(cell, '\'');
  return cell;
}

void TableOutput::AddRow(std::vector<std::string> cells) {
  cells.resize(columns_.size());
  rows_.push_back(std::move(cells));
}

void TableOutput::Print(std::ostream& out, OutputFormat format) const {
  switch (format) {
    case OutputFormat::kText: PrintText(out); break;
    case OutputFormat::kCsv: PrintCsv(out); break;
    case OutputFormat::kJson: PrintJson(out); break;
  }
}

void TableOutput::PrintText(std::ostream& out) const {
  std::vector<size_t> widths(columns_.size());
  for (size_t c = 0; c < columns_.size(); ++c) {
    widths[c] = Len(columns_[c]);
    for (const auto& row : rows_) widths[c] = std::max(widths[c], Len(row[c]));
  }
  auto print_row = [&](const std::vector<std::string>& cells) {
    std::string line;
    for (size_t c = 0; c < cells.size(); ++c) {
      std::string pad(widths[c] - Len(cells[c]), ' ');
      if (c > 0) line += "  ";
      line += right_aligned_[c] ? pad + cells[c] : cells[c] + pad;
    }
    while (!line.empty() && line.back() == ' ') line.pop_back();
    out << line << "\n";
  };
  print_row(columns_);
  std::vector<std::string> rule;
  for (size_t width : widths) rule.emplace_back(width, '-');
  print_row(rule);
  for (const auto& row : rows_) print_row(row);
}

void TableOutput::PrintCsv(std::ostream& out) const {
  for (size_t c = 0; c < columns_.size(); ++c) out << (c ? "," : "") << CsvCell(columns_[c]);
  out << "\r\n";
  for (size_t r = 0; r < rows_.size(); ++r) {
    for (size_t c = 0; c < columns_.size(); ++c) out << (c ? "," : "") << CsvCell(PlainCell(r, c));
    out << "\r\n";
  }
}

void TableOutput::PrintJson(std::ostream& out) const {
  out << "[";
  for (size_t r = 0; r < rows_.size(); ++r) {
    out << (r ? ",\n " : "\n ") << "{";
    for (size_t c = 0; c < columns_.size(); ++c) {
      out << (c ? ", " : "") << JsonString(columns_[c]) << ": " << JsonString(PlainCell(r, c));
    }
    out << "}";
  }
  out << (rows_.empty() ? "]\n" : "\n]\n");
}

}  // namespace ldg::cli
