// A record set: the rows of a table, a stored query or a statement, with one
// current row. Three kinds behave as the engine expects of them:
// - table-type (dbOpenTable): live over one table in the order of its current
//   Index; Seek looks a key up through that index, never by a scan.
// - dynaset (dbOpenDynaset): the rows found at open, updatable when the source
//   has one base table; rows added through it go to the end, whatever the order.
// - snapshot (dbOpenSnapshot): the rows found at open, read-only.
// RecordCount counts the rows reached so far on a dynaset or snapshot and is
// exact after MoveLast (deliberate: callers move last first). A Null column reads
// as a Null Variant, never as a default. Reading a field by name resolves the
// name once per record set.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "store/constants.hpp"
#include "store/field.hpp"
#include "support/record.hpp"
#include "support/variant.hpp"

namespace ldg::store {

// A position that Bookmark gives and takes back; meaningful only on the record
// set (or a clone of it) that gave it.
using BookmarkValue = int64_t;

class Recordset : public Record {
 public:
  virtual RecordsetTypeEnum Type() const = 0;
  virtual store::Fields& Fields() = 0;

  // The Record interface: the named field of the current row, and of the row
  // under edit.
  Variant Value(std::string_view field) const override = 0;
  void Value(std::string_view field, const Variant& value) override = 0;
  int32_t Size(std::string_view field) const override = 0;

  // Reads or writes a column of the current row (or the row under edit).
  virtual Variant Collect(std::string_view field) const = 0;
  virtual void Collect(std::string_view field, const Variant& value) = 0;

  // EOF and BOF of the object model; the C library owns the name EOF.
  virtual bool Eof() const = 0;
  virtual bool Bof() const = 0;
  virtual void MoveFirst() = 0;
  virtual void MoveNext() = 0;
  virtual void MovePrevious() = 0;
  virtual void MoveLast() = 0;
  virtual int32_t RecordCount() const = 0;
  virtual int32_t AbsolutePosition() const = 0;
  // Zero-based; 3001 outside the rows.
  virtual void AbsolutePosition(int32_t position) = 0;
  virtual BookmarkValue Bookmark() const = 0;
  virtual void Bookmark(BookmarkValue bookmark) = 0;
  // The bookmark of the row last added or changed through this record set.
  virtual BookmarkValue LastModified() const = 0;
  // Result of the last Seek or Find.
  virtual bool NoMatch() const = 0;

  // Table-type only: the table's own index name ("PrimaryKey", "Code").
  virtual std::string Index() const = 0;
  virtual void Index(std::string_view name) = 0;
  // comparison is one of "=", "<", "<=", ">", ">=". A failed "=" leaves the
  // position undefined; any other failed comparison leaves the set at EOF, so
  // that MovePrevious lands on the last row.
  virtual void Seek(std::string_view comparison, const Variant& key1, const Variant& key2 = Variant(),
                    const Variant& key3 = Variant()) = 0;

  // criterion is the body of a WHERE clause ("ModuleName='Velmora Finance'").
  virtual void FindFirst(std::string_view criterion) = 0;
  virtual void FindNext(std::string_view criterion) = 0;
  virtual void FindPrevious(std::string_view criterion) = 0;
  virtual void FindLast(std::string_view criterion) = 0;

  // AddNew fills the buffer with the columns' defaults and, for a counter
  // column, the new number, readable before Update.
  virtual void AddNew() = 0;
  virtual void Edit() = 0;
  virtual void Update() = 0;
  virtual void CancelUpdate() = 0;
  virtual void Delete() = 0;
  // 0 none, 1 Edit, 2 AddNew.
  virtual int EditMode() const = 0;

  virtual void Requery() = 0;
  // Whether Requery would read the same rows again: a snapshot over files that
  // nothing was written to since it read them. False when it can't tell.
  virtual bool RowsCurrent() { return false; }
  // Table-type: a number that moves whenever a row of the table may have
  // changed, so two equal numbers other than 0 mean its rows stayed as they
  // were. 0 when that can't be told: outside a transaction, where other
  // connections may commit, and on the other kinds of set.
  virtual uint64_t TableVersion() const { return 0; }
  virtual std::unique_ptr<Recordset> Clone() const = 0;
  virtual void Close() = 0;
};

// Closes a record set that the engine holds, even when its database has
// already gone (a failing Close is ignored), and lets it go.
void CloseAndDrop(std::unique_ptr<Recordset>& records);

}  // namespace ldg::store
