#include <gmock/gmock.h>

#include <functional>
#include <limits>
#include <map>
#include <new>
#include <random>
#include <stdexcept>

#include "raster/MockBand.h"
#include "raster/RasterTest.h"
#include "support/TempFolder.h"

namespace {

using raster_test::AllocationFailure;
using raster_test::ArrayLimit;
using raster_test::ArrayLog;
using raster_test::kFreshByte;
using raster_test::MockBand;
using raster_test::Output;
using raster_test::RasterTest;
using raster_test::Request;
using SatCommonUtils::TBasePushbroomDibData;
using SatCommonUtils::TPushbroomDibDataEnvelope;
using SatCommonUtils::TRawWordDibData;
using SatCommonUtils::TSeparateBandsDibData;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using BandReference = var_a_legacy::var_a<TBasePushbroomDibData*>;
using Bands = std::map<int, BandReference>;

constexpr double kEdge = 4503599627370496.0;  // 2^52

unsigned char ByteOf(int band, long row, long column, long byte) {
  return static_cast<unsigned char>(band * 61 + row * 37 + column * 11 + byte * 5);
}

class SeparateBandsTest : public RasterTest {
 protected:
  /// A band under `key` that paints ByteOf(key, ...) over the whole request, asked of it in pixels
  /// of full resolution.
  MockBand* Add(int key, long width = 8, long height = 6, unsigned long sampleSize = 2,
                std::vector<int> kinds = {1}) {
    auto* band = new MockBand(width, height, sampleSize, std::move(kinds));
    band->paint = [band, key](const TKvDibDataOutBuffer& out, const TKvDibRect& rect) {
      const long bpp = static_cast<long>(band->channels.sampleSize * band->channels.kinds.size());
      for (long row = 0; row < static_cast<long>(rect.size[1]); ++row) {
        for (long i = 0; i < static_cast<long>(rect.size[0]) * bpp; ++i) {
          out.data[row * out.stride + i] = ByteOf(key, row, i / bpp, i % bpp);
        }
      }
    };
    bands[key] = BandReference(band);
    return band;
  }
  int Get(Output& out, const TKvDibRect& rect) {
    return compositor.GetRect(out.Buffer(), rect, iqNearest, 0, nullptr);
  }
  std::vector<int> ChannelKeys() const {
    std::vector<int> keys;
    for (const auto& [channel, key] : compositor.channelBands) keys.push_back(key);
    return keys;
  }
  void ExpectEmpty() const {
    EXPECT_THAT(compositor.bands, IsEmpty());
    EXPECT_THAT(compositor.channelBands, IsEmpty());
    EXPECT_EQ(compositor.width, 0);
    EXPECT_EQ(compositor.height, 0);
    EXPECT_EQ(compositor.bandsCount, 0);
    EXPECT_EQ(compositor.channels.sampleType, 1);
    EXPECT_EQ(compositor.channels.sampleSize, 0u);
    EXPECT_THAT(compositor.channels.kinds, IsEmpty());
    EXPECT_EQ(compositor.GetAllLevels(nullptr), 0u);
  }
  void ExpectNothingServed(const TKvDibRect& rect) {
    MockBand* band = Add(1);
    ASSERT_TRUE(compositor.Setup(bands));
    Output out(6, 16);
    EXPECT_EQ(Get(out, rect), 2);
    EXPECT_TRUE(out.Untouched());
    EXPECT_THAT(band->calls, IsEmpty());
  }

  Bands bands;
  TSeparateBandsDibData compositor;
};

TEST_F(SeparateBandsTest, ACompositorIsEmptyAfterConstruction) {
  ExpectEmpty();
}

TEST_F(SeparateBandsTest, AnEmptyCompositorHasNoPixels) {
  Output out(2, 8);
  EXPECT_EQ(Get(out, Request(0, 0, 2, 2)), 2);
  EXPECT_TRUE(out.Untouched());
}

TEST_F(SeparateBandsTest, ResetReleasesTheBandsAndEmptiesTheCompositor) {
  Add(1);
  Add(2);
  ASSERT_TRUE(compositor.Setup(bands));
  compositor.channels.sampleType = 9;
  compositor.Reset();
  ExpectEmpty();
  EXPECT_EQ(bands[1].use_count(), 1);
  EXPECT_EQ(bands[2].use_count(), 1);
}

TEST_F(SeparateBandsTest, SetupTakesSizeAndSampleSizeOfTheBands) {
  Add(10, 40, 30, 4);
  Add(11, 40, 30, 4);
  ASSERT_TRUE(compositor.Setup(bands));
  EXPECT_EQ(compositor.width, 40);
  EXPECT_EQ(compositor.height, 30);
  EXPECT_EQ(compositor.bandsCount, 2);
  EXPECT_EQ(compositor.channels.sampleType, 1);
  EXPECT_EQ(compositor.channels.sampleSize, 4u);
}

TEST_F(SeparateBandsTest, SetupSharesTheBands) {
  Add(10);
  Add(11);
  ASSERT_TRUE(compositor.Setup(bands));
  EXPECT_THAT(compositor.bands, ElementsAre(Pair(10, bands[10]), Pair(11, bands[11])));
  EXPECT_EQ(bands[10].use_count(), 2);
}

TEST_F(SeparateBandsTest, SetupGivesOneLevelAtFullResolution) {
  Add(10)->FillDefaultLevelBounds({{8, 6}}, 3);
  ASSERT_TRUE(compositor.Setup(bands));
  std::vector<TKvDibRect> levels;
  ASSERT_EQ(compositor.GetAllLevels(&levels), 1u);
  EXPECT_TRUE(raster_test::operator==(levels[0], Request(0, 0, 8, 6, 1)));
}

TEST_F(SeparateBandsTest, NoBandsAreRefused) {
  EXPECT_FALSE(compositor.Setup(bands));
  ExpectEmpty();
}

TEST_F(SeparateBandsTest, NoBandsEmptyACompositorThatWasSetUp) {
  Add(1);
  ASSERT_TRUE(compositor.Setup(bands));
  EXPECT_FALSE(compositor.Setup(Bands()));
  ExpectEmpty();
}

TEST_F(SeparateBandsTest, BandsOfDifferentWidthAreRefused) {
  Add(1, 8, 6);
  Add(2, 9, 6);
  EXPECT_FALSE(compositor.Setup(bands));
  ExpectEmpty();
}

TEST_F(SeparateBandsTest, BandsOfDifferentHeightAreRefused) {
  Add(1, 8, 6);
  Add(2, 8, 5);
  EXPECT_FALSE(compositor.Setup(bands));
  ExpectEmpty();
}

TEST_F(SeparateBandsTest, BandsOfDifferentSampleSizeAreRefused) {
  Add(1, 8, 6, 2);
  Add(2, 8, 6, 1);
  EXPECT_FALSE(compositor.Setup(bands));
  ExpectEmpty();
}

TEST_F(SeparateBandsTest, BandsThatDifferInAllElseFitAndTheSampleTypeIsOne) {
  MockBand* const first = Add(1);
  first->channels.sampleType = 5;
  first->FillDefaultLevelBounds({{8, 6}}, 3);
  MockBand* const second = Add(2, 8, 6, 2, {6, 4, 3});
  second->channels.sampleType = 7;
  ASSERT_TRUE(compositor.Setup(bands));
  EXPECT_EQ(compositor.bandsCount, 2);
  EXPECT_EQ(compositor.channels.sampleType, 1);
}

TEST_F(SeparateBandsTest, ALateMisfitDropsTheBandsAlreadyTaken) {
  Add(1);
  Add(2);
  Add(3, 8, 7);
  EXPECT_FALSE(compositor.Setup(bands));
  ExpectEmpty();
  for (const auto& [key, band] : bands) EXPECT_EQ(band.use_count(), 1);
}

TEST_F(SeparateBandsTest, AFailedSetupLeavesNothingOfAnEarlierOne) {
  Add(1);
  ASSERT_TRUE(compositor.Setup(bands));
  Add(2, 3, 3);
  EXPECT_FALSE(compositor.Setup(bands));
  ExpectEmpty();
}

TEST_F(SeparateBandsTest, EverySetupStartsFromScratch) {
  Add(6);
  Add(4);
  Add(3);
  ASSERT_TRUE(compositor.Setup(bands));
  BandReference first = bands[6];
  bands.clear();
  Add(9, 3, 2, 1);
  ASSERT_TRUE(compositor.Setup(bands));
  EXPECT_EQ(first.use_count(), 1);
  EXPECT_EQ(compositor.width, 3);
  EXPECT_EQ(compositor.bandsCount, 1);
  EXPECT_THAT(compositor.channels.kinds, ElementsAre(9));
  EXPECT_THAT(compositor.channelBands, ElementsAre(Pair(0u, 9)));
}

TEST_F(SeparateBandsTest, NameAndFlagStayTheHosts) {
  Add(1);
  compositor.bandName = "scene";
  compositor.bandFlag = true;
  EXPECT_TRUE(compositor.Setup(bands));
  EXPECT_FALSE(compositor.Setup({}));
  compositor.Reset();
  EXPECT_EQ(compositor.bandName, "scene");
  EXPECT_TRUE(compositor.bandFlag);
}

TEST_F(SeparateBandsTest, AReferenceThatIsEmptyIsRefused) {
  Add(1);
  bands[2] = BandReference();
  EXPECT_FALSE(compositor.Setup(bands));
  ExpectEmpty();
  bands.erase(1);
  EXPECT_FALSE(compositor.Setup(bands));
  ExpectEmpty();
}

TEST_F(SeparateBandsTest, TheVisibleBandsComeFirstWhenAllThreeAreThere) {
  for (int key : {1, 3, 4, 6, 7}) Add(key);
  ASSERT_TRUE(compositor.Setup(bands));
  EXPECT_THAT(compositor.channels.kinds, ElementsAre(6, 4, 3, 1, 7));
  EXPECT_THAT(compositor.channelBands,
              ElementsAre(Pair(0u, 6), Pair(1u, 4), Pair(2u, 3), Pair(3u, 1), Pair(4u, 7)));
}

TEST_F(SeparateBandsTest, WithoutAllThreeVisibleBandsTheKeysAscend) {
  const std::vector<std::vector<int>> sets = {{3, 4, 5},         {4, 6}, {3, 6, 32}, {1, 2, 5, 7},
                                              {-8, -1, 0, 3, 6}, {6}};
  for (const std::vector<int>& keys : sets) {
    bands.clear();
    for (int key : keys) Add(key);
    ASSERT_TRUE(compositor.Setup(bands));
    EXPECT_EQ(compositor.channels.kinds, keys);
    EXPECT_EQ(ChannelKeys(), keys);
  }
}

TEST_F(SeparateBandsTest, NegativeAndGreatKeysFollowTheVisibleBandsInAscendingOrder) {
  for (int key :
       {3, 4, 6, -5, 32, 5, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
    Add(key);
  }
  ASSERT_TRUE(compositor.Setup(bands));
  EXPECT_THAT(ChannelKeys(), ElementsAre(6, 4, 3, std::numeric_limits<int>::min(), -5, 5, 32,
                                         std::numeric_limits<int>::max()));
}

TEST_F(SeparateBandsTest, OneBandGivesARasterOfOneChannel) {
  Add(1);
  ASSERT_TRUE(compositor.Setup(bands));
  EXPECT_EQ(compositor.bandsCount, 1);
  EXPECT_THAT(compositor.channels.kinds, ElementsAre(1));
  Output out(6, 16);
  EXPECT_EQ(Get(out, Request(0, 0, 8, 6)), 3);
  EXPECT_EQ(out.At(2, 6), ByteOf(1, 2, 3, 0));
  EXPECT_EQ(out.At(2, 7), ByteOf(1, 2, 3, 1));
}

TEST_F(SeparateBandsTest, TheKeyDecidesTheKindWhateverTheBandSaysOfItself) {
  Add(7, 8, 6, 2, {99});
  ASSERT_TRUE(compositor.Setup(bands));
  EXPECT_THAT(compositor.channels.kinds, ElementsAre(7));
}

TEST_F(SeparateBandsTest, ALevelOtherThanFullResolutionRaisesALogicErrorThatSaysSo) {
  MockBand* band = Add(1);
  ASSERT_TRUE(compositor.Setup(bands));
  for (double scale : {2.0, 64.0, 1e12}) {
    Output out(6, 16);
    try {
      Get(out, Request(0, 0, 8, 6, scale));
      FAIL() << "no exception";
    } catch (const std::logic_error& error) {
      EXPECT_STREQ(error.what(), "@TSeparateBandsDibData::GetRectMS - Invalid scale");
    }
    EXPECT_TRUE(out.Untouched());
  }
  EXPECT_THAT(band->calls, IsEmpty());
}

TEST_F(SeparateBandsTest, AnotherLevelIsRefusedEvenByAnEmptyCompositor) {
  Output out(1, 8);
  EXPECT_THROW(Get(out, Request(0, 0, 0, 0, 2)), std::logic_error);
}

class AskingCompositor : public TSeparateBandsDibData {
 public:
  int asked = 0;
  int param = 0;
  TInterpolationQuality quality = iqNearest;
  bool clip = true;
  unsigned long Rect2RectI(const TKvDibRect&, const TInterpolationQuality& givenQuality,
                           int givenParam, TKvDibRectI* rectI, bool givenClip) override {
    ++asked;
    quality = givenQuality;
    param = givenParam;
    clip = givenClip;
    *rectI = {1, 2, 3, 2};
    return 0;
  }
};

TEST_F(SeparateBandsTest, TheFrameworkIsAskedOnceForLevelAndRectangleUnclipped) {
  MockBand* band = Add(1);
  AskingCompositor asking;
  ASSERT_TRUE(asking.Setup(bands));
  band->paint = nullptr;
  Output out(2, 6);
  EXPECT_EQ(asking.GetRect(out.Buffer(), Request(0, 0, 8, 6), iqBilinear, 31, nullptr), 3);
  EXPECT_EQ(asking.asked, 1);
  EXPECT_EQ(asking.quality, iqBilinear);
  EXPECT_EQ(asking.param, 31);
  EXPECT_FALSE(asking.clip);
  ASSERT_EQ(band->calls.size(), 1u);
  EXPECT_EQ(band->calls[0].out.stride, 6);
}

TEST_F(SeparateBandsTest, ARequestOfNoSizeIsEmpty) {
  ExpectNothingServed(Request(0, 0, 0, 6));
  ExpectNothingServed(Request(0, 0, 8, 0));
}

TEST_F(SeparateBandsTest, ARequestOfNegativeSizeIsEmpty) {
  ExpectNothingServed(Request(4, 4, -2, 2));
  ExpectNothingServed(Request(4, 4, 2, -2));
}

TEST_F(SeparateBandsTest, ARequestThatIsNotANumberIsEmpty) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  ExpectNothingServed(Request(nan, 0, 2, 2));
  ExpectNothingServed(Request(0, 0, nan, 2));
  ExpectNothingServed(Request(0, 0, 2, 2, nan));
}

TEST_F(SeparateBandsTest, ARequestBesideTheRasterIsEmpty) {
  ExpectNothingServed(Request(8, 0, 2, 2));
  ExpectNothingServed(Request(0, 6, 2, 2));
  ExpectNothingServed(Request(-2, 0, 2, 2));
  ExpectNothingServed(Request(0, -2, 2, 2));
}

TEST_F(SeparateBandsTest, RequestsAtTheEdgesOfTheCoordinatesAreEmpty) {
  ExpectNothingServed(Request(kEdge, kEdge, 8, 8));
  ExpectNothingServed(Request(-kEdge, -kEdge, kEdge, kEdge));
  ExpectNothingServed(Request(1e300, 0, 1e300, 8));
}

TEST_F(SeparateBandsTest, ARequestTooLargeForAnyBlockGivesNothingWritten) {
  ExpectNothingServed(Request(0, 0, 2 * kEdge, 2 * kEdge));
  ExpectNothingServed(Request(0, 0, kEdge, 1));
  ExpectNothingServed(Request(-kEdge, -kEdge, 2 * kEdge, 2 * kEdge));
}

TEST_F(SeparateBandsTest, EveryBandIsAskedOnceWithTheCallersOwnArguments) {
  MockBand* first = Add(1);
  MockBand* second = Add(2);
  ASSERT_TRUE(compositor.Setup(bands));
  raster_test::NoProgressWanted progress;
  Output out(5, 32);
  const TKvDibRect rect = Request(-1.25, 2.5, 4.5, 3.25, 1.5);
  EXPECT_EQ(compositor.GetRect(out.Buffer(), rect, iqBilinear, -9, &progress), 3);
  for (const MockBand* band : {first, second}) {
    ASSERT_EQ(band->calls.size(), 1u);
    EXPECT_TRUE(raster_test::operator==(band->calls[0].rect, rect));
    EXPECT_EQ(band->calls[0].quality, iqBilinear);
    EXPECT_EQ(band->calls[0].param, -9);
    EXPECT_EQ(band->calls[0].progress, &progress);
  }
}

TEST_F(SeparateBandsTest, BandsAreAskedInChannelOrder) {
  std::string order;
  for (int key : {1, 3, 4, 6}) {
    Add(key)->paint = [&order, key](const TKvDibDataOutBuffer&, const TKvDibRect&) {
      order += static_cast<char>('0' + key);
    };
  }
  ASSERT_TRUE(compositor.Setup(bands));
  Output out(6, 64);
  EXPECT_EQ(Get(out, Request(0, 0, 8, 6)), 3);
  EXPECT_EQ(order, "6431");
}

TEST_F(SeparateBandsTest, EveryBandGetsABlockOfItsOwnWithRowsOfTheFullRequestedWidth) {
  MockBand* first = Add(1);
  MockBand* second = Add(2, 8, 6, 2, {1, 1, 1});
  ASSERT_TRUE(compositor.Setup(bands));
  first->paint = second->paint = nullptr;
  Output out(20, 200);
  EXPECT_EQ(Get(out, Request(-5, -5, 20, 20)), 3);
  EXPECT_EQ(first->calls[0].out.stride, 2 * 20);
  EXPECT_EQ(second->calls[0].out.stride, 2 * 20 * 3);
  EXPECT_NE(first->calls[0].out.data, nullptr);
  EXPECT_NE(second->calls[0].out.data, nullptr);
  EXPECT_NE(first->calls[0].out.data, second->calls[0].out.data);
}

TEST_F(SeparateBandsTest, ABlockHoldsTheRowsOfTheRequestAndFourBytesMore) {
  Add(1);
  Add(2, 8, 6, 2, {1, 1, 1});
  ASSERT_TRUE(compositor.Setup(bands));
  Output out(20, 200);
  ArrayLog log;
  EXPECT_EQ(Get(out, Request(-5, -5, 20, 15)), 3);
  const std::vector<std::size_t> sizes = log.Sizes();
  EXPECT_THAT(sizes, ::testing::Contains(std::size_t{15 * 2 * 20 + 4}));
  EXPECT_THAT(sizes, ::testing::Contains(std::size_t{15 * 2 * 20 * 3 + 4}));
}

TEST_F(SeparateBandsTest, ABandMayWriteEveryByteOfItsBlock) {
  MockBand* band = Add(1);
  ASSERT_TRUE(compositor.Setup(bands));
  band->paint = [](const TKvDibDataOutBuffer& out, const TKvDibRect& rect) {
    std::memset(out.data, 0x3C,
                static_cast<std::size_t>(out.stride) * static_cast<std::size_t>(rect.size[1]) + 4);
  };
  Output out(7, 18);
  EXPECT_EQ(Get(out, Request(0, 0, 9, 7)), 3);
  EXPECT_EQ(out.At(5, 15), 0x3C);
  EXPECT_EQ(out.At(5, 16), Output::kGuard);
}

TEST_F(SeparateBandsTest, BlocksAreNotClearedSoWhatABandDoesNotWriteIsWhateverTheyHeld) {
  Add(1)->paint = nullptr;
  Add(2);
  ASSERT_TRUE(compositor.Setup(bands));
  Output out(2, 8);
  EXPECT_EQ(Get(out, Request(0, 0, 2, 2)), 3);
  EXPECT_EQ(out.At(1, 0), kFreshByte);
  EXPECT_EQ(out.At(1, 1), kFreshByte);
  EXPECT_EQ(out.At(1, 2), ByteOf(2, 1, 0, 0));
  EXPECT_EQ(out.At(1, 3), ByteOf(2, 1, 0, 1));
}

TEST_F(SeparateBandsTest, AResultWithTheTwoBitGoesOnWhateverElseItSays) {
  for (int result : {2, 3, 6, 7, 0x102, -1, -2}) {
    bands.clear();
    Add(1)->result = result;
    MockBand* second = Add(2);
    ASSERT_TRUE(compositor.Setup(bands));
    Output out(6, 32);
    EXPECT_EQ(Get(out, Request(0, 0, 8, 6)), 3) << result;
    EXPECT_EQ(second->calls.size(), 1u);
    EXPECT_EQ(out.At(0, 0), ByteOf(1, 0, 0, 0));
  }
}

TEST_F(SeparateBandsTest, ThreeIsReturnedEvenWhenNoBandWroteAPixel) {
  for (int key : {1, 2}) Add(key)->result = 2;
  ASSERT_TRUE(compositor.Setup(bands));
  Output out(6, 32);
  EXPECT_EQ(Get(out, Request(0, 0, 8, 6)), 3);
}

TEST_F(SeparateBandsTest, AResultWithoutTheTwoBitStopsWithNothingWritten) {
  for (int result : {0, 1, 4, 5, 8, 0x100, -3}) {
    bands.clear();
    MockBand* first = Add(1);
    Add(2)->result = result;
    MockBand* third = Add(3);
    ASSERT_TRUE(compositor.Setup(bands));
    Output out(6, 48);
    EXPECT_EQ(Get(out, Request(0, 0, 8, 6)), 2) << result;
    EXPECT_TRUE(out.Untouched());
    EXPECT_EQ(first->calls.size(), 1u);
    EXPECT_THAT(third->calls, IsEmpty());
  }
}

TEST_F(SeparateBandsTest, AChannelWhoseBandWasTakenAwayGivesNothingWritten) {
  MockBand* const first = Add(1);
  Add(2);
  ASSERT_TRUE(compositor.Setup(bands));
  Output out(6, 32);
  compositor.bands[2] = BandReference();
  EXPECT_EQ(Get(out, Request(0, 0, 8, 6)), 2);
  compositor.bands.erase(2);
  EXPECT_EQ(Get(out, Request(0, 0, 8, 6)), 2);
  EXPECT_TRUE(out.Untouched());
  EXPECT_THAT(first->calls, IsEmpty());
}

TEST_F(SeparateBandsTest, TheLastBandFailingLeavesTheOutputUntouchedToo) {
  Add(1);
  Add(2)->result = 0;
  ASSERT_TRUE(compositor.Setup(bands));
  Output out(6, 32);
  EXPECT_EQ(Get(out, Request(0, 0, 8, 6)), 2);
  EXPECT_TRUE(out.Untouched());
}

TEST_F(SeparateBandsTest, AnExceptionOfABandPassesUnchangedAndTheBlocksAreFreed) {
  Add(1);
  Add(2)->paint = [](const TKvDibDataOutBuffer&, const TKvDibRect&) {
    throw std::out_of_range("band 2");
  };
  Add(3);
  ASSERT_TRUE(compositor.Setup(bands));
  Output out(6, 48);
  const long before = raster_test::LiveArrays();
  try {
    Get(out, Request(0, 0, 8, 6));
    FAIL() << "no exception";
  } catch (const std::out_of_range& error) {
    EXPECT_STREQ(error.what(), "band 2");
  }
  EXPECT_EQ(raster_test::LiveArrays(), before);
  EXPECT_TRUE(out.Untouched());
}

TEST_F(SeparateBandsTest, ABandThatRunsOutOfMemorySaysSoItself) {
  Add(1)->paint = [](const TKvDibDataOutBuffer&, const TKvDibRect&) { throw std::bad_alloc(); };
  ASSERT_TRUE(compositor.Setup(bands));
  Output out(6, 16);
  EXPECT_THROW(Get(out, Request(0, 0, 8, 6)), std::bad_alloc);
}

TEST_F(SeparateBandsTest, ALogicErrorOfABandPassesAsItIs) {
  Add(1)->paint = [](const TKvDibDataOutBuffer&, const TKvDibRect&) {
    throw std::logic_error("from the band");
  };
  ASSERT_TRUE(compositor.Setup(bands));
  Output out(6, 16);
  try {
    Get(out, Request(0, 0, 8, 6));
    FAIL() << "no exception";
  } catch (const std::logic_error& error) {
    EXPECT_STREQ(error.what(), "from the band");
  }
}

TEST_F(SeparateBandsTest, TheBlocksLiveOnlyForOneRequest) {
  Add(1);
  Add(2);
  ASSERT_TRUE(compositor.Setup(bands));
  Output out(6, 32);
  const long before = raster_test::LiveArrays();
  EXPECT_EQ(Get(out, Request(0, 0, 8, 6)), 3);
  EXPECT_EQ(raster_test::LiveArrays(), before);
  static_cast<MockBand*>(bands[2].get())->result = 0;
  EXPECT_EQ(Get(out, Request(0, 0, 8, 6)), 2);
  EXPECT_EQ(raster_test::LiveArrays(), before);
}

TEST_F(SeparateBandsTest, ABlockThatCannotBeAllocatedGivesNothingWritten) {
  Add(1);
  Add(2, 8, 6, 2, {1, 1});
  ASSERT_TRUE(compositor.Setup(bands));
  Output out(6, 64);
  {
    ArrayLimit limit(6 * 8 * 4 + 3);
    EXPECT_EQ(Get(out, Request(0, 0, 8, 6)), 2);
    EXPECT_TRUE(out.Untouched());
  }
  EXPECT_EQ(Get(out, Request(0, 0, 8, 6)), 3);
}

TEST_F(SeparateBandsTest, AnyAllocationThatFailsGivesNothingWritten) {
  const std::string bytes(8 * 6 * 2, 'x');
  for (int key : {1, 2, 3}) {
    auto* band = new TRawWordDibData;
    bands[key] = BandReference(band);
    ASSERT_TRUE(band->Setup(var_a_legacy::var_a<TKvStream*>(new TKvMemoryStream(bytes)), 8, 6,
                            TRawWordDibData::boLittleEndian));
  }
  ASSERT_TRUE(compositor.Setup(bands));
  Output out(6, 48);
  int result = 2;
  long failures = 0;
  for (long n = 0; result == 2 && n < 100; ++n) {
    for (auto& [key, band] : bands) {  // without buffers again
      static_cast<TRawWordDibData*>(band.get())
          ->Setup(static_cast<TRawWordDibData*>(band.get())->stream, 8, 6,
                  TRawWordDibData::boLittleEndian);
      band->channels.kinds.resize(1);
    }
    const TKvDibDataOutBuffer buffer = out.Buffer();
    bool happened = false;
    {
      AllocationFailure failure(n);
      result = compositor.GetRect(buffer, Request(0, 0, 8, 6), iqNearest, 0, nullptr);
      happened = failure.Happened();
    }
    failures += happened ? 1 : 0;
    if (result == 2) {
      EXPECT_TRUE(happened);
      EXPECT_TRUE(out.Untouched());
    }
  }
  EXPECT_EQ(result, 3);
  EXPECT_GE(failures, 3);
}

TEST_F(SeparateBandsTest, AnyAllocationThatFailsInASetupLeavesTheCompositorEmpty) {
  for (int key : {3, 4, 6, 9}) Add(key);
  bool taken = false;
  long n = 0;
  for (; !taken && n < 100; ++n) {
    ASSERT_TRUE(compositor.Setup(bands));
    bool happened = false;
    {
      AllocationFailure failure(n);
      taken = compositor.Setup(bands);
      happened = failure.Happened();
    }
    EXPECT_NE(taken, happened);
    if (taken) continue;
    ExpectEmpty();
    EXPECT_EQ(bands[3].use_count(), 1);
  }
  EXPECT_TRUE(taken);
  EXPECT_GE(n, 10);
}

/// Counts how often its level bounds are reset.
class CountingCompositor : public TSeparateBandsDibData {
 public:
  void ResetLevelBounds() override {
    ++resets;
    TSeparateBandsDibData::ResetLevelBounds();
  }
  int resets = 0;
};

TEST_F(SeparateBandsTest, ASetupResetsOnceAndOnceMoreWhenItFails) {
  CountingCompositor counting;
  Add(1);
  EXPECT_TRUE(counting.Setup(bands));
  EXPECT_EQ(counting.resets, 1);
  counting.resets = 0;
  EXPECT_FALSE(counting.Setup({}));
  EXPECT_EQ(counting.resets, 2);
  counting.resets = 0;
  Add(2, 9, 6);
  EXPECT_FALSE(counting.Setup(bands));
  EXPECT_EQ(counting.resets, 2);
}

/// One row after the other would take weeks.
TEST_F(SeparateBandsTest, AnyNumberOfRowsWithoutAByteIsComposedAtOnce) {
  constexpr long kRows = 1000000000000000;
  for (int key : {1, 2}) Add(key, 4, kRows, 0)->paint = nullptr;
  ASSERT_TRUE(compositor.Setup(bands));
  unsigned char byte = Output::kGuard;
  EXPECT_EQ(compositor.GetRect({&byte, 0}, Request(0, 0, 4, static_cast<double>(kRows)), iqNearest,
                               0, nullptr),
            3);
  EXPECT_EQ(byte, Output::kGuard);
}

TEST_F(SeparateBandsTest, ARequestOfOneRowTakesAnyStride) {
  Add(1);
  Add(2);
  ASSERT_TRUE(compositor.Setup(bands));
  Output expected(1, 32);
  ASSERT_EQ(Get(expected, Request(0, 2, 8, 1)), 3);
  for (long stride : {std::numeric_limits<long>::min(), std::numeric_limits<long>::max()}) {
    Output out(1, 32);
    EXPECT_EQ(
        compositor.GetRect({out.Buffer().data, stride}, Request(0, 2, 8, 1), iqNearest, 0, nullptr),
        3);
    EXPECT_EQ(out.bytes, expected.bytes);
  }
}

TEST_F(SeparateBandsTest, AStrideThatLeadsBeyondAnyAddressGivesNothingWritten) {
  Add(1);
  ASSERT_TRUE(compositor.Setup(bands));
  for (long stride : {std::numeric_limits<long>::min(), std::numeric_limits<long>::max()}) {
    Output out(1, 32);
    EXPECT_EQ(compositor.GetRect({out.Buffer().data, stride}, Request(0, -1, 8, 2), iqNearest, 0,
                                 nullptr),
              2);
    EXPECT_TRUE(out.Untouched());
  }
}

TEST_F(SeparateBandsTest, ChannelsAreInterleavedPixelByPixel) {
  for (int key : {3, 4, 6, 7}) Add(key);
  ASSERT_TRUE(compositor.Setup(bands));
  Output out(6, 64);
  EXPECT_EQ(Get(out, Request(0, 0, 8, 6)), 3);
  const std::vector<int> order = {6, 4, 3, 7};
  for (long row = 0; row < 6; ++row) {
    for (long i = 0; i < 64; ++i) {
      const int key = order[static_cast<std::size_t>(i % 8 / 2)];
      ASSERT_EQ(out.At(row, i), ByteOf(key, row, i / 8, i % 2)) << row << ' ' << i;
    }
  }
}

/// The output of a request to a compositor of single-channel bands, pixel by pixel.
Output Expected(long rows, long stride, const std::vector<int>& keys, long sampleSize, long width,
                long height, long x, long y, long w, long h) {
  Output out(rows, stride);
  const long bpp = sampleSize * static_cast<long>(keys.size());
  for (long row = 0; row < h; ++row) {
    for (long column = 0; column < w; ++column) {
      if (x + column < 0 || x + column >= width || y + row < 0 || y + row >= height) continue;
      for (long byte = 0; byte < bpp; ++byte) {
        const int key = keys[static_cast<std::size_t>(byte / sampleSize)];
        out.At(row, column * bpp + byte) = ByteOf(key, row, column, byte % sampleSize);
      }
    }
  }
  return out;
}

TEST_F(SeparateBandsTest, ARequestThatStartsLeftAndBelowWritesItsFirstPixelBehindTheSkippedOnes) {
  Add(1);
  Add(2);
  ASSERT_TRUE(compositor.Setup(bands));
  Output out(5, 28);
  EXPECT_EQ(Get(out, Request(-3, -2, 7, 5)), 3);
  EXPECT_EQ(out.bytes, Expected(5, 28, {1, 2}, 2, 8, 6, -3, -2, 7, 5).bytes);
  EXPECT_EQ(out.At(2, 12), ByteOf(1, 2, 3, 0));
  EXPECT_EQ(out.At(2, 11), Output::kGuard);
  EXPECT_EQ(out.At(1, 12), Output::kGuard);
}

TEST_F(SeparateBandsTest, WhatLiesRightAndAboveIsLeftAsItIs) {
  Add(1);
  Add(2);
  ASSERT_TRUE(compositor.Setup(bands));
  Output out(5, 28);
  EXPECT_EQ(Get(out, Request(5, 4, 7, 5)), 3);
  EXPECT_EQ(out.bytes, Expected(5, 28, {1, 2}, 2, 8, 6, 5, 4, 7, 5).bytes);
}

TEST_F(SeparateBandsTest, StridesMayBeLongerThanTheRowAndNegative) {
  Add(1);
  Add(2);
  Add(5);
  ASSERT_TRUE(compositor.Setup(bands));
  for (long stride : {49L, 100L, -48L, -77L}) {
    Output out(6, stride);
    EXPECT_EQ(Get(out, Request(-1, -1, 8, 6)), 3);
    EXPECT_EQ(out.bytes, Expected(6, stride, {1, 2, 5}, 2, 8, 6, -1, -1, 8, 6).bytes);
  }
}

TEST_F(SeparateBandsTest, SamplesOfAnySizeAndCountAreInterleaved) {
  for (unsigned long sampleSize : {1UL, 2UL, 3UL, 4UL, 8UL}) {
    for (int count = 1; count <= 10; ++count) {
      bands.clear();
      std::vector<int> keys;
      for (int key = 10; key < 10 + count; ++key) {
        Add(key, 37, 5, sampleSize);
        keys.push_back(key);
      }
      ASSERT_TRUE(compositor.Setup(bands));
      const long stride = 40 * static_cast<long>(sampleSize) * count + 3;
      Output out(7, stride);
      ASSERT_EQ(Get(out, Request(-2, -1, 40, 7)), 3);
      ASSERT_EQ(
          out.bytes,
          Expected(7, stride, keys, static_cast<long>(sampleSize), 37, 5, -2, -1, 40, 7).bytes)
          << sampleSize << ' ' << count;
    }
  }
}

TEST_F(SeparateBandsTest, ABandOfSeveralKindsCopiesItsWholePixelAtItsChannelTimesItsPixelSize) {
  Add(1, 8, 6, 2, {1, 1});
  Add(2);
  ASSERT_TRUE(compositor.Setup(bands));
  Output out(6, 32);
  EXPECT_EQ(Get(out, Request(0, 0, 8, 6)), 3);
  for (long row = 0; row < 6; ++row) {
    for (long x = 0; x < 8; ++x) {
      ASSERT_EQ(out.At(row, 4 * x), ByteOf(1, row, x, 0));
      ASSERT_EQ(out.At(row, 4 * x + 1), ByteOf(1, row, x, 1));
      ASSERT_EQ(out.At(row, 4 * x + 2), ByteOf(2, row, x, 0)) << "channel 1 lies over it";
      ASSERT_EQ(out.At(row, 4 * x + 3), ByteOf(2, row, x, 1));
    }
  }
}

TEST_F(SeparateBandsTest, ABandThatDoesNotFitBehindTheOthersNeverLeavesItsPixel) {
  Add(1);
  Add(2, 8, 6, 2, {1, 1, 1});
  ASSERT_TRUE(compositor.Setup(bands));
  Output out(6, 32);
  EXPECT_EQ(Get(out, Request(0, 0, 8, 6)), 3);
  for (long row = 0; row < 6; ++row) {
    for (long x = 0; x < 8; ++x) {
      ASSERT_EQ(out.At(row, 4 * x), ByteOf(1, row, x, 0));
      ASSERT_EQ(out.At(row, 4 * x + 1), ByteOf(1, row, x, 1));
    }
  }
  Output guard(6, 32);
  for (long row = 0; row < 6; ++row) {
    for (long i = 0; i < 32; ++i) guard.At(row, i) = out.At(row, i);
  }
  EXPECT_EQ(out.bytes, guard.bytes);
}

/// Whether `out` holds kGuard everywhere but in the pixels of `rect`, which lies in the raster.
bool OnlyThesePixelsWritten(Output& out, long bpp, long column, long row, long columns, long rows,
                            const Output& untouched) {
  Output rest = out;
  for (long r = row; r < row + rows; ++r) {
    for (long i = column * bpp; i < (column + columns) * bpp; ++i) rest.At(r, i) = Output::kGuard;
  }
  return rest.bytes == untouched.bytes;
}

TEST_F(SeparateBandsTest, KindsThatABandGainsAfterTheSetupNeverReachBeyondItsPixel) {
  for (std::size_t kinds : {0U, 2U, 3U, 17U}) {
    bands.clear();
    MockBand* first = Add(1);
    MockBand* second = Add(2);
    ASSERT_TRUE(compositor.Setup(bands));
    first->channels.kinds.assign(kinds, 1);
    second->channels.kinds.assign(kinds, 1);
    Output out(4, 64);
    const Output untouched = out;
    Get(out, Request(4, 3, 6, 4));
    EXPECT_TRUE(OnlyThesePixelsWritten(out, 4, 0, 0, 4, 3, untouched)) << kinds;
  }
}

TEST_F(SeparateBandsTest, ASampleSizeThatABandChangesAfterTheSetupNeverReachesBeyondItsPixel) {
  for (unsigned long sampleSize : {0UL, 1UL, 3UL, 8UL, 100UL}) {
    bands.clear();
    Add(1);
    MockBand* second = Add(2);
    ASSERT_TRUE(compositor.Setup(bands));
    second->channels.sampleSize = sampleSize;
    Output out(4, 64);
    const Output untouched = out;
    Get(out, Request(4, 3, 6, 4));
    EXPECT_TRUE(OnlyThesePixelsWritten(out, 4, 0, 0, 4, 3, untouched)) << sampleSize;
  }
}

TEST_F(SeparateBandsTest, KindsThatABandGainsWhileItIsReadNeverReachBeyondItsBlockOrPixel) {
  MockBand* band = Add(1);
  Add(2);
  ASSERT_TRUE(compositor.Setup(bands));
  band->paint = [band](const TKvDibDataOutBuffer&, const TKvDibRect&) {
    band->channels.kinds.assign(64, 1);
  };
  Output out(4, 64);
  const Output untouched = out;
  Get(out, Request(4, 3, 6, 4));
  EXPECT_TRUE(OnlyThesePixelsWritten(out, 4, 0, 0, 4, 3, untouched));
}

TEST_F(SeparateBandsTest, KindsThatTheCompositorLosesAfterTheSetupShrinkItsPixel) {
  Add(1);
  Add(2);
  ASSERT_TRUE(compositor.Setup(bands));
  const Output untouched(4, 64);
  compositor.channels.kinds = {1};
  Output one(4, 64);
  Get(one, Request(4, 3, 6, 4));
  EXPECT_TRUE(OnlyThesePixelsWritten(one, 2, 0, 0, 4, 3, untouched));
  compositor.channels.kinds.clear();
  Output none(4, 64);
  Get(none, Request(4, 3, 6, 4));
  EXPECT_TRUE(none.Untouched());
}

TEST_F(SeparateBandsTest, KindsThatTheCompositorGainsAfterTheSetupWidenItsPixel) {
  Add(1);
  Add(2);
  ASSERT_TRUE(compositor.Setup(bands));
  compositor.channels.kinds = {1, 2, 9};
  Output out(1, 12);
  EXPECT_EQ(Get(out, Request(0, 0, 2, 1)), 3);
  for (long x = 0; x < 2; ++x) {
    EXPECT_EQ(out.At(0, 6 * x), ByteOf(1, 0, x, 0));
    EXPECT_EQ(out.At(0, 6 * x + 1), ByteOf(1, 0, x, 1));
    EXPECT_EQ(out.At(0, 6 * x + 2), ByteOf(2, 0, x, 0));
    EXPECT_EQ(out.At(0, 6 * x + 3), ByteOf(2, 0, x, 1));
    EXPECT_EQ(out.At(0, 6 * x + 4), Output::kGuard);
    EXPECT_EQ(out.At(0, 6 * x + 5), Output::kGuard);
  }
}

TEST_F(SeparateBandsTest, PurgingPurgesEveryBandInKeyOrder) {
  std::string log;
  for (int key : {7, 1, 6, 3, 4}) {
    MockBand* band = Add(key);
    band->purgeLog = &log;
    band->purgeName = static_cast<char>('0' + key);
  }
  ASSERT_TRUE(compositor.Setup(bands));
  compositor.PurgeCache();
  EXPECT_EQ(log, "13467");
  compositor.bands[4] = BandReference();
  compositor.PurgeCache();
  EXPECT_EQ(log, "134671367");
}

TEST_F(SeparateBandsTest, PurgingAnEmptyCompositorDoesNothing) {
  compositor.PurgeCache();
  ExpectEmpty();
}

TEST_F(SeparateBandsTest, ACompositorHasNoReadBuffer) {
  Add(1);
  ASSERT_TRUE(compositor.Setup(bands));
  long pos[] = {0, 0};
  long size[] = {1, 1};
  EXPECT_FALSE(compositor.AllocReadData(pos, size));
  EXPECT_EQ(compositor.GetReadBuffer(), nullptr);
  EXPECT_EQ(&compositor.Channels(), &compositor.channels);
}

TEST_F(SeparateBandsTest, BandsLiveAsLongAsTheCompositorHoldsThem) {
  bool destroyed = false;
  {
    TSeparateBandsDibData brief;
    Add(1)->atDestruction = [&destroyed] { destroyed = true; };
    ASSERT_TRUE(brief.Setup(bands));
    bands.clear();
    EXPECT_FALSE(destroyed);
  }
  EXPECT_TRUE(destroyed);
}

TEST_F(SeparateBandsTest, AnOutputBufferThatReleasesItselfFreesItsBytes) {
  const long before = raster_test::LiveArrays();
  {
    SatCommonUtils::TKvDibDataOutBufferAutoRelease record;
    EXPECT_EQ(record.data, nullptr);
    EXPECT_EQ(record.stride, 0);
    record.data = new unsigned char[16];
    const TKvDibDataOutBuffer& asBuffer = record;
    EXPECT_EQ(asBuffer.data, record.data);
    EXPECT_EQ(raster_test::LiveArrays(), before + 1);
  }
  EXPECT_EQ(raster_test::LiveArrays(), before);
}

TEST_F(SeparateBandsTest, ACompositorMayBeABandOfAnother) {
  Add(1);
  Add(2);
  auto* inner = new TSeparateBandsDibData;
  Bands outerBands = {{8, BandReference(inner)}};
  ASSERT_TRUE(inner->Setup(bands));
  ASSERT_TRUE(compositor.Setup(outerBands));
  EXPECT_EQ(compositor.bandsCount, 1);
  compositor.channels.kinds = {8, 9};
  Output out(6, 32);
  EXPECT_EQ(Get(out, Request(0, 0, 8, 6)), 3);
  EXPECT_EQ(out.bytes, Expected(6, 32, {1, 2}, 2, 8, 6, 0, 0, 8, 6).bytes);
}

TEST_F(SeparateBandsTest, AnEnvelopeServesAsBand) {
  const TKvDibChannels grey = {1, 2, {1}};
  auto* memory = new TKvMemoryDibData(4, 3, grey, 1);
  for (int i = 0; i < 24; ++i) memory->Pixels()[i] = static_cast<unsigned char>(i + 1);
  bands[5] = BandReference(
      new TPushbroomDibDataEnvelope(var_a_legacy::var_a<TKvDibData*>(memory), "nir", false));
  Add(9, 4, 3);
  ASSERT_TRUE(compositor.Setup(bands));
  Output out(3, 16);
  EXPECT_EQ(Get(out, Request(0, 0, 4, 3)), 3);
  for (long row = 0; row < 3; ++row) {
    for (long x = 0; x < 4; ++x) {
      EXPECT_EQ(out.At(row, 4 * x), 8 * row + 2 * x + 1);
      EXPECT_EQ(out.At(row, 4 * x + 1), 8 * row + 2 * x + 2);
      EXPECT_EQ(out.At(row, 4 * x + 2), ByteOf(9, row, x, 0));
      EXPECT_EQ(out.At(row, 4 * x + 3), ByteOf(9, row, x, 1));
    }
  }
}

/// A host's raw band that counts its requests and answers them itself.
class OwnGetRect : public TRawWordDibData {
 public:
  using TRawWordDibData::GetRect;
  int GetRect(const TKvDibDataOutBuffer& out, const TKvDibRect& rect,
              const TInterpolationQuality& quality, int param,
              TKvProgressHandler* progress) override {
    ++requests;
    const int result = TRawWordDibData::GetRect(out, rect, quality, param, progress);
    out.data[0] = 0x77;
    return result;
  }
  int requests = 0;
};

template <class Band>
Band* AddRaw(Bands& bands, int key, const std::string& file) {
  auto* band = new Band;
  bands[key] = BandReference(band);
  EXPECT_TRUE(band->Setup(var_a_legacy::var_a<TKvStream*>(new TKvMemoryStream(file)), 8, 6,
                          TRawWordDibData::boBigEndian));
  return band;
}

TEST_F(SeparateBandsTest, ARawBandThatOverridesGetRectIsAskedThroughIt) {
  AddRaw<TRawWordDibData>(bands, 1, std::string(8 * 6 * 2, 'x'));
  auto* own = AddRaw<OwnGetRect>(bands, 2, std::string(8 * 6 * 2, 'y'));
  ASSERT_TRUE(compositor.Setup(bands));
  Output out(6, 32);
  EXPECT_EQ(Get(out, Request(0, 0, 8, 6)), 3);
  EXPECT_EQ(own->requests, 1);
  EXPECT_EQ(out.At(0, 1), 'x');
  EXPECT_EQ(out.At(0, 2), 0x77);
  EXPECT_EQ(out.At(0, 3), 'y');
}

TEST_F(SeparateBandsTest, AFailingRawBandThatOverridesGetRectStopsTheComposition) {
  class Failing : public OwnGetRect {
   public:
    int GetRect(const TKvDibDataOutBuffer&, const TKvDibRect&, const TInterpolationQuality&, int,
                TKvProgressHandler*) override {
      return 1;
    }
  };
  AddRaw<TRawWordDibData>(bands, 1, std::string(8 * 6 * 2, 'x'));
  AddRaw<Failing>(bands, 2, std::string(8 * 6 * 2, 'y'));
  ASSERT_TRUE(compositor.Setup(bands));
  Output out(6, 32);
  EXPECT_EQ(Get(out, Request(0, 0, 8, 6)), 2);
  EXPECT_TRUE(out.Untouched());
}

/// The same raw bands behind envelopes, which hide from the compositor what they are.
Bands Wrapped(const Bands& bands) {
  Bands wrapped;
  for (const auto& [key, band] : bands) {
    wrapped[key] = BandReference(new TPushbroomDibDataEnvelope(band, "", false));
  }
  return wrapped;
}

TEST_F(SeparateBandsTest, RawBandsInAnyStateAreComposedAsThroughTheirOwnGetRect) {
  const std::vector<std::function<void(TRawWordDibData&)>> changes = {
      [](TRawWordDibData&) {},
      [](TRawWordDibData& band) {
        band.channels.kinds = {1, 1};
      },
      [](TRawWordDibData& band) { band.bandsCount = 0; },
      [](TRawWordDibData& band) { band.width = 5; },
      [](TRawWordDibData& band) { band.height = 4; },
      [](TRawWordDibData& band) { band.stream.reset(); },
      [](TRawWordDibData& band) { band.bytesOrder = TRawWordDibData::boLittleEndian; },
  };
  std::string file;  // long enough for pixels of two samples
  for (int i = 0; i < 8 * 6 * 4; ++i) file += static_cast<char>(i * 37);
  for (std::size_t i = 0; i < 2 * changes.size(); ++i) {
    const int key = i % 2 == 0 ? 1 : 2;
    AddRaw<TRawWordDibData>(bands, 1, file);
    AddRaw<TRawWordDibData>(bands, 2, file);
    auto& changed = static_cast<TRawWordDibData&>(*bands[key]);
    TSeparateBandsDibData throughEnvelopes;
    ASSERT_TRUE(compositor.Setup(bands));
    Bands wrapped = Wrapped(bands);
    ASSERT_TRUE(throughEnvelopes.Setup(wrapped));
    changes[i / 2](changed);
    wrapped[key]->channels = changed.channels;
    for (const TKvDibRect& rect :
         {Request(0, 0, 8, 6), Request(-2, -1, 9, 9), Request(3, 2, 2, 2), Request(6, 5, 5, 5)}) {
      Output out(9, 40), expected(9, 40);
      EXPECT_EQ(Get(out, rect),
                throughEnvelopes.GetRect(expected.Buffer(), rect, iqNearest, 0, nullptr))
          << i;
      EXPECT_EQ(out.bytes, expected.bytes) << i;
    }
  }
}

TEST_F(SeparateBandsTest, OneRawBandUnderTwoKeysFillsBothChannels) {
  AddRaw<TRawWordDibData>(bands, 1, std::string(8 * 6 * 2, 'x'));
  bands[2] = bands[1];
  ASSERT_TRUE(compositor.Setup(bands));
  Output out(6, 32);
  EXPECT_EQ(Get(out, Request(0, 0, 8, 6)), 3);
  EXPECT_EQ(out.At(5, 28), 'x');
  EXPECT_EQ(out.At(5, 31), 'x');
}

/// Raw bands of random samples, kept beside the readers for a pixel-by-pixel model.
struct RandomBands {
  /// Bands in memory, or in files of `folder` when there is one.
  RandomBands(std::mt19937& random, long w, long h, const std::vector<int>& keys,
              const TempFolder* folder = nullptr)
      : width(w), height(h) {
    for (int key : keys) {
      const bool big = random() % 2 == 0;
      std::string bytes;
      for (long i = 0; i < w * h; ++i) {
        const auto sample = static_cast<unsigned short>(random());
        samples[key].push_back(sample);
        const char low = static_cast<char>(sample & 0xFF);
        const char high = static_cast<char>(sample >> 8);
        bytes += big ? high : low;
        bytes += big ? low : high;
      }
      auto* band = new TRawWordDibData;
      bands[key] = BandReference(band);
      band->Setup(Stream(bytes, key, folder), static_cast<unsigned long>(w),
                  static_cast<unsigned long>(h),
                  big ? TRawWordDibData::boBigEndian : TRawWordDibData::boLittleEndian);
    }
  }
  static var_a_legacy::var_a<TKvStream*> Stream(const std::string& bytes, int key,
                                                const TempFolder* folder) {
    if (folder == nullptr) {
      return var_a_legacy::var_a<TKvStream*>(new TKvMemoryStream(bytes));
    }
    const std::string path = folder->Write(std::to_string(key) + ".raw", bytes);
    return var_a_legacy::var_a<TKvStream*>(
        new TKvFileStream(TKvPath(path), kvOpenRead, kvShareAll));
  }
  unsigned short At(int key, long x, long yFromBottom) const {
    return samples.at(key).at(static_cast<std::size_t>((height - 1 - yFromBottom) * width + x));
  }
  long width, height;
  std::map<int, std::vector<unsigned short>> samples;
  Bands bands;
};

std::vector<int> ChannelOrder(const std::vector<int>& keys) {
  auto has = [&keys](int key) { return std::find(keys.begin(), keys.end(), key) != keys.end(); };
  if (!(has(6) && has(4) && has(3))) return keys;
  std::vector<int> order = {6, 4, 3};
  for (int key : keys) {
    if (key != 6 && key != 4 && key != 3) order.push_back(key);
  }
  return order;
}

/// A random set of keys, seldom empty.
std::vector<int> RandomKeys(std::mt19937& random) {
  std::vector<int> keys;
  for (int key = 1; key <= 9; ++key) {
    if (random() % 2 == 0) keys.push_back(key);
  }
  return keys.empty() ? std::vector<int>{3, 4, 6} : keys;
}

/// Asks the compositor of these bands for random rectangles and compares every byte.
void ExpectRandomRequestsServed(TSeparateBandsDibData& compositor, const RandomBands& model,
                                const std::vector<int>& keys, std::mt19937& random) {
  auto between = [&random](long low, long high) {
    return std::uniform_int_distribution<long>(low, high)(random);
  };
  ASSERT_TRUE(compositor.Setup(model.bands));
  const std::vector<int> order = ChannelOrder(keys);
  ASSERT_EQ(compositor.channels.kinds, order);
  const long channels = static_cast<long>(order.size());
  for (int j = 0; j < 10; ++j) {
    const long x = between(-15, 45), y = between(-6, 14), w = between(0, 50), h = between(0, 20);
    const long stride = (w * channels * 2 + between(0, 5)) * (between(0, 3) == 0 ? -1 : 1);
    Output out(h, stride);
    Output expected(h, stride);
    for (long row = 0; row < h; ++row) {
      for (long column = 0; column < w; ++column) {
        const long px = x + column, py = y + row;
        if (px < 0 || py < 0 || px >= model.width || py >= model.height) continue;
        for (long k = 0; k < channels; ++k) {
          expected.PutWord(row, column * channels + k,
                           model.At(order[static_cast<std::size_t>(k)], px, py));
        }
      }
    }
    const int result = compositor.GetRect(out.Buffer(),
                                          Request(static_cast<double>(x), static_cast<double>(y),
                                                  static_cast<double>(w), static_cast<double>(h)),
                                          iqNearest, 0, nullptr);
    ASSERT_EQ(out.bytes, expected.bytes);
    ASSERT_EQ(result, expected.Untouched() ? 2 : 3);
  }
}

TEST_F(SeparateBandsTest, RandomRequestsOfRawBandsGiveWhatAPixelByPixelModelGives) {
  std::mt19937 random(7041776);
  for (int i = 0; i < 400; ++i) {
    const std::vector<int> keys = RandomKeys(random);
    const RandomBands model(random, 1 + static_cast<long>(random() % 40),
                            1 + static_cast<long>(random() % 12), keys);
    ASSERT_NO_FATAL_FAILURE(ExpectRandomRequestsServed(compositor, model, keys, random)) << i;
  }
}

TEST_F(SeparateBandsTest, RandomRequestsOfBandsInFilesGiveWhatAPixelByPixelModelGives) {
  std::mt19937 random(2718281);
  for (int i = 0; i < 60; ++i) {
    if (i == 30) Init_KvServices();
    const TempFolder folder;
    const std::vector<int> keys = RandomKeys(random);
    const RandomBands model(random, 1 + static_cast<long>(random() % 40),
                            1 + static_cast<long>(random() % 12), keys, &folder);
    ASSERT_NO_FATAL_FAILURE(ExpectRandomRequestsServed(compositor, model, keys, random)) << i;
  }
  compositor.Reset();
  Deinit_KvServices();
}

TEST_F(SeparateBandsTest, ABandWhoseFileEndsEarlyLeavesItsBlockAndTheOthersAreComposed) {
  std::mt19937 random(5);
  RandomBands model(random, 8, 6, {1, 2});
  bands = model.bands;
  auto* cut = new TRawWordDibData;
  bands[2] = BandReference(cut);
  ASSERT_TRUE(cut->Setup(var_a_legacy::var_a<TKvStream*>(new TKvMemoryStream("short")), 8, 6,
                         TRawWordDibData::boBigEndian));
  ASSERT_TRUE(compositor.Setup(bands));
  Output out(6, 32);
  EXPECT_EQ(Get(out, Request(0, 0, 8, 6)), 3) << "nothing read is no failure to the compositor";
  for (long row = 0; row < 6; ++row) {
    for (long x = 0; x < 8; ++x) {
      EXPECT_EQ(out.Word(row, 2 * x), model.At(1, x, row));
      EXPECT_EQ(out.Word(row, 2 * x + 1), kFreshByte * 0x101);
    }
  }
}

}  // namespace
