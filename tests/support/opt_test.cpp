#include "support/opt.hpp"

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/environment_fixture.hpp"

namespace ldg {
namespace {

class OptTest : public ::testing::Test {
 protected:
  void SetUp() override { environment_.Set("XDG_CONFIG_HOME", (scratch_.Path() / "config").string()); }

  SettingsStore Store() { return SettingsStore(scratch_.Path() / "store"); }
  Opt Make() { return Opt(Store()); }
  void Stored(const std::string& key, const std::string& text) {
    Store().SaveSetting("Velmora\\LDG6", "Interface\\Options", key, text);
  }
  std::optional<std::string> StoredText(const std::string& key) {
    return Store().Read("Velmora\\LDG6", "Interface\\Options", key);
  }

  testing::ScratchFolder scratch_;
  testing::ScopedEnvironment environment_;
};

TEST_F(OptTest, TheDefaultsNameTheInterfaceOptions) {
  Opt opt = Make();
  EXPECT_EQ(opt.BasePath(), "Velmora\\LDG6");
  EXPECT_EQ(opt.ProgPath(), "Interface");
  EXPECT_EQ(opt.OptionsPath(), "Options");
  EXPECT_EQ(opt.FullPath(), "Velmora\\LDG6\\Interface\\Options");
  EXPECT_EQ(opt.AppName(), "Velmora\\LDG6");
  EXPECT_EQ(opt.Section(), "Interface\\Options");
}

TEST_F(OptTest, InitReplacesOnlyThePartsGiven) {
  Opt opt = Make();
  opt.Init(std::nullopt, std::nullopt, "Config");
  EXPECT_EQ(opt.AppName(), "Velmora\\LDG6");
  EXPECT_EQ(opt.Section(), "Interface\\Config");
}

TEST_F(OptTest, AnEmptyProgramPathIsLeftOut) {
  Opt opt = Make();
  opt.Init(std::nullopt, "", "Config");
  EXPECT_EQ(opt.FullPath(), "Velmora\\LDG6\\Config");
  EXPECT_EQ(opt.AppName(), "Velmora\\LDG6");
  EXPECT_EQ(opt.Section(), "Config");
}

TEST_F(OptTest, NoPartsGiveTheDoubleBackslashApplicationAndSectionOpt) {
  Opt opt = Make();
  opt.Init("", "", "");
  EXPECT_EQ(opt.FullPath(), "");
  EXPECT_EQ(opt.AppName(), "\\\\");
  EXPECT_EQ(opt.Section(), "Opt");
}

TEST_F(OptTest, OnePartIsTheSectionOfTheDoubleBackslashApplication) {
  Opt opt = Make();
  opt.Init("", "Only", "");
  EXPECT_EQ(opt.AppName(), "\\\\");
  EXPECT_EQ(opt.Section(), "Only");
}

TEST_F(OptTest, TwoPartsAreApplicationAndSection) {
  Opt opt = Make();
  opt.Init("App", "", "Sec");
  EXPECT_EQ(opt.AppName(), "App");
  EXPECT_EQ(opt.Section(), "Sec");
}

TEST_F(OptTest, MorePartsGiveTheFirstTwoToTheApplication) {
  Opt opt = Make();
  opt.Init("A\\B\\C", "D", "E");
  EXPECT_EQ(opt.AppName(), "A\\B");
  EXPECT_EQ(opt.Section(), "C\\D\\E");
}

TEST_F(OptTest, PartsAreTrimmedAndDoubledBackslashesReduced) {
  Opt opt = Make();
  opt.Init(" A\\\\B ", " C\\ ", "\\D");
  EXPECT_EQ(opt.FullPath(), "A\\B\\C\\D");
  EXPECT_EQ(opt.AppName(), "A\\B");
  EXPECT_EQ(opt.Section(), "C\\D");
}

TEST_F(OptTest, AStoredEmptyBooleanReadsFalse) {
  Stored("Flag", "Boolean>");
  EXPECT_EQ(Make().Item("Flag"), Variant(false));
}

TEST_F(OptTest, AStoredLongReadsAsLong) {
  Stored("Count", "Long>12");
  EXPECT_EQ(Make().Item("Count"), Variant(int32_t{12}));
}

TEST_F(OptTest, ATextWithoutTypeTakesTheTypeOfTheDefault) {
  Stored("Count", "12");
  EXPECT_EQ(Make().Item("Count", Variant(int32_t{5})), Variant(int32_t{12}));
  EXPECT_EQ(Make().Item("Count", Variant("x")), Variant("12"));
}

TEST_F(OptTest, ATextThatDoesNotConvertReadsAsZeroOfTheType) {
  Stored("Count", "abc");
  EXPECT_EQ(Make().Item("Count", Variant(int32_t{5})), Variant(int32_t{0}));
  Stored("Amount", "Double>x");
  EXPECT_EQ(Make().Item("Amount"), Variant(0.0));
}

TEST_F(OptTest, EmptyValuesReadByType) {
  Stored("S", "String>");
  Stored("V", "Variant>");
  Stored("N", "Null>");
  Stored("L", "Long>");
  EXPECT_EQ(Make().Item("S"), Variant(""));
  EXPECT_EQ(Make().Item("V"), Variant(""));
  EXPECT_TRUE(Make().Item("N").IsNull());
  EXPECT_TRUE(Make().Item("L").IsEmpty());
}

TEST_F(OptTest, OnlyTheFirstMarkSplitsTypeAndText) {
  Stored("Text", "String>a>b");
  EXPECT_EQ(Make().Item("Text"), Variant("a>b"));
}

TEST_F(OptTest, AnUnknownTypeNameReadsAsText) {
  Stored("Odd", "Object>abc");
  EXPECT_EQ(Make().Item("Odd"), Variant("abc"));
}

TEST_F(OptTest, AMissingItemGivesTheDefault) {
  EXPECT_EQ(Make().Item("Missing", Variant(int16_t{3})), Variant(int16_t{3}));
  EXPECT_TRUE(Make().Item("Missing").IsEmpty());
}

TEST_F(OptTest, ItemNamesIgnoreCase) {
  Stored("LocalDir", "String>/x");
  EXPECT_EQ(Make().Item("LOCALDIR"), Variant("/x"));
}

TEST_F(OptTest, LetItemStoresTypeNameMarkAndText) {
  Opt opt = Make();
  opt.LetItem("Count", Variant(int32_t{12}));
  opt.LetItem("Small", Variant(int16_t{-3}));
  opt.LetItem("Name", Variant("Müller"));
  opt.LetItem("Nothing", Variant::Null());
  opt.LetItem("Unset", Variant());
  EXPECT_EQ(StoredText("Count"), "Long>12");
  EXPECT_EQ(StoredText("Small"), "Integer>-3");
  EXPECT_EQ(StoredText("Name"), "String>Müller");
  EXPECT_EQ(StoredText("Nothing"), "Null>");
  EXPECT_EQ(StoredText("Unset"), "String>");
}

TEST_F(OptTest, ValuesReadBackInTheirType) {
  Opt opt = Make();
  opt.LetItem("Flag", Variant(true));
  opt.LetItem("Amount", Variant(Currency::FromRaw(125000)));
  opt.LetItem("Ratio", Variant(0.25));
  opt.LetItem("Day", Variant(OleDate::FromYmd(2002, 3, 1)));
  opt.LetItem("Byte", Variant(uint8_t{200}));
  Opt reader = Make();
  EXPECT_EQ(reader.Item("Flag"), Variant(true));
  EXPECT_EQ(reader.Item("Amount"), Variant(Currency::FromRaw(125000)));
  EXPECT_EQ(reader.Item("Ratio"), Variant(0.25));
  EXPECT_EQ(reader.Item("Day"), Variant(OleDate::FromYmd(2002, 3, 1)));
  EXPECT_EQ(reader.Item("Byte"), Variant(uint8_t{200}));
}

TEST_F(OptTest, ADecimalReadsBackAsDecimal) {
  Stored("Exact", "Decimal>-12.50");
  EXPECT_EQ(Make().Item("Exact"), Variant(Decimal{-1250, 2}));
}

TEST_F(OptTest, ItemsListsTheNamesOfTheSection) {
  Stored("b", "Long>1");
  Stored("a", "Long>2");
  Store().SaveSetting("Velmora\\LDG6", "Interface\\Config", "c", "Long>3");
  std::vector<std::string> expected = {"b", "a"};
  EXPECT_EQ(Make().Items(), expected);
}

TEST_F(OptTest, TheSectionLoadsLazilyBeforeTheFirstAccess) {
  Opt opt = Make();
  Stored("Late", "Long>7");
  EXPECT_EQ(opt.Item("Late"), Variant(int32_t{7}));
}

TEST_F(OptTest, ItemDelRemovesTheItemFromTheStore) {
  Stored("LocalDir", "String>/x");
  Stored("Other", "String>y");
  Opt opt = Make();
  opt.ItemDel("localdir");
  EXPECT_EQ(StoredText("LocalDir"), std::nullopt);
  EXPECT_EQ(StoredText("Other"), "String>y");
  EXPECT_TRUE(opt.Item("LocalDir").IsEmpty());
}

TEST_F(OptTest, ItemDelOfAMissingItemIsNoError) {
  Opt opt = Make();
  EXPECT_NO_THROW(opt.ItemDel("Missing"));
}

TEST_F(OptTest, ItemDelAllRemovesTheSection) {
  Stored("a", "Long>1");
  Store().SaveSetting("Velmora\\LDG6", "Interface\\Config", "c", "Long>3");
  Opt opt = Make();
  opt.ItemDelAll();
  EXPECT_FALSE(Store().SectionExists("Velmora\\LDG6", "Interface\\Options"));
  EXPECT_TRUE(opt.Items().empty());
  EXPECT_EQ(Store().Read("Velmora\\LDG6", "Interface\\Config", "c"), "Long>3");
  EXPECT_NO_THROW(opt.ItemDelAll());
}

TEST_F(OptTest, UpdateWritesTheLoadedItemsBack) {
  Stored("a", "Long>1");
  Opt opt = Make();
  opt.Items();
  Store().DeleteSetting("Velmora\\LDG6", "Interface\\Options");
  opt.Update();
  EXPECT_EQ(StoredText("a"), "Long>1");
}

}  // namespace
}  // namespace ldg
