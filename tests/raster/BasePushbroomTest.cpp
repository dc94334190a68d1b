#include <gmock/gmock.h>

#include "raster/MockBand.h"
#include "raster/RasterTest.h"

namespace {

using raster_test::MockBand;
using raster_test::RasterTest;
using SatCommonUtils::TBasePushbroomDibData;
using SatCommonUtils::TVisibleBandsOrder;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class PlainBand : public TBasePushbroomDibData {
 public:
  void PurgeCache() override {}
};

class BasePushbroomTest : public RasterTest {
 protected:
  void SetBands(long count, std::vector<int> kinds) {
    band.bandsCount = count;
    band.channels.kinds = std::move(kinds);
  }
  std::vector<int> KindsAfter(long count, const TVisibleBandsOrder& order) {
    SetBands(count, {99});
    EXPECT_TRUE(band.SetVisibleBandsOrder(&order));
    return band.channels.kinds;
  }
  PlainBand band;
};

TEST_F(BasePushbroomTest, ABandIsEmptyAfterConstruction) {
  EXPECT_EQ(band.channels.sampleType, 1);
  EXPECT_EQ(band.channels.sampleSize, 0u);
  EXPECT_THAT(band.channels.kinds, IsEmpty());
  EXPECT_EQ(band.width, 0);
  EXPECT_EQ(band.height, 0);
  EXPECT_EQ(band.bandsCount, 0);
  EXPECT_FALSE(band.bandFlag);
  EXPECT_EQ(band.bandName, "");
  EXPECT_EQ(band.GetAllLevels(nullptr), 0u);
}

TEST_F(BasePushbroomTest, ChannelsIsTheVeryRecordOfTheBand) {
  EXPECT_EQ(&band.Channels(), &band.channels);
}

TEST_F(BasePushbroomTest, ABandWithoutReadBufferReadsNothing) {
  long pos[] = {0, 0};
  long size[] = {1, 1};
  EXPECT_FALSE(band.AllocReadData(pos, size));
  EXPECT_EQ(band.GetReadBuffer(), nullptr);
}

TEST_F(BasePushbroomTest, ABandHasNoImageName) {
  EXPECT_EQ(band.GetImageName(), "");
}

TEST_F(BasePushbroomTest, TheVisibleBandsGetTheirKindsAndTheOthersThirtyTwo) {
  EXPECT_THAT(KindsAfter(4, {2, 1, 0}), ElementsAre(3, 4, 6, 32));
  EXPECT_THAT(KindsAfter(4, {0, 1, 2}), ElementsAre(6, 4, 3, 32));
  EXPECT_THAT(KindsAfter(6, {5, 3, 1}), ElementsAre(32, 3, 32, 4, 32, 6));
  EXPECT_THAT(KindsAfter(2, {1, 0, 7}), ElementsAre(4, 6));
}

TEST_F(BasePushbroomTest, ABandNamedTwiceTakesTheKindOfTheEarlierMember) {
  EXPECT_THAT(KindsAfter(3, {1, 1, 1}), ElementsAre(32, 6, 32));
  EXPECT_THAT(KindsAfter(3, {0, 2, 2}), ElementsAre(6, 32, 4));
  EXPECT_THAT(KindsAfter(3, {2, 0, 2}), ElementsAre(4, 32, 6));
}

TEST_F(BasePushbroomTest, ANegativeIndexLeavesItsVisibleChannelWithoutBand) {
  EXPECT_THAT(KindsAfter(3, {-1, 2, 0}), ElementsAre(3, 32, 4));
  EXPECT_THAT(KindsAfter(3, {-5, -1, 1}), ElementsAre(32, 3, 32));
  EXPECT_THAT(KindsAfter(3, {-5, 2, -1}), ElementsAre(32, 32, 4));
  EXPECT_THAT(KindsAfter(3, {0, -1, -1}), ElementsAre(6, 32, 32));
  EXPECT_THAT(KindsAfter(3, {-1, 0, -1}), ElementsAre(4, 32, 32));
  EXPECT_THAT(KindsAfter(3, {-1, -1, 0}), ElementsAre(3, 32, 32));
}

TEST_F(BasePushbroomTest, IndicesBeyondTheBandsLeaveEveryBandWithThirtyTwo) {
  EXPECT_THAT(KindsAfter(2, {2, 3, 1000000}), ElementsAre(32, 32));
}

TEST_F(BasePushbroomTest, NoOrderIsRefusedAndTheKindsStay) {
  SetBands(3, {7, 8, 9});
  EXPECT_FALSE(band.SetVisibleBandsOrder(nullptr));
  EXPECT_THAT(band.channels.kinds, ElementsAre(7, 8, 9));
}

TEST_F(BasePushbroomTest, AnOrderOfNegativeIndicesIsRefusedAndTheKindsStay) {
  SetBands(4, {7, 8, 9, 10});
  const TVisibleBandsOrder order = {-1, -1, -1};
  EXPECT_FALSE(band.SetVisibleBandsOrder(&order));
  EXPECT_THAT(band.channels.kinds, ElementsAre(7, 8, 9, 10));
}

TEST_F(BasePushbroomTest, ARasterOfOneBandOrNoneHasNoVisibleOrder) {
  const TVisibleBandsOrder order = {0, 0, 0};
  SetBands(1, {5});
  EXPECT_FALSE(band.SetVisibleBandsOrder(&order));
  EXPECT_THAT(band.channels.kinds, ElementsAre(5));
  SetBands(0, {5});
  EXPECT_FALSE(band.SetVisibleBandsOrder(&order));
  EXPECT_THAT(band.channels.kinds, ElementsAre(5));
}

TEST_F(BasePushbroomTest, ANegativeNumberOfBandsIsNotRefusedAndLeavesNoKinds) {
  EXPECT_THAT(KindsAfter(-1, {0, 1, 2}), IsEmpty());
  EXPECT_THAT(KindsAfter(-1000, {0, 1, 2}), IsEmpty());
}

TEST_F(BasePushbroomTest, AnOrderOfNegativeIndicesIsRefusedForANegativeNumberOfBandsToo) {
  SetBands(-2, {5});
  const TVisibleBandsOrder order = {-1, -1, -1};
  EXPECT_FALSE(band.SetVisibleBandsOrder(&order));
  EXPECT_THAT(band.channels.kinds, ElementsAre(5));
}

TEST_F(BasePushbroomTest, ChannelsBandsReplaceTheKindsWhenThereIsOneForEveryBand) {
  SetBands(3, {1});
  EXPECT_TRUE(band.SetChannelsBands({40, 50, 60}));
  EXPECT_THAT(band.channels.kinds, ElementsAre(40, 50, 60));
}

TEST_F(BasePushbroomTest, ChannelsBandsOfAnotherCountChangeNothing) {
  SetBands(3, {7, 8, 9});
  EXPECT_FALSE(band.SetChannelsBands({1, 2, 3, 4}));
  EXPECT_FALSE(band.SetChannelsBands({1, 2}));
  EXPECT_FALSE(band.SetChannelsBands({}));
  EXPECT_THAT(band.channels.kinds, ElementsAre(7, 8, 9));
}

TEST_F(BasePushbroomTest, NoBandsTakeNoKinds) {
  SetBands(0, {7});
  EXPECT_TRUE(band.SetChannelsBands({}));
  EXPECT_THAT(band.channels.kinds, IsEmpty());
}

TEST_F(BasePushbroomTest, ANegativeNumberOfBandsEqualsNoCountOfKinds) {
  SetBands(-1, {7});
  EXPECT_FALSE(band.SetChannelsBands({}));
  EXPECT_FALSE(band.SetChannelsBands({1}));
  EXPECT_THAT(band.channels.kinds, ElementsAre(7));
}

std::vector<std::string> PrintedBy(const TBasePushbroomDibData& band) {
  std::vector<std::string> lines;
  TKvDebugSink former =
      KvSetDebugSink([&lines](const std::string& line) { lines.push_back(line); });
  band.DebugOutputChannels();
  KvSetDebugSink(former);
  return lines;
}

TEST_F(BasePushbroomTest, DebugOutputPrintsTheTextOfEveryKindBetweenTwoFrameLines) {
  SetBands(2, {6, 4, 3, 1, 32, 17});
  EXPECT_THAT(PrintedBy(band),
              ElementsAre("--- DebugOutputChannels ---", "Red", "Green", "Blue", "Gray", "Other",
                          "Kind 17", "-^- DebugOutputChannels -^-"));
}

TEST_F(BasePushbroomTest, DebugOutputOfABandWithoutKindsIsTheTwoFrameLines) {
  EXPECT_THAT(PrintedBy(band),
              ElementsAre("--- DebugOutputChannels ---", "-^- DebugOutputChannels -^-"));
}

}  // namespace
