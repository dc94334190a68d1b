#include "host/raster/Histogram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "host/support/Samples.h"

namespace {

using ravelin::Histogram;

Histogram Of(const Samples& samples) {
  Histogram histogram;
  histogram.Add(samples.data(), static_cast<long>(samples.size()), 1);
  return histogram;
}

// The nearest-rank percentile of the samples that are not 0.
std::uint16_t NaivePercentile(Samples samples, unsigned int percent) {
  std::erase(samples, 0);
  std::sort(samples.begin(), samples.end());
  const std::size_t rank = (samples.size() * percent + 99) / 100;
  return samples.at(rank - 1);
}

TEST(Histogram, GivesTheSmallestValueThatSoManySamplesDoNotExceed) {
  const Histogram histogram = Of({10, 20, 30, 40});
  EXPECT_EQ(histogram.Percentile(25), 10);
  EXPECT_EQ(histogram.Percentile(26), 20);
  EXPECT_EQ(histogram.Percentile(100), 40);
}

TEST(Histogram, LeavesZerosOut) {
  EXPECT_EQ(Of({0, 0, 0, 0, 0, 0, 7}).Percentile(2), 7);
}

TEST(Histogram, GivesZeroWithoutSamples) {
  EXPECT_EQ(Histogram().Percentile(50), 0);
  EXPECT_EQ(Of({0, 0}).Percentile(98), 0);
}

TEST(Histogram, ReachesTheLargestValue) {
  EXPECT_EQ(Of({65535}).Percentile(1), 65535);
}

TEST(Histogram, StepsOverOtherChannels) {
  const Samples pixels = {1, 100, 2, 200, 3, 300};
  Histogram histogram;
  histogram.Add(pixels.data() + 1, 3, 2);
  EXPECT_EQ(histogram.Percentile(1), 100);
  EXPECT_EQ(histogram.Percentile(100), 300);
}

TEST(Histogram, AgreesWithSortingTheSamples) {
  for (unsigned int seed = 1; seed <= 40; ++seed) {
    const Samples samples = RandomSamples(1 + seed * 37, seed);
    for (const unsigned int percent : {1u, 2u, 50u, 98u, 100u}) {
      EXPECT_EQ(Of(samples).Percentile(percent), NaivePercentile(samples, percent)) << seed;
    }
  }
}

TEST(Histogram, TellsCountRangeAndMeanWithoutZeros) {
  const Histogram histogram = Of({0, 40, 10, 0, 10});
  EXPECT_EQ(histogram.Count(), 3u);
  EXPECT_EQ(histogram.Minimum(), 10);
  EXPECT_EQ(histogram.Maximum(), 40);
  EXPECT_EQ(histogram.Mean(), 20);
}

TEST(Histogram, TellsZerosWithoutSamples) {
  const Histogram histogram = Of({0, 0});
  EXPECT_EQ(histogram.Count(), 0u);
  EXPECT_EQ(histogram.Minimum(), 0);
  EXPECT_EQ(histogram.Maximum(), 0);
  EXPECT_EQ(histogram.Mean(), 0);
}

TEST(Histogram, TellsTheRangeUpToItsEnds) {
  EXPECT_EQ(Of({65535, 1}).Minimum(), 1);
  EXPECT_EQ(Of({65535, 1}).Maximum(), 65535);
}

}  // namespace
