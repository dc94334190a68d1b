// The matcher behind the masks of file-name lists; hidden in the module and compiled in.
#include "files/Wildcard.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "files/WildcardModel.h"
#include "kv/Growth.h"
#include "support/FailingNew.h"

namespace {

using SatCommonUtils::TWildcard;

bool Matches(const std::string& name, const std::string& mask) {
  return TWildcard(mask).check(name);
}

TEST(WildcardTest, AMaskWithoutWildcardsMatchesThatNameAlone) {
  EXPECT_TRUE(Matches("readme.txt", "readme.txt"));
  EXPECT_FALSE(Matches("readme.tx", "readme.txt"));
  EXPECT_FALSE(Matches("readme.txts", "readme.txt"));
  EXPECT_FALSE(Matches("readmx.txt", "readme.txt"));
  EXPECT_FALSE(Matches("", "readme.txt"));
}

TEST(WildcardTest, LetterCaseIsIgnoredInNameAndMask) {
  EXPECT_TRUE(Matches("scene.TIF", "*.tif"));
  EXPECT_TRUE(Matches("scene.tif", "SCENE.*"));
  EXPECT_TRUE(Matches("AZ[`{@", "az[`{@"));
  EXPECT_FALSE(Matches("@[", "`{"));
}

TEST(WildcardTest, LettersBeyondAsciiAreBytesLikeOthers) {
  EXPECT_TRUE(Matches("\xc3\xbc.txt", "\xc3\xbc.txt"));
  EXPECT_FALSE(Matches("\xc3\x9c.txt", "\xc3\xbc.txt"));
}

TEST(WildcardTest, AStarStandsForTheRestOfItsPiece) {
  EXPECT_TRUE(Matches("scene.tif", "*.tif"));
  EXPECT_TRUE(Matches("scene.tif", "sc*.tif"));
  EXPECT_TRUE(Matches("scene.tif", "scene*.tif"));
  EXPECT_TRUE(Matches("scene.tif", "scene.t*"));
  EXPECT_FALSE(Matches("scene.tif", "*.img"));
  EXPECT_FALSE(Matches("scene.tif", "b*.tif"));
}

TEST(WildcardTest, AStarStandsForNothingToo) {
  EXPECT_TRUE(Matches(".tif", "*.tif"));
  EXPECT_TRUE(Matches("", "*"));
}

TEST(WildcardTest, APieceShorterThanWhatStandsBeforeTheStarDoesNotMatch) {
  EXPECT_FALSE(Matches("sc.tif", "scene*.tif"));
}

TEST(WildcardTest, WhatFollowsAStarInItsPieceIsIgnored) {
  EXPECT_TRUE(Matches("band5.raw", "band*x.raw"));
  EXPECT_TRUE(Matches("band.raw", "band*?*##.raw"));
  EXPECT_TRUE(Matches("ab", "a*c"));
}

TEST(WildcardTest, AStarDoesNotCrossADot) {
  EXPECT_FALSE(Matches("scene.b1.tif", "*.tif"));
  EXPECT_FALSE(Matches("readme.txt", "*"));
  EXPECT_TRUE(Matches("readme", "*"));
}

TEST(WildcardTest, NameAndMaskMustHaveTheSameNumberOfPieces) {
  EXPECT_FALSE(Matches("tif", "*.tif"));
  EXPECT_FALSE(Matches("readme", "*.*"));
  EXPECT_TRUE(Matches("readme.txt", "*.*"));
  EXPECT_FALSE(Matches("readme.old.txt", "*.*"));
  EXPECT_TRUE(Matches("readme.old.txt", "*.*.*"));
}

TEST(WildcardTest, EmptyPiecesMatchEachOther) {
  EXPECT_TRUE(Matches("readme.", "*."));
  EXPECT_FALSE(Matches("readme", "*."));
  EXPECT_TRUE(Matches("..", ".."));
  EXPECT_TRUE(Matches("a..b", "a..b"));
  EXPECT_FALSE(Matches("a.x.b", "a..b"));
}

TEST(WildcardTest, AQuestionMarkStandsForExactlyOneByte) {
  EXPECT_TRUE(Matches("b1.img", "b?.img"));
  EXPECT_TRUE(Matches("B2.IMG", "b?.img"));
  EXPECT_FALSE(Matches("b10.img", "b?.img"));
  EXPECT_FALSE(Matches("b.img", "b?.img"));
  EXPECT_TRUE(Matches("\xc3\xbc", "??"));
  EXPECT_FALSE(Matches("\xc3\xbc", "?"));
}

TEST(WildcardTest, AQuestionMarkDoesNotStandForADot) {
  EXPECT_FALSE(Matches("a.b", "a?b"));
  EXPECT_FALSE(Matches("ab.c", "ab?.c"));
}

TEST(WildcardTest, WildcardsInANameAreBytesLikeOthers) {
  EXPECT_TRUE(Matches("a*b?", "a*"));
  EXPECT_TRUE(Matches("?", "?"));
  EXPECT_FALSE(Matches("*", "x"));
  EXPECT_FALSE(Matches("?", "x"));
}

TEST(WildcardTest, ThereAreNeitherEscapesNorCharacterClasses) {
  EXPECT_FALSE(Matches("b1", "b[1]"));
  EXPECT_TRUE(Matches("b[1]", "b[1]"));
  EXPECT_TRUE(Matches("\\x", "\\?"));
  EXPECT_FALSE(Matches("?", "\\?"));
}

TEST(WildcardTest, ANumberSignComparesTheEndOfTheName) {
  EXPECT_TRUE(Matches("scene_META.txt", "#_meta.txt"));
  EXPECT_TRUE(Matches("_meta.txt", "#_META.TXT"));
  EXPECT_FALSE(Matches("meta.txt", "#_meta.txt"));
  EXPECT_FALSE(Matches("scene_meta.txt2", "#_meta.txt"));
  EXPECT_FALSE(Matches("", "#x"));
}

TEST(WildcardTest, TheEndIsComparedAcrossDots) {
  EXPECT_TRUE(Matches("a.b.txt", "#.txt"));
  EXPECT_TRUE(Matches("a.b.txt", "#b.txt"));
}

TEST(WildcardTest, TheEndIsComparedByteForByte) {
  EXPECT_TRUE(Matches("a*b", "#*b"));
  EXPECT_FALSE(Matches("axb", "#*b"));
  EXPECT_TRUE(Matches("a?", "#?"));
  EXPECT_FALSE(Matches("ax", "#?"));
  EXPECT_TRUE(Matches("a#b", "##b"));
}

TEST(WildcardTest, ANumberSignAloneMatchesNothing) {
  EXPECT_FALSE(Matches("a", "#"));
  EXPECT_FALSE(Matches("#", "#"));
  EXPECT_FALSE(Matches("", "#"));
}

TEST(WildcardTest, ANumberSignThatIsNotTheFirstByteIsAByteLikeOthers) {
  EXPECT_TRUE(Matches("a#", "a#"));
  EXPECT_FALSE(Matches("ba", "b#a"));
}

TEST(WildcardTest, AnEmptyMaskMatchesNothing) {
  EXPECT_FALSE(Matches("a", ""));
  EXPECT_FALSE(Matches("", ""));
}

TEST(WildcardTest, NulBytesAreBytesLikeOthers) {
  const std::string name("a\0b.c", 5);
  EXPECT_TRUE(Matches(name, name));
  EXPECT_TRUE(Matches(name, "a?b.c"));
  EXPECT_FALSE(Matches(name, "a"));
}

TEST(WildcardTest, RandomNamesAndMasksMatchAsTheRulesSay) {
  std::mt19937 random(72);
  const auto text = [&](const std::string& alphabet, unsigned long longest) {
    std::string made;
    for (unsigned long n = random() % (longest + 1); n > 0; --n) {
      made += alphabet[random() % alphabet.size()];
    }
    return made;
  };
  unsigned long matches = 0;
  for (int i = 0; i < 300000; ++i) {
    const std::string name = text("aAbB..*?#\xc3", 7);
    std::string mask = text("aAb..*??#\xc3", 6);
    if (random() % 4 == 0) mask = std::string(1, '#').append(name, name.size() / 2);
    ASSERT_EQ(Matches(name, mask), files_test::Matches(name, mask))
        << "name '" << name << "', mask '" << mask << "'";
    matches += files_test::Matches(name, mask);
  }
  EXPECT_GT(matches, 20000u);
}

TEST(WildcardTest, MatchingAllocatesNothing) {
  const std::string name(1000, 'A');
  for (const char* text : {"aaaa*x", "#AAAA", "a?*.*", "*"}) {
    const TWildcard mask(text);
    mask.check(name);
    const ravelin_test::FailingNew failing(0);
    EXPECT_NO_THROW(mask.check(name)) << text;
  }
}

TEST(WildcardTest, MatchingIsLinearInNameAndMask) {
  for (const std::string& piece : {std::string("*a"), std::string("a?"), std::string("*a.")}) {
    EXPECT_TRUE(kv_test::IsLinear(100000, [&](unsigned long size) {
      std::string mask, name;
      while (mask.size() < size) mask += piece;
      while (name.size() < size) name += piece.back() == '.' ? "aaaa." : "aaaaa";
      TWildcard(mask + "b").check(name);
      TWildcard(std::string(1, '#').append(mask)).check(name);
    })) << piece;
  }
}

}  // namespace
