// What the engine's benchmarks share: a plain sqlite3 connection for the raw
// side of each pair (any failure aborts the run), and the scratch folder with
// the template built from the schema description, in which an Engine makes
// its year files by the creation as any host does.
#pragma once

#include <sqlite3.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

#include "engine/database_creator.hpp"
#include "engine/engine.hpp"
#include "engine/engine_state.hpp"
#include "engine/schema/schema_description.hpp"
#include "engine/schema/template_builder.hpp"
#include "support/variant.hpp"

namespace ldg::bench {

class RawFile {
 public:
  explicit RawFile(const std::string& path) {
    if (sqlite3_open(path.c_str(), &db_) != SQLITE_OK) Fail("open");
  }
  ~RawFile() { sqlite3_close(db_); }
  RawFile(const RawFile&) = delete;
  RawFile& operator=(const RawFile&) = delete;

  void Exec(const std::string& sql) {
    if (sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) Fail(sql);
  }
  sqlite3_stmt* Prepare(const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(db_, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK) Fail(sql);
    return statement;
  }
  void Step(sqlite3_stmt* statement) {
    if (sqlite3_step(statement) != SQLITE_DONE) Fail(sqlite3_sql(statement));
    sqlite3_reset(statement);
  }
  int64_t Scalar(const std::string& sql) {
    sqlite3_stmt* statement = Prepare(sql);
    int64_t value = sqlite3_step(statement) == SQLITE_ROW ? sqlite3_column_int64(statement, 0) : 0;
    sqlite3_finalize(statement);
    return value;
  }
  sqlite3* db() { return db_; }

 private:
  [[noreturn]] void Fail(const std::string& what) {
    std::cerr << "sqlite3: " << what << ": " << sqlite3_errmsg(db_) << "\n";
    std::abort();
  }
  sqlite3* db_ = nullptr;
};

// A fresh folder under the temporary folder, named for the benchmark and the
// process, holding the template; the per-user settings live in it too.
inline std::filesystem::path PrepareScratchFolder(const std::string& name) {
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("ldg_bench_" + name + "_" + std::to_string(getpid()));
  std::filesystem::remove_all(folder);
  std::filesystem::create_directories(folder / "config");
  ::setenv("XDG_CONFIG_HOME", (folder / "config").c_str(), 1);
  const auto schema_file =
      std::filesystem::path(__FILE__).parent_path().parent_path() / "engine" / "schema" / "template.schema";
  const schema::SchemaDescription schema = schema::LoadSchemaDescription(schema_file);
  schema::TemplateBuilder(schema).Build(State().DBEngine(), (folder / kTemplateFileName).string());
  return folder;
}

// Logs the engine on as the default user, with the template's folder as its own.
inline void LogOn(Engine& engine, const std::filesystem::path& folder) {
  engine.AppPath(folder.string());
  Variant user("");
  Variant password("");
  Variant product("ldg");
  engine.Init(user, password, product);
}

}  // namespace ldg::bench
