// FilesYears: a cursor over the years of the open file's chain, which front
// ends use to offer the years for opening. It walks the rows of
// "BusinessYears" in order of their last day (not of their id); a front end
// calls MoveFirst, then MoveNext until ID reads 0.
//
// The rows are read once, at the first MoveFirst or MoveLast while a database
// is open, and the set stays open for the life of the object. Moving before
// that (or with no database open) fails with run-time error 91, as there is no
// record set to move. The cursor never writes.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "store/recordset.hpp"
#include "support/ole_date.hpp"

namespace ldg {

class FilesYears {
 public:
  FilesYears();
  ~FilesYears();
  FilesYears(const FilesYears&) = delete;
  FilesYears& operator=(const FilesYears&) = delete;

  void MoveFirst();
  void MoveNext();
  void MoveLast();
  void MovePrevious();

  // The year's file name as stored, without folder, in spite of the name.
  const std::string& Path() const { return path_; }
  void Path(std::string_view path) { path_ = path; }
  int32_t Status() const { return status_; }
  void Status(int32_t status) { status_ = status; }
  OleDate DateFrom() const { return date_from_; }
  void DateFrom(OleDate date) { date_from_ = date; }
  OleDate DateTo() const { return date_to_; }
  void DateTo(OleDate date) { date_to_ = date; }
  int32_t ID() const { return id_; }
  void ID(int32_t id) { id_ = id; }

 private:
  void OpenIfNeeded();
  store::Recordset& Records();
  // Loads the fields from the current row, or resets them when the move ran off either end.
  void LoadOrReset();
  void Reset();

  std::unique_ptr<store::Recordset> records_;
  std::string path_;
  int32_t status_ = 0;
  OleDate date_from_;
  OleDate date_to_;
  int32_t id_ = 0;
};

}  // namespace ldg
