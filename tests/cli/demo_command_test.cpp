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
  // What the demo printed from its chart's heading on.
  static std::string ChartPart(const std::string& out) {
    const auto heading = out.find("Chart of accounts with opening balances:\n\n");
    return heading == std::string::npos ? std::string() : out.substr(heading);
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
      Currency::FromRaw(1400000 * 100));
}

TEST_F(DemoCommandTest, ASecondRunReplacesTheFileAndShowsTheSameChart) {
  const std::string first = ChartPart(RunDemo());
  const std::string second = ChartPart(RunDemo());
  ASSERT_FALSE(first.empty());
  EXPECT_EQ(second, first);
  EXPECT_EQ(CLng(DemoScalar("SELECT Count(*) AS N FROM Accounts;", "N")), 41);
}

}  // namespace
}  // namespace ldg::cli
