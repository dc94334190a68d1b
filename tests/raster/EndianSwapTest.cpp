#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstring>

#include "SatCommonUtils/Raster.h"

namespace {

using SatCommonUtils::EndianSwap;

template <class T>
std::array<unsigned char, sizeof(T)> BytesAfterSwap(
    const std::array<unsigned char, sizeof(T)>& bytes) {
  T value;
  std::memcpy(&value, bytes.data(), sizeof value);
  EndianSwap(&value);
  std::array<unsigned char, sizeof(T)> swapped;
  std::memcpy(swapped.data(), &value, sizeof value);
  return swapped;
}

TEST(EndianSwapTest, TheTwoBytesOfAShortAreExchanged) {
  EXPECT_EQ(BytesAfterSwap<unsigned short>({0x12, 0x34}),
            (std::array<unsigned char, 2>{0x34, 0x12}));
}

TEST(EndianSwapTest, TheFourBytesOfAnIntAreReversed) {
  EXPECT_EQ(BytesAfterSwap<unsigned int>({0xB0, 0xB1, 0xB2, 0xB3}),
            (std::array<unsigned char, 4>{0xB3, 0xB2, 0xB1, 0xB0}));
}

TEST(EndianSwapTest, AllEightBytesOfADoubleAreReversed) {
  EXPECT_EQ(BytesAfterSwap<double>({1, 2, 3, 4, 5, 6, 7, 8}),
            (std::array<unsigned char, 8>{8, 7, 6, 5, 4, 3, 2, 1}));
}

TEST(EndianSwapTest, ADoubleIsAPatternSoASignallingNaNComesThroughUnchanged) {
  const std::array<unsigned char, 8> signallingNaN = {0x01, 0, 0, 0, 0, 0, 0xF0, 0x7F};
  EXPECT_EQ(BytesAfterSwap<double>({0x7F, 0xF0, 0, 0, 0, 0, 0, 0x01}), signallingNaN);
  EXPECT_EQ(BytesAfterSwap<double>(signallingNaN),
            (std::array<unsigned char, 8>{0x7F, 0xF0, 0, 0, 0, 0, 0, 0x01}));
}

TEST(EndianSwapTest, SwappingTwiceGivesEveryShortBack) {
  for (unsigned int i = 0; i <= 0xFFFF; ++i) {
    auto value = static_cast<unsigned short>(i);
    EndianSwap(&value);
    ASSERT_EQ(value, static_cast<unsigned short>((i >> 8) | (i << 8)));
    EndianSwap(&value);
    ASSERT_EQ(value, i);
  }
}

}  // namespace
