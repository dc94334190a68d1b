#include <gmock/gmock.h>

#include <limits>
#include <new>
#include <random>
#include <stdexcept>

#include "raster/MockBand.h"
#include "raster/RasterTest.h"

namespace {

using raster_test::AllocationFailure;
using raster_test::ArrayLimit;
using raster_test::ArrayLog;
using raster_test::MockBand;
using raster_test::Output;
using raster_test::RasterTest;
using raster_test::Request;
using SatCommonUtils::TPushbroomDibDataEnvelope;
using SatCommonUtils::TRawWordDibData;
using SatCommonUtils::TSuperTileData;
using SatCommonUtils::TVisibleBandsOrder;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using BandReference = var_a_legacy::var_a<SatCommonUtils::TBasePushbroomDibData*>;
using Tiles = std::vector<TSuperTileData>;

constexpr const char* kInvalidScale = "@TPushbroomDibData<T>::GetRect - Invalid scale";

class OpenSuperTiled : public SatCommonUtils::TSuperTiledDibDataEnvelope {
 public:
  using TSuperTiledDibDataEnvelope::tileBuffer;
  using TSuperTiledDibDataEnvelope::tileBufferSize;
};

/// Fills its whole block with one byte, whatever part of the tile is asked for.
std::function<void(const TKvDibDataOutBuffer&, const TKvDibRect&)> Paint(unsigned char byte) {
  return [byte](const TKvDibDataOutBuffer& out, const TKvDibRect& rect) {
    const auto rows = static_cast<std::size_t>(rect.size[1] / rect.scale + 0.5);
    std::memset(out.data, byte, static_cast<std::size_t>(out.stride) * rows);
  };
}

class SuperTiledTest : public RasterTest {
 protected:
  /// A tile at the place given, whose raster has exactly its size and paints `byte`.
  MockBand* Add(long left, long top, long right, long bottom, unsigned char byte,
                std::vector<int> kinds = {1}, unsigned long levels = 1) {
    auto* band = new MockBand(right - left + 1, bottom - top + 1, 2, std::move(kinds), levels);
    band->paint = Paint(byte);
    tiles.push_back({left, top, right, bottom, 0, 0, BandReference(band), ""});
    return band;
  }
  int Get(Output& out, const TKvDibRect& rect) {
    return raster.GetRect(out.Buffer(), rect, iqNearest, 0, nullptr);
  }
  void ExpectEmpty() const {
    EXPECT_THAT(raster.tiles, IsEmpty());
    EXPECT_EQ(raster.tileBuffer, nullptr);
    EXPECT_EQ(raster.tileBufferSize, 0u);
    EXPECT_EQ(raster.width, 0);
    EXPECT_EQ(raster.height, 0);
    EXPECT_EQ(raster.bandsCount, 0);
    EXPECT_EQ(raster.channels.sampleType, 1);
    EXPECT_EQ(raster.channels.sampleSize, 0u);
    EXPECT_THAT(raster.channels.kinds, IsEmpty());
    EXPECT_EQ(raster.GetAllLevels(nullptr), 0u);
  }

  Tiles tiles;
  OpenSuperTiled raster;
};

TEST_F(SuperTiledTest, ASuperTiledRasterIsEmptyAfterConstruction) {
  ExpectEmpty();
}

TEST_F(SuperTiledTest, ResetReleasesTheTilesAndEmptiesTheRaster) {
  Add(0, 0, 9, 9, 1);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(10, 20);
  ASSERT_EQ(Get(out, Request(0, 0, 10, 10)), 3);
  ASSERT_NE(raster.tileBuffer, nullptr);
  raster.channels.sampleType = 8;
  raster.Reset();
  ExpectEmpty();
  EXPECT_EQ(tiles[0].raster.use_count(), 1);
}

TEST_F(SuperTiledTest, SetupTakesExtentAndRadiometryOfTheTiles) {
  Add(0, 0, 99, 99, 1);
  Add(100, 0, 199, 99, 2);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  EXPECT_EQ(raster.width, 200);
  EXPECT_EQ(raster.height, 100);
  EXPECT_EQ(raster.bandsCount, 1);
  EXPECT_EQ(raster.channels.sampleType, 1);
  EXPECT_EQ(raster.channels.sampleSize, 2u);
}

TEST_F(SuperTiledTest, SetupCopiesTheTilesAndSharesTheirRasters) {
  Add(0, 0, 9, 9, 1);
  tiles[0].fileName = "r1c1.raw";
  tiles[0].srcLeft = 4;
  tiles[0].srcTop = 5;
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  ASSERT_EQ(raster.tiles.size(), 1u);
  EXPECT_EQ(raster.tiles[0].fileName, "r1c1.raw");
  EXPECT_EQ(raster.tiles[0].srcLeft, 4);
  EXPECT_EQ(raster.tiles[0].srcTop, 5);
  EXPECT_EQ(raster.tiles[0].raster, tiles[0].raster);
  EXPECT_EQ(tiles[0].raster.use_count(), 2);
  tiles[0].right = 3;
  EXPECT_EQ(raster.tiles[0].right, 9);
}

TEST_F(SuperTiledTest, OneBandGetsTheKindOneWhateverOrderIsGiven) {
  Add(0, 0, 9, 9, 1, {32});
  const TVisibleBandsOrder order = {0, 1, 2};
  ASSERT_TRUE(raster.Setup(tiles, &order));
  EXPECT_THAT(raster.channels.kinds, ElementsAre(1));
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  EXPECT_THAT(raster.channels.kinds, ElementsAre(1));
}

TEST_F(SuperTiledTest, SeveralBandsGetTheirKindsByTheOrder) {
  Add(0, 0, 9, 9, 1, {1, 1, 1, 1});
  const TVisibleBandsOrder order = {2, 1, 0};
  ASSERT_TRUE(raster.Setup(tiles, &order));
  EXPECT_THAT(raster.channels.kinds, ElementsAre(3, 4, 6, 32));
  EXPECT_EQ(raster.channels.sampleType, 1);
}

TEST_F(SuperTiledTest, TheSampleTypeIsOneWhateverTheTilesSay) {
  Add(0, 0, 9, 9, 1)->channels.sampleType = 42;
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  EXPECT_EQ(raster.channels.sampleType, 1);
  tiles.clear();
  Add(0, 0, 9, 9, 1, {7, 8})->channels.sampleType = 42;
  Add(10, 0, 19, 9, 1, {9, 10})->channels.sampleType = 43;
  const TVisibleBandsOrder order = {0, 1, -1};
  ASSERT_TRUE(raster.Setup(tiles, &order));
  EXPECT_EQ(raster.channels.sampleType, 1);
}

TEST_F(SuperTiledTest, TheRadiometryIsTheOneFoundNotTheFirstTiles) {
  MockBand* const first = Add(0, 0, 9, 9, 1);
  first->bandsCount = 0;
  first->channels.sampleSize = 0;
  Add(10, 0, 19, 9, 2, {1, 1, 1});
  const TVisibleBandsOrder order = {0, 1, 2};
  ASSERT_TRUE(raster.Setup(tiles, &order));
  EXPECT_EQ(raster.bandsCount, 3);
  EXPECT_EQ(raster.channels.sampleSize, 2u);
  EXPECT_THAT(raster.channels.kinds, ElementsAre(6, 4, 3));
}

TEST_F(SuperTiledTest, WithoutOrderTheWholeChannelDescriptionOfTheFirstTileIsCopied) {
  Add(0, 0, 9, 9, 1, {7, 8})->channels.sampleType = 42;
  Add(10, 0, 19, 9, 2, {9, 10});
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  EXPECT_EQ(raster.channels.sampleType, 42);
  EXPECT_EQ(raster.channels.sampleSize, 2u);
  EXPECT_THAT(raster.channels.kinds, ElementsAre(7, 8));
}

TEST_F(SuperTiledTest, AnOrderOfNegativeIndicesFallsBackToTheFirstTileToo) {
  Add(0, 0, 9, 9, 1, {7, 8})->channels.sampleType = 42;
  const TVisibleBandsOrder order = {-1, -2, -3};
  ASSERT_TRUE(raster.Setup(tiles, &order));
  EXPECT_EQ(raster.channels.sampleType, 42);
  EXPECT_THAT(raster.channels.kinds, ElementsAre(7, 8));
}

TEST_F(SuperTiledTest, TheFallbackCopiesTheFirstTilesSampleSizeEvenWhenItIsZero) {
  Add(0, 0, 9, 9, 1, {7, 8})->channels.sampleSize = 0;
  Add(10, 0, 19, 9, 2, {9, 10});
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  EXPECT_EQ(raster.channels.sampleSize, 0u);
  EXPECT_THAT(raster.channels.kinds, ElementsAre(7, 8));
}

TEST_F(SuperTiledTest, TheRasterHasAsManyLevelsAsTheTileWithTheFewest) {
  Add(0, 0, 99, 99, 1, {1}, 5);
  Add(100, 0, 199, 99, 2, {1}, 3);
  Add(200, 0, 299, 99, 3, {1}, 4);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  std::vector<TKvDibRect> levels;
  ASSERT_EQ(raster.GetAllLevels(&levels), 3u);
  EXPECT_TRUE(raster_test::operator==(levels[0], Request(0, 0, 300, 100, 1)));
  EXPECT_TRUE(raster_test::operator==(levels[2], Request(0, 0, 300, 100, 4)));
}

TEST_F(SuperTiledTest, ATileWithoutLevelsLeavesTheRasterWithoutLevels) {
  Add(0, 0, 9, 9, 1, {1}, 0);
  EXPECT_TRUE(raster.Setup(tiles, nullptr));
  EXPECT_EQ(raster.width, 10);
  EXPECT_EQ(raster.GetAllLevels(nullptr), 0u);
  Output out(10, 20);
  EXPECT_THROW(Get(out, Request(0, 0, 10, 10)), std::logic_error);
  EXPECT_TRUE(out.Untouched());
}

TEST_F(SuperTiledTest, NoTilesAreRefused) {
  EXPECT_FALSE(raster.Setup(tiles, nullptr));
  ExpectEmpty();
}

TEST_F(SuperTiledTest, ADegenerateExtentIsRefused) {
  Add(5, 0, 5, 9, 1);
  EXPECT_FALSE(raster.Setup(tiles, nullptr));
  ExpectEmpty();
  EXPECT_EQ(tiles[0].raster.use_count(), 1);
}

TEST_F(SuperTiledTest, TilesOfDifferentBandCountsAreRefused) {
  Add(0, 0, 9, 9, 1, {1, 1, 1});
  Add(10, 0, 19, 9, 1, {1, 1, 1, 1});
  EXPECT_FALSE(raster.Setup(tiles, nullptr));
  ExpectEmpty();
}

TEST_F(SuperTiledTest, TilesOfDifferentSampleSizesAreRefused) {
  Add(0, 0, 9, 9, 1);
  Add(10, 0, 19, 9, 1)->channels.sampleSize = 1;
  EXPECT_FALSE(raster.Setup(tiles, nullptr));
  ExpectEmpty();
}

TEST_F(SuperTiledTest, ATileWithoutRasterIsRefused) {
  Add(0, 0, 9, 9, 1);
  tiles.push_back({10, 0, 19, 9, 0, 0, BandReference(), ""});
  EXPECT_FALSE(raster.Setup(tiles, nullptr));
  ExpectEmpty();
}

TEST_F(SuperTiledTest, AFailedSetupLeavesNothingOfAnEarlierOne) {
  Add(0, 0, 9, 9, 1);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(10, 20);
  ASSERT_EQ(Get(out, Request(0, 0, 10, 10)), 3);
  EXPECT_FALSE(raster.Setup(Tiles(), nullptr));
  ExpectEmpty();
  EXPECT_EQ(tiles[0].raster.use_count(), 1);
}

TEST_F(SuperTiledTest, ASecondSetupStartsFromScratch) {
  Add(0, 0, 9, 9, 1, {1, 1, 1});
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  BandReference first = tiles[0].raster;
  tiles.clear();
  Add(0, 0, 4, 2, 2);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  EXPECT_EQ(first.use_count(), 1);
  EXPECT_EQ(raster.width, 5);
  EXPECT_EQ(raster.height, 3);
  EXPECT_EQ(raster.bandsCount, 1);
  EXPECT_THAT(raster.channels.kinds, ElementsAre(1));
}

TEST_F(SuperTiledTest, NameAndFlagStayTheHosts) {
  Add(0, 0, 9, 9, 1);
  raster.bandName = "mosaic";
  raster.bandFlag = true;
  EXPECT_TRUE(raster.Setup(tiles, nullptr));
  EXPECT_FALSE(raster.Setup({}, nullptr));
  raster.Reset();
  EXPECT_EQ(raster.bandName, "mosaic");
  EXPECT_TRUE(raster.bandFlag);
}

TEST_F(SuperTiledTest, ALevelThatTheRasterDoesNotHaveRaisesALogicErrorThatSaysSo) {
  MockBand* band = Add(0, 0, 9, 9, 1, {1}, 2);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  for (double scale : {4.0, 8.0, 1e15}) {
    Output out(10, 20);
    try {
      Get(out, Request(0, 0, 10, 10, scale));
      FAIL() << "no exception";
    } catch (const std::logic_error& error) {
      EXPECT_STREQ(error.what(), kInvalidScale);
    }
    EXPECT_TRUE(out.Untouched());
  }
  EXPECT_THAT(band->calls, IsEmpty());
}

TEST_F(SuperTiledTest, AnEmptyRasterHasNoLevelAtAll) {
  Output out(1, 8);
  try {
    Get(out, Request(0, 0, 1, 1));
    FAIL() << "no exception";
  } catch (const std::logic_error& error) {
    EXPECT_STREQ(error.what(), kInvalidScale);
  }
  EXPECT_TRUE(out.Untouched());
}

TEST_F(SuperTiledTest, EveryLevelOfTheRasterIsServed) {
  Add(0, 0, 15, 15, 1, {1}, 3);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  for (double scale : {1.0, 2.0, 3.5, 4.0, 7.9}) {
    Output out(16, 32);
    EXPECT_EQ(Get(out, Request(0, 0, 16, 16, scale)), 3) << scale;
    EXPECT_EQ(out.At(0, 0), 1) << scale;
  }
}

/// Expects rows × columns of `byte` pixels of two bytes from (row, column) on.
void ExpectPixels(Output& out, long row, long column, long rows, long columns, int byte) {
  for (long r = row; r < row + rows; ++r) {
    for (long i = 2 * column; i < 2 * (column + columns); ++i) {
      ASSERT_EQ(out.At(r, i), byte) << "row " << r << " byte " << i;
    }
  }
}

TEST_F(SuperTiledTest, ARequestAcrossTheSeamIsServedByBothTiles) {
  MockBand* west = Add(0, 0, 99, 99, 1);
  MockBand* east = Add(100, 0, 199, 99, 2);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(5, 40);
  EXPECT_EQ(Get(out, Request(90, 20, 20, 5)), 3);
  ExpectPixels(out, 0, 0, 5, 10, 1);
  ExpectPixels(out, 0, 10, 5, 10, 2);
  ASSERT_EQ(west->calls.size(), 1u);
  EXPECT_TRUE(raster_test::operator==(west->calls[0].rect, Request(90, 20, 10, 5)));
  ASSERT_EQ(east->calls.size(), 1u);
  EXPECT_TRUE(raster_test::operator==(east->calls[0].rect, Request(0, 20, 10, 5)));
}

TEST_F(SuperTiledTest, TilesAboveEachOtherArePlacedFromTheTop) {
  MockBand* upper = Add(0, 0, 9, 3, 1);
  MockBand* lower = Add(0, 4, 9, 9, 2);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(10, 20);
  EXPECT_EQ(Get(out, Request(0, 0, 10, 10)), 3);
  ExpectPixels(out, 0, 0, 6, 10, 2);
  ExpectPixels(out, 6, 0, 4, 10, 1);
  EXPECT_TRUE(raster_test::operator==(upper->calls[0].rect, Request(0, 0, 10, 4)));
  EXPECT_TRUE(raster_test::operator==(lower->calls[0].rect, Request(0, 0, 10, 6)));
}

TEST_F(SuperTiledTest, ATileIsAskedForExactlyItsIntersectionCountedFromItsOwnBottom) {
  MockBand* band = Add(0, 0, 9, 9, 1);
  Add(0, 10, 9, 19, 2);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(4, 6);
  EXPECT_EQ(Get(out, Request(3, 8, 3, 4)), 3);  // rows 8 to 11 from the top, 8 and 9 in the tile
  ASSERT_EQ(band->calls.size(), 1u);
  EXPECT_TRUE(raster_test::operator==(band->calls[0].rect, Request(3, 0, 3, 2)));
  ExpectPixels(out, 0, 0, 2, 3, 2);
  ExpectPixels(out, 2, 0, 2, 3, 1);
}

TEST_F(SuperTiledTest, SourceOffsetsMoveTheRequestInTheTilesOwnRaster) {
  auto* band = new MockBand(30, 40, 2, {1});
  band->paint = Paint(5);
  tiles.push_back({0, 0, 9, 9, 7, 6, BandReference(band), ""});
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(3, 8);
  EXPECT_EQ(Get(out, Request(2, 1, 4, 3)), 3);  // rows 6 to 8 from the top
  ASSERT_EQ(band->calls.size(), 1u);
  EXPECT_TRUE(raster_test::operator==(band->calls[0].rect, Request(2 + 7, 40 - 1 - 8 - 6, 4, 3)));
  ExpectPixels(out, 0, 0, 3, 4, 5);
}

TEST_F(SuperTiledTest, NegativeSourceOffsetsReachOutsideTheTilesRaster) {
  MockBand* band = Add(0, 0, 9, 9, 1);
  tiles[0].srcLeft = -3;
  tiles[0].srcTop = -2;
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(10, 20);
  EXPECT_EQ(Get(out, Request(0, 0, 10, 10)), 3);
  EXPECT_TRUE(raster_test::operator==(band->calls[0].rect, Request(-3, 2, 10, 10)));
}

TEST_F(SuperTiledTest, TheTilesOwnHeightCountsRowsFromItsBottom) {
  auto* band = new MockBand(10, 25, 2, {1});
  tiles.push_back({0, 0, 9, 9, 0, 0, BandReference(band), ""});
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(10, 20);
  EXPECT_EQ(Get(out, Request(0, 0, 10, 10)), 3);
  EXPECT_TRUE(raster_test::operator==(band->calls[0].rect, Request(0, 15, 10, 10)));
}

TEST_F(SuperTiledTest, TheTileGetsTheCallersQualityParameterAndProgress) {
  MockBand* band = Add(0, 0, 9, 9, 1);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  raster_test::NoProgressWanted progress;
  Output out(10, 20);
  EXPECT_EQ(raster.GetRect(out.Buffer(), Request(0, 0, 10, 10), iqBilinear, -13, &progress), 3);
  ASSERT_EQ(band->calls.size(), 1u);
  EXPECT_EQ(band->calls[0].quality, iqBilinear);
  EXPECT_EQ(band->calls[0].param, -13);
  EXPECT_EQ(band->calls[0].progress, &progress);
}

TEST_F(SuperTiledTest, TheTileGetsTheTileBufferWithRowsOfItsIntersection) {
  MockBand* band = Add(0, 0, 9, 9, 1, {1, 1, 1});
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(4, 60);
  EXPECT_EQ(Get(out, Request(6, 0, 9, 4)), 3);
  EXPECT_EQ(band->calls[0].out.data, raster.tileBuffer);
  EXPECT_EQ(band->calls[0].out.stride, 2 * 4 * 3);
}

TEST_F(SuperTiledTest, OnlyTilesThatTheRequestTouchesAreAsked) {
  std::vector<MockBand*> bands;
  for (long row = 0; row < 3; ++row) {
    for (long column = 0; column < 3; ++column) {
      bands.push_back(Add(10 * column, 10 * row, 10 * column + 9, 10 * row + 9, 1));
    }
  }
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(10, 20);
  EXPECT_EQ(Get(out, Request(10, 10, 10, 10)), 3);
  for (std::size_t i = 0; i < bands.size(); ++i) {
    EXPECT_EQ(bands[i]->calls.size(), i == 4 ? 1u : 0u) << i;
  }
}

TEST_F(SuperTiledTest, TheFloatingRectangleComesFromTheRastersOwnConversion) {
  class Converting : public SatCommonUtils::TSuperTiledDibDataEnvelope {
   public:
    unsigned long Rect2RectI(const TKvDibRect& rect, const TInterpolationQuality& quality,
                             int param, TKvDibRectI* rectI, bool clip) override {
      ++timesAsked;
      askedQuality = quality;
      askedParam = param;
      askedClip = clip;
      return TSuperTiledDibDataEnvelope::Rect2RectI(rect, quality, param, rectI, clip);
    }
    TKvDibRect RectI2Rect(unsigned long level, const TKvDibRectI& rectI) override {
      level_ = level;
      asked = rectI;
      return Request(1, 2, 3, 4, 0.5);
    }
    unsigned long level_ = 99;
    TKvDibRectI asked = {};
    int timesAsked = 0;
    TInterpolationQuality askedQuality = iqNearest;
    int askedParam = 0;
    bool askedClip = true;
  };
  MockBand* band = Add(0, 0, 15, 15, 1, {1}, 2);
  band->paint = nullptr;
  Converting converting;
  ASSERT_TRUE(converting.Setup(tiles, nullptr));
  Output out(2, 6);
  EXPECT_EQ(converting.GetRect(out.Buffer(), Request(2, 4, 6, 4, 2), iqBilinear, 17, nullptr), 3);
  EXPECT_EQ(converting.timesAsked, 1);
  EXPECT_EQ(converting.askedQuality, iqBilinear);
  EXPECT_EQ(converting.askedParam, 17);
  EXPECT_FALSE(converting.askedClip);
  EXPECT_EQ(converting.level_, 1u);
  EXPECT_EQ(converting.asked.x, 1);
  EXPECT_EQ(converting.asked.y, 2);
  EXPECT_EQ(converting.asked.w, 3);
  EXPECT_EQ(converting.asked.h, 2);
  ASSERT_EQ(band->calls.size(), 1u);
  EXPECT_TRUE(raster_test::operator==(band->calls[0].rect, Request(1, 2, 3, 4, 0.5)));
}

TEST_F(SuperTiledTest, AtLevelOneATileAtColumn101IsPlacedAtColumn50) {
  Add(0, 0, 100, 99, 1, {1}, 2);
  MockBand* east = Add(101, 0, 199, 99, 2, {1}, 2);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(50, 200);
  EXPECT_EQ(Get(out, Request(0, 0, 200, 100, 2)), 3);
  ExpectPixels(out, 0, 0, 50, 50, 1);
  ExpectPixels(out, 0, 50, 50, 50, 2);
  ASSERT_EQ(east->calls.size(), 1u);
  EXPECT_TRUE(raster_test::operator==(east->calls[0].rect, Request(0, 0, 100, 100, 2)));
}

TEST_F(SuperTiledTest, SourceOffsetsAreShiftedByTheLevelTooNegativeOnesTowardsMinusInfinity) {
  auto* band = new MockBand(40, 40, 2, {1}, 3);
  band->paint = Paint(1);
  tiles.push_back({0, 0, 15, 15, 7, -7, BandReference(band), ""});
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(4, 8);
  EXPECT_EQ(Get(out, Request(0, 0, 16, 16, 4)), 3);
  ASSERT_EQ(band->calls.size(), 1u);
  // 7 >> 2 = 1, -7 >> 2 = -2; the raster has 10 rows at level 2, the tile's last row is 3.
  EXPECT_TRUE(raster_test::operator==(band->calls[0].rect,
                                      Request(4 * 1, 4 * (10 - 1 - 3 + 2), 16, 16, 4)));
}

TEST_F(SuperTiledTest, NegativeEdgesAreShiftedTowardsMinusInfinity) {
  MockBand* band = Add(-5, -3, 10, 12, 1, {1}, 2);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  EXPECT_EQ(raster.width, 16);
  Output out(8, 16);
  EXPECT_EQ(Get(out, Request(0, 0, 16, 16, 2)), 3);
  // Columns -3 to 5 and rows -2 to 6 of the level, of which the raster shows 0 to 7.
  ASSERT_EQ(band->calls.size(), 1u);
  EXPECT_TRUE(raster_test::operator==(band->calls[0].rect,
                                      Request(2 * 3, 2 * (8 - 1 - (6 + 2)), 12, 14, 2)));
  ExpectPixels(out, 1, 0, 7, 6, 1);
  ExpectPixels(out, 0, 0, 1, 8, 0);
  ExpectPixels(out, 0, 6, 8, 2, 0);
}

TEST_F(SuperTiledTest, AtALevelBeyondTheBitsOfAColumnEveryTileIsPlacedAtZero) {
  constexpr double kPixel = 0x1p66;
  MockBand* west = Add(0, 0, 9, 9, 1, {1}, 70);
  MockBand* east = Add(10, 0, 19, 9, 2, {1}, 70);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(1, 2);
  EXPECT_EQ(Get(out, Request(0, 0, kPixel, kPixel, kPixel)), 3);
  ExpectPixels(out, 0, 0, 1, 1, 2);
  for (const MockBand* band : {west, east}) {
    ASSERT_EQ(band->calls.size(), 1u);
    EXPECT_TRUE(
        raster_test::operator==(band->calls[0].rect, Request(0, 0, kPixel, kPixel, kPixel)));
  }
}

TEST_F(SuperTiledTest, TilesStayAtTheirOwnColumnWhenNoTileStartsAtZero) {
  MockBand* band = Add(4, 0, 11, 7, 1);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  EXPECT_EQ(raster.width, 8);
  Output out(8, 16);
  EXPECT_EQ(Get(out, Request(0, 0, 8, 8)), 3);
  ExpectPixels(out, 0, 0, 8, 4, 0);
  ExpectPixels(out, 0, 4, 8, 4, 1);
  EXPECT_TRUE(raster_test::operator==(band->calls[0].rect, Request(0, 0, 4, 8)));
}

TEST_F(SuperTiledTest, TheWholeRequestIsBlankedEvenOutsideTheRaster) {
  Add(0, 0, 3, 3, 9);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(8, 16);
  EXPECT_EQ(Get(out, Request(-2, -2, 8, 8)), 3);
  Output expected(8, 16);
  for (long row = 0; row < 8; ++row) {
    for (long i = 0; i < 16; ++i) {
      const bool inside = row >= 2 && row < 6 && i >= 4 && i < 12;
      expected.At(row, i) = inside ? 9 : 0;
    }
  }
  EXPECT_EQ(out.bytes, expected.bytes);
}

TEST_F(SuperTiledTest, BytesBetweenTheRowsAreLeftAsTheyAre) {
  Add(0, 0, 3, 3, 9);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  for (long stride : {13L, 100L, -13L, -64L}) {
    Output out(6, stride);
    EXPECT_EQ(Get(out, Request(-1, -1, 6, 6)), 3);
    Output expected(6, stride);
    for (long row = 0; row < 6; ++row) {
      for (long i = 0; i < 12; ++i) {
        expected.At(row, i) = row >= 1 && row < 5 && i >= 2 && i < 10 ? 9 : 0;
      }
    }
    EXPECT_EQ(out.bytes, expected.bytes) << stride;
  }
}

TEST_F(SuperTiledTest, ABufferThatNoMemoryHoldsIsLeftAlone) {
  MockBand* band = Add(0, 0, 3, 3, 9);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  for (const long stride : {1L << 60, -(1L << 60), std::numeric_limits<long>::max(),
                            std::numeric_limits<long>::min()}) {
    unsigned char byte = Output::kGuard;
    EXPECT_EQ(raster.GetRect({&byte, stride}, Request(0, 0, 4, 4), iqNearest, 0, nullptr), 2);
    EXPECT_EQ(byte, Output::kGuard);
  }
  EXPECT_THAT(band->calls, IsEmpty());
}

TEST_F(SuperTiledTest, ARequestTooLargeForAnyBufferIsLeftAlone) {
  constexpr double kFarthest = 4503599627370496.0;  // 2^52
  MockBand* band = Add(0, 0, 3, 3, 9);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  for (const TKvDibRect& rect : {Request(0, 0, kFarthest, 1), Request(0, 0, 1, kFarthest),
                                 Request(-kFarthest, -kFarthest, 2 * kFarthest, 2 * kFarthest)}) {
    unsigned char byte = Output::kGuard;
    EXPECT_EQ(raster.GetRect({&byte, 8}, rect, iqNearest, 0, nullptr), 2);
    EXPECT_EQ(byte, Output::kGuard);
  }
  EXPECT_THAT(band->calls, IsEmpty());
}

TEST_F(SuperTiledTest, ARequestOfOneRowTakesAnyStride) {
  Add(0, 0, 3, 3, 9);
  auto* raw = new TRawWordDibData;
  tiles.push_back({4, 0, 7, 3, 0, 0, BandReference(raw), ""});
  ASSERT_TRUE(raw->Setup(var_a_legacy::var_a<TKvStream*>(new TKvMemoryStream(std::string(32, 'x'))),
                         4, 4, TRawWordDibData::boLittleEndian));
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  for (const long stride :
       {0L, 1L << 60, std::numeric_limits<long>::max(), std::numeric_limits<long>::min()}) {
    Output out(1, 24);
    EXPECT_EQ(
        raster.GetRect({out.Buffer().data, stride}, Request(-1, 2, 11, 1), iqNearest, 0, nullptr),
        3);
    ExpectPixels(out, 0, 0, 1, 1, 0);
    ExpectPixels(out, 0, 1, 1, 4, 9);
    ExpectPixels(out, 0, 5, 1, 4, 'x');
    ExpectPixels(out, 0, 9, 1, 2, 0);
    ExpectPixels(out, 0, 11, 1, 1, Output::kGuard);
  }
}

TEST_F(SuperTiledTest, ARequestOutsideTheRasterIsBlankedAndWritesNothing) {
  MockBand* band = Add(0, 0, 3, 3, 9);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  for (const TKvDibRect& rect : {Request(4, 0, 2, 2), Request(0, 4, 2, 2), Request(-2, 0, 2, 2),
                                 Request(0, -2, 2, 2), Request(4503599627370000.0, 0, 2, 2)}) {
    Output out(2, 4);
    EXPECT_EQ(Get(out, rect), 2);
    ExpectPixels(out, 0, 0, 2, 2, 0);
  }
  EXPECT_THAT(band->calls, IsEmpty());
}

TEST_F(SuperTiledTest, ARequestWithoutPixelsBlanksNothingAndWritesNothing) {
  MockBand* band = Add(0, 0, 3, 3, 9);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const TKvDibRect& rect :
       {Request(0, 0, 0, 2), Request(0, 0, 2, 0), Request(0, 0, -2, 2), Request(0, 0, 2, -2),
        Request(nan, 0, 2, 2), Request(0, 0, 2, 2, nan)}) {
    Output out(2, 4);
    EXPECT_EQ(Get(out, rect), 2);
    EXPECT_TRUE(out.Untouched());
  }
  EXPECT_THAT(band->calls, IsEmpty());
}

TEST_F(SuperTiledTest, ARequestThatNoTileTouchesIsWrittenAsZeros) {
  Add(0, 0, 3, 3, 9);
  Add(8, 8, 11, 11, 9);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(2, 4);
  EXPECT_EQ(Get(out, Request(5, 5, 2, 2)), 3);
  ExpectPixels(out, 0, 0, 2, 2, 0);
}

TEST_F(SuperTiledTest, WhereTilesOverlapTheLaterOneLiesOnTop) {
  Add(0, 0, 5, 3, 1);
  Add(4, 0, 9, 3, 2);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(4, 20);
  EXPECT_EQ(Get(out, Request(0, 0, 10, 4)), 3);
  ExpectPixels(out, 0, 0, 4, 4, 1);
  ExpectPixels(out, 0, 4, 4, 6, 2);
  std::swap(tiles[0], tiles[1]);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  EXPECT_EQ(Get(out, Request(0, 0, 10, 4)), 3);
  ExpectPixels(out, 0, 0, 4, 6, 1);
  ExpectPixels(out, 0, 6, 4, 4, 2);
}

TEST_F(SuperTiledTest, AfterATileThatFailsNoLaterOneIsDrawn) {
  for (int result : {0, 1, 4, 5, -3}) {
    tiles.clear();
    Add(0, 0, 3, 3, 1);
    MockBand* failing = Add(4, 0, 7, 3, 2);
    failing->result = result;
    MockBand* later = Add(8, 0, 11, 3, 3);
    ASSERT_TRUE(raster.Setup(tiles, nullptr));
    Output out(4, 24);
    EXPECT_EQ(Get(out, Request(0, 0, 12, 4)), 2) << result;
    ExpectPixels(out, 0, 0, 4, 4, 1);
    ExpectPixels(out, 0, 4, 4, 8, 0);
    EXPECT_EQ(failing->calls.size(), 1u);
    EXPECT_THAT(later->calls, IsEmpty());
  }
}

TEST_F(SuperTiledTest, AFailingTileThatTheRequestDoesNotTouchDoesNoHarm) {
  Add(0, 0, 3, 3, 1)->result = 0;
  Add(4, 0, 7, 3, 2);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(4, 8);
  EXPECT_EQ(Get(out, Request(4, 0, 4, 4)), 3);
  ExpectPixels(out, 0, 0, 4, 4, 2);
}

TEST_F(SuperTiledTest, AResultWithTheTwoBitIsASuccessWhateverElseItSays) {
  for (int result : {2, 3, 6, 7, -1, -2}) {
    tiles.clear();
    Add(0, 0, 3, 3, 1)->result = result;
    Add(4, 0, 7, 3, 2);
    ASSERT_TRUE(raster.Setup(tiles, nullptr));
    Output out(4, 16);
    EXPECT_EQ(Get(out, Request(0, 0, 8, 4)), 3) << result;
    ExpectPixels(out, 0, 0, 4, 4, 1);
    ExpectPixels(out, 0, 4, 4, 4, 2);
  }
}

TEST_F(SuperTiledTest, TheLastTileFailingGivesTwo) {
  Add(0, 0, 3, 3, 1);
  Add(4, 0, 7, 3, 2)->result = 0;
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(4, 16);
  EXPECT_EQ(Get(out, Request(0, 0, 8, 4)), 2);
  ExpectPixels(out, 0, 0, 4, 4, 1);
  ExpectPixels(out, 0, 4, 4, 4, 0);
}

TEST_F(SuperTiledTest, AnExceptionOfATilePasses) {
  Add(0, 0, 3, 3, 1)->paint = [](const TKvDibDataOutBuffer&, const TKvDibRect&) {
    throw std::out_of_range("tile");
  };
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(4, 8);
  try {
    Get(out, Request(0, 0, 4, 4));
    FAIL() << "no exception";
  } catch (const std::out_of_range& error) {
    EXPECT_STREQ(error.what(), "tile");
  }
}

TEST_F(SuperTiledTest, ATileThatRunsOutOfMemorySaysSoItself) {
  Add(0, 0, 3, 3, 1)->paint = [](const TKvDibDataOutBuffer&, const TKvDibRect&) {
    throw std::bad_alloc();
  };
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(4, 8);
  EXPECT_THROW(Get(out, Request(0, 0, 4, 4)), std::bad_alloc);
}

TEST_F(SuperTiledTest, ATileThatWritesNothingShowsAClearedBufferNotTheTileBeforeIt) {
  Add(0, 0, 3, 3, 1);
  Add(4, 0, 7, 3, 2)->paint = nullptr;
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(4, 16);
  EXPECT_EQ(Get(out, Request(0, 0, 8, 4)), 3);
  ExpectPixels(out, 0, 0, 4, 4, 1);
  ExpectPixels(out, 0, 4, 4, 4, 0);
}

TEST_F(SuperTiledTest, ATileThatWritesNothingBlanksTheTileBelowIt) {
  Add(0, 0, 3, 3, 1);
  Add(0, 0, 3, 3, 2)->paint = nullptr;
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(4, 8);
  EXPECT_EQ(Get(out, Request(0, 0, 4, 4)), 3);
  ExpectPixels(out, 0, 0, 4, 4, 0);
}

TEST_F(SuperTiledTest, TheTileBufferHoldsTheIntersectionAndFourBytesMore) {
  Add(0, 0, 9, 9, 1, {1, 1, 1});
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(4, 60);
  ArrayLog log;
  EXPECT_EQ(Get(out, Request(6, 0, 9, 4)), 3);
  EXPECT_EQ(raster.tileBufferSize, 4u * 4 * 2 * 3 + 4);
  EXPECT_THAT(log.Sizes(), ElementsAre(4u * 4 * 2 * 3 + 4));
}

TEST_F(SuperTiledTest, TheTileBufferGrowsAndNeverShrinksAndIsKeptBetweenRequests) {
  Add(0, 0, 9, 9, 1);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(10, 20);
  EXPECT_EQ(Get(out, Request(0, 0, 10, 10)), 3);
  const unsigned char* buffer = raster.tileBuffer;
  ArrayLog log;
  EXPECT_EQ(Get(out, Request(0, 0, 2, 2)), 3);
  EXPECT_EQ(Get(out, Request(0, 0, 10, 10)), 3);
  EXPECT_THAT(log.Sizes(), IsEmpty());
  EXPECT_EQ(raster.tileBuffer, buffer);
  EXPECT_EQ(raster.tileBufferSize, 204u);
}

TEST_F(SuperTiledTest, TheWholeTileBufferIsClearedForATileThatNeedsLessOfIt) {
  MockBand* band = Add(0, 0, 9, 9, 1);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(10, 20);
  EXPECT_EQ(Get(out, Request(0, 0, 10, 10)), 3);
  std::vector<unsigned char> seen;
  band->paint = [&](const TKvDibDataOutBuffer&, const TKvDibRect&) {
    seen.assign(raster.tileBuffer, raster.tileBuffer + raster.tileBufferSize);
  };
  EXPECT_EQ(Get(out, Request(0, 0, 2, 2)), 3);
  EXPECT_EQ(seen, std::vector<unsigned char>(204, 0));
}

TEST_F(SuperTiledTest, ATileMayWriteEveryByteOfItsBlock) {
  MockBand* band = Add(0, 0, 9, 9, 1);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  band->paint = [](const TKvDibDataOutBuffer& out, const TKvDibRect& rect) {
    std::memset(out.data, 0x3C,
                static_cast<std::size_t>(out.stride) * static_cast<std::size_t>(rect.size[1]) + 4);
  };
  Output out(7, 14);
  EXPECT_EQ(Get(out, Request(1, 1, 7, 7)), 3);
  ExpectPixels(out, 0, 0, 7, 7, 0x3C);
}

TEST_F(SuperTiledTest, ATileBufferThatCannotBeAllocatedGivesTwo) {
  MockBand* band = Add(0, 0, 9, 9, 1);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(10, 20);
  {
    ArrayLimit limit(203);
    EXPECT_EQ(Get(out, Request(0, 0, 10, 10)), 2);
  }
  ExpectPixels(out, 0, 0, 10, 10, 0);
  EXPECT_THAT(band->calls, IsEmpty());
  EXPECT_EQ(Get(out, Request(0, 0, 10, 10)), 3);
}

TEST_F(SuperTiledTest, AnyAllocationThatFailsGivesTwo) {
  const TKvDibChannels grey = {1, 2, {1}};
  tiles.push_back(
      {0, 0, 9, 9, 0, 0,
       BandReference(new TPushbroomDibDataEnvelope(
           var_a_legacy::var_a<TKvDibData*>(new TKvMemoryDibData(10, 10, grey, 1)), "", false)),
       ""});
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(10, 20);
  int result = 2;
  long n = 0;
  for (; result == 2 && n < 50; ++n) {
    const TKvDibDataOutBuffer buffer = out.Buffer();
    raster.FreeTileBuffer();
    AllocationFailure failure(n);
    result = raster.GetRect(buffer, Request(0, 0, 10, 10), iqNearest, 0, nullptr);
  }
  EXPECT_EQ(result, 3);
  EXPECT_GE(n, 2);
}

/// A tile of 4 × 4 pixels whose raster has other kinds than it had at the setup.
TEST_F(SuperTiledTest, ATileWithLargerPixelsIsCutToTheRowsOfTheRaster) {
  MockBand* band = Add(0, 0, 3, 3, 1);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  band->channels.kinds = {1, 1, 1};
  band->paint = [](const TKvDibDataOutBuffer& out, const TKvDibRect&) {
    ASSERT_EQ(out.stride, 24);
    for (long row = 0; row < 4; ++row) {
      for (long i = 0; i < 24; ++i) {
        out.data[24 * row + i] = static_cast<unsigned char>(40 * row + i);
      }
    }
  };
  Output out(4, 12);
  EXPECT_EQ(Get(out, Request(0, 0, 4, 4)), 3);
  for (long row = 0; row < 4; ++row) {
    for (long i = 0; i < 8; ++i) EXPECT_EQ(out.At(row, i), 40 * row + i);
    for (long i = 8; i < 12; ++i) EXPECT_EQ(out.At(row, i), Output::kGuard);
  }
}

TEST_F(SuperTiledTest, ATileWithSmallerPixelsGivesNoMoreThanItsOwnRows) {
  MockBand* band = Add(0, 0, 3, 3, 7, {1, 1, 1});
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  band->channels.kinds = {1};
  Output out(4, 24);
  EXPECT_EQ(Get(out, Request(0, 0, 4, 4)), 3);
  EXPECT_EQ(band->calls[0].out.stride, 8);
  for (long row = 0; row < 4; ++row) {
    for (long i = 0; i < 24; ++i) EXPECT_EQ(out.At(row, i), i < 8 ? 7 : 0) << row << ' ' << i;
  }
}

TEST_F(SuperTiledTest, ATileWithoutKindsGivesNoBytes) {
  MockBand* band = Add(0, 0, 3, 3, 7);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  band->channels.kinds.clear();
  Output out(4, 8);
  Get(out, Request(0, 0, 4, 4));
  ExpectPixels(out, 0, 0, 4, 4, 0);
}

TEST_F(SuperTiledTest, KindsThatATileGainsWhileItIsReadDoNotWidenWhatIsCopied) {
  MockBand* band = Add(0, 0, 3, 3, 7);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  band->paint = [band](const TKvDibDataOutBuffer&, const TKvDibRect&) {
    band->channels.kinds.assign(100, 1);
  };
  Output out(4, 12);
  EXPECT_EQ(Get(out, Request(0, 0, 4, 4)), 3);
  for (long row = 0; row < 4; ++row) {
    for (long i = 8; i < 12; ++i) EXPECT_EQ(out.At(row, i), Output::kGuard);
  }
}

TEST_F(SuperTiledTest, KindsThatTheRasterGainsAfterTheSetupWidenBlankAndPixels) {
  Add(0, 0, 3, 3, 7);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  raster.channels.kinds = {1, 1};
  Output out(4, 20);
  EXPECT_EQ(Get(out, Request(0, 0, 4, 4)), 3);
  for (long row = 0; row < 4; ++row) {
    for (long i = 0; i < 20; ++i) {
      EXPECT_EQ(out.At(row, i), i < 8 ? 7 : i < 16 ? 0 : Output::kGuard);
    }
  }
}

TEST_F(SuperTiledTest, ATileWhoseRasterWasTakenAwayAfterTheSetupDoesNoHarm) {
  Add(0, 0, 3, 3, 7);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  raster.tiles[0].raster.reset();
  Output out(4, 12);
  EXPECT_EQ(Get(out, Request(0, 0, 4, 4)), 2);
  for (long row = 0; row < 4; ++row) {
    for (long i = 0; i < 12; ++i) EXPECT_EQ(out.At(row, i), i < 8 ? 0 : Output::kGuard);
  }
}

/// One row after the other would take weeks.
TEST_F(SuperTiledTest, AnyNumberOfRowsWithoutAByteIsDrawnAtOnce) {
  constexpr long kRows = 1000000000000000;
  for (long stride : {0L, 1L << 40, -(1L << 40)}) {
    tiles.clear();
    MockBand* band = Add(0, 0, 3, kRows - 1, 7);
    band->paint = nullptr;
    ASSERT_TRUE(raster.Setup(tiles, nullptr));
    raster.channels.kinds.clear();
    band->channels.kinds.clear();
    unsigned char byte = Output::kGuard;
    EXPECT_EQ(raster.GetRect({&byte, stride}, Request(0, 0, 4, static_cast<double>(kRows)),
                             iqNearest, 0, nullptr),
              3);
    EXPECT_EQ(byte, Output::kGuard);
    EXPECT_EQ(band->calls.size(), 1u);
  }
}

TEST_F(SuperTiledTest, ATileOfManyRowsWithoutAByteLeavesRowsInOnePlaceBlank) {
  constexpr long kRows = 1000000000000000;
  MockBand* band = Add(0, 0, 3, kRows - 1, 7);
  band->paint = nullptr;
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  band->channels.kinds.clear();
  unsigned char row[] = {9, 9, 9, 9, 9, 9, 9, 9, 9};
  EXPECT_EQ(
      raster.GetRect({row, 0}, Request(0, 0, 4, static_cast<double>(kRows)), iqNearest, 0, nullptr),
      3);
  EXPECT_THAT(row, ElementsAre(0, 0, 0, 0, 0, 0, 0, 0, 9));
}

/// Counts how often its level bounds are reset.
class CountingSuperTiled : public OpenSuperTiled {
 public:
  void ResetLevelBounds() override {
    ++resets;
    OpenSuperTiled::ResetLevelBounds();
  }
  int resets = 0;
};

TEST_F(SuperTiledTest, ASetupResetsOnceAndOnceMoreWhenItFails) {
  CountingSuperTiled counting;
  Add(0, 0, 9, 9, 1);
  EXPECT_TRUE(counting.Setup(tiles, nullptr));
  EXPECT_EQ(counting.resets, 1);
  counting.resets = 0;
  EXPECT_FALSE(counting.Setup({}, nullptr));
  EXPECT_EQ(counting.resets, 2);
  counting.resets = 0;
  Add(10, 0, 19, 9, 1, {1, 1});
  EXPECT_FALSE(counting.Setup(tiles, nullptr));
  EXPECT_EQ(counting.resets, 2);
}

TEST_F(SuperTiledTest, AnyAllocationThatFailsInASetupLeavesTheRasterEmpty) {
  Add(0, 0, 9, 9, 1, {1, 1, 1}, 3);
  Add(10, 0, 19, 9, 1, {1, 1, 1}, 3);
  tiles[1].fileName = "a name that is too long for the text itself";
  const TVisibleBandsOrder order = {2, 1, 0};
  for (const TVisibleBandsOrder* given :
       {static_cast<const TVisibleBandsOrder*>(nullptr), &order}) {
    bool taken = false;
    long n = 0;
    for (; !taken && n < 100; ++n) {
      ASSERT_TRUE(raster.Setup(tiles, given));
      bool happened = false;
      {
        AllocationFailure failure(n);
        taken = raster.Setup(tiles, given);
        happened = failure.Happened();
      }
      EXPECT_NE(taken, happened);
      if (taken) continue;
      ExpectEmpty();
      EXPECT_EQ(tiles[0].raster.use_count(), 1);
    }
    EXPECT_TRUE(taken);
    EXPECT_GE(n, 4);
  }
}

TEST_F(SuperTiledTest, MoreLevelsThanAnyListHoldsAreRefused) {
  class Boasting : public MockBand {
   public:
    using MockBand::MockBand;
    unsigned long GetAllLevels(std::vector<TKvDibRect>*) const override {
      return std::numeric_limits<unsigned long>::max();
    }
  };
  tiles.push_back({0, 0, 9, 9, 0, 0, BandReference(new Boasting(10, 10, 2, {1})), ""});
  EXPECT_FALSE(raster.Setup(tiles, nullptr));
  ExpectEmpty();
}

TEST_F(SuperTiledTest, EdgesAtTheEndsOfTheRangeStayInsideTheBuffers) {
  const long least = std::numeric_limits<long>::min();
  const long greatest = std::numeric_limits<long>::max();
  for (long first : {least, -1L, 0L}) {
    for (long last : {3L, greatest}) {
      tiles.clear();
      auto* band = new MockBand(4, 4, 2, {1});
      tiles.push_back({first, first, last, last, greatest, least, BandReference(band), ""});
      raster.Setup(tiles, nullptr);
      raster.width = 4;
      raster.height = 4;
      raster.FillDefaultLevelBounds({{4, 4}}, 1);
      Output out(4, 12);
      Get(out, Request(0, 0, 4, 4));
      for (long row = 0; row < 4; ++row) {
        for (long i = 8; i < 12; ++i) EXPECT_EQ(out.At(row, i), Output::kGuard);
      }
    }
  }
}

TEST_F(SuperTiledTest, AllocTileBufferMakesTheBlockAndFourBytesMoreAndClearsIt) {
  long size[] = {3, 5};
  EXPECT_TRUE(raster.AllocTileBuffer(size, 6));
  EXPECT_EQ(raster.tileBufferSize, 94u);
  for (int i = 0; i < 94; ++i) EXPECT_EQ(raster.tileBuffer[i], 0);
}

TEST_F(SuperTiledTest, AllocTileBufferKeepsALargerBufferAndClearsAllOfIt) {
  long large[] = {10, 10};
  long small[] = {1, 1};
  ASSERT_TRUE(raster.AllocTileBuffer(large, 2));
  const unsigned char* buffer = raster.tileBuffer;
  std::memset(raster.tileBuffer, 0xFF, 204);
  EXPECT_TRUE(raster.AllocTileBuffer(small, 1));
  EXPECT_EQ(raster.tileBuffer, buffer);
  EXPECT_EQ(raster.tileBufferSize, 204u);
  for (int i = 0; i < 204; ++i) EXPECT_EQ(raster.tileBuffer[i], 0);
}

TEST_F(SuperTiledTest, AllocTileBufferOfNothingStillHoldsFourBytes) {
  long size[] = {0, 7};
  EXPECT_TRUE(raster.AllocTileBuffer(size, 2));
  EXPECT_EQ(raster.tileBufferSize, 4u);
}

TEST_F(SuperTiledTest, AllocTileBufferThatFailsSaysSoAndHoldsNothing) {
  long small[] = {1, 1};
  long large[] = {10, 10};
  ASSERT_TRUE(raster.AllocTileBuffer(small, 2));
  {
    ArrayLimit limit(203);
    EXPECT_FALSE(raster.AllocTileBuffer(large, 2));
  }
  EXPECT_EQ(raster.tileBuffer, nullptr);
  EXPECT_EQ(raster.tileBufferSize, 0u);
  EXPECT_TRUE(raster.AllocTileBuffer(large, 2));
}

TEST_F(SuperTiledTest, AllocTileBufferRefusesASizeThatCannotBeCounted) {
  long square[] = {1L << 32, 1L << 32};
  EXPECT_FALSE(raster.AllocTileBuffer(square, 1));
  long line[] = {1L << 62, 1};
  EXPECT_FALSE(raster.AllocTileBuffer(line, 4));
  EXPECT_FALSE(raster.AllocTileBuffer(line, std::numeric_limits<unsigned long>::max()));
  long barely[] = {std::numeric_limits<long>::max(), 1};
  EXPECT_FALSE(raster.AllocTileBuffer(barely, 2));
  EXPECT_EQ(raster.tileBufferSize, 0u);
}

TEST_F(SuperTiledTest, AllocTileBufferOfASizeThatCannotBeCountedHoldsNothingAfterwards) {
  long small[] = {1, 1};
  ASSERT_TRUE(raster.AllocTileBuffer(small, 2));
  long square[] = {1L << 32, 1L << 32};
  EXPECT_FALSE(raster.AllocTileBuffer(square, 1));
  EXPECT_EQ(raster.tileBuffer, nullptr);
  EXPECT_EQ(raster.tileBufferSize, 0u);
}

TEST_F(SuperTiledTest, AllocTileBufferRefusesANegativeSize) {
  long wide[] = {-1, 5};
  EXPECT_FALSE(raster.AllocTileBuffer(wide, 2));
  long high[] = {5, -1};
  EXPECT_FALSE(raster.AllocTileBuffer(high, 2));
}

TEST_F(SuperTiledTest, FreeTileBufferHoldsNothingAfterwards) {
  long size[] = {3, 5};
  ASSERT_TRUE(raster.AllocTileBuffer(size, 6));
  const long before = raster_test::LiveArrays();
  raster.FreeTileBuffer();
  EXPECT_EQ(raster_test::LiveArrays(), before - 1);
  EXPECT_EQ(raster.tileBuffer, nullptr);
  EXPECT_EQ(raster.tileBufferSize, 0u);
  raster.FreeTileBuffer();
  EXPECT_EQ(raster_test::LiveArrays(), before - 1);
}

TEST_F(SuperTiledTest, TheTileBufferAndTheTilesGoWithTheRaster) {
  Add(0, 0, 3, 3, 7);
  bool destroyed = false;
  static_cast<MockBand*>(tiles[0].raster.get())->atDestruction = [&destroyed] { destroyed = true; };
  const long before = raster_test::LiveArrays();
  {
    OpenSuperTiled brief;
    ASSERT_TRUE(brief.Setup(tiles, nullptr));
    tiles.clear();
    long size[] = {3, 5};
    ASSERT_TRUE(brief.AllocTileBuffer(size, 6));
    EXPECT_FALSE(destroyed);
  }
  EXPECT_TRUE(destroyed);
  EXPECT_EQ(raster_test::LiveArrays(), before);
}

TEST_F(SuperTiledTest, PurgingPurgesEveryTileRasterThatIsSetInOrder) {
  std::string log;
  for (char name : {'c', 'a', 'b'}) {
    MockBand* band = Add(0, 0, 3, 3, 7);
    band->purgeLog = &log;
    band->purgeName = name;
  }
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  raster.PurgeCache();
  EXPECT_EQ(log, "cab");
  raster.tiles[1].raster.reset();
  raster.PurgeCache();
  EXPECT_EQ(log, "cabcb");
}

TEST_F(SuperTiledTest, PurgingKeepsTheTileBuffer) {
  Add(0, 0, 9, 9, 1);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(10, 20);
  ASSERT_EQ(Get(out, Request(0, 0, 10, 10)), 3);
  const unsigned char* const buffer = raster.tileBuffer;
  raster.PurgeCache();
  EXPECT_EQ(raster.tileBuffer, buffer);
  EXPECT_EQ(raster.tileBufferSize, 204u);
}

TEST_F(SuperTiledTest, ASuperTiledRasterHasNoReadBuffer) {
  Add(0, 0, 3, 3, 7);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  long pos[] = {0, 0};
  long size[] = {1, 1};
  EXPECT_FALSE(raster.AllocReadData(pos, size));
  EXPECT_EQ(raster.GetReadBuffer(), nullptr);
  EXPECT_EQ(&raster.Channels(), &raster.channels);
}

/// Tiles at random places over rasters of random samples and levels, and the pixel that a stitched
/// raster shows.
class RandomTiles {
 public:
  /// With `raw`, every tile is a raw band, else an envelope around a raster of several bands.
  RandomTiles(std::mt19937& random, int count, bool raw) : random_(random), raw_(raw) {
    bands_ = raw ? 1 : Between(1, 4);
    for (int i = 0; i < count; ++i) AddTile();
  }

  long Between(long low, long high) {
    return std::uniform_int_distribution<long>(low, high)(random_);
  }

  /// The sample of one band at a pixel of a level, counted from the left and the top.
  unsigned short At(int level, long x, long yFromTop, long band) {
    unsigned short sample = 0;
    for (std::size_t i = 0; i < tiles.size(); ++i) {
      const TSuperTileData& t = tiles[i];
      if (x < t.left >> level || x > t.right >> level) continue;
      if (yFromTop < t.top >> level || yFromTop > t.bottom >> level) continue;
      const vec_t_<unsigned long, 2> size =
          memory_[i]->GetScaleDimensions(static_cast<unsigned long>(level));
      const long tx = x - (t.left >> level) + (t.srcLeft >> level);
      const long ty =
          static_cast<long>(size[1]) - 1 - (yFromTop - (t.top >> level)) - (t.srcTop >> level);
      sample = Source(i, level, tx, ty, band);
    }
    return sample;
  }

  Tiles tiles;
  long Bands() const { return bands_; }

 private:
  void AddTile() {
    const long w = Between(2, 40), h = Between(2, 40);
    const long left = tiles.empty() ? 0 : Between(-20, 80),
               top = tiles.empty() ? 0 : Between(-20, 80);
    const TKvDibChannels channels = {1, 2, std::vector<int>(static_cast<std::size_t>(bands_), 1)};
    const long rw = w + Between(-1, 6), rh = h + Between(-1, 6);
    auto* memory =
        new TKvMemoryDibData(static_cast<unsigned long>(rw), static_cast<unsigned long>(rh),
                             channels, static_cast<unsigned long>(Between(1, 4)));
    for (long i = 0; i < rw * rh * bands_ * 2; ++i) {
      memory->Pixels()[i] = static_cast<unsigned char>(random_());
    }
    memory->BuildLevels();
    memory_.push_back(var_a_legacy::var_a<TKvDibData*>(memory));
    tiles.push_back({left, top, left + w - 1, top + h - 1, Between(-3, 6), Between(-3, 6),
                     raw_ ? RawBand(*memory, rw, rh)
                          : BandReference(new TPushbroomDibDataEnvelope(memory_.back(), "", false)),
                     ""});
  }

  /// A raw band of the same pixels, in either byte order.
  BandReference RawBand(TKvMemoryDibData& memory, long width, long height) {
    const bool big = random_() % 2 == 0;
    std::string bytes;
    for (long y = height - 1; y >= 0; --y) {
      for (long x = 0; x < width; ++x) {
        const unsigned char* sample = memory.Pixels() + 2 * (y * width + x);
        bytes += static_cast<char>(sample[big ? 1 : 0]);
        bytes += static_cast<char>(sample[big ? 0 : 1]);
      }
    }
    auto* band = new TRawWordDibData;
    BandReference reference(band);
    band->Setup(var_a_legacy::var_a<TKvStream*>(new TKvMemoryStream(bytes)),
                static_cast<unsigned long>(width), static_cast<unsigned long>(height),
                big ? TRawWordDibData::boBigEndian : TRawWordDibData::boLittleEndian);
    return reference;
  }

  unsigned short Source(std::size_t tile, int level, long x, long y, long band) {
    std::vector<unsigned short> pixel(static_cast<std::size_t>(bands_), 0);
    static_cast<TKvMemoryDibData&>(*memory_[tile])
        .GetRect(static_cast<unsigned long>(level), TKvDibRectI{x, y, 1, 1},
                 {reinterpret_cast<unsigned char*>(pixel.data()), 2 * bands_});
    return pixel[static_cast<std::size_t>(band)];
  }

  std::mt19937& random_;
  bool raw_;
  long bands_;
  std::vector<var_a_legacy::var_a<TKvDibData*>> memory_;
};

/// Asks the stitched raster for a random rectangle of a random level and compares every byte.
void ExpectRandomRequestServed(OpenSuperTiled& raster, RandomTiles& model) {
  const auto levels = static_cast<long>(raster.GetAllLevels(nullptr));
  const int level = static_cast<int>(model.Between(0, levels - 1));
  const auto size = raster.GetScaleDimensions(static_cast<unsigned long>(level));
  const long W = static_cast<long>(size[0]), H = static_cast<long>(size[1]);
  const long x = model.Between(-10, W + 3), y = model.Between(-10, H + 3);
  const long w = model.Between(0, 30), h = model.Between(0, 30);
  const long stride =
      (w * model.Bands() * 2 + model.Between(0, 7)) * (model.Between(0, 3) == 0 ? -1 : 1);
  Output out(h, stride);
  Output expected(h, stride);
  bool touches = false;
  for (long row = 0; row < h; ++row) {
    for (long column = 0; column < w; ++column) {
      const long px = x + column, py = y + row;
      const bool inside = px >= 0 && px < W && py >= 0 && py < H;
      touches = touches || inside;
      for (long band = 0; band < model.Bands(); ++band) {
        expected.PutWord(
            row, column * model.Bands() + band,
            inside ? model.At(level, px, H - 1 - py, band) : static_cast<unsigned short>(0));
      }
    }
  }
  const double scale = static_cast<double>(1L << level);
  const int result =
      raster.GetRect(out.Buffer(),
                     Request(static_cast<double>(x) * scale, static_cast<double>(y) * scale,
                             static_cast<double>(w) * scale, static_cast<double>(h) * scale, scale),
                     iqNearest, 0, nullptr);
  ASSERT_EQ(out.bytes, expected.bytes);
  ASSERT_EQ(result, touches ? 3 : 2);
}

TEST_F(SuperTiledTest, RandomRequestsGiveWhatAPixelByPixelModelGives) {
  std::mt19937 random(31415926);
  for (int i = 0; i < 150; ++i) {
    RandomTiles model(random, 1 + i % 6, false);
    const TVisibleBandsOrder order = {2, 1, 0};
    ASSERT_TRUE(raster.Setup(model.tiles, i % 2 == 0 ? &order : nullptr));
    for (int j = 0; j < 20; ++j) {
      ASSERT_NO_FATAL_FAILURE(ExpectRandomRequestServed(raster, model)) << i << '.' << j;
    }
  }
}

TEST_F(SuperTiledTest, RandomRequestsOfRawTilesGiveWhatAPixelByPixelModelGives) {
  std::mt19937 random(161803);
  for (int i = 0; i < 150; ++i) {
    RandomTiles model(random, 1 + i % 6, true);
    ASSERT_TRUE(raster.Setup(model.tiles, nullptr));
    for (int j = 0; j < 20; ++j) {
      ASSERT_NO_FATAL_FAILURE(ExpectRandomRequestServed(raster, model)) << i << '.' << j;
    }
  }
}

TEST_F(SuperTiledTest, ARawTileIsAskedForTheRectangleOfTheRastersOwnConversion) {
  class Shifting : public SatCommonUtils::TSuperTiledDibDataEnvelope {
   public:
    TKvDibRect RectI2Rect(unsigned long level, const TKvDibRectI& rectI) override {
      TKvDibRect rect = TSuperTiledDibDataEnvelope::RectI2Rect(level, rectI);
      rect.pos[0] += 1;
      return rect;
    }
  };
  auto* band = new TRawWordDibData;
  tiles.push_back({0, 0, 3, 1, 0, 0, BandReference(band), ""});
  ASSERT_TRUE(band->Setup(
      var_a_legacy::var_a<TKvStream*>(new TKvMemoryStream(std::string("aabbccddeeffgghh"))), 4, 2,
      TRawWordDibData::boLittleEndian));
  Shifting shifting;
  ASSERT_TRUE(shifting.Setup(tiles, nullptr));
  Output out(2, 8);
  EXPECT_EQ(shifting.GetRect(out.Buffer(), Request(0, 0, 4, 2), iqNearest, 0, nullptr), 3);
  EXPECT_EQ(std::string(&out.At(0, 0), &out.At(0, 0) + 8), std::string("ffgghh\0\0", 8));
  EXPECT_EQ(std::string(&out.At(1, 0), &out.At(1, 0) + 8), std::string("bbccdd\0\0", 8));
}

TEST_F(SuperTiledTest, ARawTileWhoseFileEndsEarlyShowsZerosAndLaterTilesAreDrawn) {
  auto* band = new TRawWordDibData;
  tiles.push_back({0, 0, 3, 3, 0, 0, BandReference(band), ""});
  ASSERT_TRUE(band->Setup(var_a_legacy::var_a<TKvStream*>(new TKvMemoryStream("short")), 4, 4,
                          TRawWordDibData::boLittleEndian));
  Add(4, 0, 7, 3, 2);
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  Output out(4, 16);
  EXPECT_EQ(Get(out, Request(0, 0, 8, 4)), 3);
  ExpectPixels(out, 0, 0, 4, 4, 0);
  ExpectPixels(out, 0, 4, 4, 4, 2);
}

}  // namespace
