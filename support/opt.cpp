#include "support/opt.hpp"

#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/text.hpp"

namespace ldg {
namespace {

// The application name when the joined path has fewer than two parts: the two
// characters "\\", as the name has always been.
constexpr const char* kNoAppName = "\\\\";
constexpr const char* kNoSection = "Opt";

std::vector<std::string> SplitAtBackslash(const std::string& text) {
  std::vector<std::string> parts;
  if (text.empty()) return parts;
  size_t start = 0;
  while (true) {
    size_t backslash = text.find('\\', start);
    parts.push_back(text.substr(start, backslash == std::string::npos ? backslash : backslash - start));
    if (backslash == std::string::npos) return parts;
    start = backslash + 1;
  }
}

std::string JoinWithBackslash(const std::vector<std::string>& parts, size_t from, size_t to) {
  std::string joined;
  for (size_t i = from; i < to; ++i) {
    if (i > from) joined += '\\';
    joined += parts[i];
  }
  return joined;
}

std::string TypeNameOf(const Variant& value) {
  switch (value.Type()) {
    case VarType::kNull:
      return "Null";
    case VarType::kInteger:
      return "Integer";
    case VarType::kLong:
      return "Long";
    case VarType::kSingle:
      return "Single";
    case VarType::kDouble:
      return "Double";
    case VarType::kCurrency:
      return "Currency";
    case VarType::kDate:
      return "Date";
    case VarType::kBoolean:
      return "Boolean";
    case VarType::kDecimal:
      return "Decimal";
    case VarType::kByte:
      return "Byte";
    default:
      return "String";
  }
}

// "12.50" as a Decimal; nothing for a text that is no plain decimal number.
std::optional<Decimal> ParseDecimal(std::string_view text) {
  std::string trimmed = Trim(text);
  Decimal result;
  bool negative = false, digits = false, point = false;
  size_t i = 0;
  if (i < trimmed.size() && (trimmed[i] == '-' || trimmed[i] == '+')) negative = trimmed[i++] == '-';
  for (; i < trimmed.size(); ++i) {
    char c = trimmed[i];
    if (c == '.' && !point) {
      point = true;
    } else if (c >= '0' && c <= '9' && result.mantissa < INT64_MAX / 10 && result.scale < 28) {
      result.mantissa = result.mantissa * 10 + (c - '0');
      if (point) ++result.scale;
      digits = true;
    } else {
      return std::nullopt;
    }
  }
  if (!digits) return std::nullopt;
  if (negative) result.mantissa = -result.mantissa;
  return result;
}

Variant ZeroOf(std::string_view type) {
  if (type == "Long") return Variant(int32_t{0});
  if (type == "Integer") return Variant(int16_t{0});
  if (type == "Currency") return Variant(Currency());
  if (type == "Double") return Variant(0.0);
  if (type == "Single") return Variant(0.0f);
  if (type == "Boolean") return Variant(false);
  if (type == "Date") return Variant(OleDate());
  if (type == "Byte") return Variant(uint8_t{0});
  if (type == "Decimal") return Variant(Decimal());
  return Variant(std::string());
}

Variant Convert(std::string_view type, const std::string& text) {
  Variant value(text);
  if (type == "Long") return Variant(CLng(value));
  if (type == "Integer") return Variant(CInt(value));
  if (type == "Currency") return Variant(CCur(value));
  if (type == "Double") return Variant(CDbl(value));
  if (type == "Single") return Variant(CSng(value));
  if (type == "Boolean") return Variant(CBool(value));
  if (type == "Date") return Variant(CDate(value));
  if (type == "Byte") return Variant(CByte(value));
  if (type == "Decimal") {
    std::optional<Decimal> decimal = ParseDecimal(text);
    if (!decimal) RaiseRuntime(kErrTypeMismatch);
    return Variant(*decimal);
  }
  if (type == "Null") return Variant::Null();
  return value;  // "String", "Variant" and any name not known stay text
}

}  // namespace

Opt::Opt(SettingsStore store) : store_(std::move(store)) { Recompute(); }

void Opt::Init(std::optional<std::string> base_path, std::optional<std::string> prog_path,
               std::optional<std::string> options_path) {
  if (base_path) base_path_ = *base_path;
  if (prog_path) prog_path_ = *prog_path;
  if (options_path) options_path_ = *options_path;
  Recompute();
  loaded_ = false;
  LoadIfNeeded();
}

void Opt::Recompute() {
  std::string joined;
  for (const std::string* part : {&base_path_, &prog_path_, &options_path_}) {
    std::string trimmed = Trim(*part);
    if (trimmed.empty()) continue;
    if (!joined.empty()) joined += '\\';
    joined += trimmed;
  }
  size_t doubled;
  while ((doubled = joined.find("\\\\")) != std::string::npos) joined.erase(doubled, 1);
  full_path_ = joined;

  std::vector<std::string> parts = SplitAtBackslash(joined);
  if (parts.empty()) {
    app_name_ = kNoAppName;
    section_ = kNoSection;
  } else if (parts.size() == 1) {
    app_name_ = kNoAppName;
    section_ = parts[0];
  } else if (parts.size() == 2) {
    app_name_ = parts[0];
    section_ = parts[1];
  } else {
    app_name_ = JoinWithBackslash(parts, 0, 2);
    section_ = JoinWithBackslash(parts, 2, parts.size());
  }
}

void Opt::LoadIfNeeded() {
  if (loaded_) return;
  items_ = store_.GetAllSettings(app_name_, section_);
  loaded_ = true;
}

std::vector<std::string> Opt::Items() {
  LoadIfNeeded();
  std::vector<std::string> names;
  for (const auto& item : items_) names.push_back(item.first);
  return names;
}

Variant Opt::Item(std::string_view name, const Variant& default_value) {
  LoadIfNeeded();
  for (const auto& [key, stored] : items_) {
    if (EqualsNoCase(key, name)) return ReadStoredForm(stored, default_value);
  }
  return default_value;
}

void Opt::LetItem(std::string_view name, const Variant& value) {
  LoadIfNeeded();
  std::string stored = StoredForm(value);
  store_.SaveSetting(app_name_, section_, name, stored);
  for (auto& [key, text] : items_) {
    if (EqualsNoCase(key, name)) {
      text = stored;
      return;
    }
  }
  items_.emplace_back(name, stored);
}

void Opt::ItemDel(std::string_view name) {
  LoadIfNeeded();
  std::erase_if(items_, [&](const auto& item) { return EqualsNoCase(item.first, name); });
  try {
    store_.DeleteSetting(app_name_, section_, name);
  } catch (const Error&) {
    // A missing item is deleted already.
  }
}

void Opt::ItemDelAll() {
  items_.clear();
  loaded_ = true;
  try {
    store_.DeleteSetting(app_name_, section_);
  } catch (const Error&) {
    // A missing section holds no items.
  }
}

void Opt::Update() {
  for (const auto& [key, stored] : items_) store_.SaveSetting(app_name_, section_, key, stored);
}

std::string Opt::StoredForm(const Variant& value) {
  std::string text = value.IsNull() || value.IsObject() ? std::string() : CStr(value);
  return TypeNameOf(value) + ">" + text;
}

Variant Opt::ReadStoredForm(std::string_view stored, const Variant& default_value) {
  std::string type;
  std::string text;
  size_t mark = stored.find('>');
  if (mark == std::string_view::npos) {
    type = TypeNameOf(default_value);
    text = stored;
  } else {
    type = stored.substr(0, mark);
    text = stored.substr(mark + 1);
  }
  if (text.empty()) {
    if (type == "Boolean") return Variant(false);
    if (type == "Null") return Variant::Null();
    if (type == "String" || type == "Variant") return Variant(std::string());
    return Variant();
  }
  try {
    return Convert(type, text);
  } catch (const Error&) {
    return ZeroOf(type);  // a text that does not convert reads as 0 of its type
  }
}

}  // namespace ldg
