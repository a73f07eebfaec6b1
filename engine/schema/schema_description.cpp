#include "engine/schema/schema_description.hpp"

#include <algorithm>
#include <charconv>
#include <fstream>
#include <sstream>
#include <utility>

#include "support/text.hpp"

namespace ldg::schema {

namespace {

using store::FieldType;

struct TypeName {
  const char* word;
  FieldType type;
};

constexpr TypeName kTypeNames[] = {
    {"Boolean", FieldType::kBoolean}, {"Byte", FieldType::kByte},         {"Integer", FieldType::kInteger},
    {"Long", FieldType::kLong},       {"Currency", FieldType::kCurrency}, {"Double", FieldType::kDouble},
    {"Date", FieldType::kDate},       {"Text", FieldType::kText},         {"Memo", FieldType::kMemo},
};

template <typename T>
const T* FindByName(const std::vector<T>& items, std::string_view name) {
  auto found =
      std::find_if(items.begin(), items.end(), [&](const T& item) { return EqualsNoCase(item.name, name); });
  return found == items.end() ? nullptr : &*found;
}

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

std::string_view Strip(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

bool IsName(std::string_view word) {
  if (word.empty()) return false;
  return std::all_of(word.begin(), word.end(), [](char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
  });
}

struct Token {
  std::string text;
  bool quoted = false;
};

// One statement line, cut into words, quoted texts and the marks "(", ")", ",".
class Line {
 public:
  Line(int number, std::string_view text) : number_(number), text_(text) {}

  int Number() const { return number_; }
  const std::string& Text() const { return text_; }

  [[noreturn]] void Fail(const std::string& problem) const {
    throw SchemaSyntaxError(number_, text_, problem);
  }

  std::vector<Token> Tokens() const {
    std::vector<Token> tokens;
    std::string_view rest = Strip(text_);
    while (!rest.empty()) {
      if (IsBlank(rest.front())) {
        rest.remove_prefix(1);
      } else if (rest.front() == '"') {
        tokens.push_back({ReadQuoted(rest), true});
      } else if (rest.front() == '(' || rest.front() == ')' || rest.front() == ',') {
        tokens.push_back({std::string(1, rest.front()), false});
        rest.remove_prefix(1);
      } else {
        size_t end = 0;
        while (end < rest.size() && !IsBlank(rest[end]) && rest[end] != '(' && rest[end] != ')' &&
               rest[end] != ',' && rest[end] != '"') {
          ++end;
        }
        tokens.push_back({std::string(rest.substr(0, end)), false});
        rest.remove_prefix(end);
      }
    }
    return tokens;
  }

 private:
  // rest starts at the opening quote; "" inside stands for one quote.
  std::string ReadQuoted(std::string_view& rest) const {
    std::string value;
    size_t pos = 1;
    while (true) {
      if (pos >= rest.size()) Fail("unterminated quoted text");
      if (rest[pos] == '"') {
        if (pos + 1 < rest.size() && rest[pos + 1] == '"') {
          value += '"';
          pos += 2;
          continue;
        }
        rest.remove_prefix(pos + 1);
        return value;
      }
      value += rest[pos++];
    }
  }

  int number_;
  std::string text_;
};

// Reads the tokens of one statement from left to right.
class Cursor {
 public:
  explicit Cursor(const Line& line) : line_(line), tokens_(line.Tokens()) {}

  bool AtEnd() const { return next_ >= tokens_.size(); }
  bool NextIs(std::string_view word) const {
    return !AtEnd() && !tokens_[next_].quoted && EqualsNoCase(tokens_[next_].text, word);
  }

  std::string Word(const char* what) {
    if (AtEnd() || tokens_[next_].quoted) line_.Fail(std::string("expected ") + what);
    return tokens_[next_++].text;
  }
  std::string Name(const char* what) {
    std::string word = Word(what);
    if (!IsName(word)) line_.Fail(std::string("invalid ") + what + " '" + word + "'");
    return word;
  }
  void Expect(std::string_view mark) {
    if (!NextIs(mark)) line_.Fail("expected '" + std::string(mark) + "'");
    ++next_;
  }
  // A bare word or a quoted text.
  std::string Value(const char* what) {
    if (AtEnd()) line_.Fail(std::string("expected ") + what);
    return tokens_[next_++].text;
  }
  void ExpectEnd() {
    if (!AtEnd()) line_.Fail("unexpected '" + tokens_[next_].text + "'");
  }

 private:
  const Line& line_;
  std::vector<Token> tokens_;
  size_t next_ = 0;
};

class Parser {
 public:
  SchemaDescription Parse(std::string_view text) {
    int number = 0;
    while (!text.empty()) {
      size_t end = text.find('\n');
      std::string_view raw = text.substr(0, end);
      text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
      ++number;
      std::string_view stripped = Strip(raw);
      if (stripped.empty() || stripped.front() == '#') continue;
      Statement(Line(number, Strip(raw)));
    }
    if (block_) block_->Fail(BlockKind() + " is not closed by 'end'");
    CheckRelations();
    return std::move(schema_);
  }

 private:
  enum class State { kTop, kTable, kQuery };

  void Statement(const Line& line) {
    switch (state_) {
      case State::kTop:
        TopStatement(line);
        break;
      case State::kTable:
        TableStatement(line);
        break;
      case State::kQuery:
        QueryStatement(line);
        break;
    }
  }

  std::string BlockKind() const {
    return state_ == State::kTable ? "table '" + schema_.tables.back().name + "'"
                                   : "query '" + schema_.queries.back().name + "'";
  }

  void TopStatement(const Line& line) {
    Cursor cursor(line);
    std::string keyword = cursor.Word("a statement");
    if (EqualsNoCase(keyword, "table")) {
      std::string name = cursor.Name("table name");
      cursor.ExpectEnd();
      if (schema_.Table(name)) line.Fail("table '" + name + "' is described twice");
      CheckNewObjectName(line, name);
      schema_.tables.push_back({name, {}, {}});
      Open(line, State::kTable);
    } else if (EqualsNoCase(keyword, "query")) {
      std::string name = cursor.Name("query name");
      cursor.ExpectEnd();
      if (schema_.Query(name)) line.Fail("query '" + name + "' is described twice");
      CheckNewObjectName(line, name);
      schema_.queries.push_back({name, {}});
      Open(line, State::kQuery);
    } else if (EqualsNoCase(keyword, "relation")) {
      RelationStatement(line, cursor);
    } else if (EqualsNoCase(keyword, "property")) {
      std::string name = cursor.Name("property name");
      if (cursor.AtEnd()) line.Fail("expected the property's quoted text");
      std::string value = cursor.Value("the property's quoted text");
      cursor.ExpectEnd();
      if (schema_.Property(name)) line.Fail("property '" + name + "' is described twice");
      schema_.properties.push_back({name, value});
    } else if (EqualsNoCase(keyword, "end")) {
      line.Fail("'end' outside a table or query");
    } else if (EqualsNoCase(keyword, "field") || EqualsNoCase(keyword, "index")) {
      line.Fail("'" + keyword + "' outside a table");
    } else {
      line.Fail("unknown statement '" + keyword + "'");
    }
  }

  // Tables and queries share one namespace in the store.
  void CheckNewObjectName(const Line& line, const std::string& name) const {
    if (schema_.Table(name) || schema_.Query(name)) {
      line.Fail("'" + name + "' is already the name of a table or query");
    }
  }

  void Open(const Line& line, State state) {
    block_ = line;
    state_ = state;
  }

  void Close() {
    block_.reset();
    state_ = State::kTop;
  }

  void TableStatement(const Line& line) {
    Cursor cursor(line);
    std::string keyword = cursor.Word("a statement");
    TableDescription& table = schema_.tables.back();
    if (EqualsNoCase(keyword, "field")) {
      FieldStatement(line, cursor, table);
    } else if (EqualsNoCase(keyword, "index")) {
      IndexStatement(line, cursor, table);
    } else if (EqualsNoCase(keyword, "end")) {
      cursor.ExpectEnd();
      if (table.fields.empty()) block_->Fail("table '" + table.name + "' has no fields");
      Close();
    } else {
      line.Fail("unknown statement '" + keyword + "' in table '" + table.name + "'");
    }
  }

  void FieldStatement(const Line& line, Cursor& cursor, TableDescription& table) {
    FieldDescription field;
    field.name = cursor.Name("field name");
    if (table.Field(field.name)) line.Fail("field '" + field.name + "' is described twice");
    ReadType(line, cursor, field);
    while (!cursor.AtEnd()) {
      std::string option = cursor.Word("a field option");
      if (EqualsNoCase(option, "counter") && !field.counter) {
        if (field.type != FieldType::kLong) line.Fail("only a Long field can be a counter");
        field.counter = true;
      } else if (EqualsNoCase(option, "default") && !field.default_value) {
        field.default_value = cursor.Value("a default value");
      } else {
        line.Fail("unknown or repeated field option '" + option + "'");
      }
    }
    table.fields.push_back(std::move(field));
  }

  void ReadType(const Line& line, Cursor& cursor, FieldDescription& field) {
    std::string word = cursor.Word("a field type");
    auto found = std::find_if(std::begin(kTypeNames), std::end(kTypeNames),
                              [&](const TypeName& name) { return EqualsNoCase(name.word, word); });
    if (found == std::end(kTypeNames)) line.Fail("unknown field type '" + word + "'");
    field.type = found->type;
    if (field.type != FieldType::kText) return;
    field.size = kDefaultTextSize;
    if (!cursor.NextIs("(")) return;
    cursor.Expect("(");
    std::string digits = cursor.Word("a text size");
    int size = 0;
    auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), size);
    if (error != std::errc() || end != digits.data() + digits.size() || size < 1 || size > kMaxTextSize) {
      line.Fail("text size '" + digits + "' is not a number from 1 to 255");
    }
    cursor.Expect(")");
    field.size = size;
  }

  void IndexStatement(const Line& line, Cursor& cursor, TableDescription& table) {
    IndexDescription index;
    index.name = cursor.Name("index name");
    if (table.Index(index.name)) line.Fail("index '" + index.name + "' is described twice");
    while (cursor.NextIs("primary") || cursor.NextIs("unique")) {
      std::string option = cursor.Word("an index option");
      bool& flag = EqualsNoCase(option, "primary") ? index.primary : index.unique;
      if (flag) line.Fail("repeated index option '" + option + "'");
      flag = true;
    }
    if (index.primary) {
      index.unique = true;
      auto other = std::find_if(table.indexes.begin(), table.indexes.end(),
                                [](const IndexDescription& i) { return i.primary; });
      if (other != table.indexes.end()) line.Fail("table '" + table.name + "' has a primary index already");
    }
    cursor.Expect("(");
    while (true) {
      std::string field = cursor.Name("a field name");
      if (!table.Field(field)) line.Fail("index names unknown field '" + field + "'");
      index.fields.push_back(field);
      if (cursor.NextIs(")")) break;
      cursor.Expect(",");
    }
    cursor.Expect(")");
    cursor.ExpectEnd();
    table.indexes.push_back(std::move(index));
  }

  void QueryStatement(const Line& line) {
    QueryDescription& query = schema_.queries.back();
    if (EqualsNoCase(line.Text(), "end")) {
      if (query.sql.empty()) block_->Fail("query '" + query.name + "' has no text");
      Close();
      return;
    }
    if (!query.sql.empty()) line.Fail("the text of query '" + query.name + "' must stand on one line");
    query.sql = line.Text();
  }

  void RelationStatement(const Line& line, Cursor& cursor) {
    RelationDescription relation;
    relation.name = cursor.Name("relation name");
    if (schema_.Relation(relation.name)) line.Fail("relation '" + relation.name + "' is described twice");
    SplitColumn(line, cursor.Word("Table.Field"), relation.table, relation.field);
    cursor.Expect("<-");
    SplitColumn(line, cursor.Word("ForeignTable.Field"), relation.foreign_table, relation.foreign_field);
    std::string rule = cursor.Word("restrict or cascade");
    if (EqualsNoCase(rule, "restrict")) {
      relation.rule = DeleteRule::kRestrict;
    } else if (EqualsNoCase(rule, "cascade")) {
      relation.rule = DeleteRule::kCascade;
    } else {
      line.Fail("expected restrict or cascade, not '" + rule + "'");
    }
    cursor.ExpectEnd();
    schema_.relations.push_back(std::move(relation));
    relation_lines_.push_back(line);
  }

  static void SplitColumn(const Line& line, const std::string& word, std::string& table, std::string& field) {
    size_t dot = word.find('.');
    if (dot == std::string::npos || !IsName(word.substr(0, dot)) || !IsName(word.substr(dot + 1))) {
      line.Fail("expected Table.Field, not '" + word + "'");
    }
    table = word.substr(0, dot);
    field = word.substr(dot + 1);
  }

  // Relations may name tables described further down, so they are checked last.
  void CheckRelations() const {
    for (size_t i = 0; i < schema_.relations.size(); ++i) {
      const RelationDescription& relation = schema_.relations[i];
      CheckColumn(relation_lines_[i], relation.table, relation.field);
      CheckColumn(relation_lines_[i], relation.foreign_table, relation.foreign_field);
    }
  }

  void CheckColumn(const Line& line, const std::string& table_name, const std::string& field) const {
    const TableDescription* table = schema_.Table(table_name);
    if (!table) line.Fail("relation names unknown table '" + table_name + "'");
    if (!table->Field(field)) line.Fail("relation names unknown field '" + table_name + "." + field + "'");
  }

  SchemaDescription schema_;
  State state_ = State::kTop;
  std::optional<Line> block_;  // the line that opened the current table or query
  std::vector<Line> relation_lines_;
};

std::string WithLine(int line, const std::string& line_text, const std::string& problem) {
  return "line " + std::to_string(line) + ": " + problem + ": " + line_text;
}

}  // namespace

const FieldDescription* TableDescription::Field(std::string_view field_name) const {
  return FindByName(fields, field_name);
}

const IndexDescription* TableDescription::Index(std::string_view index_name) const {
  return FindByName(indexes, index_name);
}

const TableDescription* SchemaDescription::Table(std::string_view name) const {
  return FindByName(tables, name);
}

const RelationDescription* SchemaDescription::Relation(std::string_view name) const {
  return FindByName(relations, name);
}

const QueryDescription* SchemaDescription::Query(std::string_view name) const {
  return FindByName(queries, name);
}

const PropertyDescription* SchemaDescription::Property(std::string_view name) const {
  return FindByName(properties, name);
}

SchemaSyntaxError::SchemaSyntaxError(int line, std::string line_text, const std::string& problem)
    : std::runtime_error(WithLine(line, line_text, problem)), line_(line), line_text_(std::move(line_text)) {}

SchemaDescription ParseSchemaDescription(std::string_view text) { return Parser().Parse(text); }

SchemaDescription LoadSchemaDescription(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  if (!in) throw std::runtime_error("cannot read the schema description " + file.string());
  std::ostringstream text;
  text << in.rdbuf();
  return ParseSchemaDescription(text.str());
}

std::string TypeWord(const FieldDescription& field) {
  if (field.type == FieldType::kText) return "Text(" + std::to_string(field.size) + ")";
  for (const TypeName& name : kTypeNames) {
    if (name.type == field.type) return name.word;
  }
  return "Unknown";
}

}  // namespace ldg::schema
