#include <gmock/gmock.h>

#include <limits>

#include "raster/MockBand.h"
#include "raster/RasterTest.h"

namespace {

using raster_test::MockBand;
using raster_test::RasterTest;
using SatCommonUtils::CheckSuperTilesDataset;
using SatCommonUtils::GetStitchedRasterDimensions;
using SatCommonUtils::GetStitchedRasterRadiometry;
using SatCommonUtils::GetSuperTilesFileNames;
using SatCommonUtils::TSuperTileData;
using ::testing::ElementsAre;
using BandReference = var_a_legacy::var_a<SatCommonUtils::TBasePushbroomDibData*>;
using Tiles = std::vector<TSuperTileData>;

constexpr long kGreatest = std::numeric_limits<long>::max();
constexpr long kSmallest = std::numeric_limits<long>::min();

TSuperTileData Place(long left, long top, long right, long bottom) {
  return {left, top, right, bottom, 0, 0, BandReference(), ""};
}

TSuperTileData TileOf(long bands, unsigned long sampleSize, long width = 10, long height = 10) {
  TSuperTileData tile = Place(0, 0, width - 1, height - 1);
  tile.raster = BandReference(new MockBand(width, height, sampleSize,
                                           std::vector<int>(static_cast<std::size_t>(bands), 1)));
  return tile;
}

struct Numbers {
  bool ok;
  unsigned long first;
  unsigned long second;
  bool operator==(const Numbers&) const = default;
};

void PrintTo(const Numbers& n, std::ostream* out) {
  *out << n.ok << " {" << n.first << ", " << n.second << "}";
}

Numbers Dimensions(const Tiles& tiles) {
  Numbers n = {false, 77, 77};
  n.ok = GetStitchedRasterDimensions(tiles, &n.first, &n.second);
  return n;
}

Numbers Radiometry(const Tiles& tiles) {
  Numbers n = {false, 77, 77};
  n.ok = GetStitchedRasterRadiometry(tiles, &n.first, &n.second);
  return n;
}

class SuperTileSetTest : public RasterTest {};

TEST_F(SuperTileSetTest, TwoTilesSideBySideGiveTheirCommonExtent) {
  EXPECT_EQ(Dimensions({Place(0, 0, 99, 99), Place(100, 0, 199, 99)}), (Numbers{true, 200, 100}));
}

TEST_F(SuperTileSetTest, TheExtentCountsFromTheSmallestToTheLargestEdgeOfAnyTile) {
  EXPECT_EQ(Dimensions({Place(30, 70, 39, 89), Place(10, 90, 20, 99), Place(15, 50, 60, 55)}),
            (Numbers{true, 51, 50}));
}

TEST_F(SuperTileSetTest, TheOrderOfTheTilesDoesNotMatterToTheExtent) {
  EXPECT_EQ(Dimensions({Place(15, 50, 60, 55), Place(30, 70, 39, 89), Place(10, 90, 20, 99)}),
            (Numbers{true, 51, 50}));
}

TEST_F(SuperTileSetTest, NegativeEdgesCountLikeOthers) {
  EXPECT_EQ(Dimensions({Place(-101, -7, -1, 3)}), (Numbers{true, 101, 11}));
}

TEST_F(SuperTileSetTest, NoTilesHaveNoExtent) {
  EXPECT_EQ(Dimensions({}), (Numbers{false, 0, 0}));
}

TEST_F(SuperTileSetTest, AnExtentOnePixelWideIsRefused) {
  EXPECT_EQ(Dimensions({Place(5, 0, 5, 99)}), (Numbers{false, 0, 0}));
  EXPECT_EQ(Dimensions({Place(5, 0, 5, 99), Place(5, 100, 5, 199)}), (Numbers{false, 0, 0}));
}

TEST_F(SuperTileSetTest, AnExtentOnePixelHighIsRefused) {
  EXPECT_EQ(Dimensions({Place(0, 5, 99, 5)}), (Numbers{false, 0, 0}));
}

TEST_F(SuperTileSetTest, AnExtentTurnedInsideOutIsRefused) {
  EXPECT_EQ(Dimensions({Place(10, 0, 5, 99)}), (Numbers{false, 0, 0}));
  EXPECT_EQ(Dimensions({Place(0, 10, 99, 5)}), (Numbers{false, 0, 0}));
}

TEST_F(SuperTileSetTest, AnExtentTwoPixelsWideAndHighIsTheSmallest) {
  EXPECT_EQ(Dimensions({Place(5, 7, 6, 8)}), (Numbers{true, 2, 2}));
}

TEST_F(SuperTileSetTest, ATileInsideOutAmongOthersOnlyAddsItsEdges) {
  EXPECT_EQ(Dimensions({Place(0, 0, 9, 9), Place(20, 5, 3, 2)}), (Numbers{true, 10, 10}));
}

TEST_F(SuperTileSetTest, AnExtentUpToTheGreatestColumnIsCountedExactly) {
  EXPECT_EQ(Dimensions({Place(0, 0, kGreatest, 9)}), (Numbers{true, 1UL << 63, 10}));
  EXPECT_EQ(Dimensions({Place(1, 1, kGreatest, kGreatest)}),
            (Numbers{true, (1UL << 63) - 1, (1UL << 63) - 1}));
}

TEST_F(SuperTileSetTest, TheRadiometryIsTheCommonOne) {
  EXPECT_EQ(Radiometry({TileOf(3, 2), TileOf(3, 2)}), (Numbers{true, 3, 2}));
  EXPECT_EQ(Radiometry({TileOf(1, 1)}), (Numbers{true, 1, 1}));
}

TEST_F(SuperTileSetTest, NoTilesHaveNoRadiometry) {
  EXPECT_EQ(Radiometry({}), (Numbers{false, 0, 0}));
}

TEST_F(SuperTileSetTest, DifferentBandCountsHaveNoRadiometry) {
  EXPECT_FALSE(Radiometry({TileOf(3, 2), TileOf(4, 2)}).ok);
  EXPECT_FALSE(Radiometry({TileOf(3, 2), TileOf(3, 2), TileOf(1, 2)}).ok);
}

TEST_F(SuperTileSetTest, DifferentSampleSizesHaveNoRadiometry) {
  EXPECT_FALSE(Radiometry({TileOf(3, 2), TileOf(3, 4)}).ok);
  EXPECT_FALSE(Radiometry({TileOf(3, 2), TileOf(3, 2), TileOf(3, 1)}).ok);
}

TEST_F(SuperTileSetTest, BandCountsOfZeroBeforeTheFirstOtherAreSkipped) {
  EXPECT_EQ(Radiometry({TileOf(0, 2), TileOf(0, 2), TileOf(3, 2)}), (Numbers{true, 3, 2}));
}

TEST_F(SuperTileSetTest, SampleSizesOfZeroBeforeTheFirstOtherAreSkipped) {
  EXPECT_EQ(Radiometry({TileOf(3, 0), TileOf(3, 2)}), (Numbers{true, 3, 2}));
}

TEST_F(SuperTileSetTest, ABandCountOfZeroBehindTheReferenceDiffers) {
  EXPECT_FALSE(Radiometry({TileOf(3, 2), TileOf(0, 2)}).ok);
  EXPECT_FALSE(Radiometry({TileOf(3, 2), TileOf(0, 2), TileOf(3, 2)}).ok);
}

TEST_F(SuperTileSetTest, ASampleSizeOfZeroBehindTheReferenceDiffers) {
  EXPECT_FALSE(Radiometry({TileOf(3, 2), TileOf(3, 0)}).ok);
  EXPECT_FALSE(Radiometry({TileOf(3, 2), TileOf(3, 0), TileOf(3, 2)}).ok);
}

TEST_F(SuperTileSetTest, ARadiometryOfZeroIsNone) {
  EXPECT_FALSE(Radiometry({TileOf(0, 2), TileOf(0, 2)}).ok);
  EXPECT_FALSE(Radiometry({TileOf(3, 0), TileOf(3, 0)}).ok);
}

TEST_F(SuperTileSetTest, ARadiometryThatIsRefusedLeavesWhatWasFoundUntilThen) {
  EXPECT_EQ(Radiometry({TileOf(3, 2), TileOf(4, 4)}), (Numbers{false, 3, 2}));
  EXPECT_EQ(Radiometry({TileOf(0, 2)}), (Numbers{false, 0, 2}));
  EXPECT_EQ(Radiometry({TileOf(3, 0)}), (Numbers{false, 3, 0}));
}

TEST_F(SuperTileSetTest, TheBandCountIsTheRastersWhateverItsKindsSay) {
  TSuperTileData tile = TileOf(3, 2);
  tile.raster->bandsCount = 5;
  EXPECT_EQ(Radiometry({tile}), (Numbers{true, 5, 2}));
}

TEST_F(SuperTileSetTest, ATileWithoutRasterHasNoRadiometry) {
  EXPECT_FALSE(Radiometry({Place(0, 0, 9, 9)}).ok);
  EXPECT_FALSE(Radiometry({TileOf(3, 2), Place(0, 0, 9, 9)}).ok);
}

/// A tile of 10 x 20 pixels at column 30, row 40 that passes the check.
TSuperTileData SoundTile() {
  TSuperTileData tile = TileOf(3, 2, 10, 20);
  tile.left = 30;
  tile.top = 40;
  tile.right = 39;
  tile.bottom = 59;
  return tile;
}

template <class Change>
bool CheckAfter(Change change) {
  Tiles tiles = {SoundTile(), SoundTile(), SoundTile()};
  change(tiles[2]);
  return CheckSuperTilesDataset(tiles);
}

TEST_F(SuperTileSetTest, ASoundSetPassesTheCheck) {
  EXPECT_TRUE(CheckSuperTilesDataset({SoundTile()}));
  EXPECT_TRUE(CheckAfter([](TSuperTileData&) {}));
}

TEST_F(SuperTileSetTest, NoTilesFailTheCheck) {
  EXPECT_FALSE(CheckSuperTilesDataset({}));
}

TEST_F(SuperTileSetTest, ATileAtColumnAndRowZeroPassesTheCheck) {
  EXPECT_TRUE(
      CheckAfter([](TSuperTileData& t) { t.left = 0, t.right = 9, t.top = 0, t.bottom = 19; }));
}

TEST_F(SuperTileSetTest, ANegativeLeftFailsTheCheck) {
  EXPECT_FALSE(CheckAfter([](TSuperTileData& t) { t.left = -1, t.right = 8; }));
}

TEST_F(SuperTileSetTest, ANegativeTopFailsTheCheck) {
  EXPECT_FALSE(CheckAfter([](TSuperTileData& t) { t.top = -1, t.bottom = 18; }));
}

TEST_F(SuperTileSetTest, ATileOneColumnWideFailsTheCheck) {
  EXPECT_FALSE(CheckAfter([](TSuperTileData& t) { t.right = t.left, t.raster->width = 1; }));
}

TEST_F(SuperTileSetTest, ATileOneRowHighFailsTheCheck) {
  EXPECT_FALSE(CheckAfter([](TSuperTileData& t) { t.bottom = t.top, t.raster->height = 1; }));
}

TEST_F(SuperTileSetTest, ATileInsideOutFailsTheCheck) {
  EXPECT_FALSE(CheckAfter([](TSuperTileData& t) { t.right = t.left - 2, t.raster->width = -1; }));
  EXPECT_FALSE(CheckAfter([](TSuperTileData& t) { t.bottom = t.top - 2, t.raster->height = -1; }));
}

TEST_F(SuperTileSetTest, ATileWithoutRasterFailsTheCheck) {
  EXPECT_FALSE(CheckAfter([](TSuperTileData& t) { t.raster.reset(); }));
}

TEST_F(SuperTileSetTest, ARasterOfAnotherWidthFailsTheCheck) {
  EXPECT_FALSE(CheckAfter([](TSuperTileData& t) { t.raster->width = 11; }));
  EXPECT_FALSE(CheckAfter([](TSuperTileData& t) { t.raster->width = 9; }));
}

TEST_F(SuperTileSetTest, ARasterOfAnotherHeightFailsTheCheck) {
  EXPECT_FALSE(CheckAfter([](TSuperTileData& t) { t.raster->height = 21; }));
  EXPECT_FALSE(CheckAfter([](TSuperTileData& t) { t.raster->height = 19; }));
}

TEST_F(SuperTileSetTest, DifferentRadiometryFailsTheCheck) {
  EXPECT_FALSE(CheckAfter([](TSuperTileData& t) { t.raster->bandsCount = 4; }));
  EXPECT_FALSE(CheckAfter([](TSuperTileData& t) { t.raster->channels.sampleSize = 4; }));
}

TEST_F(SuperTileSetTest, ARadiometryOfZeroFailsTheCheck) {
  TSuperTileData tile = SoundTile();
  tile.raster->bandsCount = 0;
  EXPECT_FALSE(CheckSuperTilesDataset({tile}));
}

TEST_F(SuperTileSetTest, GapsAndOverlapsPassTheCheck) {
  EXPECT_TRUE(CheckAfter([](TSuperTileData& t) { t.left += 1000, t.right += 1000; }));
  EXPECT_TRUE(CheckAfter([](TSuperTileData& t) { t.left += 3, t.right += 3; }));
}

TEST_F(SuperTileSetTest, SourceOffsetsPassTheCheck) {
  EXPECT_TRUE(CheckAfter([](TSuperTileData& t) { t.srcLeft = 5, t.srcTop = -7; }));
}

TEST_F(SuperTileSetTest, EdgesAtTheEndsOfTheRangeFailTheCheckQuietly) {
  EXPECT_FALSE(CheckAfter([](TSuperTileData& t) { t.left = kSmallest, t.right = kGreatest; }));
  EXPECT_FALSE(CheckAfter([](TSuperTileData& t) { t.left = 0, t.right = kGreatest; }));
  EXPECT_FALSE(CheckAfter([](TSuperTileData& t) { t.top = kGreatest, t.bottom = kSmallest; }));
}

TEST_F(SuperTileSetTest, FileNamesAreAppendedInOrder) {
  Tiles tiles(4);
  tiles[0].fileName = "c.raw";
  tiles[1].fileName = "";
  tiles[2].fileName = "a.raw";
  tiles[3].fileName = "c.raw";
  std::vector<std::string> names = {"first", "second"};
  EXPECT_EQ(GetSuperTilesFileNames(tiles, &names), 6u);
  EXPECT_THAT(names, ElementsAre("first", "second", "c.raw", "", "a.raw", "c.raw"));
}

TEST_F(SuperTileSetTest, NoTilesAppendNoFileNames) {
  std::vector<std::string> names = {"first"};
  EXPECT_EQ(GetSuperTilesFileNames({}, &names), 1u);
  EXPECT_THAT(names, ElementsAre("first"));
}

}  // namespace
