#include "bookkeeping/movements.hpp"

#include <algorithm>
#include <string>

#include "accounts/account.hpp"
#include "accounts/accounts.hpp"
#include "bookkeeping/book_entry.hpp"
#include "engine/current_objects.hpp"
#include "engine/engine_state.hpp"
#include "store/constants.hpp"
#include "store/database.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/keys.hpp"
#include "support/messages.hpp"
#include "support/nullable.hpp"

namespace ldg {
namespace {

constexpr int32_t kMsgNoMovements = 1175;
constexpr int32_t kMsgUnbalanced = 1171;
constexpr int32_t kMsgMovementKeyNotFound = 1176;

int32_t AccountIdOf(const Movement& line) { return line.Account() ? line.Account()->ID() : 0; }

}  // namespace

Movements::~Movements() { Tini(); }

void Movements::Tini() {
  for (auto& line : lines_) line->ClearOwner();
  for (auto& line : removed_) line->ClearOwner();
  lines_.clear();
  removed_.clear();
}

std::shared_ptr<Movement> Movements::Add(const NewMovement& values) {
  ++next_number_;
  auto line = std::make_shared<Movement>();
  line->SetInternalID(next_number_);
  const int32_t account_id = values.account_id.value_or(0);
  if (account_id != 0) {
    line->SetAccountSilently(CurrentAccounts().Item(Variant(account_id)));
  }
  // No owner yet: none of these reports anything, so Add never runs the automatisms.
  line->BalancingAccountID(Variant(values.balancing_account_id.value_or(0)));
  if (!values.text.IsEmpty()) line->Text(values.text);
  line->SetAmountSilently(values.amount.value_or(Currency()));
  line->SetFCAmountSilently(values.fc_amount.value_or(Currency()));
  line->Reference(values.reference.IsEmpty() ? Variant::Null() : values.reference);
  line->Valuta(values.valuta);
  line->SetTaxID(values.tax_id.IsEmpty() || values.tax_id.IsNull() ? 0 : CLng(values.tax_id));
  line->TaxManual(values.tax_manual.value_or(false));
  line->SetOwner(this);
  lines_.push_back(line);
  if (balancing_automatism_) RecalcBalancingAccounts();
  if (entry_ != nullptr && entry_->BalanceOnMovementAddition()) {
    // The balance still holds the line's own amount; the flags are set without a new sum.
    line->SetAmountSilently(-Balance());
    for (auto& other : lines_) other->SetBalanceDestinationFlag(other == line);
  }
  return line;
}

std::shared_ptr<Movement> Movements::Item(const Variant& index_or_key) const {
  const std::optional<int32_t> key = TryKeyToID(index_or_key);
  if (!key) return ItemAtPosition(lines_, index_or_key);
  const int32_t position = PositionOf(*key);
  if (position == 0) RaiseMessage(kMsgMovementKeyNotFound);
  return lines_[static_cast<size_t>(position - 1)];
}

Variant Movements::Remove(const Variant& index_or_key) {
  // The collection's own lookup: an unknown key is its invalid-argument error, not 1176.
  std::shared_ptr<Movement> line;
  if (const std::optional<int32_t> key = TryKeyToID(index_or_key)) {
    line = ItemByInternalID(*key);
  } else {
    line = Item(index_or_key);
  }
  if (line->DependentMovementID() != 0) {
    try {
      Remove(BuildKey(line->DependentMovementID()));
    } catch (const Error&) {
    }
  }
  if (line->IsDependent()) {
    try {
      const std::shared_ptr<Movement> owner = FindOwner(line->InternalID());
      if (!owner) RaiseRuntime(kErrObjectNotSet);
      owner->SetDependentMovementID(0);
      owner->TaxID(Variant::Null());
      owner->Amount(owner->Amount() + line->Amount());
    } catch (const Error&) {
    }
  }
  lines_.erase(std::find(lines_.begin(), lines_.end(), line));
  line->ClearOwner();
  removed_.push_back(line);
  if (balancing_automatism_) RecalcBalancingAccounts();
  if (entry_ != nullptr && entry_->BalanceOnMovementAddition()) Rebalance();
  return index_or_key;
}

Currency Movements::Balance() const {
  Currency sum;
  for (const auto& line : lines_) sum += line->Amount();
  return sum;
}

void Movements::SetBalancingAutomatism(bool value) {
  balancing_automatism_ = value;
  if (value) RecalcBalancingAccounts();
}

void Movements::LoadFromDatabase(int32_t entry_id) {
  auto rows = CurrentDatabase().OpenRecordset(
      "SELECT * FROM Movements WHERE EntryID = " + std::to_string(entry_id) + ";", store::dbOpenSnapshot);
  while (!rows->Eof()) {
    Add()->LoadFromRecord(*rows);
    rows->MoveNext();
  }
  rows->Close();
  // The rows link tax lines by ID; in memory the links are internal numbers.
  for (auto& line : lines_) {
    const int32_t stored_link = line->DependentMovementID();
    if (stored_link == 0) continue;
    int32_t internal_id = 0;
    for (const auto& other : lines_) {
      if (other->ID() == stored_link) {
        internal_id = other->InternalID();
        break;
      }
    }
    line->SetDependentMovementID(internal_id);
  }
}

void Movements::Validate() {
  if (Count() == 0) RaiseMessage(kMsgNoMovements);
  if (Count() == 2) {
    for (int32_t index = 0; index < 2; ++index) {
      const auto& other = lines_[static_cast<size_t>(1 - index)];
      if (!other->Account()) RaiseRuntime(kErrObjectNotSet);
      lines_[static_cast<size_t>(index)]->BalancingAccountID(Variant(other->Account()->ID()));
    }
  }
  if (!Balance().IsZero()) RaiseMessage(kMsgUnbalanced);
}

void Movements::AppendAll() {
  PrepareBalancingAccounts();
  for (auto& line : lines_) line->Save();
  WriteDependentLinks();
}

void Movements::UpdateAll() {
  PrepareBalancingAccounts();
  for (auto& line : lines_) line->Save();
  WriteDependentLinks();
  for (auto& line : removed_) line->DeleteFromDatabase();
}

void Movements::DeleteAll() {
  for (auto& line : lines_) line->DeleteFromDatabase();
  for (auto& line : removed_) line->DeleteFromDatabase();
}

void Movements::TakeStoredCopies() {
  for (auto& line : lines_) line->TakeStoredCopy();
  ReleaseRemoved();
}

void Movements::ReleaseRemoved() {
  for (auto& line : removed_) line->ClearOwner();
  removed_.clear();
}

void Movements::ClearIDs() {
  for (auto& line : lines_) line->ClearID();
}

int32_t Movements::PositionOf(int32_t internal_id) const {
  for (size_t index = 0; index < lines_.size(); ++index) {
    if (lines_[index]->InternalID() == internal_id) return static_cast<int32_t>(index + 1);
  }
  return 0;
}

// A number that names no line is the collection's invalid-argument error.
std::shared_ptr<Movement> Movements::ItemByInternalID(int32_t internal_id) const {
  const int32_t position = PositionOf(internal_id);
  if (position == 0) RaiseRuntime(kErrInvalidCall);
  return lines_[static_cast<size_t>(position - 1)];
}

std::shared_ptr<Movement> Movements::FindOwner(int32_t internal_id) const {
  for (const auto& line : lines_) {
    if (line->DependentMovementID() == internal_id) return line;
  }
  return nullptr;
}

std::shared_ptr<Movement> Movements::Counterpart(int32_t internal_id) const {
  if (!(simple_mode_ && balancing_automatism_)) RaiseError(kErrorBase, "");
  if (BuildKey(internal_id) == second_main_key_) return lines_.front();
  return Item(second_main_key_);
}

OleDate Movements::RateDate() const {
  const OleDate year_end = CDate(State().year_end);
  if (entry_ == nullptr || !IsDate(entry_->EntryDate())) return year_end;
  const OleDate entry_date = CDate(entry_->EntryDate());
  return entry_date > year_end ? year_end : entry_date;
}

void Movements::OnTextChanged(Movement& line) {
  if (line.DependentMovementID() != 0) {
    ItemByInternalID(line.DependentMovementID())->SetTextSilently(CStr(line.Text()));
  }
  // A text change on the second main line stays there.
  if (!(simple_mode_ && balancing_automatism_) || PositionOf(line.InternalID()) != 1) return;
  const std::shared_ptr<Movement> counterpart = Counterpart(line.InternalID());
  counterpart->SetTextSilently(CStr(line.Text()));
  if (counterpart->DependentMovementID() != 0) {
    ItemByInternalID(counterpart->DependentMovementID())->SetTextSilently(CStr(line.Text()));
  }
}

// Line by line in order: a flag still carried by a later line keeps that line out of the sum.
void Movements::SetBalanceDestination(int32_t internal_id) {
  for (auto& line : lines_) {
    if (line->InternalID() != internal_id) {
      line->SetBalanceDestinationFlag(false);
      continue;
    }
    Currency others;
    for (const auto& other : lines_) {
      if (!other->BalanceDestination()) others += other->Amount();
    }
    line->SetAmountSilently(-others);
  }
}

void Movements::ClearOtherMainMovements(int32_t internal_id) {
  for (auto& line : lines_) {
    if (line->InternalID() != internal_id) line->SetMainMovementFlag(false);
  }
}

void Movements::Rebalance() {
  const auto destination =
      std::find_if(lines_.begin(), lines_.end(), [](const auto& line) { return line->BalanceDestination(); });
  if (destination == lines_.end()) return;
  Currency others;
  for (const auto& line : lines_) {
    if (!line->BalanceDestination()) others += line->Amount();
  }
  (*destination)->SetAmountSilently(-others);
}

void Movements::RecalcBalancingAccounts() {
  const auto tax_lines =
      std::count_if(lines_.begin(), lines_.end(), [](const auto& line) { return line->IsDependent(); });
  if (balancing_automatism_ && Count() == 3 && tax_lines == 2) RaiseError(kErrorBase, "");
  simple_mode_ =
      balancing_automatism_ && ((Count() == 2 && tax_lines == 0) || (Count() == 3 && tax_lines == 1));
  if (!simple_mode_) {
    second_main_key_ = Variant(int32_t{1});
    for (auto& line : lines_) line->BalancingAccountID(Variant(int32_t{0}));
    return;
  }
  // The first position is taken to be a main line without looking.
  const auto second =
      std::find_if(lines_.begin() + 1, lines_.end(), [](const auto& line) { return !line->IsDependent(); });
  if (second == lines_.end()) RaiseError(kErrorBase, "");
  second_main_key_ = BuildKey((*second)->InternalID());
  Movement& first = *lines_.front();
  if ((*second)->Account()) first.BalancingAccountID(Variant(AccountIdOf(**second)));
  if (first.Account()) (*second)->BalancingAccountID(Variant(AccountIdOf(first)));
  for (auto& line : lines_) {
    if (!line->IsDependent()) continue;
    const std::shared_ptr<Movement> owner = FindOwner(line->InternalID());
    if (owner) {
      line->BalancingAccountID(Variant(owner->BalancingAccountID()));
    } else {
      line->SetIsDependent(false);
    }
  }
}

// A composite entry's lines all point to its main line, or else to the line that takes up the difference.
void Movements::PrepareBalancingAccounts() {
  if (simple_mode_) return;
  std::shared_ptr<Movement> main_line;
  std::shared_ptr<Movement> destination;
  for (const auto& line : lines_) {
    if (line->BalanceDestination() && !destination) destination = line;
    if (line->MainMovement() && !main_line) main_line = line;
    if (main_line && destination) break;
  }
  const std::shared_ptr<Movement> target = main_line ? main_line : destination;
  if (!target) return;
  const int32_t target_account = AccountIdOf(*target);
  for (auto& line : lines_) line->BalancingAccountID(Variant(line == target ? 0 : target_account));
}

void Movements::WriteDependentLinks() {
  for (const auto& line : lines_) {
    if (line->DependentMovementID() == 0) continue;
    try {
      const std::shared_ptr<Movement> tax_line = ItemByInternalID(line->DependentMovementID());
      CurrentDatabase().Execute(
          "UPDATE Movements SET DependentMovementID = " + std::to_string(tax_line->ID()) +
              " WHERE ID=" + std::to_string(line->ID()) + ";",
          store::dbFailOnError);
    } catch (const Error&) {
    }
  }
}

std::shared_ptr<Movement> Movements::AddDependentMovement(Movement& owner) {
  ++next_number_;
  auto tax_line = std::make_shared<Movement>();
  tax_line->SetInternalID(next_number_);
  tax_line->SetIsDependent(true);
  tax_line->SetOwner(this);
  lines_.insert(lines_.begin() + PositionOf(owner.InternalID()), tax_line);
  owner.SetDependentMovementID(tax_line->InternalID());
  RecalcBalancingAccounts();
  return tax_line;
}

}  // namespace ldg
