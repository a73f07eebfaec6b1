#include "engine/files_years.hpp"

#include "engine/engine_state.hpp"
#include "support/error.hpp"
#include "support/nullable.hpp"

namespace ldg {

FilesYears::FilesYears() { Reset(); }

FilesYears::~FilesYears() {
  if (!records_) return;
  try {
    records_->Close();
  } catch (...) {
    // The set goes with the object; a failing close changes nothing for anyone.
  }
}

void FilesYears::MoveFirst() {
  OpenIfNeeded();
  Records().MoveFirst();
  LoadOrReset();
}

void FilesYears::MoveLast() {
  OpenIfNeeded();
  Records().MoveLast();
  LoadOrReset();
}

void FilesYears::MoveNext() {
  Records().MoveNext();
  LoadOrReset();
}

void FilesYears::MovePrevious() {
  Records().MovePrevious();
  LoadOrReset();
}

void FilesYears::OpenIfNeeded() {
  if (records_ || !State().database) return;
  records_ = State().database->OpenRecordset("SELECT BusinessYears.* FROM BusinessYears ORDER BY End;",
                                             store::dbOpenSnapshot);
}

store::Recordset& FilesYears::Records() {
  if (!records_) RaiseRuntime(kErrObjectNotSet);
  return *records_;
}

void FilesYears::LoadOrReset() {
  if (records_->Eof() || records_->Bof()) {
    Reset();
    return;
  }
  path_ = ReadString(records_->Value("DbName"));
  status_ = ReadLong(records_->Value("Status"));
  date_from_ = ReadDate(records_->Value("Beginn"));
  date_to_ = ReadDate(records_->Value("End"));
  id_ = ReadLong(records_->Value("ID"));
}

void FilesYears::Reset() {
  path_.clear();
  status_ = 0;
  date_from_ = OleDate();
  date_to_ = OleDate();
  id_ = 0;
}

}  // namespace ldg
