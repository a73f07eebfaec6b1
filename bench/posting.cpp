// Posting book entries through the engine against the same rows written with
// plain sqlite3 calls. Two year files are made alike by the creation, with a
// chart of 20 plain accounts on each side of the balance sheet; the engine
// posts into one, the raw side writes into the other. Every entry has two
// lines, debit and credit, on accounts that change from entry to entry.
//
// - Commit per entry: BookEntries.Append, whose own transaction commits each
//   entry; the raw side runs BEGIN, the entry row, two movement rows, two
//   balance updates and COMMIT.
// - 100 000 entries in one outer transaction on both sides.
// - A million entries through the engine, committed every 100 000, with the
//   peak resident memory of the process.
//
// Both sides keep SQLite's defaults for durability (rollback journal,
// synchronous FULL), as the record store does, so real time is the measure.
#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <sys/resource.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "bench/bench_year_file.hpp"
#include "bookkeeping/book_entries.hpp"
#include "bookkeeping/book_entry.hpp"
#include "bookkeeping/journals.hpp"
#include "bookkeeping/movements.hpp"
#include "engine/engine.hpp"
#include "support/currency.hpp"
#include "support/ole_date.hpp"
#include "support/variant.hpp"

namespace {

using namespace ldg;
using bench::RawFile;

constexpr int kAccountsPerSide = 20;
constexpr int64_t kOneTransaction = 100000;
constexpr int64_t kMillion = 1000000;
constexpr int64_t kMillionCommitEvery = 100000;

// The accounts the entries go to, as the raw side and the engine see them.
struct Chart {
  std::vector<int32_t> debit_ids;
  std::vector<int32_t> credit_ids;
};

// Plain accounts below the class roots, inserted with sqlite3 into a new year file.
Chart AddChart(const std::string& path) {
  RawFile raw(path);
  const int64_t root_a = raw.Scalar("SELECT ID FROM Accounts WHERE Code = 'A'");
  const int64_t root_b = raw.Scalar("SELECT ID FROM Accounts WHERE Code = 'B'");
  sqlite3_stmt* account = raw.Prepare(
      "INSERT INTO Accounts (ParentID, Code, Name, Position, Class, IsGeneralLedger, IsDebit, IsSum, "
      "IsMaster, "
      "MasterID, OpeningBalance, Balance, ChildrensBalance, FCOpeningBalance, FCBalance, FCCanChooseRate, "
      "TaxCanChoose, ActivateValuta, ActivateReference, Budget) "
      "VALUES (?, ?, ?, 0, ?, -1, ?, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0)");
  Chart chart;
  raw.Exec("BEGIN");
  for (int n = 0; n < 2 * kAccountsPerSide; ++n) {
    const bool balance_sheet = n < kAccountsPerSide;
    const std::string code = std::to_string((balance_sheet ? 1000 : 3000) + n * 10);
    const std::string name = "Konto " + code;
    sqlite3_bind_int64(account, 1, balance_sheet ? root_a : root_b);
    sqlite3_bind_text(account, 2, code.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_text(account, 3, name.c_str(), -1, SQLITE_TRANSIENT);
    sqlite3_bind_int(account, 4, balance_sheet ? 1 : 2);
    sqlite3_bind_int(account, 5, balance_sheet ? -1 : 0);
    raw.Step(account);
    (balance_sheet ? chart.debit_ids : chart.credit_ids)
        .push_back(static_cast<int32_t>(sqlite3_last_insert_rowid(raw.db())));
  }
  sqlite3_finalize(account);
  raw.Exec("COMMIT");
  return chart;
}

// The n-th entry of a run: which accounts, what amount, which day.
struct EntryValues {
  int32_t debit_id;
  int32_t credit_id;
  Currency amount;
  OleDate date;
  std::string document;
};

EntryValues ValuesOf(const Chart& chart, int64_t n) {
  static const double first_day = OleDate::FromYmd(2026, 1, 1).Serial();
  return EntryValues{chart.debit_ids[static_cast<size_t>(n % kAccountsPerSide)],
                     chart.credit_ids[static_cast<size_t>((n / kAccountsPerSide) % kAccountsPerSide)],
                     Currency::FromRaw((n % 100000 + 1) * 100),
                     OleDate(first_day + static_cast<double>(n % 365)), std::to_string(n + 1)};
}

// ---------------------------------------------------------------- the two sides

class EngineSide {
 public:
  EngineSide(const std::filesystem::path& folder, const std::string& path)
      : engine_(std::make_unique<Engine>()) {
    bench::LogOn(*engine_, folder);
    engine_->OpenDatabase(Variant(path));
    journal_id_ = engine_->Journals()->IDByCode(Variant(int32_t{1}));
  }
  ~EngineSide() { engine_->Tini(); }

  // What a front end does: a new entry, its two lines, Append.
  void Post(const EntryValues& values) {
    BookEntry entry;
    entry.JournalID(journal_id_);
    entry.EntryDate(Variant(values.date));
    entry.DocumentID(Variant(values.document));
    NewMovement line;
    line.text = Variant("Buchung");
    line.account_id = values.debit_id;
    line.amount = values.amount;
    entry.Movements().Add(line);
    line.account_id = values.credit_id;
    line.amount = -values.amount;
    entry.Movements().Add(line);
    engine_->BookEntries()->Append(entry);
    entry.Tini();
  }
  void BeginTrans() { engine_->BeginTrans(); }
  void CommitTrans() { engine_->CommitTrans(); }

 private:
  std::unique_ptr<Engine> engine_;
  int32_t journal_id_ = 0;
};

class RawSide {
 public:
  explicit RawSide(const std::string& path) : raw_(path) {
    journal_id_ = raw_.Scalar("SELECT ID FROM Journals WHERE Code = 1");
    entry_ = raw_.Prepare(
        "INSERT INTO BookEntries (JournalID, Date, DocumentID, Marked, Automatic, Mark1, Mark2, Mark3, "
        "Mark4, "
        "Mark5, Mark6) VALUES (?, ?, ?, 0, 0, 0, 0, 0, 0, 0, 0)");
    movement_ = raw_.Prepare(
        "INSERT INTO Movements (EntryID, AccountID, BalancingAccountID, Text, Amount, FCID, FCAmount, TaxID, "
        "TaxManual, IsNetAmount, DependentMovementID, IsDependent, MasterID) "
        "VALUES (?, ?, ?, 'Buchung', ?, 0, 0, 0, 0, 0, 0, 0, 0)");
    balance_ = raw_.Prepare("UPDATE Accounts SET Balance = Balance + ? WHERE ID = ?");
  }
  ~RawSide() {
    sqlite3_finalize(entry_);
    sqlite3_finalize(movement_);
    sqlite3_finalize(balance_);
  }

  void Post(const EntryValues& values) {
    sqlite3_bind_int64(entry_, 1, journal_id_);
    sqlite3_bind_double(entry_, 2, values.date.Serial());
    const std::string document = std::string(14 - values.document.size(), '0') + values.document;
    sqlite3_bind_text(entry_, 3, document.c_str(), -1, SQLITE_TRANSIENT);
    raw_.Step(entry_);
    const int64_t entry_id = sqlite3_last_insert_rowid(raw_.db());
    Line(entry_id, values.debit_id, values.credit_id, values.amount.Raw());
    Line(entry_id, values.credit_id, values.debit_id, -values.amount.Raw());
  }
  void BeginTrans() { raw_.Exec("BEGIN"); }
  void CommitTrans() { raw_.Exec("COMMIT"); }

 private:
  void Line(int64_t entry_id, int32_t account_id, int32_t balancing_id, int64_t amount) {
    sqlite3_bind_int64(movement_, 1, entry_id);
    sqlite3_bind_int(movement_, 2, account_id);
    sqlite3_bind_int(movement_, 3, balancing_id);
    sqlite3_bind_int64(movement_, 4, amount);
    raw_.Step(movement_);
    sqlite3_bind_int64(balance_, 1, amount);
    sqlite3_bind_int(balance_, 2, account_id);
    raw_.Step(balance_);
  }

  RawFile raw_;
  int64_t journal_id_ = 0;
  sqlite3_stmt* entry_ = nullptr;
  sqlite3_stmt* movement_ = nullptr;
  sqlite3_stmt* balance_ = nullptr;
};

// ---------------------------------------------------------------- the files

// Two year files made alike; the engine has its own open.
struct BenchFiles {
  std::filesystem::path folder;
  Chart chart;
  std::unique_ptr<EngineSide> engine_side;
  std::unique_ptr<RawSide> raw_side;
  int64_t engine_posted = 0;
  int64_t raw_posted = 0;

  BenchFiles() : folder(bench::PrepareScratchFolder("posting")) {
    const std::string engine_path = (folder / "engine2026.qdb6f").string();
    const std::string raw_path = (folder / "raw2026.qdb6f").string();
    {
      Engine creator;
      bench::LogOn(creator, folder);
      creator.CreateDatabase(Variant(engine_path), Variant("01.01.2026"), Variant("31.12.2026"));
      creator.Tini();
    }
    chart = AddChart(engine_path);
    std::filesystem::copy_file(engine_path, raw_path);
    engine_side = std::make_unique<EngineSide>(folder, engine_path);
    raw_side = std::make_unique<RawSide>(raw_path);
  }
  ~BenchFiles() {
    engine_side.reset();
    raw_side.reset();
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
  }
};

// Thread-local, like the engine-wide state that the Engine uses: made after
// that state, it goes before it at exit, so the Engine still finds it to close.
BenchFiles& Files() {
  thread_local BenchFiles files;
  return files;
}

// Resident memory now, from /proc, and at its peak, from the kernel's account.
double ResidentMiB() {
  std::ifstream statm("/proc/self/statm");
  long pages = 0;
  long resident = 0;
  statm >> pages >> resident;
  return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1024.0 * 1024.0);
}
double PeakResidentMiB() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

// ---------------------------------------------------------------- commit per entry

void BM_CommitPerEntry_Engine(benchmark::State& state) {
  BenchFiles& files = Files();
  for (auto _ : state) files.engine_side->Post(ValuesOf(files.chart, files.engine_posted++));
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_CommitPerEntry_Engine)->Unit(benchmark::kMicrosecond)->UseRealTime();

void BM_CommitPerEntry_Raw(benchmark::State& state) {
  BenchFiles& files = Files();
  for (auto _ : state) {
    files.raw_side->BeginTrans();
    files.raw_side->Post(ValuesOf(files.chart, files.raw_posted++));
    files.raw_side->CommitTrans();
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_CommitPerEntry_Raw)->Unit(benchmark::kMicrosecond)->UseRealTime();

// ---------------------------------------------------------------- one outer transaction

template <typename Side>
void PostInOneTransaction(Side& side, int64_t& posted, const Chart& chart, int64_t count) {
  side.BeginTrans();
  for (int64_t n = 0; n < count; ++n) side.Post(ValuesOf(chart, posted++));
  side.CommitTrans();
}

void BM_OneTransaction100k_Engine(benchmark::State& state) {
  BenchFiles& files = Files();
  for (auto _ : state)
    PostInOneTransaction(*files.engine_side, files.engine_posted, files.chart, kOneTransaction);
  state.SetItemsProcessed(state.iterations() * kOneTransaction);
}
BENCHMARK(BM_OneTransaction100k_Engine)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);

void BM_OneTransaction100k_Raw(benchmark::State& state) {
  BenchFiles& files = Files();
  for (auto _ : state) PostInOneTransaction(*files.raw_side, files.raw_posted, files.chart, kOneTransaction);
  state.SetItemsProcessed(state.iterations() * kOneTransaction);
}
BENCHMARK(BM_OneTransaction100k_Raw)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);

// ---------------------------------------------------------------- a million entries

void BM_Million_Engine(benchmark::State& state) {
  BenchFiles& files = Files();
  const double resident_before = ResidentMiB();
  for (auto _ : state) {
    for (int64_t done = 0; done < kMillion; done += kMillionCommitEvery) {
      PostInOneTransaction(*files.engine_side, files.engine_posted, files.chart, kMillionCommitEvery);
    }
  }
  state.SetItemsProcessed(state.iterations() * kMillion);
  state.counters["resident_before_MiB"] = resident_before;
  state.counters["resident_after_MiB"] = ResidentMiB();
  state.counters["peak_resident_MiB"] = PeakResidentMiB();
}
BENCHMARK(BM_Million_Engine)->Unit(benchmark::kSecond)->UseRealTime()->Iterations(1);

}  // namespace
