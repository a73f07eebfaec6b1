#include "store/sqlite/schema_objects.hpp"

#include "store/sqlite/names.hpp"
#include "store/sqlite/value_codec.hpp"
#include "store/store_error.hpp"

namespace ldg::store::sqlite {

namespace {

const TableInfo& TableOrRaise(const Catalog& catalog, std::string_view name) {
  const TableInfo* table = catalog.FindTable(name);
  if (!table) RaiseStore(kErrItemNotFound);
  return *table;
}

}  // namespace

// ---- DefinitionField ----

void DefinitionField::Bind(std::shared_ptr<Catalog> catalog, std::string table) {
  catalog_ = std::move(catalog);
  table_ = std::move(table);
}

void DefinitionField::Write(const FieldInfo& changed) {
  if (catalog_) catalog_->ChangeField(table_, info_.name, changed);
  info_ = changed;
}

void DefinitionField::Name(std::string_view name) {
  FieldInfo changed = info_;
  changed.name = name;
  Write(changed);
}

void DefinitionField::Size(int32_t size) {
  FieldInfo changed = info_;
  changed.size = size;
  Write(changed);
}

void DefinitionField::DefaultValue(std::string_view expression) {
  FieldInfo changed = info_;
  changed.default_value = expression;
  Write(changed);
}

void DefinitionField::Attributes(int32_t attributes) {
  FieldInfo changed = info_;
  changed.attributes = attributes;
  Write(changed);
}

Variant DefinitionField::Value() const { RaiseStore(kErrNotSupported); }
void DefinitionField::Value(const Variant&) { RaiseStore(kErrNotSupported); }

// ---- DefinitionFields ----

DefinitionFields::DefinitionFields(std::shared_ptr<Catalog> catalog, std::string table)
    : catalog_(std::move(catalog)), table_(std::move(table)) {}

const std::vector<std::shared_ptr<DefinitionField>>& DefinitionFields::All() const {
  if (!catalog_ || version_ == catalog_->Version()) return items_;
  // Field objects already handed out stay the same objects.
  std::vector<std::shared_ptr<DefinitionField>> fresh;
  for (const auto& info : TableOrRaise(*catalog_, table_).fields) {
    std::shared_ptr<DefinitionField> field;
    for (const auto& existing : items_) {
      if (NamesEqual(existing->Name(), info.name)) field = existing;
    }
    if (!field) {
      field = std::make_shared<DefinitionField>(info);
      field->Bind(catalog_, table_);
    }
    fresh.push_back(field);
  }
  items_ = std::move(fresh);
  version_ = catalog_->Version();
  for (const auto& field : items_) field->Bind(catalog_, table_);
  return items_;
}

Field& DefinitionFields::Item(std::string_view name) const {
  for (const auto& field : All()) {
    if (NamesEqual(field->Name(), name)) return *field;
  }
  RaiseStore(kErrItemNotFound);
}

Field& DefinitionFields::Item(int ordinal) const {
  const auto& all = All();
  if (ordinal < 0 || static_cast<size_t>(ordinal) >= all.size()) RaiseStore(kErrItemNotFound);
  return *all[static_cast<size_t>(ordinal)];
}

bool DefinitionFields::Contains(std::string_view name) const {
  for (const auto& field : All()) {
    if (NamesEqual(field->Name(), name)) return true;
  }
  return false;
}

void DefinitionFields::Append(const std::shared_ptr<Field>& field) {
  auto definition = std::dynamic_pointer_cast<DefinitionField>(field);
  if (!definition) RaiseStore(kErrNotSupported);
  if (Contains(definition->Name())) RaiseStore(kErrObjectExists, definition->Name());
  if (catalog_) {
    catalog_->AddField(table_, definition->Info());
    definition->Bind(catalog_, table_);
  }
  items_.push_back(definition);
}

void DefinitionFields::Delete(std::string_view name) {
  if (catalog_) {
    catalog_->DropField(table_, name);
    std::erase_if(items_, [name](const auto& field) { return NamesEqual(field->Name(), name); });
    return;
  }
  auto before = items_.size();
  std::erase_if(items_, [name](const auto& field) { return NamesEqual(field->Name(), name); });
  if (items_.size() == before) RaiseStore(kErrItemNotFound);
}

void DefinitionFields::Refresh() { version_ = 0; }

// ---- indexes ----

SqliteIndex::SqliteIndex(const IndexInfo& info)
    : name_(info.name), primary_(info.primary), unique_(info.unique) {
  for (const auto& field : info.fields) fields_.Append(CreateField(field));
}

IndexInfo SqliteIndex::Info() const {
  IndexInfo info;
  info.name = name_;
  info.primary = primary_;
  info.unique = unique_ || primary_;
  for (const auto& field : fields_.All()) info.fields.push_back(field->Name());
  return info;
}

std::shared_ptr<Field> SqliteIndex::CreateField(std::string_view name) {
  FieldInfo info;
  info.name = name;
  info.type = FieldType::kUnknown;
  return std::make_shared<DefinitionField>(info);
}

const TableInfo& SqliteIndexes::Table() const { return TableOrRaise(*catalog_, table_); }

int SqliteIndexes::Count() const {
  return catalog_ ? static_cast<int>(Table().indexes.size()) : static_cast<int>(pending_.size());
}

std::shared_ptr<Index> SqliteIndexes::Item(std::string_view name) const {
  if (!catalog_) {
    for (const auto& index : pending_) {
      if (NamesEqual(index->Name(), name)) return index;
    }
    RaiseStore(kErrItemNotFound);
  }
  const IndexInfo* index = Table().FindIndex(name);
  if (!index) RaiseStore(kErrItemNotFound);
  return std::make_shared<SqliteIndex>(*index);
}

std::shared_ptr<Index> SqliteIndexes::Item(int ordinal) const {
  if (ordinal < 0 || ordinal >= Count()) RaiseStore(kErrItemNotFound);
  if (!catalog_) return pending_[static_cast<size_t>(ordinal)];
  return std::make_shared<SqliteIndex>(Table().indexes[static_cast<size_t>(ordinal)]);
}

bool SqliteIndexes::Contains(std::string_view name) const {
  if (!catalog_) {
    for (const auto& index : pending_) {
      if (NamesEqual(index->Name(), name)) return true;
    }
    return false;
  }
  return Table().FindIndex(name) != nullptr;
}

void SqliteIndexes::Append(const std::shared_ptr<Index>& index) {
  auto own = std::dynamic_pointer_cast<SqliteIndex>(index);
  if (!own) RaiseStore(kErrNotSupported);
  if (Contains(own->Name())) RaiseStore(kErrObjectExists, own->Name());
  if (catalog_) {
    catalog_->AddIndex(table_, own->Info());
  } else {
    pending_.push_back(own);
  }
}

void SqliteIndexes::Delete(std::string_view name) {
  if (catalog_) return catalog_->DropIndex(table_, name);
  auto before = pending_.size();
  std::erase_if(pending_, [name](const auto& index) { return NamesEqual(index->Name(), name); });
  if (pending_.size() == before) RaiseStore(kErrItemNotFound);
}

// ---- table definitions ----

SqliteTableDef::SqliteTableDef(std::shared_ptr<Catalog> catalog, const TableInfo& table)
    : name_(table.name), connect_(table.connect), source_(table.source) {
  Appended(std::move(catalog));
}

void SqliteTableDef::Appended(std::shared_ptr<Catalog> catalog) {
  catalog_ = std::move(catalog);
  fields_ = std::make_unique<DefinitionFields>(catalog_, name_);
  indexes_ = std::make_unique<SqliteIndexes>(catalog_, name_);
}

TableInfo SqliteTableDef::Pending() const {
  TableInfo table;
  table.name = name_;
  table.connect = connect_;
  table.source = source_;
  for (const auto& field : fields_->All()) table.fields.push_back(field->Info());
  for (const auto& index : indexes_->Pending()) table.indexes.push_back(index->Info());
  return table;
}

void SqliteTableDef::Name(std::string_view name) {
  if (catalog_) {
    catalog_->RenameTable(name_, name);
    fields_->Rename(std::string(name));
    indexes_->Rename(std::string(name));
  }
  name_ = name;
}

std::shared_ptr<Field> SqliteTableDef::CreateField(std::string_view name, FieldType type, int32_t size) {
  FieldInfo info;
  info.name = name;
  info.type = type;
  info.size = size > 0 ? size : DefaultSize(type);
  return std::make_shared<DefinitionField>(info);
}

std::shared_ptr<Index> SqliteTableDef::CreateIndex(std::string_view name) {
  return std::make_shared<SqliteIndex>(std::string(name));
}

int SqliteTableDefs::Count() const { return static_cast<int>(catalog_->Tables().size()); }

std::shared_ptr<TableDef> SqliteTableDefs::Item(std::string_view name) const {
  return std::make_shared<SqliteTableDef>(catalog_, TableOrRaise(*catalog_, name));
}

std::shared_ptr<TableDef> SqliteTableDefs::Item(int ordinal) const {
  const auto& tables = catalog_->Tables();
  if (ordinal < 0 || static_cast<size_t>(ordinal) >= tables.size()) RaiseStore(kErrItemNotFound);
  return std::make_shared<SqliteTableDef>(catalog_, tables[static_cast<size_t>(ordinal)]);
}

bool SqliteTableDefs::Contains(std::string_view name) const { return catalog_->FindTable(name) != nullptr; }

void SqliteTableDefs::Append(const std::shared_ptr<TableDef>& table) {
  auto own = std::dynamic_pointer_cast<SqliteTableDef>(table);
  if (!own || own->IsAppended()) RaiseStore(kErrNotSupported);
  TableInfo pending = own->Pending();
  if (pending.IsLink()) {
    catalog_->CreateLink(pending.name, pending.connect,
                         pending.source.empty() ? pending.name : pending.source);
  } else {
    catalog_->CreateTable(pending);
  }
  own->Appended(catalog_);
}

void SqliteTableDefs::Delete(std::string_view name) { catalog_->DropTable(name); }

// ---- relations ----

SqliteRelation::SqliteRelation(std::string name, std::string table, std::string foreign_table,
                               int32_t attributes)
    : name_(std::move(name)),
      table_(std::move(table)),
      foreign_table_(std::move(foreign_table)),
      attributes_(attributes) {}

SqliteRelation::SqliteRelation(const RelationInfo& info)
    : SqliteRelation(info.name, info.table, info.foreign_table, info.attributes) {
  for (size_t i = 0; i < info.fields.size(); ++i) {
    auto field = CreateField(info.fields[i]);
    field->ForeignName(info.foreign_fields[i]);
    fields_.Append(field);
  }
}

RelationInfo SqliteRelation::Info() const {
  RelationInfo info{name_, table_, foreign_table_, attributes_, {}, {}};
  for (const auto& field : fields_.All()) {
    info.fields.push_back(field->Name());
    info.foreign_fields.push_back(field->ForeignName().empty() ? field->Name() : field->ForeignName());
  }
  return info;
}

std::shared_ptr<Field> SqliteRelation::CreateField(std::string_view name) {
  FieldInfo info;
  info.name = name;
  info.type = FieldType::kUnknown;
  return std::make_shared<DefinitionField>(info);
}

std::shared_ptr<Relation> SqliteRelations::Item(std::string_view name) const {
  for (const auto& relation : catalog_->Relations()) {
    if (NamesEqual(relation.name, name)) return std::make_shared<SqliteRelation>(relation);
  }
  RaiseStore(kErrItemNotFound);
}

std::shared_ptr<Relation> SqliteRelations::Item(int ordinal) const {
  const auto& relations = catalog_->Relations();
  if (ordinal < 0 || static_cast<size_t>(ordinal) >= relations.size()) RaiseStore(kErrItemNotFound);
  return std::make_shared<SqliteRelation>(relations[static_cast<size_t>(ordinal)]);
}

bool SqliteRelations::Contains(std::string_view name) const {
  for (const auto& relation : catalog_->Relations()) {
    if (NamesEqual(relation.name, name)) return true;
  }
  return false;
}

void SqliteRelations::Append(const std::shared_ptr<Relation>& relation) {
  auto own = std::dynamic_pointer_cast<SqliteRelation>(relation);
  if (!own) RaiseStore(kErrNotSupported);
  catalog_->AddRelation(own->Info());
}

// ---- properties ----

void SqliteProperty::Value(const Variant& value) {
  PropertyInfo changed = info_;
  changed.value = Coerce(value, info_.type);
  if (catalog_) catalog_->SaveProperty(changed);
  info_ = changed;
}

std::shared_ptr<Property> SqliteProperties::Item(std::string_view name) const {
  for (const auto& property : catalog_->Properties()) {
    if (NamesEqual(property.name, name)) return std::make_shared<SqliteProperty>(property, catalog_);
  }
  RaiseStore(kErrPropertyNotFound);
}

std::shared_ptr<Property> SqliteProperties::Item(int ordinal) const {
  const auto& properties = catalog_->Properties();
  if (ordinal < 0 || static_cast<size_t>(ordinal) >= properties.size()) RaiseStore(kErrItemNotFound);
  return std::make_shared<SqliteProperty>(properties[static_cast<size_t>(ordinal)], catalog_);
}

void SqliteProperties::Append(const std::shared_ptr<Property>& property) {
  auto own = std::dynamic_pointer_cast<SqliteProperty>(property);
  if (!own) RaiseStore(kErrNotSupported);
  for (const auto& existing : catalog_->Properties()) {
    if (NamesEqual(existing.name, own->Name())) RaiseStore(kErrObjectExists, own->Name());
  }
  catalog_->SaveProperty(own->Info());
  own->Bind(catalog_);
}

}  // namespace ldg::store::sqlite
