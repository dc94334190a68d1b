#include "host/shapefile/PointText.h"

#include <gtest/gtest.h>

#include <string>

#include "host/support/ErrorOf.h"
#include "shapefile/ShapeFiles.h"

namespace {

using ravelin::ParsePoints;
using shape_test::BytesOf;
using shape_test::TShapeFileRing;

const TShapeFileRing kCorner = {{0, 0}, {0, 1.5}, {-2, 1e3}};

void ExpectPoints(const std::string& text, const TShapeFileRing& points) {
  EXPECT_EQ(BytesOf({ParsePoints(text, "a.txt")}), BytesOf({points})) << text;
}

std::string ErrorOf(const std::string& text) {
  return ::ErrorOf([&] { ParsePoints(text, "a.txt"); });
}

void ExpectLineError(const std::string& line) {
  EXPECT_EQ(ErrorOf("0 0\n" + line + "\n1 1\n2 2\n"),
            "a.txt: line 2: '" + line +
                "' is not two numbers; give x and y, with blanks between them, on each line");
}

TEST(PointText, EachLineIsAPoint) {
  ExpectPoints("0 0\n0 1.5\n-2 1e3\n", kCorner);
}

TEST(PointText, TheLastLineNeedsNoEnd) {
  ExpectPoints("0 0\n0 1.5\n-2 1e3", kCorner);
}

TEST(PointText, BlanksOfAnyKindSeparate) {
  ExpectPoints("  0\t0 \n0     1.5\t\n\t-2 \t1e3", kCorner);
}

TEST(PointText, LinesMayEndWithCarriageReturns) {
  ExpectPoints("0 0\r\n0 1.5\r\n-2 1e3\r\n\r\n", kCorner);
}

TEST(PointText, EmptyLinesAndCommentsArePassedOver) {
  ExpectPoints("# corners\n\n0 0\n  # the second\n0 1.5\n   \n-2 1e3\n\n", kCorner);
}

TEST(PointText, AByteOrderMarkIsPassedOver) {
  ExpectPoints(
      "\xEF\xBB\xBF"
      "0 0\n0 1.5\n-2 1e3",
      kCorner);
}

TEST(PointText, NumbersMayHaveAPlusSign) {
  ExpectPoints("+0 +0\n0 +1.5\n-2 1e+3", kCorner);
}

TEST(PointText, AClosingPointIsLeftOut) {
  ExpectPoints("0 0\n0 1.5\n-2 1e3\n0.0 -0\n", kCorner);
}

TEST(PointText, OnlyOneClosingPointIsLeftOut) {
  ExpectPoints("1 2\n3 4\n5 6\n1 2\n1 2\n", {{1, 2}, {3, 4}, {5, 6}, {1, 2}});
}

TEST(PointText, EveryDigitCounts) {
  ExpectPoints("0.1 16.344976840895242\n1 1\n2 2", {{0.1, 16.344976840895242}, {1, 1}, {2, 2}});
}

TEST(PointText, LinesThatAreNotTwoNumbersAreRefused) {
  for (const char* line :
       {"1", "1 2 3", "1,2", "1, 2", "a b", "1 b", "1 2x", "1 0x10", "+ 1", "+-1 2", "++1 2",
        "1 2 # comment", "nan 1", "1 inf", "1 -inf", "1 1e999"}) {
    ExpectLineError(line);
  }
}

TEST(PointText, LongLinesAreCutInMessages) {
  EXPECT_EQ(ErrorOf(std::string(100, 'x')),
            "a.txt: line 1: '" + std::string(60, 'x') +
                "...' is not two numbers; give x and y, with blanks between them, on each line");
}

TEST(PointText, FewerThanThreePointsAreRefused) {
  EXPECT_EQ(ErrorOf(""), "a.txt: has 0 points for the ring; give at least 3");
  EXPECT_EQ(ErrorOf("# none\n"), "a.txt: has 0 points for the ring; give at least 3");
  EXPECT_EQ(ErrorOf("1 1\n"), "a.txt: has 1 points for the ring; give at least 3");
  EXPECT_EQ(ErrorOf("1 1\n2 2\n1 1\n"), "a.txt: has 2 points for the ring; give at least 3");
}

}  // namespace
