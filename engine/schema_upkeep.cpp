#include "engine/schema_upkeep.hpp"

#include <vector>

#include "store/constants.hpp"
#include "support/text.hpp"

namespace ldg {

namespace {

using store::FieldType;

// The columns ensured since the last EnsureTable, for PruneFields.
struct KnownFields {
  bool active = false;
  std::string table;
  std::vector<std::string> names;
};

KnownFields& Known() {
  thread_local KnownFields known;
  return known;
}

bool SameName(std::string_view a, std::string_view b) { return EqualsNoCase(a, b); }

// One step of an upkeep call: a failure skips the step and the call goes on.
template <typename Step>
void Try(Step&& step) {
  try {
    step();
  } catch (...) {
  }
}

std::shared_ptr<store::TableDef> FindTable(store::Database& database, std::string_view table) {
  try {
    if (database.TableDefs().Contains(table)) return database.TableDefs().Item(table);
  } catch (...) {
  }
  return nullptr;
}

void AppendIndex(store::TableDef& table, std::string_view name, const std::vector<std::string>& fields,
                 bool primary, bool unique) {
  auto index = table.CreateIndex(name);
  if (primary) index->Primary(true);
  index->Unique(unique);
  for (const auto& field : fields) index->Fields().Append(index->CreateField(field));
  table.Indexes().Append(index);
}

std::vector<std::string> SplitFieldList(std::string_view fields) {
  std::vector<std::string> names;
  size_t start = 0;
  while (start <= fields.size()) {
    size_t end = fields.find(';', start);
    if (end == std::string_view::npos) end = fields.size();
    if (end > start) names.emplace_back(fields.substr(start, end - start));
    start = end + 1;
  }
  return names;
}

constexpr std::optional<bool> kIndexed = true;
constexpr std::optional<bool> kUnique = true;
constexpr std::optional<bool> kNotUnique = false;
constexpr std::nullopt_t kNoDefault = std::nullopt;
constexpr std::nullopt_t kNoSize = std::nullopt;

}  // namespace

void EnsureTable(store::Database& database, std::string_view table, bool auto_increment) {
  Known() = KnownFields{true, std::string(table), {"ID"}};
  Try([&] {
    if (database.TableDefs().Contains(table)) return;
    auto definition = database.CreateTableDef(table);
    auto id = definition->CreateField("ID", FieldType::kLong);
    if (auto_increment) id->Attributes(store::dbAutoIncrField);
    definition->Fields().Append(id);
    database.TableDefs().Append(definition);
  });
  auto definition = FindTable(database, table);
  if (!definition) return;
  Try([&] {
    if (!definition->Indexes().Contains("PrimaryKey"))
      AppendIndex(*definition, "PrimaryKey", {"ID"}, true, true);
  });
  Try([&] {
    if (!definition->Indexes().Contains("ID")) AppendIndex(*definition, "ID", {"ID"}, false, false);
  });
}

void EnsureField(store::Database& database, std::string_view table, std::string_view field, FieldType type,
                 std::optional<std::string> default_value, std::optional<int32_t> size,
                 std::optional<bool> indexed, std::optional<bool> unique) {
  auto definition = FindTable(database, table);
  if (!definition) return;
  if (Known().active) Known().names.emplace_back(field);
  Try([&] {
    if (definition->Fields().Contains(field)) return;
    definition->Fields().Append(definition->CreateField(field, type, size.value_or(0)));
  });
  Try([&] {
    auto& column = definition->Fields().Item(field);
    std::string wanted = default_value.value_or("");
    if (column.DefaultValue() != wanted) column.DefaultValue(wanted);
  });
  if (size) {
    Try([&] {
      auto& column = definition->Fields().Item(field);
      if (column.Size() != *size) column.Size(*size);
    });
  }
  Try([&] {
    auto& indexes = definition->Indexes();
    if (!indexed) {
      if (indexes.Contains(field)) indexes.Delete(field);
    } else if (*indexed && !indexes.Contains(field)) {
      AppendIndex(*definition, field, {std::string(field)}, false, unique.value_or(false));
    }
  });
}

void EnsureIndex(store::Database& database, std::string_view table, std::string_view fields, bool unique) {
  auto definition = FindTable(database, table);
  if (!definition) return;
  std::vector<std::string> names = SplitFieldList(fields);
  std::string name;
  for (const auto& part : names) name += part;
  Try([&] {
    if (!definition->Indexes().Contains(name)) AppendIndex(*definition, name, names, false, unique);
  });
}

void PruneFields(store::Database& database, std::string_view table, bool keep_all) {
  KnownFields& known = Known();
  if (!known.active || keep_all) return;
  // A list started for another table says nothing about this one: pruning by it
  // would empty the table, so the call only drops the list.
  bool same_table = SameName(known.table, table);
  std::vector<std::string> keep = std::move(known.names);
  known = KnownFields{};
  if (!same_table) return;
  auto definition = FindTable(database, table);
  if (!definition) return;
  std::vector<std::string> extra;
  Try([&] {
    auto& fields = definition->Fields();
    for (int i = 0; i < fields.Count(); ++i) {
      std::string name = fields.Item(i).Name();
      bool kept = false;
      for (const auto& wanted : keep) kept = kept || SameName(wanted, name);
      if (!kept) extra.push_back(name);
    }
  });
  // A column under an index can't be deleted and stays.
  for (const auto& name : extra) Try([&] { definition->Fields().Delete(name); });
}

void EnsureRelation(store::Database& database, std::string_view name, std::string_view table,
                    std::string_view foreign_table, std::string_view field, std::string_view foreign_field,
                    int32_t attributes) {
  Try([&] {
    auto& relations = database.Relations();
    if (relations.Contains(name)) return;
    auto relation = database.CreateRelation(name, table, foreign_table, attributes);
    auto column = relation->CreateField(field);
    column->ForeignName(foreign_field);
    relation->Fields().Append(column);
    relations.Append(relation);
    relations.Refresh();
  });
}

void UpdateAccountsTable(store::Database& database) {
  EnsureField(database, "Accounts", "DeleteOnCloture", FieldType::kBoolean);
  EnsureField(database, "Accounts", "SaveOB", FieldType::kCurrency, "0");
  EnsureField(database, "Accounts", "WorkedOpeningBalance", FieldType::kCurrency, "0");
  EnsureField(database, "Accounts", "WorkedBalance", FieldType::kCurrency, "0");
  EnsureField(database, "Accounts", "PostFix", FieldType::kText, kNoDefault, 10);
  EnsureField(database, "Accounts", "Tags", FieldType::kText, kNoDefault, 255);
  EnsureField(database, "Accounts", "FCID2", FieldType::kLong, "0");
  EnsureField(database, "Accounts", "KeyPositionCode", FieldType::kText, kNoDefault, 100, kIndexed);
  EnsureField(database, "Accounts", "LiegenCode", FieldType::kLong, "0");
}

void UpdateBookEntriesTable(store::Database& database) {
  EnsureField(database, "BookEntries", "DefinitiveJournal", FieldType::kLong, "1");
  EnsureField(database, "BookEntries", "Tag", FieldType::kText, kNoDefault, 50);
  EnsureField(database, "BookEntries", "Tags", FieldType::kText, kNoDefault, 255);
}

void UpdateBookEntriesMarks(store::Database& database) {
  for (int i = 1; i <= 6; ++i) {
    EnsureField(database, "BookEntries", "Mark" + std::to_string(i), FieldType::kBoolean, "False");
  }
}

void UpdateDefinitiveSetsTable(store::Database& database) {
  EnsureField(database, "DefinitiveSets", "Number", FieldType::kLong, "1");
}

void UpdateVatAccountsTable(store::Database& database) {
  EnsureTable(database, "VatAccounts", true);
  EnsureField(database, "VatAccounts", "Key", FieldType::kText, kNoDefault, kNoSize, kIndexed, kNotUnique);
  EnsureField(database, "VatAccounts", "Code", FieldType::kText, kNoDefault, kNoSize, kIndexed, kNotUnique);
  EnsureField(database, "VatAccounts", "Rate", FieldType::kDouble);
  EnsureTable(database, "VatAccounts", false);
}

void UpdateDbLogTable(store::Database& database) {
  EnsureTable(database, "DbLog", true);
  EnsureField(database, "DbLog", "TimeOpen", FieldType::kDate, kNoDefault, kNoSize, kIndexed);
  EnsureField(database, "DbLog", "TimeClose", FieldType::kDate);
  EnsureField(database, "DbLog", "COMPUTERNAME", FieldType::kText);
  EnsureField(database, "DbLog", "USERNAME", FieldType::kText);
  EnsureField(database, "DbLog", "Comment", FieldType::kText);
  PruneFields(database, "DbLog", false);
}

void UpdatePeriods2Table(store::Database& database) {
  EnsureTable(database, "Periods2", true);
  EnsureField(database, "Periods2", "DateFrom", FieldType::kDate, kNoDefault, kNoSize, kIndexed, kUnique);
  EnsureField(database, "Periods2", "DateTo", FieldType::kDate);
  EnsureField(database, "Periods2", "LockingState", FieldType::kLong, "0");
  EnsureTable(database, "Periods2", false);
}

void UpdateVat2TreeTable(store::Database& database) {
  const char* table = "Vat2Tree";
  EnsureTable(database, table, true);
  EnsureField(database, table, "ParentID", FieldType::kLong);
  EnsureField(database, table, "Level", FieldType::kLong);
  EnsureField(database, table, "Mode", FieldType::kLong);
  EnsureField(database, table, "Key", FieldType::kText, kNoDefault, 50, kIndexed, kUnique);
  EnsureField(database, table, "VatID", FieldType::kLong);
  EnsureField(database, table, "Text", FieldType::kText, kNoDefault, 50);
  EnsureField(database, table, "ChgSign", FieldType::kBoolean);
  EnsureField(database, table, "AccTrafficEnabled", FieldType::kBoolean);
  EnsureField(database, table, "AccTrafficTxt", FieldType::kText, kNoDefault, 255);
  EnsureField(database, table, "AccBookingEnabled", FieldType::kBoolean);
  EnsureField(database, table, "AccBookingTxt", FieldType::kText, kNoDefault, 255);
  EnsureField(database, table, "RateEnabled", FieldType::kBoolean);
  EnsureField(database, table, "RateTxt", FieldType::kText, kNoDefault, 255);
  EnsureField(database, table, "TrafficMember", FieldType::kBoolean);
  EnsureField(database, table, "TrafficMaster", FieldType::kBoolean);
  EnsureField(database, table, "TrafficTotal", FieldType::kBoolean);
  EnsureField(database, table, "TimeStamp", FieldType::kDate);
  EnsureField(database, table, "VatMaster", FieldType::kBoolean);
  PruneFields(database, table, false);
}

void UpdateVat2LinkTable(store::Database& database) {
  const char* table = "Vat2Link";
  EnsureTable(database, table, true);
  EnsureField(database, table, "Key", FieldType::kText, kNoDefault, 50, kIndexed, kNotUnique);
  EnsureField(database, table, "Mode", FieldType::kLong);
  EnsureField(database, table, "AccBookingCode", FieldType::kText, kNoDefault, 50, kIndexed, kNotUnique);
  EnsureField(database, table, "AccTrafficCode", FieldType::kText, kNoDefault, 50, kIndexed, kNotUnique);
  EnsureField(database, table, "Rate", FieldType::kDouble);
  EnsureIndex(database, table, "Key;AccTrafficCode", false);
  EnsureTable(database, table, false);
}

namespace {

void UpdateCurrencyTables(store::Database& database, std::string_view currencies, std::string_view rates) {
  EnsureTable(database, currencies, false);
  EnsureField(database, currencies, "Key", FieldType::kText, kNoDefault, kNoSize, kIndexed, kUnique);
  EnsureField(database, currencies, "Description", FieldType::kText);
  EnsureField(database, currencies, "Decimals", FieldType::kLong, "2");
  EnsureField(database, currencies, "LossID", FieldType::kLong, "0");
  EnsureField(database, currencies, "GainID", FieldType::kLong, "0");
  EnsureTable(database, currencies, false);

  EnsureTable(database, rates, false);
  EnsureField(database, rates, "FCID", FieldType::kLong);
  EnsureField(database, rates, "BeginDate", FieldType::kDate);
  EnsureField(database, rates, "Rate", FieldType::kCurrency);
  EnsureIndex(database, rates, "FCID;BeginDate", false);
  EnsureTable(database, rates, false);
}

}  // namespace

void UpdateFC2Tables(store::Database& database) { UpdateCurrencyTables(database, "FC2", "FC2Rate"); }

void UpdateFCTables(store::Database& database) {
  UpdateCurrencyTables(database, "FC", "FCRate");
  EnsureRelation(database, "FCFCRate", "FC", "FCRate", "ID", "FCID", store::dbRelationDeleteCascade);
}

}  // namespace ldg
