// Joining texts, and texts that stand in for empty ones.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "Kv/Text.h"
#include "SatCommonUtils/Text.h"

namespace {

using SatCommonUtils::CombineStrings;
using SatCommonUtils::GetNotEmptyDef;
using SatCommonUtils::SetIfNotEmpty;

TEST(CombineStrings, PutsABlankBetweenTextsThatAreNotEmpty) {
  EXPECT_EQ(CombineStrings("a", "b", "c", "d", "e"), "a b c d e");
  EXPECT_EQ(CombineStrings(" a ", "", "b", "", "c"), "a b c");
}

TEST(CombineStrings, TrimsTheFirstTextAlone) {
  EXPECT_EQ(CombineStrings("\t a \n", " b ", "\t", "", ""), "a  b  \t");
}

TEST(CombineStrings, BeginsWithABlankWhenTheFirstTextIsEmpty) {
  EXPECT_EQ(CombineStrings("", "b", "", "", ""), " b");
  EXPECT_EQ(CombineStrings("  ", "", "", "", "e"), " e");
}

TEST(CombineStrings, GivesNothingForNothing) {
  EXPECT_EQ(CombineStrings("", "", "", "", ""), "");
  EXPECT_EQ(CombineStrings("a", "", "", "", ""), "a");
}

TEST(SetIfNotEmpty, SetsTheTargetToTheValueAsItIs) {
  std::string target = "old";
  EXPECT_TRUE(SetIfNotEmpty(&target, " a ", false));
  EXPECT_EQ(target, " a ");
  EXPECT_TRUE(SetIfNotEmpty(&target, "  ", false));
  EXPECT_EQ(target, "  ");
}

TEST(SetIfNotEmpty, TrimsTheValueWhenAsked) {
  std::string target = "old";
  EXPECT_TRUE(SetIfNotEmpty(&target, " a b\n", true));
  EXPECT_EQ(target, "a b");
}

TEST(SetIfNotEmpty, LeavesTheTargetAloneForAnEmptyValue) {
  std::string target = "old";
  EXPECT_FALSE(SetIfNotEmpty(&target, "", false));
  EXPECT_FALSE(SetIfNotEmpty(&target, "", true));
  EXPECT_FALSE(SetIfNotEmpty(&target, " \t", true));
  EXPECT_EQ(target, "old");
}

TEST(SetIfNotEmpty, TakesTheTargetForTheValueToo) {
  std::string target = " a ";
  EXPECT_TRUE(SetIfNotEmpty(&target, target, true));
  EXPECT_EQ(target, "a");
}

TEST(GetNotEmptyDef, GivesTheValueAsItIs) {
  EXPECT_EQ(GetNotEmptyDef(" a ", "def", false), " a ");
  EXPECT_EQ(GetNotEmptyDef("  ", "def", false), "  ");
}

TEST(GetNotEmptyDef, TrimsTheValueWhenAsked) {
  EXPECT_EQ(GetNotEmptyDef(" a ", "def", true), "a");
}

TEST(GetNotEmptyDef, GivesTheDefaultUntrimmedForAnEmptyValue) {
  EXPECT_EQ(GetNotEmptyDef("", " def ", false), " def ");
  EXPECT_EQ(GetNotEmptyDef(" \n", " def ", true), " def ");
  EXPECT_EQ(GetNotEmptyDef("", "", true), "");
}

TEST(CombineStrings, AgreesWithItsRulesOnRandomTexts) {
  std::mt19937 random(66);
  const auto text = [&random] {
    std::string made;
    for (unsigned long i = random() % 4; i > 0; --i) made += " ab\t"[random() % 4];
    return made;
  };
  for (int i = 0; i < 100000; ++i) {
    const std::string a = text(), b = text(), c = text(), d = text(), e = text();
    std::string expected = trim(a);
    if (!b.empty()) expected += " " + b;
    if (!c.empty()) expected += " " + c;
    if (!d.empty()) expected += " " + d;
    if (!e.empty()) expected += " " + e;
    ASSERT_EQ(CombineStrings(a, b, c, d, e), expected);
  }
}

}  // namespace
