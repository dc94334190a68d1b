// Padding, whose filler has its length and its character exchanged.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "SatCommonUtils/Text.h"

namespace {

using SatCommonUtils::LeftPadding;
using SatCommonUtils::RightPadding;

TEST(LeftPadding, LeavesATextOfTheWidthAsItIs) {
  EXPECT_EQ(LeftPadding("ab", 2, ' '), "ab");
  EXPECT_EQ(LeftPadding("abc", 2, ' '), "abc");
  EXPECT_EQ(LeftPadding("", 0, ' '), "");
}

TEST(LeftPadding, PutsAsManyBytesInFrontAsTheCodeOfThePadCharacterSays) {
  EXPECT_EQ(LeftPadding("ab", 5, ' '), std::string(32, '\xFD') + "ab");
  EXPECT_EQ(LeftPadding("ab", 5, '0'), std::string(48, '\xFD') + "ab");
  EXPECT_EQ(LeftPadding("ab", 5, '\x7F'), std::string(127, '\xFD') + "ab");
}

TEST(LeftPadding, FillsWithTheLowByteOfTheMissingWidthBelowZero) {
  EXPECT_EQ(LeftPadding("", 1, '\x01'), "\xFF");
  EXPECT_EQ(LeftPadding("", 255, '\x01'), "\x01");
  EXPECT_EQ(LeftPadding("ab", 258, '\x01'), std::string(1, '\0') + "ab");
  EXPECT_EQ(LeftPadding("a", 0xFFFFFFFFFFFFFFFF, '\x01'),
            "\x02"
            "a");
}

TEST(LeftPadding, PutsNothingInFrontForNul) {
  EXPECT_EQ(LeftPadding("ab", 5, '\0'), "ab");
}

TEST(LeftPadding, ThrowsALengthErrorForCharactersFrom80) {
  EXPECT_THROW(LeftPadding("ab", 5, '\x80'), std::length_error);
  EXPECT_THROW(LeftPadding("ab", 5, '\xFF'), std::length_error);
}

TEST(LeftPadding, ThrowsNothingWhenThereIsNothingToFill) {
  EXPECT_EQ(LeftPadding("ab", 2, '\x80'), "ab");
}

TEST(RightPadding, LeavesATextOfTheWidthAsItIs) {
  EXPECT_EQ(RightPadding("ab", 2, ' '), "ab");
  EXPECT_EQ(RightPadding("abc", 2, '\xFF'), "abc");
}

TEST(RightPadding, PutsTheSameFillerBehind) {
  EXPECT_EQ(RightPadding("ab", 5, ' '), "ab" + std::string(32, '\xFD'));
  EXPECT_EQ(RightPadding("ab", 258, '\x01'), "ab" + std::string(1, '\0'));
  EXPECT_EQ(RightPadding("ab", 5, '\0'), "ab");
}

TEST(RightPadding, ThrowsALengthErrorForCharactersFrom80) {
  EXPECT_THROW(RightPadding("ab", 5, '\x80'), std::length_error);
  EXPECT_THROW(RightPadding("ab", 5, '\xFF'), std::length_error);
}

}  // namespace
