#include <gtest/gtest.h>

#include <string>

#include "SatCommonUtils/Text.h"

namespace {

using namespace std::string_literals;
using SatCommonUtils::PseudoUTF16toUTF8;
using SatCommonUtils::PseudoUTF16toUTF8BOM;

std::string Converted(const std::string& bytes) {
  TKvMemoryStream stream(bytes);
  return PseudoUTF16toUTF8BOM(&stream);
}

TEST(PseudoUtf16, KeepsTheLowBytes) {
  EXPECT_EQ(PseudoUTF16toUTF8("A\0B\x20\xFC\0"s, true), "AB\xFC");
  EXPECT_EQ(PseudoUTF16toUTF8("\0A\x20\x42\0\xFC"s, false), "AB\xFC");
}

TEST(PseudoUtf16, ReadsWhatFollowsAMark) {
  EXPECT_EQ(Converted("\xFF\xFE\x41\0\x42\0"s), "AB");
  EXPECT_EQ(Converted("\xFE\xFF\0\x41\0\x42"s), "AB");
}

TEST(PseudoUtf16, GivesNothingForOtherMarks) {
  EXPECT_EQ(Converted("\xEF\xBB\xBFtext"), "");
  EXPECT_EQ(Converted("\xFF\xFE\0\0A\0\0\0"s), "");
  EXPECT_EQ(Converted("\0\0\xFE\xFF\0\0\0A"s), "");
  EXPECT_EQ(Converted("A\0B\0"s), "");
}

}  // namespace
