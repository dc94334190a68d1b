#include "host/raster/AreaReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "host/HostError.h"
#include "host/support/ErrorOf.h"
#include "host/support/PixelRaster.h"
#include "host/support/Samples.h"

namespace {

using ravelin::AreaReader;
using ravelin::HostError;

/// The sample of channel c at x from the left and y from the top.
std::uint16_t Sample(long x, long y, long c) {
  return static_cast<std::uint16_t>(x * 7 + y * 131 + c * 10007);
}

Samples SamplesOf(long w, long h, long bands) {
  Samples all;
  for (long i = 0; i < w * h * bands; ++i) {
    all.push_back(Sample(i / bands % w, i / bands / w, i % bands));
  }
  return all;
}

// A raster of these samples that keeps the requests that it gets.
class Numbered : public PixelRaster {
 public:
  Numbered(long w, long h, long bands) : PixelRaster(w, h, bands, SamplesOf(w, h, bands)) {}

  using PixelRaster::GetRect;
  int GetRect(const TKvDibDataOutBuffer& out, const TKvDibRect& rect,
              const TInterpolationQuality& quality, int param,
              TKvProgressHandler* progress) override {
    if (fail) return kvDibNothing;
    TKvDibRectI area = {};
    Rect2RectI(rect, iqNearest, 0, &area, false);
    requests.push_back(area);
    return PixelRaster::GetRect(out, rect, quality, param, progress);
  }
  void PurgeCache() override { ++purges; }

  std::vector<TKvDibRectI> requests;
  int purges = 0;
  bool fail = false;
};

Samples ReadAll(AreaReader& reader) {
  Samples all;
  reader.ReadBlocks(
      [&](const std::uint16_t* samples, long rows) {
        all.insert(all.end(), samples, samples + rows * reader.Width() * reader.Channels());
      },
      nullptr);
  return all;
}

Samples Expected(const ravelin::PixelArea& area, long bands) {
  Samples samples;
  for (long y = area.y; y < area.y + area.height; ++y) {
    for (long x = area.x; x < area.x + area.width; ++x) {
      for (long c = 0; c < bands; ++c) samples.push_back(Sample(x, y, c));
    }
  }
  return samples;
}

TEST(AreaReader, GivesTheTopRowFirst) {
  Numbered raster(5, 4, 1);
  AreaReader reader(raster, 0, {0, 0, 5, 4}, "x");
  EXPECT_EQ(ReadAll(reader), Expected({0, 0, 5, 4}, 1));
}

TEST(AreaReader, CountsTheAreaFromTheTopLeft) {
  Numbered raster(20, 700, 3);
  const ravelin::PixelArea area = {3, 5, 11, 600};
  AreaReader reader(raster, 0, area, "x");
  EXPECT_EQ(ReadAll(reader), Expected(area, 3));
}

TEST(AreaReader, AsksForBlocksOfTwoHundredFiftySixRowsFromTheTop) {
  Numbered raster(2, 600, 1);
  AreaReader reader(raster, 0, {0, 0, 2, 600}, "x");
  ReadAll(reader);
  ASSERT_EQ(raster.requests.size(), 3u);
  EXPECT_EQ(raster.requests[0].y, 344);
  EXPECT_EQ(raster.requests[0].h, 256);
  EXPECT_EQ(raster.requests[1].y, 88);
  EXPECT_EQ(raster.requests[1].h, 256);
  EXPECT_EQ(raster.requests[2].y, 0);
  EXPECT_EQ(raster.requests[2].h, 88);
}

TEST(AreaReader, AsksForFewerRowsWhenTheyAreLong) {
  const long width = 8 << 20;
  Numbered raster(width, 9, 1);
  AreaReader reader(raster, 0, {0, 0, width, 9}, "x");
  reader.ReadBlocks([](const std::uint16_t*, long rows) { EXPECT_LE(rows, 4); }, nullptr);
  EXPECT_EQ(raster.requests.size(), 3u);
}

TEST(AreaReader, RefusesRowsThatAreTooLong) {
  Numbered raster(1l << 30, 1, 1);
  EXPECT_THROW(AreaReader(raster, 0, {0, 0, 1l << 30, 1}, "x"), HostError);
}

TEST(AreaReader, MayBeReadTwice) {
  Numbered raster(5, 300, 2);
  AreaReader reader(raster, 0, {0, 0, 5, 300}, "x");
  const Samples once = ReadAll(reader);
  EXPECT_EQ(ReadAll(reader), once);
}

TEST(AreaReader, TellsTheRowsReadOverAllPasses) {
  class Steps : public TKvProgressHandler {
   public:
    bool NeedsService() override { return false; }
    void Service() override {}
    void Step(unsigned long done) override { steps.push_back(done); }
    std::vector<unsigned long> steps;
  };
  Steps progress;
  Numbered raster(2, 300, 1);
  AreaReader reader(raster, 0, {0, 0, 2, 300}, "x");
  const auto ignore = [](const std::uint16_t*, long) {};
  reader.ReadBlocks(ignore, &progress);
  reader.ReadBlocks(ignore, &progress);
  EXPECT_THAT(progress.steps, testing::ElementsAre(256, 300, 556, 600));
}

TEST(AreaReader, PurgesTheRasterAfterSomeMebibytes) {
  Numbered raster(1 << 16, 512, 1);
  AreaReader reader(raster, 0, {0, 0, 1 << 16, 512}, "x");
  reader.ReadBlocks([](const std::uint16_t*, long) {}, nullptr);
  EXPECT_EQ(raster.purges, 2);
}

TEST(AreaReader, ThrowsWhenTheRasterGivesNothing) {
  Numbered raster(5, 4, 1);
  raster.fail = true;
  AreaReader reader(raster, 0, {0, 1, 5, 3}, "out.png");
  EXPECT_THAT(ErrorOf([&] { ReadAll(reader); }),
              testing::HasSubstr("out.png: rows 1 to 3 could not be read"));
}

}  // namespace
