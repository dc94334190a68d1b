// What is taken off the ends of texts.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>

#include "Kv/Text.h"
#include "SatCommonUtils/Text.h"

namespace {

using SatCommonUtils::RemoveQuotes;
using SatCommonUtils::RemoveQuotesAndWhitespaces;
using SatCommonUtils::RemoveTrailingSymbol;

/// What RemoveQuotes gives, and the text that it leaves.
using Removal = std::pair<bool, std::string>;

Removal Removed(const std::string& text) {
  std::string out = "old";
  const bool isRemoved = RemoveQuotes(text, &out);
  return {isRemoved, out};
}

TEST(RemoveQuotes, TakesTheQuotesOffTheTrimmedText) {
  EXPECT_EQ(Removed(" \"abc\" "), Removal(true, "abc"));
  EXPECT_EQ(Removed("\" abc \""), Removal(true, " abc "));
}

TEST(RemoveQuotes, LeavesTheTrimmedTextWhenThereAreNotTwo) {
  EXPECT_EQ(Removed(" abc "), Removal(false, "abc"));
  EXPECT_EQ(Removed(" \"abc "), Removal(false, "\"abc"));
  EXPECT_EQ(Removed("abc\" "), Removal(false, "abc\""));
  EXPECT_EQ(Removed(" "), Removal(false, ""));
}

TEST(RemoveQuotes, DoesNotTakeOneQuoteForTwo) {
  EXPECT_EQ(Removed(" \" "), Removal(false, "\""));
}

TEST(RemoveQuotes, LeavesNothingOfTwoQuotes) {
  EXPECT_EQ(Removed("\"\""), Removal(true, ""));
}

TEST(RemoveQuotes, LeavesInnerQuotesAsTheyAre) {
  EXPECT_EQ(Removed("\"\"a\"\"b\"\""), Removal(true, "\"a\"\"b\""));
}

TEST(RemoveQuotes, WritesOverTheTextThatItReads) {
  std::string text = " \"abc\" ";
  EXPECT_TRUE(RemoveQuotes(text, &text));
  EXPECT_EQ(text, "abc");
}

TEST(RemoveQuotes, GivesTheInsideOfTheTrimmedText) {
  EXPECT_EQ(RemoveQuotes(" \"abc\" "), "abc");
  EXPECT_EQ(RemoveQuotes("\"\""), "");
}

TEST(RemoveQuotes, GivesTheTextUntrimmedWhenThereAreNotTwo) {
  EXPECT_EQ(RemoveQuotes("abc "), "abc ");
  EXPECT_EQ(RemoveQuotes(" \""), " \"");
  EXPECT_EQ(RemoveQuotes(""), "");
}

TEST(RemoveQuotesAndWhitespaces, TakesAnyMixOffBothEnds) {
  EXPECT_EQ(RemoveQuotesAndWhitespaces("\" \ta b\"\n"), "a b");
  EXPECT_EQ(RemoveQuotesAndWhitespaces("\r\n\"\"a\"\" \t"), "a");
}

TEST(RemoveQuotesAndWhitespaces, LeavesTheInsideAsItIs) {
  EXPECT_EQ(RemoveQuotesAndWhitespaces("\"a \" \t b\""), "a \" \t b");
}

TEST(RemoveQuotesAndWhitespaces, LeavesOtherWhiteSpaceAtTheEnds) {
  EXPECT_EQ(RemoveQuotesAndWhitespaces(" \va\f "), "\va\f");
}

TEST(RemoveQuotesAndWhitespaces, LeavesNothingOfATextOfThem) {
  EXPECT_EQ(RemoveQuotesAndWhitespaces(" \t\r\n\""), "");
  EXPECT_EQ(RemoveQuotesAndWhitespaces(""), "");
}

TEST(RemoveTrailingSymbol, TakesOneOff) {
  EXPECT_EQ(RemoveTrailingSymbol("a//", '/', false), "a/");
  EXPECT_EQ(RemoveTrailingSymbol("a/", '/', false), "a");
  EXPECT_EQ(RemoveTrailingSymbol("/", '/', false), "");
}

TEST(RemoveTrailingSymbol, TakesAllOff) {
  EXPECT_EQ(RemoveTrailingSymbol("a//", '/', true), "a");
  EXPECT_EQ(RemoveTrailingSymbol("/a/b//", '/', true), "/a/b");
  EXPECT_EQ(RemoveTrailingSymbol("///", '/', true), "");
}

TEST(RemoveTrailingSymbol, LeavesATextWithoutItAsItIs) {
  EXPECT_EQ(RemoveTrailingSymbol("/a", '/', false), "/a");
  EXPECT_EQ(RemoveTrailingSymbol("/a", '/', true), "/a");
}

TEST(RemoveTrailingSymbol, LeavesNothingOfNothing) {
  EXPECT_EQ(RemoveTrailingSymbol("", '/', false), "");
  EXPECT_EQ(RemoveTrailingSymbol("", '/', true), "");
}

TEST(RemoveQuotesAndWhitespaces, AgreesWithRemovalByteByByteOnRandomTexts) {
  std::mt19937 random(67);
  for (int i = 0; i < 100000; ++i) {
    std::string text;
    for (unsigned long size = random() % 8; size > 0; --size)
      text += "\" \ta/\n\r\v\0"[random() % 9];

    const std::string removed = " \t\r\n\"";
    std::string expected = text;
    while (!expected.empty() && removed.find(expected.back()) != std::string::npos) {
      expected.pop_back();
    }
    while (!expected.empty() && removed.find(expected[0]) != std::string::npos)
      expected.erase(0, 1);
    ASSERT_EQ(RemoveQuotesAndWhitespaces(text), expected) << text;

    std::string shorter = text;
    while (!shorter.empty() && shorter.back() == '/') shorter.pop_back();
    ASSERT_EQ(RemoveTrailingSymbol(text, '/', true), shorter) << text;

    const std::string trimmed = trim(text);
    const bool isQuoted = trimmed.size() > 1 && trimmed[0] == '"' && trimmed.back() == '"';
    ASSERT_EQ(Removed(text),
              Removal(isQuoted, isQuoted ? trimmed.substr(1, trimmed.size() - 2) : trimmed));
  }
}

}  // namespace
