#include "accounts/accounts_groups.hpp"

#include <string>

#include "engine/current_objects.hpp"
#include "store/constants.hpp"
#include "store/database.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/keys.hpp"
#include "support/messages.hpp"
#include "support/nullable.hpp"
#include "support/text.hpp"

namespace ldg {

namespace {

constexpr int32_t kSystemCodeNotFound = 1217;
constexpr int32_t kGroupNotFoundNumber = 1215;
// The text raised with the number of kGroupNotFoundNumber (deliberate pairing, pinned by a test).
constexpr int32_t kGroupNotFoundText = 1130;

bool IsSystemCode(const Variant& value) {
  return value.Type() == VarType::kString && Left(value.AsString(), 3) == "lgr";
}

}  // namespace

std::shared_ptr<AccountsGroups> ReadAccountsGroups() {
  auto groups = std::make_shared<AccountsGroups>();
  groups->Refresh();
  return groups;
}

std::shared_ptr<AccountsGroup> AccountsGroups::Add(const Variant& name, const Variant& description,
                                                   const Variant& system_code) {
  auto group = std::make_shared<AccountsGroup>();
  if (!name.IsEmpty()) group->Name(name);
  if (!description.IsEmpty()) group->Description(description);
  if (!system_code.IsEmpty()) group->SystemCode(system_code);
  group->Update();
  groups_.Add(BuildKey(group->ID()).AsString(), group);
  return group;
}

void AccountsGroups::Refresh() {
  auto rows =
      CurrentDatabase().OpenRecordset("SELECT * FROM AccountsGroups ORDER BY Name", store::dbOpenSnapshot);
  while (!rows->Eof()) {
    auto group = std::make_shared<AccountsGroup>();
    // Deliberately without Name: a group read here has an empty Name in memory (pinned by a test).
    const int32_t id = ReadLong(*rows, "ID");
    group->LoadRow(id, rows->Value("SystemCode"), rows->Value("Description"));
    groups_.Add(BuildKey(id).AsString(), group);
    rows->MoveNext();
  }
  rows->Close();
}

std::shared_ptr<AccountsGroup> AccountsGroups::Item(const Variant& index_or_key_or_code) const {
  if (IsSystemCode(index_or_key_or_code)) return ItemBySystemCode(index_or_key_or_code);

  if (const std::optional<int32_t> id = TryKeyToID(index_or_key_or_code)) {
    const auto* found = groups_.Find(BuildKey(*id).AsString());
    if (found == nullptr) {
      RaiseError(MessageNumber(kGroupNotFoundNumber), Fill1(MessageText(kGroupNotFoundText), Variant(*id)));
    }
    return *found;
  }

  int32_t position = 0;
  try {
    position = CLng(index_or_key_or_code);
  } catch (const Error&) {
    RaiseRuntime(kErrSubscript);
  }
  return groups_.Item(position);
}

std::shared_ptr<AccountsGroup> AccountsGroups::ItemBySystemCode(const Variant& code) const {
  for (const auto& [key, group] : groups_) {
    const Variant system_code = group->SystemCode();
    if (system_code.Type() == VarType::kString && system_code.AsString() == code.AsString()) return group;
  }
  // Deliberate: the text is handed over where the number belongs, so the caller
  // gets a type mismatch and never this text (pinned by a test).
  RaiseError(Variant(MessageText(kSystemCodeNotFound) + "(" + code.AsString() + ")"), "");
}

}  // namespace ldg
