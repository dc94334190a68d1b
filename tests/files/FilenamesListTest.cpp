#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>
#include <string>
#include <vector>

#include "Kv/Services.h"
#include "SatCommonUtils/Files.h"
#include "kv/Growth.h"
#include "support/FailingNew.h"

namespace {

using SatCommonUtils::TFilenamesList;
using testing::ElementsAre;
using testing::IsEmpty;
using Names = std::vector<std::string>;

TFilenamesList ListOf(const Names& names) {
  TFilenamesList list;
  for (const std::string& name : names) list.Insert(name);
  return list;
}

/// All names; the cursor is at the end afterwards.
Names Walk(const TFilenamesList& list) {
  Names names;
  std::string name;
  for (bool more = list.GetFirst(&name); more; more = list.GetNext(&name)) names.push_back(name);
  return names;
}

std::string Current(const TFilenamesList& list) {
  std::string name = "(end)";
  list.GetCurrent(&name);
  return name;
}

TEST(FilenamesListTest, ANewListIsEmptyWithItsCursorAtTheEnd) {
  TFilenamesList list;
  std::string name = "as it was";
  EXPECT_FALSE(list.GetCurrent(&name));
  EXPECT_FALSE(list.GetFirst(&name));
  EXPECT_EQ(name, "as it was");
}

TEST(FilenamesListTest, AWalkGivesTheNamesInTheOrderOfInsertion) {
  const TFilenamesList list = ListOf({"b", "a", "c"});
  std::string name;
  ASSERT_TRUE(list.GetFirst(&name));
  EXPECT_EQ(name, "b");
  ASSERT_TRUE(list.GetNext(&name));
  EXPECT_EQ(name, "a");
  ASSERT_TRUE(list.GetNext(&name));
  EXPECT_EQ(name, "c");
  EXPECT_FALSE(list.GetNext(&name));
  EXPECT_EQ(name, "c");
}

TEST(FilenamesListTest, DuplicatesAreKept) {
  EXPECT_THAT(Walk(ListOf({"a", "a", "A"})), ElementsAre("a", "a", "A"));
}

TEST(FilenamesListTest, TheCursorOperationsAreConst) {
  const TFilenamesList list = ListOf({"a.x", "b.y"});
  EXPECT_TRUE(list.GetFirst(nullptr) && list.GetNext(nullptr));
  EXPECT_TRUE(list.FindFirst("*.x"));
  EXPECT_FALSE(list.FindNext("*.x"));
}

TEST(FilenamesListTest, GetCurrentGivesTheNameAgainAndStays) {
  const TFilenamesList list = ListOf({"a", "b"});
  list.GetFirst(nullptr);
  EXPECT_EQ(Current(list), "a");
  EXPECT_EQ(Current(list), "a");
}

TEST(FilenamesListTest, GetNextAtTheEndGivesFalseAndStaysThere) {
  const TFilenamesList list = ListOf({"a"});
  EXPECT_FALSE(list.GetNext(nullptr));
  list.GetFirst(nullptr);
  EXPECT_FALSE(list.GetNext(nullptr));
  EXPECT_FALSE(list.GetNext(nullptr));
  EXPECT_EQ(Current(list), "(end)");
}

TEST(FilenamesListTest, FindNextAtTheEndGivesFalseAndStaysThere) {
  const TFilenamesList list = ListOf({"a"});
  EXPECT_FALSE(list.FindNext("a"));
  list.FindFirst("a");
  EXPECT_FALSE(list.FindNext("a"));
  EXPECT_FALSE(list.FindNext("a"));
  EXPECT_EQ(Current(list), "(end)");
}

TEST(FilenamesListTest, GetFirstComesBackFromTheEnd) {
  const TFilenamesList list = ListOf({"a"});
  list.GetFirst(nullptr);
  list.GetNext(nullptr);
  EXPECT_TRUE(list.GetFirst(nullptr));
  EXPECT_EQ(Current(list), "a");
}

TEST(FilenamesListTest, InsertLeavesTheCursorOnItsName) {
  TFilenamesList list = ListOf({"a", "b"});
  list.FindFirst("b");
  for (int i = 0; i < 1000; ++i) list.Insert("more");
  EXPECT_EQ(Current(list), "b");
}

TEST(FilenamesListTest, InsertLeavesACursorAtTheEndAtTheEnd) {
  TFilenamesList list;
  list.Insert("a");
  EXPECT_EQ(Current(list), "(end)");
  EXPECT_FALSE(list.GetNext(nullptr));
  list.FindFirst("none");
  list.Insert("b");
  EXPECT_EQ(Current(list), "(end)");
}

TEST(FilenamesListTest, AListTakesAnInsertOfItsOwnName) {
  TFilenamesList list;
  std::string name = "a name that is too long to be kept inside a string object";
  list.Insert(name);
  for (int i = 0; i < 10; ++i) {
    list.GetFirst(&name);
    list.Insert(name);
  }
  EXPECT_EQ(Walk(list), Names(11, name));
}

TEST(FilenamesListTest, RemoveTakesTheNameAtTheCursorWhichIsThenOnTheFollowingOne) {
  TFilenamesList list = ListOf({"a", "b", "c"});
  ASSERT_TRUE(list.FindFirst("b"));
  list.Remove();
  EXPECT_EQ(Current(list), "c");
  EXPECT_THAT(Walk(list), ElementsAre("a", "c"));
}

TEST(FilenamesListTest, RemoveOfTheLastNameLeavesTheCursorAtTheEnd) {
  TFilenamesList list = ListOf({"a", "b"});
  list.FindFirst("b");
  list.Remove();
  EXPECT_EQ(Current(list), "(end)");
  list.Insert("c");
  EXPECT_EQ(Current(list), "(end)");
  EXPECT_THAT(Walk(list), ElementsAre("a", "c"));
}

TEST(FilenamesListTest, RemoveWithTheCursorAtTheEndDoesNothing) {
  TFilenamesList list = ListOf({"a"});
  list.Remove();
  EXPECT_THAT(Walk(list), ElementsAre("a"));
}

TEST(FilenamesListTest, RemoveWithAMaskTakesTheFirstMatch) {
  TFilenamesList list = ListOf({"a.x", "b.y", "c.y"});
  EXPECT_TRUE(list.Remove("*.Y"));
  EXPECT_EQ(Current(list), "c.y");
  EXPECT_THAT(Walk(list), ElementsAre("a.x", "c.y"));
}

TEST(FilenamesListTest, RemoveWithAMaskThatMatchesNothingMovesTheCursorToTheEnd) {
  TFilenamesList list = ListOf({"a.x", "b.y"});
  list.GetFirst(nullptr);
  EXPECT_FALSE(list.Remove("*.z"));
  EXPECT_EQ(Current(list), "(end)");
  EXPECT_THAT(Walk(list), ElementsAre("a.x", "b.y"));
}

TEST(FilenamesListTest, ClearRemovesAllNames) {
  TFilenamesList list = ListOf({"a", "b"});
  list.Clear();
  EXPECT_THAT(Walk(list), IsEmpty());
}

TEST(FilenamesListTest, ClearLeavesTheCursorAtTheEnd) {
  TFilenamesList list = ListOf({"a", "b"});
  list.FindFirst("b");
  list.Clear();
  EXPECT_EQ(Current(list), "(end)");
  EXPECT_FALSE(list.GetNext(nullptr));
  list.Insert("c");
  list.Insert("d");
  EXPECT_EQ(Current(list), "(end)");
}

TEST(FilenamesListTest, FindFirstSearchesFromTheFirstName) {
  const TFilenamesList list = ListOf({"a.x", "b.y", "c.x"});
  list.FindFirst("c.x");
  EXPECT_TRUE(list.FindFirst("*.X"));
  EXPECT_EQ(Current(list), "a.x");
}

TEST(FilenamesListTest, FindFirstMovesTheCursorToTheEndWhenNothingMatches) {
  const TFilenamesList list = ListOf({"a.x"});
  list.GetFirst(nullptr);
  EXPECT_FALSE(list.FindFirst("*.z"));
  EXPECT_EQ(Current(list), "(end)");
}

TEST(FilenamesListTest, FindFirstAndFindNextVisitEveryMatchOnce) {
  const TFilenamesList list = ListOf({"a.x", "b.y", "C.X", "a.x", "d.y"});
  Names found;
  for (bool more = list.FindFirst("*.x"); more; more = list.FindNext("*.x")) {
    found.push_back(Current(list));
  }
  EXPECT_THAT(found, ElementsAre("a.x", "C.X", "a.x"));
}

TEST(FilenamesListTest, FindNextStepsPastANameThatDoesNotMatchItself) {
  const TFilenamesList list = ListOf({"a.x", "b.y", "c.y"});
  list.GetFirst(nullptr);
  EXPECT_TRUE(list.FindNext("*.y"));
  EXPECT_EQ(Current(list), "b.y");
}

TEST(FilenamesListTest, FindGivesTheFirstMatchAndLeavesTheCursor) {
  const TFilenamesList list = ListOf({"a.x", "b.y", "c.y"});
  list.GetFirst(nullptr);
  std::string name;
  EXPECT_TRUE(list.Find("*.y", &name));
  EXPECT_EQ(name, "b.y");
  EXPECT_EQ(Current(list), "a.x");
}

TEST(FilenamesListTest, FindWithoutAMatchLeavesTheString) {
  const TFilenamesList list = ListOf({"a.x"});
  std::string name = "as it was";
  EXPECT_FALSE(list.Find("*.y", &name));
  EXPECT_EQ(name, "as it was");
}

TEST(FilenamesListTest, FindTakesANullString) {
  const TFilenamesList list = ListOf({"a.x"});
  EXPECT_TRUE(list.Find("*.x", nullptr));
  EXPECT_FALSE(list.Find("*.y", nullptr));
}

TEST(FilenamesListTest, FindAllAppendsEveryMatchAndCountsTheNewOnes) {
  const TFilenamesList list = ListOf({"a.x", "b.y", "A.X"});
  Names found = {"held before"};
  EXPECT_EQ(list.FindAll("*.x", &found), 2u);
  EXPECT_THAT(found, ElementsAre("held before", "a.x", "A.X"));
}

TEST(FilenamesListTest, FindAllTakesANullVector) {
  EXPECT_EQ(ListOf({"a.x", "b.y", "A.X"}).FindAll("*.x", nullptr), 2u);
}

TEST(FilenamesListTest, FindAllLeavesTheCursor) {
  const TFilenamesList list = ListOf({"a.x", "b.y"});
  list.FindFirst("b.y");
  list.FindAll("*.x", nullptr);
  EXPECT_EQ(Current(list), "b.y");
}

TEST(FilenamesListTest, TheEmptyMaskAndTheNumberSignFindNothing) {
  const TFilenamesList list = ListOf({"", "#", "a"});
  EXPECT_EQ(list.FindAll("", nullptr), 0u);
  EXPECT_EQ(list.FindAll("#", nullptr), 0u);
  EXPECT_FALSE(list.FindFirst(""));
}

TEST(FilenamesListTest, ACopyHasTheNamesAndItsCursorOnTheFirst) {
  const TFilenamesList list = ListOf({"a", "b", "c"});
  list.FindFirst("c");
  const TFilenamesList copy(list);
  EXPECT_EQ(Current(copy), "a");
  EXPECT_EQ(Current(list), "c");
  EXPECT_THAT(Walk(copy), ElementsAre("a", "b", "c"));
}

TEST(FilenamesListTest, ACopyOfAListWithItsCursorAtTheEndHasItOnTheFirstName) {
  const TFilenamesList list = ListOf({"a", "b"});
  list.FindFirst("none");
  EXPECT_EQ(Current(TFilenamesList(list)), "a");
}

TEST(FilenamesListTest, ACopyOfAnEmptyListHasItsCursorAtTheEnd) {
  const TFilenamesList list;
  TFilenamesList copy(list);
  copy.Insert("a");
  EXPECT_EQ(Current(copy), "(end)");
}

TEST(FilenamesListTest, ACopyIsIndependent) {
  TFilenamesList list = ListOf({"a", "b"});
  TFilenamesList copy(list);
  copy.Insert("c");
  list.Clear();
  EXPECT_THAT(Walk(copy), ElementsAre("a", "b", "c"));
}

TEST(FilenamesListTest, AssignmentReplacesTheNamesAndLeavesTheCursorAtTheEnd) {
  const TFilenamesList list = ListOf({"a", "b"});
  list.FindFirst("b");
  TFilenamesList other = ListOf({"x", "y", "z"});
  other.FindFirst("y");
  other = list;
  EXPECT_EQ(Current(other), "(end)");
  EXPECT_THAT(Walk(other), ElementsAre("a", "b"));
}

TEST(FilenamesListTest, AssignmentToItselfKeepsTheNamesAndLeavesTheCursorAtTheEnd) {
  TFilenamesList list = ListOf({"a", "b"});
  list.GetFirst(nullptr);
  const TFilenamesList& same = list;
  list = same;
  EXPECT_EQ(Current(list), "(end)");
  EXPECT_THAT(Walk(list), ElementsAre("a", "b"));
}

TEST(FilenamesListTest, AListCanBeDerivedFromAndIsDestroyedThroughItsBase) {
  struct Derived : TFilenamesList {
    explicit Derived(bool* gone) : gone(gone) {}
    ~Derived() override { *gone = true; }
    bool* gone;
  };
  bool gone = false;
  TFilenamesList* const list = new Derived(&gone);
  delete list;
  EXPECT_TRUE(gone);
}

TEST(FilenamesListTest, DebugOutputPrintsTitleNamesAndTitleALineEach) {
  const TFilenamesList list = ListOf({"b", "a"});
  list.FindFirst("a");
  Names lines;
  const TKvDebugSink former =
      KvSetDebugSink([&](const std::string& line) { lines.push_back(line); });
  list.DebugOutput("two names");
  TFilenamesList().DebugOutput("");
  KvSetDebugSink(former);
  EXPECT_THAT(lines, ElementsAre("-------two names-------", "b", "a", "^^^^^^^two names^^^^^^^",
                                 "--------------", "^^^^^^^^^^^^^^"));
  EXPECT_EQ(Current(list), "a");
}

TEST(FilenamesListTest, ADebugSinkMayChangeTheListThatIsPrinted) {
  const std::string name = "a name that is too long to be kept inside a string object";
  TFilenamesList list = ListOf({name, name});
  Names lines;
  const TKvDebugSink former = KvSetDebugSink([&](const std::string& line) {
    list.Insert("more");
    if (line == name) list.Clear();
    lines.push_back(line);
  });
  list.DebugOutput("");
  KvSetDebugSink(former);
  EXPECT_THAT(lines, ElementsAre("--------------", name, name, "^^^^^^^^^^^^^^"));
}

TEST(FilenamesListTest, AnInsertThatFindsNoMemoryLeavesTheList) {
  const std::string name = "a name that is too long to be kept inside a string object";
  for (unsigned long successes = 0; successes < 2; ++successes) {
    TFilenamesList list = ListOf({"a"});
    list.GetFirst(nullptr);
    const auto insert = [&] {
      const ravelin_test::FailingNew failing(successes);
      list.Insert(name);
    };
    EXPECT_THROW(insert(), std::bad_alloc) << successes;
    EXPECT_EQ(Current(list), "a");
    EXPECT_THAT(Walk(list), ElementsAre("a"));
  }
}

TEST(FilenamesListTest, ASearchThatFindsNoMemoryThrows) {
  const TFilenamesList list = ListOf({"a", "b"});
  list.FindFirst("b");
  const std::string mask = "a mask that is too long to be kept inside a string object";
  const ravelin_test::FailingNew failing(0);
  EXPECT_THROW(list.FindFirst(mask), std::bad_alloc);
  EXPECT_THROW(list.FindNext(mask), std::bad_alloc);
  EXPECT_THROW(list.FindAll(mask, nullptr), std::bad_alloc);
}

TEST(FilenamesListTest, CountingMatchesAllocatesForTheMaskButNotForNames) {
  const TFilenamesList list = ListOf(Names(1000, std::string(100, 'A')));
  const ravelin_test::FailingNew failing(10);
  EXPECT_EQ(list.FindAll("a*", nullptr), 1000u);
}

TEST(FilenamesListTest, FindAllIsLinearInTheNumberOfNames) {
  for (const char* mask : {"*a*a*a*a*b", "a?a?a?.*", "#aaaaaaab"}) {
    EXPECT_TRUE(kv_test::IsLinear(5000, [&](unsigned long size) {
      ListOf(Names(size, "aaaaaaaaaaaaaaaa.aaaaaaaa")).FindAll(mask, nullptr);
    })) << mask;
  }
}

TEST(FilenamesListTest, AWalkIsLinearInTheNumberOfNames) {
  EXPECT_TRUE(kv_test::IsLinear(20000, [](unsigned long size) {
    const TFilenamesList list = ListOf(Names(size, "a.x"));
    for (bool more = list.FindFirst("*.x"); more;) more = list.FindNext("*.x");
    for (bool more = list.GetFirst(nullptr); more;) more = list.GetNext(nullptr);
  }));
}

}  // namespace
