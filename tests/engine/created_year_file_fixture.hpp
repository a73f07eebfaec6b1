// A scratch folder per test with a workspace on this thread's record store,
// year files made by the creation itself, and the template written once per
// test program from its description into a folder of its own that stands for
// the component's folder.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

#include "engine/database_creator.hpp"
#include "engine/engine_state.hpp"
#include "engine/schema/schema_description.hpp"
#include "engine/schema/template_builder.hpp"
#include "store/constants.hpp"
#include "store/db_engine.hpp"
#include "support/conversions.hpp"
#include "support/error.hpp"
#include "support/ole_date.hpp"
#include "support/variant.hpp"

namespace ldg::year_files_testing {

// The component's folder of the tests, holding the template; removed when the
// test program ends.
class TemplateFolderOfTests {
 public:
  TemplateFolderOfTests()
      : path_(std::filesystem::temp_directory_path() / ("ldg_app_" + std::to_string(::getpid()))) {
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
    const schema::SchemaDescription description = schema::LoadSchemaDescription(
        std::filesystem::path(LDG_TEST_DATA) / ".." / ".." / "engine" / "schema" / "template.schema");
    schema::TemplateBuilder(description).Build(State().DBEngine(), (path_ / kTemplateFileName).string());
  }
  ~TemplateFolderOfTests() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  std::string Path() const { return path_.string(); }

 private:
  std::filesystem::path path_;
};

inline const std::string& TemplateFolder() {
  static const TemplateFolderOfTests folder;
  static const std::string path = folder.Path();
  return path;
}

// The error the call fails with; fails the test when it does not fail.
template <typename Call>
Error ErrorOf(Call call) {
  try {
    call();
  } catch (const Error& error) {
    return error;
  }
  ADD_FAILURE() << "the call did not fail";
  return Error(0, "", "");
}

inline Variant Day(int year, int month, int day) { return Variant(OleDate::FromYmd(year, month, day)); }

class CreatedYearFileTest : public ::testing::Test {
 protected:
  void SetUp() override {
    TemplateFolder();
    folder_ = std::filesystem::temp_directory_path() /
              ("ldg_created_" + std::to_string(::getpid()) + "_" +
               ::testing::UnitTest::GetInstance()->current_test_info()->test_suite_name() + "_" +
               ::testing::UnitTest::GetInstance()->current_test_info()->name());
    std::filesystem::remove_all(folder_);
    std::filesystem::create_directories(folder_);
    State().workspace = State().DBEngine().CreateWorkspace("", "admin", "", store::dbUseJet);
  }

  void TearDown() override {
    if (State().database) {
      try {
        State().database->Close();
      } catch (...) {
      }
      State().database.reset();
    }
    State().workspace.reset();
    std::filesystem::remove_all(folder_);
  }

  std::string PathOf(const std::string& name) const { return (folder_ / name).string(); }

  // A year file made by the creation from the template, closed again.
  std::string MakeYearFile(const std::string& name, const Variant& begin = Day(2023, 1, 1),
                           const Variant& end = Day(2023, 12, 31)) {
    CreateYearFile(TemplateFolder(), Variant(PathOf(name)), begin, end, std::nullopt);
    return PathOf(name);
  }

  std::shared_ptr<store::Database> Open(const std::string& path) {
    return State().workspace->OpenDatabase(path);
  }

  static int32_t Count(store::Database& database, const std::string& source) {
    auto records = database.OpenRecordset("SELECT Count(*) AS N FROM " + source + ";", store::dbOpenSnapshot);
    return CLng(records->Value("N"));
  }

  std::filesystem::path folder_;
};

}  // namespace ldg::year_files_testing
