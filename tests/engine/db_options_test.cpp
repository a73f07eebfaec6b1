#include "engine/db_options.hpp"

#include <gtest/gtest.h>

#include <string>

#include "engine/engine.hpp"
#include "tests/engine/engine_file_fixture.hpp"

namespace ldg {
namespace {

class DbOptionsTest : public testing::EngineFileTest {
 protected:
  void SetUp() override {
    EngineFileTest::SetUp();
    path_ = MakeYearFile();
    database_ = State().DBEngine().OpenDatabase(path_);
    options_ = std::make_unique<DbOptions>(*database_);
  }
  void TearDown() override {
    options_.reset();
    database_->Close();
    database_.reset();
    EngineFileTest::TearDown();
  }

  int32_t Rows() {
    auto rows = database_->OpenRecordset("SELECT Count(*) AS N FROM Settings;", store::dbOpenSnapshot);
    const int32_t count = CLng(rows->Value("N"));
    rows->Close();
    return count;
  }

  std::string path_;
  std::shared_ptr<store::Database> database_;
  std::unique_ptr<DbOptions> options_;
};

TEST_F(DbOptionsTest, AnUnknownNameReadsEmpty) { EXPECT_EQ(options_->Value("Unknown"), ""); }

TEST_F(DbOptionsTest, AValueReadsBack) {
  options_->Value("Layout", "kompakt");
  EXPECT_EQ(options_->Value("Layout"), "kompakt");
  options_->Value("Layout", "breit");
  EXPECT_EQ(options_->Value("Layout"), "breit");
  EXPECT_EQ(Rows(), 1);
}

TEST_F(DbOptionsTest, SettingAnUnknownNameToEmptyDoesNothing) {
  const int32_t before = Rows();
  EXPECT_NO_THROW(options_->Value("Unknown", ""));
  EXPECT_EQ(Rows(), before);
}

TEST_F(DbOptionsTest, SettingEmptyDeletesTheRow) {
  options_->Value("Layout", "kompakt");
  options_->Value("Layout", "");
  EXPECT_EQ(Rows(), 0);
  EXPECT_EQ(options_->Value("Layout"), "");
}

TEST_F(DbOptionsTest, ANameWithADoubleQuoteWorks) {
  options_->Value("a\"b", "v");
  EXPECT_EQ(options_->Value("a\"b"), "v");
  EXPECT_EQ(options_->Value("ab"), "");
}

TEST_F(DbOptionsTest, ANameLikeAColumnIsTakenAsText) {
  options_->Value("SettingSpace", "v");
  EXPECT_EQ(options_->Value("SettingSpace"), "v");
  EXPECT_EQ(Rows(), 1);
}

TEST_F(DbOptionsTest, ANewRowTakesTheDefaultInstance) {
  options_->Value("Layout", "kompakt");
  auto rows = database_->OpenRecordset("SELECT SettingModuleID FROM Settings;", store::dbOpenSnapshot);
  EXPECT_EQ(CDbl(rows->Value("SettingModuleID")), 0);
  rows->Close();
}

TEST_F(DbOptionsTest, ARowOfAnyInstanceIsFound) {
  database_->Execute(
      "INSERT INTO Settings (SettingModuleID, SettingSection, SettingSpace) VALUES (777, 'Layout', 'fremd');",
      store::dbFailOnError);
  DbOptions options(*database_);
  EXPECT_EQ(options.Value("Layout"), "fremd");
}

TEST_F(DbOptionsTest, ANullValueReadsEmpty) {
  database_->Execute("INSERT INTO Settings (SettingModuleID, SettingSection) VALUES (1, 'Leer');",
                     store::dbFailOnError);
  EXPECT_EQ(options_->Value("Leer"), "");
}

}  // namespace
}  // namespace ldg
