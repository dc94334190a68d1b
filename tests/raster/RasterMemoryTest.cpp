// What bands and sets of tiles allocate beside requests and setups, while it fails.
#include <functional>
#include <new>

#include "Kv/Services.h"
#include "raster/MockBand.h"
#include "raster/RasterTest.h"

namespace {

using raster_test::AllocationFailure;
using raster_test::MockBand;
using raster_test::RasterTest;
using namespace SatCommonUtils;

class RasterMemoryTest : public RasterTest {
 protected:
  /// Runs `action` with its first allocation failing, with its second and so on until none does;
  /// each must throw std::bad_alloc, and `check` looks at the rest. Returns how many failed.
  static long FailuresOf(const std::function<void()>& action, const std::function<void()>& check) {
    for (long n = 0; n < 1000; ++n) {
      const long arrays = raster_test::LiveArrays();
      try {
        const AllocationFailure failure(n);
        action();
        return n;
      } catch (const std::bad_alloc&) {
        check();
      }
      EXPECT_EQ(raster_test::LiveArrays(), arrays);
    }
    ADD_FAILURE() << "it never succeeds";
    return 0;
  }
};

TEST_F(RasterMemoryTest, ChannelKindsThatCannotBeSetStay) {
  MockBand band(4, 3, 2, {1, 2, 5});
  const std::vector<int> before = band.channels.kinds;
  const auto unchanged = [&] { EXPECT_EQ(band.channels.kinds, before); };
  band.channels.kinds.shrink_to_fit();
  const TVisibleBandsOrder order = {2, 1, 0};
  FailuresOf([&] { band.SetVisibleBandsOrder(&order); }, unchanged);
  EXPECT_EQ(band.channels.kinds, (std::vector<int>{3, 4, 6}));
  band.bandsCount = 5;
  const std::vector<int> kinds = {6, 4, 3, 32, 32};
  const auto stillThree = [&] { EXPECT_EQ(band.channels.kinds.size(), 3u); };
  EXPECT_GE(FailuresOf([&] { band.SetChannelsBands(kinds); }, stillThree), 1);
  EXPECT_EQ(band.channels.kinds, kinds);
}

TEST_F(RasterMemoryTest, AnEnvelopeThatCannotBeMadeReleasesItsRaster) {
  const var_a_legacy::var_a<TKvDibData*> data(new MockBand(4, 3, 2, {1, 2, 5}, 3));
  const std::string name(100, 'n');
  EXPECT_GE(FailuresOf([&] { const TPushbroomDibDataEnvelope envelope(data, name, true); },
                       [&] { EXPECT_EQ(data.use_count(), 1); }),
            2);
  EXPECT_EQ(data.use_count(), 1);
}

TEST_F(RasterMemoryTest, SetsOfTilesAreLookedAt) {
  const var_a_legacy::var_a<TBasePushbroomDibData*> raster(new MockBand(4, 3, 2, {1}));
  const std::vector<TSuperTileData> tiles(
      2, {0, 0, 3, 2, 0, 0, raster, "a name that is too long for a string's own memory"});
  std::vector<std::string> names = {"first"};
  EXPECT_GE(FailuresOf([&] { GetSuperTilesFileNames(tiles, &names); },
                       [&] {
                         ASSERT_GE(names.size(), 1u);
                         EXPECT_EQ(names.front(), "first");
                         names.resize(1);
                       }),
            2);
  EXPECT_EQ(names.size(), 3u);
  const AllocationFailure failure(0);
  unsigned long width = 0;
  unsigned long height = 0;
  EXPECT_TRUE(GetStitchedRasterDimensions(tiles, &width, &height));
  EXPECT_TRUE(GetStitchedRasterRadiometry(tiles, &width, &height));
  EXPECT_TRUE(CheckSuperTilesDataset(tiles));
  EXPECT_FALSE(failure.Happened());
}

TEST_F(RasterMemoryTest, KindsThatCannotBePrintedPassTheFailure) {
  const MockBand band(4, 3, 2, {6, -1234567890});
  unsigned long printed = 0;
  const TKvDebugSink former = KvSetDebugSink([&](const std::string&) { ++printed; });
  EXPECT_GE(FailuresOf(
                [&] {
                  printed = 0;
                  band.DebugOutputChannels();
                },
                [&] { EXPECT_LT(printed, 4u); }),
            3);
  EXPECT_EQ(printed, 4u);
  KvSetDebugSink(former);
}

TEST_F(RasterMemoryTest, PurgingNeedsNoMemory) {
  TSeparateBandsDibData bands;
  TSuperTiledDibDataEnvelope tiled;
  TRawWordDibData raw;
  const AllocationFailure failure(0);
  bands.PurgeCache();
  bands.Reset();
  tiled.PurgeCache();
  tiled.Reset();
  raw.PurgeCache();
  EXPECT_FALSE(failure.Happened());
}

}  // namespace
