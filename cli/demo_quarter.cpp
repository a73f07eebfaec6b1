#include "cli/demo_quarter.hpp"

#include <string>

#include "cli/entry_draft.hpp"
#include "cli/entry_poster.hpp"
#include "support/currency.hpp"
#include "support/ole_date.hpp"

namespace ldg::cli {

namespace {

constexpr int kYear = 2026;
constexpr const char* kJournal = "1";

EntryDraft DraftOf(const DemoEntry& entry, int32_t document) {
  EntryDraft draft;
  draft.journal = kJournal;
  draft.date = OleDate::FromYmd(kYear, entry.month, entry.day);
  draft.document = std::to_string(document);
  for (const DemoLine& line : entry.lines) {
    draft.lines.push_back(DraftLine{line.account_code, Currency::FromRaw(line.rappen * 100), entry.text});
  }
  return draft;
}

}  // namespace

const std::vector<DemoEntry>& DemoQuarter() {
  static const std::vector<DemoEntry> kQuarter = {
      {1, 5, "Miete Januar", {{"6000", 2'400'00}, {"1020", -2'400'00}}},
      {1,
       9,
       "Zahlung Papeterie am Limmatquai, Rechnung Dezember",
       {{"20001", 1'840'00}, {"1020", -1'840'00}}},
      {1, 12, "Zahlung Bäckerei Brunner, Rechnung Dezember", {{"1020", 4'200'00}, {"11001", -4'200'00}}},
      {1,
       15,
       "Jahresabschluss 2025 Garage Keller",
       {{"11002", 5'405'00}, {"3400", -5'000'00}, {"2200", -405'00}}},
      {1, 20, "Büromaterial bar", {{"6500", 171'50}, {"1170", 13'90}, {"1000", -185'40}}},
      {1, 23, "Wareneinkauf Elektro Huber", {{"4200", 3'000'00}, {"1170", 243'00}, {"20002", -3'243'00}}},
      {1, 26, "Löhne Januar, netto", {{"5000", 11'200'00}, {"1020", -11'200'00}}},
      {1, 26, "AHV/IV/EO Januar", {{"5700", 1'176'00}, {"1020", -1'176'00}}},
      {1,
       30,
       "Verkauf Handelswaren Praxis Dr. Meier",
       {{"11003", 2'162'00}, {"3200", -2'000'00}, {"2200", -162'00}}},
      {2, 2, "Miete Februar", {{"6000", 2'400'00}, {"1020", -2'400'00}}},
      {2, 6, "Zahlung Garage Keller, Rechnung Dezember", {{"1020", 7'850'00}, {"11002", -7'850'00}}},
      {2,
       10,
       "Steuerberatung Bäckerei Brunner",
       {{"11001", 3'243'00}, {"3400", -3'000'00}, {"2200", -243'00}}},
      {2,
       13,
       "Zahlung Elektro Huber, Rechnungen Dezember und Januar",
       {{"20002", 6'503'00}, {"1020", -6'503'00}}},
      {2, 18, "Zahlung Garage Keller, Rechnung Januar", {{"1020", 5'405'00}, {"11002", -5'405'00}}},
      {2, 25, "Löhne Februar, netto", {{"5000", 11'200'00}, {"1020", -11'200'00}}},
      {2, 25, "AHV/IV/EO Februar", {{"5700", 1'176'00}, {"1020", -1'176'00}}},
      {2, 27, "Bargeldbezug für die Kasse", {{"1000", 500'00}, {"1020", -500'00}}},
      {3, 2, "Miete März", {{"6000", 2'400'00}, {"1020", -2'400'00}}},
      {3,
       9,
       "Lohnbuchhaltung Praxis Dr. Meier",
       {{"11003", 1'621'50}, {"3400", -1'500'00}, {"2200", -121'50}}},
      {3,
       12,
       "Zahlung Praxis Dr. Meier, Rechnungen Dezember und Januar",
       {{"1020", 4'112'00}, {"11003", -4'112'00}}},
      {3,
       16,
       "Wareneinkauf Papeterie am Limmatquai",
       {{"4200", 1'200'00}, {"1170", 97'20}, {"20001", -1'297'20}}},
      {3,
       20,
       "Verkauf Handelswaren Garage Keller",
       {{"11002", 2'702'50}, {"3200", -2'500'00}, {"2200", -202'50}}},
      {3, 25, "Löhne März, netto", {{"5000", 11'200'00}, {"1020", -11'200'00}}},
      {3, 25, "AHV/IV/EO März", {{"5700", 1'176'00}, {"1020", -1'176'00}}},
      {3, 31, "Abschreibung Fahrzeuge 1. Quartal", {{"6800", 2'000'00}, {"1530", -2'000'00}}},
      {3, 31, "Bankspesen 1. Quartal", {{"6500", 45'00}, {"1020", -45'00}}},
  };
  return kQuarter;
}

int32_t PostDemoQuarter(Engine& engine) {
  EntryPoster poster(engine);
  int32_t document = 0;
  for (const DemoEntry& entry : DemoQuarter()) poster.Post(DraftOf(entry, ++document));
  return document;
}

}  // namespace ldg::cli
