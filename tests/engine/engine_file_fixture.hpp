// Year files for the tests of the Engine and its options and log: a file built
// from the template's description in a scratch folder of the test's own,
// stamped as a year file of the family (module row, year row, the year query
// under its year-file name), with a per-user settings store of the test's own.
// Each test may reshape the file through a private connection before the
// engine opens it.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "engine/engine_events.hpp"
#include "engine/engine_state.hpp"
#include "engine/schema/schema_description.hpp"
#include "engine/schema/template_builder.hpp"
#include "store/constants.hpp"
#include "store/db_engine.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/nullable.hpp"
#include "support/variant.hpp"

namespace ldg::testing {

inline constexpr double kTestInstanceID = 45000.5;

// Records what an Engine raises, each event as one line of text.
class RecordingEvents : public EngineEvents {
 public:
  void Initialized() override { events.push_back("Initialized"); }
  void DatabaseClosed(const Variant& name) override { events.push_back("DatabaseClosed " + CStr(name)); }
  void DatabaseOpened(const Variant& name) override { events.push_back("DatabaseOpened " + CStr(name)); }
  void DatabaseCreated(const Variant& name) override { events.push_back("DatabaseCreated " + CStr(name)); }
  void OpeningBalaceUnbalancedOnOpen(const Variant& name, Currency balance) override {
    events.push_back("OpeningBalaceUnbalancedOnOpen " + CStr(name) + " " + CStr(Variant(balance)));
  }
  void OpeningBalaceUnbalancedOnClose(const Variant& name, Currency balance) override {
    events.push_back("OpeningBalaceUnbalancedOnClose " + CStr(name) + " " + CStr(Variant(balance)));
  }
  void DebugLog(Variant& v0, Variant& v1, Variant& v2, Variant& v3, Variant& v4, Variant& v5, Variant& v6,
                Variant& v7, Variant& v8, Variant& v9) override {
    std::string line = "DebugLog";
    for (const Variant* value : {&v0, &v1, &v2, &v3, &v4, &v5, &v6, &v7, &v8, &v9}) {
      line += "|" + (value->IsEmpty() ? std::string() : CStr(*value));
    }
    while (line.size() > 1 && line.back() == '|') line.pop_back();
    events.push_back(line);
  }

  bool Has(const std::string& event) const {
    for (const auto& line : events) {
      if (line == event) return true;
    }
    return false;
  }
  bool HasPrefix(const std::string& prefix) const {
    for (const auto& line : events) {
      if (line.rfind(prefix, 0) == 0) return true;
    }
    return false;
  }

  std::vector<std::string> events;
};

class EngineFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    folder_ = std::filesystem::temp_directory_path() /
              ("ldg_e1_" + std::to_string(::getpid()) + "_" + info->test_suite_name() + "_" + info->name());
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_ / "config");
    ::setenv("XDG_CONFIG_HOME", (folder_ / "config").c_str(), 1);
  }

  void TearDown() override {
    State().hooks = nullptr;
    std::filesystem::remove_all(folder_);
  }

  static const schema::SchemaDescription& Description() {
    static const schema::SchemaDescription schema = schema::LoadSchemaDescription(
        std::filesystem::path(LDG_TEST_DATA) / ".." / ".." / "engine" / "schema" / "template.schema");
    return schema;
  }

  // A year file of the family, year 2024 (or the given id), active.
  std::string MakeYearFile(const std::string& name = "book.qdb6f", int32_t year_id = 2024,
                           const std::function<void(store::Database&)>& reshape = {}) {
    const std::string path = (folder_ / name).string();
    schema::TemplateBuilder(Description()).Build(State().DBEngine(), path);
    auto database = State().DBEngine().OpenDatabase(path);
    database->QueryDefs().Item("viewBusinessYear5Get")->Name("viewBusinessYear6Get");
    database->Execute("INSERT INTO ModuleRegistration (InstanceID, ModuleName, ModuleVersion) VALUES (" +
                          std::string("45000.5, 'Velmora Finance', '6.1.39');"),
                      store::dbFailOnError);
    database->Execute("INSERT INTO BusinessYears (ID, Beginn, [End], Status, DbName) VALUES (" +
                          std::to_string(year_id) + ", #1/1/2024#, #12/31/2024#, 1, '" + name + "');",
                      store::dbFailOnError);
    database->Execute("INSERT INTO Periods (BusinessYearID, Beginn, [End]) VALUES (" +
                          std::to_string(year_id) + ", #1/1/2024#, #12/31/2024#);",
                      store::dbFailOnError);
    if (reshape) reshape(*database);
    database->Close();
    return path;
  }

  // Runs work on a private connection to the file.
  void WithFile(const std::string& path, const std::function<void(store::Database&)>& work) {
    auto database = State().DBEngine().OpenDatabase(path);
    work(*database);
    database->Close();
  }

  Variant ValueOf(const std::string& path, const std::string& sql, const std::string& column) {
    Variant value;
    WithFile(path, [&](store::Database& database) {
      auto rows = database.OpenRecordset(sql, store::dbOpenSnapshot);
      value = rows->Eof() ? Variant() : rows->Value(column);
      rows->Close();
    });
    return value;
  }

  int32_t CountOf(const std::string& path, const std::string& table_and_where) {
    return ReadLong(ValueOf(path, "SELECT Count(*) AS N FROM " + table_and_where + ";", "N"));
  }

  // The error a call raises; fails the test when it raises none.
  static Error ErrorOf(const std::function<void()>& call) {
    try {
      call();
    } catch (const Error& error) {
      return error;
    }
    ADD_FAILURE() << "no error raised";
    return Error(0, "", "");
  }

  std::filesystem::path folder_;
};

}  // namespace ldg::testing
