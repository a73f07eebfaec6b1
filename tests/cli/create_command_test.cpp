// ldg create, run through the command line as main builds it.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <string>

#include "cli/command.hpp"
#include "engine/engine_state.hpp"
#include "support/conversions.hpp"
#include "tests/cli/installed_template_fixture.hpp"

namespace ldg::cli {
namespace {

class CreateCommandTest : public InstalledTemplateTest {
 protected:

  // Runs the command line and gives what it printed.
  std::string Run(const std::string& arguments) {
    CLI::App app{"ldg"};
    app.require_subcommand(1);
    AddCommands(app);
    ::testing::internal::CaptureStdout();
    try {
      app.parse(arguments, false);
    } catch (...) {
      ::testing::internal::GetCapturedStdout();
      throw;
    }
    return ::testing::internal::GetCapturedStdout();
  }
};

TEST_F(CreateCommandTest, CreatesTheFileAndTellsItsYear) {
  const std::string output = Run("create " + PathOf("firma.qdb") + " --begin 1.1.2024 --end 2024-12-31");
  EXPECT_EQ(output, "Created " + PathOf("firma.qdb") + ": business year 1, 01.01.2024 - 31.12.2024\n");
  auto database = Open(PathOf("firma.qdb"));
  EXPECT_EQ(Count(*database, "Periods"), 1);
}

TEST_F(CreateCommandTest, TakesTheGivenYearId) {
  const std::string output =
      Run("create " + PathOf("firma.qdb") + " --begin 01.07.2024 --end 30.06.2025 --year-id 4");
  EXPECT_EQ(output, "Created " + PathOf("firma.qdb") + ": business year 4, 01.07.2024 - 30.06.2025\n");
}

TEST_F(CreateCommandTest, RefusesAYearIdThatIsNoNumber) {
  const Error error = year_files_testing::ErrorOf(
      [&] { Run("create " + PathOf("firma.qdb") + " --begin 1.1.2024 --end 31.12.2024 --year-id abc"); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800404BEu));
  EXPECT_EQ(error.Description(), "Optional parameter BsnYearID is invalid");
  EXPECT_FALSE(std::filesystem::exists(PathOf("firma.qdb")));
}

TEST_F(CreateCommandTest, RefusesAnEndBeforeTheBegin) {
  const Error error = year_files_testing::ErrorOf(
      [&] { Run("create " + PathOf("firma.qdb") + " --begin 31.12.2024 --end 1.1.2024"); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800404A9u));
}

TEST_F(CreateCommandTest, NeedsBothDates) {
  EXPECT_THROW(Run("create " + PathOf("firma.qdb") + " --begin 1.1.2024"), CLI::ParseError);
}

}  // namespace
}  // namespace ldg::cli
