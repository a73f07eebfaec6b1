#include "accounts/subaccounts.hpp"

#include "accounts/account.hpp"
#include "engine/current_objects.hpp"
#include "engine/engine_state.hpp"
#include "store/constants.hpp"
#include "store/database.hpp"
#include "support/conversions.hpp"
#include "support/nullable.hpp"

namespace ldg {

std::string Subaccounts::SelectionClause() const {
  if (key_.IsEmpty() || CLng(key_) == 0) return "(ParentID Is Null) ";
  return "(ParentID = " + CStr(key_) + ") ";
}

// Deliberate: with key 0 the grouped count is of Null values and gives 0,
// though Items gives the two class roots.
int32_t Subaccounts::Count() const {
  auto rows = CurrentDatabase().OpenRecordset(
      "SELECT Count(ParentID) As Anzahl FROM Accounts GROUP BY ParentID HAVING " + SelectionClause() + ";",
      store::dbOpenSnapshot);
  const int32_t count = rows->Eof() ? 0 : ReadLong(*rows, "Anzahl");
  rows->Close();
  return count;
}

std::vector<std::shared_ptr<Account>> Subaccounts::Items() const {
  auto rows = CurrentDatabase().OpenRecordset(
      "SELECT * FROM Accounts WHERE " + SelectionClause() + " ORDER BY Position, Code;",
      store::dbOpenSnapshot);
  std::vector<std::shared_ptr<Account>> items;
  for (; !rows->Eof(); rows->MoveNext()) {
    auto account = std::make_shared<Account>();
    account->LoadRecord(rows.get());
    items.push_back(std::move(account));
  }
  rows->Close();
  State().Hooks().Yield();
  return items;
}

std::shared_ptr<Account> Subaccounts::Item(int32_t index) const {
  const std::vector<std::shared_ptr<Account>> items = Items();
  if (index < 1 || index > static_cast<int32_t>(items.size())) return nullptr;
  return items[index - 1];
}

int32_t Subaccounts::ItemIndex(int32_t id) const {
  const std::vector<std::shared_ptr<Account>> items = Items();
  for (size_t k = 0; k < items.size(); ++k) {
    if (items[k]->ID() == id) return static_cast<int32_t>(k + 1);
  }
  return 0;
}

void Subaccounts::Update() {
  for (const std::shared_ptr<Account>& child : Items()) child->Update();
}

}  // namespace ldg
