// The record set over an SQLite connection. Table-type sets read live rows in
// index order by key ("after this key" queries through the index, a chunk at a
// time, dropped at the connection's next write); dynasets and snapshots hold
// the rows found at open, shared with their clones. Writes go to the one base
// table by rowid. No SQLite statement stays open between calls.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "store/jet/translator.hpp"
#include "store/recordset.hpp"
#include "support/variant.hpp"

namespace ldg::store::sqlite {

class Catalog;
class Connection;

struct RecordsetSource {
  std::shared_ptr<Connection> connection;
  std::shared_ptr<Catalog> catalog;
  std::string table;                                    // a table source: its name
  std::shared_ptr<const jet::Translation> translation;  // a query or statement source
  std::vector<Variant> parameters;                      // in the translation's order
};

// type dbOpenDefault opens a table table-type and anything else as a dynaset.
// Table-type over a query or statement raises 3251.
std::unique_ptr<Recordset> OpenRecordset(RecordsetSource source, RecordsetTypeEnum type);

// Binds the parameters and runs the statement; gives the rows changed.
int BindAndRun(Connection& connection, const jet::Translation& translation,
               const std::vector<Variant>& parameters);

}  // namespace ldg::store::sqlite
