#include <gtest/gtest.h>

#include <climits>
#include <stdexcept>
#include <type_traits>
#include <vector>

#include "Kv/Raster.h"

namespace {

using Size = vec_t_<unsigned long, 2>;

// The least that a class deriving from TKvDibData must supply.
class LeastDibData : public TKvDibData {
 public:
  TKvDibRect Bounds() const override { return {{{1, 2}}, {{30, 40}}, 1}; }
  const TKvDibChannels& Channels() const override { return channels; }
  unsigned long GetInterpolationLevel(const TKvDibRect& /*rect*/,
                                      const TInterpolationQuality& /*quality*/,
                                      bool* /*exact*/) const override {
    return 0;
  }
  int GetRect(const TKvDibDataOutBuffer& /*out*/, const TKvDibRect& /*rect*/,
              const TInterpolationQuality& /*quality*/, int /*param*/,
              TKvProgressHandler* /*progress*/) override {
    return kvDibNothing;
  }
  void PurgeCache() override {}
  unsigned long GetAllLevels(std::vector<TKvDibRect>* /*levels*/) const override { return 0; }
  Size GetScaleDimensions(unsigned long /*level*/) const override { return {{0, 0}}; }

  TKvDibChannels channels{0, 2, {6, 4, 3}};
};

constexpr unsigned char kUntouched = 0xEE;

std::vector<unsigned char> UntouchedBytes(std::size_t count) {
  return std::vector<unsigned char>(count, kUntouched);
}

}  // namespace

TEST(DibData, BoundsExTakesTheScaleOfTheRequestAndNothingElseOfIt) {
  const LeastDibData raster;
  const TKvDibRect bounds = raster.BoundsEx({{{7, 8}}, {{9, 10}}, 4});
  EXPECT_EQ(bounds.pos, (vec_t_<double, 2>{{1, 2}}));
  EXPECT_EQ(bounds.size, (vec_t_<double, 2>{{30, 40}}));
  EXPECT_EQ(bounds.scale, 4);
}

TEST(DibData, HasNoImageNameUnlessOverridden) {
  EXPECT_EQ(LeastDibData().GetImageName(), "");
}

TEST(DibData, LeavesTheRestToDerivingClasses) {
  EXPECT_TRUE(std::is_abstract_v<TKvDibData>);
  EXPECT_TRUE(std::is_abstract_v<TKvMultiScaleDibData>);
}

TEST(DibData, NoClassIsFinal) {
  EXPECT_FALSE(std::is_final_v<TKvDibData>);
  EXPECT_FALSE(std::is_final_v<TKvMultiScaleDibData>);
  EXPECT_FALSE(std::is_final_v<TKvMemoryDibData>);
}

TEST(DibData, ResultsHaveTheirBits) {
  EXPECT_EQ(static_cast<int>(kvDibNothing), 2);
  EXPECT_EQ(static_cast<int>(kvDibWritten), 3);
  EXPECT_EQ(static_cast<int>(iqNearest), 0);
  EXPECT_EQ(static_cast<int>(iqBilinear), 1);
}

TEST(FillDefaultColor, ZeroesThePixelsAndNothingBetweenRows) {
  LeastDibData raster;
  constexpr long kRow = 2 * 2 * 3;
  constexpr long kStride = kRow + 5;
  std::vector<unsigned char> bytes = UntouchedBytes(3 * kStride);
  raster.FillDefaultColor({bytes.data(), kStride}, {{2, 3}});
  for (long i = 0; i < 3 * kStride; ++i) {
    EXPECT_EQ(bytes[static_cast<std::size_t>(i)], i % kStride < kRow ? 0 : kUntouched) << i;
  }
}

TEST(FillDefaultColor, GoesDownwardsWithANegativeStride) {
  LeastDibData raster;
  raster.channels = {0, 1, {1}};
  std::vector<unsigned char> bytes = UntouchedBytes(12);
  raster.FillDefaultColor({bytes.data() + 8, -4}, {{2, 3}});
  EXPECT_EQ(bytes,
            (std::vector<unsigned char>{0, 0, 0xEE, 0xEE, 0, 0, 0xEE, 0xEE, 0, 0, 0xEE, 0xEE}));
}

TEST(FillDefaultColor, ZeroesOneRowWhenTheStrideIsZero) {
  LeastDibData raster;
  raster.channels = {0, 1, {1}};
  std::vector<unsigned char> bytes = UntouchedBytes(3);
  raster.FillDefaultColor({bytes.data(), 0}, {{2, LONG_MAX}});
  EXPECT_EQ(bytes, (std::vector<unsigned char>{0, 0, kUntouched}));
}

TEST(FillDefaultColor, DoesNothingWithoutABuffer) {
  LeastDibData raster;
  EXPECT_NO_THROW(raster.FillDefaultColor({nullptr, 12}, {{2, 3}}));
}

TEST(FillDefaultColor, DoesNothingForASizeOfZero) {
  LeastDibData raster;
  std::vector<unsigned char> bytes = UntouchedBytes(12);
  raster.FillDefaultColor({bytes.data(), 12}, {{0, ULONG_MAX}});
  raster.FillDefaultColor({bytes.data(), 12}, {{ULONG_MAX, 0}});
  raster.FillDefaultColor({bytes.data(), 12}, {{0, 0}});
  EXPECT_EQ(bytes, UntouchedBytes(12));
}

TEST(FillDefaultColor, DoesNothingForPixelsWithoutBytes) {
  LeastDibData raster;
  std::vector<unsigned char> bytes = UntouchedBytes(12);
  raster.channels = {0, 2, {}};
  raster.FillDefaultColor({bytes.data(), 12}, {{2, 1}});
  raster.channels = {0, 0, {1}};
  raster.FillDefaultColor({bytes.data(), 12}, {{2, ULONG_MAX}});
  EXPECT_EQ(bytes, UntouchedBytes(12));
}

TEST(FillDefaultColor, RefusesASizeThatNoBufferHas) {
  LeastDibData raster;
  std::vector<unsigned char> bytes = UntouchedBytes(12);
  const TKvDibDataOutBuffer out = {bytes.data(), 12};
  // Bytes of a row, rows, and their product are too many in turn.
  EXPECT_THROW(raster.FillDefaultColor(out, {{ULONG_MAX, 1}}), std::length_error);
  EXPECT_THROW(raster.FillDefaultColor(out, {{1UL << 61, 1}}), std::length_error);
  EXPECT_THROW(raster.FillDefaultColor(out, {{1, ULONG_MAX}}), std::length_error);
  EXPECT_THROW(raster.FillDefaultColor(out, {{1, 1UL << 60}}), std::length_error);
  EXPECT_THROW(raster.FillDefaultColor({bytes.data(), -12}, {{1, 1UL << 60}}), std::length_error);
  EXPECT_THROW(raster.FillDefaultColor({bytes.data(), LONG_MIN}, {{1, 2}}), std::length_error);
  EXPECT_EQ(bytes, UntouchedBytes(12));
}

TEST(FillDefaultColor, RefusesAPixelWhoseBytesOverflow) {
  LeastDibData raster;
  raster.channels = {0, ULONG_MAX, {1, 1}};
  unsigned char byte = kUntouched;
  EXPECT_THROW(raster.FillDefaultColor({&byte, 1}, {{1, 1}}), std::length_error);
  EXPECT_EQ(byte, kUntouched);
}
