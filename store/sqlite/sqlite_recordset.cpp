#include "store/sqlite/sqlite_recordset.hpp"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <map>
#include <optional>
#include <unordered_map>

#include "store/sqlite/catalog.hpp"
#include "store/sqlite/connection.hpp"
#include "store/sqlite/names.hpp"
#include "store/sqlite/value_codec.hpp"
#include "store/store_error.hpp"

namespace ldg::store::sqlite {

namespace {

// Rows a table-type set reads ahead when it moves forward.
constexpr int kChunk = 1024;
// Rows a table-type set keeps by rowid for its Seek "=" on the counter.
constexpr size_t kKnownRows = 512;
// Spellings of field names a set remembers, and where the callers' texts of
// them lay, once it has read that many names.
constexpr size_t kKnownNames = 256;
constexpr size_t kRecentNames = 256;
constexpr size_t kNamesBeforeRecent = 64;
// The comparisons of Seek, and the most keys it takes.
constexpr std::array<std::string_view, 5> kComparisons = {"=", "<", "<=", ">", ">="};
constexpr size_t kMaxSeekKeys = 3;

struct NameHash {
  using is_transparent = void;
  size_t operator()(std::string_view name) const { return std::hash<std::string_view>{}(name); }
};

enum class Mode { kTable, kDynaset, kSnapshot };
enum class Where { kBeforeFirst, kOnRow, kAfterLast };

struct Column {
  std::string name;
  FieldType type = FieldType::kUnknown;
  int32_t size = 0;
  int32_t attributes = 0;
  std::string default_value;
  std::string base_table;
  std::string base_column;  // the column of the write target; empty when not writable
};

// The rows of a dynaset or snapshot, shared by its clones.
struct RowSet {
  size_t width = 0;
  std::vector<Variant> cells;
  std::vector<int64_t> ids;  // rowid of the base row; -1 while unknown
  std::vector<char> deleted;
  size_t live = 0;  // rows not deleted
  size_t Count() const { return ids.size(); }
};

// Where writes go: one table of one file.
struct WriteTarget {
  std::string physical;
  std::string alias;
  TableInfo table;
};

class SqliteRecordset;

class RecordsetField final : public Field {
 public:
  RecordsetField(SqliteRecordset& owner, int ordinal) : owner_(owner), ordinal_(ordinal) {}
  std::string Name() const override;
  void Name(std::string_view) override { RaiseStore(kErrNotSupported); }
  FieldType Type() const override;
  int32_t Size() const override;
  void Size(int32_t) override { RaiseStore(kErrNotSupported); }
  std::string DefaultValue() const override;
  void DefaultValue(std::string_view) override { RaiseStore(kErrNotSupported); }
  int32_t Attributes() const override;
  void Attributes(int32_t) override { RaiseStore(kErrNotSupported); }
  std::string ForeignName() const override { return ""; }
  void ForeignName(std::string_view) override { RaiseStore(kErrNotSupported); }
  Variant Value() const override;
  void Value(const Variant& value) override;

 private:
  SqliteRecordset& owner_;
  int ordinal_;
};

class RecordsetFields final : public Fields {
 public:
  explicit RecordsetFields(SqliteRecordset& owner) : owner_(owner) {}
  void Build(size_t count);
  int Count() const override { return static_cast<int>(fields_.size()); }
  Field& Item(std::string_view name) const override;
  Field& Item(int ordinal) const override;
  bool Contains(std::string_view name) const override;
  void Append(const std::shared_ptr<Field>&) override { RaiseStore(kErrNotSupported); }
  void Delete(std::string_view) override { RaiseStore(kErrNotSupported); }
  void Refresh() override {}

 private:
  SqliteRecordset& owner_;
  std::vector<std::unique_ptr<RecordsetField>> fields_;
};

class SqliteRecordset final : public Recordset {
 public:
  SqliteRecordset(RecordsetSource source, Mode mode)
      : source_(std::move(source)), mode_(mode), fields_(*this) {}

  void OpenTable();
  void OpenRows();
  // To the first row of the rows held.
  void Rewind();
  std::unique_ptr<SqliteRecordset> CloneFrom() const;

  // Recordset
  RecordsetTypeEnum Type() const override {
    return mode_ == Mode::kTable ? dbOpenTable : mode_ == Mode::kDynaset ? dbOpenDynaset : dbOpenSnapshot;
  }
  store::Fields& Fields() override { return fields_; }
  Variant Value(std::string_view field) const override { return Cell(Ordinal(field)); }
  void Value(std::string_view field, const Variant& value) override { SetCell(Ordinal(field), value); }
  int32_t Size(std::string_view field) const override {
    const Column& column = columns_[static_cast<size_t>(Ordinal(field))];
    return column.type == FieldType::kText || column.type == FieldType::kMemo ? column.size : 0;
  }
  Variant Collect(std::string_view field) const override { return Cell(Ordinal(field)); }
  void Collect(std::string_view field, const Variant& value) override { SetCell(Ordinal(field), value); }
  bool Eof() const override { return where_ == Where::kAfterLast || Empty(); }
  bool Bof() const override { return where_ == Where::kBeforeFirst || Empty(); }
  void MoveFirst() override;
  void MoveNext() override;
  void MovePrevious() override;
  void MoveLast() override;
  int32_t RecordCount() const override;
  int32_t AbsolutePosition() const override;
  void AbsolutePosition(int32_t position) override;
  BookmarkValue Bookmark() const override;
  void Bookmark(BookmarkValue bookmark) override;
  BookmarkValue LastModified() const override {
    if (last_modified_ < 0) RaiseStore(kErrNoCurrentRecord);
    return last_modified_;
  }
  bool NoMatch() const override { return no_match_; }
  std::string Index() const override { return index_ ? index_->name : ""; }
  void Index(std::string_view name) override;
  void Seek(std::string_view comparison, const Variant& key1, const Variant& key2,
            const Variant& key3) override;
  void FindFirst(std::string_view criterion) override { Find(criterion, true, true); }
  void FindNext(std::string_view criterion) override { Find(criterion, false, true); }
  void FindPrevious(std::string_view criterion) override { Find(criterion, false, false); }
  void FindLast(std::string_view criterion) override { Find(criterion, true, false); }
  void AddNew() override;
  void Edit() override;
  void Update() override;
  void CancelUpdate() override;
  void Delete() override;
  int EditMode() const override { return edit_mode_; }
  void Requery() override;
  bool RowsCurrent() override { return mode_ == Mode::kSnapshot && rows_mark_ == Conn().FreshContentMark(); }
  uint64_t TableVersion() const override { return mode_ == Mode::kTable ? TargetVersion() : 0; }
  std::unique_ptr<Recordset> Clone() const override { return CloneFrom(); }
  void Close() override {}

  // For the fields.
  const Column& ColumnAt(int ordinal) const { return columns_[static_cast<size_t>(ordinal)]; }
  int Ordinal(std::string_view name) const;
  int FindOrdinal(std::string_view name) const;
  Variant Cell(int ordinal) const;
  void SetCell(int ordinal, const Variant& value);

 private:
  bool Empty() const;
  void RequireRow() const;
  Connection& Conn() const { return *source_.connection; }

  // Texts built once per set (per index for the seeks).
  const std::string& QuotedColumn(size_t ordinal) const;
  const std::string& SelectList() const;
  const std::string& RowByRowidSql() const;
  const std::string& SeekSql(size_t comparison, size_t keys);
  const std::string& WriteSql(bool insert, const std::vector<size_t>& changed);

  // Rows kept between calls: the version of the write target's table, the rows
  // a Seek "=" on the counter finds again, and the row the set just wrote.
  uint64_t TargetVersion() const;
  bool SeekKnownRow(const std::vector<Variant>& keys);
  void RememberCurrentRow();
  const std::vector<Variant>* KeepOwnWrite(uint64_t version_before, uint64_t rows_before, int64_t rowid,
                                           std::vector<Variant>* row);
  void MakeCurrent(int64_t rowid, const std::vector<Variant>& row);
  bool AheadCurrent() const;

  // Table-type cursor.
  std::string OrderBy(bool ascending, size_t keys) const;
  std::vector<Variant> CurrentKeys() const;
  std::string Beyond(bool forward, const std::vector<Variant>& keys, std::vector<Variant>& binds) const;
  size_t Fetch(sqlite3_stmt* statement, const std::vector<Variant>& binds, bool keep_ahead);
  // The statement of a text the set keeps (the texts above), prepared once.
  sqlite3_stmt* PrepareKept(const std::string& sql);
  void TakeAhead();
  void KeepCurrentRow();
  void LoadWholeRow(int ordinal);
  void LoadByRowid(int64_t rowid);
  void TableFirst(bool ascending, bool raise_when_empty);
  void TableStep(bool forward);

  // Rows of a dynaset or snapshot.
  bool RowLive(size_t row) const { return row < rows_->Count() && !rows_->deleted[row]; }
  void Reach(size_t row) { reached_ = std::max(reached_, row + 1); }
  int64_t RowidOf(size_t row);

  // Writes.
  Variant Default(size_t ordinal);
  void RequireWritable() const;
  int64_t ReserveCounter();
  void BurnCounter(int64_t value);
  std::vector<Variant> CurrentValues() const;
  void Find(std::string_view criterion, bool from_end, bool forward);
  bool MatchesCurrent(const jet::Criterion& criterion) const;

  RecordsetSource source_;
  Mode mode_;
  RecordsetFields fields_;
  std::vector<Column> columns_;
  std::vector<jet::ResultColumn> result_columns_;
  std::optional<WriteTarget> target_;
  Where where_ = Where::kBeforeFirst;
  bool no_match_ = false;
  int64_t last_modified_ = -1;
  int edit_mode_ = 0;
  std::vector<Variant> buffer_;
  std::vector<char> dirty_;
  int64_t reserved_counter_ = 0;
  int64_t next_counter_ = 0;  // the counter after our last insert, while its table stayed unwritten
  uint64_t next_counter_version_ = 0;
  std::map<std::string, std::shared_ptr<jet::Criterion>, std::less<>> criteria_;
  mutable std::unordered_map<std::string, int, NameHash, std::equal_to<>> ordinals_;
  // The names last read, by where the caller's text lies: a name written in
  // the code is found again without hashing it.
  struct RecentName {
    const char* data = nullptr;
    std::string text;
    int ordinal = -1;
  };
  mutable std::vector<RecentName> recent_names_;  // made once the set has read many names
  mutable size_t name_reads_ = 0;

  // texts
  mutable std::vector<std::string> quoted_columns_;
  mutable std::string select_list_;
  mutable std::string row_by_rowid_sql_;
  // What the set builds once for each index it uses.
  struct IndexTexts {
    std::vector<int> seek_ordinals;  // the index's fields; filled by the first Seek
    std::array<std::string, kComparisons.size() * kMaxSeekKeys> seek_sql;
    std::array<std::string, 2> first_sql;  // [ascending]
  };
  std::unordered_map<const IndexInfo*, IndexTexts> index_texts_;  // by the index, one of target_'s
  IndexTexts* texts_ = nullptr;                                   // the current index's
  std::vector<std::optional<Variant>> defaults_;                  // parsed once; none for a quoted text
  std::array<std::vector<size_t>, 2> write_columns_;              // [insert] the columns of write_sql_
  std::array<std::string, 2> write_sql_;
  struct KeptStatement {
    sqlite3_stmt* statement = nullptr;
    uint64_t generation = 0;
  };
  std::unordered_map<const std::string*, KeptStatement> kept_statements_;  // by the kept text

  // rows kept
  mutable const uint64_t* version_slot_ = nullptr;
  std::unordered_map<int64_t, std::vector<Variant>> known_rows_;
  uint64_t known_version_ = 0;

  // table-type
  const IndexInfo* index_ = nullptr;  // one of target_'s
  std::vector<int> key_ordinals_;
  std::vector<Variant> current_;
  // The current row: inside the rows read ahead, or current_ once those go.
  const Variant* row_ = nullptr;
  // Columns read from each row fetched ahead; the others stay Empty until the
  // first read of one loads the whole row and adds it here.
  std::vector<char> wanted_;
  int64_t current_id_ = 0;
  bool current_deleted_ = false;
  bool table_empty_ = false;
  std::vector<Variant> ahead_;  // rows read ahead, one after the other
  std::vector<int64_t> ahead_ids_;
  size_t ahead_pos_ = 0;
  uint64_t ahead_writes_ = 0;
  uint64_t ahead_version_ = 0;
  bool ahead_complete_ = false;

  // dynaset and snapshot
  std::shared_ptr<RowSet> rows_;
  // What the files held when a snapshot read its rows (Connection::ContentMark).
  std::vector<uint64_t> rows_mark_;
  size_t pos_ = 0;
  size_t reached_ = 0;
};

// ---- fields ----

std::string RecordsetField::Name() const { return owner_.ColumnAt(ordinal_).name; }
FieldType RecordsetField::Type() const { return owner_.ColumnAt(ordinal_).type; }
int32_t RecordsetField::Size() const { return owner_.ColumnAt(ordinal_).size; }
std::string RecordsetField::DefaultValue() const { return owner_.ColumnAt(ordinal_).default_value; }
int32_t RecordsetField::Attributes() const { return owner_.ColumnAt(ordinal_).attributes; }
Variant RecordsetField::Value() const { return owner_.Cell(ordinal_); }
void RecordsetField::Value(const Variant& value) { owner_.SetCell(ordinal_, value); }

void RecordsetFields::Build(size_t count) {
  fields_.clear();
  for (size_t i = 0; i < count; ++i)
    fields_.push_back(std::make_unique<RecordsetField>(owner_, static_cast<int>(i)));
}

Field& RecordsetFields::Item(std::string_view name) const {
  return *fields_[static_cast<size_t>(owner_.Ordinal(name))];
}

Field& RecordsetFields::Item(int ordinal) const {
  if (ordinal < 0 || ordinal >= Count()) RaiseStore(kErrItemNotFound);
  return *fields_[static_cast<size_t>(ordinal)];
}

bool RecordsetFields::Contains(std::string_view name) const { return owner_.FindOrdinal(name) >= 0; }

// ---- names ----

int SqliteRecordset::FindOrdinal(std::string_view name) const {
  for (size_t i = 0; i < columns_.size(); ++i) {
    if (NamesEqual(columns_[i].name, name)) return static_cast<int>(i);
  }
  // "Table.Column" names the column that comes from that table's column.
  if (size_t dot = name.rfind('.'); dot != std::string_view::npos) {
    std::string_view table = name.substr(0, dot);
    std::string_view column = name.substr(dot + 1);
    for (size_t i = 0; i < columns_.size(); ++i) {
      const Column& candidate = columns_[i];
      if (NamesEqual(candidate.base_table, table) &&
          (NamesEqual(candidate.base_column, column) || NamesEqual(candidate.name, column))) {
        return static_cast<int>(i);
      }
    }
    for (size_t i = 0; i < result_columns_.size(); ++i) {
      if (NamesEqual(result_columns_[i].base_table, table) &&
          NamesEqual(result_columns_[i].base_column, column)) {
        return static_cast<int>(i);
      }
    }
  }
  return -1;
}

int SqliteRecordset::Ordinal(std::string_view name) const {
  // Loops read the same few names row after row: remember them as spelled.
  if (recent_names_.empty() && ++name_reads_ >= kNamesBeforeRecent) recent_names_.resize(kRecentNames);
  RecentName* recent = nullptr;
  if (!recent_names_.empty()) {
    const uint64_t place = reinterpret_cast<uintptr_t>(name.data()) * 0x9E3779B97F4A7C15ULL;
    recent = &recent_names_[(place >> 56) % recent_names_.size()];
    if (recent->data == name.data() && recent->text.size() == name.size() &&
        std::memcmp(recent->text.data(), name.data(), name.size()) == 0) {
      return recent->ordinal;
    }
  }
  int ordinal = -1;
  if (auto known = ordinals_.find(name); known != ordinals_.end()) {
    ordinal = known->second;
  } else {
    ordinal = FindOrdinal(name);
    if (ordinal < 0) RaiseStore(kErrItemNotFound);
    if (ordinals_.size() >= kKnownNames) ordinals_.clear();
    ordinals_.emplace(std::string(name), ordinal);
  }
  if (recent != nullptr) {
    recent->data = name.data();
    recent->text.assign(name);
    recent->ordinal = ordinal;
  }
  return ordinal;
}

// ---- open ----

Column ColumnOf(const FieldInfo& field, const std::string& table) {
  return Column{field.name,       field.type,          field.size ? field.size : DefaultSize(field.type),
                field.attributes, field.default_value, table,
                field.name};
}

void SqliteRecordset::OpenTable() {
  auto target = source_.catalog->Resolve(source_.table);
  if (!target) RaiseStore(kErrTableNotFound, source_.table);
  target_ = WriteTarget{target->physical, target->catalog->Alias(), *target->table};
  for (const auto& field : target_->table.fields) columns_.push_back(ColumnOf(field, source_.table));
  fields_.Build(columns_.size());
  wanted_.assign(columns_.size(), 0);
  if (mode_ != Mode::kTable) {
    OpenRows();
    return;
  }
  if (const IndexInfo* primary = target_->table.PrimaryIndex()) Index(primary->name);
  TableFirst(true, false);
}

void SqliteRecordset::OpenRows() {
  Connection& c = Conn();
  auto rows = std::make_shared<RowSet>();
  std::string sql;
  const jet::Translation* translation = source_.translation.get();
  if (translation) {
    if (translation->kind != jet::StatementKind::kSelect) RaiseStore(kErrNotSupported);
    if (columns_.empty()) {
      result_columns_ = translation->columns;
      std::optional<Catalog::Target> base;
      if (mode_ == Mode::kDynaset && !translation->updatable_table.empty()) {
        base = source_.catalog->Resolve(translation->updatable_table);
        if (base) target_ = WriteTarget{base->physical, base->catalog->Alias(), *base->table};
      }
      for (const auto& result : translation->columns) {
        Column column{result.name, result.type, DefaultSize(result.type), 0, "", result.base_table, ""};
        if (target_ && NamesEqual(result.base_table, translation->updatable_table)) {
          if (const FieldInfo* field = target_->table.FindField(result.base_column)) {
            column = ColumnOf(*field, result.base_table);
            column.name = result.name;
          }
        }
        columns_.push_back(std::move(column));
      }
      fields_.Build(columns_.size());
    }
    sql = translation->sql;
  } else {
    sql = "SELECT " + SelectList() + " FROM " + target_->physical;
  }
  rows->width = columns_.size();
  sqlite3_stmt* statement = c.Prepare(sql);
  StatementUse use(statement);
  if (translation && sqlite3_bind_parameter_count(statement) > static_cast<int>(source_.parameters.size())) {
    RaiseStore(kErrTooFewParameters, std::to_string(sqlite3_bind_parameter_count(statement) -
                                                    static_cast<int>(source_.parameters.size())));
  }
  for (size_t i = 0; i < source_.parameters.size(); ++i)
    BindValue(statement, static_cast<int>(i + 1), source_.parameters[i]);
  int offset = translation ? 0 : 1;
  while (c.Step(statement)) {
    rows->ids.push_back(translation ? -1 : sqlite3_column_int64(statement, 0));
    for (size_t i = 0; i < rows->width; ++i) {
      rows->cells.push_back(ReadColumn(statement, static_cast<int>(i) + offset, columns_[i].type));
    }
  }
  rows->deleted.assign(rows->Count(), 0);
  rows->live = rows->Count();
  rows_ = std::move(rows);
  if (mode_ == Mode::kSnapshot) rows_mark_ = c.ContentMark();
  Rewind();
}

void SqliteRecordset::Rewind() {
  pos_ = 0;
  reached_ = rows_->Count() ? 1 : 0;
  where_ = rows_->Count() ? Where::kOnRow : Where::kAfterLast;
}

std::unique_ptr<SqliteRecordset> SqliteRecordset::CloneFrom() const {
  auto clone = std::make_unique<SqliteRecordset>(source_, mode_);
  clone->columns_ = columns_;
  clone->result_columns_ = result_columns_;
  clone->target_ = target_;
  clone->fields_.Build(columns_.size());
  clone->wanted_ = wanted_;
  if (mode_ == Mode::kTable) {
    if (index_) clone->Index(index_->name);
    clone->TableFirst(true, false);
  } else {
    clone->rows_ = rows_;
    clone->where_ = Where::kAfterLast;
    for (size_t row = 0; row < rows_->Count(); ++row) {
      if (RowLive(row)) {
        clone->pos_ = row;
        clone->where_ = Where::kOnRow;
        clone->reached_ = row + 1;
        break;
      }
    }
  }
  return clone;
}

// ---- the current row ----

bool SqliteRecordset::Empty() const { return mode_ == Mode::kTable ? table_empty_ : rows_->live == 0; }

void SqliteRecordset::RequireRow() const {
  if (where_ != Where::kOnRow) RaiseStore(kErrNoCurrentRecord);
  if (mode_ == Mode::kTable ? current_deleted_ : rows_->deleted[pos_] != 0) RaiseStore(kErrRecordDeleted);
}

Variant SqliteRecordset::Cell(int ordinal) const {
  if (edit_mode_ != 0) return buffer_[static_cast<size_t>(ordinal)];
  RequireRow();
  if (mode_ == Mode::kTable) {
    if (row_[ordinal].IsEmpty()) const_cast<SqliteRecordset*>(this)->LoadWholeRow(ordinal);
    return row_[ordinal];
  }
  return rows_->cells[pos_ * rows_->width + static_cast<size_t>(ordinal)];
}

std::vector<Variant> SqliteRecordset::CurrentValues() const {
  RequireRow();
  if (mode_ == Mode::kTable) {
    for (size_t i = 0; i < columns_.size(); ++i) {
      if (row_[i].IsEmpty()) const_cast<SqliteRecordset*>(this)->LoadWholeRow(static_cast<int>(i));
    }
    return std::vector<Variant>(row_, row_ + columns_.size());
  }
  auto begin = rows_->cells.begin() + static_cast<std::ptrdiff_t>(pos_ * rows_->width);
  return std::vector<Variant>(begin, begin + static_cast<std::ptrdiff_t>(rows_->width));
}

void SqliteRecordset::SetCell(int ordinal, const Variant& value) {
  if (edit_mode_ == 0) RaiseStore(kErrUpdateWithoutAddNew);
  const Column& column = columns_[static_cast<size_t>(ordinal)];
  if (column.base_column.empty()) RaiseStore(kErrReadOnly);
  Variant stored = Coerce(value, column.type);
  if (stored.IsNull() && column.type == FieldType::kBoolean) RaiseStore(kErrNullNotAllowed);
  if (column.type == FieldType::kText && column.size > 0 && stored.Type() == VarType::kString &&
      CountCharacters(stored.AsString()) > static_cast<size_t>(column.size)) {
    RaiseStore(kErrFieldTooSmall);
  }
  buffer_[static_cast<size_t>(ordinal)] = std::move(stored);
  dirty_[static_cast<size_t>(ordinal)] = 1;
}

// ---- table-type cursor ----

const std::string& SqliteRecordset::QuotedColumn(size_t ordinal) const {
  if (quoted_columns_.size() != columns_.size()) {
    quoted_columns_.clear();
    for (const auto& column : columns_) quoted_columns_.push_back(Quote(column.base_column));
  }
  return quoted_columns_[ordinal];
}

const std::string& SqliteRecordset::SelectList() const {
  if (select_list_.empty()) {
    select_list_ = "rowid";
    for (size_t i = 0; i < columns_.size(); ++i) select_list_ += ", " + QuotedColumn(i);
  }
  return select_list_;
}

const std::string& SqliteRecordset::RowByRowidSql() const {
  if (row_by_rowid_sql_.empty()) {
    row_by_rowid_sql_ = "SELECT " + SelectList() + " FROM " + target_->physical + " WHERE rowid = ?";
  }
  return row_by_rowid_sql_;
}

std::string SqliteRecordset::OrderBy(bool ascending, size_t keys) const {
  std::string order;
  const char* direction = ascending ? "" : " DESC";
  for (size_t i = 0; i < keys && i < key_ordinals_.size(); ++i) {
    order += QuotedColumn(static_cast<size_t>(key_ordinals_[i])) + direction + ", ";
  }
  return order + "rowid" + direction;
}

std::vector<Variant> SqliteRecordset::CurrentKeys() const {
  std::vector<Variant> keys;
  for (int ordinal : key_ordinals_) keys.push_back(row_[ordinal]);
  keys.push_back(Variant(static_cast<double>(current_id_)));
  return keys;
}

// The condition "after (or before) these key values in index order", with
// Nulls first as the index sorts them.
std::string SqliteRecordset::Beyond(bool forward, const std::vector<Variant>& keys,
                                    std::vector<Variant>& binds) const {
  std::vector<std::string> names;
  for (int ordinal : key_ordinals_) names.push_back(QuotedColumn(static_cast<size_t>(ordinal)));
  names.push_back("rowid");
  bool any_null = std::any_of(keys.begin(), keys.end(), [](const Variant& v) { return v.IsNull(); });
  if (!any_null) {
    std::string left = "(";
    std::string right = "(";
    for (size_t i = 0; i < names.size(); ++i) {
      left += (i ? ", " : "") + names[i];
      right += i ? ", ?" : "?";
      binds.push_back(keys[i]);
    }
    return left + ") " + (forward ? ">" : "<") + " " + right + ")";
  }
  std::string condition;
  for (size_t i = 0; i < names.size(); ++i) {
    std::string term;
    for (size_t j = 0; j < i; ++j) {
      if (keys[j].IsNull()) {
        term += names[j] + " IS NULL AND ";
      } else {
        term += names[j] + " = ? AND ";
        binds.push_back(keys[j]);
      }
    }
    if (keys[i].IsNull()) {
      term += forward ? names[i] + " IS NOT NULL" : std::string("0");
    } else {
      term += forward ? names[i] + " > ?" : "(" + names[i] + " < ? OR " + names[i] + " IS NULL)";
      binds.push_back(keys[i]);
    }
    condition += (condition.empty() ? "(" : " OR (") + term + ")";
  }
  return "(" + condition + ")";
}

// Runs a select of rows in SelectList form; the first becomes current, the
// rest are kept to read ahead when keep_ahead. Gives the rows found.
sqlite3_stmt* SqliteRecordset::PrepareKept(const std::string& sql) {
  Connection& c = Conn();
  KeptStatement& kept = kept_statements_[&sql];
  if (kept.statement == nullptr || kept.generation != c.StatementGeneration()) {
    kept.statement = c.Prepare(sql);
    kept.generation = c.StatementGeneration();
  }
  return kept.statement;
}

size_t SqliteRecordset::Fetch(sqlite3_stmt* statement, const std::vector<Variant>& binds, bool keep_ahead) {
  Connection& c = Conn();
  StatementUse use(statement);
  for (size_t i = 0; i < binds.size(); ++i) BindValue(statement, static_cast<int>(i + 1), binds[i]);
  KeepCurrentRow();
  ahead_.clear();
  ahead_ids_.clear();
  ahead_pos_ = 0;
  size_t found = 0;
  const size_t width = columns_.size();
  while (c.Step(statement)) {
    for (size_t i = 0; i < width; ++i) {
      ahead_.push_back(wanted_[i] ? ReadColumn(statement, static_cast<int>(i) + 1, columns_[i].type)
                                  : Variant());
    }
    ahead_ids_.push_back(sqlite3_column_int64(statement, 0));
    ++found;
  }
  ahead_writes_ = c.WriteCount();
  ahead_version_ = TargetVersion();
  ahead_complete_ = keep_ahead && found < static_cast<size_t>(kChunk);
  if (found) TakeAhead();
  if (!keep_ahead) {
    KeepCurrentRow();
    ahead_.clear();
    ahead_ids_.clear();
  }
  return found;
}

void SqliteRecordset::LoadWholeRow(int ordinal) {
  wanted_[static_cast<size_t>(ordinal)] = 1;
  Connection& c = Conn();
  StatementUse use(PrepareKept(RowByRowidSql()));
  sqlite3_bind_int64(use, 1, current_id_);
  if (!c.Step(use)) RaiseStore(kErrRecordDeleted);
  std::vector<Variant> row;
  for (size_t i = 0; i < columns_.size(); ++i)
    row.push_back(ReadColumn(use, static_cast<int>(i) + 1, columns_[i].type));
  current_ = std::move(row);
  row_ = current_.data();
  // The rows read ahead lack the column: read them again with it.
  ahead_.clear();
  ahead_ids_.clear();
  ahead_pos_ = 0;
  ahead_complete_ = false;
  RememberCurrentRow();
}

// The current row into current_, before the rows it may lie in (read ahead or kept) change.
void SqliteRecordset::KeepCurrentRow() {
  if (row_ == nullptr || row_ == current_.data()) return;
  current_.assign(row_, row_ + columns_.size());
  row_ = current_.data();
}

void SqliteRecordset::TakeAhead() {
  row_ = ahead_.data() + ahead_pos_ * columns_.size();
  current_id_ = ahead_ids_[ahead_pos_];
  ++ahead_pos_;
  current_deleted_ = false;
  table_empty_ = false;
  where_ = Where::kOnRow;
}

void SqliteRecordset::LoadByRowid(int64_t rowid) {
  if (Fetch(PrepareKept(RowByRowidSql()), {Variant(static_cast<double>(rowid))}, false) == 0) {
    RaiseStore(kErrRecordDeleted);
  }
}

void SqliteRecordset::TableFirst(bool ascending, bool raise_when_empty) {
  std::string unindexed;
  std::string& sql = texts_ ? texts_->first_sql[ascending ? 1 : 0] : unindexed;
  if (sql.empty()) {
    sql = "SELECT " + SelectList() + " FROM " + target_->physical + " ORDER BY " +
          OrderBy(ascending, key_ordinals_.size()) + " LIMIT " + std::to_string(ascending ? kChunk : 1);
  }
  if (Fetch(texts_ ? PrepareKept(sql) : Conn().Prepare(sql), {}, ascending) == 0) {
    where_ = ascending ? Where::kAfterLast : Where::kBeforeFirst;
    table_empty_ = true;
    if (raise_when_empty) RaiseStore(kErrNoCurrentRecord);
  }
}

// The rows read ahead hold while nothing was written on the connection, or,
// inside a transaction, while their table wasn't.
bool SqliteRecordset::AheadCurrent() const {
  if (ahead_writes_ == Conn().WriteCount()) return true;
  return ahead_version_ != 0 && ahead_version_ == TargetVersion();
}

void SqliteRecordset::TableStep(bool forward) {
  if (forward && ahead_pos_ < ahead_ids_.size() && AheadCurrent()) {
    TakeAhead();
    return;
  }
  if (forward && ahead_complete_ && ahead_pos_ >= ahead_ids_.size() && AheadCurrent()) {
    where_ = Where::kAfterLast;
    return;
  }
  std::vector<Variant> binds;
  std::string condition = Beyond(forward, CurrentKeys(), binds);
  std::string sql = "SELECT " + SelectList() + " FROM " + target_->physical + " WHERE " + condition +
                    " ORDER BY " + OrderBy(forward, key_ordinals_.size()) + " LIMIT " +
                    std::to_string(forward ? kChunk : 1);
  if (Fetch(Conn().Prepare(sql), binds, forward) == 0)
    where_ = forward ? Where::kAfterLast : Where::kBeforeFirst;
}

// ---- navigation ----

void SqliteRecordset::MoveFirst() {
  if (edit_mode_) CancelUpdate();
  if (mode_ == Mode::kTable) return TableFirst(true, true);
  for (size_t row = 0; row < rows_->Count(); ++row) {
    if (RowLive(row)) {
      pos_ = row;
      where_ = Where::kOnRow;
      Reach(row);
      return;
    }
  }
  RaiseStore(kErrNoCurrentRecord);
}

void SqliteRecordset::MoveLast() {
  if (edit_mode_) CancelUpdate();
  if (mode_ == Mode::kTable) return TableFirst(false, true);
  for (size_t row = rows_->Count(); row-- > 0;) {
    if (RowLive(row)) {
      pos_ = row;
      where_ = Where::kOnRow;
      Reach(rows_->Count() - 1);
      return;
    }
  }
  RaiseStore(kErrNoCurrentRecord);
}

void SqliteRecordset::MoveNext() {
  if (edit_mode_) CancelUpdate();
  if (where_ == Where::kAfterLast || Empty()) RaiseStore(kErrNoCurrentRecord);
  if (mode_ == Mode::kTable) {
    if (where_ == Where::kBeforeFirst) return TableFirst(true, false);
    return TableStep(true);
  }
  size_t row = where_ == Where::kBeforeFirst ? 0 : pos_ + 1;
  while (row < rows_->Count() && !RowLive(row)) ++row;
  if (row >= rows_->Count()) {
    where_ = Where::kAfterLast;
    Reach(rows_->Count() - 1);
    return;
  }
  pos_ = row;
  where_ = Where::kOnRow;
  Reach(row);
}

void SqliteRecordset::MovePrevious() {
  if (edit_mode_) CancelUpdate();
  if (where_ == Where::kBeforeFirst || Empty()) RaiseStore(kErrNoCurrentRecord);
  if (mode_ == Mode::kTable) {
    if (where_ == Where::kAfterLast) return TableFirst(false, false);
    return TableStep(false);
  }
  size_t row = where_ == Where::kAfterLast ? rows_->Count() : pos_;
  while (row > 0 && !RowLive(row - 1)) --row;
  if (row == 0) {
    where_ = Where::kBeforeFirst;
    return;
  }
  pos_ = row - 1;
  where_ = Where::kOnRow;
  Reach(pos_);
}

int32_t SqliteRecordset::RecordCount() const {
  if (mode_ == Mode::kTable) {
    Connection& c = Conn();
    StatementUse use(c.Prepare("SELECT count(*) FROM " + target_->physical));
    c.Step(use);
    return sqlite3_column_int(use, 0);
  }
  size_t deleted = 0;
  for (size_t row = 0; row < reached_ && row < rows_->Count(); ++row) deleted += rows_->deleted[row] ? 1 : 0;
  return static_cast<int32_t>(reached_ - deleted);
}

int32_t SqliteRecordset::AbsolutePosition() const {
  if (where_ != Where::kOnRow) return -1;
  if (mode_ != Mode::kTable) return static_cast<int32_t>(pos_);
  std::vector<Variant> binds;
  std::string condition = Beyond(false, CurrentKeys(), binds);
  Connection& c = Conn();
  StatementUse use(c.Prepare("SELECT count(*) FROM " + target_->physical + " WHERE " + condition));
  for (size_t i = 0; i < binds.size(); ++i) BindValue(use, static_cast<int>(i + 1), binds[i]);
  c.Step(use);
  return sqlite3_column_int(use, 0);
}

void SqliteRecordset::AbsolutePosition(int32_t position) {
  if (edit_mode_) CancelUpdate();
  if (position < 0) RaiseStore(kErrInvalidArgument);
  if (mode_ == Mode::kTable) {
    std::string sql = "SELECT " + SelectList() + " FROM " + target_->physical + " ORDER BY " +
                      OrderBy(true, key_ordinals_.size()) + " LIMIT 1 OFFSET " + std::to_string(position);
    if (Fetch(Conn().Prepare(sql), {}, false) == 0) RaiseStore(kErrInvalidArgument);
    return;
  }
  if (static_cast<size_t>(position) >= rows_->Count() || !RowLive(static_cast<size_t>(position))) {
    RaiseStore(kErrInvalidArgument);
  }
  pos_ = static_cast<size_t>(position);
  where_ = Where::kOnRow;
  Reach(pos_);
}

BookmarkValue SqliteRecordset::Bookmark() const {
  RequireRow();
  return mode_ == Mode::kTable ? current_id_ : static_cast<BookmarkValue>(pos_);
}

void SqliteRecordset::Bookmark(BookmarkValue bookmark) {
  if (edit_mode_) CancelUpdate();
  if (mode_ == Mode::kTable) return LoadByRowid(bookmark);
  if (bookmark < 0 || static_cast<size_t>(bookmark) >= rows_->Count()) RaiseStore(kErrInvalidBookmark);
  pos_ = static_cast<size_t>(bookmark);
  where_ = Where::kOnRow;
  Reach(pos_);
}

// ---- Index and Seek ----

void SqliteRecordset::Index(std::string_view name) {
  if (mode_ != Mode::kTable) RaiseStore(kErrNotSupported);
  const IndexInfo* index = target_->table.FindIndex(name);
  if (!index) RaiseStore(kErrNotAnIndex, name);
  index_ = index;
  texts_ = &index_texts_[index];
  key_ordinals_.clear();
  // An index that is the counter itself orders by rowid alone, which SQLite walks without sorting.
  if (!index_->sql_name.empty()) {
    for (const auto& field : index_->fields) key_ordinals_.push_back(Ordinal(field));
  }
  for (int ordinal : key_ordinals_) wanted_[static_cast<size_t>(ordinal)] = 1;
  row_ = nullptr;
  ahead_.clear();
  ahead_ids_.clear();
  where_ = Where::kBeforeFirst;
}

const std::string& SqliteRecordset::SeekSql(size_t comparison, size_t keys) {
  std::string& sql = texts_->seek_sql[comparison * kMaxSeekKeys + keys - 1];
  if (!sql.empty()) return sql;
  std::string left = "(";
  std::string right = "(";
  for (size_t i = 0; i < keys; ++i) {
    left += (i ? ", " : "") + QuotedColumn(static_cast<size_t>(texts_->seek_ordinals[i]));
    right += i ? ", ?" : "?";
  }
  const bool backward = kComparisons[comparison] == "<" || kComparisons[comparison] == "<=";
  sql = "SELECT " + SelectList() + " FROM " + target_->physical + " WHERE " + left + ") " +
        std::string(kComparisons[comparison]) + " " + right + ") ORDER BY " + OrderBy(!backward, keys) +
        " LIMIT 1";
  return sql;
}

void SqliteRecordset::Seek(std::string_view comparison, const Variant& key1, const Variant& key2,
                           const Variant& key3) {
  if (mode_ != Mode::kTable) RaiseStore(kErrNotSupported);
  if (!index_) RaiseStore(kErrNoCurrentIndex);
  if (edit_mode_) CancelUpdate();
  auto known = std::find(kComparisons.begin(), kComparisons.end(), comparison);
  if (known == kComparisons.end()) RaiseStore(kErrInvalidArgument);
  std::vector<int>& seek_ordinals = texts_->seek_ordinals;
  if (seek_ordinals.empty()) {
    for (const auto& field : index_->fields) seek_ordinals.push_back(Ordinal(field));
  }
  std::vector<Variant> keys;
  for (const Variant* key : {&key1, &key2, &key3}) {
    if (key->IsEmpty() || keys.size() >= seek_ordinals.size()) break;
    keys.push_back(Coerce(*key, columns_[static_cast<size_t>(seek_ordinals[keys.size()])].type));
  }
  if (keys.empty()) RaiseStore(kErrInvalidArgument);
  const bool equal = known == kComparisons.begin();
  if (equal && SeekKnownRow(keys)) return;
  const std::string& sql = SeekSql(static_cast<size_t>(known - kComparisons.begin()), keys.size());
  no_match_ = Fetch(PrepareKept(sql), keys, false) == 0;
  // A failed Seek leaves the set at its end, so that MovePrevious lands on the last row.
  if (no_match_) {
    where_ = Where::kAfterLast;
  } else if (equal) {
    RememberCurrentRow();
  }
}

// ---- rows kept ----

uint64_t SqliteRecordset::TargetVersion() const {
  if (!target_) return 0;
  if (version_slot_ == nullptr) version_slot_ = Conn().TableVersionSlot(target_->alias, target_->table.name);
  return Conn().TableVersion(version_slot_);
}

// A Seek "=" on the counter's own index finds a row kept from before when the
// table hasn't changed since: the key is the rowid.
bool SqliteRecordset::SeekKnownRow(const std::vector<Variant>& keys) {
  if (!index_->sql_name.empty() || keys.size() != 1 || keys[0].Type() != VarType::kLong) return false;
  const uint64_t version = TargetVersion();
  if (version == 0 || version != known_version_) return false;
  auto found = known_rows_.find(keys[0].AsLong());
  if (found == known_rows_.end()) return false;
  MakeCurrent(found->first, found->second);
  no_match_ = false;
  return true;
}

void SqliteRecordset::RememberCurrentRow() {
  const uint64_t version = TargetVersion();
  if (version == 0) return;
  KeepCurrentRow();
  if (version != known_version_ || known_rows_.size() >= kKnownRows) {
    known_rows_.clear();
    known_version_ = version;
  }
  known_rows_[current_id_].assign(row_, row_ + columns_.size());
}

// After this set wrote the row (row null: added or deleted it): when that was
// the only row written, the rows kept before stay valid, and the row as
// written (moved from row) is kept too; gives where it lies then, else null.
const std::vector<Variant>* SqliteRecordset::KeepOwnWrite(uint64_t version_before, uint64_t rows_before,
                                                          int64_t rowid, std::vector<Variant>* row) {
  const bool kept_current = version_before != 0 && version_before == known_version_;
  if (!kept_current || Conn().RowWrites() != rows_before + 1) {
    KeepCurrentRow();
    known_rows_.clear();
    known_version_ = 0;
    return nullptr;
  }
  known_version_ = TargetVersion();
  if (row == nullptr) {
    KeepCurrentRow();
    known_rows_.erase(rowid);
    return nullptr;
  }
  if (known_rows_.size() >= kKnownRows && known_rows_.count(rowid) == 0) return nullptr;
  // The current row may lie in the row replaced here: the caller makes the new one current.
  std::vector<Variant>& kept = known_rows_[rowid];
  kept = std::move(*row);
  return &kept;
}

// The row becomes current alone, as a Seek that reads it leaves the set. It is
// read where it is kept; KeepCurrentRow copies it before the kept rows change.
void SqliteRecordset::MakeCurrent(int64_t rowid, const std::vector<Variant>& row) {
  row_ = row.data();
  current_id_ = rowid;
  ahead_.clear();
  ahead_ids_.clear();
  ahead_pos_ = 0;
  ahead_complete_ = false;
  ahead_writes_ = Conn().WriteCount();
  ahead_version_ = TargetVersion();
  current_deleted_ = false;
  table_empty_ = false;
  where_ = Where::kOnRow;
}

// ---- Find ----

bool SqliteRecordset::MatchesCurrent(const jet::Criterion& criterion) const {
  return criterion.Matches(CurrentValues());
}

void SqliteRecordset::Find(std::string_view criterion_text, bool from_end, bool forward) {
  if (edit_mode_) CancelUpdate();
  auto found = criteria_.find(criterion_text);
  if (found == criteria_.end()) {
    if (result_columns_.empty()) {
      for (const auto& column : columns_) {
        result_columns_.push_back(
            jet::ResultColumn{column.name, column.type, column.base_table, column.base_column});
      }
    }
    std::shared_ptr<jet::Criterion> compiled = jet::CompileCriterion(criterion_text, result_columns_);
    found = criteria_.emplace(std::string(criterion_text), std::move(compiled)).first;
  }
  const jet::Criterion& criterion = *found->second;
  if (mode_ == Mode::kTable) {
    bool had_row = where_ == Where::kOnRow;
    int64_t saved_id = current_id_;
    try {
      if (from_end) {
        TableFirst(forward, false);
      } else if (where_ == Where::kOnRow) {
        TableStep(forward);
      } else {
        TableFirst(forward, false);
      }
      while (where_ == Where::kOnRow) {
        if (MatchesCurrent(criterion)) {
          no_match_ = false;
          return;
        }
        TableStep(forward);
      }
    } catch (...) {
      if (had_row) LoadByRowid(saved_id);
      throw;
    }
    no_match_ = true;
    if (had_row) LoadByRowid(saved_id);
    return;
  }
  size_t count = rows_->Count();
  auto matches = [&](size_t row) {
    if (!RowLive(row)) return false;
    auto begin = rows_->cells.begin() + static_cast<std::ptrdiff_t>(row * rows_->width);
    return criterion.Matches(std::vector<Variant>(begin, begin + static_cast<std::ptrdiff_t>(rows_->width)));
  };
  if (forward) {
    size_t start = from_end || where_ == Where::kBeforeFirst ? 0
                   : where_ == Where::kAfterLast             ? count
                                                             : pos_ + 1;
    for (size_t row = start; row < count; ++row) {
      if (matches(row)) {
        pos_ = row;
        where_ = Where::kOnRow;
        Reach(row);
        no_match_ = false;
        return;
      }
    }
  } else {
    size_t start = from_end || where_ == Where::kAfterLast ? count : where_ == Where::kBeforeFirst ? 0 : pos_;
    for (size_t row = start; row-- > 0;) {
      if (matches(row)) {
        pos_ = row;
        where_ = Where::kOnRow;
        Reach(row);
        no_match_ = false;
        return;
      }
    }
  }
  no_match_ = true;
}

// ---- writes ----

void SqliteRecordset::RequireWritable() const {
  if (mode_ == Mode::kSnapshot || !target_) RaiseStore(kErrReadOnly);
}

int64_t SqliteRecordset::ReserveCounter() {
  Connection& c = Conn();
  // Inside a transaction nobody else writes the file: while the table wasn't written
  // since our own last insert, the next number follows that insert.
  const uint64_t version = TargetVersion();
  if (next_counter_ > 0 && version != 0 && next_counter_version_ == version) return next_counter_;
  StatementUse use(c.Prepare("SELECT max(coalesce((SELECT seq FROM " + Quote(target_->alias) +
                             ".sqlite_sequence WHERE name = ?1), 0), coalesce((SELECT max(rowid) FROM " +
                             target_->physical + "), 0)) + 1"));
  sqlite3_bind_text(use, 1, target_->table.name.c_str(), -1, SQLITE_TRANSIENT);
  c.Step(use);
  return sqlite3_column_int64(use, 0);
}

// A cancelled AddNew uses up its counter value, as the next row shows.
void SqliteRecordset::BurnCounter(int64_t value) {
  Connection& c = Conn();
  std::string sequence = Quote(target_->alias) + ".sqlite_sequence";
  for (const std::string& sql :
       {"UPDATE " + sequence + " SET seq = ?2 WHERE name = ?1 AND seq < ?2",
        "INSERT INTO " + sequence + " (name, seq) SELECT ?1, ?2 WHERE NOT EXISTS (SELECT 1 FROM " + sequence +
            " WHERE name = ?1)"}) {
    StatementUse use(c.Prepare(sql));
    sqlite3_bind_text(use, 1, target_->table.name.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_int64(use, 2, value);
    c.Step(use);
  }
  c.NoteWrite();
}

// A default is parsed once, but a quoted text again at every use: read as a
// date it follows the locale.
Variant SqliteRecordset::Default(size_t ordinal) {
  if (defaults_.size() != columns_.size()) {
    defaults_.clear();
    for (const auto& column : columns_) {
      const bool quoted = column.default_value.find_first_of("\"'") != std::string::npos;
      defaults_.push_back(quoted ? std::nullopt
                                 : std::optional(ParseDefault(column.default_value, column.type)));
    }
  }
  const std::optional<Variant>& parsed = defaults_[ordinal];
  return parsed ? *parsed : ParseDefault(columns_[ordinal].default_value, columns_[ordinal].type);
}

void SqliteRecordset::AddNew() {
  RequireWritable();
  if (edit_mode_) CancelUpdate();
  buffer_.assign(columns_.size(), Variant::Null());
  dirty_.assign(columns_.size(), 0);
  for (size_t i = 0; i < columns_.size(); ++i) {
    Variant preset = Default(i);
    if (!preset.IsEmpty()) {
      buffer_[i] = std::move(preset);
      dirty_[i] = 1;
    }
  }
  reserved_counter_ = 0;
  if (const FieldInfo* counter = target_->table.Counter()) {
    reserved_counter_ = ReserveCounter();
    for (size_t i = 0; i < columns_.size(); ++i) {
      if (NamesEqual(columns_[i].base_column, counter->name)) {
        buffer_[i] = Variant(static_cast<int32_t>(reserved_counter_));
        dirty_[i] = 1;
      }
    }
  }
  edit_mode_ = 2;
}

void SqliteRecordset::Edit() {
  RequireWritable();
  if (edit_mode_) CancelUpdate();
  buffer_ = CurrentValues();
  dirty_.assign(columns_.size(), 0);
  edit_mode_ = 1;
}

void SqliteRecordset::CancelUpdate() {
  if (edit_mode_ == 0) RaiseStore(kErrUpdateWithoutAddNew);
  int mode = edit_mode_;
  edit_mode_ = 0;
  if (mode == 2 && reserved_counter_ > 0) BurnCounter(reserved_counter_);
  reserved_counter_ = 0;
}

// "INSERT INTO t (columns) VALUES (?, ...)" or "UPDATE t SET column = ?, ... WHERE rowid = ?";
// a row cycle writes the same columns time after time.
const std::string& SqliteRecordset::WriteSql(bool insert, const std::vector<size_t>& changed) {
  std::string& sql = write_sql_[insert ? 1 : 0];
  std::vector<size_t>& columns = write_columns_[insert ? 1 : 0];
  if (!sql.empty() && columns == changed) return sql;
  columns = changed;
  kept_statements_.erase(&sql);
  if (insert) {
    std::string names;
    std::string marks;
    for (size_t i : changed) {
      names += (names.empty() ? "" : ", ") + QuotedColumn(i);
      marks += marks.empty() ? "?" : ", ?";
    }
    sql = names.empty() ? "INSERT INTO " + target_->physical + " DEFAULT VALUES"
                        : "INSERT INTO " + target_->physical + " (" + names + ") VALUES (" + marks + ")";
    return sql;
  }
  std::string sets;
  for (size_t i : changed) sets += (sets.empty() ? "" : ", ") + QuotedColumn(i) + " = ?";
  sql = "UPDATE " + target_->physical + " SET " + sets + " WHERE rowid = ?";
  return sql;
}

// The rowid of a row of a dynaset over a query, found by the base table's
// primary key among the columns.
int64_t SqliteRecordset::RowidOf(size_t row) {
  if (rows_->ids[row] >= 0) return rows_->ids[row];
  const IndexInfo* primary = target_->table.PrimaryIndex();
  if (!primary) RaiseStore(kErrReadOnly);
  std::string sql = "SELECT rowid FROM " + target_->physical + " WHERE ";
  std::vector<Variant> binds;
  for (size_t k = 0; k < primary->fields.size(); ++k) {
    int ordinal = -1;
    for (size_t i = 0; i < columns_.size(); ++i) {
      if (NamesEqual(columns_[i].base_column, primary->fields[k])) ordinal = static_cast<int>(i);
    }
    if (ordinal < 0) RaiseStore(kErrReadOnly);
    sql += (k ? " AND " : "") + Quote(primary->fields[k]) + " = ?";
    binds.push_back(rows_->cells[row * rows_->width + static_cast<size_t>(ordinal)]);
  }
  Connection& c = Conn();
  StatementUse use(c.Prepare(sql));
  for (size_t i = 0; i < binds.size(); ++i) BindValue(use, static_cast<int>(i + 1), binds[i]);
  if (!c.Step(use)) RaiseStore(kErrRecordDeleted);
  rows_->ids[row] = sqlite3_column_int64(use, 0);
  return rows_->ids[row];
}

void SqliteRecordset::Update() {
  if (edit_mode_ == 0) RaiseStore(kErrUpdateWithoutAddNew);
  Connection& c = Conn();
  std::vector<size_t> changed;
  for (size_t i = 0; i < columns_.size(); ++i) {
    if (dirty_[i] && !columns_[i].base_column.empty()) changed.push_back(i);
  }
  if (edit_mode_ == 2) {
    if (const IndexInfo* primary = target_->table.PrimaryIndex()) {
      for (const auto& key : primary->fields) {
        for (size_t i = 0; i < columns_.size(); ++i) {
          if (NamesEqual(columns_[i].base_column, key) && buffer_[i].IsNull()) RaiseStore(kErrNullInKey);
        }
      }
    }
    const uint64_t version_before = TargetVersion();
    const uint64_t rows_before = c.RowWrites();
    {
      StatementUse use(PrepareKept(WriteSql(true, changed)));
      for (size_t k = 0; k < changed.size(); ++k)
        BindValue(use, static_cast<int>(k + 1), buffer_[changed[k]]);
      c.Step(use);
    }
    c.NoteRowWrite();
    int64_t rowid = sqlite3_last_insert_rowid(c.Handle());
    // The new row isn't kept: defaults set by triggers may have changed it.
    KeepOwnWrite(version_before, rows_before, rowid, nullptr);
    next_counter_ = reserved_counter_ > 0 ? reserved_counter_ + 1 : 0;
    next_counter_version_ = TargetVersion();
    if (mode_ == Mode::kTable) {
      last_modified_ = rowid;
    } else {
      // Rows added through a dynaset go to its end, whatever its order.
      for (auto& value : buffer_) rows_->cells.push_back(value);
      rows_->ids.push_back(rowid);
      rows_->deleted.push_back(0);
      ++rows_->live;
      last_modified_ = static_cast<int64_t>(rows_->Count() - 1);
      if (reached_ + 1 == rows_->Count()) reached_ = rows_->Count();
    }
  } else {
    int64_t rowid = mode_ == Mode::kTable ? current_id_ : RowidOf(pos_);
    const std::vector<Variant>* kept = nullptr;
    if (!changed.empty()) {
      const uint64_t version_before = TargetVersion();
      const uint64_t rows_before = c.RowWrites();
      {
        StatementUse use(PrepareKept(WriteSql(false, changed)));
        for (size_t k = 0; k < changed.size(); ++k)
          BindValue(use, static_cast<int>(k + 1), buffer_[changed[k]]);
        sqlite3_bind_int64(use, static_cast<int>(changed.size() + 1), rowid);
        c.Step(use);
      }
      c.NoteRowWrite();
      // The buffer holds the whole row as it now stands (Edit read it all).
      kept = KeepOwnWrite(version_before, rows_before, rowid, mode_ == Mode::kTable ? &buffer_ : nullptr);
    }
    if (mode_ == Mode::kTable) {
      if (kept != nullptr) {
        row_ = kept->data();
      } else {
        current_ = std::move(buffer_);  // no longer read once the edit ends
        row_ = current_.data();
      }
      last_modified_ = rowid;
    } else {
      std::copy(buffer_.begin(), buffer_.end(),
                rows_->cells.begin() + static_cast<std::ptrdiff_t>(pos_ * rows_->width));
      last_modified_ = static_cast<int64_t>(pos_);
    }
  }
  edit_mode_ = 0;
  reserved_counter_ = 0;
}

void SqliteRecordset::Delete() {
  RequireWritable();
  if (edit_mode_) CancelUpdate();
  RequireRow();
  Connection& c = Conn();
  int64_t rowid = mode_ == Mode::kTable ? current_id_ : RowidOf(pos_);
  const uint64_t version_before = TargetVersion();
  const uint64_t rows_before = c.RowWrites();
  {
    StatementUse use(c.Prepare("DELETE FROM " + target_->physical + " WHERE rowid = ?"));
    sqlite3_bind_int64(use, 1, rowid);
    c.Step(use);
  }
  c.NoteRowWrite();
  KeepOwnWrite(version_before, rows_before, rowid, nullptr);
  if (mode_ == Mode::kTable) {
    current_deleted_ = true;
  } else {
    rows_->deleted[pos_] = 1;
    --rows_->live;
  }
}

void SqliteRecordset::Requery() {
  if (edit_mode_) CancelUpdate();
  if (mode_ == Mode::kTable) return TableFirst(true, false);
  // A snapshot can't change its rows, and its statement reads the same rows
  // again while nothing was written to the files since: keep them.
  if (RowsCurrent()) return Rewind();
  OpenRows();
}

}  // namespace

std::unique_ptr<Recordset> OpenRecordset(RecordsetSource source, RecordsetTypeEnum type) {
  bool is_table = !source.table.empty();
  if (type == dbOpenDefault) type = is_table ? dbOpenTable : dbOpenDynaset;
  if (type == dbOpenTable && !is_table) RaiseStore(kErrNotSupported);
  Mode mode = type == dbOpenTable ? Mode::kTable : type == dbOpenSnapshot ? Mode::kSnapshot : Mode::kDynaset;
  auto recordset = std::make_unique<SqliteRecordset>(std::move(source), mode);
  if (is_table) {
    recordset->OpenTable();
  } else {
    recordset->OpenRows();
  }
  return recordset;
}

int BindAndRun(Connection& connection, const jet::Translation& translation,
               const std::vector<Variant>& parameters) {
  sqlite3_stmt* statement = connection.Prepare(translation.sql);
  StatementUse use(statement);
  int expected = sqlite3_bind_parameter_count(statement);
  if (expected > static_cast<int>(parameters.size())) {
    RaiseStore(kErrTooFewParameters, std::to_string(expected - static_cast<int>(parameters.size())));
  }
  for (size_t i = 0; i < parameters.size() && static_cast<int>(i) < expected; ++i) {
    BindValue(statement, static_cast<int>(i + 1), parameters[i]);
  }
  connection.NoteWrite();
  while (connection.Step(statement)) {
  }
  return sqlite3_changes(connection.Handle());
}

}  // namespace ldg::store::sqlite
