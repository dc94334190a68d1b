#include "host/scene/ReducedRaster.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <set>

#include "host/raster/AreaReader.h"
#include "host/support/PixelRaster.h"

namespace {

using namespace ravelin;
using Reference = var_a_legacy::var_a<SatCommonUtils::TBasePushbroomDibData*>;

/// Keeps which rows it was asked for, counted from the top.
class WatchedRaster : public PixelRaster {
 public:
  using PixelRaster::GetRect;
  using PixelRaster::PixelRaster;
  int GetRect(const TKvDibDataOutBuffer& out, const TKvDibRect& rect,
              const TInterpolationQuality& quality, int param,
              TKvProgressHandler* progress) override {
    TKvDibRectI area = {};
    Rect2RectI(rect, iqNearest, 0, &area, false);
    for (long row = area.y; row < area.y + area.h; ++row) rows.insert(height - 1 - row);
    if (fails) return kvDibNothing;
    return PixelRaster::GetRect(out, rect, quality, param, progress);
  }
  void PurgeCache() override { ++purges; }

  std::set<long> rows;
  bool fails = false;
  int purges = 0;
};

Samples AllOf(ReducedRaster& raster) {
  Samples all;
  AreaReader area(raster, 0, {0, 0, raster.width, raster.height}, "x");
  area.ReadBlocks(
      [&](const std::uint16_t* samples, long rows) {
        all.insert(all.end(), samples, samples + rows * raster.width * raster.bandsCount);
      },
      nullptr);
  return all;
}

TEST(ReducedSize, KeepsTheProportions) {
  const auto text = [](long width, long height, long longest) {
    return ToText(ReducedSize({width, height}, longest));
  };
  EXPECT_EQ(text(60000, 60000, 2048), "2048 x 2048");
  EXPECT_EQ(text(4096, 1000, 2048), "2048 x 500");
  EXPECT_EQ(text(1000, 4096, 2048), "500 x 2048");
  EXPECT_EQ(text(2048, 7, 2048), "2048 x 7");
  EXPECT_EQ(text(2147483647, 1, 2048), "2048 x 1");
  EXPECT_EQ(text(2147483647, 2147483646, 2048), "2048 x 2048");
}

TEST(ReducedRaster, ShowsTheMiddleOfThePixelsThatAPixelStandsFor) {
  ReducedRaster raster(Reference(new PixelRaster(6, 3, 1,
                                                 {0, 1, 2, 3, 4, 5,        //
                                                  10, 11, 12, 13, 14, 15,  //
                                                  20, 21, 22, 23, 24, 25})),
                       {2, 1});
  EXPECT_EQ(raster.width, 2);
  EXPECT_EQ(raster.height, 1);
  EXPECT_EQ(AllOf(raster), Samples({11, 14}));
}

TEST(ReducedRaster, ReadsOnlyTheRowsThatItShows) {
  auto* const whole = new WatchedRaster(4, 100, 1, Samples(400, 1));
  ReducedRaster raster(Reference(whole), {1, 4});
  AllOf(raster);
  EXPECT_THAT(whole->rows, testing::ElementsAre(12, 37, 62, 87));
}

TEST(ReducedRaster, AgreesWithPickingEveryPixel) {
  std::mt19937 random(3);
  for (int round = 0; round < 30; ++round) {
    const long width = 1 + static_cast<long>(random() % 40);
    const long height = 1 + static_cast<long>(random() % 600);
    const long bands = 1 + static_cast<long>(random() % 4);
    const long w = 1 + static_cast<long>(random()) % width;
    const long h = 1 + static_cast<long>(random()) % height;
    const Samples pixels =
        RandomSamples(static_cast<std::size_t>(width * height * bands), random());
    Samples expected;
    for (long y = 0; y < h; ++y) {
      for (long x = 0; x < w; ++x) {
        const auto column = static_cast<long>((static_cast<double>(x) + 0.5) *
                                              static_cast<double>(width) / static_cast<double>(w));
        const auto row = static_cast<long>((static_cast<double>(y) + 0.5) *
                                           static_cast<double>(height) / static_cast<double>(h));
        for (long band = 0; band < bands; ++band) {
          expected.push_back(
              pixels[static_cast<std::size_t>((row * width + column) * bands + band)]);
        }
      }
    }
    ReducedRaster raster(Reference(new PixelRaster(width, height, bands, pixels)), {w, h});
    ASSERT_EQ(AllOf(raster), expected) << round;
  }
}

TEST(ReducedRaster, GivesWhatTheWholeGivesForARowThatFails) {
  auto* const whole = new WatchedRaster(4, 8, 1, Samples(32, 1));
  whole->fails = true;
  ReducedRaster raster(Reference(whole), {2, 4});
  Samples pixels(8, 7);
  const TKvDibDataOutBuffer out = {reinterpret_cast<unsigned char*>(pixels.data()), 4};
  EXPECT_EQ(raster.GetRect(out, raster.Bounds(), iqNearest, 0, nullptr), kvDibNothing);
  EXPECT_EQ(whole->rows.size(), 1u);
}

TEST(ReducedRaster, LetsTheWholeForgetWhatItRead) {
  auto* const whole = new WatchedRaster(1 << 19, 80, 1, Samples(std::size_t{80} << 19, 1));
  ReducedRaster raster(Reference(whole), {1, 70});
  AllOf(raster);
  EXPECT_EQ(whole->purges, 2);
}

}  // namespace
