// A test whose engine finds the template where an installed ldg would: the
// folder named by LDG_APP_PATH, with the per-user settings in a scratch folder.
#pragma once

#include <stdlib.h>

#include <filesystem>

#include "tests/engine/created_year_file_fixture.hpp"

namespace ldg::cli {

class InstalledTemplateTest : public year_files_testing::CreatedYearFileTest {
 protected:
  void SetUp() override {
    CreatedYearFileTest::SetUp();
    std::filesystem::create_directories(folder_ / "config");
    ::setenv("XDG_CONFIG_HOME", (folder_ / "config").c_str(), 1);
    ::setenv("LDG_APP_PATH", year_files_testing::TemplateFolder().c_str(), 1);
  }
  void TearDown() override {
    ::unsetenv("LDG_APP_PATH");
    CreatedYearFileTest::TearDown();
  }
};

}  // namespace ldg::cli
