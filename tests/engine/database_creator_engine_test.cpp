// Creation, the chain test and compaction as the Engine runs them: the file
// work of the creator followed by the engine's close, open and event.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "engine/database_creator.hpp"
#include "engine/engine.hpp"
#include "engine/engine_events.hpp"
#include "engine/engine_state.hpp"
#include "support/conversions.hpp"
#include "support/folders.hpp"
#include "tests/engine/created_year_file_fixture.hpp"

namespace ldg {
namespace {

using year_files_testing::Day;
using year_files_testing::ErrorOf;

// Creation, the chain test and compaction through the engine that owns them.
class EngineFileMaintenanceTest : public year_files_testing::CreatedYearFileTest, public EngineEvents {
 protected:
  void SetUp() override {
    CreatedYearFileTest::SetUp();
    std::filesystem::create_directories(folder_ / "config");
    ::setenv("XDG_CONFIG_HOME", (folder_ / "config").c_str(), 1);
    engine_ = std::make_unique<Engine>();
    engine_->AppPath(year_files_testing::TemplateFolder());
    Variant user("");
    Variant password("");
    Variant product("ldg");
    engine_->Init(user, password, product);
    engine_->AddListener(this);
  }
  void TearDown() override {
    engine_->RemoveListener(this);
    engine_.reset();
    CreatedYearFileTest::TearDown();
  }
  void DatabaseCreated(const Variant& name) override { created.push_back(CStr(name)); }

  std::unique_ptr<Engine> engine_;
  std::vector<std::string> created;
};

TEST_F(EngineFileMaintenanceTest, CreateDatabaseEndsWithTheNewFileOpenAndTellsSo) {
  engine_->CreateDatabase(Variant(PathOf("firma2023.qdb")), Day(2023, 1, 1), Day(2023, 12, 31));
  EXPECT_EQ(engine_->DatabaseName(), PathOf("firma2023.qdb"));
  EXPECT_EQ(CLng(engine_->YearID()), 1);
  EXPECT_EQ(engine_->InstanceID(), State().last_created_instance_id);
  ASSERT_EQ(created.size(), 1u);
  EXPECT_EQ(created[0], PathOf("firma2023.qdb"));
}

TEST_F(EngineFileMaintenanceTest, CreateDatabaseTellsNothingWhenMuted) {
  engine_->Mute(true);
  engine_->CreateDatabase(Variant(PathOf("firma2023.qdb")), Day(2023, 1, 1), Day(2023, 12, 31));
  EXPECT_TRUE(created.empty());
  EXPECT_EQ(engine_->DatabaseName(), PathOf("firma2023.qdb"));
}

TEST_F(EngineFileMaintenanceTest, IsSameInstanceTellsFilesOfTheChainFromOthers) {
  engine_->CreateDatabase(Variant(PathOf("firma2023.qdb")), Day(2023, 1, 1), Day(2023, 12, 31));
  std::filesystem::copy_file(PathOf("firma2023.qdb"), PathOf("kopie.qdb"));
  EXPECT_TRUE(engine_->IsSameInstance(Variant(PathOf("kopie.qdb"))));
  {
    auto copy = Open(PathOf("kopie.qdb"));
    copy->Execute("UPDATE ModuleRegistration SET InstanceID = 1.5;");
    copy->Close();
  }
  EXPECT_FALSE(engine_->IsSameInstance(Variant(PathOf("kopie.qdb"))));
}

TEST_F(EngineFileMaintenanceTest, IsSameInstanceOfAFileWithoutModuleRowRaises1201) {
  engine_->CreateDatabase(Variant(PathOf("firma2023.qdb")), Day(2023, 1, 1), Day(2023, 12, 31));
  std::filesystem::copy_file(PathOf("firma2023.qdb"), PathOf("kopie.qdb"));
  {
    auto copy = Open(PathOf("kopie.qdb"));
    copy->Execute("DELETE * FROM ModuleRegistration;");
    copy->Close();
  }
  const Error error = ErrorOf([&] { engine_->IsSameInstance(Variant(PathOf("kopie.qdb"))); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800404B1u));
  EXPECT_EQ(error.Description(), "Velmora Finance module registration not found! ");
}

TEST_F(EngineFileMaintenanceTest, CompactReopensTheFileAndGivesTheEmptyText) {
  engine_->CreateDatabase(Variant(PathOf("firma2023.qdb")), Day(2023, 1, 1), Day(2023, 12, 31));
  EXPECT_EQ(engine_->Compact(), "");
  EXPECT_EQ(engine_->DatabaseName(), PathOf("firma2023.qdb"));
  EXPECT_EQ(Count(*State().database, "Accounts"), 2);
}

TEST_F(EngineFileMaintenanceTest, AFileLeftByAFailedCreationIsRefusedAtOpen) {
  const std::filesystem::path app = folder_ / "app";
  std::filesystem::create_directories(app);
  std::filesystem::copy_file(std::filesystem::path(year_files_testing::TemplateFolder()) / kTemplateFileName,
                             app / kTemplateFileName);
  {
    auto broken = State().DBEngine().OpenDatabase((app / kTemplateFileName).string());
    broken->QueryDefs().Delete("workFillAccountsIndexCodes");
    broken->Close();
  }
  engine_->AppPath(app.string());
  EXPECT_THROW(engine_->CreateDatabase(Variant(PathOf("neu.qdb")), Day(2023, 1, 1), Day(2023, 12, 31)),
               Error);
  EXPECT_TRUE(created.empty());
  ASSERT_TRUE(std::filesystem::exists(PathOf("neu.qdb")));
  const Error error = ErrorOf([&] { engine_->OpenDatabase(Variant(PathOf("neu.qdb"))); });
  EXPECT_NE(error.Description().find("is not a Velmora Finance database."), std::string::npos)
      << error.Description();
}

TEST_F(EngineFileMaintenanceTest, AFailedCompactionLeavesTheDatabaseClosedWithTypeMismatch) {
  engine_->CreateDatabase(Variant(PathOf("firma2023.qdb")), Day(2023, 1, 1), Day(2023, 12, 31));
  std::filesystem::create_directories(folder_ / "writable");
  ::setenv("VELMORA_DEBUG", (folder_ / "writable").c_str(), 1);
  SetRandomDrawForTesting([] { return 4711; });
  // A folder where the compacted copy should go: the compaction cannot write it.
  const std::string temporary = TempFilePath(".qdb");
  std::filesystem::create_directories(temporary);
  const Error error = ErrorOf([&] { engine_->Compact(); });
  SetRandomDrawForTesting({});
  ::unsetenv("VELMORA_DEBUG");
  EXPECT_EQ(error.Number(), 13);
  EXPECT_EQ(error.Description(), "Type mismatch");
  EXPECT_EQ(engine_->DatabaseName(), "");
  EXPECT_FALSE(State().database);
  EXPECT_TRUE(std::filesystem::exists(PathOf("firma2023.qdb")));
}

}  // namespace
}  // namespace ldg
