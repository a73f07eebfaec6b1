#include "support/registry.hpp"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "support/error.hpp"
#include "tests/support/environment_fixture.hpp"

namespace ldg {
namespace {

struct Raised {
  int32_t number = 0;
  std::string source;
  std::string description;
};

Raised RaisedBy(auto&& action) {
  try {
    action();
  } catch (const Error& error) {
    return {error.Number(), error.Source(), error.Description()};
  }
  return {};
}

class RegistryTest : public ::testing::Test {
 protected:
  void SetUp() override { environment_.Set("XDG_CONFIG_HOME", (scratch_.Path() / "config").string()); }

  Registry Make() { return Registry(SettingsStore(scratch_.Path() / "store")); }

  // Opens the root of the current user and creates the path below it.
  Registry MakeWithKey(const std::string& path) {
    Registry registry = Make();
    registry.KeyOpen();
    registry.SubKeyCreate(path);
    registry.KeyClose();
    registry.Key(path);
    registry.KeyOpen();
    return registry;
  }

  std::vector<std::string> SubKeys(Registry& registry) {
    std::vector<std::string> names;
    for (auto name = registry.SubKeyFirst(); name; name = registry.SubKeyNext()) names.push_back(*name);
    return names;
  }

  std::vector<std::string> ValueNames(Registry& registry) {
    std::vector<std::string> names;
    for (auto name = registry.ValueNameFirst(); name; name = registry.ValueNameNext()) names.push_back(*name);
    return names;
  }

  testing::ScratchFolder scratch_;
  testing::ScopedEnvironment environment_;
};

TEST_F(RegistryTest, TheRootsHaveTheirNumbers) {
  Registry registry = Make();
  EXPECT_EQ(registry.Root(), 0x80000001u);
  registry.KeyOpenLocalMachine();
  EXPECT_EQ(registry.Root(), 0x80000002u);
  registry.KeyOpenClassesRoot();
  EXPECT_EQ(registry.Root(), 0x80000000u);
  registry.KeyOpenUsers();
  EXPECT_EQ(registry.Root(), 0x80000003u);
  registry.KeyOpenCurrentUser();
  EXPECT_EQ(registry.Root(), 0x80000001u);
}

TEST_F(RegistryTest, OpeningAMissingKeyRaisesKeyNotOpened) {
  Registry registry = Make();
  registry.Key("Software\\Missing");
  Raised raised = RaisedBy([&] { registry.KeyOpen(); });
  EXPECT_EQ(raised.number, static_cast<int32_t>(0x80040001u));
  EXPECT_EQ(raised.source, "ldg");
  EXPECT_EQ(raised.description, "Key not opened: HKEY_CURRENT_USER\\Software\\Missing");
  EXPECT_FALSE(registry.IsOpen());
}

TEST_F(RegistryTest, TheRootItselfAlwaysOpens) {
  Registry registry = Make();
  registry.KeyOpen();
  EXPECT_TRUE(registry.IsOpen());
}

TEST_F(RegistryTest, KeyAndSubKeyNameThePathTogether) {
  MakeWithKey("Software\\Velmora\\LDG6");
  Registry registry = Make();
  registry.Key("Software\\Velmora");
  registry.SubKey("LDG6");
  registry.KeyOpen();
  EXPECT_TRUE(registry.IsOpen());
}

TEST_F(RegistryTest, KeyNamesIgnoreCase) {
  MakeWithKey("Software\\Velmora");
  Registry registry = Make();
  registry.Key("SOFTWARE\\velmora");
  registry.KeyOpen();
  EXPECT_TRUE(registry.IsOpen());
}

TEST_F(RegistryTest, EachRootIsANamespaceOfItsOwn) {
  MakeWithKey("Software\\Velmora");
  Registry registry = Make();
  registry.KeyOpenLocalMachine();
  registry.Key("Software\\Velmora");
  EXPECT_EQ(RaisedBy([&] { registry.KeyOpen(); }).description,
            "Key not opened: HKEY_LOCAL_MACHINE\\Software\\Velmora");
}

TEST_F(RegistryTest, ATextValueReadsBackAsString) {
  Registry registry = MakeWithKey("Software\\Velmora");
  registry.Value("Path", Variant("C:\\Daten\\Müller=1"));
  EXPECT_EQ(registry.Value("Path"), Variant("C:\\Daten\\Müller=1"));
}

TEST_F(RegistryTest, ALongValueReadsBackAsLong) {
  Registry registry = MakeWithKey("Software\\Velmora");
  registry.Value("Count", Variant(int32_t{42}));
  EXPECT_EQ(registry.Value("Count"), Variant(int32_t{42}));
}

TEST_F(RegistryTest, ByteAndIntegerAreWrittenAs32BitNumbers) {
  Registry registry = MakeWithKey("Software\\Velmora");
  registry.Value("Byte", Variant(uint8_t{200}));
  registry.Value("Integer", Variant(int16_t{-7}));
  EXPECT_EQ(registry.Value("Byte"), Variant(int32_t{200}));
  EXPECT_EQ(registry.Value("Integer"), Variant(int32_t{-7}));
}

TEST_F(RegistryTest, ANumberTextStaysText) {
  Registry registry = MakeWithKey("Software\\Velmora");
  registry.Value("Text", Variant("42"));
  EXPECT_EQ(registry.Value("Text"), Variant("42"));
}

TEST_F(RegistryTest, AnotherKindOfValueIsATypeMismatch) {
  Registry registry = MakeWithKey("Software\\Velmora");
  EXPECT_EQ(RaisedBy([&] { registry.Value("Amount", Variant(1.5)); }).number, 13);
  EXPECT_EQ(RaisedBy([&] { registry.Value("Flag", Variant(true)); }).number, 13);
  EXPECT_TRUE(registry.Value("Amount").IsEmpty());
}

TEST_F(RegistryTest, AMissingValueReadsAsEmpty) {
  Registry registry = MakeWithKey("Software\\Velmora");
  EXPECT_TRUE(registry.Value("Missing").IsEmpty());
}

TEST_F(RegistryTest, ValuesSurviveANewRegistryObject) {
  MakeWithKey("Software\\Velmora").Value("Count", Variant(int32_t{42}));
  Registry registry = Make();
  registry.Key("Software\\Velmora");
  registry.KeyOpen();
  EXPECT_EQ(registry.Value("Count"), Variant(int32_t{42}));
}

TEST_F(RegistryTest, SubKeysEnumerateInCaseInsensitiveOrder) {
  Registry registry = MakeWithKey("Software");
  registry.SubKeyCreate("beta");
  registry.SubKeyCreate("Alpha");
  registry.SubKeyCreate("Gamma\\Deep");
  std::vector<std::string> expected = {"Alpha", "beta", "Gamma"};
  EXPECT_EQ(SubKeys(registry), expected);
}

TEST_F(RegistryTest, AKeyWithoutSubKeysEnumeratesNothing) {
  Registry registry = MakeWithKey("Software\\Leaf");
  EXPECT_EQ(registry.SubKeyFirst(), std::nullopt);
  EXPECT_EQ(registry.SubKeyNext(), std::nullopt);
}

TEST_F(RegistryTest, ValueNamesEnumerateInTheOrderWritten) {
  Registry registry = MakeWithKey("Software\\Velmora");
  registry.Value("b", Variant("2"));
  registry.Value("a", Variant(int32_t{1}));
  std::vector<std::string> expected = {"b", "a"};
  EXPECT_EQ(ValueNames(registry), expected);
}

TEST_F(RegistryTest, SubKeyCreateMakesTheKeysBetween) {
  Registry registry = MakeWithKey("Software");
  registry.SubKeyCreate("A\\B\\C");
  registry.KeyClose();
  registry.Key("Software\\A\\B");
  registry.KeyOpen();
  std::vector<std::string> expected = {"C"};
  EXPECT_EQ(SubKeys(registry), expected);
}

TEST_F(RegistryTest, SubKeyCreateOfAnExistingKeyKeepsItsValues) {
  Registry registry = MakeWithKey("Software\\Velmora");
  registry.Value("Count", Variant(int32_t{1}));
  registry.KeyClose();
  registry.Key("Software");
  registry.KeyOpen();
  registry.SubKeyCreate("Velmora");
  registry.KeyClose();
  registry.Key("Software\\Velmora");
  registry.KeyOpen();
  EXPECT_EQ(registry.Value("Count"), Variant(int32_t{1}));
}

TEST_F(RegistryTest, SubKeyDeleteRemovesTheKeyAndItsValues) {
  Registry registry = MakeWithKey("Software\\Velmora");
  registry.Value("Count", Variant(int32_t{1}));
  registry.KeyClose();
  registry.Key("Software");
  registry.KeyOpen();
  registry.SubKeyDelete("Velmora");
  EXPECT_EQ(registry.SubKeyFirst(), std::nullopt);
  registry.SubKeyCreate("Velmora");
  registry.KeyClose();
  registry.Key("Software\\Velmora");
  registry.KeyOpen();
  EXPECT_TRUE(registry.Value("Count").IsEmpty());
}

TEST_F(RegistryTest, DeletingAMissingSubKeyRaisesError) {
  Registry registry = MakeWithKey("Software");
  Raised raised = RaisedBy([&] { registry.SubKeyDelete("Missing"); });
  EXPECT_EQ(raised.number, static_cast<int32_t>(0x80040001u));
  EXPECT_EQ(raised.description,
            "Error deleting key HKEY_CURRENT_USER\\Software\\Missing: the key does not exist");
}

TEST_F(RegistryTest, DeletingASubKeyWithSubKeysRaisesError) {
  Registry registry = MakeWithKey("Software");
  registry.SubKeyCreate("A\\B");
  Raised raised = RaisedBy([&] { registry.SubKeyDelete("A"); });
  EXPECT_EQ(raised.description, "Error deleting key HKEY_CURRENT_USER\\Software\\A: the key has sub keys");
  std::vector<std::string> expected = {"A"};
  EXPECT_EQ(SubKeys(registry), expected);
}

TEST_F(RegistryTest, ValueNameDeleteRemovesOneValue) {
  Registry registry = MakeWithKey("Software\\Velmora");
  registry.Value("a", Variant("1"));
  registry.Value("b", Variant("2"));
  registry.ValueNameDelete("A");
  std::vector<std::string> expected = {"b"};
  EXPECT_EQ(ValueNames(registry), expected);
}

TEST_F(RegistryTest, DeletingAMissingValueRaisesError) {
  Registry registry = MakeWithKey("Software\\Velmora");
  Raised raised = RaisedBy([&] { registry.ValueNameDelete("Missing"); });
  EXPECT_EQ(raised.number, static_cast<int32_t>(0x80040001u));
  EXPECT_EQ(
      raised.description,
      "Error deleting value \"Missing\" of HKEY_CURRENT_USER\\Software\\Velmora: the value does not exist");
}

TEST_F(RegistryTest, WorkOnAClosedKeyRaisesKeyNotOpened) {
  Registry registry = Make();
  registry.Key("Software\\Velmora");
  EXPECT_EQ(RaisedBy([&] { registry.Value("x"); }).description,
            "Key not opened: HKEY_CURRENT_USER\\Software\\Velmora");
  EXPECT_EQ(RaisedBy([&] { registry.SubKeyFirst(); }).description,
            "Key not opened: HKEY_CURRENT_USER\\Software\\Velmora");
  EXPECT_EQ(RaisedBy([&] { registry.SubKeyCreate("x"); }).description,
            "Key not opened: HKEY_CURRENT_USER\\Software\\Velmora");
}

TEST_F(RegistryTest, KeyCloseClosesTheKey) {
  Registry registry = MakeWithKey("Software\\Velmora");
  registry.KeyClose();
  EXPECT_FALSE(registry.IsOpen());
  EXPECT_EQ(RaisedBy([&] { registry.Value("x"); }).number, static_cast<int32_t>(0x80040001u));
}

TEST_F(RegistryTest, AnOpenKeyStaysOnItsRootWhenAnotherIsSelected) {
  Registry registry = MakeWithKey("Software\\Velmora");
  registry.Value("Count", Variant(int32_t{3}));
  registry.KeyOpenLocalMachine();
  EXPECT_EQ(registry.Value("Count"), Variant(int32_t{3}));
}

TEST_F(RegistryTest, TheRegistryDoesNotMixWithTheSettingsOfAnApplication) {
  SettingsStore store(scratch_.Path() / "store");
  store.SaveSetting("Velmora\\LDG6", "Software", "Count", "9");
  Registry registry = MakeWithKey("Software");
  EXPECT_TRUE(registry.Value("Count").IsEmpty());
}

}  // namespace
}  // namespace ldg
