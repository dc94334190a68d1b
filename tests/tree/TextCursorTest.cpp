#include "tree/TextCursor.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <random>
#include <string>

namespace {

using SatCommonUtils::TTextCursor;

/// Scans an int and then everything else as the library does.
void ExpectScannedLikeTheLibrary(const std::string& text) {
  int expected = 77;
  int used = -1;
  const bool isThere = std::sscanf(text.c_str(), "%d%n", &expected, &used) == 1;
  TTextCursor cursor(text.c_str());
  int found = 77;
  ASSERT_EQ(cursor.Scan(&found), isThere) << text;
  ASSERT_EQ(found, expected) << text;
  if (isThere) {
    ASSERT_EQ(cursor.At() - text.c_str(), used) << text;
  }
  unsigned long long expectedCount = 77;
  const bool isCount = std::sscanf(text.c_str(), "%llu", &expectedCount) == 1;
  unsigned long count = 77;
  ASSERT_EQ(TTextCursor(text.c_str()).Scan(&count), isCount) << text;
  ASSERT_EQ(count, expectedCount) << text;
}

TEST(TextCursorTest, NumbersAreScannedAsTheLibraryScansThem) {
  for (const char* text : {"0",
                           "12abc",
                           "-5",
                           "+5",
                           "--5",
                           "+-5",
                           " \t\n\v\f\r7",
                           "",
                           " ",
                           "-",
                           "x",
                           "007",
                           "0x10",
                           "2147483647",
                           "2147483648",
                           "-2147483648",
                           "-2147483649",
                           "4294967296",
                           "9223372036854775807",
                           "9223372036854775808",
                           "-9223372036854775808",
                           "-9223372036854775809",
                           "18446744073709551615",
                           "18446744073709551616",
                           "-18446744073709551615",
                           "-18446744073709551616",
                           "99999999999999999999999999999"}) {
    ExpectScannedLikeTheLibrary(text);
  }
}

TEST(TextCursorTest, RandomTextsAreScannedAsTheLibraryScansThem) {
  std::mt19937 random(5);
  const std::string characters = "0123456789019-+ \t\nx";
  for (int i = 0; i < 20000; ++i) {
    std::string text(random() % 24, '\0');
    for (char& c : text) c = characters[random() % (random() % 4 == 0 ? characters.size() : 12)];
    ExpectScannedLikeTheLibrary(text);
  }
}

TEST(TextCursorTest, NothingPassesTheNul) {
  TTextCursor cursor("ab");
  cursor.SkipPast('x');
  EXPECT_EQ(cursor.Char(), '\0');
  cursor.SkipPast('x');
  EXPECT_FALSE(cursor.SkipIf('\0'));
  EXPECT_EQ(cursor.CountUntil('x'), 0u);
  EXPECT_EQ(cursor.CountTabs(), 0u);
}

TEST(TextCursorTest, SkipsPastTheFirstOfACharacter) {
  TTextCursor cursor("ab)c)d");
  EXPECT_EQ(cursor.CountUntil(')'), 2u);
  cursor.SkipPast(')');
  EXPECT_STREQ(cursor.At(), "c)d");
}

TEST(TextCursorTest, KnowsWhetherSoManyBytesAreLeft) {
  const TTextCursor cursor("abc");
  EXPECT_TRUE(cursor.HasLeft(0));
  EXPECT_TRUE(cursor.HasLeft(3));
  EXPECT_FALSE(cursor.HasLeft(4));
  EXPECT_FALSE(cursor.HasLeft(ULONG_MAX));
  EXPECT_FALSE(cursor.HasLeft(LONG_MAX));
}

}  // namespace
