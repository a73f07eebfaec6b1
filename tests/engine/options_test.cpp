#include "engine/options.hpp"

#include <gtest/gtest.h>

#include <string>

#include "engine/db_options.hpp"
#include "engine/engine.hpp"
#include "engine/engine_state.hpp"
#include "support/locale.hpp"
#include "tests/engine/engine_file_fixture.hpp"

namespace ldg {
namespace {

constexpr const char* kOtherInstance = "777";

class OptionsTest : public testing::EngineFileTest {
 protected:
  void SetUp() override {
    EngineFileTest::SetUp();
    engine_ = std::make_unique<Engine>();
  }
  void TearDown() override {
    engine_.reset();
    EngineFileTest::TearDown();
  }

  void OpenFresh() {
    path_ = MakeYearFile();
    Variant user(""), password(""), product("ldg tests");
    engine_->Init(user, password, product);
    engine_->OpenDatabase(Variant(path_));
  }

  Options& Opts() { return *engine_->Options(); }

  int32_t RowsNamed(const std::string& section) {
    auto rows = engine_->Database()->OpenRecordset(
        "SELECT Count(*) AS N FROM Settings WHERE SettingSection = '" + section + "';",
        store::dbOpenSnapshot);
    const int32_t count = CLng(rows->Value("N"));
    rows->Close();
    return count;
  }

  std::string path_;
  std::unique_ptr<Engine> engine_;
};

TEST_F(OptionsTest, AFreshDatabaseGivesTheDefaults) {
  OpenFresh();
  EXPECT_EQ(CStr(Opts().ClientName()), "");
  EXPECT_EQ(CStr(Opts().ClientExtraText()), "");
  EXPECT_EQ(CStr(Opts().BaseCurrencyCode()), "CHF");
  EXPECT_EQ(Opts().Decimals(), 2);
  EXPECT_EQ(CStr(Opts().DecimalSep()), ".");
  EXPECT_EQ(CStr(Opts().ThousandSep()), "'");
  EXPECT_EQ(Opts().CurCodePos(), 1);
  EXPECT_EQ(CStr(Opts().PosArithmeticSymbol()), "");
  EXPECT_EQ(CStr(Opts().NegArithmeticSymbol()), "");
  EXPECT_EQ(CStr(Opts().PosBookkeepingSymbol()), " S ");
  EXPECT_EQ(CStr(Opts().NegBookkeepingSymbol()), " H ");
  EXPECT_EQ(Opts().DocIDFlags(), 0);
  EXPECT_TRUE(Opts().DoNotForceArchive());
  EXPECT_EQ(CStr(Opts().BaseCurrencyRound()), "0.01");
}

TEST_F(OptionsTest, WithoutDatabaseTheGettersGiveTheDefaults) {
  Options options;
  EXPECT_EQ(CStr(options.ClientName()), "");
  EXPECT_EQ(CStr(options.BaseCurrencyCode()), "CHF");
  EXPECT_EQ(options.Decimals(), 2);
  EXPECT_TRUE(options.DoNotForceArchive());
  EXPECT_TRUE(options.BelegIDAuto());
}

TEST_F(OptionsTest, WithoutDatabaseTheSettersDoNothing) {
  Options options;
  EXPECT_NO_THROW(options.ClientName(Variant("Muster AG")));
  EXPECT_EQ(CStr(options.ClientName()), "");
}

TEST_F(OptionsTest, PeriodLockFlagsNeverWrittenFailsWithTypeMismatch) {
  OpenFresh();
  const Error error = ErrorOf([&] { Opts().PeriodLockFlags(); });
  EXPECT_EQ(error.Number(), 13);
  EXPECT_EQ(error.Description(), "Type mismatch");
}

TEST_F(OptionsTest, PeriodLockFlagsWithoutDatabaseFailsWithTypeMismatch) {
  const Error error = ErrorOf([] { Options().PeriodLockFlags(); });
  EXPECT_EQ(error.Number(), 13);
}

TEST_F(OptionsTest, PeriodLockFlagsReadsWhatWasWritten) {
  OpenFresh();
  Opts().PeriodLockFlags(2);
  EXPECT_EQ(Opts().PeriodLockFlags(), 2);
}

TEST_F(OptionsTest, BelegIDAutoIsTrueOnAFreshDatabase) {
  OpenFresh();
  EXPECT_TRUE(Opts().BelegIDAuto());
}

TEST_F(OptionsTest, BelegIDAutoIsWrittenAsTrueOrFalse) {
  OpenFresh();
  Opts().BelegIDAuto(false);
  EXPECT_FALSE(Opts().BelegIDAuto());
  EXPECT_EQ(CStr(Opts().Value("BelegIDAuto")), "False");
  Opts().BelegIDAuto(true);
  EXPECT_TRUE(Opts().BelegIDAuto());
  EXPECT_EQ(CStr(Opts().Value("BelegIDAuto")), "True");
}

TEST_F(OptionsTest, BelegIDAutoComparesTheTextExactly) {
  OpenFresh();
  Opts().Value("BelegIDAuto", Variant("true"));
  EXPECT_FALSE(Opts().BelegIDAuto());
}

TEST_F(OptionsTest, DoNotForceArchiveIsWrittenAsOneOrZero) {
  OpenFresh();
  Opts().DoNotForceArchive(false);
  EXPECT_EQ(CStr(Opts().Value("DoNotForceArchive")), "0");
  EXPECT_FALSE(Opts().DoNotForceArchive());
  Opts().DoNotForceArchive(true);
  EXPECT_EQ(CStr(Opts().Value("DoNotForceArchive")), "1");
  EXPECT_TRUE(Opts().DoNotForceArchive());
}

TEST_F(OptionsTest, DocIDFlagsUsesOneRowUnderTwoSpellings) {
  OpenFresh();
  Opts().DocIDFlags(6);
  EXPECT_EQ(Opts().DocIDFlags(), 6);
  Opts().DocIDFlags(3);
  EXPECT_EQ(Opts().DocIDFlags(), 3);
  EXPECT_EQ(RowsNamed("OptionDocIDFlags"), 1);
  EXPECT_EQ(RowsNamed("OptiondocIDFlags"), 1);
}

TEST_F(OptionsTest, IntegersAreWrittenAsDecimalText) {
  OpenFresh();
  Opts().Decimals(3);
  Opts().CurCodePos(-1);
  EXPECT_EQ(CStr(Opts().Value("Decimals")), "3");
  EXPECT_EQ(CStr(Opts().Value("CurCodePos")), "-1");
  EXPECT_EQ(Opts().Decimals(), 3);
  EXPECT_EQ(Opts().CurCodePos(), -1);
}

TEST_F(OptionsTest, ValueOfDecimalSepIsTheRowOfDecimalSep) {
  OpenFresh();
  Opts().Value("DecimalSep", Variant(","));
  EXPECT_EQ(CStr(Opts().DecimalSep()), ",");
  Opts().DecimalSep(Variant("."));
  EXPECT_EQ(CStr(Opts().Value("DecimalSep")), ".");
}

TEST_F(OptionsTest, ValueOfAnUnknownOptionIsEmpty) {
  OpenFresh();
  EXPECT_EQ(CStr(Opts().Value("Nowhere")), "");
}

TEST_F(OptionsTest, AnOptionOfAnotherInstanceIsInvisibleToOptionsAndVisibleToDbOptions) {
  OpenFresh();
  engine_->Database()->Execute(
      std::string("INSERT INTO Settings (SettingModuleID, SettingSection, SettingSpace) "
                  "VALUES (") +
          kOtherInstance + ", 'OptionClientName', 'X');",
      store::dbFailOnError);
  EXPECT_EQ(CStr(Opts().ClientName()), "");
  DbOptions db_options(*engine_->Database());
  EXPECT_EQ(db_options.Value("OptionClientName"), "X");
}

TEST_F(OptionsTest, TheSystemSeparatorsComeFromTheLocale) {
  SetUserLocaleForTesting(LocaleItems{",", " ", "EUR"});
  engine_->GetLocales();
  SetUserLocaleForTesting(std::nullopt);
  Options options;
  EXPECT_EQ(options.SysDecimalSep(), ",");
  EXPECT_EQ(options.SysThousandSep(), " ");
  engine_->GetLocales();
  EXPECT_EQ(options.SysDecimalSep(), ".");
}

TEST_F(OptionsTest, GetSettingGivesTheDefaultWithoutDatabase) {
  EXPECT_EQ(CStr(engine_->GetSetting(Variant("OptionClientName"), Variant("none"))), "none");
  EXPECT_NO_THROW(engine_->SaveSetting(Variant("OptionClientName"), Variant("x")));
}

TEST_F(OptionsTest, SaveSettingIsReadByGetSettingAndOptions) {
  OpenFresh();
  engine_->SaveSetting(Variant("OptionClientName"), Variant("Muster AG"));
  EXPECT_EQ(CStr(engine_->GetSetting(Variant("OptionClientName"), Variant(""))), "Muster AG");
  EXPECT_EQ(CStr(Opts().ClientName()), "Muster AG");
  engine_->SaveSetting(Variant("OptionClientName"), Variant("Beispiel GmbH"));
  EXPECT_EQ(CStr(Opts().ClientName()), "Beispiel GmbH");
  EXPECT_EQ(RowsNamed("OptionClientName"), 1);
}

TEST_F(OptionsTest, SaveSettingTurnsTheValueToText) {
  OpenFresh();
  engine_->SaveSetting(Variant("Counter"), Variant(int32_t{42}));
  const Variant value = engine_->GetSetting(Variant("Counter"), Variant());
  EXPECT_EQ(value.Type(), Variant("").Type());
  EXPECT_EQ(CStr(value), "42");
}

TEST_F(OptionsTest, AWriteThatFailsIsSwallowedAndTheValueLost) {
  OpenFresh();
  // Another workspace holds the file for writing, so the Update of the setting fails.
  auto other_workspace = State().DBEngine().CreateWorkspace("other", "Admin", "");
  auto other = other_workspace->OpenDatabase(path_);
  other_workspace->BeginTrans();
  other->Execute("INSERT INTO Settings (SettingModuleID, SettingSection, SettingSpace) VALUES (1, 'x', 'y');",
                 store::dbFailOnError);
  EXPECT_NO_THROW(engine_->SaveSetting(Variant("OptionClientName"), Variant("Muster AG")));
  other_workspace->Rollback();
  other->Close();
  EXPECT_EQ(CStr(engine_->GetSetting(Variant("OptionClientName"), Variant("absent"))), "absent");
}

TEST_F(OptionsTest, AValueTooLongForTheRowPassesTheStoresError) {
  OpenFresh();
  const Error error =
      ErrorOf([&] { engine_->SaveSetting(Variant("OptionClientName"), Variant(std::string(300, 'x'))); });
  EXPECT_EQ(error.Number(), 3163);
}

}  // namespace
}  // namespace ldg
