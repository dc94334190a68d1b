#include "metadata/PvlScanner.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "metadata/PvlModel.h"
#include "metadata/PvlTexts.h"

namespace metadata_test {
namespace {

using SatCommonUtils::TPvlText;
using SatCommonUtils::unpack_array;
using SatCommonUtils::variable_detected;
using Items = std::vector<std::string>;

/// A call of the scanner on a text of its own.
struct Detection {
  explicit Detection(const std::string& text, std::size_t begin = 0) : pos(begin) {
    TPvlText scanned(text);
    found = variable_detected(scanned, &pos, &name, &value);
  }

  bool found;
  std::size_t pos;
  std::string name = "old name";
  std::string value = "old value";
};

TEST(VariableDetected, GivesNameValueAndThePlaceBehindTheSemicolon) {
  const Detection detection(" \t\r\nA_1 = x ;B");
  EXPECT_TRUE(detection.found);
  EXPECT_EQ(detection.name, "A_1");
  EXPECT_EQ(detection.value, " x ");
  EXPECT_EQ(detection.pos, 13u);
}

TEST(VariableDetected, StartsAtThePlaceGiven) {
  const Detection detection("A=1; B=2;", 4);
  EXPECT_TRUE(detection.found);
  EXPECT_EQ(detection.name, "B");
  EXPECT_EQ(detection.value, "2");
  EXPECT_EQ(detection.pos, 9u);
}

TEST(VariableDetected, GoesToTheFirstCharacterThatIsNoWhiteSpaceAlsoWhenItFindsNothing) {
  const Detection detection("\n\t no statement\n");
  EXPECT_FALSE(detection.found);
  EXPECT_EQ(detection.pos, 3u);
}

TEST(VariableDetected, StaysWhereNothingButWhiteSpaceFollows) {
  const Detection detection("A = 1; \n ", 7);
  EXPECT_FALSE(detection.found);
  EXPECT_EQ(detection.pos, 7u);
}

TEST(VariableDetected, DoesNotCountVerticalTabsAndFormFeedsAsWhiteSpace) {
  const Detection detection(" \v\fno statement");
  EXPECT_FALSE(detection.found);
  EXPECT_EQ(detection.pos, 1u);
}

TEST(VariableDetected, FindsNothingInAnEmptyTextAndAtTheEnd) {
  EXPECT_FALSE(Detection("").found);
  const Detection atEnd("A = 1;", 6);
  EXPECT_FALSE(atEnd.found);
  EXPECT_EQ(atEnd.pos, 6u);
}

TEST(VariableDetected, FindsNothingAtAnEqualsSign) {
  const Detection detection(" = 1;");
  EXPECT_FALSE(detection.found);
  EXPECT_EQ(detection.pos, 1u);
}

TEST(VariableDetected, FindsNothingWhenTheEqualsSignIsTheLastCharacter) {
  EXPECT_FALSE(Detection("A =").found);
}

TEST(VariableDetected, FindsNothingWithoutASemicolon) {
  EXPECT_FALSE(Detection("A = 1").found);
  EXPECT_FALSE(Detection("A = \"1;").found);
  EXPECT_FALSE(Detection("A = 1\\").found);
}

TEST(VariableDetected, FindsAValueThatEndsInABackslash) {
  const Detection detection("A=1\\;");
  EXPECT_TRUE(detection.found);
  EXPECT_EQ(detection.value, "1");
  EXPECT_EQ(detection.pos, 5u);
}

/// Lengths to either side of powers of two.
std::vector<std::size_t> Lengths() {
  std::vector<std::size_t> lengths;
  for (std::size_t power = 16; power <= (1u << 20); power *= 2) {
    for (std::size_t length = power - 6; length <= power + 2; ++length) lengths.push_back(length);
  }
  return lengths;
}

TEST(VariableDetected, FindsValuesOfAnyLength) {
  for (const std::size_t length : Lengths()) {
    const std::string plain(length, 'x');
    const Detection bare("A=" + plain + ";");
    EXPECT_TRUE(bare.found && bare.value == plain) << length;
    EXPECT_EQ(bare.pos, length + 3);
    const std::string ends(length, ';');
    const Detection quoted("A=\"" + ends + "\\\";\";B=2;");
    EXPECT_TRUE(quoted.found && quoted.value == ends + "\";") << length;
    EXPECT_EQ(quoted.pos, length + 8);
  }
}

TEST(VariableDetected, FindsNoValueOfAnyLengthThatDoesNotEnd) {
  for (const std::size_t length : Lengths()) {
    EXPECT_FALSE(Detection("A=" + std::string(length, 'x')).found) << length;
    EXPECT_FALSE(Detection("A=\"" + std::string(length, ';')).found) << length;
  }
}

TEST(VariableDetected, TakesNoNameWithANulByteInside) {
  EXPECT_FALSE(Detection(std::string("A\0B = 1;", 8)).found);
}

TEST(VariableDetected, KeepsNulBytesInValues) {
  EXPECT_EQ(Detection(std::string("A=1\0002;", 6)).value, std::string("1\0002", 3));
}

TEST(VariableDetected, TakesAnEmptyNameOfFormFeeds) {
  const Detection detection("\f\v =1;");
  EXPECT_TRUE(detection.found);
  EXPECT_EQ(detection.name, "");
  EXPECT_EQ(detection.value, "1");
}

TEST(VariableDetected, TakesNoByteBeyondAsciiIntoAName) {
  for (int byte = 0x80; byte < 0x100; ++byte) {
    EXPECT_FALSE(Detection(std::string(1, static_cast<char>(byte)) + " = 1;").found) << byte;
  }
}

/// Walks through a text as the converters do, and by jumps, and compares every step.
void CompareWalk(const std::string& text, std::mt19937* random) {
  TPvlText scanned(text);
  std::size_t pos = 0;
  while (pos <= text.size()) {
    unsigned long expectedPos = pos;
    std::string name, value, expectedName, expectedValue;
    const bool expected = DetectVariable(text, &expectedPos, &expectedName, &expectedValue);
    ASSERT_EQ(variable_detected(scanned, &pos, &name, &value), expected);
    ASSERT_EQ(pos, expectedPos);
    if (expected) {
      ASSERT_EQ(name, expectedName);
      ASSERT_EQ(value, expectedValue);
    } else {
      pos += 1 + ((*random)() % 4 == 0 ? (*random)() % 20 : 0);
    }
  }
}

TEST(VariableDetected, FindsWhatTheModelFindsInRandomTexts) {
  std::mt19937 random(20240601);
  for (int i = 0; i < 100000; ++i) {
    const std::string text = RandomPvl(&random, random() % 61);
    ASSERT_NO_FATAL_FAILURE(CompareWalk(text, &random)) << i << testing::PrintToString(text);
  }
}

TEST(VariableDetected, FindsWhatTheModelFindsAmongQuotesAndBackslashes) {
  std::mt19937 random(20240602);
  for (int i = 0; i < 100000; ++i) {
    std::string text(random() % 41, '\0');
    for (char& c : text) c = "=;\"\\A\n \f"[random() % 8];
    ASSERT_NO_FATAL_FAILURE(CompareWalk(text, &random)) << i << testing::PrintToString(text);
  }
}

TEST(UnpackArray, SplitsAListIntoTrimmedItems) {
  Items items{"old"};
  EXPECT_TRUE(unpack_array(" ( 1,\v2\f,\t3\r\n) ", &items));
  EXPECT_EQ(items, (Items{"1", "2", "3"}));
}

TEST(UnpackArray, GivesOneEmptyItemForAnEmptyList) {
  Items items;
  EXPECT_TRUE(unpack_array("()", &items));
  EXPECT_EQ(items, (Items{""}));
}

TEST(UnpackArray, KeepsAListInTheListAsOneItem) {
  Items items;
  EXPECT_TRUE(unpack_array("(A, (B, C))", &items));
  EXPECT_EQ(items, (Items{"A", "(B, C)"}));
}

TEST(UnpackArray, RefusesAnEmptyValueAndWhiteSpaceAlone) {
  Items items;
  EXPECT_FALSE(unpack_array("", &items));
  EXPECT_FALSE(unpack_array(" \t\r\n", &items));
}

TEST(UnpackArray, RefusesAValueWithoutAList) {
  Items items;
  EXPECT_FALSE(unpack_array("1, 2", &items));
}

TEST(UnpackArray, RefusesAListThatIsNotClosed) {
  Items items;
  EXPECT_FALSE(unpack_array("(1, 2", &items));
  EXPECT_FALSE(unpack_array("((1), 2", &items));
}

TEST(UnpackArray, AddsWhatStandsBeforeTheListToTheFirstItem) {
  Items items;
  EXPECT_TRUE(unpack_array("a,b (c, d)", &items));
  EXPECT_EQ(items, (Items{"a,b c", "d"}));
}

TEST(UnpackArray, IgnoresWhatFollowsTheList) {
  Items items;
  EXPECT_TRUE(unpack_array("(a) (b, c), d", &items));
  EXPECT_EQ(items, (Items{"a"}));
}

TEST(UnpackArray, TakesABracketThatClosesNothingAsADepthBelowZero) {
  Items items;
  EXPECT_FALSE(unpack_array(")a(b)", &items));
  EXPECT_TRUE(unpack_array(")a(b(c, d)", &items));
  EXPECT_EQ(items, (Items{")a(bc", "d"}));
}

TEST(UnpackArray, GivesQuotesAndOtherBracketsNoMeaning) {
  Items items;
  EXPECT_TRUE(unpack_array("({a, b}, [c, d], \"e, f\")", &items));
  EXPECT_EQ(items, (Items{"{a", "b}", "[c", "d]", "\"e", "f\""}));
}

TEST(UnpackArray, SplitsRandomValuesAsTheModelDoes) {
  std::mt19937 random(20240603);
  unsigned long lists = 0;
  for (int i = 0; i < 100000; ++i) {
    std::string value(random() % 31, '\0');
    for (char& c : value) c = "(((),,) \n\va\0\xFF\""[random() % 14];
    Items items{"old"}, expected;
    const bool isList = UnpackArray(value, &expected);
    ASSERT_EQ(unpack_array(value, &items), isList) << testing::PrintToString(value);
    if (!isList) continue;
    ++lists;
    ASSERT_EQ(items, expected) << testing::PrintToString(value);
  }
  EXPECT_GT(lists, 20000u);
}

}  // namespace
}  // namespace metadata_test
