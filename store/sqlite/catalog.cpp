#include "store/sqlite/catalog.hpp"

#include <sqlite3.h>

#include <atomic>

#include "store/constants.hpp"
#include "store/sqlite/connection.hpp"
#include "store/sqlite/names.hpp"
#include "store/sqlite/value_codec.hpp"
#include "store/store_error.hpp"

namespace ldg::store::sqlite {

namespace {

std::atomic<uint64_t> next_version{1};

std::string JoinNames(const std::vector<std::string>& names) {
  std::string out;
  for (const auto& name : names) out += (out.empty() ? "" : ";") + name;
  return out;
}

std::vector<std::string> SplitNames(std::string_view text) {
  std::vector<std::string> out;
  size_t start = 0;
  while (start <= text.size() && !text.empty()) {
    size_t end = text.find(';', start);
    if (end == std::string_view::npos) end = text.size();
    if (end > start) out.emplace_back(text.substr(start, end - start));
    start = end + 1;
  }
  return out;
}

std::string ColumnText(sqlite3_stmt* statement, int column) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
  return text ? std::string(text) : std::string();
}

// An SQL literal for a constant default, or empty.
std::string DefaultLiteral(const FieldInfo& field) {
  Variant value = ParseDefault(field.default_value, field.type);
  switch (value.Type()) {
    case VarType::kBoolean:
      return value.AsBoolean() ? "-1" : "0";
    case VarType::kByte:
      return std::to_string(value.AsByte());
    case VarType::kInteger:
      return std::to_string(value.AsInteger());
    case VarType::kLong:
      return std::to_string(value.AsLong());
    case VarType::kCurrency:
      return std::to_string(value.AsCurrency().Raw());
    case VarType::kSingle:
    case VarType::kDouble:
    case VarType::kDate: {
      char buffer[40];
      double number = value.Type() == VarType::kSingle   ? value.AsSingle()
                      : value.Type() == VarType::kDouble ? value.AsDouble()
                                                         : value.AsDate().Serial();
      snprintf(buffer, sizeof buffer, "%.17g", number);
      return buffer;
    }
    case VarType::kString:
      return QuoteText(value.AsString());
    default:
      return "";
  }
}

std::string ColumnDefinition(const FieldInfo& field, bool in_create) {
  std::string out = Quote(field.name) + " ";
  if (field.IsCounter()) return out + "INTEGER PRIMARY KEY AUTOINCREMENT";
  out += ColumnTypeName(field.type);
  if (field.type == FieldType::kBoolean) {
    // A Yes/No column can't hold Null: rows that exist before it read False.
    std::string literal = in_create ? DefaultLiteral(field) : "";
    out += " NOT NULL DEFAULT " + (literal.empty() ? std::string("0") : literal);
  }
  return out;
}

std::string TriggerName(std::string_view table, std::string_view purpose) {
  return std::string(table) + "__" + std::string(purpose);
}

}  // namespace

bool FieldInfo::IsCounter() const { return (attributes & dbAutoIncrField) != 0; }

int TableInfo::FieldOrdinal(std::string_view field) const {
  for (size_t i = 0; i < fields.size(); ++i) {
    if (NamesEqual(fields[i].name, field)) return static_cast<int>(i);
  }
  return -1;
}

const FieldInfo* TableInfo::FindField(std::string_view field) const {
  int ordinal = FieldOrdinal(field);
  return ordinal < 0 ? nullptr : &fields[static_cast<size_t>(ordinal)];
}

const IndexInfo* TableInfo::FindIndex(std::string_view index) const {
  for (const auto& candidate : indexes) {
    if (NamesEqual(candidate.name, index)) return &candidate;
  }
  return nullptr;
}

const IndexInfo* TableInfo::PrimaryIndex() const {
  for (const auto& candidate : indexes) {
    if (candidate.primary) return &candidate;
  }
  return nullptr;
}

const FieldInfo* TableInfo::Counter() const {
  for (const auto& field : fields) {
    if (field.IsCounter()) return &field;
  }
  return nullptr;
}

std::string LinkedPath(std::string_view connect, const std::string& linking_file) {
  std::string path;
  constexpr std::string_view kKey = "DATABASE=";
  for (const auto& part : SplitNames(connect)) {
    if (part.size() >= kKey.size() && NamesEqual(std::string_view(part).substr(0, kKey.size()), kKey)) {
      path = part.substr(kKey.size());
    }
  }
  if (!path.empty() && path[0] != '/') {
    size_t slash = linking_file.find_last_of('/');
    if (slash != std::string::npos) path = linking_file.substr(0, slash + 1) + path;
  }
  return path;
}

Catalog::Catalog(Connection& connection, std::string alias, std::string path, std::unique_ptr<LockFile> lock)
    : connection_(connection), alias_(std::move(alias)), path_(std::move(path)), lock_(std::move(lock)) {}

Catalog::~Catalog() = default;

void Catalog::ReleaseLock() {
  links_.clear();
  if (lock_) lock_->Release();
}

void Catalog::CreateCatalogTables(Connection& connection, const std::string& alias) {
  std::string a = Quote(alias) + ".";
  connection.Exec(
      "CREATE TABLE " + a +
      "_ldg_tables (name TEXT NOT NULL COLLATE NOCASE PRIMARY KEY, connect TEXT, source TEXT);"
      "CREATE TABLE " +
      a +
      "_ldg_fields (tbl TEXT NOT NULL COLLATE NOCASE, ordinal INTEGER NOT NULL, "
      "name TEXT NOT NULL COLLATE NOCASE, type INTEGER NOT NULL, size INTEGER NOT NULL, dflt TEXT, "
      "attributes INTEGER NOT NULL, PRIMARY KEY (tbl, name));"
      "CREATE TABLE " +
      a +
      "_ldg_indexes (tbl TEXT NOT NULL COLLATE NOCASE, name TEXT NOT NULL COLLATE NOCASE, "
      "sql_name TEXT, is_primary INTEGER NOT NULL, is_unique INTEGER NOT NULL, fields TEXT NOT NULL, "
      "PRIMARY KEY (tbl, name));"
      "CREATE TABLE " +
      a +
      "_ldg_relations (name TEXT NOT NULL COLLATE NOCASE PRIMARY KEY, tbl TEXT NOT NULL, "
      "foreign_tbl TEXT NOT NULL, attributes INTEGER NOT NULL, fields TEXT NOT NULL, foreign_fields TEXT NOT "
      "NULL);"
      "CREATE TABLE " +
      a +
      "_ldg_queries (name TEXT NOT NULL COLLATE NOCASE PRIMARY KEY, sql TEXT NOT NULL);"
      "CREATE TABLE " +
      a +
      "_ldg_properties (name TEXT NOT NULL COLLATE NOCASE PRIMARY KEY, type INTEGER NOT NULL, "
      "value TEXT);");
}

void Catalog::Load() {
  std::string a = Quote(alias_) + ".";
  auto& c = connection_;
  {
    StatementUse check(c.Prepare("SELECT count(*) FROM " + a + "sqlite_master WHERE name = '_ldg_tables'"));
    c.Step(check);
    if (sqlite3_column_int(check, 0) == 0) RaiseStore(kErrUnrecognizedFormat, path_);
  }
  std::vector<TableInfo> tables;
  {
    StatementUse read(c.Prepare("SELECT name, connect, source FROM " + a + "_ldg_tables ORDER BY rowid"));
    while (c.Step(read)) {
      TableInfo table;
      table.name = ColumnText(read, 0);
      table.connect = ColumnText(read, 1);
      table.source = ColumnText(read, 2);
      tables.push_back(std::move(table));
    }
  }
  auto find = [&tables](const std::string& name) -> TableInfo* {
    for (auto& table : tables) {
      if (NamesEqual(table.name, name)) return &table;
    }
    return nullptr;
  };
  {
    StatementUse read(c.Prepare("SELECT tbl, name, type, size, dflt, attributes FROM " + a +
                                "_ldg_fields ORDER BY tbl, ordinal"));
    while (c.Step(read)) {
      TableInfo* table = find(ColumnText(read, 0));
      if (!table) continue;
      table->fields.push_back(
          FieldInfo{ColumnText(read, 1), static_cast<FieldType>(sqlite3_column_int(read, 2)),
                    sqlite3_column_int(read, 3), ColumnText(read, 4), sqlite3_column_int(read, 5)});
    }
  }
  {
    StatementUse read(c.Prepare("SELECT tbl, name, sql_name, is_primary, is_unique, fields FROM " + a +
                                "_ldg_indexes ORDER BY rowid"));
    while (c.Step(read)) {
      TableInfo* table = find(ColumnText(read, 0));
      if (!table) continue;
      table->indexes.push_back(IndexInfo{ColumnText(read, 1), ColumnText(read, 2),
                                         sqlite3_column_int(read, 3) != 0, sqlite3_column_int(read, 4) != 0,
                                         SplitNames(ColumnText(read, 5))});
    }
  }
  std::vector<RelationInfo> relations;
  {
    StatementUse read(c.Prepare("SELECT name, tbl, foreign_tbl, attributes, fields, foreign_fields FROM " +
                                a + "_ldg_relations ORDER BY rowid"));
    while (c.Step(read)) {
      relations.push_back(RelationInfo{ColumnText(read, 0), ColumnText(read, 1), ColumnText(read, 2),
                                       sqlite3_column_int(read, 3), SplitNames(ColumnText(read, 4)),
                                       SplitNames(ColumnText(read, 5))});
    }
  }
  std::vector<QueryInfo> queries;
  {
    StatementUse read(c.Prepare("SELECT name, sql FROM " + a + "_ldg_queries ORDER BY rowid"));
    while (c.Step(read)) queries.push_back(QueryInfo{ColumnText(read, 0), ColumnText(read, 1)});
  }
  std::vector<PropertyInfo> properties;
  {
    StatementUse read(c.Prepare("SELECT name, type, value FROM " + a + "_ldg_properties ORDER BY rowid"));
    while (c.Step(read)) {
      auto type = static_cast<FieldType>(sqlite3_column_int(read, 1));
      Variant value = sqlite3_column_type(read, 2) == SQLITE_NULL
                          ? Variant::Null()
                          : Coerce(Variant(ColumnText(read, 2)), type);
      properties.push_back(PropertyInfo{ColumnText(read, 0), type, value});
    }
  }
  tables_ = std::move(tables);
  relations_ = std::move(relations);
  queries_ = std::move(queries);
  properties_ = std::move(properties);
  version_ = next_version++;
  loaded_at_rollback_ = connection_.RollbackCount();
}

void Catalog::ReloadIfRolledBack() const {
  if (loaded_at_rollback_ != connection_.RollbackCount()) const_cast<Catalog*>(this)->Load();
}

uint64_t Catalog::Version() const {
  ReloadIfRolledBack();
  return version_;
}

const std::vector<TableInfo>& Catalog::Tables() const {
  ReloadIfRolledBack();
  return tables_;
}

const TableInfo* Catalog::FindTable(std::string_view name) const {
  for (const auto& table : Tables()) {
    if (NamesEqual(table.name, name)) return &table;
  }
  return nullptr;
}

std::string Catalog::Qualified(std::string_view name) const { return Quote(alias_) + "." + Quote(name); }

std::shared_ptr<Catalog> Catalog::LinkedCatalog(const TableInfo& link) const {
  std::string key = FoldName(link.name);
  if (auto found = links_.find(key); found != links_.end()) return found->second;
  auto target = connection_.OpenFile(LinkedPath(link.connect, path_));
  links_[key] = target;
  return target;
}

std::optional<Catalog::Target> Catalog::Resolve(std::string_view name) const {
  const TableInfo* table = FindTable(name);
  if (!table) return std::nullopt;
  if (!table->IsLink()) return Target{this, table, Qualified(table->name)};
  auto target = LinkedCatalog(*table);
  const TableInfo* source = target->FindTable(table->source);
  if (!source || source->IsLink()) RaiseStore(kErrTableNotFound, table->source);
  return Target{target.get(), source, target->Qualified(source->name)};
}

void Catalog::Change(const std::vector<std::string>& statements) {
  ReloadIfRolledBack();
  connection_.Exec("SAVEPOINT ldg_schema");
  try {
    for (const auto& statement : statements) connection_.Exec(statement);
    connection_.Exec("RELEASE ldg_schema");
  } catch (...) {
    connection_.Exec("ROLLBACK TO ldg_schema; RELEASE ldg_schema");
    Load();
    throw;
  }
  Load();
}

void Catalog::ThrowIfNameTaken(std::string_view name) const {
  if (FindTable(name) || FindQuery(name)) RaiseStore(kErrObjectExists, name);
}

void Catalog::WriteDefaultTrigger(std::vector<std::string>& out, const TableInfo& table,
                                  const FieldInfo& field) const {
  std::string trigger = Qualified(TriggerName(table.name, "default__" + field.name));
  out.push_back("DROP TRIGGER IF EXISTS " + trigger);
  std::string literal = DefaultLiteral(field);
  if (literal.empty() || field.type == FieldType::kBoolean) return;
  // A row inserted without the column takes the default, also from a statement.
  out.push_back("CREATE TRIGGER " + trigger + " AFTER INSERT ON " + Quote(table.name) +
                " FOR EACH ROW WHEN NEW." + Quote(field.name) + " IS NULL BEGIN UPDATE " + Quote(table.name) +
                " SET " + Quote(field.name) + " = " + literal + " WHERE rowid = NEW.rowid; END");
}

namespace {

std::string FieldRow(const std::string& a, const std::string& table, int ordinal, const FieldInfo& field) {
  return "INSERT INTO " + a + "_ldg_fields (tbl, ordinal, name, type, size, dflt, attributes) VALUES (" +
         QuoteText(table) + ", " + std::to_string(ordinal) + ", " + QuoteText(field.name) + ", " +
         std::to_string(static_cast<int>(field.type)) + ", " + std::to_string(field.size) + ", " +
         QuoteText(field.default_value) + ", " + std::to_string(field.attributes) + ")";
}

}  // namespace

void Catalog::CreateTable(const TableInfo& table) {
  ThrowIfNameTaken(table.name);
  if (table.fields.empty()) RaiseStore(kErrInvalidArgument);
  std::string a = Quote(alias_) + ".";
  std::vector<std::string> statements;
  std::string create = "CREATE TABLE " + Qualified(table.name) + " (";
  for (size_t i = 0; i < table.fields.size(); ++i) {
    create += (i ? ", " : "") + ColumnDefinition(table.fields[i], true);
  }
  statements.push_back(create + ")");
  statements.push_back("INSERT INTO " + a + "_ldg_tables (name) VALUES (" + QuoteText(table.name) + ")");
  for (size_t i = 0; i < table.fields.size(); ++i) {
    statements.push_back(FieldRow(a, table.name, static_cast<int>(i), table.fields[i]));
    WriteDefaultTrigger(statements, table, table.fields[i]);
  }
  Change(statements);
  for (const auto& index : table.indexes) AddIndex(table.name, index);
}

void Catalog::CreateLink(std::string_view name, std::string_view connect, std::string_view source) {
  ThrowIfNameTaken(name);
  std::string a = Quote(alias_) + ".";
  Change({"INSERT INTO " + a + "_ldg_tables (name, connect, source) VALUES (" + QuoteText(name) + ", " +
          QuoteText(connect) + ", " + QuoteText(source) + ")"});
}

void Catalog::DropTable(std::string_view name) {
  const TableInfo* table = FindTable(name);
  if (!table) RaiseStore(kErrItemNotFound);
  std::string a = Quote(alias_) + ".";
  std::string quoted = QuoteText(table->name);
  std::vector<std::string> statements;
  if (table->IsLink()) {
    if (auto found = links_.find(FoldName(table->name)); found != links_.end()) {
      connection_.CloseFile(found->second->Alias());
      links_.erase(found);
    }
  } else {
    statements.push_back("DROP TABLE " + Qualified(table->name));
  }
  for (const auto& relation : relations_) {
    if (NamesEqual(relation.table, table->name) || NamesEqual(relation.foreign_table, table->name)) {
      statements.push_back("DROP TRIGGER IF EXISTS " + Qualified(TriggerName(relation.table, relation.name)));
      statements.push_back("DELETE FROM " + a + "_ldg_relations WHERE name = " + QuoteText(relation.name));
    }
  }
  statements.push_back("DELETE FROM " + a + "_ldg_tables WHERE name = " + quoted);
  statements.push_back("DELETE FROM " + a + "_ldg_fields WHERE tbl = " + quoted);
  statements.push_back("DELETE FROM " + a + "_ldg_indexes WHERE tbl = " + quoted);
  Change(statements);
}

void Catalog::RenameTable(std::string_view name, std::string_view new_name) {
  const TableInfo* table = FindTable(name);
  if (!table) RaiseStore(kErrItemNotFound);
  if (!NamesEqual(name, new_name)) ThrowIfNameTaken(new_name);
  std::string a = Quote(alias_) + ".";
  std::string from = QuoteText(table->name);
  std::string to = QuoteText(new_name);
  std::vector<std::string> statements;
  if (!table->IsLink())
    statements.push_back("ALTER TABLE " + Qualified(table->name) + " RENAME TO " + Quote(new_name));
  statements.push_back("UPDATE " + a + "_ldg_tables SET name = " + to + " WHERE name = " + from);
  statements.push_back("UPDATE " + a + "_ldg_fields SET tbl = " + to + " WHERE tbl = " + from);
  statements.push_back("UPDATE " + a + "_ldg_indexes SET tbl = " + to + " WHERE tbl = " + from);
  statements.push_back("UPDATE " + a + "_ldg_relations SET tbl = " + to + " WHERE tbl = " + from);
  statements.push_back("UPDATE " + a + "_ldg_relations SET foreign_tbl = " + to +
                       " WHERE foreign_tbl = " + from);
  Change(statements);
}

void Catalog::AddField(std::string_view table_name, const FieldInfo& field) {
  const TableInfo* table = FindTable(table_name);
  if (!table || table->IsLink()) RaiseStore(kErrItemNotFound);
  if (table->FindField(field.name)) RaiseStore(kErrObjectExists, field.name);
  std::string a = Quote(alias_) + ".";
  std::vector<std::string> statements{"ALTER TABLE " + Qualified(table->name) + " ADD COLUMN " +
                                      ColumnDefinition(field, false)};
  statements.push_back(FieldRow(a, table->name, static_cast<int>(table->fields.size()), field));
  WriteDefaultTrigger(statements, *table, field);
  Change(statements);
}

void Catalog::DropField(std::string_view table_name, std::string_view field_name) {
  const TableInfo* table = FindTable(table_name);
  if (!table || table->IsLink()) RaiseStore(kErrItemNotFound);
  const FieldInfo* field = table->FindField(field_name);
  if (!field) RaiseStore(kErrItemNotFound);
  std::string a = Quote(alias_) + ".";
  std::vector<std::string> statements{
      "DROP TRIGGER IF EXISTS " + Qualified(TriggerName(table->name, "default__" + field->name)),
      "ALTER TABLE " + Qualified(table->name) + " DROP COLUMN " + Quote(field->name),
      "DELETE FROM " + a + "_ldg_fields WHERE tbl = " + QuoteText(table->name) +
          " AND name = " + QuoteText(field->name)};
  Change(statements);
}

void Catalog::ChangeField(std::string_view table_name, std::string_view field_name,
                          const FieldInfo& changed) {
  const TableInfo* table = FindTable(table_name);
  if (!table || table->IsLink()) RaiseStore(kErrItemNotFound);
  const FieldInfo* field = table->FindField(field_name);
  if (!field) RaiseStore(kErrItemNotFound);
  std::string a = Quote(alias_) + ".";
  std::vector<std::string> statements;
  statements.push_back("DROP TRIGGER IF EXISTS " +
                       Qualified(TriggerName(table->name, "default__" + field->name)));
  if (field->name != changed.name) {
    statements.push_back("ALTER TABLE " + Qualified(table->name) + " RENAME COLUMN " + Quote(field->name) +
                         " TO " + Quote(changed.name));
  }
  statements.push_back("UPDATE " + a + "_ldg_fields SET name = " + QuoteText(changed.name) + ", size = " +
                       std::to_string(changed.size) + ", dflt = " + QuoteText(changed.default_value) +
                       ", attributes = " + std::to_string(changed.attributes) +
                       " WHERE tbl = " + QuoteText(table->name) + " AND name = " + QuoteText(field->name));
  WriteDefaultTrigger(statements, *table, changed);
  Change(statements);
}

void Catalog::AddIndex(std::string_view table_name, IndexInfo index) {
  const TableInfo* table = FindTable(table_name);
  if (!table || table->IsLink()) RaiseStore(kErrItemNotFound);
  if (table->FindIndex(index.name)) RaiseStore(kErrObjectExists, index.name);
  if (index.fields.empty()) RaiseStore(kErrInvalidArgument);
  std::vector<std::string> statements;
  const FieldInfo* counter = table->Counter();
  bool is_rowid = index.fields.size() == 1 && counter && NamesEqual(counter->name, index.fields[0]);
  for (const auto& field : index.fields) {
    if (!table->FindField(field)) RaiseStore(kErrItemNotFound);
  }
  if (is_rowid) {
    index.sql_name.clear();
  } else {
    index.sql_name = table->name + "__" + index.name;
    std::string columns;
    for (const auto& field : index.fields) columns += (columns.empty() ? "" : ", ") + Quote(field);
    statements.push_back(std::string("CREATE ") + (index.unique || index.primary ? "UNIQUE " : "") +
                         "INDEX " + Qualified(index.sql_name) + " ON " + Quote(table->name) + " (" + columns +
                         ")");
  }
  std::string a = Quote(alias_) + ".";
  statements.push_back(
      "INSERT INTO " + a + "_ldg_indexes (tbl, name, sql_name, is_primary, is_unique, fields) VALUES (" +
      QuoteText(table->name) + ", " + QuoteText(index.name) + ", " + QuoteText(index.sql_name) + ", " +
      (index.primary ? "1" : "0") + ", " + (index.unique || index.primary ? "1" : "0") + ", " +
      QuoteText(JoinNames(index.fields)) + ")");
  Change(statements);
}

void Catalog::DropIndex(std::string_view table_name, std::string_view index_name) {
  const TableInfo* table = FindTable(table_name);
  if (!table) RaiseStore(kErrItemNotFound);
  const IndexInfo* index = table->FindIndex(index_name);
  if (!index) RaiseStore(kErrItemNotFound);
  std::string a = Quote(alias_) + ".";
  std::vector<std::string> statements;
  if (!index->sql_name.empty()) statements.push_back("DROP INDEX IF EXISTS " + Qualified(index->sql_name));
  statements.push_back("DELETE FROM " + a + "_ldg_indexes WHERE tbl = " + QuoteText(table->name) +
                       " AND name = " + QuoteText(index->name));
  Change(statements);
}

const std::vector<RelationInfo>& Catalog::Relations() const {
  ReloadIfRolledBack();
  return relations_;
}

void Catalog::AddRelation(const RelationInfo& relation) {
  for (const auto& existing : Relations()) {
    if (NamesEqual(existing.name, relation.name)) RaiseStore(kErrObjectExists, relation.name);
  }
  const TableInfo* parent = FindTable(relation.table);
  const TableInfo* child = FindTable(relation.foreign_table);
  if (!parent || !child || relation.fields.empty() ||
      relation.fields.size() != relation.foreign_fields.size()) {
    RaiseStore(kErrItemNotFound);
  }
  std::string a = Quote(alias_) + ".";
  std::vector<std::string> statements;
  if ((relation.attributes & dbRelationDontEnforce) == 0 && !parent->IsLink() && !child->IsLink()) {
    std::string match;
    for (size_t i = 0; i < relation.fields.size(); ++i) {
      match += (i ? " AND " : "") + Quote(relation.foreign_fields[i]) + " = OLD." + Quote(relation.fields[i]);
    }
    std::string trigger = Qualified(TriggerName(parent->name, relation.name));
    // Checked on delete of the parent only; inserts and changes stay unchecked.
    if (relation.attributes & dbRelationDeleteCascade) {
      statements.push_back("CREATE TRIGGER " + trigger + " AFTER DELETE ON " + Quote(parent->name) +
                           " FOR EACH ROW BEGIN DELETE FROM " + Quote(child->name) + " WHERE " + match +
                           "; END");
    } else {
      statements.push_back("CREATE TRIGGER " + trigger + " BEFORE DELETE ON " + Quote(parent->name) +
                           " FOR EACH ROW WHEN EXISTS (SELECT 1 FROM " + Quote(child->name) + " WHERE " +
                           match + ") BEGIN SELECT RAISE(ABORT, " + QuoteText("ldg3200:" + child->name) +
                           "); END");
    }
  }
  statements.push_back("INSERT INTO " + a +
                       "_ldg_relations (name, tbl, foreign_tbl, attributes, fields, "
                       "foreign_fields) VALUES (" +
                       QuoteText(relation.name) + ", " + QuoteText(parent->name) + ", " +
                       QuoteText(child->name) + ", " + std::to_string(relation.attributes) + ", " +
                       QuoteText(JoinNames(relation.fields)) + ", " +
                       QuoteText(JoinNames(relation.foreign_fields)) + ")");
  Change(statements);
}

void Catalog::DropRelation(std::string_view name) {
  for (const auto& relation : Relations()) {
    if (!NamesEqual(relation.name, name)) continue;
    std::string a = Quote(alias_) + ".";
    Change({"DROP TRIGGER IF EXISTS " + Qualified(TriggerName(relation.table, relation.name)),
            "DELETE FROM " + a + "_ldg_relations WHERE name = " + QuoteText(relation.name)});
    return;
  }
  RaiseStore(kErrItemNotFound);
}

const std::vector<QueryInfo>& Catalog::Queries() const {
  ReloadIfRolledBack();
  return queries_;
}

const QueryInfo* Catalog::FindQuery(std::string_view name) const {
  for (const auto& query : Queries()) {
    if (NamesEqual(query.name, name)) return &query;
  }
  return nullptr;
}

void Catalog::SaveQuery(std::string_view name, std::string_view jet_sql) {
  std::string a = Quote(alias_) + ".";
  if (FindQuery(name)) {
    Change({"UPDATE " + a + "_ldg_queries SET sql = " + QuoteText(jet_sql) +
            " WHERE name = " + QuoteText(name)});
    return;
  }
  ThrowIfNameTaken(name);
  Change({"INSERT INTO " + a + "_ldg_queries (name, sql) VALUES (" + QuoteText(name) + ", " +
          QuoteText(jet_sql) + ")"});
}

void Catalog::DeleteQuery(std::string_view name) {
  if (!FindQuery(name)) RaiseStore(kErrItemNotFound);
  Change({"DELETE FROM " + Quote(alias_) + "._ldg_queries WHERE name = " + QuoteText(name)});
}

void Catalog::RenameQuery(std::string_view name, std::string_view new_name) {
  if (!FindQuery(name)) RaiseStore(kErrItemNotFound);
  if (!NamesEqual(name, new_name)) ThrowIfNameTaken(new_name);
  Change({"UPDATE " + Quote(alias_) + "._ldg_queries SET name = " + QuoteText(new_name) +
          " WHERE name = " + QuoteText(name)});
}

const std::vector<PropertyInfo>& Catalog::Properties() const {
  ReloadIfRolledBack();
  return properties_;
}

void Catalog::SaveProperty(const PropertyInfo& property) {
  std::string a = Quote(alias_) + ".";
  Variant stored = Coerce(property.value, FieldType::kText);
  std::string value = stored.IsNull() ? std::string("NULL") : QuoteText(stored.AsString());
  Change({"DELETE FROM " + a + "_ldg_properties WHERE name = " + QuoteText(property.name),
          "INSERT INTO " + a + "_ldg_properties (name, type, value) VALUES (" + QuoteText(property.name) +
              ", " + std::to_string(static_cast<int>(property.type)) + ", " + value + ")"});
}

void Catalog::DeleteProperty(std::string_view name) {
  for (const auto& property : Properties()) {
    if (NamesEqual(property.name, name)) {
      Change({"DELETE FROM " + Quote(alias_) + "._ldg_properties WHERE name = " + QuoteText(property.name)});
      return;
    }
  }
  RaiseStore(kErrPropertyNotFound);
}

std::shared_ptr<const jet::Translation> Catalog::Translate(std::string_view jet_sql) const {
  if (translations_version_ != Version()) {
    translations_.clear();
    translations_version_ = Version();
  }
  std::string key(jet_sql);
  if (auto found = translations_.find(key); found != translations_.end()) return found->second;
  if (translations_.size() >= 1024) translations_.clear();
  auto translation = std::make_shared<const jet::Translation>(jet::Translate(jet_sql, *this));
  translations_.emplace(std::move(key), translation);
  return translation;
}

std::optional<std::vector<jet::Catalog::Column>> Catalog::TableColumns(std::string_view table) const {
  auto target = Resolve(table);
  if (!target) return std::nullopt;
  std::vector<Column> columns;
  for (const auto& field : target->table->fields) columns.push_back(Column{field.name, field.type});
  return columns;
}

std::optional<std::string> Catalog::QueryText(std::string_view name) const {
  const QueryInfo* query = FindQuery(name);
  if (!query) return std::nullopt;
  return query->sql;
}

std::string Catalog::PhysicalName(std::string_view table) const {
  auto target = Resolve(table);
  return target ? target->physical : Quote(table);
}

}  // namespace ldg::store::sqlite
