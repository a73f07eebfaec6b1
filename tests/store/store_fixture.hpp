// A fresh database file in a scratch folder for each test, made through the
// store's own interface, with helpers to lay out small tables.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <initializer_list>
#include <memory>
#include <string>
#include <utility>

#include "store/constants.hpp"
#include "store/db_engine.hpp"
#include "support/error.hpp"

namespace ldg::store::testing {

struct FieldSpec {
  std::string name;
  FieldType type;
  int32_t size = 0;
  std::string default_value = "";
  bool counter = false;
};

class StoreTest : public ::testing::Test {
 protected:
  void SetUp() override {
    folder_ = std::filesystem::temp_directory_path() /
              ("ldg_store_" + std::to_string(::getpid()) + "_" +
               ::testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
    engine_ = NewSqliteEngine();
    engine_->CreateDatabase(PathOf("book.qdb"))->Close();
    workspace_ = engine_->CreateWorkspace("", "admin", "", dbUseJet);
    db_ = workspace_->OpenDatabase(PathOf("book.qdb"));
  }

  void TearDown() override {
    db_.reset();
    workspace_.reset();
    std::filesystem::remove_all(folder_);
  }

  std::string PathOf(const std::string& name) const { return (folder_ / name).string(); }

  // A table with the fields given; a counter field gets the index PrimaryKey.
  void MakeTable(Database& db, const std::string& name, std::initializer_list<FieldSpec> fields) {
    auto table = db.CreateTableDef(name);
    std::string counter;
    for (const auto& field_spec : fields) {
      auto field = table->CreateField(field_spec.name, field_spec.type, field_spec.size);
      if (field_spec.counter) {
        field->Attributes(dbAutoIncrField);
        counter = field_spec.name;
      }
      if (!field_spec.default_value.empty()) field->DefaultValue(field_spec.default_value);
      table->Fields().Append(field);
    }
    if (!counter.empty()) {
      auto index = table->CreateIndex("PrimaryKey");
      index->Primary(true);
      index->Unique(true);
      index->Fields().Append(index->CreateField(counter));
      table->Indexes().Append(index);
    }
    db.TableDefs().Append(table);
  }

  void AddIndex(Database& db, const std::string& table, const std::string& name,
                std::initializer_list<std::string> fields, bool unique = false, bool primary = false) {
    auto definition = db.TableDefs().Item(table);
    auto index = definition->CreateIndex(name);
    index->Unique(unique);
    index->Primary(primary);
    for (const auto& field : fields) index->Fields().Append(index->CreateField(field));
    definition->Indexes().Append(index);
  }

  // Adds one row through a table-type record set; gives the new row's bookmark.
  void AddRow(Database& db, const std::string& table,
              std::initializer_list<std::pair<std::string, Variant>> values) {
    auto rs = db.OpenRecordset(table, dbOpenTable);
    rs->AddNew();
    for (const auto& [name, value] : values) rs->Value(name, value);
    rs->Update();
  }

  std::filesystem::path folder_;
  std::unique_ptr<DBEngine> engine_;
  std::shared_ptr<Workspace> workspace_;
  std::shared_ptr<Database> db_;
};

// The number of a store error raised by the call, or 0.
template <typename Call>
int32_t ErrorNumberOf(Call&& call) {
  try {
    call();
  } catch (const Error& error) {
    return error.Number();
  }
  return 0;
}

template <typename Call>
std::string ErrorTextOf(Call&& call) {
  try {
    call();
  } catch (const Error& error) {
    return error.Description();
  }
  return "";
}

}  // namespace ldg::store::testing
