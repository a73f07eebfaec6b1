#include "cli/demo_chart.hpp"

#include <memory>

#include "accounts/account.hpp"
#include "support/currency.hpp"
#include "support/variant.hpp"

namespace ldg::cli {

namespace {

constexpr bool kDebit = true;
constexpr bool kCredit = false;

NewAccount NewAccountOf(const DemoAccount& row) {
  NewAccount account;
  account.relationship = lgrAccRelChild;
  account.code = Variant(row.code);
  account.name = Variant(row.name);
  account.is_sum = row.node == DemoNode::kSum;
  account.is_master = row.node == DemoNode::kMaster;
  account.is_debit = row.is_debit;
  return account;
}

}  // namespace

const std::vector<DemoAccount>& DemoChart() {
  using enum DemoNode;
  static const std::vector<DemoAccount> kChart = {
      {"A", "1", "Aktiven", kSum, kDebit, 0},
      {"1", "10", "Umlaufvermögen", kSum, kDebit, 0},
      {"10", "1000", "Kasse", kAccount, kDebit, 2'500'00},
      {"10", "1020", "Bank", kAccount, kDebit, 84'350'40},
      {"10", "1100", "Forderungen aus Lieferungen und Leistungen", kMaster, kDebit, 0},
      {"1100", "11001", "Bäckerei Brunner GmbH", kDetail, kDebit, 4'200'00},
      {"1100", "11002", "Garage Keller AG", kDetail, kDebit, 7'850'00},
      {"1100", "11003", "Praxis Dr. Meier", kDetail, kDebit, 1'950'00},
      {"10", "1170", "Vorsteuer MWST", kAccount, kDebit, 1'230'50},
      {"10", "1200", "Vorräte", kAccount, kDebit, 12'000'00},
      {"1", "14", "Anlagevermögen", kSum, kDebit, 0},
      {"14", "1500", "Maschinen und Apparate", kAccount, kDebit, 18'000'00},
      {"14", "1520", "Büromobiliar", kAccount, kDebit, 9'500'00},
      {"14", "1530", "Fahrzeuge", kAccount, kDebit, 32'000'00},
      {"A", "2", "Passiven", kSum, kCredit, 0},
      {"2", "20", "Fremdkapital", kSum, kCredit, 0},
      {"20", "2000", "Verbindlichkeiten aus Lieferungen und Leistungen", kMaster, kCredit, 0},
      {"2000", "20001", "Papeterie am Limmatquai AG", kDetail, kCredit, -1'840'00},
      {"2000", "20002", "Elektro Huber AG", kDetail, kCredit, -3'260'00},
      {"20", "2200", "Geschuldete MWST", kAccount, kCredit, -6'480'90},
      {"20", "2450", "Darlehen", kAccount, kCredit, -40'000'00},
      {"2", "28", "Eigenkapital", kSum, kCredit, 0},
      {"28", "2800", "Aktienkapital", kAccount, kCredit, -100'000'00},
      {"28", "2900", "Gewinnvortrag", kAccount, kCredit, -22'000'00},
      {"B", "3", "Betriebsertrag", kSum, kCredit, 0},
      {"3", "3200", "Handelserlöse", kAccount, kCredit, 0},
      {"3", "3400", "Dienstleistungserlöse", kAccount, kCredit, 0},
      {"B", "4", "Materialaufwand", kSum, kDebit, 0},
      {"4", "4200", "Einkauf Handelswaren", kAccount, kDebit, 0},
      {"B", "5", "Personalaufwand", kSum, kDebit, 0},
      {"5", "5000", "Lohnaufwand", kAccount, kDebit, 0},
      {"5", "5700", "Sozialversicherungsaufwand AHV/IV/EO", kAccount, kDebit, 0},
      {"B", "6", "Übriger betrieblicher Aufwand", kSum, kDebit, 0},
      {"6", "6000", "Raumaufwand", kAccount, kDebit, 0},
      {"6", "6500", "Verwaltungsaufwand", kAccount, kDebit, 0},
      {"6", "6800", "Abschreibungen", kAccount, kDebit, 0},
      {"B", "8", "Ausserordentlicher Erfolg", kSum, kDebit, 0},
      {"8", "8500", "Ausserordentlicher Aufwand", kAccount, kDebit, 0},
      {"8", "8510", "Ausserordentlicher Ertrag", kAccount, kCredit, 0},
  };
  return kChart;
}

void AddDemoChart(Accounts& accounts) {
  for (const DemoAccount& row : DemoChart()) {
    const int32_t parent_id = accounts.Item(Variant(row.parent_code))->ID();
    std::shared_ptr<Account> account = accounts.Add(parent_id, NewAccountOf(row));
    if (row.opening_rappen != 0) {
      account->OpeningBalance(Currency::FromRaw(row.opening_rappen * 100));
      account->Update();
    }
  }
}

}  // namespace ldg::cli
