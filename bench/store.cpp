// The record store against the same work done with plain sqlite3 calls on the
// same file: a field read by name over a million rows, Seek on the primary key,
// AddNew/Update inserts, and re-running one statement text. Each pair runs in
// one program so the ratios compare like with like.
#include <benchmark/benchmark.h>
#include <sqlite3.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

#include "store/constants.hpp"
#include "store/db_engine.hpp"

namespace {

using namespace ldg;
using namespace ldg::store;

constexpr int kRows = 1000000;

// The file with the Movements table, made once per run.
const std::string& BenchFile() {
  static const std::string path = [] {
    std::string file =
        (std::filesystem::temp_directory_path() / ("ldg_bench_" + std::to_string(getpid()) + ".qdb"))
            .string();
    auto engine = NewSqliteEngine();
    auto db = engine->CreateDatabase(file);
    auto table = db->CreateTableDef("Movements");
    auto id = table->CreateField("ID", FieldType::kLong);
    id->Attributes(dbAutoIncrField);
    table->Fields().Append(id);
    table->Fields().Append(table->CreateField("AccountID", FieldType::kLong));
    table->Fields().Append(table->CreateField("Amount", FieldType::kCurrency));
    table->Fields().Append(table->CreateField("Valuta", FieldType::kDate));
    auto primary = table->CreateIndex("PrimaryKey");
    primary->Primary(true);
    primary->Fields().Append(primary->CreateField("ID"));
    table->Indexes().Append(primary);
    db->TableDefs().Append(table);
    db->Close();
    sqlite3* raw = nullptr;
    sqlite3_open(file.c_str(), &raw);
    sqlite3_exec(
        raw,
        "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 1000000) "
        "INSERT INTO Movements (ID, AccountID, Amount, Valuta) SELECT i, i % 100, i * 100, 45000 + i % 365 "
        "FROM n",
        nullptr, nullptr, nullptr);
    sqlite3_close(raw);
    return file;
  }();
  // Registered after the path exists, so it runs before the path goes.
  static const bool removed_at_exit = (std::atexit([] {
                                         std::remove(BenchFile().c_str());
                                         std::filesystem::path lock(BenchFile());
                                         std::remove(lock.replace_extension(".ldb").c_str());
                                       }),
                                       true);
  (void)removed_at_exit;
  return path;
}

struct Store {
  std::unique_ptr<DBEngine> engine = NewSqliteEngine();
  std::shared_ptr<Workspace> workspace = engine->CreateWorkspace("", "admin", "", dbUseJet);
  std::shared_ptr<Database> db = workspace->OpenDatabase(BenchFile());
};

struct Raw {
  sqlite3* db = nullptr;
  Raw() { sqlite3_open(BenchFile().c_str(), &db); }
  ~Raw() { sqlite3_close(db); }
  sqlite3_stmt* Prepare(const char* sql) {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(db, sql, -1, &statement, nullptr);
    return statement;
  }
};

int ColumnIndex(sqlite3_stmt* statement, const char* name) {
  for (int i = 0; i < sqlite3_column_count(statement); ++i) {
    if (std::string(sqlite3_column_name(statement, i)) == name) return i;
  }
  return -1;
}

void BM_ReadByName_Store(benchmark::State& state) {
  Store store;
  for (auto _ : state) {
    auto rs = store.db->OpenRecordset("Movements", dbOpenTable);
    int64_t sum = 0;
    while (!rs->Eof()) {
      sum += rs->Fields().Item("Amount").Value().AsCurrency().Raw();
      sum += rs->Fields().Item("AccountID").Value().AsLong();
      rs->MoveNext();
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(BM_ReadByName_Store)->Unit(benchmark::kMillisecond);

void BM_ReadByName_Raw(benchmark::State& state) {
  Raw raw;
  for (auto _ : state) {
    sqlite3_stmt* statement =
        raw.Prepare("SELECT rowid, ID, AccountID, Amount, Valuta FROM Movements ORDER BY rowid");
    int amount = ColumnIndex(statement, "Amount");
    int account = ColumnIndex(statement, "AccountID");
    int64_t sum = 0;
    while (sqlite3_step(statement) == SQLITE_ROW) {
      sum += sqlite3_column_int64(statement, amount);
      sum += sqlite3_column_int(statement, account);
    }
    sqlite3_finalize(statement);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(BM_ReadByName_Raw)->Unit(benchmark::kMillisecond);

void BM_Seek_Store(benchmark::State& state) {
  Store store;
  auto rs = store.db->OpenRecordset("Movements", dbOpenTable);
  rs->Index("PrimaryKey");
  int32_t key = 1;
  for (auto _ : state) {
    key = key * 7919 % kRows + 1;
    rs->Seek("=", key);
    benchmark::DoNotOptimize(rs->Fields().Item("Amount").Value());
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Seek_Store);

void BM_Seek_Raw(benchmark::State& state) {
  Raw raw;
  sqlite3_stmt* statement =
      raw.Prepare("SELECT rowid, ID, AccountID, Amount, Valuta FROM Movements WHERE ID = ?");
  int32_t key = 1;
  for (auto _ : state) {
    key = key * 7919 % kRows + 1;
    sqlite3_bind_int(statement, 1, key);
    if (sqlite3_step(statement) == SQLITE_ROW) benchmark::DoNotOptimize(sqlite3_column_int64(statement, 3));
    sqlite3_reset(statement);
  }
  sqlite3_finalize(statement);
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_Seek_Raw);

void BM_AddNew_Store(benchmark::State& state) {
  Store store;
  auto rs = store.db->OpenRecordset("Movements", dbOpenTable);
  store.workspace->BeginTrans();
  for (auto _ : state) {
    rs->AddNew();
    rs->Value("AccountID", int32_t{5});
    rs->Value("Amount", Currency::FromRaw(12345));
    rs->Value("Valuta", OleDate(45000));
    rs->Update();
  }
  store.workspace->Rollback();
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_AddNew_Store);

void BM_AddNew_Raw(benchmark::State& state) {
  Raw raw;
  sqlite3_exec(raw.db, "BEGIN", nullptr, nullptr, nullptr);
  sqlite3_stmt* statement = raw.Prepare("INSERT INTO Movements (AccountID, Amount, Valuta) VALUES (?, ?, ?)");
  for (auto _ : state) {
    sqlite3_bind_int(statement, 1, 5);
    sqlite3_bind_int64(statement, 2, 12345);
    sqlite3_bind_double(statement, 3, 45000);
    sqlite3_step(statement);
    sqlite3_reset(statement);
  }
  sqlite3_finalize(statement);
  sqlite3_exec(raw.db, "ROLLBACK", nullptr, nullptr, nullptr);
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_AddNew_Raw);

void BM_RerunStatement_Store(benchmark::State& state) {
  Store store;
  for (auto _ : state) {
    auto rs = store.db->OpenRecordset("SELECT Movements.Amount FROM Movements WHERE Movements.ID = 4711;",
                                      dbOpenSnapshot);
    benchmark::DoNotOptimize(rs->Fields().Item("Amount").Value());
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_RerunStatement_Store);

void BM_RerunStatement_Raw(benchmark::State& state) {
  Raw raw;
  sqlite3_stmt* statement =
      raw.Prepare("SELECT \"Movements\".\"Amount\" FROM \"Movements\" WHERE \"Movements\".\"ID\" = 4711");
  for (auto _ : state) {
    if (sqlite3_step(statement) == SQLITE_ROW) benchmark::DoNotOptimize(sqlite3_column_int64(statement, 0));
    sqlite3_reset(statement);
  }
  sqlite3_finalize(statement);
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_RerunStatement_Raw);

}  // namespace
