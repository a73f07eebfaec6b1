// A fresh year file built from the template's description in a scratch folder
// for each test, opened through a workspace that is the engine's current one,
// with small helpers to add rows and read the schema back.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "engine/engine_state.hpp"
#include "engine/schema/schema_description.hpp"
#include "engine/schema/template_builder.hpp"
#include "store/constants.hpp"
#include "store/db_engine.hpp"
#include "support/currency.hpp"
#include "support/error.hpp"
#include "support/nullable.hpp"
#include "support/variant.hpp"

namespace ldg::testing {

class TemplateFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    folder_ = std::filesystem::temp_directory_path() /
              ("ldg_e2_" + std::to_string(::getpid()) + "_" +
               ::testing::UnitTest::GetInstance()->current_test_info()->test_suite_name() + "_" +
               ::testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
    path_ = (folder_ / "book.qdb6f").string();
    engine_ = store::NewSqliteEngine();
    schema::TemplateBuilder(Description()).Build(*engine_, path_);
    workspace_ = engine_->CreateWorkspace("test", "Admin", "", store::dbUseJet);
    db_ = workspace_->OpenDatabase(path_);
    State().workspace = workspace_;
    State().database = db_;
  }

  void TearDown() override {
    State().workspace.reset();
    State().database.reset();
    State().hooks = nullptr;
    if (db_) db_->Close();
    db_.reset();
    workspace_.reset();
    engine_.reset();
    std::filesystem::remove_all(folder_);
  }

  static const schema::SchemaDescription& Description() {
    static const schema::SchemaDescription schema = schema::LoadSchemaDescription(
        std::filesystem::path(LDG_TEST_DATA) / ".." / ".." / "engine" / "schema" / "template.schema");
    return schema;
  }

  // Adds an account row; returns its ID.
  int32_t AddAccount(const std::string& code, Currency opening, bool is_sum = false, bool is_master = false,
                     int32_t master_id = 0) {
    auto rows = db_->OpenRecordset("Accounts", store::dbOpenTable);
    rows->AddNew();
    if (!code.empty()) rows->Value("Code", code);
    rows->Value("Name", "Account " + code);
    rows->Value("IsSum", is_sum);
    rows->Value("IsMaster", is_master);
    rows->Value("MasterID", master_id);
    rows->Value("OpeningBalance", opening);
    int32_t id = ReadLong(rows->Value("ID"));
    rows->Update();
    rows->Close();
    return id;
  }

  Variant ValueOf(const std::string& sql, const std::string& column) {
    auto rows = db_->OpenRecordset(sql, store::dbOpenSnapshot);
    Variant value = rows->Eof() ? Variant() : rows->Value(column);
    rows->Close();
    return value;
  }

  int32_t CountOf(const std::string& table_and_where) {
    return ReadLong(ValueOf("SELECT Count(*) AS N FROM " + table_and_where + ";", "N"));
  }

  bool HasQuery(const std::string& name) { return db_->QueryDefs().Contains(name); }
  bool HasField(const std::string& table, const std::string& field) {
    return db_->TableDefs().Item(table)->Fields().Contains(field);
  }
  bool HasIndex(const std::string& table, const std::string& index) {
    return db_->TableDefs().Item(table)->Indexes().Contains(index);
  }
  store::Field& FieldOf(const std::string& table, const std::string& field) {
    table_ = db_->TableDefs().Item(table);
    return table_->Fields().Item(field);
  }

  // Every table, field, index, relation and stored query as text, for comparing.
  std::string SchemaDump() {
    std::ostringstream out;
    auto& tables = db_->TableDefs();
    for (int t = 0; t < tables.Count(); ++t) {
      auto table = tables.Item(t);
      out << "table " << table->Name() << "\n";
      for (int f = 0; f < table->Fields().Count(); ++f) {
        auto& field = table->Fields().Item(f);
        out << "  field " << field.Name() << " " << static_cast<int>(field.Type()) << " " << field.Size()
            << " [" << field.DefaultValue() << "] " << field.Attributes() << "\n";
      }
      for (int i = 0; i < table->Indexes().Count(); ++i) {
        auto index = table->Indexes().Item(i);
        out << "  index " << index->Name() << " " << index->Primary() << index->Unique() << " (";
        for (int f = 0; f < index->Fields().Count(); ++f) out << index->Fields().Item(f).Name() << ",";
        out << ")\n";
      }
    }
    auto& relations = db_->Relations();
    for (int r = 0; r < relations.Count(); ++r) out << "relation " << relations.Item(r)->Name() << "\n";
    auto& queries = db_->QueryDefs();
    for (int q = 0; q < queries.Count(); ++q) {
      auto query = queries.Item(q);
      out << "query " << query->Name() << " " << query->SQL() << "\n";
    }
    return out.str();
  }

  std::filesystem::path folder_;
  std::string path_;
  std::unique_ptr<store::DBEngine> engine_;
  std::shared_ptr<store::Workspace> workspace_;
  std::shared_ptr<store::Database> db_;
  std::shared_ptr<store::TableDef> table_;
};

// Counts the host's turns.
class CountingHooks : public HostHooks {
 public:
  void Yield() override { ++yields; }
  int yields = 0;
};

}  // namespace ldg::testing
