#include "support/nullable.hpp"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "support/error.hpp"
#include "tests/error_capture.hpp"

namespace ldg {
namespace {

// A row in memory: values by field name, and the sizes of its text fields.
class MemoryRecord : public Record {
 public:
  Variant Value(std::string_view field) const override {
    auto found = values_.find(std::string(field));
    return found == values_.end() ? Variant::Null() : found->second;
  }
  void Value(std::string_view field, const Variant& value) override { values_[std::string(field)] = value; }
  int32_t Size(std::string_view field) const override {
    auto found = sizes_.find(std::string(field));
    return found == sizes_.end() ? 0 : found->second;
  }
  void DeclareSize(const std::string& field, int32_t size) { sizes_[field] = size; }

 private:
  std::map<std::string, Variant> values_;
  std::map<std::string, int32_t> sizes_;
};

TEST(NullableRead, NullAndEmptyGiveTheDefaultOfTheType) {
  EXPECT_EQ(NullableRead("Lng", Variant::Null()), Variant(int32_t{0}));
  EXPECT_EQ(NullableRead("Int", Variant()), Variant(int16_t{0}));
  EXPECT_EQ(NullableRead("Cur", Variant::Null()), Variant(Currency()));
  EXPECT_EQ(NullableRead("Str", Variant()), Variant(""));
  EXPECT_EQ(NullableRead("Bool", Variant::Null()), Variant(false));
  EXPECT_EQ(NullableRead("Byte", Variant::Null()), Variant(uint8_t{0}));
  EXPECT_EQ(NullableRead("Dbl", Variant::Null()), Variant(0.0));
  EXPECT_EQ(NullableRead("Sng", Variant::Null()), Variant(0.0f));
}

TEST(NullableRead, DateDefaultIsZero) {
  EXPECT_EQ(NullableRead("Date", Variant::Null()), Variant(OleDate(0.0)));
}

TEST(NullableRead, ConvertsAValueToTheType) {
  EXPECT_EQ(NullableRead("Lng", Variant("42")), Variant(int32_t{42}));
  EXPECT_EQ(NullableRead("Int", Variant(2.5)), Variant(int16_t{2}));
  EXPECT_EQ(NullableRead("Cur", Variant("12.345")), Variant(*Currency::Parse("12.345")));
  EXPECT_EQ(NullableRead("Str", Variant(int32_t{7})), Variant("7"));
  EXPECT_EQ(NullableRead("Bool", Variant(int32_t{-1})), Variant(true));
  EXPECT_EQ(NullableRead("Dbl", Variant(int32_t{3})), Variant(3.0));
}

TEST(NullableRead, FailedConversionRaisesItsError) {
  EXPECT_EQ(ErrorNumberOf([] { NullableRead("Lng", Variant("abc")); }), 13);
  EXPECT_EQ(ErrorNumberOf([] { NullableRead("Int", Variant(int32_t{40000})); }), 6);
}

TEST(NullableRead, UnknownTagIsAnInvalidCall) {
  EXPECT_EQ(ErrorNumberOf([] { NullableRead("Long", Variant(int32_t{1})); }), 5);
}

TEST(NullableRead, ReadsTheNamedFieldOfARecord) {
  MemoryRecord record;
  record.Value("Code", Variant("1000"));
  EXPECT_EQ(NullableRead("Lng", Variant("Code"), &record), Variant(int32_t{1000}));
  EXPECT_EQ(NullableRead("Str", Variant("Missing"), &record), Variant(""));
}

TEST(TypedReaders, ReadFieldsWithTheirDefaults) {
  MemoryRecord record;
  record.Value("ID", Variant(int32_t{17}));
  record.Value("Balance", Variant(*Currency::Parse("-3.5")));
  record.Value("Name", Variant("Kasse"));
  record.Value("IsMaster", Variant(true));
  EXPECT_EQ(ReadLong(record, "ID"), 17);
  EXPECT_EQ(ReadCurrency(record, "Balance"), *Currency::Parse("-3.5"));
  EXPECT_EQ(ReadString(record, "Name"), "Kasse");
  EXPECT_TRUE(ReadBoolean(record, "IsMaster"));
  EXPECT_EQ(ReadLong(record, "ParentID"), 0);
  EXPECT_EQ(ReadString(record, "Tags"), "");
  EXPECT_FALSE(ReadBoolean(record, "Inactive"));
  EXPECT_EQ(ReadDate(record, "Valuta"), OleDate(0.0));
  EXPECT_EQ(ReadInteger(record, "Class"), 0);
  EXPECT_EQ(ReadDouble(record, "Rate"), 0.0);
}

TEST(TypedReaders, ReadPlainValues) {
  EXPECT_EQ(ReadLong(Variant::Null()), 0);
  EXPECT_EQ(ReadLong(Variant("5")), 5);
  EXPECT_EQ(ReadString(Variant()), "");
  EXPECT_EQ(ReadByte(Variant(int32_t{200})), 200);
  EXPECT_EQ(ReadSingle(Variant(0.5)), 0.5f);
}

TEST(TypedReaders, ReadValuesOfTheirOwnTypeAsTheyAre) {
  EXPECT_EQ(ReadLong(Variant(int32_t{-70000})), -70000);
  EXPECT_EQ(ReadInteger(Variant(int16_t{-3})), -3);
  EXPECT_EQ(ReadCurrency(Variant(*Currency::Parse("12.3456"))), *Currency::Parse("12.3456"));
  EXPECT_EQ(ReadString(Variant("Kasse")), "Kasse");
  EXPECT_TRUE(ReadBoolean(Variant(true)));
  EXPECT_FALSE(ReadBoolean(Variant(false)));
}

TEST(TypedReaders, ReadValuesOfAnotherTypeConverted) {
  EXPECT_EQ(ReadLong(Variant(int16_t{4})), 4);
  EXPECT_EQ(ReadInteger(Variant(int32_t{7})), 7);
  EXPECT_EQ(ReadCurrency(Variant(int32_t{2})), *Currency::Parse("2"));
  EXPECT_EQ(ReadString(Variant(int32_t{42})), "42");
  EXPECT_TRUE(ReadBoolean(Variant(int32_t{-1})));
}

TEST(NullableWrite, EmptyValueOfTheTypeIsNull) {
  EXPECT_TRUE(NullableWrite("Lng", Variant(int32_t{0})).IsNull());
  EXPECT_TRUE(NullableWrite("Int", Variant(int16_t{0})).IsNull());
  EXPECT_TRUE(NullableWrite("Byte", Variant(uint8_t{0})).IsNull());
  EXPECT_TRUE(NullableWrite("Dbl", Variant(0.0)).IsNull());
  EXPECT_TRUE(NullableWrite("Sng", Variant(0.0f)).IsNull());
  EXPECT_TRUE(NullableWrite("Cur", Variant(Currency())).IsNull());
  EXPECT_TRUE(NullableWrite("Date", Variant(OleDate(0.0))).IsNull());
  EXPECT_TRUE(NullableWrite("Bool", Variant(false)).IsNull());
  EXPECT_TRUE(NullableWrite("Str", Variant("")).IsNull());
}

TEST(NullableWrite, NullAndEmptyAreNull) {
  EXPECT_TRUE(NullableWrite("Lng", Variant::Null()).IsNull());
  EXPECT_TRUE(NullableWrite("Str", Variant()).IsNull());
}

TEST(NullableWrite, OtherValuesComeBackConverted) {
  EXPECT_EQ(NullableWrite("Str", Variant("x")), Variant("x"));
  EXPECT_EQ(NullableWrite("Lng", Variant("12")), Variant(int32_t{12}));
  EXPECT_EQ(NullableWrite("Bool", Variant(true)), Variant(true));
  EXPECT_EQ(NullableWrite("Cur", Variant(int32_t{3})), Variant(Currency::FromUnits(3)));
}

TEST(NullableWrite, FailedConversionRaisesItsError) {
  EXPECT_EQ(ErrorNumberOf([] { NullableWrite("Lng", Variant("abc")); }), 13);
}

TEST(WriteCutText, CutsToTheFieldSize) {
  MemoryRecord record;
  record.DeclareSize("Name", 50);
  WriteCutText(record, "Name", std::string(60, 'x'));
  EXPECT_EQ(record.Value("Name"), Variant(std::string(50, 'x')));
}

TEST(WriteCutText, CountsCharactersNotBytes) {
  MemoryRecord record;
  record.DeclareSize("Name", 3);
  WriteCutText(record, "Name", "äöüß");
  EXPECT_EQ(record.Value("Name"), Variant("äöü"));
  WriteCutText(record, "Name", "äöü");
  EXPECT_EQ(record.Value("Name"), Variant("äöü"));
}

TEST(WriteCutText, FieldWithoutSizeTakesTheWholeText) {
  MemoryRecord record;
  WriteCutText(record, "Comment", std::string(300, 'y'));
  EXPECT_EQ(record.Value("Comment"), Variant(std::string(300, 'y')));
}

TEST(WriteCutText, EmptyTextStoresNull) {
  MemoryRecord record;
  record.Value("Name", Variant("old"));
  record.DeclareSize("Name", 50);
  WriteCutText(record, "Name", "");
  EXPECT_TRUE(record.Value("Name").IsNull());
}

}  // namespace
}  // namespace ldg
