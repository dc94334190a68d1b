// Running numbers of names, and names that are not taken.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <new>
#include <random>
#include <string>
#include <vector>

#include "Kv/Text.h"
#include "SatCommonUtils/Text.h"
#include "kv/Growth.h"
#include "support/FailingNew.h"

namespace {

using namespace std::string_literals;
using SatCommonUtils::DeNumerateString;
using SatCommonUtils::GenerateNextString;
using SatCommonUtils::GenerateNumeratedString;
using SatCommonUtils::GenerateUniqueString;
using Names = std::vector<std::string>;

/// What DeNumerateString leaves and gives: "Scene=12".
std::string DeNumerated(std::string text) {
  const int number = DeNumerateString(&text);
  return text + "=" + std::to_string(number);
}

TEST(GenerateNextString, PutsTheNumberOneBehindAText) {
  EXPECT_EQ(GenerateNextString("Band"), "Band[1]");
  EXPECT_EQ(GenerateNextString(""), "[1]");
}

TEST(GenerateNextString, GivesTheNextNumber) {
  EXPECT_EQ(GenerateNextString("Band[1]"), "Band[2]");
  EXPECT_EQ(GenerateNextString("x[9]"), "x[10]");
  EXPECT_EQ(GenerateNextString("[007]"), "[8]");
}

TEST(GenerateNextString, DropsWhatFollowsTheLastBracket) {
  EXPECT_EQ(GenerateNextString("a[3]b"), "a[4]");
}

TEST(GenerateNextString, IgnoresWhatFollowsTheNumberInTheBrackets) {
  EXPECT_EQ(GenerateNextString("a[7x]"), "a[8]");
  EXPECT_EQ(GenerateNextString("a[1.9]"), "a[2]");
}

TEST(GenerateNextString, SkipsBlanksBeforeTheNumber) {
  EXPECT_EQ(GenerateNextString("x[ 4]"), "x[5]");
  EXPECT_EQ(GenerateNextString("x[\t\n4 ]"), "x[5]");
}

TEST(GenerateNextString, ReadsASign) {
  EXPECT_EQ(GenerateNextString("a[-2]"), "a[-1]");
  EXPECT_EQ(GenerateNextString("a[-1]"), "a[0]");
  EXPECT_EQ(GenerateNextString("a[+2]"), "a[3]");
}

TEST(GenerateNextString, KeepsBracketsWithoutANumber) {
  EXPECT_EQ(GenerateNextString("a[x]"), "a[x][1]");
  EXPECT_EQ(GenerateNextString("a[]"), "a[][1]");
  EXPECT_EQ(GenerateNextString("a[-]"), "a[-][1]");
}

TEST(GenerateNextString, KeepsBracketsThatHoldOnlyBlanks) {
  EXPECT_EQ(GenerateNextString("a[ ]"), "a[ ][1]");
}

TEST(GenerateNextString, KeepsAnOpeningBracketBehindTheClosingOne) {
  EXPECT_EQ(GenerateNextString("a]b["), "a]b[[1]");
  EXPECT_EQ(GenerateNextString("a[1]b["), "a[1]b[[1]");
}

TEST(GenerateNextString, KeepsABracketWithoutTheOther) {
  EXPECT_EQ(GenerateNextString("a[1"), "a[1[1]");
  EXPECT_EQ(GenerateNextString("a1]"), "a1][1]");
}

TEST(GenerateNextString, LooksBetweenTheLastBracketsOfEachKind) {
  EXPECT_EQ(GenerateNextString("a[1][5]"), "a[1][6]");
  EXPECT_EQ(GenerateNextString("a[[5]]"), "a[[6]");
  EXPECT_EQ(GenerateNextString("a[5]x]"), "a[6]");
}

TEST(GenerateNextString, TakesRoundBracketsForAnyCharacters) {
  EXPECT_EQ(GenerateNextString("a(5)"), "a(5)[1]");
}

TEST(GenerateNextString, PutsTheSmallestNumberBehindTheLargest) {
  EXPECT_EQ(GenerateNextString("a[2147483646]"), "a[2147483647]");
  EXPECT_EQ(GenerateNextString("a[2147483647]"), "a[-2147483648]");
}

TEST(GenerateNextString, CutsNumbersBeyondTheRangeAsTheScanDoes) {
  EXPECT_EQ(GenerateNextString("a[4294967300]"), "a[5]");
  EXPECT_EQ(GenerateNextString("a[99999999999999999999]"), "a[0]");
  EXPECT_EQ(GenerateNextString("a[-99999999999999999999]"), "a[1]");
}

TEST(GenerateNumeratedString, CountsInRoundBrackets) {
  EXPECT_EQ(GenerateNumeratedString("Scene"), "Scene(1)");
  EXPECT_EQ(GenerateNumeratedString("Scene(1)"), "Scene(2)");
  EXPECT_EQ(GenerateNumeratedString(""), "(1)");
}

TEST(GenerateNumeratedString, FollowsTheRulesOfSquareBrackets) {
  EXPECT_EQ(GenerateNumeratedString("a(3)b"), "a(4)");
  EXPECT_EQ(GenerateNumeratedString("a(7x)"), "a(8)");
  EXPECT_EQ(GenerateNumeratedString("a(-2)"), "a(-1)");
  EXPECT_EQ(GenerateNumeratedString("a(x)"), "a(x)(1)");
  EXPECT_EQ(GenerateNumeratedString("a()"), "a()(1)");
  EXPECT_EQ(GenerateNumeratedString("a( )"), "a( )(1)");
  EXPECT_EQ(GenerateNumeratedString("a)b("), "a)b((1)");
  EXPECT_EQ(GenerateNumeratedString("a[5]"), "a[5](1)");
}

TEST(DeNumerateString, CutsTheNumberOff) {
  EXPECT_EQ(DeNumerated("Scene(12)"), "Scene=12");
  EXPECT_EQ(DeNumerated("A(1)B(2)"), "A(1)B=2");
  EXPECT_EQ(DeNumerated("(-3)"), "=-3");
}

TEST(DeNumerateString, CutsWhatFollowsTheNumberOffToo) {
  EXPECT_EQ(DeNumerated("Scene(12)b"), "Scene=12");
  EXPECT_EQ(DeNumerated("Scene(12x)"), "Scene=12");
}

TEST(DeNumerateString, LeavesATextWithoutANumberAsItIs) {
  EXPECT_EQ(DeNumerated("Scene"), "Scene=0");
  EXPECT_EQ(DeNumerated("Scene(x)"), "Scene(x)=0");
  EXPECT_EQ(DeNumerated("Scene()"), "Scene()=0");
  EXPECT_EQ(DeNumerated("Scene(1"), "Scene(1=0");
  EXPECT_EQ(DeNumerated("Scene1)"), "Scene1)=0");
  EXPECT_EQ(DeNumerated("1)Scene("), "1)Scene(=0");
  EXPECT_EQ(DeNumerated("Scene[1]"), "Scene[1]=0");
  EXPECT_EQ(DeNumerated(""), "=0");
}

TEST(DeNumerateString, CutsBlanksInBracketsOffAsZero) {
  EXPECT_EQ(DeNumerated("Scene( )"), "Scene=0");
  EXPECT_EQ(DeNumerated("Scene(\t\n )b"), "Scene=0");
}

TEST(DeNumerateString, CutsAZeroOff) {
  EXPECT_EQ(DeNumerated("Scene(0)"), "Scene=0");
}

TEST(DeNumerateString, UndoesTheNumbering) {
  EXPECT_EQ(DeNumerated(GenerateNumeratedString("Scene")), "Scene=1");
}

TEST(GenerateUniqueString, GivesTheBaseWhenItIsNotTaken) {
  EXPECT_EQ(GenerateUniqueString("Band", {}, false), "Band");
  EXPECT_EQ(GenerateUniqueString("Band", {"Band[1]", "Bands"}, false), "Band");
  EXPECT_EQ(GenerateUniqueString("Band", {"band"}, true), "Band");
}

TEST(GenerateUniqueString, IgnoresCaseWhenTold) {
  EXPECT_EQ(GenerateUniqueString("Band", {"band"}, false), "Band[1]");
  EXPECT_EQ(GenerateUniqueString("band", {"BAND", "BaNd[1]"}, false), "band[2]");
}

TEST(GenerateUniqueString, MindsCaseWhenTold) {
  EXPECT_EQ(GenerateUniqueString("Band", {"Band", "band[1]"}, true), "Band[1]");
  EXPECT_EQ(GenerateUniqueString("Band", {"Band", "Band[1]"}, true), "Band[2]");
}

TEST(GenerateUniqueString, ComparesBytesFrom80AsTheyAre) {
  EXPECT_EQ(GenerateUniqueString("\xC4", {"\xE4"}, false), "\xC4");
}

TEST(GenerateUniqueString, GoesOnFromTheNumberOfTheBase) {
  EXPECT_EQ(GenerateUniqueString("Band[3]", {"Band[3]", "Band[4]"}, false), "Band[5]");
  EXPECT_EQ(GenerateUniqueString("Band[-1]", {"Band[-1]", "Band[0]"}, true), "Band[1]");
}

TEST(GenerateUniqueString, GivesTheFirstFreeNumberNotTheLast) {
  EXPECT_EQ(GenerateUniqueString("Band", {"Band", "Band[2]"}, false), "Band[1]");
}

TEST(GenerateUniqueString, DoesNotTakeAnotherSpellingOfANumberForIt) {
  EXPECT_EQ(GenerateUniqueString("Band", {"Band", "Band[01]", "Band[ 1]", "Band[1"}, false),
            "Band[1]");
}

TEST(GenerateUniqueString, CountsBeyondTheLargestNumber) {
  EXPECT_EQ(GenerateUniqueString("a[2147483647]", {"a[2147483647]", "a[-2147483648]"}, false),
            "a[-2147483647]");
}

TEST(GenerateUniqueString, LetsAFailedAllocationPass) {
  const Names names = {"A name that is not short", "a name that is not short[1]"};
  bool isDone = false;
  unsigned long failures = 0;
  for (; !isDone; ++failures) {
    isDone = true;
    try {
      const ravelin_test::FailingNew failing(failures);
      const std::string name = GenerateUniqueString(names[0], names, false);
      isDone = name == "A name that is not short[2]";
    } catch (const std::bad_alloc&) {
      isDone = false;
    }
    ASSERT_LT(failures, 100u);
  }
  EXPECT_GT(failures, 3u);
}

TEST(GenerateUniqueString, TakesTimeInProportionToNamesTakenInARow) {
  const auto generate = [](unsigned long count) {
    Names names = {"Band"};
    for (unsigned long i = 1; i < count; ++i) names.push_back("BAND[" + std::to_string(i) + "]");
    EXPECT_EQ(GenerateUniqueString("Band", names, false), "Band[" + std::to_string(count) + "]");
  };
  EXPECT_TRUE(kv_test::IsLinear(500, generate));
}

TEST(GenerateNextString, TakesTimeInProportionToTheText) {
  for (const char* const piece : {"[", "]", "[]", "[1]", "1", " "}) {
    const auto generate = [&](unsigned long count) {
      std::string text = "[";
      for (unsigned long i = 0; i < count; ++i) text += piece;
      GenerateNextString(text + "]");
      DeNumerateString(&text);
    };
    EXPECT_TRUE(kv_test::IsLinear(5000, generate)) << piece;
  }
}

/// The rules as they are put.
std::string NextByModel(const std::string& text, char opening, char closing) {
  int n = 0;
  std::string stem = text;
  const std::size_t first = text.rfind(opening);
  const std::size_t last = text.rfind(closing);
  if (first != std::string::npos && last != std::string::npos && last > first + 1) {
    const std::string inside = text.substr(first + 1, last - first - 1);
    if (std::sscanf(inside.c_str(), "%d", &n) == 1) stem = text.substr(0, first);
  }
  return stem + opening + std::to_string(n + 1) + closing;
}

std::string DeNumeratedByModel(const std::string& text) {
  const std::size_t first = text.rfind('(');
  const std::size_t last = text.rfind(')');
  int number = 0;
  if (first == std::string::npos || last == std::string::npos || last <= first + 1 ||
      std::sscanf(text.substr(first + 1, last - first - 1).c_str(), "%d", &number) == 0) {
    return text + "=0";
  }
  return text.substr(0, first) + "=" + std::to_string(number);
}

std::string UniqueByModel(std::string candidate, Names names, bool caseSensitive) {
  const auto fold = [&](const std::string& name) { return caseSensitive ? name : tolower(name); };
  for (std::string& name : names) name = fold(name);
  while (std::find(names.begin(), names.end(), fold(candidate)) != names.end()) {
    candidate = NextByModel(candidate, '[', ']');
  }
  return candidate;
}

std::string RandomText(std::mt19937* random, const std::string& alphabet, unsigned long most) {
  std::string text;
  for (unsigned long size = (*random)() % most; size > 0; --size) {
    text += alphabet[(*random)() % alphabet.size()];
  }
  return text;
}

TEST(GenerateNextString, AgreesWithItsRulesOnRandomTexts) {
  std::mt19937 random(68);
  for (int i = 0; i < 100000; ++i) {
    const std::string text = RandomText(&random, "[[]]()()0123-+ x\0"s, 12);
    ASSERT_EQ(GenerateNextString(text), NextByModel(text, '[', ']')) << text;
    ASSERT_EQ(GenerateNumeratedString(text), NextByModel(text, '(', ')')) << text;
    ASSERT_EQ(DeNumerated(text), DeNumeratedByModel(text)) << text;
  }
}

TEST(GenerateUniqueString, AgreesWithItsRulesOnRandomNames) {
  std::mt19937 random(69);
  const auto name = [&random] {
    const std::string stem = RandomText(&random, "aA[]\0"s, 3);
    return random() % 2 == 0 ? stem : stem + "[" + std::to_string(random() % 5) + "]";
  };
  for (int i = 0; i < 100000; ++i) {
    Names names(random() % 30);
    for (std::string& taken : names) taken = name();
    const std::string base = name();
    const bool caseSensitive = random() % 2 == 0;
    ASSERT_EQ(GenerateUniqueString(base, names, caseSensitive),
              UniqueByModel(base, names, caseSensitive))
        << base;
  }
}

}  // namespace
