// TreeWalk: a cursor over any table that holds a tree by parent reference,
// walking it depth first without loading it: each step is one query for the
// next row and one for that row's child count. Nothing is cached, so the walk
// sees changes made to the tree while it runs.
//
// A node with children is visited twice, on the way down (IsSumBeginn) and on
// the way back up (IsSumEnd), so that a caller can keep running sums per level;
// a leaf is visited once with both flags false. Siblings come in the order of
// KeyName, and the next sibling is the first with a strictly greater key.
//
// The rows are read from Database; the child count deliberately runs on the
// engine's current database and ignores Filter. Levels run from 0 to 100: a
// step outside them raises run-time error 9. Errors of the record store pass
// through unchanged.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include "store/database.hpp"
#include "support/variant.hpp"

namespace ldg {

class TreeWalk {
 public:
  TreeWalk() = default;

  // Settings, made before the walk.
  std::shared_ptr<store::Database> Database() const { return database_; }
  void Database(std::shared_ptr<store::Database> value) { database_ = std::move(value); }
  const std::string& TableName() const { return table_name_; }
  void TableName(std::string value) { table_name_ = std::move(value); }
  const std::string& IdName() const { return id_name_; }
  void IdName(std::string value) { id_name_ = std::move(value); }
  const std::string& ParentIDName() const { return parent_id_name_; }
  void ParentIDName(std::string value) { parent_id_name_ = std::move(value); }
  // The sort key among siblings; when empty, Key reads "K" followed by the ID.
  const std::string& KeyName() const { return key_name_; }
  void KeyName(std::string value) { key_name_ = std::move(value); }
  const std::string& TextName() const { return text_name_; }
  void TextName(std::string value) { text_name_ = std::move(value); }
  // A further condition on every row query (not on the child count).
  const std::string& Filter() const { return filter_; }
  void Filter(std::string value) { filter_ = std::move(value); }

  // ID and ParentID 0, Key Null, Text empty; ChildrensCount and the level stay.
  void Clear();
  // Positions on the first row of the condition, at level 1 with ParentID forced to 0. ID 0 means
  // that no row was found.
  void TreeFirst(const std::string& where_start = "");
  // Moves one step: down to the first child, else to the next sibling, else back up to the parent
  // for its closing visit. The walk has ended when ID is below 1 afterwards.
  void TreeNext();

  int32_t Level() const { return level_; }
  // Level for a closing visit, else Level + 1.
  int32_t OutlineLevel() const;
  int32_t ID() const { return id_; }
  int32_t ParentID() const { return parent_id_; }
  Variant Key() const { return key_; }
  const std::string& Text() const { return text_; }
  int32_t ChildrensCount() const { return childrens_count_; }
  bool IsSumBeginn() const { return is_sum_beginn_; }
  bool IsSumEnd() const { return is_sum_end_; }
  // The key of the parent of the current level.
  Variant ParentKey() const;
  bool IsSum() const { return childrens_count_ >= 1; }
  bool IsDetail() const { return !IsSum(); }

 private:
  static constexpr int32_t kMaxLevel = 100;

  // Loads the first row of the condition; false, with the state unchanged, when there is none.
  bool Load(const std::string& where);
  std::string Statement(const std::string& where) const;
  int32_t CountChildren() const;
  std::string KeyLiteral() const;
  int16_t& ClosingFlag(int32_t level);
  Variant& ParentKeyAt(int32_t level);
  const Variant& ParentKeyAt(int32_t level) const;

  std::shared_ptr<store::Database> database_;
  std::string table_name_;
  std::string id_name_ = "ID";
  std::string parent_id_name_ = "ParentID";
  std::string key_name_ = "Key";
  std::string text_name_;
  std::string filter_;

  int32_t level_ = 0;
  int32_t id_ = 0;
  int32_t parent_id_ = 0;
  Variant key_;
  std::string text_;
  int32_t childrens_count_ = 0;
  bool is_sum_beginn_ = false;
  bool is_sum_end_ = false;
  std::array<int16_t, kMaxLevel + 1> closing_flags_{};
  std::array<Variant, kMaxLevel + 1> parent_keys_{};
};

}  // namespace ldg
