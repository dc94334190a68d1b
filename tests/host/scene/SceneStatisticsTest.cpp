#include "host/scene/SceneStatistics.h"

#include <gtest/gtest.h>

namespace {

using namespace ravelin;

TEST(SceneStatistics, CountChannelsApart) {
  SceneStatistics statistics(2);
  const std::uint16_t first[] = {10, 0, 20, 65535};
  const std::uint16_t second[] = {60, 1};
  statistics.Add(first, 2);
  statistics.Add(second, 1);
  const std::vector<BandStatistics> results = statistics.Results();
  ASSERT_EQ(results.size(), 2u);
  EXPECT_EQ(results[0].count, 3u);
  EXPECT_EQ(results[0].minimum, 10);
  EXPECT_EQ(results[0].maximum, 60);
  EXPECT_EQ(results[0].mean, 30);
  EXPECT_EQ(results[0].dark, 10);
  EXPECT_EQ(results[0].bright, 60);
  EXPECT_EQ(results[1].count, 2u);
  EXPECT_EQ(results[1].mean, 32768);
}

TEST(SceneStatistics, AreZeroWithoutSamples) {
  const BandStatistics result = SceneStatistics(1).Results().front();
  EXPECT_EQ(result.count, 0u);
  EXPECT_EQ(result.minimum, 0);
  EXPECT_EQ(result.maximum, 0);
  EXPECT_EQ(result.mean, 0);
  EXPECT_EQ(result.bright, 0);
}

}  // namespace
