#include <gtest/gtest.h>

#include <string>

#include "tests/cli/cli_runner.hpp"
#include "tests/engine/engine_file_fixture.hpp"

namespace ldg {
namespace {

class InfoCommandTest : public testing::EngineFileTest {};

TEST_F(InfoCommandTest, ShowsTheYearStatusInstanceAndOptions) {
  const std::string path = MakeYearFile();
  const std::string out = testing::RunLdg({"info", path, "--format", "csv"});
  EXPECT_NE(out.find("Year,2024\r\n"), std::string::npos) << out;
  EXPECT_NE(out.find("Begin,01.01.2024\r\n"), std::string::npos) << out;
  EXPECT_NE(out.find("Status,1 Aktiv\r\n"), std::string::npos) << out;
  EXPECT_NE(out.find("Instance,45000.5\r\n"), std::string::npos) << out;
  EXPECT_NE(out.find("BaseCurrencyCode,CHF\r\n"), std::string::npos) << out;
  EXPECT_NE(out.find("PeriodLockFlags,\r\n"), std::string::npos) << out;
}

TEST_F(InfoCommandTest, AFileOfNoYearFailsWithTheEnginesError) {
  const std::string path = (folder_ / "foreign.qdb6f").string();
  State().DBEngine().CreateDatabase(path)->Close();
  const Error error = ErrorOf([&] { testing::RunLdg({"info", path}); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x80040000u));
  EXPECT_EQ(error.Description(), path + "\r\nis not a Velmora database.");
}

}  // namespace
}  // namespace ldg
