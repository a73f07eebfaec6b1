// TagList: the tags of a free-text Tags field ("A;B=7;") as a list of tag
// names with optional values, read from and written back to that text. It
// holds no database state.
//
// Tag names are trimmed before use and compared ignoring case; the list keeps
// the order in which tags arrived. No operation raises: asking for or removing
// a tag that is not there does nothing, and its value reads as Null.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "support/variant.hpp"

namespace ldg {

class TagList {
 public:
  // Separator between tags (";").
  const std::string& TagSep() const { return tag_sep_; }
  void TagSep(std::string_view separator) { tag_sep_ = separator; }
  // Separator between a tag and its value ("="); only its first character is
  // looked for when a list is read.
  const std::string& ValSep() const { return val_sep_; }
  void ValSep(std::string_view separator) { val_sep_ = separator; }
  // Whether the written list ends with a TagSep too (False).
  bool LastSeparator() const { return last_separator_; }
  void LastSeparator(bool value) { last_separator_ = value; }

  void Clear() { tags_.clear(); }

  // Whether the tag is present.
  bool Tag(std::string_view this_tag) const;
  // Removes the tag with its value; True adds it back at the end of the order,
  // so a present tag moves to the end and keeps its value.
  void Tag(std::string_view this_tag, bool present);

  // The tag's value, or Null when it has none or is absent.
  Variant Value(std::string_view this_tag) const;
  // Makes the tag present (moving it to the end) and sets its value.
  void Value(std::string_view this_tag, const Variant& value);
  // The value as Long when it is numeric, else 0.
  int32_t ValueLong(std::string_view this_tag) const;
  // The value as text, "" when it is Null.
  std::string ValueString(std::string_view this_tag) const;

  // The list as text: tags in order, separated by TagSep, each followed by
  // ValSep and its value's text when it has a value; a tag with an empty name
  // is written as nothing.
  std::string List() const;
  // Clears, then reads the tags of the text: a part with ValSep's first
  // character after position 0 is tag and value, any other part a tag with
  // the value True.
  void List(std::string_view text);

  void Add(std::string_view this_tag) { Tag(this_tag, true); }
  void Remove(std::string_view this_tag) { Tag(this_tag, false); }

  int32_t Count() const { return static_cast<int32_t>(tags_.size()); }
  // The tag at a one-based position; "" outside 1 to Count.
  std::string Item(int32_t index) const;
  // Its value; Null outside 1 to Count or when it has none.
  Variant ItemValue(int32_t index) const;

 private:
  struct Entry {
    std::string name;
    Variant value;  // Empty when the tag has no value
  };

  std::vector<Entry>::const_iterator Find(std::string_view name) const;
  static Variant ValueOrNull(const Entry& entry);

  std::string tag_sep_ = ";";
  std::string val_sep_ = "=";
  bool last_separator_ = false;
  std::vector<Entry> tags_;
};

}  // namespace ldg
