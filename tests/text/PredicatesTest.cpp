#include <gtest/gtest.h>

#include <random>
#include <string>

#include "Kv/Text.h"
#include "SatCommonUtils/Text.h"
#include "kv/Growth.h"

namespace {

using namespace std::string_literals;
using SatCommonUtils::CutStringHead;
using SatCommonUtils::CutStringTail;
using SatCommonUtils::StringBegins;
using SatCommonUtils::StringContains;
using SatCommonUtils::StringEnds;

TEST(StringBegins, ComparesTheBeginningOfTheText) {
  EXPECT_TRUE(StringBegins("Hello", "He", true));
  EXPECT_TRUE(StringBegins("Hello", "Hello", true));
  EXPECT_FALSE(StringBegins("Hello", "el", true));
  EXPECT_FALSE(StringBegins("xHello", "He", true));
}

TEST(StringBegins, RegardsCaseWhenAsked) {
  EXPECT_FALSE(StringBegins("Hello", "he", true));
  EXPECT_TRUE(StringBegins("Hello", "he", false));
}

TEST(StringBegins, IsTrueForAnEmptyHead) {
  for (const bool caseSensitive : {true, false}) {
    EXPECT_TRUE(StringBegins("Hello", "", caseSensitive));
    EXPECT_TRUE(StringBegins("", "", caseSensitive));
  }
}

TEST(StringBegins, IsFalseForAHeadLongerThanTheText) {
  for (const bool caseSensitive : {true, false}) {
    EXPECT_FALSE(StringBegins("He", "Hello", caseSensitive));
    EXPECT_FALSE(StringBegins("", "H", caseSensitive));
  }
}

TEST(StringContains, FindsAPartAnywhere) {
  EXPECT_TRUE(StringContains("Hello", "He", true));
  EXPECT_TRUE(StringContains("Hello", "ell", true));
  EXPECT_TRUE(StringContains("Hello", "lo", true));
  EXPECT_FALSE(StringContains("Hello", "lol", true));
  EXPECT_FALSE(StringContains("", "l", true));
}

TEST(StringContains, RegardsCaseWhenAsked) {
  EXPECT_FALSE(StringContains("Hello", "ELL", true));
  EXPECT_TRUE(StringContains("Hello", "ELL", false));
}

TEST(StringContains, IsTrueForAnEmptyPart) {
  for (const bool caseSensitive : {true, false}) {
    EXPECT_TRUE(StringContains("Hello", "", caseSensitive));
    EXPECT_TRUE(StringContains("", "", caseSensitive));
  }
}

TEST(StringEnds, ComparesTheEndOfTheText) {
  EXPECT_TRUE(StringEnds("Hello", "lo", true));
  EXPECT_TRUE(StringEnds("Hello", "Hello", true));
  EXPECT_FALSE(StringEnds("Hello", "ll", true));
}

TEST(StringEnds, RegardsCaseWhenAsked) {
  EXPECT_FALSE(StringEnds("file.TXT", ".txt", true));
  EXPECT_TRUE(StringEnds("file.TXT", ".txt", false));
}

TEST(StringEnds, IsFalseForATailLongerThanTheText) {
  for (const bool caseSensitive : {true, false}) {
    EXPECT_FALSE(StringEnds("lo", "Hello", caseSensitive));
    EXPECT_FALSE(StringEnds("", "o", caseSensitive));
  }
}

TEST(StringEnds, TakesTheLastOccurrenceWhenCaseCounts) {
  EXPECT_TRUE(StringEnds("ABAB", "AB", true));
  EXPECT_TRUE(StringEnds("aaa", "aa", true));
}

TEST(StringEnds, TakesTheFirstOccurrenceWhenCaseDoesNotCount) {
  EXPECT_FALSE(StringEnds("ABAB", "ab", false));
  EXPECT_FALSE(StringEnds("ABAB", "AB", false));
  EXPECT_FALSE(StringEnds("aaa", "aa", false));
  EXPECT_TRUE(StringEnds("ABB", "bb", false));
}

TEST(StringEnds, IsTrueForAnEmptyTailWhenCaseCounts) {
  EXPECT_TRUE(StringEnds("Hello", "", true));
  EXPECT_TRUE(StringEnds("", "", true));
}

TEST(StringEnds, IsTrueForAnEmptyTailOfAnEmptyTextOnlyWhenCaseDoesNotCount) {
  EXPECT_FALSE(StringEnds("Hello", "", false));
  EXPECT_TRUE(StringEnds("", "", false));
}

TEST(CutStringHead, RemovesTheHead) {
  EXPECT_EQ(CutStringHead("prefix_name", "prefix_", true), "name");
  EXPECT_EQ(CutStringHead("name", "name", true), "");
}

TEST(CutStringHead, RegardsCaseWhenAsked) {
  EXPECT_EQ(CutStringHead("prefix_name", "PREFIX_", true), "prefix_name");
  EXPECT_EQ(CutStringHead("prefix_name", "PREFIX_", false), "name");
}

TEST(CutStringHead, KeepsTheCaseOfTheRest) {
  EXPECT_EQ(CutStringHead("Prefix_nAmE", "pREFIX_", false), "nAmE");
}

TEST(CutStringHead, RemovesItOnce) {
  EXPECT_EQ(CutStringHead("ababc", "ab", true), "abc");
  EXPECT_EQ(CutStringHead("ababc", "AB", false), "abc");
}

TEST(CutStringHead, LeavesATextThatBeginsOtherwise) {
  for (const bool caseSensitive : {true, false}) {
    EXPECT_EQ(CutStringHead("name", "ame", caseSensitive), "name");
    EXPECT_EQ(CutStringHead("na", "name", caseSensitive), "na");
    EXPECT_EQ(CutStringHead("name", "", caseSensitive), "name");
  }
}

TEST(CutStringTail, RemovesTheTail) {
  EXPECT_EQ(CutStringTail("file.txt", ".txt", true), "file");
  EXPECT_EQ(CutStringTail(".txt", ".txt", true), "");
}

TEST(CutStringTail, RegardsCaseWhenAsked) {
  EXPECT_EQ(CutStringTail("file.txt", ".TXT", true), "file.txt");
  EXPECT_EQ(CutStringTail("file.txt", ".TXT", false), "file");
}

TEST(CutStringTail, KeepsTheCaseOfTheRest) {
  EXPECT_EQ(CutStringTail("FiLe.txt", ".TXT", false), "FiLe");
}

TEST(CutStringTail, RemovesItOnce) {
  EXPECT_EQ(CutStringTail("a.b.b", ".b", true), "a.b");
}

TEST(CutStringTail, LeavesATailThatOccursEarlierTooWhenCaseDoesNotCount) {
  EXPECT_EQ(CutStringTail("a.b.b", ".B", false), "a.b.b");
}

TEST(CutStringTail, LeavesATextThatEndsOtherwise) {
  for (const bool caseSensitive : {true, false}) {
    EXPECT_EQ(CutStringTail("name", "nam", caseSensitive), "name");
    EXPECT_EQ(CutStringTail("me", "name", caseSensitive), "me");
    EXPECT_EQ(CutStringTail("name", "", caseSensitive), "name");
    EXPECT_EQ(CutStringTail("", "", caseSensitive), "");
  }
}

TEST(Predicates, CompareOtherBytesThanAsciiLettersAsTheyAre) {
  EXPECT_FALSE(StringBegins("\xE4x", "\xC4", false));
  EXPECT_FALSE(StringContains("x\xC3\xA4x", "\xC3\x84", false));
  EXPECT_FALSE(StringEnds("x[", "{", false));
}

TEST(Predicates, TakeANulForAnOrdinaryByte) {
  for (const bool caseSensitive : {true, false}) {
    EXPECT_TRUE(StringBegins("a\0b"s, "a\0"s, caseSensitive));
    EXPECT_FALSE(StringBegins("a\0b"s, "a\0c"s, caseSensitive));
    EXPECT_TRUE(StringContains("xa\0bx"s, "a\0b"s, caseSensitive));
    EXPECT_FALSE(StringContains("xa\0bx"s, "a\0c"s, caseSensitive));
    EXPECT_TRUE(StringEnds("a\0b"s, "\0b"s, caseSensitive));
    EXPECT_EQ(CutStringHead("a\0b"s, "a\0"s, caseSensitive), "b");
    EXPECT_EQ(CutStringTail("a\0b"s, "\0b"s, caseSensitive), "a");
  }
}

// The rules written as plainly as can be, in searches for first and last occurrences.

struct Model {
  std::string text;  ///< as it is compared
  std::string part;
  bool caseSensitive;

  Model(const std::string& whole, const std::string& piece, bool isCaseSensitive)
      : text(isCaseSensitive ? whole : toupper(whole)),
        part(isCaseSensitive ? piece : toupper(piece)),
        caseSensitive(isCaseSensitive) {}

  bool Begins() const { return text.find(part) == 0; }
  bool Contains() const { return text.find(part) != std::string::npos; }
  bool Ends() const {
    if (text.size() < part.size()) return false;
    return (caseSensitive ? text.rfind(part) : text.find(part)) == text.size() - part.size();
  }
};

std::string RandomText(std::mt19937& random, unsigned long longest) {
  const std::string letters = random() % 2 == 0 ? "ab"s : "aAbB.\0\xE4\xC4"s;
  std::string text(random() % (longest + 1), ' ');
  for (char& c : text) c = letters[random() % letters.size()];
  return text;
}

/// Often a piece of `text`, its case changed now and then.
std::string RandomPart(std::mt19937& random, const std::string& text) {
  if (random() % 4 == 0) return RandomText(random, 4);
  const unsigned long begin = random() % 2 == 0 ? 0 : random() % (text.size() + 1);
  const unsigned long length = random() % 2 == 0 ? text.size() : random() % 5;
  const std::string part = text.substr(begin, length);
  return random() % 3 == 0 ? toupper(part) : part;
}

TEST(PredicatesModel, RandomTextsGiveWhatSearchesGive) {
  std::mt19937 random(1);
  for (int i = 0; i < 200000; ++i) {
    const std::string text = RandomText(random, random() % 20 == 0 ? 100 : 8);
    const std::string part = RandomPart(random, text);
    const bool caseSensitive = i % 2 == 0;
    const Model model(text, part, caseSensitive);
    ASSERT_EQ(StringBegins(text, part, caseSensitive), model.Begins()) << text << '|' << part;
    ASSERT_EQ(StringContains(text, part, caseSensitive), model.Contains()) << text << '|' << part;
    ASSERT_EQ(StringEnds(text, part, caseSensitive), model.Ends()) << text << '|' << part;
    ASSERT_EQ(CutStringHead(text, part, caseSensitive),
              model.Begins() ? text.substr(part.size()) : text);
    ASSERT_EQ(CutStringTail(text, part, caseSensitive),
              model.Ends() ? text.substr(0, text.size() - part.size()) : text);
  }
}

/// `before` times 'a', a 'b', `behind` times 'a'.
std::string OneB(unsigned long before, unsigned long behind) {
  std::string text(before + 1 + behind, 'a');
  text[before] = 'b';
  return text;
}

TEST(PredicatesGrowth, TextsThatAlmostMatchEverywhereCostLinearTime) {
  EXPECT_TRUE(kv_test::IsLinear(20000, [](unsigned long size) {
    const std::string text(2 * size, 'a');
    for (const bool caseSensitive : {true, false}) {
      for (const std::string& part : {OneB(size, 0), OneB(0, size), OneB(size / 2, size / 2)}) {
        EXPECT_FALSE(StringBegins(text, part, caseSensitive));
        EXPECT_FALSE(StringContains(text, part, caseSensitive));
        EXPECT_FALSE(StringEnds(text, part, caseSensitive));
        EXPECT_EQ(CutStringHead(text, part, caseSensitive).size(), text.size());
        EXPECT_EQ(CutStringTail(text, part, caseSensitive).size(), text.size());
      }
    }
  }));
}

}  // namespace
