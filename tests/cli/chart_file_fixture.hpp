// A year file of 2026 with a small chart and three book entries, written
// straight through the record store and closed again, so that a command test
// runs ldg on it as on any file. The chart, with its stored balances:
//
//   A Bilanz (sum)                            B Erfolgsrechnung (sum)
//     1 Aktiven (sum)                           3 Ertrag (sum)
//       1000 Kasse        opening 100, +50        3200 Erlöse  -200, -50, -100
//       1100 Debitoren (master)
//         11001 Kunde Eins            +200
//         11002 Kunde Zwei            +100
//     2 Passiven (sum)
//       2000 Kreditoren   opening -100
//
// The entries are dated 1 February (11001 / 3200, 200), 10 March (1000 /
// 3200, 50) and 30 June (11002 / 3200, 100).
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "engine/engine_state.hpp"
#include "store/constants.hpp"
#include "store/db_engine.hpp"
#include "support/currency.hpp"
#include "support/variant.hpp"
#include "tests/accounts/open_chart_fixture.hpp"

namespace ldg::cli {

class ChartFileTest : public chart_testing::OpenChartTest {
 protected:
  void SetUp() override {
    OpenChartTest::SetUp();
    LayOutChart();
    engine_->Tini();
    engine_.reset();
    path_ = PathOf("chart2026.qdb6f");
  }

  // A value read from the file on a connection of its own, after the command closed it.
  Variant FileScalar(const std::string& sql, const std::string& column) {
    auto workspace = State().DBEngine().CreateWorkspace("", "admin", "", store::dbUseJet);
    auto database = workspace->OpenDatabase(path_);
    auto rows = database->OpenRecordset(sql, store::dbOpenSnapshot);
    Variant value = rows->Eof() ? Variant() : rows->Value(column);
    rows->Close();
    database->Close();
    return value;
  }
  int32_t FileIdOf(const std::string& code) {
    return CLng(FileScalar("SELECT ID FROM Accounts WHERE Code = '" + code + "';", "ID"));
  }

  std::string path_;

 private:
  static Currency Francs(int64_t francs) { return Currency::FromRaw(francs * Currency::kScale); }

  void LayOutChart() {
    const int32_t aktiven = InsertSum(RootA(), "1", "Aktiven");
    chart_testing::AccountRow kasse;
    kasse.opening_balance = Francs(100);
    kasse.balance = Francs(150);
    const int32_t kasse_id = InsertAccount(aktiven, "1000", "Kasse", kasse);
    chart_testing::AccountRow master;
    master.is_master = true;
    master.master_id = -1;
    master.childrens_balance = Francs(300);
    const int32_t debitoren = InsertAccount(aktiven, "1100", "Debitoren", master);
    chart_testing::AccountRow detail;
    detail.is_general_ledger = false;
    detail.master_id = debitoren;
    detail.balance = Francs(200);
    const int32_t kunde_eins = InsertAccount(debitoren, "11001", "Kunde Eins", detail);
    detail.balance = Francs(100);
    const int32_t kunde_zwei = InsertAccount(debitoren, "11002", "Kunde Zwei", detail);
    const int32_t passiven = InsertSum(RootA(), "2", "Passiven");
    chart_testing::AccountRow kreditoren;
    kreditoren.is_debit = false;
    kreditoren.opening_balance = Francs(-100);
    kreditoren.balance = Francs(-100);
    InsertAccount(passiven, "2000", "Kreditoren", kreditoren);
    const int32_t ertrag = InsertSum(RootB(), "3", "Ertrag");
    chart_testing::AccountRow erloese;
    erloese.is_debit = false;
    erloese.balance = Francs(-350);
    const int32_t erloese_id = InsertAccount(ertrag, "3200", "Erlöse", erloese);

    const int32_t journal = InsertJournal(2, "Bank");
    Book(journal, chart_testing::Date(2026, 2, 1), kunde_eins, erloese_id, Francs(200));
    Book(journal, chart_testing::Date(2026, 3, 10), kasse_id, erloese_id, Francs(50));
    Book(journal, chart_testing::Date(2026, 6, 30), kunde_zwei, erloese_id, Francs(100));
  }

  void Book(int32_t journal, OleDate date, int32_t debit_id, int32_t credit_id, Currency amount) {
    const int32_t entry = InsertEntry(journal, date);
    InsertMovement(entry, debit_id, amount);
    InsertMovement(entry, credit_id, -amount);
  }
};

}  // namespace ldg::cli
