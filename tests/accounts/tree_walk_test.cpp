#include "accounts/tree_walk.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "engine/engine_state.hpp"
#include "support/error.hpp"
#include "tests/accounts/open_chart_fixture.hpp"
#include "tests/store/store_fixture.hpp"

namespace ldg {
namespace {

using store::FieldType;
using store::testing::ErrorNumberOf;
using store::testing::ErrorTextOf;

// A table "Tree" of its own in a scratch database that is also the engine's current database, so
// that the child count reads the same rows as the walk.
class TreeWalkTest : public store::testing::StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    MakeTree(*db_);
    State().database = db_;
    walk_.Database(db_);
    walk_.TableName("Tree");
    walk_.TextName("Name");
  }
  void TearDown() override {
    State().database.reset();
    StoreTest::TearDown();
  }

  void MakeTree(store::Database& db) {
    MakeTable(db, "Tree",
              {{"ID", FieldType::kLong, 0, "", true},
               {"ParentID", FieldType::kLong},
               {"Key", FieldType::kText, 20},
               {"Name", FieldType::kText, 50},
               {"Hidden", FieldType::kBoolean, 0, "False"}});
  }

  // A row under parent_id (0 for a root, stored as Null); gives its ID.
  int32_t Node(int32_t parent_id, const Variant& key, const std::string& name, bool hidden = false) {
    auto rows = db_->OpenRecordset("Tree", store::dbOpenTable);
    rows->AddNew();
    const int32_t id = rows->Value("ID").AsLong();
    rows->Value("ParentID", parent_id == 0 ? Variant::Null() : Variant(parent_id));
    rows->Value("Key", key);
    rows->Value("Name", Variant(name));
    rows->Value("Hidden", Variant(hidden));
    rows->Update();
    rows->Close();
    return id;
  }

  // R(1) with A(10: A1 11, A2 12), B(20) and C(30: C1 31).
  void MakeSampleTree() {
    r_ = Node(0, Variant("1"), "R");
    a_ = Node(r_, Variant("10"), "A");
    a1_ = Node(a_, Variant("11"), "A1");
    a2_ = Node(a_, Variant("12"), "A2");
    b_ = Node(r_, Variant("20"), "B");
    c_ = Node(r_, Variant("30"), "C");
    c1_ = Node(c_, Variant("31"), "C1");
  }

  // One line per visit: name, level, and "+" on the way down, "-" on the way back, "." for a leaf.
  std::string Visit() const {
    const char* kind = walk_.IsSumEnd() ? "-" : (walk_.IsSumBeginn() ? "+" : ".");
    return walk_.Text() + ":" + std::to_string(walk_.Level()) + kind;
  }
  std::vector<std::string> Walk(const std::string& where_start) {
    std::vector<std::string> visits;
    walk_.TreeFirst(where_start);
    while (walk_.ID() > 0 && visits.size() < 50) {
      visits.push_back(Visit());
      walk_.TreeNext();
    }
    return visits;
  }

  TreeWalk walk_;
  int32_t r_ = 0, a_ = 0, a1_ = 0, a2_ = 0, b_ = 0, c_ = 0, c1_ = 0;
};

TEST_F(TreeWalkTest, SettingsHaveTheirDefaults) {
  TreeWalk walk;
  EXPECT_EQ(walk.IdName(), "ID");
  EXPECT_EQ(walk.ParentIDName(), "ParentID");
  EXPECT_EQ(walk.KeyName(), "Key");
  EXPECT_EQ(walk.TextName(), "");
  EXPECT_EQ(walk.Filter(), "");
  EXPECT_EQ(walk.TableName(), "");
  EXPECT_EQ(walk.Database(), nullptr);
}

TEST_F(TreeWalkTest, ALeafIsVisitedOnceAndANodeWithChildrenTwice) {
  MakeSampleTree();
  EXPECT_EQ(Walk("ParentID Is Null"), (std::vector<std::string>{"R:1+", "A:2+", "A1:3.", "A2:3.", "A:2-",
                                                                "B:2.", "C:2+", "C1:3.", "C:2-", "R:1-"}));
}

TEST_F(TreeWalkTest, TheWalkEndsWithIDZero) {
  MakeSampleTree();
  Walk("ParentID Is Null");
  EXPECT_EQ(walk_.ID(), 0);
  EXPECT_EQ(walk_.ParentID(), 0);
  EXPECT_TRUE(walk_.Key().IsNull());
  EXPECT_EQ(walk_.Text(), "");
}

TEST_F(TreeWalkTest, ALeafIsDetailAndANodeWithChildrenIsSum) {
  MakeSampleTree();
  walk_.TreeFirst("ID=" + std::to_string(b_));
  EXPECT_EQ(walk_.ChildrensCount(), 0);
  EXPECT_TRUE(walk_.IsDetail());
  EXPECT_FALSE(walk_.IsSum());
  walk_.TreeFirst("ID=" + std::to_string(r_));
  EXPECT_EQ(walk_.ChildrensCount(), 3);
  EXPECT_TRUE(walk_.IsSum());
  EXPECT_FALSE(walk_.IsDetail());
}

TEST_F(TreeWalkTest, OutlineLevelIsTheLevelOnAClosingVisitAndOneDeeperOtherwise) {
  MakeSampleTree();
  walk_.TreeFirst("ParentID Is Null");
  std::vector<int32_t> outline;
  while (walk_.ID() > 0) {
    outline.push_back(walk_.OutlineLevel());
    walk_.TreeNext();
  }
  EXPECT_EQ(outline, (std::vector<int32_t>{2, 3, 4, 4, 2, 3, 3, 4, 2, 1}));
}

TEST_F(TreeWalkTest, IDParentIDKeyAndParentKeyDescribeTheCurrentRow) {
  MakeSampleTree();
  walk_.TreeFirst("ParentID Is Null");
  EXPECT_EQ(walk_.ID(), r_);
  EXPECT_TRUE(walk_.ParentKey().IsNull());
  walk_.TreeNext();
  walk_.TreeNext();
  EXPECT_EQ(walk_.ID(), a1_);
  EXPECT_EQ(walk_.ParentID(), a_);
  EXPECT_EQ(walk_.Key(), Variant("11"));
  EXPECT_EQ(walk_.ParentKey(), Variant("10"));
}

TEST_F(TreeWalkTest, TextIsEmptyWithoutATextColumn) {
  MakeSampleTree();
  walk_.TextName("");
  walk_.TreeFirst("ParentID Is Null");
  EXPECT_EQ(walk_.ID(), r_);
  EXPECT_EQ(walk_.Text(), "");
}

TEST_F(TreeWalkTest, TreeFirstWithoutARowLeavesIDZero) {
  MakeSampleTree();
  walk_.TreeFirst("ID=9999");
  EXPECT_EQ(walk_.ID(), 0);
  EXPECT_EQ(walk_.Level(), 1);
}

TEST_F(TreeWalkTest, ClearEmptiesTheRowButKeepsTheChildCountAndTheLevel) {
  MakeSampleTree();
  walk_.TreeFirst("ParentID Is Null");
  walk_.TreeNext();
  walk_.Clear();
  EXPECT_EQ(walk_.ID(), 0);
  EXPECT_EQ(walk_.ParentID(), 0);
  EXPECT_TRUE(walk_.Key().IsNull());
  EXPECT_EQ(walk_.Text(), "");
  EXPECT_EQ(walk_.ChildrensCount(), 2);
  EXPECT_EQ(walk_.Level(), 2);
}

TEST_F(TreeWalkTest, SiblingsComeInKeyOrder) {
  const int32_t root = Node(0, Variant("1"), "R");
  Node(root, Variant("30"), "Third");
  Node(root, Variant("10"), "First");
  Node(root, Variant("20"), "Second");
  EXPECT_EQ(Walk("ParentID Is Null"),
            (std::vector<std::string>{"R:1+", "First:2.", "Second:2.", "Third:2.", "R:1-"}));
}

TEST_F(TreeWalkTest, NumberKeysCompareAsNumbers) {
  MakeTable(*db_, "Numbered",
            {{"ID", FieldType::kLong, 0, "", true},
             {"ParentID", FieldType::kLong},
             {"Key", FieldType::kLong},
             {"Name", FieldType::kText, 50}});
  AddRow(*db_, "Numbered", {{"Key", Variant(int32_t{1})}, {"Name", Variant("R")}});
  AddRow(*db_, "Numbered",
         {{"ParentID", Variant(int32_t{1})}, {"Key", Variant(int32_t{10})}, {"Name", Variant("Ten")}});
  AddRow(*db_, "Numbered",
         {{"ParentID", Variant(int32_t{1})}, {"Key", Variant(int32_t{9})}, {"Name", Variant("Nine")}});
  walk_.TableName("Numbered");
  EXPECT_EQ(Walk("ParentID Is Null"), (std::vector<std::string>{"R:1+", "Nine:2.", "Ten:2.", "R:1-"}));
}

TEST_F(TreeWalkTest, AKeyHoldingADoubleQuoteStillFindsItsNextSibling) {
  const int32_t root = Node(0, Variant("1"), "R");
  Node(root, Variant("a\"b"), "Quoted");
  Node(root, Variant("c"), "After");
  EXPECT_EQ(Walk("ParentID Is Null"), (std::vector<std::string>{"R:1+", "Quoted:2.", "After:2.", "R:1-"}));
}

// Deliberate: the next sibling must have a strictly greater key, so the second of two equal keys is skipped.
TEST_F(TreeWalkTest, EqualKeysAmongSiblingsEndTheSiblingScanAtTheFirstOfThem) {
  const int32_t root = Node(0, Variant("1"), "R");
  Node(root, Variant("10"), "X");
  Node(root, Variant("10"), "Y");
  const std::vector<std::string> visits = Walk("ParentID Is Null");
  ASSERT_EQ(visits.size(), 3U);
  EXPECT_EQ(visits.front(), "R:1+");
  EXPECT_EQ(visits.back(), "R:1-");
  walk_.TreeFirst("ParentID Is Null");
  EXPECT_EQ(walk_.ChildrensCount(), 2);
}

// Deliberate: with KeyName emptied the key reads "K" and the ID, and the sibling query has no column
// before " > ", which the store refuses; only the way down a chain works.
TEST_F(TreeWalkTest, WithKeyNameEmptiedTheSiblingQueryIsRefused) {
  const int32_t root = Node(0, Variant("1"), "R");
  const int32_t child = Node(root, Variant("1"), "Child");
  Node(child, Variant("1"), "Grandchild");
  walk_.KeyName("");
  walk_.TreeFirst("ParentID Is Null");
  EXPECT_EQ(walk_.Key(), Variant("K" + std::to_string(root)));
  walk_.TreeNext();
  EXPECT_EQ(walk_.Text(), "Child");
  walk_.TreeNext();
  EXPECT_EQ(walk_.Text(), "Grandchild");
  EXPECT_EQ(walk_.Level(), 3);
  EXPECT_EQ(ErrorNumberOf([&] { walk_.TreeNext(); }), 3075);
  EXPECT_EQ(ErrorTextOf([&] { walk_.TreeNext(); }), "Syntax error (missing operator) in query expression.");
}

// Deliberate: the forced ParentID of 0 holds only until the start row's closing visit reloads its
// stored parent; the walk then runs on among the start row's siblings and closes their parent.
TEST_F(TreeWalkTest, AStartRowThatIsNoRootRunsOnAmongItsSiblingsAfterItsClosingVisit) {
  MakeSampleTree();
  EXPECT_EQ(
      Walk("ID=" + std::to_string(a_)),
      (std::vector<std::string>{"A:1+", "A1:2.", "A2:2.", "A:1-", "B:1.", "C:1+", "C1:2.", "C:1-", "R:0-"}));
}

TEST_F(TreeWalkTest, AStartLeafThatIsNoRootEndsTheWalkAtOnce) {
  MakeSampleTree();
  EXPECT_EQ(Walk("ID=" + std::to_string(b_)), (std::vector<std::string>{"B:1."}));
}

TEST_F(TreeWalkTest, GoingUpFromLevelZeroRaisesError9) {
  MakeSampleTree();
  Node(a1_, Variant("111"), "A1a");
  walk_.TreeFirst("ID=" + std::to_string(a1_));
  std::vector<std::string> visits;
  const int32_t error = ErrorNumberOf([&] {
    while (walk_.ID() > 0 && visits.size() < 50) {
      visits.push_back(Visit());
      walk_.TreeNext();
    }
  });
  EXPECT_EQ(error, 9);
  EXPECT_EQ(visits, (std::vector<std::string>{"A1:1+", "A1a:2.", "A1:1-", "A2:1.", "A:0-", "B:0.", "C:0+",
                                              "C1:1.", "C:0-"}));
}

TEST_F(TreeWalkTest, ARowAtLevel101RaisesError9) {
  int32_t parent = Node(0, Variant("1"), "L1");
  for (int level = 2; level <= 101; ++level) parent = Node(parent, Variant("1"), "L" + std::to_string(level));
  walk_.TreeFirst("ParentID Is Null");
  for (int level = 2; level <= 100; ++level) walk_.TreeNext();
  ASSERT_EQ(walk_.Level(), 100);
  ASSERT_EQ(walk_.Text(), "L100");
  EXPECT_EQ(ErrorNumberOf([&] { walk_.TreeNext(); }), 9);
}

// Deliberate: the filter applies to the rows of the walk, not to the child count.
TEST_F(TreeWalkTest, AChildThatTheFilterHidesCountsInChildrensCount) {
  MakeSampleTree();
  db_->Execute("UPDATE Tree SET Hidden = True WHERE ID = " + std::to_string(a2_) + ";", store::dbFailOnError);
  walk_.Filter("Hidden = False");
  walk_.TreeFirst("ID=" + std::to_string(a_));
  EXPECT_EQ(walk_.ChildrensCount(), 2);
  EXPECT_EQ(Walk("ParentID Is Null"), (std::vector<std::string>{"R:1+", "A:2+", "A1:3.", "A:2-", "B:2.",
                                                                "C:2+", "C1:3.", "C:2-", "R:1-"}));
}

TEST_F(TreeWalkTest, TheFilterAloneLimitsTheStartRow) {
  MakeSampleTree();
  walk_.Filter("Name = 'C'");
  walk_.TreeFirst();
  EXPECT_EQ(walk_.ID(), c_);
}

// Deliberate: the child count reads the engine's current database, not the walk's Database.
TEST_F(TreeWalkTest, TheChildCountReadsTheEnginesCurrentDatabase) {
  MakeSampleTree();
  engine_->CreateDatabase(PathOf("other.qdb"))->Close();
  auto other = workspace_->OpenDatabase(PathOf("other.qdb"));
  MakeTree(*other);
  State().database = other;
  walk_.TreeFirst("ParentID Is Null");
  EXPECT_EQ(walk_.ID(), r_);
  EXPECT_EQ(walk_.ChildrensCount(), 0);
  EXPECT_FALSE(walk_.IsSumBeginn());
  walk_.TreeNext();
  EXPECT_EQ(walk_.ID(), a_);
  State().database.reset();
  other->Close();
}

TEST_F(TreeWalkTest, AWalkWithoutADatabaseRaisesError91) {
  TreeWalk walk;
  walk.TableName("Tree");
  EXPECT_EQ(ErrorNumberOf([&] { walk.TreeFirst(); }), 91);
}

class TreeWalkOverAccountsTest : public chart_testing::OpenChartTest {};

// The class roots both have no parent: the sibling query asks for ParentID 0, so the walk ends after
// the first root's subtree.
TEST_F(TreeWalkOverAccountsTest, AWalkOverTheChartEndsAfterTheFirstClassRoot) {
  const int32_t sum = InsertSum(RootA(), "1000", "Umlaufvermoegen");
  InsertAccount(sum, "1020", "Bank");
  InsertAccount(sum, "1000.1", "Kasse");
  InsertAccount(RootA(), "2000", "Kreditoren");
  InsertAccount(RootB(), "3000", "Ertrag");
  TreeWalk walk;
  walk.Database(State().database);
  walk.TableName("Accounts");
  walk.KeyName("Code");
  walk.TextName("Code");
  walk.TreeFirst("ParentID Is Null");
  std::vector<std::string> visits;
  while (walk.ID() > 0 && visits.size() < 50) {
    visits.push_back(walk.Text() + ":" + std::to_string(walk.Level()) + (walk.IsSumEnd() ? "-" : ""));
    walk.TreeNext();
  }
  EXPECT_EQ(visits,
            (std::vector<std::string>{"A:1", "1000:2", "1000.1:3", "1020:3", "1000:2-", "2000:2", "A:1-"}));
}

}  // namespace
}  // namespace ldg
