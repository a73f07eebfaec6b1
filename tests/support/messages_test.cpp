#include "support/messages.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <string>

#include "support/error.hpp"

namespace ldg {
namespace {

Error Caught(auto&& action) {
  try {
    action();
  } catch (const Error& error) {
    return error;
  }
  ADD_FAILURE() << "nothing was raised";
  return Error(0, "", "");
}

std::map<int32_t, std::string> MessagesOfDataFile() {
  std::ifstream file(std::string(LDG_TEST_DATA) + "/messages.txt");
  EXPECT_TRUE(file.is_open());
  std::map<int32_t, std::string> messages;
  std::string line;
  while (std::getline(file, line)) {
    size_t tab = line.find('\t');
    messages[std::stoi(line.substr(0, tab))] = line.substr(tab + 1);
  }
  return messages;
}

TEST(MessageTable, HoldsExactly133Entries) { EXPECT_EQ(MessageTable().size(), 133u); }

TEST(MessageTable, MatchesTheMessageListEntryByEntry) {
  std::map<int32_t, std::string> expected = MessagesOfDataFile();
  ASSERT_EQ(expected.size(), 133u);
  for (const MessageEntry& entry : MessageTable()) {
    ASSERT_TRUE(expected.contains(entry.id)) << "id " << entry.id;
    EXPECT_EQ(entry.text, expected[entry.id]) << "id " << entry.id;
  }
  for (const auto& [id, text] : expected) EXPECT_EQ(MessageText(id), text) << "id " << id;
}

TEST(MessageTable, IdsAscend) {
  auto table = MessageTable();
  for (size_t i = 1; i < table.size(); ++i) EXPECT_LT(table[i - 1].id, table[i].id);
}

TEST(MessageLookup, IdZeroIsNotTranslated) {
  EXPECT_EQ(Message(Variant(int32_t{0})), Variant("Not translated"));
}

TEST(MessageLookup, GivesTheTextAsAStringVariant) {
  EXPECT_EQ(Message(Variant(int32_t{1150})), Variant("No Journal with ID=1% could be found!"));
  EXPECT_EQ(Message(Variant(int16_t{800})), Variant("Active"));
  EXPECT_EQ(Message(Variant(1213.0)), Variant("Journal"));
}

TEST(MessageLookup, UnknownIdGivesEmpty) {
  EXPECT_TRUE(Message(Variant(int32_t{1006})).IsEmpty());
  EXPECT_TRUE(Message(Variant(int32_t{1008})).IsEmpty());
  EXPECT_TRUE(Message(Variant(int32_t{1238})).IsEmpty());
  EXPECT_TRUE(Message(Variant(int32_t{-1})).IsEmpty());
  EXPECT_TRUE(Message(Variant(1150.5)).IsEmpty());
  EXPECT_EQ(MessageText(1006), "");
}

TEST(MessageLookup, IdThatIsNoNumberGivesEmpty) {
  EXPECT_TRUE(Message(Variant::Null()).IsEmpty());
  EXPECT_TRUE(Message(Variant("1150")).IsEmpty());
}

TEST(MessageLookup, Message1198KeepsSlashNSlashNAndHasNoLineBreak) {
  std::string text = MessageText(1198);
  EXPECT_NE(text.find("abgebrochen! /n/n Sie können"), std::string::npos);
  EXPECT_EQ(text.find('\n'), std::string::npos);
  EXPECT_TRUE(text.starts_with("Datenbankdatei des vorherigen Geschäftsjahres nicht gefunden"));
  EXPECT_TRUE(text.ends_with("Das Programm wird Sie aufforden, die Datenbankdatei einzugeben."));
}

TEST(MessageLookup, Messages1200And1209DifferByATrailingBlank) {
  EXPECT_EQ(MessageText(1200), "Abschluss ");
  EXPECT_EQ(MessageText(1209), "Abschluss");
}

TEST(MessageLookup, TrailingBlanksAreKept) {
  EXPECT_EQ(MessageText(1199),
            "Previous business year must be archived before you can cloture the actual one. ");
  EXPECT_EQ(MessageText(1201), "Velmora Finance module registration not found! ");
  EXPECT_EQ(MessageText(1224), "Storno, siehe Beleg ");
}

TEST(MessageLookup, UmlautsAreUtf8) {
  EXPECT_EQ(MessageText(1223), "Datenintegrit\xC3\xA4tsproblem aufgetreten!");
}

TEST(MessageLookup, MisspellingsAreKept) {
  EXPECT_EQ(MessageText(1004), "Error occoured updating subaccounts 1%.");
  EXPECT_EQ(MessageText(1129), "Anohter tax uses already uses the code!");
  EXPECT_EQ(MessageText(1156), "Journal already permanenlty locked!");
  EXPECT_EQ(MessageText(1230),
            "This account cannot be marked for deletion on clotue because the balance is not equal 0");
}

TEST(MessageLookup, SameTextStandsUnderTwoIds) { EXPECT_EQ(MessageText(1102), MessageText(1124)); }

TEST(Fill, FillReplacesOnlyTheFirstPlaceholder) { EXPECT_EQ(Fill1("1% and 1%", Variant("x")), "x and 1%"); }

TEST(Fill, TextWithoutPlaceholderComesBackUnchanged) {
  EXPECT_EQ(Fill1("Journal not found!", Variant("x")), "Journal not found!");
  EXPECT_EQ(Fill2("Journal not found!", Variant("x"), Variant("y")), "Journal not found!");
}

TEST(Fill, Fill2FillsBothPlaceholdersOfMessage1003) {
  EXPECT_EQ(Fill2(MessageText(1003), Variant("1000"), Variant("Kasse")),
            "Account 1000 Kasse can't be deleted.");
}

TEST(Fill, Fill2ReplacesTheFirstOnePercentOnly) {
  EXPECT_EQ(Fill2("1% 1% 2% 2%", Variant("a"), Variant("b")), "a 1% b 2%");
}

TEST(Fill, NumbersGoInAsTheirText) { EXPECT_EQ(Fill1("ID=1%!", Variant(int32_t{12})), "ID=12!"); }

TEST(Fill, NullFillsAsNothing) {
  EXPECT_EQ(Fill1(MessageText(1150), Variant::Null()), "No Journal with ID= could be found!");
}

// Deliberate: these texts have "%1", which the fill does not find, so they reach the user unfilled.
TEST(Fill, ReversedPlaceholderIsNotFilled) {
  for (int32_t id : {1105, 1122, 1186, 1215}) {
    EXPECT_EQ(Fill1(MessageText(id), Variant(int32_t{7})), MessageText(id)) << "id " << id;
  }
  EXPECT_EQ(Fill1(MessageText(1105), Variant(int32_t{7})), "No period with ID=%1 could be found!");
}

TEST(RaiseMessage, CarriesBaseNumberAppTitleAndFilledText) {
  Error error = Caught([] { RaiseMessage(1150, Variant(int32_t{12})); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x8004047Eu));
  EXPECT_EQ(error.Source(), "ldg");
  EXPECT_EQ(error.Description(), "No Journal with ID=12 could be found!");
}

TEST(RaiseMessage, Message1105FilledWith7KeepsPercentOne) {
  Error error = Caught([] { RaiseMessage(1105, Variant(int32_t{7})); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x80040451u));
  EXPECT_EQ(error.Description(), "No period with ID=%1 could be found!");
}

TEST(RaiseMessage, TwoFillsGoToBothPlaceholders) {
  Error error = Caught([] { RaiseMessage(1003, Variant("1000"), Variant("Kasse")); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800403EBu));
  EXPECT_EQ(error.Description(), "Account 1000 Kasse can't be deleted.");
}

TEST(RaiseMessage, UnknownIdRaisesItsNumberWithAnEmptyText) {
  Error error = Caught([] { RaiseMessage(1008); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800403F0u));
  EXPECT_EQ(error.Source(), "ldg");
  EXPECT_EQ(error.Description(), "");
}

TEST(RaiseMessage, EveryMessageRaisesItsOwnNumberAndText) {
  for (const MessageEntry& entry : MessageTable()) {
    Error error = Caught([&] { RaiseMessage(entry.id); });
    EXPECT_EQ(error.Number(), -2147221504 + entry.id) << "id " << entry.id;
    EXPECT_EQ(error.Description(), entry.text) << "id " << entry.id;
    EXPECT_EQ(error.Source(), "ldg") << "id " << entry.id;
  }
}

TEST(RaiseMessage, NumberIsBasePlusId) {
  EXPECT_EQ(MessageNumber(0), static_cast<int32_t>(0x80040000u));
  EXPECT_EQ(MessageNumber(1215), static_cast<int32_t>(0x800404BFu));
}

TEST(RaiseMessage, TextOfOneIdCanGoUnderTheNumberOfAnother) {
  Error error =
      Caught([] { RaiseError(MessageNumber(1215), Fill1(MessageText(1130), Variant(int32_t{5}))); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800404BFu));
  EXPECT_EQ(error.Description(), "No tax with ID=5 could be found!");
}

TEST(RaiseError, CarriesTheGivenNumberTextAndSource) {
  Error error =
      Caught([] { RaiseError(kErrorBase + 1, "Abschluss nicht m\xC3\xB6glich", "Engine:ClotureExecute"); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x80040001u));
  EXPECT_EQ(error.Source(), "Engine:ClotureExecute");
  EXPECT_EQ(error.Description(), "Abschluss nicht m\xC3\xB6glich");
}

TEST(RaiseError, SourceDefaultsToTheAppTitle) {
  Error error = Caught([] { RaiseError(1009, "CheckBalance errors found:"); });
  EXPECT_EQ(error.Number(), 1009);
  EXPECT_EQ(error.Source(), "ldg");
  EXPECT_EQ(error.Description(), "CheckBalance errors found:");
}

// Deliberate: a text handed where the number belongs fails its conversion first.
TEST(RaiseError, TextWhereTheNumberBelongsGivesTypeMismatch) {
  Error error = Caught([] { RaiseError(Variant("Komprimieren fehlgeschlagen!"), "ignored"); });
  EXPECT_EQ(error.Number(), 13);
  EXPECT_EQ(error.Source(), "");
  EXPECT_EQ(error.Description(), RuntimeErrorText(13));
}

TEST(RaiseError, NumberAsVariantRaisesThatNumber) {
  Error error = Caught([] { RaiseError(Variant(int32_t{1009}), "text", "src"); });
  EXPECT_EQ(error.Number(), 1009);
  EXPECT_EQ(error.Source(), "src");
  EXPECT_EQ(error.Description(), "text");
}

TEST(ErrorEnums, KeepTheirNamesAndValues) {
  EXPECT_EQ(lgrErrCanceled, 0);
  EXPECT_EQ(lgrErrUnkown, 1000);
  EXPECT_EQ(lgrErrDuplicateKey, 3022);
  EXPECT_EQ(lgrErrChangeKey, 3021);
  EXPECT_EQ(lgrErrNoKey, 3058);
  EXPECT_EQ(lgrErrDataUsed, 3200);
  EXPECT_EQ(lgrTryAgain, 1);
  EXPECT_EQ(lgrStopTry, 0);
  EXPECT_EQ(lgrErrorRemoved, 0);
}

}  // namespace
}  // namespace ldg
