#include "engine/session.hpp"

#include <gtest/gtest.h>

#include <string>

#include "tests/engine/engine_file_fixture.hpp"

namespace ldg {
namespace {

class SessionTest : public testing::EngineFileTest {
 protected:
  std::shared_ptr<store::Database> OpenFile(const std::function<void(store::Database&)>& reshape = {}) {
    path_ = MakeYearFile("book.qdb6f", 2024, reshape);
    database_ = State().DBEngine().OpenDatabase(path_);
    return database_;
  }
  void TearDown() override {
    if (database_) database_->Close();
    database_.reset();
    EngineFileTest::TearDown();
  }

  std::string path_;
  std::shared_ptr<store::Database> database_;
};

TEST_F(SessionTest, ANewSessionHasNoInstance) {
  Session session;
  EXPECT_EQ(session.DatabaseInstanceID(), 0);
  EXPECT_TRUE(session.DatabaseName().IsEmpty());
}

TEST_F(SessionTest, SetDatabaseKeepsTheInstance) {
  Session session;
  session.SetDatabase(*OpenFile());
  EXPECT_EQ(session.DatabaseInstanceID(), testing::kTestInstanceID);
  EXPECT_EQ(CStr(session.ModuleName()), "Velmora Finance");
  EXPECT_EQ(CStr(session.ModuleVersion()), "6.1.39");
  EXPECT_EQ(CStr(session.DatabaseName()), path_);
}

TEST_F(SessionTest, ANullInstanceRaisesTheGermanText) {
  auto database = OpenFile([](store::Database& file) {
    file.Execute("UPDATE ModuleRegistration SET InstanceID = Null;", store::dbFailOnError);
  });
  Session session;
  const Error error = ErrorOf([&] { session.SetDatabase(*database); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800403EAu));
  EXPECT_EQ(error.Source(), "ldg");
  EXPECT_EQ(error.Description(),
            "Klarse Sersion: Problem mit dem Indentificationscode der Datenbank " + path_ + "!");
}

TEST_F(SessionTest, NoInstanceRowFailsWithNoCurrentRecord) {
  auto database = OpenFile(
      [](store::Database& file) { file.Execute("DELETE * FROM ModuleRegistration;", store::dbFailOnError); });
  Session session;
  const Error error = ErrorOf([&] { session.SetDatabase(*database); });
  EXPECT_EQ(error.Number(), 3021);
  EXPECT_EQ(session.DatabaseInstanceID(), 0);
}

}  // namespace
}  // namespace ldg
