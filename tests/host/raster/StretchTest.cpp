#include "host/raster/Stretch.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace {

using ravelin::LinearStretch;
using ravelin::NoStretch;

TEST(Stretch, RunsFromBlackToWhiteBetweenItsLimits) {
  const auto table = LinearStretch(100, 355, 255);
  EXPECT_EQ(table[100], 0);
  EXPECT_EQ(table[101], 1);
  EXPECT_EQ(table[355], 255);
}

TEST(Stretch, IsBlackBelowAndWhiteAbove) {
  const auto table = LinearStretch(100, 200, 255);
  EXPECT_EQ(table[1], 0);
  EXPECT_EQ(table[99], 0);
  EXPECT_EQ(table[201], 255);
  EXPECT_EQ(table[65535], 255);
}

TEST(Stretch, KeepsZeroBlack) {
  EXPECT_EQ(LinearStretch(0, 1, 255)[0], 0);
  EXPECT_EQ(LinearStretch(0, 0, 255)[0], 0);
}

TEST(Stretch, MakesAConstantChannelHalfBright) {
  const auto table = LinearStretch(500, 500, 255);
  EXPECT_EQ(table[499], 0);
  EXPECT_EQ(table[500], 128);
  EXPECT_EQ(table[501], 255);
  EXPECT_EQ(LinearStretch(500, 500, 65535)[500], 32768);
}

TEST(Stretch, RoundsToTheNearestBrightness) {
  std::mt19937 random(5);
  for (int i = 0; i < 50; ++i) {
    const unsigned long low = 1 + random() % 60000;
    const unsigned long high = low + 1 + random() % (65535 - low);
    const auto table = LinearStretch(static_cast<std::uint16_t>(low),
                                     static_cast<std::uint16_t>(high), i % 2 == 0 ? 255 : 65535);
    const double brightest = i % 2 == 0 ? 255 : 65535;
    for (unsigned long value = low; value <= high; value += 97) {
      const double exact =
          static_cast<double>(value - low) * brightest / static_cast<double>(high - low);
      ASSERT_LE(std::abs(table[value] - exact), 0.5) << low << ' ' << high << ' ' << value;
    }
  }
}

TEST(Stretch, NoneTakesTheUpperByteForEightBits) {
  const auto table = NoStretch(8);
  EXPECT_EQ(table[0x00ff], 0);
  EXPECT_EQ(table[0x1234], 0x12);
  EXPECT_EQ(table[0xffff], 0xff);
}

TEST(Stretch, NoneKeepsSixteenBits) {
  const auto table = NoStretch(16);
  EXPECT_EQ(table[0], 0);
  EXPECT_EQ(table[0x1234], 0x1234);
}

}  // namespace
