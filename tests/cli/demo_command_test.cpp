// ldg demo, run through the command line as main builds it.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "engine/engine_state.hpp"
#include "store/constants.hpp"
#include "store/db_engine.hpp"
#include "support/conversions.hpp"
#include "support/currency.hpp"
#include "support/variant.hpp"
#include "tests/cli/cli_runner.hpp"
#include "tests/cli/installed_template_fixture.hpp"

namespace ldg::cli {
namespace {

class DemoCommandTest : public InstalledTemplateTest {
 protected:
  std::string DemoFile() const { return PathOf("demo") + "/muster-treuhand-2026.qdb6f"; }
  std::string RunDemo() { return testing::RunLdg({"demo", PathOf("demo")}); }
  // What the demo printed from its chart's heading to the quarter's bookings.
  static std::string ChartPart(const std::string& out) {
    const auto heading = out.find("Chart of accounts with opening balances:\n\n");
    const auto quarter = out.find("\nFirst quarter: ");
    return heading == std::string::npos ? std::string() : out.substr(heading, quarter - heading);
  }
  // What the demo printed from the quarter's bookings on.
  static std::string QuarterPart(const std::string& out) {
    const auto quarter = out.find("First quarter: ");
    return quarter == std::string::npos ? std::string() : out.substr(quarter);
  }
  // A value read from the demo's file on a connection of its own.
  Variant DemoScalar(const std::string& sql, const std::string& column) {
    auto workspace = State().DBEngine().CreateWorkspace("", "admin", "", store::dbUseJet);
    auto database = workspace->OpenDatabase(DemoFile());
    auto rows = database->OpenRecordset(sql, store::dbOpenSnapshot);
    Variant value = rows->Eof() ? Variant() : rows->Value(column);
    rows->Close();
    database->Close();
    return value;
  }
};

TEST_F(DemoCommandTest, MakesTheDemoYearFileAndShowsItsYearAndClient) {
  const std::string demo = PathOf("demo");
  const std::string out = testing::RunLdg({"demo", demo});
  const std::string file = demo + "/muster-treuhand-2026.qdb6f";
  EXPECT_TRUE(std::filesystem::exists(file));
  EXPECT_NE(out.find("Demo company's year file: " + file + "\n"), std::string::npos) << out;
  EXPECT_NE(out.find("Begin                 01.01.2026\n"), std::string::npos) << out;
  EXPECT_NE(out.find("Status                1 Aktiv\n"), std::string::npos) << out;
  EXPECT_NE(out.find("ClientName            Muster Treuhand AG\n"), std::string::npos) << out;
}

TEST_F(DemoCommandTest, ShowsTheChartWithItsOpeningBalances) {
  EXPECT_EQ(ChartPart(RunDemo()),
            "Chart of accounts with opening balances:\n"
            "\n"
            "Code           Name                                              Kind         Balance\n"
            "-------------  ------------------------------------------------  -------  -----------\n"
            "A              Bilanz                                            Sum             0.00\n"
            "  1            Aktiven                                           Sum       173'580.90\n"
            "    10         Umlaufvermögen                                    Sum       114'080.90\n"
            "      1000     Kasse                                             Account     2'500.00\n"
            "      1020     Bank                                              Account    84'350.40\n"
            "      1100     Forderungen aus Lieferungen und Leistungen        Master     14'000.00\n"
            "        11001  Bäckerei Brunner GmbH                             Detail      4'200.00\n"
            "        11002  Garage Keller AG                                  Detail      7'850.00\n"
            "        11003  Praxis Dr. Meier                                  Detail      1'950.00\n"
            "      1170     Vorsteuer MWST                                    Account     1'230.50\n"
            "      1200     Vorräte                                           Account    12'000.00\n"
            "    14         Anlagevermögen                                    Sum        59'500.00\n"
            "      1500     Maschinen und Apparate                            Account    18'000.00\n"
            "      1520     Büromobiliar                                      Account     9'500.00\n"
            "      1530     Fahrzeuge                                         Account    32'000.00\n"
            "  2            Passiven                                          Sum      -173'580.90\n"
            "    20         Fremdkapital                                      Sum       -51'580.90\n"
            "      2000     Verbindlichkeiten aus Lieferungen und Leistungen  Master     -5'100.00\n"
            "        20001  Papeterie am Limmatquai AG                        Detail     -1'840.00\n"
            "        20002  Elektro Huber AG                                  Detail     -3'260.00\n"
            "      2200     Geschuldete MWST                                  Account    -6'480.90\n"
            "      2450     Darlehen                                          Account   -40'000.00\n"
            "    28         Eigenkapital                                      Sum      -122'000.00\n"
            "      2800     Aktienkapital                                     Account  -100'000.00\n"
            "      2900     Gewinnvortrag                                     Account   -22'000.00\n"
            "B              Erfolgsrechnung                                   Sum             0.00\n"
            "  3            Betriebsertrag                                    Sum             0.00\n"
            "    3200       Handelserlöse                                     Account         0.00\n"
            "    3400       Dienstleistungserlöse                             Account         0.00\n"
            "  4            Materialaufwand                                   Sum             0.00\n"
            "    4200       Einkauf Handelswaren                              Account         0.00\n"
            "  5            Personalaufwand                                   Sum             0.00\n"
            "    5000       Lohnaufwand                                       Account         0.00\n"
            "    5700       Sozialversicherungsaufwand AHV/IV/EO              Account         0.00\n"
            "  6            Übriger betrieblicher Aufwand                     Sum             0.00\n"
            "    6000       Raumaufwand                                       Account         0.00\n"
            "    6500       Verwaltungsaufwand                                Account         0.00\n"
            "    6800       Abschreibungen                                    Account         0.00\n"
            "  8            Ausserordentlicher Erfolg                         Sum             0.00\n"
            "    8500       Ausserordentlicher Aufwand                        Account         0.00\n"
            "    8510       Ausserordentlicher Ertrag                         Account         0.00\n");
}

TEST_F(DemoCommandTest, TheOpeningBalancesOfTheBalanceSheetAddUpToZero) {
  RunDemo();
  const std::string bookable = " FROM Accounts WHERE IsSum = False AND IsMaster = False";
  EXPECT_EQ(CLng(DemoScalar("SELECT Count(*) AS N" + bookable + " AND OpeningBalance <> 0;", "N")), 16);
  EXPECT_EQ(CCur(DemoScalar("SELECT Sum(OpeningBalance) AS Total" + bookable + ";", "Total")), Currency());
  EXPECT_EQ(CCur(DemoScalar("SELECT Sum(OpeningBalance) AS Total" + bookable + " AND OpeningBalance > 0;",
                            "Total")),
            Currency::FromRaw(17358090 * 100));
}

TEST_F(DemoCommandTest, TheCustomersAreDetailsOfAMasterThatHoldsTheirTotal) {
  RunDemo();
  const int32_t master = CLng(DemoScalar("SELECT ID FROM Accounts WHERE Code = '1100';", "ID"));
  EXPECT_EQ(CLng(DemoScalar("SELECT MasterID FROM Accounts WHERE Code = '1100';", "MasterID")), master);
  EXPECT_EQ(CLng(DemoScalar("SELECT Count(*) AS N FROM Accounts WHERE MasterID = " + std::to_string(master) +
                                " AND ParentID = " + std::to_string(master) + " AND IsGeneralLedger = False;",
                            "N")),
            3);
  EXPECT_EQ(
      CCur(DemoScalar("SELECT ChildrensBalance FROM Accounts WHERE Code = '1100';", "ChildrensBalance")),
      Currency::FromRaw(756700 * 100));  // the openings of 14'000.00 after the quarter's bookings
}

TEST_F(DemoCommandTest, ASecondRunReplacesTheFileAndShowsTheSameChart) {
  const std::string first = ChartPart(RunDemo());
  const std::string second = ChartPart(RunDemo());
  ASSERT_FALSE(first.empty());
  EXPECT_EQ(second, first);
  EXPECT_EQ(CLng(DemoScalar("SELECT Count(*) AS N FROM Accounts;", "N")), 41);
  EXPECT_EQ(CLng(DemoScalar("SELECT Count(*) AS N FROM BookEntries;", "N")), 26);
}

TEST_F(DemoCommandTest, PostsTheFirstQuarterAndShowsTheTrialBalanceAtItsEnd) {
  EXPECT_EQ(QuarterPart(RunDemo()),
            "First quarter: 26 book entries posted.\n"
            "\n"
            "Trial balance at 31.03.2026:\n"
            "\n"
            "Code   Name                                       Debit      Credit\n"
            "-----  ------------------------------------  ----------  ----------\n"
            "1000   Kasse                                   2'814.60\n"
            "1020   Bank                                   52'701.40\n"
            "11001  Bäckerei Brunner GmbH                   3'243.00\n"
            "11002  Garage Keller AG                        2'702.50\n"
            "11003  Praxis Dr. Meier                        1'621.50\n"
            "1170   Vorsteuer MWST                          1'584.60\n"
            "1200   Vorräte                                12'000.00\n"
            "1500   Maschinen und Apparate                 18'000.00\n"
            "1520   Büromobiliar                            9'500.00\n"
            "1530   Fahrzeuge                              30'000.00\n"
            "20001  Papeterie am Limmatquai AG                          1'297.20\n"
            "20002  Elektro Huber AG\n"
            "2200   Geschuldete MWST                                    7'614.90\n"
            "2450   Darlehen                                           40'000.00\n"
            "2800   Aktienkapital                                     100'000.00\n"
            "2900   Gewinnvortrag                                      22'000.00\n"
            "3200   Handelserlöse                                       4'500.00\n"
            "3400   Dienstleistungserlöse                               9'500.00\n"
            "4200   Einkauf Handelswaren                    4'200.00\n"
            "5000   Lohnaufwand                            33'600.00\n"
            "5700   Sozialversicherungsaufwand AHV/IV/EO    3'528.00\n"
            "6000   Raumaufwand                             7'200.00\n"
            "6500   Verwaltungsaufwand                        216.50\n"
            "6800   Abschreibungen                          2'000.00\n"
            "8500   Ausserordentlicher Aufwand\n"
            "8510   Ausserordentlicher Ertrag\n"
            "       Total                                 184'912.10  184'912.10\n");
}

TEST_F(DemoCommandTest, TheQuarterIsStoredWithItsLinesDocumentsAndBalances) {
  RunDemo();
  EXPECT_EQ(CLng(DemoScalar("SELECT Count(*) AS N FROM BookEntries;", "N")), 26);
  EXPECT_EQ(CLng(DemoScalar("SELECT Count(*) AS N FROM Movements;", "N")), 60);
  EXPECT_EQ(CCur(DemoScalar("SELECT Sum(Amount) AS Total FROM Movements;", "Total")), Currency());
  EXPECT_EQ(CStr(DemoScalar("SELECT Max(DocumentID) AS Last FROM BookEntries;", "Last")), "00000000000026");
  EXPECT_EQ(CCur(DemoScalar("SELECT Balance FROM Accounts WHERE Code = '1020';", "Balance")),
            Currency::FromRaw(5270140 * 100));
  EXPECT_EQ(
      CStr(DemoScalar("SELECT Text FROM Movements WHERE Amount = -2000.0 AND AccountID = (SELECT ID FROM "
                      "Accounts WHERE Code = '1530');",
                      "Text")),
      "Abschreibung Fahrzeuge 1. Quartal");
}

}  // namespace
}  // namespace ldg::cli
