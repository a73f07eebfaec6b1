// Movements: the lines of one book entry, and the place where they are kept
// consistent while a caller edits them in memory: internal numbers, the link of
// a tax line to its owner, the mirror between the two main lines of a simple
// entry, the counter accounts, the line that takes up the difference, and on
// save an order of writing that lets the links be resolved. The change handlers
// (account, tax, amount, foreign amount) live in movements_automatisms.cpp.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "bookkeeping/movement.hpp"
#include "support/currency.hpp"
#include "support/ole_date.hpp"
#include "support/variant.hpp"

namespace ldg {

class BookEntry;

// The optional arguments of Movements::Add.
struct NewMovement {
  std::optional<int32_t> account_id;
  std::optional<int32_t> balancing_account_id;
  Variant text;
  std::optional<Currency> amount;
  std::optional<Currency> fc_amount;
  Variant reference;
  Variant valuta;
  Variant tax_id;
  std::optional<bool> tax_manual;
};

class Movements {
 public:
  Movements() = default;
  ~Movements();
  Movements(const Movements&) = delete;
  Movements& operator=(const Movements&) = delete;

  // Releases all lines of both lists, each line's owner cleared first.
  void Tini();
  int32_t Count() const { return static_cast<int32_t>(lines_.size()); }
  std::shared_ptr<Movement> Add(const NewMovement& values = {});
  // A key "ID<n>" (1176 when missing) or a one-based position (error 9).
  std::shared_ptr<Movement> Item(const Variant& index_or_key) const;
  auto begin() const { return lines_.begin(); }
  auto end() const { return lines_.end(); }
  Variant Remove(const Variant& index_or_key);
  // The sum of Amount over the live lines.
  Currency Balance() const;

  // For BookEntry.
  void SetBookEntry(BookEntry* entry) { entry_ = entry; }
  void ClearBookEntry() { entry_ = nullptr; }
  ldg::BookEntry* BookEntry() const { return entry_; }
  void SetTaxAutomatism(bool value) { tax_automatism_ = value; }
  bool TaxAutomatism() const { return tax_automatism_; }
  void SetBalancingAutomatism(bool value);
  bool BalancingAutomatism() const { return balancing_automatism_; }
  void LoadFromDatabase(int32_t entry_id);
  void Validate();
  void AppendAll();
  void UpdateAll();
  void DeleteAll();
  // Also releases the removed lines.
  void TakeStoredCopies();
  void ReleaseRemoved();
  void ClearIDs();

  // For Movement.
  std::shared_ptr<Movement> ItemByInternalID(int32_t internal_id) const;
  std::shared_ptr<Movement> FindOwner(int32_t internal_id) const;
  std::shared_ptr<Movement> Counterpart(int32_t internal_id) const;
  OleDate RateDate() const;
  void OnTextChanged(Movement& line);
  void OnAccountChanged(Movement& line);
  void OnTaxChanged(Movement& line);
  void OnAmountChanged(Movement& line, bool change_fc_amount);
  void OnFCAmountChanged(Movement& line, bool change_amount);
  void SetBalanceDestination(int32_t internal_id);
  void ClearOtherMainMovements(int32_t internal_id);
  void Rebalance();

 private:
  void RecalcBalancingAccounts();
  void PrepareBalancingAccounts();
  void WriteDependentLinks();
  std::shared_ptr<Movement> AddDependentMovement(Movement& owner);
  void RecalcFCAmount(Movement& line);
  // The mirror of a simple entry after a change of line.
  void MirrorToCounterpart(Movement& line, int16_t sign, Currency gross);
  int32_t PositionOf(int32_t internal_id) const;

  int32_t next_number_ = 0;
  std::vector<std::shared_ptr<Movement>> lines_;
  std::vector<std::shared_ptr<Movement>> removed_;
  ldg::BookEntry* entry_ = nullptr;
  bool tax_automatism_ = false;
  bool balancing_automatism_ = false;
  bool simple_mode_ = false;
  Variant second_main_key_ = Variant(int32_t{1});
};

}  // namespace ldg
