#include "accounts/tree_walk.hpp"

#include <string>

#include "engine/engine_state.hpp"
#include "store/constants.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/nullable.hpp"
#include "support/sql_text.hpp"
#include "support/text.hpp"

namespace ldg {
namespace {

constexpr int16_t kClosed = -1;

store::Database& Opened(const std::shared_ptr<store::Database>& database) {
  if (!database) RaiseRuntime(kErrObjectNotSet);
  return *database;
}

}  // namespace

void TreeWalk::Clear() {
  id_ = 0;
  parent_id_ = 0;
  key_ = Variant::Null();
  text_.clear();
}

void TreeWalk::TreeFirst(const std::string& where_start) {
  Load(where_start);
  level_ = 1;
  ClosingFlag(level_) = 0;
  parent_id_ = 0;
  ParentKeyAt(level_) = Variant::Null();
}

void TreeWalk::TreeNext() {
  if (ClosingFlag(level_) == 0) {
    const Variant key = key_;
    if (Load("(" + parent_id_name_ + "=" + std::to_string(id_) + ")")) {
      ++level_;
      ClosingFlag(level_) = 0;
      ParentKeyAt(level_) = key;
      return;
    }
  }
  ClosingFlag(level_) = 0;
  // Deliberate: the next sibling is the first with a strictly greater key, so siblings with equal
  // keys end the scan early, and an emptied KeyName gives a query the store refuses (pinned by tests).
  if (Load("(" + parent_id_name_ + "=" + std::to_string(parent_id_) + ") AND (" + key_name_ + " > " +
           KeyLiteral() + ")")) {
    return;
  }
  if (Load("(" + id_name_ + "=" + std::to_string(parent_id_) + ")")) {
    --level_;
    ClosingFlag(level_) = kClosed;
    is_sum_beginn_ = false;
    is_sum_end_ = true;
    return;
  }
  Clear();
}

int32_t TreeWalk::OutlineLevel() const {
  const bool closing = level_ >= 0 && level_ <= kMaxLevel && closing_flags_[static_cast<size_t>(level_)] != 0;
  return closing ? level_ : level_ + 1;
}

Variant TreeWalk::ParentKey() const { return ParentKeyAt(level_); }

bool TreeWalk::Load(const std::string& where) {
  auto rows = Opened(database_).OpenRecordset(Statement(where), store::dbOpenSnapshot);
  if (rows->Eof()) {
    rows->Close();
    return false;
  }
  id_ = ReadLong(*rows, id_name_);
  parent_id_ = ReadLong(*rows, parent_id_name_);
  key_ = key_name_.empty() ? Variant("K" + std::to_string(id_)) : rows->Value(key_name_);
  text_ = text_name_.empty() ? std::string() : ReadString(*rows, text_name_);
  rows->Close();
  childrens_count_ = CountChildren();
  is_sum_end_ = false;
  is_sum_beginn_ = childrens_count_ != 0;
  return true;
}

std::string TreeWalk::Statement(const std::string& where) const {
  std::string condition = where;
  if (!filter_.empty()) condition = where.empty() ? filter_ : "(" + where + ") AND (" + filter_ + ")";
  std::string statement = "SELECT * FROM " + table_name_ + " ";
  if (!condition.empty()) statement += "WHERE (" + condition + ") ";
  if (!key_name_.empty()) statement += "ORDER BY " + key_name_;
  return statement + ";";
}

// Deliberately on the engine's current database and without the filter (pinned by tests).
int32_t TreeWalk::CountChildren() const {
  auto rows = Opened(State().database)
                  .OpenRecordset("SELECT Count(" + parent_id_name_ + ") AS Anzahl FROM " + table_name_ +
                                     " GROUP BY " + parent_id_name_ + " HAVING (" + parent_id_name_ + "=" +
                                     std::to_string(id_) + ");",
                                 store::dbOpenSnapshot);
  const int32_t count = rows->Eof() ? 0 : ReadLong(*rows, "Anzahl");
  rows->Close();
  return count;
}

// The key's text, trimmed; a text key between double quotes with those inside doubled.
std::string TreeWalk::KeyLiteral() const {
  const std::string text = key_.IsNull() ? std::string() : Trim(CStr(key_));
  return key_.Type() == VarType::kString ? QuoteText(text, "\"") : text;
}

int16_t& TreeWalk::ClosingFlag(int32_t level) {
  if (level < 0 || level > kMaxLevel) RaiseRuntime(kErrSubscript);
  return closing_flags_[static_cast<size_t>(level)];
}

Variant& TreeWalk::ParentKeyAt(int32_t level) {
  if (level < 0 || level > kMaxLevel) RaiseRuntime(kErrSubscript);
  return parent_keys_[static_cast<size_t>(level)];
}

const Variant& TreeWalk::ParentKeyAt(int32_t level) const {
  if (level < 0 || level > kMaxLevel) RaiseRuntime(kErrSubscript);
  return parent_keys_[static_cast<size_t>(level)];
}

}  // namespace ldg
