// The heart of the system in one run: a fresh year file, a small chart, opening
// balances, one simple entry typed with both automatisms on, balances now and
// at dates, a run of definitive posting, then reopening, a period lock and a
// storno. Every step goes through the public classes, none through the store.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "accounts/account.hpp"
#include "accounts/accounts.hpp"
#include "bookkeeping/book_entries.hpp"
#include "bookkeeping/book_entry.hpp"
#include "bookkeeping/definitive_sets.hpp"
#include "bookkeeping/journal.hpp"
#include "bookkeeping/journals.hpp"
#include "bookkeeping/movement.hpp"
#include "bookkeeping/movements.hpp"
#include "bookkeeping/periods2.hpp"
#include "support/conversions.hpp"
#include "support/messages.hpp"
#include "tests/bookkeeping/book_entries_fixture.hpp"

namespace ldg {
namespace {

using balance_testing::Amount;
using balance_testing::Describe;
using balance_testing::Expected;
using balance_testing::ExpectedMessage;
using book_entry_testing::RecordingCallback;
using chart_testing::Date;
using chart_testing::ErrorOf;

class AmountChanges : public BookEntryEvents {
 public:
  void AmountChanged(int32_t internal_id) override { internal_ids.push_back(internal_id); }
  std::vector<int32_t> internal_ids;
};

class CreatedAccounts : public AccountsEvents {
 public:
  void Created(std::shared_ptr<Account>& account) override { codes.push_back(CStr(account->Code())); }
  std::vector<std::string> codes;
};

class EndToEndTest : public chart_testing::OpenChartTest {
 protected:
  void SetUp() override {
    OpenChartTest::SetUp();
    path_ = PathOf("heart2024.qdb6f");
    engine_->CreateDatabase(Variant(path_), Variant(Date(2024, 1, 1)), Variant(Date(2024, 12, 31)));
    engine_->Callback(std::shared_ptr<Callback>(&callback_, [](Callback*) {}));
  }
  void TearDown() override {
    engine_->Callback(nullptr);
    OpenChartTest::TearDown();
  }

  Accounts& Chart() { return *engine_->Accounts(); }
  BookEntries& Entries() { return *engine_->BookEntries(); }
  // A fresh object for every read, as a caller that doesn't keep accounts would get.
  std::shared_ptr<Account> Fresh(const std::string& code) { return Chart().Item(Variant(code)); }
  std::shared_ptr<Account> FreshByID(int32_t id) { return Chart().Item(Variant(id)); }

  std::shared_ptr<Account> AddAccount(int32_t parent_id, const std::string& code, const std::string& name,
                                      bool is_sum = false) {
    NewAccount options;
    options.relationship = lgrAccRelChild;
    options.code = Variant(code);
    options.name = Variant(name);
    if (is_sum) options.is_sum = true;
    return Chart().Add(parent_id, options);
  }

  void SetOpeningBalance(const std::string& code, const char* amount) {
    auto account = Fresh(code);
    account->OpeningBalance(Amount(amount));
    account->Update();
  }

  // The stored balances that the entry of the run leaves behind.
  void ExpectPostedBalances() {
    EXPECT_EQ(Fresh("1000")->Balance(), Amount("1500"));
    EXPECT_EQ(Fresh("3200")->Balance(), Amount("-1000"));
    EXPECT_EQ(Fresh("2800")->Balance(), Amount("-500"));
    EXPECT_EQ(Fresh("1030")->Balance(), Amount("0"));
    EXPECT_EQ(Fresh("2200")->Balance(), Amount("0"));
  }

  std::string path_;
  RecordingCallback callback_;
};

TEST_F(EndToEndTest, TheHeartWorks) {
  // ---- A fresh file: its year, journal, period and class roots.
  EXPECT_EQ(engine_->User(), Variant("Admin"));
  EXPECT_EQ(CDate(engine_->YearBeginn()), Date(2024, 1, 1));
  EXPECT_EQ(CDate(engine_->YearEnd()), Date(2024, 12, 31));
  EXPECT_EQ(CLng(engine_->YearID()), 1);
  EXPECT_EQ(CLng(engine_->YearStatusID()), 1);
  EXPECT_EQ(engine_->YearStatus(), Variant("Aktiv"));
  ASSERT_EQ(engine_->Journals()->Count(), 1);
  auto journal = engine_->Journals()->Item(Variant(int32_t{1}));
  EXPECT_EQ(CLng(journal->Code()), 1);
  EXPECT_EQ(journal->Name(), Variant("Journal"));
  EXPECT_EQ(journal->ID(), 1);
  Periods2& periods = *engine_->Periods2();
  ASSERT_EQ(periods.Count(), 1);
  EXPECT_EQ(periods.DateFrom(Variant(int32_t{1})), Date(2024, 1, 1));
  EXPECT_EQ(periods.DateTo(Variant(int32_t{1})), Date(2024, 12, 31));
  EXPECT_EQ(periods.LockingState(Variant(int32_t{1})), 0);
  EXPECT_EQ(FreshByID(0)->Name(), Variant("Finanzbuchhaltung"));
  EXPECT_EQ(FreshByID(1)->Code(), Variant("A"));
  EXPECT_EQ(FreshByID(2)->Code(), Variant("B"));
  EXPECT_EQ(engine_->OpeningBalance(), Amount("0"));

  // ---- The chart: each account announced once.
  CreatedAccounts created;
  Chart().AddListener(&created);
  const int32_t assets = AddAccount(1, "1", "Aktiven", true)->ID();
  const int32_t k1000 = AddAccount(assets, "1000", "Kasse")->ID();
  const int32_t b1030 = AddAccount(assets, "1030", "Bank EUR")->ID();
  const int32_t m2200 = AddAccount(1, "2200", "Geschuldete MWST")->ID();
  const int32_t e2800 = AddAccount(1, "2800", "Eigenkapital")->ID();
  const int32_t r3200 = AddAccount(2, "3200", "Warenertrag")->ID();
  AddAccount(2, "6940", "Kursverlust");
  AddAccount(2, "6950", "Kursgewinn");
  Chart().RemoveListener(&created);
  EXPECT_EQ(created.codes,
            (std::vector<std::string>{"1", "1000", "1030", "2200", "2800", "3200", "6940", "6950"}));
  EXPECT_EQ(assets, 3);
  EXPECT_EQ(k1000, 4);
  EXPECT_EQ(b1030, 5);
  EXPECT_EQ(m2200, 6);
  EXPECT_EQ(e2800, 7);
  EXPECT_EQ(r3200, 8);
  EXPECT_EQ(Fresh("1000")->Class(), 1);
  EXPECT_EQ(Fresh("3200")->Class(), 2);
  EXPECT_EQ(Fresh("1")->Kind(), 1);
  EXPECT_EQ(Fresh("1000")->Kind(), 2);
  EXPECT_TRUE(Fresh("1000")->IsGeneralLedger());
  EXPECT_EQ(Fresh("1000")->MasterID(), 0);
  std::vector<std::string> children;
  for (const auto& child : FreshByID(1)->Children()) children.push_back(CStr(child->Code()));
  EXPECT_EQ(children, (std::vector<std::string>{"1", "2200", "2800"}));

  // ---- Opening balances.
  SetOpeningBalance("1000", "500");
  SetOpeningBalance("2800", "-500");
  EXPECT_EQ(Fresh("1000")->Balance(), Amount("500"));
  EXPECT_EQ(Fresh("2800")->Balance(), Amount("-500"));
  EXPECT_EQ(engine_->OpeningBalance(), Amount("0"));

  // ---- One simple entry typed with both automatisms on.
  auto entry = std::make_shared<BookEntry>();
  AmountChanges changes;
  entry->AddListener(&changes);
  entry->JournalID(1);
  entry->EntryDate(Variant(Date(2024, 3, 15)));
  entry->DocumentID(Variant(int32_t{1}));
  entry->TaxAutomatismActive(true);
  entry->BalancingAutomatismActive(true);
  auto m1 = entry->Movements().Add();
  auto m2 = entry->Movements().Add();
  EXPECT_EQ(m1->InternalID(), 1);
  EXPECT_EQ(m2->InternalID(), 2);
  m1->Account(Fresh("1000"));
  m2->Account(Fresh("3200"));
  m1->Text(Variant("Verkauf Ware"));
  m2->Amount(Amount("-1000"));
  EXPECT_EQ(entry->Movements().Count(), 2);
  EXPECT_EQ(entry->Movements().Balance(), Amount("0"));
  EXPECT_EQ(changes.internal_ids, std::vector<int32_t>{2});
  EXPECT_EQ(m1->Amount(), Amount("1000"));
  EXPECT_EQ(m1->BalancingAccountID(), r3200);
  EXPECT_EQ(m2->BalancingAccountID(), k1000);
  EXPECT_EQ(m2->Text(), Variant("Verkauf Ware"));
  EXPECT_TRUE(m1->FCID().IsNull());
  EXPECT_TRUE(m2->TaxID().IsNull());
  entry->RemoveListener(&changes);

  Entries().Append(*entry);
  EXPECT_EQ(entry->ID(), 1);
  EXPECT_EQ(m1->ID(), 1);
  EXPECT_EQ(m2->ID(), 2);
  EXPECT_EQ(Scalar("SELECT DocumentID FROM BookEntries WHERE ID = 1;", "DocumentID"),
            Variant("00000000000001"));
  EXPECT_TRUE(Scalar("SELECT Definitive FROM BookEntries WHERE ID = 1;", "Definitive").IsNull());
  EXPECT_EQ(CLng(Scalar("SELECT DefinitiveJournal FROM BookEntries WHERE ID = 1;", "DefinitiveJournal")), 1);
  EXPECT_EQ(CLng(Scalar("SELECT BalancingAccountID FROM Movements WHERE ID = 1;", "BalancingAccountID")),
            r3200);
  EXPECT_EQ(CLng(Scalar("SELECT BalancingAccountID FROM Movements WHERE ID = 2;", "BalancingAccountID")),
            k1000);
  ExpectPostedBalances();
  EXPECT_EQ(Entries().Count(), 1);
  EXPECT_EQ(Entries().Item(Variant("00000000000001"))->ID(), 1);
  EXPECT_EQ(Entries().GetIDUsingDocID("1"), 1);
  EXPECT_EQ(CDbl(Entries().GetNextNumericDocID()), 2.0);

  // ---- Balances now and at dates: the tree first, then the dated sums.
  EXPECT_EQ(Fresh("1")->BalanceWithChildrens(), Amount("1500"));
  EXPECT_EQ(FreshByID(1)->BalanceWithChildrens(), Amount("1000"));
  EXPECT_EQ(FreshByID(2)->BalanceWithChildrens(), Amount("-1000"));
  EXPECT_EQ(Fresh("1000")->BalanceAtDate(Date(2023, 12, 31)), Amount("500"));
  EXPECT_EQ(Fresh("1030")->BalanceAtDate(Date(2023, 12, 31)), Amount("0"));
  EXPECT_EQ(Fresh("1000")->BalanceAtDate(Date(2024, 3, 14)), Amount("500"));
  EXPECT_EQ(Fresh("1000")->BalanceAtDate(Date(2024, 3, 31)), Amount("1500"));
  EXPECT_EQ(Fresh("3200")->BalanceAtDate(Date(2024, 12, 31)), Amount("-1000"));
  EXPECT_EQ(Fresh("1")->BalanceAtDate(Date(2024, 3, 14)), Amount("500"));
  EXPECT_EQ(FreshByID(1)->BalanceAtDate(Date(2024, 3, 31)), Amount("1000"));
  EXPECT_EQ(FreshByID(2)->BalanceAtDate(Date(2024, 3, 31)), Amount("-1000"));
  EXPECT_EQ(ErrorOf([&] { Fresh("1000")->BalanceAtDate(Date(2023, 12, 30)); }).Number(), MessageNumber(1161));
  EXPECT_EQ(ErrorOf([&] { Fresh("1")->FCBalanceAtDate(Date(2024, 3, 31)); }).Number(), MessageNumber(1188));

  // ---- A run of definitive posting.
  EXPECT_EQ(Entries().DoDefinitive(), 1);
  DefinitiveSets& sets = *Entries().DefinitiveSets();
  ASSERT_EQ(sets.Count(), 1);
  const auto set = sets.Item(Variant(int32_t{1}));
  EXPECT_EQ(set->Number(), 1);
  EXPECT_EQ(set->User(), "Admin");
  EXPECT_EQ(set->TransactionDate(), DefinitiveRunDate());
  EXPECT_TRUE(set->BeginnDate().IsNull());
  EXPECT_TRUE(set->EndDate().IsNull());
  EXPECT_FALSE(set->UsersEntriesOnly());
  EXPECT_EQ(CLng(Scalar("SELECT Definitive FROM BookEntries WHERE ID = 1;", "Definitive")), set->ID());
  EXPECT_EQ(callback_.actions, std::vector<std::string>{"DoneDefinitive=1"});
  auto definitive = Entries().Item(Variant("ID1"));
  EXPECT_TRUE(definitive->Definitive());
  EXPECT_EQ(Describe(ErrorOf([&] { definitive->Update(); })),
            ExpectedMessage(
                1170, "Book entry is permanently locked. Illegal call of method Append or Update failed."));
  EXPECT_EQ(Describe(ErrorOf([&] { definitive->Delete(); })),
            ExpectedMessage(1206, "Book entry is definitive and can not be deleted!"));
  EXPECT_EQ(Describe(ErrorOf([&] { definitive->Definitive(false); })),
            ExpectedMessage(1219,
                            "The book entry is definitive. The definitive state of a book entry cannot be "
                            "undone."));
  EXPECT_EQ(Describe(ErrorOf([&] { Entries().DoDefinitive(); })),
            ExpectedMessage(1187, "No book entries selected to be done definitive!"));
  EXPECT_EQ(sets.Count(), 1);
  EXPECT_EQ(Entries().DateRangeCount(Variant(true)), 1);
  EXPECT_EQ(Entries().DateRangeCount(Variant(false)), 0);
  journal->ChangeLock(lgrJLMLockPermanently);
  EXPECT_TRUE(CBool(journal->LockedPermanently()));
  EXPECT_FALSE(CBool(journal->Locked()));
  ExpectPostedBalances();

  // ---- The file read again.
  engine_->CloseDatabase();
  engine_->OpenDatabase(Variant(path_));
  ExpectPostedBalances();
  auto reread = Entries().Item(Variant("ID1"));
  EXPECT_TRUE(reread->Definitive());
  ASSERT_EQ(reread->Movements().Count(), 2);
  EXPECT_EQ(reread->Movements().Item(Variant(int32_t{1}))->Amount(), Amount("1000"));
  EXPECT_EQ(reread->Movements().Item(Variant(int32_t{2}))->Text(), Variant("Verkauf Ware"));
  EXPECT_TRUE(CBool(engine_->Journals()->Item(Variant(int32_t{1}))->LockedPermanently()));

  // ---- A locked period refuses an entry; a permanent lock of the journal doesn't.
  Periods2& reopened_periods = *engine_->Periods2();
  ASSERT_TRUE(reopened_periods.Add(Date(2024, 4, 1)));
  reopened_periods.Locked(Variant(Date(2024, 3, 15)), true);
  auto late = std::make_shared<BookEntry>();
  late->JournalID(1);
  late->EntryDate(Variant(Date(2024, 3, 20)));
  late->BalancingAutomatismActive(true);
  late->Movements().Add()->Account(Fresh("1000"));
  late->Movements().Add()->Account(Fresh("3200"));
  late->Movements().Item(Variant(int32_t{1}))->Amount(Amount("20"));
  EXPECT_EQ(Describe(ErrorOf([&] { Entries().Append(*late); })),
            Expected(static_cast<int32_t>(0x800404CBu), "ldg", "Periode ist gesperrt!"));
  EXPECT_EQ(late->ID(), 0);
  ExpectPostedBalances();
  reopened_periods.Locked(Variant(Date(2024, 3, 15)), false);

  // ---- The storno of the definitive entry needs a journal, then takes everything back.
  auto storno = Entries().Item(Variant("ID1"))->Cancel();
  ASSERT_TRUE(storno);
  EXPECT_EQ(storno->JournalID(), 0);
  EXPECT_EQ(storno->Movements().Item(Variant(int32_t{1}))->Amount(), Amount("-1000"));
  EXPECT_EQ(storno->Movements().Item(Variant(int32_t{2}))->Amount(), Amount("1000"));
  EXPECT_EQ(storno->Movements().Item(Variant(int32_t{1}))->Text(), Variant("Storno, siehe Beleg 1"));
  EXPECT_EQ(Describe(ErrorOf([&] { Entries().Append(*storno); })),
            ExpectedMessage(1166, "Journal not found!"));
  storno->JournalID(1);
  Entries().Append(*storno);
  EXPECT_EQ(storno->ID(), 2);
  EXPECT_EQ(Fresh("1000")->Balance(), Amount("500"));
  EXPECT_EQ(Fresh("3200")->Balance(), Amount("0"));
  EXPECT_EQ(FreshByID(1)->BalanceWithChildrens(), Amount("0"));
  EXPECT_EQ(Entries().Count(), 2);
  EXPECT_EQ(Entries().DateRangeCount(Variant(false)), 1);
}

}  // namespace
}  // namespace ldg
