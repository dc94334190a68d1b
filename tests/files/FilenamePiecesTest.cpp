// File names taken apart at their dots, a function hidden in the module and compiled in.
#include "files/FilenamePieces.h"

#include <gmock/gmock.h>

#include <new>
#include <random>
#include <string>
#include <vector>

#include "kv/Growth.h"
#include "support/FailingNew.h"

namespace {

using SatCommonUtils::break_filename;
using ::testing::ElementsAre;

using Pieces = std::vector<std::string>;

Pieces Broken(const std::string& name) {
  Pieces pieces = {"old", "pieces"};
  break_filename(name, &pieces);
  return pieces;
}

TEST(FilenamePiecesTest, ANameIsTakenApartAtEveryDot) {
  EXPECT_THAT(Broken("a.b.c"), ElementsAre("a", "b", "c"));
}

TEST(FilenamePiecesTest, ANameWithoutADotIsOnePiece) {
  EXPECT_THAT(Broken("abc"), ElementsAre("abc"));
}

TEST(FilenamePiecesTest, ADotAtTheEndIsFollowedByAnEmptyPiece) {
  EXPECT_THAT(Broken("a."), ElementsAre("a", ""));
}

TEST(FilenamePiecesTest, ADotAtTheBeginningFollowsAnEmptyPiece) {
  EXPECT_THAT(Broken(".a"), ElementsAre("", "a"));
}

TEST(FilenamePiecesTest, BetweenTwoDotsIsAnEmptyPiece) {
  EXPECT_THAT(Broken("a..b"), ElementsAre("a", "", "b"));
  EXPECT_THAT(Broken(".."), ElementsAre("", "", ""));
}

TEST(FilenamePiecesTest, AnEmptyNameIsOneEmptyPiece) {
  EXPECT_THAT(Broken(""), ElementsAre(""));
}

TEST(FilenamePiecesTest, SeparatorsAndOtherBytesBelongToThePieces) {
  EXPECT_THAT(Broken(std::string("a/b\\c.\0\xFF", 8)),
              ElementsAre("a/b\\c", std::string("\0\xFF", 2)));
}

TEST(FilenamePiecesTest, TheNameMayBeOneOfThePieces) {
  Pieces pieces = {"a.b"};
  break_filename(pieces[0], &pieces);
  EXPECT_THAT(pieces, ElementsAre("a", "b"));
}

TEST(FilenamePiecesTest, RandomNamesAreBrokenAsAPlainModelBreaksThem) {
  std::mt19937 random(7102);
  for (int i = 0; i < 100000; ++i) {
    std::string name(random() % 16, ' ');
    for (char& c : name) c = random() % 3 == 0 ? '.' : static_cast<char>(random());
    Pieces expected(1);
    for (const char c : name) {
      if (c == '.') {
        expected.emplace_back();
      } else {
        expected.back() += c;
      }
    }
    ASSERT_EQ(Broken(name), expected) << name;
  }
}

TEST(FilenamePiecesTest, NamesOfDotsAndOfNoDotCostLinearTime) {
  for (const char c : {'.', 'a'}) {
    EXPECT_TRUE(kv_test::IsLinear(100000, [&](unsigned long size) {
      Pieces pieces;
      break_filename(std::string(size, c), &pieces);
      EXPECT_EQ(pieces.size(), c == '.' ? size + 1 : 1);
    })) << c;
  }
}

TEST(FilenamePiecesTest, AnAllocationThatFailsPasses) {
  const std::string name = std::string(50, 'a') + "." + std::string(50, 'b');
  Pieces pieces;
  unsigned long failures = 0;
  for (bool isDone = false; !isDone; ++failures) {
    ASSERT_LT(failures, 100u);
    isDone = true;
    try {
      const ravelin_test::FailingNew failing(failures);
      break_filename(name, &pieces);
    } catch (const std::bad_alloc&) {
      isDone = false;
    }
  }
  EXPECT_GT(failures, 3u);
  EXPECT_THAT(pieces, ElementsAre(std::string(50, 'a'), std::string(50, 'b')));
}

}  // namespace
