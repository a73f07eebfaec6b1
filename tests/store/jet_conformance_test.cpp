// Runs the Jet conformance files tests/data/jet/*.test. Each file runs twice,
// as two tests:
//   raw    each statement goes through the translator and runs on a fresh
//          in-memory SQLite connection with the Jet functions registered and
//          an in-memory catalog of the fixture tables and stored queries;
//   store  each file runs through the record store's public interface: a new
//          database file in a scratch folder, fixture tables made as table
//          definitions with their Jet types (a Counter is an auto-increment
//          field with the index PrimaryKey), rows added through a table-type
//          record set, stored queries as named query definitions, statements
//          through Database::Execute with dbFailOnError and queries through a
//          snapshot record set read field by field; a record with "param"
//          lines runs through a temporary query definition whose Parameters
//          take the values.
// Both modes compare the same expected rows, names, types and error numbers.
// Records are separated by blank lines; "#" starts a comment line.
//
//   mode raw                            first line of a record that only the
//                                       raw mode runs (a comment says why)
//   include book.fixture                records of another file of the folder
//   table Accounts                      a fixture table: a line of columns
//   ID Counter, Code Text, Balance Currency
//   1, '1000', 12.5                     then one line per row (Jet literals)
//
//   storedquery viewName                a stored query: its Jet text follows
//   SELECT ...
//
//   statement ok | statement error 3075 a statement that runs or fails
//   UPDATE ...
//
//   query [rowsort] | query error 3061  a statement whose rows are checked
//   param Search = '1'                  optional parameter values
//   SELECT ...
//   ----
//   names Code|Balance                  optional: the output names
//   types Text|Currency                 optional: the output types
//   1000|12.5                           expected rows, "|" between values
//
// Values print by their Jet type: Currency exactly ("12.5"), Booleans as
// True/False, dates as m/d/yyyy with h:nn:ss when there is a time, Null as
// NULL and an empty text as (empty). Failures of the functions map to the
// store's numbers: "integer overflow" to 6, an invalid pattern to 3075.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

#include "store/constants.hpp"
#include "store/db_engine.hpp"
#include "store/jet/lexer.hpp"
#include "store/jet/translator.hpp"
#include "store/sqlite/jet_functions.hpp"
#include "support/currency.hpp"
#include "support/error.hpp"
#include "support/ole_date.hpp"
#include "support/text.hpp"
#include "tests/store/jet_memory_catalog.hpp"

namespace ldg::store::jet {
namespace {

struct Literal {
  enum class Kind { kNull, kNumber, kText, kDate, kBoolean };
  Kind kind = Kind::kNull;
  std::string text;  // number as written, or the text
  double date = 0.0;
  bool truth = false;
};

std::string Trimmed(std::string_view text) {
  size_t start = 0, end = text.size();
  while (start < end && (text[start] == ' ' || text[start] == '\t')) ++start;
  while (end > start && (text[end - 1] == ' ' || text[end - 1] == '\t' || text[end - 1] == '\r')) --end;
  return std::string(text.substr(start, end - start));
}

Literal ParseLiteral(const std::string& raw) {
  const std::string text = Trimmed(raw);
  Literal literal;
  if (text == "NULL" || text.empty()) return literal;
  if (text.front() == '\'') {
    literal.kind = Literal::Kind::kText;
    for (size_t i = 1; i + 1 < text.size(); ++i) {
      literal.text += text[i];
      if (text[i] == '\'') ++i;
    }
  } else if (text.front() == '#') {
    literal.kind = Literal::Kind::kDate;
    literal.date = ParseDateLiteral(text.substr(1, text.size() - 2));
  } else if (EqualsNoCase(text, "True") || EqualsNoCase(text, "False")) {
    literal.kind = Literal::Kind::kBoolean;
    literal.truth = EqualsNoCase(text, "True");
  } else {
    literal.kind = Literal::Kind::kNumber;
    literal.text = text;
  }
  return literal;
}

// Splits at commas outside '...' and #...#.
std::vector<std::string> SplitRow(const std::string& line) {
  std::vector<std::string> fields;
  std::string current;
  char open = 0;
  for (char c : line) {
    if (open != 0) {
      if (c == open) open = 0;
    } else if (c == '\'' || c == '#') {
      open = c;
    } else if (c == ',') {
      fields.push_back(current);
      current.clear();
      continue;
    }
    current += c;
  }
  fields.push_back(current);
  return fields;
}

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::string current;
  for (char c : text) {
    if (c == separator) {
      parts.push_back(current);
      current.clear();
    } else {
      current += c;
    }
  }
  parts.push_back(current);
  return parts;
}

FieldType TypeNamed(const std::string& name) {
  static const std::pair<const char*, FieldType> kTypes[] = {
      {"Counter", FieldType::kLong},  {"Long", FieldType::kLong},       {"Integer", FieldType::kInteger},
      {"Byte", FieldType::kByte},     {"Boolean", FieldType::kBoolean}, {"Currency", FieldType::kCurrency},
      {"Double", FieldType::kDouble}, {"Single", FieldType::kSingle},   {"Date", FieldType::kDate},
      {"Text", FieldType::kText},     {"Memo", FieldType::kMemo},       {"Unknown", FieldType::kUnknown}};
  for (const auto& [word, type] : kTypes) {
    if (EqualsNoCase(word, name)) return type;
  }
  ADD_FAILURE() << "unknown type " << name;
  return FieldType::kUnknown;
}

std::string TypeName(FieldType type) {
  switch (type) {
    case FieldType::kLong:
      return "Long";
    case FieldType::kInteger:
      return "Integer";
    case FieldType::kByte:
      return "Byte";
    case FieldType::kBoolean:
      return "Boolean";
    case FieldType::kCurrency:
      return "Currency";
    case FieldType::kDouble:
      return "Double";
    case FieldType::kSingle:
      return "Single";
    case FieldType::kDate:
      return "Date";
    case FieldType::kText:
      return "Text";
    case FieldType::kMemo:
      return "Memo";
    case FieldType::kUnknown:
      return "Unknown";
  }
  return "?";
}

class StoreFailure {
 public:
  int number;
  std::string text;
};

enum class Mode { kRaw, kStore };

class ConformanceFile {
 public:
  ConformanceFile(std::filesystem::path path, Mode mode) : path_(std::move(path)), mode_(mode) {
    if (mode_ == Mode::kRaw) {
      EXPECT_EQ(sqlite3_open(":memory:", &db_), SQLITE_OK);
      sqlite::RegisterJetFunctions(db_);
      return;
    }
    folder_ = std::filesystem::temp_directory_path() /
              ("ldg_jet_" + std::to_string(::getpid()) + "_" + path_.stem().string());
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
    const std::string file = (folder_ / "book.qdb").string();
    engine_ = NewSqliteEngine();
    engine_->CreateDatabase(file)->Close();
    workspace_ = engine_->CreateWorkspace("", "admin", "", dbUseJet);
    store_ = workspace_->OpenDatabase(file);
  }
  ~ConformanceFile() {
    if (db_ != nullptr) sqlite3_close(db_);
    if (mode_ == Mode::kStore) {
      store_.reset();
      workspace_.reset();
      engine_.reset();
      std::error_code ignored;
      std::filesystem::remove_all(folder_, ignored);
    }
  }
  ConformanceFile(const ConformanceFile&) = delete;
  ConformanceFile& operator=(const ConformanceFile&) = delete;

  void Run() { RunPath(path_); }

 private:
  void RunPath(const std::filesystem::path& path) {
    std::ifstream in(path);
    ASSERT_TRUE(in) << path;
    std::vector<std::pair<int, std::string>> record;
    std::string line;
    int number = 0;
    while (std::getline(in, line)) {
      ++number;
      if (!line.empty() && line.back() == '\r') line.pop_back();
      if (!line.empty() && line[0] == '#') continue;
      if (Trimmed(line).empty()) {
        RunRecord(path, record);
        record.clear();
        continue;
      }
      record.emplace_back(number, line);
    }
    RunRecord(path, record);
  }

  void RunRecord(const std::filesystem::path& path, const std::vector<std::pair<int, std::string>>& record) {
    if (record.empty()) return;
    SCOPED_TRACE(path.filename().string() + ":" + std::to_string(record[0].first));
    if (Trimmed(record[0].second) == "mode raw") {
      if (mode_ == Mode::kStore) {
        ++raw_only_;
        return;
      }
      return RunRecord(path, {record.begin() + 1, record.end()});
    }
    if (mode_ == Mode::kStore && (HeadIs(record, "statement") || HeadIs(record, "query"))) ++store_records_;
    const std::string& head = record[0].second;
    if (head.rfind("include ", 0) == 0) return RunPath(path.parent_path() / Trimmed(head.substr(8)));
    if (head.rfind("table ", 0) == 0) return CreateTable(Trimmed(head.substr(6)), record);
    if (head.rfind("storedquery ", 0) == 0) return StoreQuery(Trimmed(head.substr(12)), record);
    if (head.rfind("statement", 0) == 0) return RunStatement(head, record);
    if (head.rfind("query", 0) == 0) return RunQuery(head, record);
    ADD_FAILURE() << "unknown record: " << head;
  }

  static bool HeadIs(const std::vector<std::pair<int, std::string>>& record, const char* word) {
    return record[0].second.rfind(word, 0) == 0;
  }

  void CreateTable(const std::string& name, const std::vector<std::pair<int, std::string>>& record) {
    ASSERT_GE(record.size(), 2u);
    std::vector<Catalog::Column> columns;
    std::vector<std::string> definitions;
    for (const std::string& part : Split(record[1].second, ',')) {
      std::istringstream words(part);
      std::string column, type;
      words >> column >> type;
      const FieldType field_type = TypeNamed(type);
      columns.push_back({column, field_type});
      if (mode_ == Mode::kStore) continue;
      std::string sql_type = "INTEGER";
      if (EqualsNoCase(type, "Counter")) sql_type = "INTEGER PRIMARY KEY";
      if (field_type == FieldType::kDouble || field_type == FieldType::kSingle ||
          field_type == FieldType::kDate) {
        sql_type = "REAL";
      }
      if (field_type == FieldType::kText || field_type == FieldType::kMemo) sql_type = "TEXT COLLATE JET";
      definitions.push_back("\"" + column + "\" " + sql_type);
    }
    if (mode_ == Mode::kStore) return CreateStoreTable(name, record, columns);
    std::string create = "CREATE TABLE \"" + name + "\" (";
    for (size_t i = 0; i < definitions.size(); ++i) create += (i > 0 ? ", " : "") + definitions[i];
    Exec(create + ")");
    catalog_.AddTable(name, columns);
    for (size_t r = 2; r < record.size(); ++r) {
      SCOPED_TRACE("row at line " + std::to_string(record[r].first));
      const std::vector<std::string> fields = SplitRow(record[r].second);
      ASSERT_EQ(fields.size(), columns.size());
      std::string insert = "INSERT INTO \"" + name + "\" VALUES (";
      for (size_t i = 0; i < fields.size(); ++i) insert += i > 0 ? ", ?" : "?";
      sqlite3_stmt* statement = nullptr;
      ASSERT_EQ(sqlite3_prepare_v2(db_, (insert + ")").c_str(), -1, &statement, nullptr), SQLITE_OK);
      for (size_t i = 0; i < fields.size(); ++i) {
        Bind(statement, static_cast<int>(i + 1), ParseLiteral(fields[i]), columns[i].type);
      }
      EXPECT_EQ(sqlite3_step(statement), SQLITE_DONE) << sqlite3_errmsg(db_);
      sqlite3_finalize(statement);
    }
  }

  void StoreQuery(const std::string& name, const std::vector<std::pair<int, std::string>>& record) {
    std::string text;
    for (size_t i = 1; i < record.size(); ++i) text += (i > 1 ? "\n" : "") + record[i].second;
    if (mode_ == Mode::kStore) {
      try {
        store_->CreateQueryDef(name, text);
      } catch (const Error& error) {
        ADD_FAILURE() << "stored query " << name << ": " << error.Number() << " " << error.Description();
      }
      return;
    }
    catalog_.AddQuery(name, text);
  }

  void CreateStoreTable(const std::string& name, const std::vector<std::pair<int, std::string>>& record,
                        const std::vector<Catalog::Column>& columns) {
    std::vector<bool> counters;
    for (const std::string& part : Split(record[1].second, ',')) {
      std::istringstream words(part);
      std::string column, type;
      words >> column >> type;
      counters.push_back(EqualsNoCase(type, "Counter"));
    }
    try {
      auto table = store_->CreateTableDef(name);
      std::string counter;
      for (size_t i = 0; i < columns.size(); ++i) {
        const FieldType type = columns[i].type;
        auto field = table->CreateField(columns[i].name, type, type == FieldType::kText ? 255 : 0);
        if (counters[i]) {
          field->Attributes(dbAutoIncrField);
          counter = columns[i].name;
        }
        table->Fields().Append(field);
      }
      if (!counter.empty()) {
        auto index = table->CreateIndex("PrimaryKey");
        index->Primary(true);
        index->Unique(true);
        index->Fields().Append(index->CreateField(counter));
        table->Indexes().Append(index);
      }
      store_->TableDefs().Append(table);
    } catch (const Error& error) {
      FAIL() << "table " << name << ": " << error.Number() << " " << error.Description();
    }
    for (size_t r = 2; r < record.size(); ++r) {
      SCOPED_TRACE("row at line " + std::to_string(record[r].first));
      const std::vector<std::string> fields = SplitRow(record[r].second);
      ASSERT_EQ(fields.size(), columns.size());
      try {
        auto rs = store_->OpenRecordset(name, dbOpenTable);
        rs->AddNew();
        for (size_t i = 0; i < fields.size(); ++i) {
          rs->Fields().Item(columns[i].name).Value(ToVariant(ParseLiteral(fields[i]), columns[i].type));
        }
        rs->Update();
      } catch (const Error& error) {
        ADD_FAILURE() << error.Number() << " " << error.Description();
      }
    }
  }

  // A fixture or parameter value as the store takes it for a field of the type.
  static Variant ToVariant(const Literal& value, FieldType type) {
    switch (value.kind) {
      case Literal::Kind::kNull:
        return Variant::Null();
      case Literal::Kind::kText:
        if (type == FieldType::kDate) return Variant(OleDate(ParseDateLiteral(value.text)));
        return Variant(value.text);
      case Literal::Kind::kDate:
        return Variant(OleDate(value.date));
      case Literal::Kind::kBoolean:
        return Variant(value.truth);
      case Literal::Kind::kNumber:
        break;
    }
    switch (type) {
      case FieldType::kCurrency:
        return Variant(Currency::Parse(value.text).value());
      case FieldType::kText:
      case FieldType::kMemo:
        return Variant(value.text);
      case FieldType::kBoolean:
        return Variant(std::stod(value.text) != 0);
      case FieldType::kByte:
        return Variant(static_cast<uint8_t>(std::stoi(value.text)));
      case FieldType::kInteger:
        return Variant(static_cast<int16_t>(std::stoi(value.text)));
      case FieldType::kLong:
        return Variant(static_cast<int32_t>(std::stol(value.text)));
      case FieldType::kSingle:
        return Variant(std::stof(value.text));
      case FieldType::kDate:
        return Variant(OleDate(std::stod(value.text)));
      default:
        break;
    }
    if (value.text.find_first_of(".eE") == std::string::npos) {
      const long long number = std::stoll(value.text);
      if (number >= INT32_MIN && number <= INT32_MAX) return Variant(static_cast<int32_t>(number));
    }
    return Variant(std::stod(value.text));
  }

  static std::string RenderVariant(const Variant& value) {
    char buffer[64];
    switch (value.Type()) {
      case VarType::kEmpty:
      case VarType::kNull:
        return "NULL";
      case VarType::kBoolean:
        return value.AsBoolean() ? "True" : "False";
      case VarType::kByte:
        return std::to_string(value.AsByte());
      case VarType::kInteger:
        return std::to_string(value.AsInteger());
      case VarType::kLong:
        return std::to_string(value.AsLong());
      case VarType::kCurrency:
        return value.AsCurrency().ToString();
      case VarType::kSingle:
        std::snprintf(buffer, sizeof buffer, "%.15g", static_cast<double>(value.AsSingle()));
        return buffer;
      case VarType::kDouble:
        std::snprintf(buffer, sizeof buffer, "%.15g", value.AsDouble());
        return buffer;
      case VarType::kDate:
        return RenderDate(value.AsDate().Serial());
      case VarType::kString:
        return value.AsString().empty() ? "(empty)" : value.AsString();
      default:
        return "?";
    }
  }

  static std::string RenderDate(double serial) {
    const CivilTime time = OleDate(serial).ToCivil();
    char buffer[64];
    if (time.hour == 0 && time.minute == 0 && time.second == 0) {
      std::snprintf(buffer, sizeof buffer, "%d/%d/%d", time.month, time.day, time.year);
    } else {
      std::snprintf(buffer, sizeof buffer, "%d/%d/%d %d:%02d:%02d", time.month, time.day, time.year, time.hour,
                    time.minute, time.second);
    }
    return buffer;
  }

  // Runs a statement or query through the store; a query's rows and columns
  // land in rows and columns.
  void StoreExecute(const std::string& text, const std::vector<std::pair<std::string, Literal>>& values,
                    std::vector<std::vector<std::string>>& rows, std::vector<ResultColumn>* columns) {
    try {
      std::unique_ptr<Recordset> rs;
      if (values.empty()) {
        if (columns == nullptr) {
          store_->Execute(text, dbFailOnError);
          return;
        }
        rs = store_->OpenRecordset(text, dbOpenSnapshot);
      } else {
        auto query = store_->CreateQueryDef("", text);
        for (const auto& [name, value] : values) {
          store::Parameter& parameter = query->Parameters().Item(name);
          const FieldType type = parameter.Type();
          parameter.Value(ToVariant(value, type));
        }
        if (columns == nullptr) {
          query->Execute(dbFailOnError);
          return;
        }
        rs = query->OpenRecordset(dbOpenSnapshot);
      }
      store::Fields& fields = rs->Fields();
      for (int c = 0; c < fields.Count(); ++c) {
        ResultColumn column;
        column.name = fields.Item(c).Name();
        column.type = fields.Item(c).Type();
        columns->push_back(column);
      }
      for (; !rs->Eof(); rs->MoveNext()) {
        std::vector<std::string> row;
        for (int c = 0; c < fields.Count(); ++c) row.push_back(RenderVariant(fields.Item(c).Value()));
        rows.push_back(std::move(row));
      }
    } catch (const Error& error) {
      throw StoreFailure{error.Number(), error.Description()};
    }
  }

  static int ExpectedError(const std::string& head) {
    const size_t at = head.find("error");
    return at == std::string::npos ? 0 : std::stoi(head.substr(at + 5));
  }

  void RunStatement(const std::string& head, const std::vector<std::pair<int, std::string>>& record) {
    std::vector<std::pair<std::string, Literal>> parameters;
    std::string text;
    for (size_t i = 1; i < record.size(); ++i) {
      if (!ReadParameter(record[i].second, parameters)) text += (text.empty() ? "" : "\n") + record[i].second;
    }
    const int expected = ExpectedError(head);
    try {
      std::vector<std::vector<std::string>> rows;
      if (mode_ == Mode::kStore) {
        StoreExecute(text, parameters, rows, nullptr);
      } else {
        Execute(text, parameters, rows, nullptr);
      }
      EXPECT_EQ(expected, 0) << "no error, expected " << expected;
    } catch (const StoreFailure& failure) {
      EXPECT_EQ(failure.number, expected) << failure.text;
    }
  }

  void RunQuery(const std::string& head, const std::vector<std::pair<int, std::string>>& record) {
    std::vector<std::pair<std::string, Literal>> parameters;
    std::string text;
    size_t i = 1;
    for (; i < record.size() && record[i].second != "----"; ++i) {
      if (!ReadParameter(record[i].second, parameters)) text += (text.empty() ? "" : "\n") + record[i].second;
    }
    std::vector<std::string> expected_rows;
    std::string expected_names, expected_types;
    for (++i; i < record.size(); ++i) {
      const std::string& line = record[i].second;
      if (line.rfind("names ", 0) == 0) {
        expected_names = line.substr(6);
      } else if (line.rfind("types ", 0) == 0) {
        expected_types = line.substr(6);
      } else {
        expected_rows.push_back(line);
      }
    }
    const int expected_error = ExpectedError(head);
    try {
      std::vector<std::vector<std::string>> rows;
      std::vector<ResultColumn> columns;
      if (mode_ == Mode::kStore) {
        StoreExecute(text, parameters, rows, &columns);
      } else {
        Translation translation;
        Execute(text, parameters, rows, &translation);
        columns = translation.columns;
      }
      EXPECT_EQ(expected_error, 0) << "no error, expected " << expected_error;
      std::vector<std::string> actual_rows;
      for (const auto& row : rows) actual_rows.push_back(JoinBar(row));
      if (head.find("rowsort") != std::string::npos) {
        std::sort(actual_rows.begin(), actual_rows.end());
        std::sort(expected_rows.begin(), expected_rows.end());
      }
      EXPECT_EQ(actual_rows, expected_rows);
      std::vector<std::string> names, types;
      for (const ResultColumn& column : columns) {
        names.push_back(column.name);
        types.push_back(TypeName(column.type));
      }
      if (!expected_names.empty()) {
        EXPECT_EQ(JoinBar(names), expected_names);
      }
      if (!expected_types.empty()) {
        EXPECT_EQ(JoinBar(types), expected_types);
      }
    } catch (const StoreFailure& failure) {
      EXPECT_EQ(failure.number, expected_error) << failure.text;
    }
  }

  static bool ReadParameter(const std::string& line,
                            std::vector<std::pair<std::string, Literal>>& parameters) {
    if (line.rfind("param ", 0) != 0) return false;
    const size_t equals = line.find('=');
    parameters.emplace_back(Trimmed(line.substr(6, equals - 6)), ParseLiteral(line.substr(equals + 1)));
    return true;
  }

  static std::string JoinBar(const std::vector<std::string>& parts) {
    std::string out;
    for (size_t i = 0; i < parts.size(); ++i) out += (i > 0 ? "|" : "") + parts[i];
    return out;
  }

  void Execute(const std::string& text, const std::vector<std::pair<std::string, Literal>>& values,
               std::vector<std::vector<std::string>>& rows, Translation* out) {
    Translation translation;
    try {
      translation = Translate(text, catalog_);
    } catch (const Error& error) {
      throw StoreFailure{error.Number(), error.Description()};
    }
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(db_, translation.sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) {
      throw StoreFailure{-1, std::string(sqlite3_errmsg(db_)) + " in " + translation.sql};
    }
    std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> guard(statement, sqlite3_finalize);
    int missing = 0;
    for (size_t i = 0; i < translation.parameters.size(); ++i) {
      const Parameter& parameter = translation.parameters[i];
      const auto found = std::find_if(values.begin(), values.end(), [&](const auto& value) {
        return EqualsNoCase(value.first, parameter.name);
      });
      if (found == values.end()) {
        ++missing;
        continue;
      }
      const FieldType type = parameter.type != FieldType::kUnknown ? parameter.type : parameter.meets;
      Bind(statement, static_cast<int>(i + 1), found->second, type);
    }
    if (missing > 0)
      throw StoreFailure{3061, "Too few parameters. Expected " + std::to_string(missing) + "."};
    while (true) {
      const int step = sqlite3_step(statement);
      if (step == SQLITE_DONE) break;
      if (step != SQLITE_ROW) {
        const std::string message = sqlite3_errmsg(db_);
        if (message.find("integer overflow") != std::string::npos) throw StoreFailure{6, message};
        if (message.find("Invalid pattern") != std::string::npos) throw StoreFailure{3075, message};
        throw StoreFailure{-1, message + " in " + translation.sql};
      }
      std::vector<std::string> row;
      for (int c = 0; c < sqlite3_column_count(statement); ++c) {
        const FieldType type = static_cast<size_t>(c) < translation.columns.size()
                                   ? translation.columns[static_cast<size_t>(c)].type
                                   : FieldType::kUnknown;
        row.push_back(Render(statement, c, type));
      }
      rows.push_back(std::move(row));
    }
    if (out != nullptr) *out = std::move(translation);
  }

  static void Bind(sqlite3_stmt* statement, int index, const Literal& value, FieldType type) {
    switch (value.kind) {
      case Literal::Kind::kNull:
        sqlite3_bind_null(statement, index);
        return;
      case Literal::Kind::kText:
        if (type == FieldType::kDate) {
          sqlite3_bind_double(statement, index, ParseDateLiteral(value.text));
        } else {
          sqlite3_bind_text(statement, index, value.text.c_str(), -1, SQLITE_TRANSIENT);
        }
        return;
      case Literal::Kind::kDate:
        sqlite3_bind_double(statement, index, value.date);
        return;
      case Literal::Kind::kBoolean:
        sqlite3_bind_int(statement, index, value.truth ? -1 : 0);
        return;
      case Literal::Kind::kNumber:
        break;
    }
    if (type == FieldType::kCurrency) {
      sqlite3_bind_int64(statement, index, Currency::Parse(value.text).value().Raw());
    } else if (type == FieldType::kText || type == FieldType::kMemo) {
      sqlite3_bind_text(statement, index, value.text.c_str(), -1, SQLITE_TRANSIENT);
    } else if (value.text.find_first_of(".eE") == std::string::npos && type != FieldType::kDouble &&
               type != FieldType::kSingle && type != FieldType::kDate) {
      sqlite3_bind_int64(statement, index, std::stoll(value.text));
    } else {
      sqlite3_bind_double(statement, index, std::stod(value.text));
    }
  }

  static std::string Render(sqlite3_stmt* statement, int column, FieldType type) {
    const int kind = sqlite3_column_type(statement, column);
    if (kind == SQLITE_NULL) return "NULL";
    switch (type) {
      case FieldType::kCurrency:
        if (kind == SQLITE_INTEGER)
          return Currency::FromRaw(sqlite3_column_int64(statement, column)).ToString();
        break;
      case FieldType::kBoolean:
        return sqlite3_column_int64(statement, column) != 0 ? "True" : "False";
      case FieldType::kDate: {
        const CivilTime time = OleDate(sqlite3_column_double(statement, column)).ToCivil();
        char buffer[64];
        if (time.hour == 0 && time.minute == 0 && time.second == 0) {
          std::snprintf(buffer, sizeof buffer, "%d/%d/%d", time.month, time.day, time.year);
        } else {
          std::snprintf(buffer, sizeof buffer, "%d/%d/%d %d:%02d:%02d", time.month, time.day, time.year,
                        time.hour, time.minute, time.second);
        }
        return buffer;
      }
      case FieldType::kDouble:
      case FieldType::kSingle: {
        char buffer[40];
        std::snprintf(buffer, sizeof buffer, "%.15g", sqlite3_column_double(statement, column));
        return buffer;
      }
      default:
        break;
    }
    if (kind == SQLITE_FLOAT) {
      char buffer[40];
      std::snprintf(buffer, sizeof buffer, "%.15g", sqlite3_column_double(statement, column));
      return buffer;
    }
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    const std::string value = text == nullptr ? "" : text;
    return value.empty() ? "(empty)" : value;
  }

  void Exec(const std::string& sql) {
    char* message = nullptr;
    EXPECT_EQ(sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &message), SQLITE_OK)
        << (message != nullptr ? message : "") << " in " << sql;
    sqlite3_free(message);
  }

  std::filesystem::path path_;
  Mode mode_;
  sqlite3* db_ = nullptr;
  MemoryCatalog catalog_;
  std::filesystem::path folder_;
  std::unique_ptr<DBEngine> engine_;
  std::shared_ptr<Workspace> workspace_;
  std::shared_ptr<Database> store_;

 public:
  int store_records_ = 0;  // statement and query records the store mode ran
  int raw_only_ = 0;       // records it left to the raw mode
};

std::vector<std::string> ConformanceFiles() {
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(std::string(LDG_TEST_DATA) + "/jet")) {
    if (entry.path().extension() == ".test") files.push_back(entry.path().string());
  }
  std::sort(files.begin(), files.end());
  return files;
}

struct ModeAndFile {
  Mode mode;
  std::string file;
};

void PrintTo(const ModeAndFile& value, std::ostream* out) {
  *out << (value.mode == Mode::kRaw ? "raw " : "store ") << std::filesystem::path(value.file).filename().string();
}

std::vector<ModeAndFile> ModesAndFiles() {
  std::vector<ModeAndFile> out;
  for (Mode mode : {Mode::kRaw, Mode::kStore}) {
    for (const std::string& file : ConformanceFiles()) out.push_back({mode, file});
  }
  return out;
}

class JetConformance : public ::testing::TestWithParam<ModeAndFile> {};

TEST_P(JetConformance, FileRunsAsWritten) {
  ConformanceFile file(GetParam().file, GetParam().mode);
  file.Run();
  if (GetParam().mode == Mode::kStore) {
    RecordProperty("store_records", file.store_records_);
    RecordProperty("raw_only", file.raw_only_);
    std::printf("[ store    ] %s: %d statements and queries, %d raw-only\n",
                std::filesystem::path(GetParam().file).filename().string().c_str(), file.store_records_,
                file.raw_only_);
  }
}

INSTANTIATE_TEST_SUITE_P(Files, JetConformance, ::testing::ValuesIn(ModesAndFiles()),
                         [](const ::testing::TestParamInfo<ModeAndFile>& param_info) {
                           std::string name = std::filesystem::path(param_info.param.file).stem().string();
                           for (char& c : name) {
                             if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
                           }
                           return (param_info.param.mode == Mode::kRaw ? "raw_" : "store_") + name;
                         });

}  // namespace
}  // namespace ldg::store::jet
