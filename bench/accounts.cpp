// The balances of a whole chart at a date through the engine, against one
// plain SQLite aggregate over the same rows. The year file is made by the
// creation, then filled with plain sqlite3 calls: a chart of some 300 accounts
// (sums in three levels, plain accounts, two masters with detail accounts) and
// 1 000 000 movements in 333 334 book entries spread over 2026. The engine's
// side walks the chart as `ldg accounts --at` does: Item(0), the Children of
// each node once, and BalanceAtDate on every account, sums and masters
// included. The raw side runs the one grouped sum of the movements before the
// date. Both run in one program on one file, so their ratio compares like with
// like. The engine keeps the built dated view while nothing is written, so the
// listing is measured cold (the view dropped before each run, as a new run of
// the command finds it) and again with the view kept.
#include "accounts/accounts.hpp"

#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "accounts/account.hpp"
#include "accounts/account_handles.hpp"
#include "bench/bench_year_file.hpp"
#include "engine/engine.hpp"
#include "support/currency.hpp"
#include "support/ole_date.hpp"
#include "support/variant.hpp"

namespace {

using namespace ldg;
using bench::RawFile;

constexpr int kEntries = 333334;
constexpr int kMovements = 1000000;
const OleDate kAtDate = OleDate::FromYmd(2026, 7, 1);

// ---------------------------------------------------------------- the generated chart

struct ChartRow {
  int32_t id;
  int32_t parent_id;
  std::string code;
  std::string name;
  int16_t account_class;
  bool is_general_ledger = true;
  bool is_debit = true;
  bool is_sum = false;
  bool is_master = false;
  int32_t master_id = 0;
  int64_t opening = 0;  // ten-thousandths
  int64_t balance = 0;
  int64_t childrens_balance = 0;
};

class ChartBuilder {
 public:
  ChartBuilder(int32_t root_a, int32_t root_b, int32_t next_id)
      : root_a_(root_a), root_b_(root_b), next_id_(next_id) {}

  // Class 1: two group sums of four subgroups; class 2: four group sums of four
  // subgroups. Eight plain accounts per subgroup; a customer master with 60
  // details in subgroup 11 and a supplier master with 20 in subgroup 20.
  void Build() {
    for (int group : {1, 2}) AddGroup(root_a_, 1, group);
    for (int group : {3, 4, 5, 6}) AddGroup(root_b_, 2, group);
    AddMaster("11", "1100", "Debitoren", 60, 110000);
    AddMaster("20", "2000", "Kreditoren", 20, 200000);
  }

  std::vector<ChartRow>& rows() { return rows_; }
  // The accounts a movement may go to: plain accounts and details.
  const std::vector<size_t>& bookable() const { return bookable_; }

 private:
  int32_t Add(ChartRow row) {
    row.id = next_id_++;
    rows_.push_back(row);
    index_of_[row.code] = rows_.size() - 1;
    return row.id;
  }

  void AddGroup(int32_t root, int16_t account_class, int group) {
    const bool debit = group == 1 || group >= 4;
    const int32_t group_id = Add({0, root, std::to_string(group), "Gruppe " + std::to_string(group),
                                  account_class, true, debit, true});
    for (int sub = 0; sub < 4; ++sub) {
      const std::string sub_code = std::to_string(group * 10 + sub);
      const int32_t sub_id =
          Add({0, group_id, sub_code, "Untergruppe " + sub_code, account_class, true, debit, true});
      for (int n = 0; n < 8; ++n) {
        const std::string code = std::to_string((group * 10 + sub) * 100 + 10 + n * 10);
        ChartRow row{0, sub_id, code, "Konto " + code, account_class, true, debit};
        Add(row);
        bookable_.push_back(rows_.size() - 1);
      }
    }
  }

  void AddMaster(const std::string& parent_code, const std::string& code, const std::string& name,
                 int details, int first_detail_code) {
    const ChartRow parent = rows_[index_of_.at(parent_code)];  // a copy: Add grows rows_
    ChartRow master{0, parent.id, code, name, parent.account_class, true, parent.is_debit, false, true};
    master.id = next_id_;
    master.master_id = master.id;
    const int32_t master_id = Add(master);
    for (int n = 0; n < details; ++n) {
      const std::string detail_code = std::to_string(first_detail_code + n + 1);
      ChartRow detail{0, master_id, detail_code, name + " " + detail_code, parent.account_class};
      detail.is_general_ledger = false;
      detail.is_debit = parent.is_debit;
      detail.master_id = master_id;
      Add(detail);
      bookable_.push_back(rows_.size() - 1);
    }
  }

  int32_t root_a_;
  int32_t root_b_;
  int32_t next_id_;
  std::vector<ChartRow> rows_;
  std::vector<size_t> bookable_;
  std::map<std::string, size_t> index_of_;
};

// Opening balances on the balance sheet that add up to 0, 1 000 000 movements
// in entries of three lines that balance, and the stored balances they give.
void FillYearFile(const std::string& path) {
  RawFile raw(path);
  const int32_t root_a = static_cast<int32_t>(raw.Scalar("SELECT ID FROM Accounts WHERE Code = 'A'"));
  const int32_t root_b = static_cast<int32_t>(raw.Scalar("SELECT ID FROM Accounts WHERE Code = 'B'"));
  const int32_t next_id = static_cast<int32_t>(raw.Scalar("SELECT Max(ID) FROM Accounts")) + 1;
  ChartBuilder chart(root_a, root_b, next_id);
  chart.Build();
  std::vector<ChartRow>& rows = chart.rows();
  const std::vector<size_t>& bookable = chart.bookable();

  std::mt19937 random(20260101);
  int64_t opening_total = 0;
  size_t last_balance_sheet = 0;
  for (size_t i : bookable) {
    if (rows[i].account_class != 1) continue;
    rows[i].opening = static_cast<int64_t>(random() % 10000000) * 100;
    opening_total += rows[i].opening;
    last_balance_sheet = i;
  }
  rows[last_balance_sheet].opening -= opening_total;
  for (ChartRow& row : rows) row.balance = row.opening;

  raw.Exec("BEGIN");
  // The entries go into the journal that the creation makes.
  const int64_t journal = raw.Scalar("SELECT Min(ID) FROM Journals");
  sqlite3_stmt* entry = raw.Prepare(
      "INSERT INTO BookEntries (ID, JournalID, Date, DocumentID, Marked, Automatic) VALUES (?, ?, ?, ?, 0, "
      "0)");
  sqlite3_stmt* movement = raw.Prepare(
      "INSERT INTO Movements (ID, EntryID, AccountID, Text, Amount, FCAmount, TaxManual, IsNetAmount, "
      "IsDependent) VALUES (?, ?, ?, 'Buchung', ?, 0, 0, 0, 0)");
  const double first_day = OleDate::FromYmd(2026, 1, 1).Serial();
  int movement_id = 0;
  auto add_movement = [&](int entry_id, size_t account, int64_t amount) {
    if (movement_id >= kMovements) return;
    sqlite3_bind_int(movement, 1, ++movement_id);
    sqlite3_bind_int(movement, 2, entry_id);
    sqlite3_bind_int(movement, 3, rows[account].id);
    sqlite3_bind_int64(movement, 4, amount);
    raw.Step(movement);
    rows[account].balance += amount;
  };
  for (int entry_id = 1; entry_id <= kEntries; ++entry_id) {
    sqlite3_bind_int(entry, 1, entry_id);
    sqlite3_bind_int64(entry, 2, journal);
    sqlite3_bind_double(entry, 3, first_day + static_cast<double>(random() % 365));
    const std::string document = "B" + std::to_string(entry_id);
    sqlite3_bind_text(entry, 4, document.c_str(), -1, SQLITE_TRANSIENT);
    raw.Step(entry);
    const int64_t first = static_cast<int64_t>(random() % 1000000 + 100) * 100;
    const int64_t second = static_cast<int64_t>(random() % 1000000 + 100) * 100;
    // The last entry has a single line left of the million; its balance doesn't matter here.
    add_movement(entry_id, bookable[random() % bookable.size()], first + second);
    add_movement(entry_id, bookable[random() % bookable.size()], -first);
    add_movement(entry_id, bookable[random() % bookable.size()], -second);
  }
  sqlite3_finalize(entry);
  sqlite3_finalize(movement);

  std::map<int32_t, ChartRow*> masters;
  for (ChartRow& row : rows) {
    if (row.is_master) masters[row.id] = &row;
  }
  for (const ChartRow& row : rows) {
    if (row.master_id != 0 && !row.is_master) masters.at(row.master_id)->childrens_balance += row.balance;
  }
  sqlite3_stmt* account = raw.Prepare(
      "INSERT INTO Accounts (ID, ParentID, Code, Name, Position, Class, IsGeneralLedger, IsDebit, IsSum, "
      "IsMaster, MasterID, OpeningBalance, Balance, ChildrensBalance, FCOpeningBalance, FCBalance, "
      "FCCanChooseRate, TaxCanChoose, ActivateValuta, ActivateReference, Budget) "
      "VALUES (?, ?, ?, ?, 0, ?, ?, ?, ?, ?, ?, ?, ?, ?, 0, 0, 0, 0, 0, 0, 0)");
  for (const ChartRow& row : rows) {
    sqlite3_bind_int(account, 1, row.id);
    sqlite3_bind_int(account, 2, row.parent_id);
    sqlite3_bind_text(account, 3, row.code.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_text(account, 4, row.name.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_int(account, 5, row.account_class);
    sqlite3_bind_int(account, 6, row.is_general_ledger ? -1 : 0);
    sqlite3_bind_int(account, 7, row.is_debit ? -1 : 0);
    sqlite3_bind_int(account, 8, row.is_sum ? -1 : 0);
    sqlite3_bind_int(account, 9, row.is_master ? -1 : 0);
    sqlite3_bind_int(account, 10, row.master_id);
    sqlite3_bind_int64(account, 11, row.opening);
    sqlite3_bind_int64(account, 12, row.is_sum || row.is_master ? 0 : row.balance);
    sqlite3_bind_int64(account, 13, row.childrens_balance);
    raw.Step(account);
  }
  sqlite3_finalize(account);
  raw.Exec("COMMIT");
}

// ---------------------------------------------------------------- the engine's side

// The year file, made once per run by the creation from the template and
// filled, and an Engine with it open.
struct BenchFile {
  std::filesystem::path folder;
  std::string path;
  std::unique_ptr<Engine> engine;

  BenchFile() {
    folder = bench::PrepareScratchFolder("accounts");
    path = (folder / "bench2026.qdb6f").string();
    engine = std::make_unique<Engine>();
    bench::LogOn(*engine, folder);
    engine->CreateDatabase(Variant(path), Variant("01.01.2026"), Variant("31.12.2026"));
    engine->CloseDatabase();
    FillYearFile(path);
    engine->OpenDatabase(Variant(path));
    CheckAgainstRaw();
  }

  // Every account's balance at the date through the engine must be what the
  // raw rows give: a plain or detail account its opening plus the movements
  // before the date, a sum or master its tree with the movements up to and
  // including the date and the masters below it at their stored total.
  void CheckAgainstRaw() {
    RawFile raw(path);
    const std::map<int32_t, int64_t> before = RawSums(raw, "<");
    const std::map<int32_t, int64_t> through = RawSums(raw, "<=");
    std::map<int32_t, StoredRow> stored;
    std::multimap<int32_t, int32_t> children;
    sqlite3_stmt* statement = raw.Prepare(
        "SELECT ID, ParentID, IsSum, IsMaster, MasterID, OpeningBalance, Balance, ChildrensBalance FROM "
        "Accounts");
    while (sqlite3_step(statement) == SQLITE_ROW) {
      const int32_t id = sqlite3_column_int(statement, 0);
      stored[id] = StoredRow{sqlite3_column_int(statement, 1),      sqlite3_column_int(statement, 2) != 0,
                             sqlite3_column_int(statement, 3) != 0, sqlite3_column_int(statement, 4),
                             sqlite3_column_int64(statement, 5),    sqlite3_column_int64(statement, 6),
                             sqlite3_column_int64(statement, 7)};
      children.emplace(stored[id].parent_id, id);
    }
    sqlite3_finalize(statement);
    int checked = 0;
    int differing = 0;
    for (const auto& [id, row] : stored) {
      const int64_t expected = row.is_sum || row.is_master ? TreeSum(id, stored, children, through)
                                                           : row.opening + Lookup(before, id);
      ++checked;
      if (engine->Accounts()->Item(Variant(id))->BalanceAtDate(kAtDate).Raw() != expected) ++differing;
    }
    std::cerr << "Checked " << checked << " accounts against the raw rows: " << differing << " differ\n";
  }

  struct StoredRow {
    int32_t parent_id = 0;
    bool is_sum = false;
    bool is_master = false;
    int32_t master_id = 0;
    int64_t opening = 0;
    int64_t balance = 0;
    int64_t childrens_balance = 0;
  };

  static int64_t Lookup(const std::map<int32_t, int64_t>& sums, int32_t id) {
    const auto found = sums.find(id);
    return found == sums.end() ? 0 : found->second;
  }

  // The movements' sums per account, the date compared by the operator given.
  static std::map<int32_t, int64_t> RawSums(RawFile& raw, const std::string& comparison) {
    std::map<int32_t, int64_t> sums;
    sqlite3_stmt* statement = raw.Prepare(
        "SELECT Movements.AccountID, SUM(Movements.Amount) FROM BookEntries INNER JOIN Movements ON "
        "BookEntries.ID = Movements.EntryID WHERE BookEntries.Date " +
        comparison + " ? GROUP BY Movements.AccountID");
    sqlite3_bind_double(statement, 1, kAtDate.Serial());
    while (sqlite3_step(statement) == SQLITE_ROW) {
      sums[sqlite3_column_int(statement, 0)] = sqlite3_column_int64(statement, 1);
    }
    sqlite3_finalize(statement);
    return sums;
  }

  // A sum's tree: its plain children at the movements up to the date, child
  // sums by their tree, master children at ChildrensBalance plus this node's Balance.
  static int64_t TreeSum(int32_t id, const std::map<int32_t, StoredRow>& stored,
                         const std::multimap<int32_t, int32_t>& children,
                         const std::map<int32_t, int64_t>& through) {
    int64_t total = 0;
    const auto [first, last] = children.equal_range(id);
    for (auto child = first; child != last; ++child) {
      const StoredRow& row = stored.at(child->second);
      if (row.is_sum) total += TreeSum(child->second, stored, children, through);
      if (row.master_id != 0) total += row.childrens_balance + stored.at(id).balance;
      if (!row.is_sum && row.master_id == 0) total += row.opening + Lookup(through, child->second);
    }
    return total;
  }

  ~BenchFile() {
    engine->Tini();
    engine.reset();
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
  }
};

// Thread-local, like the engine-wide state that the Engine uses: made after
// that state, it goes before it at exit, so the Engine still finds it to close.
BenchFile& TheFile() {
  thread_local BenchFile file;
  return file;
}

// The IDs of the chart's accounts: the sums and masters, or the plain and detail accounts.
std::vector<int32_t> ChartIds(bool sums_and_masters) {
  RawFile raw(TheFile().path);
  sqlite3_stmt* statement = raw.Prepare(
      std::string("SELECT ID FROM Accounts WHERE ") +
      (sums_and_masters ? "IsSum <> 0 OR IsMaster <> 0" : "IsSum = 0 AND IsMaster = 0") + " ORDER BY ID");
  std::vector<int32_t> ids;
  while (sqlite3_step(statement) == SQLITE_ROW) ids.push_back(sqlite3_column_int(statement, 0));
  sqlite3_finalize(statement);
  return ids;
}

void AddBalancesAtDate(Account& account, int64_t& total) {
  total += account.BalanceAtDate(kAtDate).Raw();
  for (const auto& child : account.Children()) AddBalancesAtDate(*child, total);
}

void CountNodes(Account& account, int64_t& count) {
  ++count;
  for (const auto& child : account.Children()) CountNodes(*child, count);
}

// The shared dated view dropped, as a new run of the command finds it.
void DropBalanceView(benchmark::State& state) {
  state.PauseTiming();
  SharedAccountHandles().ReleaseBalanceView();
  state.ResumeTiming();
}

int64_t ChartBalancesAtDate(Accounts& accounts) {
  int64_t total = 0;
  for (const auto& root : accounts.Item(Variant(int32_t{0}))->Children()) AddBalancesAtDate(*root, total);
  return total;
}

// What `ldg accounts --at` asks of the engine: the walk and every account's
// balance at the date; the dated view is built once in each run.
void BM_ChartBalancesAtDate_Engine(benchmark::State& state) {
  Accounts& accounts = *TheFile().engine->Accounts();
  for (auto _ : state) {
    DropBalanceView(state);
    benchmark::DoNotOptimize(ChartBalancesAtDate(accounts));
  }
}
BENCHMARK(BM_ChartBalancesAtDate_Engine)->Unit(benchmark::kMillisecond);

// The same listing again in one session with nothing written since: the view
// built before is kept, its rows too.
void BM_ChartBalancesAtDateAgain_Engine(benchmark::State& state) {
  Accounts& accounts = *TheFile().engine->Accounts();
  ChartBalancesAtDate(accounts);
  for (auto _ : state) benchmark::DoNotOptimize(ChartBalancesAtDate(accounts));
}
BENCHMARK(BM_ChartBalancesAtDateAgain_Engine)->Unit(benchmark::kMillisecond);

// The walk alone (Item(0), Children of each node), to tell it from the balances.
void BM_ChartWalk_Engine(benchmark::State& state) {
  Accounts& accounts = *TheFile().engine->Accounts();
  for (auto _ : state) {
    int64_t count = 0;
    for (const auto& root : accounts.Item(Variant(int32_t{0}))->Children()) CountNodes(*root, count);
    benchmark::DoNotOptimize(count);
  }
}
BENCHMARK(BM_ChartWalk_Engine)->Unit(benchmark::kMillisecond);

// The plain and detail accounts alone, each a fresh object as the walk gives
// it, with no dated view open: one viewBalanceAtDate per account.
void BM_PlainAccountsAtDate_Engine(benchmark::State& state) {
  Accounts& accounts = *TheFile().engine->Accounts();
  const std::vector<int32_t> ids = ChartIds(false);
  for (auto _ : state) {
    DropBalanceView(state);
    int64_t total = 0;
    for (int32_t id : ids) total += accounts.Item(Variant(id))->BalanceAtDate(kAtDate).Raw();
    benchmark::DoNotOptimize(total);
  }
  state.counters["accounts"] = static_cast<double>(ids.size());
}
BENCHMARK(BM_PlainAccountsAtDate_Engine)->Unit(benchmark::kMillisecond);

// The same while a sum has the dated view of the day open: each account takes
// its sum from the view, less the movements of the day.
void BM_PlainAccountsAtDateFromView_Engine(benchmark::State& state) {
  Accounts& accounts = *TheFile().engine->Accounts();
  const std::vector<int32_t> ids = ChartIds(false);
  accounts.Item(Variant("A"))->BalanceAtDate(kAtDate);
  for (auto _ : state) {
    int64_t total = 0;
    for (int32_t id : ids) total += accounts.Item(Variant(id))->BalanceAtDate(kAtDate).Raw();
    benchmark::DoNotOptimize(total);
  }
}
BENCHMARK(BM_PlainAccountsAtDateFromView_Engine)->Unit(benchmark::kMillisecond);

// One sum on a fresh object with no view yet: the dated view is built for it,
// then its tree is added up.
void BM_OneSumAtDate_Engine(benchmark::State& state) {
  Accounts& accounts = *TheFile().engine->Accounts();
  const int32_t balance_sheet = accounts.Item(Variant("A"))->ID();
  for (auto _ : state) {
    DropBalanceView(state);
    benchmark::DoNotOptimize(accounts.Item(Variant(balance_sheet))->BalanceAtDate(kAtDate));
  }
  state.counters["sums_and_masters"] = static_cast<double>(ChartIds(true).size());
}
BENCHMARK(BM_OneSumAtDate_Engine)->Unit(benchmark::kMillisecond);

// One sum on a fresh object after another asked for the same date: the view is reused.
void BM_OneSumAtDateAgain_Engine(benchmark::State& state) {
  Accounts& accounts = *TheFile().engine->Accounts();
  const int32_t balance_sheet = accounts.Item(Variant("A"))->ID();
  accounts.Item(Variant(balance_sheet))->BalanceAtDate(kAtDate);
  for (auto _ : state)
    benchmark::DoNotOptimize(accounts.Item(Variant(balance_sheet))->BalanceAtDate(kAtDate));
}
BENCHMARK(BM_OneSumAtDateAgain_Engine)->Unit(benchmark::kMillisecond);

// One grouped sum of the movements dated before the day, over the same rows.
void BM_ChartBalancesAtDate_Raw(benchmark::State& state) {
  RawFile raw(TheFile().path);
  for (auto _ : state) {
    sqlite3_stmt* statement = raw.Prepare(
        "SELECT Movements.AccountID, SUM(Movements.Amount) FROM BookEntries INNER JOIN Movements ON "
        "BookEntries.ID = Movements.EntryID WHERE BookEntries.Date < ? GROUP BY Movements.AccountID");
    sqlite3_bind_double(statement, 1, kAtDate.Serial());
    int64_t total = 0;
    while (sqlite3_step(statement) == SQLITE_ROW) {
      total += sqlite3_column_int(statement, 0) + sqlite3_column_int64(statement, 1);
    }
    sqlite3_finalize(statement);
    benchmark::DoNotOptimize(total);
  }
}
BENCHMARK(BM_ChartBalancesAtDate_Raw)->Unit(benchmark::kMillisecond);

}  // namespace
