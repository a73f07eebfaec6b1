// The record-store constants the engine passes to the store: record-set types,
// execute options, field and relation attributes, the workspace type, and the
// only locale text the engine gives CreateDatabase.
#pragma once

namespace ldg::store {

enum RecordsetTypeEnum : int {
  dbOpenDefault = 0,  // a table opens table-type, anything else as a dynaset
  dbOpenTable = 1,
  dbOpenDynaset = 2,
  dbOpenSnapshot = 4,
};

inline constexpr int dbFailOnError = 128;
inline constexpr int dbUseJet = 2;

// Field.Attributes
inline constexpr int dbAutoIncrField = 16;

// Relation.Attributes
inline constexpr int dbRelationUnique = 1;
inline constexpr int dbRelationDontEnforce = 2;
inline constexpr int dbRelationUpdateCascade = 256;
inline constexpr int dbRelationDeleteCascade = 4096;

inline constexpr const char* dbLangGeneral = ";LANGID=0x0409;CP=1252;COUNTRY=0";

}  // namespace ldg::store
