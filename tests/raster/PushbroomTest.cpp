#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <random>

#include "raster/RasterTest.h"

namespace {

using raster_test::ArrayLimit;
using raster_test::ArrayLog;
using raster_test::NoProgressWanted;
using raster_test::Output;
using raster_test::RasterTest;
using raster_test::Request;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kEdge = 4503599627370496.0;  // 2^52

unsigned short SampleAt(long x, long yFromTop, long band) {
  return static_cast<unsigned short>(1 + 17 * x + 1031 * yFromTop + 8209 * band);
}

/// Its ReadData records the block and, unless told otherwise, fills it with SampleAt.
class ScriptedBand : public SatCommonUtils::TPushbroomDibData<unsigned short> {
 public:
  struct Block {
    long x, y, w, h;
    bool operator==(const Block&) const = default;
  };
  struct Question {
    TKvDibRect rect;
    TInterpolationQuality quality;
    int param;
    bool clip;
  };

  ScriptedBand(long w, long h, long bands = 1) {
    width = w;
    height = h;
    bandsCount = bands;
    channels.sampleSize = 2;
    channels.kinds.assign(static_cast<std::size_t>(bands), 1);
    FillDefaultLevelBounds({{static_cast<unsigned long>(w), static_cast<unsigned long>(h)}}, 1);
  }

  bool AllocReadData(long* pos, long* size) override {
    ++allocCalls;
    return refusesAlloc ? false : TPushbroomDibData::AllocReadData(pos, size);
  }

  int allocCalls = 0;
  bool refusesAlloc = false;

  using TPushbroomDibData::readBuffer;
  using TPushbroomDibData::readBufferSize;

  std::vector<Block> blocks;
  bool readResult = true;
  bool fills = true;
  std::vector<Question> questions;
  long forcedLevel = -1;
  TKvDibRectI forcedRect = {0, 0, 1, 1};

  bool ReadData(long* pos, long* size) override {
    blocks.push_back({pos[0], pos[1], size[0], size[1]});
    unsigned short* sample = readBuffer;
    for (long y = 0; fills && y < size[1]; ++y) {
      for (long x = 0; x < size[0]; ++x) {
        for (long band = 0; band < bandsCount; ++band) {
          *sample++ = SampleAt(pos[0] + x, pos[1] + y, band);
        }
      }
    }
    return readResult;
  }
  void PurgeCache() override {}

  unsigned long Rect2RectI(const TKvDibRect& rect, const TInterpolationQuality& quality, int param,
                           TKvDibRectI* rectI, bool clip) override {
    questions.push_back({rect, quality, param, clip});
    const unsigned long level = TPushbroomDibData::Rect2RectI(rect, quality, param, rectI, clip);
    if (forcedLevel < 0) return level;
    *rectI = forcedRect;
    return static_cast<unsigned long>(forcedLevel);
  }
};

class PushbroomTest : public RasterTest {
 protected:
  static int Get(ScriptedBand& band, Output& out, const TKvDibRect& rect) {
    return band.GetRect(out.Buffer(), rect, iqNearest, 0, nullptr);
  }
  static void ExpectEmpty(const TKvDibRect& rect) {
    ScriptedBand band(8, 6);
    Output out(6, 16);
    EXPECT_EQ(Get(band, out, rect), 2);
    EXPECT_TRUE(out.Untouched());
    EXPECT_THAT(band.blocks, IsEmpty());
  }
  static bool Alloc(ScriptedBand& band, long w, long h) {
    long pos[] = {0, 0};
    long size[] = {w, h};
    return band.AllocReadData(pos, size);
  }
  static std::string MessageFor(ScriptedBand& band, const TKvDibRect& rect) {
    Output out(6, 16);
    try {
      Get(band, out, rect);
    } catch (const std::logic_error& error) {
      EXPECT_TRUE(out.Untouched());
      EXPECT_THAT(band.blocks, IsEmpty());
      return error.what();
    }
    return "no exception";
  }
};

TEST_F(PushbroomTest, ThereIsNoReadBufferAfterConstruction) {
  ScriptedBand band(8, 6);
  EXPECT_EQ(band.readBuffer, nullptr);
  EXPECT_EQ(band.readBufferSize, 0);
  EXPECT_EQ(band.GetReadBuffer(), nullptr);
}

TEST_F(PushbroomTest, ALevelOtherThanFullResolutionRaisesALogicErrorThatSaysSo) {
  ScriptedBand band(8, 6);
  EXPECT_EQ(MessageFor(band, Request(0, 0, 8, 6, 2)),
            "@TPushbroomDibData<T>::GetRect - Invalid scale");
  EXPECT_EQ(MessageFor(band, Request(0, 0, 8, 6, 1e9)),
            "@TPushbroomDibData<T>::GetRect - Invalid scale");
}

TEST_F(PushbroomTest, AnotherLevelIsRefusedEvenWhenTheRequestTouchesNothing) {
  ScriptedBand band(8, 6);
  EXPECT_EQ(MessageFor(band, Request(100, 100, 0, 0, 4)),
            "@TPushbroomDibData<T>::GetRect - Invalid scale");
}

TEST_F(PushbroomTest, ALevelThatTheBandHasIsRefusedToo) {
  ScriptedBand band(8, 6);
  band.FillDefaultLevelBounds({{8, 6}}, 3);
  EXPECT_EQ(MessageFor(band, Request(0, 0, 8, 6, 2)),
            "@TPushbroomDibData<T>::GetRect - Invalid scale");
}

TEST_F(PushbroomTest, AScaleBelowTwoIsFullResolution) {
  for (double scale : {0.25, 1.0, 1.5, 1.999}) {
    ScriptedBand band(8, 6);
    Output out(6, 16);
    EXPECT_EQ(Get(band, out, Request(0, 0, 8, 6, scale)), 3) << scale;
  }
}

TEST_F(PushbroomTest, TheFrameworkIsAskedOnceForLevelAndRectangleUnclipped) {
  ScriptedBand band(8, 6);
  Output out(2, 16);
  band.GetRect(out.Buffer(), Request(1, 2, 3, 2, 1.25), iqBilinear, 4711, nullptr);
  ASSERT_EQ(band.questions.size(), 1u);
  EXPECT_TRUE(raster_test::operator==(band.questions[0].rect, Request(1, 2, 3, 2, 1.25)));
  EXPECT_EQ(band.questions[0].quality, iqBilinear);
  EXPECT_EQ(band.questions[0].param, 4711);
  EXPECT_FALSE(band.questions[0].clip);
}

TEST_F(PushbroomTest, TheRectangleThatTheFrameworkGivesIsTheOneServed) {
  ScriptedBand band(8, 6);
  band.forcedLevel = 0;
  band.forcedRect = {2, 1, 3, 2};
  Output out(2, 6);
  EXPECT_EQ(Get(band, out, Request(0, 0, 8, 6)), 3);
  EXPECT_THAT(band.blocks, ElementsAre(ScriptedBand::Block{2, 3, 3, 2}));
}

TEST_F(PushbroomTest, TheLevelThatTheFrameworkGivesDecides) {
  ScriptedBand band(8, 6);
  band.forcedLevel = 1;
  EXPECT_EQ(MessageFor(band, Request(0, 0, 8, 6)),
            "@TPushbroomDibData<T>::GetRect - Invalid scale");
}

TEST_F(PushbroomTest, ARequestOfNoWidthOrHeightIsEmpty) {
  ExpectEmpty(Request(1, 1, 0, 3));
  ExpectEmpty(Request(1, 1, 3, 0));
  ExpectEmpty(Request(1, 1, 0, 0));
}

TEST_F(PushbroomTest, ARequestOfNegativeSizeIsEmpty) {
  ExpectEmpty(Request(4, 1, -2, 3));
  ExpectEmpty(Request(4, 1, 2, -3));
}

TEST_F(PushbroomTest, ARequestThatIsNotANumberOrInfiniteIsEmpty) {
  for (double odd : {kNaN, kInfinity, -kInfinity}) {
    ExpectEmpty(Request(odd, 0, 4, 4));
    ExpectEmpty(Request(0, odd, 4, 4));
    ExpectEmpty(Request(0, 0, odd, 4));
    ExpectEmpty(Request(0, 0, 4, odd));
    ExpectEmpty(Request(0, 0, 4, 4, odd));
  }
  ExpectEmpty(Request(0, 0, 4, 4, 0));
  ExpectEmpty(Request(0, 0, 4, 4, -1));
}

TEST_F(PushbroomTest, ARequestLeftOfTheBandIsEmpty) {
  ExpectEmpty(Request(-4, 0, 4, 6));
  ExpectEmpty(Request(-5, 0, 4, 6));
}

TEST_F(PushbroomTest, ARequestRightOfTheBandIsEmpty) {
  ExpectEmpty(Request(8, 0, 1, 6));
  ExpectEmpty(Request(9, 0, 4, 6));
}

TEST_F(PushbroomTest, ARequestBelowTheBandIsEmpty) {
  ExpectEmpty(Request(0, -3, 8, 3));
  ExpectEmpty(Request(0, -9, 8, 3));
}

TEST_F(PushbroomTest, ARequestAboveTheBandIsEmpty) {
  ExpectEmpty(Request(0, 6, 8, 1));
  ExpectEmpty(Request(0, 7, 8, 3));
}

TEST_F(PushbroomTest, RequestsAtTheEdgesOfTheCoordinatesAreEmpty) {
  ExpectEmpty(Request(kEdge, 0, 4, 4));
  ExpectEmpty(Request(0, kEdge, 4, 4));
  ExpectEmpty(Request(-kEdge, 0, kEdge, 4));
  ExpectEmpty(Request(0, -kEdge, 4, kEdge));
  ExpectEmpty(Request(1e300, 1e300, 1e300, 1e300));
  ExpectEmpty(Request(-1e300, -1e300, 1e299, 1e299));
}

TEST_F(PushbroomTest, ARequestThatReachesToTheEdgeOfTheCoordinatesIsClippedToTheBand) {
  ScriptedBand band(8, 6);
  Output out(6, 16);
  EXPECT_EQ(Get(band, out, Request(0, 0, 2 * kEdge, 2 * kEdge)), 3);
  EXPECT_THAT(band.blocks, ElementsAre(ScriptedBand::Block{0, 0, 8, 6}));
  EXPECT_EQ(out.Word(5, 7), SampleAt(7, 0, 0));
}

TEST_F(PushbroomTest, TheBlockReadIsTheClippedRequestCountedFromTheTop) {
  const std::vector<std::pair<TKvDibRect, ScriptedBand::Block>> cases = {
      {Request(0, 0, 8, 6), {0, 0, 8, 6}},    {Request(2, 1, 3, 2), {2, 3, 3, 2}},
      {Request(-2, 0, 5, 6), {0, 0, 3, 6}},   {Request(5, 0, 9, 6), {5, 0, 3, 6}},
      {Request(0, -3, 8, 4), {0, 5, 8, 1}},   {Request(0, 4, 8, 40), {0, 0, 8, 2}},
      {Request(-1, -1, 10, 8), {0, 0, 8, 6}}, {Request(7, 5, 1, 1), {7, 0, 1, 1}},
  };
  for (const auto& [rect, block] : cases) {
    ScriptedBand band(8, 6);
    Output out(40, 20);
    EXPECT_EQ(Get(band, out, rect), 3);
    EXPECT_THAT(band.blocks, ElementsAre(block));
  }
}

TEST_F(PushbroomTest, TheOutputHoldsTheBottomRowFirst) {
  ScriptedBand band(3, 2);
  Output out(2, 6);
  EXPECT_EQ(Get(band, out, Request(0, 0, 3, 2)), 3);
  for (long x = 0; x < 3; ++x) {
    EXPECT_EQ(out.Word(0, x), SampleAt(x, 1, 0));
    EXPECT_EQ(out.Word(1, x), SampleAt(x, 0, 0));
  }
}

TEST_F(PushbroomTest, OnePixelAtTheTopLeftIsRowZeroColumnZeroOfTheFile) {
  ScriptedBand band(8, 6);
  Output out(1, 2);
  EXPECT_EQ(Get(band, out, Request(0, 5, 1, 1)), 3);
  EXPECT_THAT(band.blocks, ElementsAre(ScriptedBand::Block{0, 0, 1, 1}));
  EXPECT_EQ(out.Word(0, 0), SampleAt(0, 0, 0));
}

/// Every pixel of the request that lies in the band, put into a copy of an untouched output.
Output Expected(long rows, long stride, long width, long height, long bands, long x, long y, long w,
                long h) {
  Output out(rows, stride);
  for (long row = 0; row < h; ++row) {
    for (long column = 0; column < w; ++column) {
      const long px = x + column;
      const long py = y + row;
      if (px < 0 || py < 0 || px >= width || py >= height) continue;
      for (long band = 0; band < bands; ++band) {
        out.PutWord(row, column * bands + band, SampleAt(px, height - 1 - py, band));
      }
    }
  }
  return out;
}

void ExpectServed(long bands, long stride, long x, long y, long w, long h) {
  ScriptedBand band(8, 6, bands);
  Output out(h, stride);
  EXPECT_EQ(band.GetRect(out.Buffer(),
                         Request(static_cast<double>(x), static_cast<double>(y),
                                 static_cast<double>(w), static_cast<double>(h)),
                         iqNearest, 0, nullptr),
            3);
  EXPECT_EQ(out.bytes, Expected(h, stride, 8, 6, bands, x, y, w, h).bytes);
}

TEST_F(PushbroomTest, WhatLiesLeftOfTheBandIsSkippedInTheOutput) {
  ExpectServed(1, 20, -3, 1, 9, 3);
}

TEST_F(PushbroomTest, WhatLiesBelowTheBandIsSkippedInTheOutput) {
  ExpectServed(1, 20, 1, -4, 5, 7);
}

TEST_F(PushbroomTest, WhatLiesRightOfTheBandIsLeftAsItIs) {
  ExpectServed(1, 20, 5, 1, 9, 3);
}

TEST_F(PushbroomTest, WhatLiesAboveTheBandIsLeftAsItIs) {
  ExpectServed(1, 20, 1, 4, 5, 7);
}

TEST_F(PushbroomTest, WhatLiesAroundTheBandIsLeftAsItIs) {
  ExpectServed(1, 40, -5, -4, 20, 15);
}

TEST_F(PushbroomTest, BandsOfARasterAreInterleavedByPixel) {
  ExpectServed(3, 60, 0, 0, 8, 6);
  ExpectServed(3, 60, -2, -1, 10, 9);
  ExpectServed(4, 100, 3, 2, 9, 9);
}

TEST_F(PushbroomTest, BytesBetweenTheRowsAreLeftAsTheyAre) {
  ExpectServed(1, 41, 0, 0, 8, 6);
}

TEST_F(PushbroomTest, ANegativeStrideGoesDownInMemory) {
  ExpectServed(1, -16, 0, 0, 8, 6);
  ExpectServed(2, -50, -1, -2, 10, 9);
}

TEST_F(PushbroomTest, ARequestOfOneRowTakesAnyStride) {
  ScriptedBand band(8, 6);
  Output expected(1, 16);
  const TKvDibRect rect = Request(0, 2, 8, 1);
  ASSERT_EQ(band.GetRect(expected.Buffer(), rect, iqNearest, 0, nullptr), 3);
  for (long stride : {std::numeric_limits<long>::min(), std::numeric_limits<long>::max()}) {
    Output out(1, 16);
    EXPECT_EQ(band.GetRect({out.Buffer().data, stride}, rect, iqNearest, 0, nullptr), 3);
    EXPECT_EQ(out.bytes, expected.bytes);
  }
}

TEST_F(PushbroomTest, AStrideThatLeadsBeyondAnyAddressGivesNothingWritten) {
  ScriptedBand band(8, 6);
  for (long stride : {std::numeric_limits<long>::min(), std::numeric_limits<long>::max()}) {
    Output out(1, 16);
    EXPECT_EQ(
        band.GetRect({out.Buffer().data, stride}, Request(0, -1, 8, 2), iqNearest, 0, nullptr), 2);
    EXPECT_TRUE(out.Untouched());
  }
}

TEST_F(PushbroomTest, SamplesAreCopiedAsTheyAreWhateverTheChannelKindsSay) {
  ScriptedBand band(8, 6);
  band.channels.kinds = {6, 4, 3};
  band.channels.sampleSize = 8;
  Output out(6, 16);
  EXPECT_EQ(Get(band, out, Request(0, 0, 8, 6)), 3);
  EXPECT_EQ(out.bytes, Expected(6, 16, 8, 6, 1, 0, 0, 8, 6).bytes);
}

TEST_F(PushbroomTest, AFailedReadGivesNothingWritten) {
  ScriptedBand band(8, 6);
  band.readResult = false;
  Output out(6, 16);
  EXPECT_EQ(Get(band, out, Request(0, 0, 8, 6)), 2);
  EXPECT_TRUE(out.Untouched());
}

TEST_F(PushbroomTest, TheBlockIsReadThroughTheAllocReadDataOfTheSubclass) {
  ScriptedBand band(8, 6);
  Output out(6, 16);
  EXPECT_EQ(Get(band, out, Request(0, 0, 8, 6)), 3);
  EXPECT_EQ(band.allocCalls, 1);
  band.refusesAlloc = true;
  Output none(6, 16);
  EXPECT_EQ(Get(band, none, Request(0, 0, 8, 6)), 2);
  EXPECT_TRUE(none.Untouched());
}

TEST_F(PushbroomTest, TheBlockIsReadOnce) {
  ScriptedBand band(8, 6);
  Output out(6, 16);
  Get(band, out, Request(0, 0, 8, 6));
  EXPECT_EQ(band.blocks.size(), 1u);
}

TEST_F(PushbroomTest, TheProgressHandlerIsNotUsed) {
  ScriptedBand band(8, 6);
  Output out(6, 16);
  NoProgressWanted progress;
  EXPECT_EQ(band.GetRect(out.Buffer(), Request(0, 0, 8, 6), iqNearest, 0, &progress), 3);
}

TEST_F(PushbroomTest, TheReadBufferIsMadeForExactlyTheBlockAndAllBands) {
  ScriptedBand band(8, 6, 3);
  ArrayLog log;
  EXPECT_TRUE(Alloc(band, 4, 5));
  EXPECT_EQ(band.readBufferSize, 60);
  EXPECT_EQ(band.GetReadBuffer(), band.readBuffer);
  EXPECT_THAT(log.Sizes(), ElementsAre(120u));
}

TEST_F(PushbroomTest, TheReadBufferGrowsAndNeverShrinks) {
  ScriptedBand band(8, 6);
  EXPECT_TRUE(Alloc(band, 4, 5));
  const unsigned short* buffer = band.readBuffer;
  ArrayLog log;
  EXPECT_TRUE(Alloc(band, 2, 2));
  EXPECT_TRUE(Alloc(band, 5, 4));
  EXPECT_EQ(band.readBuffer, buffer);
  EXPECT_EQ(band.readBufferSize, 20);
  EXPECT_THAT(log.Sizes(), IsEmpty());
  EXPECT_TRUE(Alloc(band, 7, 3));
  EXPECT_EQ(band.readBufferSize, 21);
}

TEST_F(PushbroomTest, TheReadBufferIsKeptBetweenRequests) {
  ScriptedBand band(8, 6);
  Output out(6, 16);
  Get(band, out, Request(0, 0, 8, 6));
  ArrayLog log;
  EXPECT_EQ(Get(band, out, Request(1, 1, 3, 3)), 3);
  EXPECT_EQ(Get(band, out, Request(0, 0, 8, 6)), 3);
  EXPECT_THAT(log.Sizes(), IsEmpty());
}

TEST_F(PushbroomTest, TheBlockIsZeroWhereNothingIsReadIntoIt) {
  ScriptedBand band(8, 6);
  ASSERT_TRUE(Alloc(band, 4, 2));
  band.fills = false;
  ASSERT_TRUE(Alloc(band, 3, 2));
  for (long i = 0; i < 6; ++i) EXPECT_EQ(band.readBuffer[i], 0);
  EXPECT_EQ(band.readBuffer[6], SampleAt(2, 1, 0)) << "only the block is cleared";
  band.readBuffer[0] = 1;
  ASSERT_TRUE(Alloc(band, 1, 1));
  EXPECT_EQ(band.readBuffer[0], 0);
  ASSERT_TRUE(Alloc(band, 8, 6));
  for (long i = 0; i < 48; ++i) EXPECT_EQ(band.readBuffer[i], 0);
}

TEST_F(PushbroomTest, AllocReadDataGivesWhatReadDataGives) {
  ScriptedBand band(8, 6);
  EXPECT_TRUE(Alloc(band, 1, 1));
  band.readResult = false;
  EXPECT_FALSE(Alloc(band, 1, 1));
}

TEST_F(PushbroomTest, ABlockWithoutSamplesIsReadAllTheSame) {
  ScriptedBand band(8, 6);
  band.fills = false;
  EXPECT_TRUE(Alloc(band, 0, 3));
  EXPECT_TRUE(Alloc(band, 3, 0));
  EXPECT_TRUE(Alloc(band, 3, -2));
  EXPECT_TRUE(Alloc(band, -3, 2));
  EXPECT_THAT(band.blocks,
              ElementsAre(ScriptedBand::Block{0, 0, 0, 3}, ScriptedBand::Block{0, 0, 3, 0},
                          ScriptedBand::Block{0, 0, 3, -2}, ScriptedBand::Block{0, 0, -3, 2}));
  EXPECT_EQ(band.readBufferSize, 0);
  band.readResult = false;
  EXPECT_FALSE(Alloc(band, 3, 0));
}

TEST_F(PushbroomTest, WithoutBandsABlockOfAnySizeHasNoSamples) {
  ScriptedBand band(8, 6, 0);
  band.fills = false;
  EXPECT_TRUE(Alloc(band, 1L << 62, 1L << 62));
  EXPECT_EQ(band.blocks.size(), 1u);
}

TEST_F(PushbroomTest, ARequestToARasterWithoutBandsIsServedWithoutAByte) {
  ScriptedBand band(8, 6, 0);
  Output out(6, 16);
  EXPECT_EQ(Get(band, out, Request(2, 1, 3, 2)), 3);
  EXPECT_THAT(band.blocks, ElementsAre(ScriptedBand::Block{2, 3, 3, 2}));
  EXPECT_TRUE(out.Untouched());
}

TEST_F(PushbroomTest, AReadBufferThatIsTooSmallIsFreedBeforeALargerOneIsMade) {
  ScriptedBand band(8, 6);
  ASSERT_TRUE(Alloc(band, 2, 2));
  const long before = raster_test::LiveArrays();
  const ArrayLog log;
  EXPECT_TRUE(Alloc(band, 8, 6));
  EXPECT_EQ(log.MostAlive(), before);
}

TEST_F(PushbroomTest, AReadBufferThatCannotBeAllocatedFailsBeforeAnythingIsRead) {
  ScriptedBand band(8, 6);
  ASSERT_TRUE(Alloc(band, 2, 2));
  band.blocks.clear();
  ArrayLimit limit(95);
  EXPECT_FALSE(Alloc(band, 8, 6));
  EXPECT_THAT(band.blocks, IsEmpty());
  EXPECT_EQ(band.readBufferSize, 0);
  EXPECT_EQ(band.GetReadBuffer(), nullptr);
}

TEST_F(PushbroomTest, AReadBufferThatCannotBeAllocatedGivesNothingWritten) {
  ScriptedBand band(8, 6);
  Output out(6, 16);
  {
    ArrayLimit limit(95);
    EXPECT_EQ(Get(band, out, Request(0, 0, 8, 6)), 2);
    EXPECT_TRUE(out.Untouched());
  }
  EXPECT_EQ(Get(band, out, Request(0, 0, 8, 6)), 3);
}

TEST_F(PushbroomTest, ABlockWhoseSamplesCannotBeCountedIsRefused) {
  ScriptedBand band(8, 6, 4);
  EXPECT_FALSE(Alloc(band, 1L << 62, 1L << 62));
  EXPECT_FALSE(Alloc(band, 1L << 31, 1L << 31));
  EXPECT_FALSE(Alloc(band, 1L << 31, 1L << 30));
  EXPECT_THAT(band.blocks, IsEmpty());
}

TEST_F(PushbroomTest, ABandTooLargeForMemoryGivesNothingWritten) {
  ScriptedBand band(1L << 40, 1L << 40);
  Output out(1, 16);
  EXPECT_EQ(Get(band, out, Request(0, 0, 2 * kEdge, 2 * kEdge)), 2);
  EXPECT_THAT(band.blocks, IsEmpty());
  EXPECT_TRUE(out.Untouched());
}

TEST_F(PushbroomTest, TheReadBufferIsFreedWithTheBand) {
  const long before = raster_test::LiveArrays();
  {
    ScriptedBand band(8, 6);
    ASSERT_TRUE(Alloc(band, 4, 4));
    EXPECT_EQ(raster_test::LiveArrays(), before + 1);
  }
  EXPECT_EQ(raster_test::LiveArrays(), before);
}

TEST_F(PushbroomTest, TheFormThatNamesALevelIsTheFrameworksAndWritesNothing) {
  ScriptedBand band(8, 6);
  Output out(6, 16);
  EXPECT_EQ(band.GetRect(0UL, TKvDibRectI{0, 0, 8, 6}, out.Buffer()), 2);
  EXPECT_TRUE(out.Untouched());
}

TEST_F(PushbroomTest, RandomRequestsGiveWhatAPixelByPixelModelGives) {
  std::mt19937 random(20240211);
  auto between = [&random](long low, long high) {
    return std::uniform_int_distribution<long>(low, high)(random);
  };
  for (int i = 0; i < 4000; ++i) {
    const long width = between(1, 20), height = between(1, 20), bands = between(1, 4);
    ScriptedBand band(width, height, bands);
    for (int j = 0; j < 3; ++j) {
      const long x = between(-12, 24), y = between(-12, 24), w = between(0, 30), h = between(0, 30);
      const long padding = between(0, 9);
      const long stride = (w * bands * 2 + padding) * (between(0, 3) == 0 ? -1 : 1);
      Output out(h, stride);
      const int result = band.GetRect(out.Buffer(),
                                      Request(static_cast<double>(x), static_cast<double>(y),
                                              static_cast<double>(w), static_cast<double>(h)),
                                      iqNearest, 0, nullptr);
      const Output expected = Expected(h, stride, width, height, bands, x, y, w, h);
      ASSERT_EQ(out.bytes, expected.bytes) << "request " << i << '.' << j;
      ASSERT_EQ(result, expected.Untouched() ? 2 : 3) << "request " << i << '.' << j;
    }
  }
}

}  // namespace
