// Account groups: the collection read at open, its lookups, and one group with
// its stored values and its members.
#include "accounts/accounts_groups.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "accounts/account.hpp"
#include "accounts/accounts_group.hpp"
#include "store/store_error.hpp"
#include "store/workspace.hpp"
#include "support/keys.hpp"
#include "tests/accounts/collections_fixture.hpp"

namespace ldg {
namespace {

using chart_testing::ErrorOf;
using chart_testing::CashAndBankTest;

class AccountsGroupsTest : public CashAndBankTest {
 protected:
  // A row written straight into AccountsGroups; Null for an empty system code.
  int32_t InsertGroup(const std::string& name, const std::string& system_code = "",
                      const std::string& description = "") {
    auto table = Db().OpenRecordset("AccountsGroups", store::dbOpenTable);
    table->AddNew();
    const int32_t id = CLng(table->Value("ID"));
    table->Value("Name", Variant(name));
    if (!system_code.empty()) table->Value("SystemCode", Variant(system_code));
    if (!description.empty()) table->Value("Description", Variant(description));
    table->Update();
    table->Close();
    return id;
  }

  void InsertAssignment(int32_t group_id, int32_t account_id) {
    auto table = Db().OpenRecordset("AccountsGroupAssignements", store::dbOpenTable);
    table->AddNew();
    table->Value("AccountGroupID", Variant(group_id));
    table->Value("AccountID", Variant(account_id));
    table->Update();
    table->Close();
  }

  std::shared_ptr<AccountsGroups> ReadGroups() {
    auto groups = std::make_shared<AccountsGroups>();
    groups->Refresh();
    return groups;
  }

  Variant GroupColumn(int32_t id, const std::string& column) {
    return Scalar("SELECT " + column + " FROM AccountsGroups WHERE ID = " + std::to_string(id) + ";", column);
  }

  int32_t AssignmentsOf(int32_t account_id) {
    return CLng(Scalar("SELECT Count(*) AS N FROM AccountsGroupAssignements WHERE AccountID = " +
                           std::to_string(account_id) + ";",
                       "N"));
  }
};

// ---------------------------------------------------------------- the collection

TEST_F(AccountsGroupsTest, RefreshReadsTheGroupsInNameOrder) {
  const int32_t second = InsertGroup("Zahlungsmittel");
  const int32_t first = InsertGroup("Anlagen");
  auto groups = ReadGroups();
  ASSERT_EQ(groups->Count(), 2);
  EXPECT_EQ(groups->Item(Variant(int32_t{1}))->ID(), first);
  EXPECT_EQ(groups->Item(Variant(int32_t{2}))->ID(), second);
}

TEST_F(AccountsGroupsTest, RefreshReadsSystemCodeAndDescription) {
  const int32_t id = InsertGroup("Bank", "lgrBank", "Alle Banken");
  auto group = ReadGroups()->Item(BuildKey(id));
  EXPECT_EQ(CStr(group->SystemCode()), "lgrBank");
  EXPECT_EQ(CStr(group->Description()), "Alle Banken");
}

// Deliberate: Refresh doesn't read Name.
TEST_F(AccountsGroupsTest, AfterRefreshTheNameOfEveryGroupIsEmpty) {
  InsertGroup("Bank");
  InsertGroup("Kasse");
  auto groups = ReadGroups();
  ASSERT_EQ(groups->Count(), 2);
  for (const auto& [key, group] : *groups) EXPECT_TRUE(group->Name().IsEmpty()) << key;
}

TEST_F(AccountsGroupsTest, AGroupMadeWithAddKeepsItsName) {
  InsertGroup("Kasse");
  auto groups = ReadGroups();
  auto added = groups->Add(Variant("Bank"), Variant("Alle Banken"), Variant("lgrBank"));
  EXPECT_EQ(CStr(added->Name()), "Bank");
  EXPECT_EQ(groups->Count(), 2);
  EXPECT_EQ(groups->Item(BuildKey(added->ID())), added);
  EXPECT_EQ(CStr(GroupColumn(added->ID(), "Name")), "Bank");
  EXPECT_EQ(CStr(GroupColumn(added->ID(), "Description")), "Alle Banken");
  EXPECT_EQ(CStr(GroupColumn(added->ID(), "SystemCode")), "lgrBank");
}

TEST_F(AccountsGroupsTest, AddWritesAMissingDescriptionAndSystemCodeAsNull) {
  auto group = ReadGroups()->Add(Variant("Bank"));
  EXPECT_GT(group->ID(), 0);
  EXPECT_TRUE(GroupColumn(group->ID(), "Description").IsNull());
  EXPECT_TRUE(GroupColumn(group->ID(), "SystemCode").IsNull());
}

// Deliberate: a second Refresh adds the same keys again.
TEST_F(AccountsGroupsTest, ASecondRefreshFailsOnTheDuplicateKey) {
  InsertGroup("Bank");
  auto groups = ReadGroups();
  const Error error = ErrorOf([&] { groups->Refresh(); });
  EXPECT_EQ(error.Number(), 457);
  EXPECT_EQ(error.Description(), "This key is already associated with an element of this collection");
}

TEST_F(AccountsGroupsTest, ItemWithAKeyFindsTheGroupOfThatIdAndWithDigitsThePosition) {
  // Names in the opposite order of the ids: the 17th by name is the one of the second id.
  int32_t ids[18];
  for (int i = 0; i < 18; ++i) ids[i] = InsertGroup("Gruppe " + std::to_string(50 - i));
  ASSERT_EQ(ids[16], 17);
  auto groups = ReadGroups();
  EXPECT_EQ(groups->Item(Variant("ID17"))->ID(), 17);
  EXPECT_EQ(groups->Item(Variant("17"))->ID(), ids[1]);
  EXPECT_EQ(groups->Item(Variant(int32_t{17}))->ID(), ids[1]);
}

TEST_F(AccountsGroupsTest, ItemWithASystemCodeFindsItsGroup) {
  InsertGroup("Kasse", "lgrCash");
  const int32_t bank = InsertGroup("Bank", "lgrBank");
  EXPECT_EQ(ReadGroups()->Item(Variant("lgrBank"))->ID(), bank);
}

// Deliberate: the message text stands where the number belongs.
TEST_F(AccountsGroupsTest, ASystemCodeThatDoesNotExistIsATypeMismatchNotMessage1217) {
  InsertGroup("Bank", "lgrBank");
  const Error error = ErrorOf([&] { ReadGroups()->Item(Variant("lgrUnknown")); });
  EXPECT_EQ(error.Number(), 13);
  EXPECT_EQ(error.Description(), "Type mismatch");
  EXPECT_NE(error.Number(), static_cast<int32_t>(0x800404C1u));
}

// Deliberate: the number of message 1215 with the text of message 1130.
TEST_F(AccountsGroupsTest, AnUnknownKeyRaisesTheGroupNumberWithTheTaxText) {
  InsertGroup("Bank");
  const Error error = ErrorOf([&] { ReadGroups()->Item(Variant("ID99")); });
  EXPECT_EQ(error.Number(), static_cast<int32_t>(0x800404BFu));
  EXPECT_EQ(error.Description(), "No tax with ID=99 could be found!");
  EXPECT_EQ(error.Source(), "ldg");
}

TEST_F(AccountsGroupsTest, APositionOutsideOneToCountIsSubscriptOutOfRange) {
  InsertGroup("Bank");
  auto groups = ReadGroups();
  for (const Variant& value : {Variant("0"), Variant("2"), Variant(int32_t{5}), Variant("abc")}) {
    const Error error = ErrorOf([&] { groups->Item(value); });
    EXPECT_EQ(error.Number(), 9);
    EXPECT_EQ(error.Description(), "Subscript out of range");
  }
}

TEST_F(AccountsGroupsTest, ADuplicateSystemCodeSurfacesAsTheStoresOwnError) {
  InsertGroup("Bank", "lgrBank");
  auto groups = ReadGroups();
  const Error error = ErrorOf([&] { groups->Add(Variant("Bank 2"), Variant(), Variant("lgrBank")); });
  EXPECT_EQ(error.Number(), store::kErrDuplicate);
  EXPECT_EQ(error.Description(), store::StoreErrorText(store::kErrDuplicate));
  EXPECT_EQ(groups->Count(), 1);
  EXPECT_EQ(CLng(Scalar("SELECT Count(*) AS N FROM AccountsGroups;", "N")), 1);
  EXPECT_EQ(State().workspace->TransactionLevel(), 0);
}

// ---------------------------------------------------------------- one group

TEST_F(AccountsGroupsTest, UpdateOfAGroupFromTheTableLeavesTheNameColumnAlone) {
  const int32_t id = InsertGroup("Bank", "lgrBank", "alt");
  auto group = ReadGroups()->Item(BuildKey(id));
  group->Description(Variant("neu"));
  group->Update();
  EXPECT_EQ(CStr(GroupColumn(id, "Name")), "Bank");
  EXPECT_EQ(CStr(GroupColumn(id, "Description")), "neu");
  EXPECT_EQ(CStr(GroupColumn(id, "SystemCode")), "lgrBank");
}

TEST_F(AccountsGroupsTest, UpdateWritesANameThatWasSetAfterRefresh) {
  const int32_t id = InsertGroup("Bank");
  auto group = ReadGroups()->Item(BuildKey(id));
  group->Name(Variant("Banken"));
  group->Update();
  EXPECT_EQ(CStr(GroupColumn(id, "Name")), "Banken");
}

TEST_F(AccountsGroupsTest, UpdateWithoutChangesWritesNothing) {
  const int32_t id = InsertGroup("Bank", "lgrBank", "alt");
  auto group = ReadGroups()->Item(BuildKey(id));
  Db().Execute("UPDATE AccountsGroups SET Description = 'anders' WHERE ID = " + std::to_string(id) + ";");
  group->Update();
  EXPECT_EQ(CStr(GroupColumn(id, "Description")), "anders");
}

TEST_F(AccountsGroupsTest, AnApostropheInAValueFailsWithSyntaxErrorBeforeAnyWrite) {
  const int32_t id = InsertGroup("Bank", "lgrBank", "alt");
  auto group = ReadGroups()->Item(BuildKey(id));
  group->SystemCode(Variant("lgrNeu"));
  group->Description(Variant("Mc'Bank"));
  const Error error = ErrorOf([&] { group->Update(); });
  EXPECT_EQ(error.Number(), 3075);
  EXPECT_EQ(error.Description(), "Syntax error (missing operator) in query expression.");
  EXPECT_EQ(CStr(GroupColumn(id, "SystemCode")), "lgrBank");
  EXPECT_EQ(CStr(GroupColumn(id, "Description")), "alt");
  EXPECT_EQ(State().workspace->TransactionLevel(), 0);
}

TEST_F(AccountsGroupsTest, AnApostropheInANewGroupIsStoredAsGiven) {
  auto group = ReadGroups()->Add(Variant("Mc'Bank"));
  EXPECT_EQ(CStr(GroupColumn(group->ID(), "Name")), "Mc'Bank");
}

TEST_F(AccountsGroupsTest, MembersAreReadAtTheirFirstUse) {
  const int32_t id = InsertGroup("Liquide Mittel");
  InsertAssignment(id, cash_);
  InsertAssignment(id, bank_);
  auto group = ReadGroups()->Item(BuildKey(id));
  ASSERT_EQ(group->Count(), 2);
  EXPECT_EQ(group->Item(1)->ID(), cash_);
  EXPECT_EQ(group->Item(2)->ID(), bank_);
}

TEST_F(AccountsGroupsTest, AppendWritesTheAssignmentAndAddsTheMember) {
  auto group = ReadGroups()->Add(Variant("Liquide Mittel"));
  group->Append(bank_);
  EXPECT_EQ(group->Count(), 1);
  EXPECT_EQ(group->Item(1)->ID(), bank_);
  EXPECT_EQ(CLng(Scalar("SELECT AccountGroupID FROM AccountsGroupAssignements WHERE AccountID = " +
                            std::to_string(bank_) + ";",
                        "AccountGroupID")),
            group->ID());
}

TEST_F(AccountsGroupsTest, AppendingAMemberTwiceWritesTheRowThenFailsOnTheKey) {
  auto group = ReadGroups()->Add(Variant("Liquide Mittel"));
  group->Append(bank_);
  const Error error = ErrorOf([&] { group->Append(bank_); });
  EXPECT_EQ(error.Number(), 457);
  EXPECT_EQ(AssignmentsOf(bank_), 2);
  EXPECT_EQ(group->Count(), 1);
}

TEST_F(AccountsGroupsTest, ItemOutsideTheMembersIsSubscriptOutOfRange) {
  auto group = ReadGroups()->Add(Variant("Liquide Mittel"));
  group->Append(bank_);
  for (const int32_t index : {0, 2}) {
    const Error error = ErrorOf([&] { group->Item(index); });
    EXPECT_EQ(error.Number(), 9);
    EXPECT_EQ(error.Description(), "Subscript out of range");
  }
}

// Deliberate: the delete names no group.
TEST_F(AccountsGroupsTest, RemoveOfAnAccountThatIsInTwoGroupsRemovesBothRows) {
  const int32_t liquid = InsertGroup("Liquide Mittel");
  const int32_t banks = InsertGroup("Banken");
  InsertAssignment(liquid, bank_);
  InsertAssignment(liquid, cash_);
  InsertAssignment(banks, bank_);
  auto groups = ReadGroups();
  auto liquid_group = groups->Item(BuildKey(liquid));
  auto banks_group = groups->Item(BuildKey(banks));
  ASSERT_EQ(banks_group->Count(), 1);
  liquid_group->Remove(bank_);
  EXPECT_EQ(AssignmentsOf(bank_), 0);
  EXPECT_EQ(AssignmentsOf(cash_), 1);
  EXPECT_EQ(liquid_group->Count(), 1);
  EXPECT_EQ(banks_group->Count(), 1);  // kept in memory until the groups are read again
}

TEST_F(AccountsGroupsTest, RemoveOfAnAccountThatIsNoMemberIsAnInvalidCallAndDeletesNothing) {
  const int32_t liquid = InsertGroup("Liquide Mittel");
  const int32_t banks = InsertGroup("Banken");
  InsertAssignment(banks, bank_);
  auto group = ReadGroups()->Item(BuildKey(liquid));
  const Error error = ErrorOf([&] { group->Remove(bank_); });
  EXPECT_EQ(error.Number(), 5);
  EXPECT_EQ(error.Description(), "Invalid procedure call or argument");
  EXPECT_EQ(AssignmentsOf(bank_), 1);
}

TEST_F(AccountsGroupsTest, TheEngineReadsTheGroupsWhenItOpensADatabase) {
  ASSERT_NE(engine_->AccountsGroups(), nullptr);
  EXPECT_EQ(engine_->AccountsGroups()->Count(), 0);
  InsertGroup("Bank", "lgrBank");
  const Variant path(PathOf("chart2026.qdb6f"));
  engine_->CloseDatabase();
  engine_->OpenDatabase(path);
  ASSERT_NE(engine_->AccountsGroups(), nullptr);
  EXPECT_EQ(engine_->AccountsGroups()->Count(), 1);
  EXPECT_TRUE(engine_->AccountsGroups()->Item(Variant("lgrBank"))->Name().IsEmpty());
}

}  // namespace
}  // namespace ldg
