#include "support/csv_reader.hpp"

#include "support/error.hpp"

namespace ldg {

namespace {
constexpr int kEof = std::char_traits<char>::eof();
}  // namespace

CsvReader::CsvReader(std::istream& in) : in_(*in.rdbuf()) { SkipByteOrderMark(); }

bool CsvReader::Next(std::vector<std::string>& fields) {
  fields.clear();
  // Empty lines carry no record.
  while (in_.sgetc() == '\n' || in_.sgetc() == '\r') {
    EndOfLine(in_.sbumpc());
  }
  if (in_.sgetc() == kEof) return false;
  record_line_ = line_;
  for (;;) {
    fields.emplace_back();
    const FieldEnd end = ReadField(fields.back());
    if (end != FieldEnd::kComma) return true;
  }
}

bool CsvReader::ReadHeader() { return Next(header_); }

std::optional<size_t> CsvReader::Column(std::string_view name) const {
  for (size_t column = 0; column < header_.size(); ++column) {
    if (header_[column] == name) return column;
  }
  return std::nullopt;
}

CsvReader::FieldEnd CsvReader::ReadField(std::string& field) {
  if (in_.sgetc() == '"') {
    in_.sbumpc();
    return ReadQuotedField(field);
  }
  return ReadPlainField(field);
}

CsvReader::FieldEnd CsvReader::ReadQuotedField(std::string& field) {
  const size_t opened_on = line_;
  for (;;) {
    const int character = in_.sbumpc();
    if (character == kEof) Fail(opened_on, "a quoted field is not closed");
    if (character == '\n') ++line_;
    if (character != '"') {
      field.push_back(static_cast<char>(character));
      continue;
    }
    if (in_.sgetc() == '"') {
      field.push_back(static_cast<char>(in_.sbumpc()));
      continue;
    }
    const int after = in_.sbumpc();
    if (after == ',') return FieldEnd::kComma;
    if (after == kEof) return FieldEnd::kInput;
    if (after == '\n' || after == '\r') return EndOfLine(after);
    Fail(line_, "text follows the closing quote of a field");
  }
}

CsvReader::FieldEnd CsvReader::ReadPlainField(std::string& field) {
  for (;;) {
    const int character = in_.sbumpc();
    if (character == kEof) return FieldEnd::kInput;
    if (character == ',') return FieldEnd::kComma;
    if (character == '\n' || character == '\r') return EndOfLine(character);
    if (character == '"') Fail(line_, "a quote stands inside a field that does not begin with one");
    field.push_back(static_cast<char>(character));
  }
}

CsvReader::FieldEnd CsvReader::EndOfLine(int character) {
  if (character == '\r') {
    if (in_.sgetc() != '\n') Fail(line_, "a carriage return stands alone");
    in_.sbumpc();
  }
  ++line_;
  return FieldEnd::kRecord;
}

void CsvReader::SkipByteOrderMark() {
  static constexpr unsigned char kMark[] = {0xEF, 0xBB, 0xBF};
  if (in_.sgetc() != kMark[0]) return;
  in_.sbumpc();
  for (size_t i = 1; i < 3; ++i) {
    if (in_.sbumpc() != kMark[i]) Fail(1, "the input begins with a broken byte order mark");
  }
}

void CsvReader::Fail(size_t line, const std::string& what) const {
  throw Error(kErrInvalidCall, kAppTitle, "CSV line " + std::to_string(line) + ": " + what + ".");
}

}  // namespace ldg
