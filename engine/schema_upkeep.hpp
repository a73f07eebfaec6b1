// Schema upkeep: the idempotent calls that say how a table, column, index or
// relation should be and make it so if it isn't, and the routines that bring
// each engine-kept table up to date with them. There is no version number and
// no conversion run: these run at every exclusive open, at creation, and at the
// first use of the classes that own tables added late. Every call suppresses
// the store's errors step by step, so an upkeep call never stops an open. They
// never touch rows, but a pruned column takes its values with it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "store/database.hpp"
#include "store/field_type.hpp"

namespace ldg {

// Creates the table with a Long ID (auto-increment when asked) if it is
// missing, and the indexes PrimaryKey (primary, unique) and ID over ID if they
// are missing. Starts a new list of known fields for the table, holding "ID".
void EnsureTable(store::Database& database, std::string_view table, bool auto_increment);

// Creates the column if it is missing, with the size when one is given; sets
// its default to default_value, or removes the default when there is none.
// indexed absent deletes an index named like the field; true creates one
// (Unique when unique says so) unless it exists; false leaves indexes alone.
// Adds the field to the list of known fields when a list exists. Rows that
// exist keep Null in a new column: the default applies to new rows only.
void EnsureField(store::Database& database, std::string_view table, std::string_view field,
                 store::FieldType type, std::optional<std::string> default_value = std::nullopt,
                 std::optional<int32_t> size = std::nullopt, std::optional<bool> indexed = std::nullopt,
                 std::optional<bool> unique = std::nullopt);

// fields is a list with ";" between the names; the index is named after the
// list without the ";" ("FCID;BeginDate" gives FCIDBeginDate). Created only if missing.
void EnsureIndex(store::Database& database, std::string_view table, std::string_view fields, bool unique);

// Deletes every column of the table that was not ensured since EnsureTable of
// that table, then drops the list. Does nothing when keep_all is set, or when
// no list of that table exists.
void PruneFields(store::Database& database, std::string_view table, bool keep_all);

// Creates the relation if none of that name exists: rows of foreign_table
// refer through foreign_field to field of table.
void EnsureRelation(store::Database& database, std::string_view name, std::string_view table,
                    std::string_view foreign_table, std::string_view field, std::string_view foreign_field,
                    int32_t attributes);

// The tables the template holds, with the columns added later.
void UpdateAccountsTable(store::Database& database);
void UpdateBookEntriesTable(store::Database& database);  // DefinitiveJournal, Tag, Tags
void UpdateBookEntriesMarks(store::Database& database);  // Mark1 to Mark6
void UpdateDefinitiveSetsTable(store::Database& database);
void UpdateVatAccountsTable(store::Database& database);

// The tables the engine adds itself, at every open or at the first use of their class.
void UpdateDbLogTable(store::Database& database);
void UpdatePeriods2Table(store::Database& database);
void UpdateVat2TreeTable(store::Database& database);
void UpdateVat2LinkTable(store::Database& database);
void UpdateFC2Tables(store::Database& database);  // FC2 and FC2Rate
void UpdateFCTables(store::Database& database);   // FC and FCRate, with their relation

}  // namespace ldg
