#include "support/tag_list.hpp"

#include <algorithm>

#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/string_splitter.hpp"
#include "support/text.hpp"

namespace ldg {

std::vector<TagList::Entry>::const_iterator TagList::Find(std::string_view name) const {
  return std::find_if(tags_.begin(), tags_.end(),
                      [&](const Entry& entry) { return EqualsNoCase(entry.name, name); });
}

Variant TagList::ValueOrNull(const Entry& entry) {
  return entry.value.IsEmpty() ? Variant::Null() : entry.value;
}

bool TagList::Tag(std::string_view this_tag) const { return Find(Trim(this_tag)) != tags_.end(); }

void TagList::Tag(std::string_view this_tag, bool present) {
  std::string name = Trim(this_tag);
  Variant kept;
  if (auto found = Find(name); found != tags_.end()) {
    kept = found->value;
    tags_.erase(found);
  }
  if (present) tags_.push_back(Entry{name, kept});
}

Variant TagList::Value(std::string_view this_tag) const {
  auto found = Find(Trim(this_tag));
  return found == tags_.end() ? Variant::Null() : ValueOrNull(*found);
}

void TagList::Value(std::string_view this_tag, const Variant& value) {
  Tag(this_tag, true);
  tags_.back().value = value;
}

int32_t TagList::ValueLong(std::string_view this_tag) const {
  Variant value = Value(this_tag);
  if (value.IsNull() || !IsNumeric(value)) return 0;
  try {
    return CLng(value);
  } catch (const Error&) {
    return 0;  // a number beyond Long reads as no number, as every failure here ends nothing
  }
}

std::string TagList::ValueString(std::string_view this_tag) const {
  Variant value = Value(this_tag);
  return value.IsNull() ? "" : CStr(value);
}

std::string TagList::List() const {
  std::string text;
  for (const Entry& entry : tags_) {
    if (entry.name.empty()) continue;
    if (!text.empty()) text += tag_sep_;
    text += entry.name;
    if (!entry.value.IsEmpty()) text += val_sep_ + (entry.value.IsNull() ? "" : CStr(entry.value));
  }
  if (!text.empty() && last_separator_) text += tag_sep_;
  return text;
}

void TagList::List(std::string_view text) {
  Clear();
  StringSplitter parts(text, tag_sep_);
  std::string mark = Left(val_sep_, 1);
  for (int32_t index = 1; index <= parts.Count(); ++index) {
    std::string part = parts.Word(index);
    size_t at = mark.empty() ? std::string::npos : part.find(mark);
    if (at != std::string::npos) {
      Value(part.substr(0, at), Variant(part.substr(at + mark.size())));
    } else {
      Value(part, Variant(true));
    }
  }
}

std::string TagList::Item(int32_t index) const {
  if (index < 1 || index > Count()) return "";
  return tags_[static_cast<size_t>(index - 1)].name;
}

Variant TagList::ItemValue(int32_t index) const {
  if (index < 1 || index > Count()) return Variant::Null();
  return ValueOrNull(tags_[static_cast<size_t>(index - 1)]);
}

}  // namespace ldg
