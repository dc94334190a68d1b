#include "shapefile/PolygonLength.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

using SatCommonUtils::PolygonFileBytes;

TEST(PolygonLengthTest, CountsHeadersPartsAndPoints) {
  EXPECT_EQ(PolygonFileBytes(0, 0), 152u);
  EXPECT_EQ(PolygonFileBytes(1, 5), 236u);
  EXPECT_EQ(PolygonFileBytes(2, 9), 304u);
}

TEST(PolygonLengthTest, AFileMayHaveNearlyFourGibibytes) {
  constexpr unsigned long kMostPoints = (0xFFFFFFFFUL - 156) / 16;
  EXPECT_EQ(PolygonFileBytes(1, kMostPoints), 156 + 16 * kMostPoints);
  EXPECT_FALSE(PolygonFileBytes(1, kMostPoints + 1));
  EXPECT_FALSE(PolygonFileBytes(0x40000000, 0));
  EXPECT_TRUE(PolygonFileBytes(0x3FFFFFFF - 38, 0));
  EXPECT_FALSE(PolygonFileBytes(0x3FFFFFFF - 37, 0));
}

TEST(PolygonLengthTest, CountsThatWouldOverflowHaveNoLength) {
  constexpr unsigned long kMost = std::numeric_limits<unsigned long>::max();
  EXPECT_FALSE(PolygonFileBytes(kMost, 0));
  EXPECT_FALSE(PolygonFileBytes(0, kMost));
  EXPECT_FALSE(PolygonFileBytes(kMost / 4 + 1, kMost / 16 + 1));
}

}  // namespace
