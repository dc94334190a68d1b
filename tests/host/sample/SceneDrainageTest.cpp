#include "host/sample/SceneDrainage.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

namespace ravelin {
namespace {

SceneGrid<Fixed> RandomRelief(unsigned seed, int width, int height) {
  std::mt19937 random(seed);
  SceneGrid<Fixed> relief(width, height);
  for (std::size_t i = 0; i < relief.Size(); ++i) {
    relief[i] = static_cast<Fixed>(random() % 40) * kOne / 8;
  }
  return relief;
}

std::vector<std::size_t> RanksOf(const SceneDrainage& drainage) {
  std::vector<std::size_t> ranks(drainage.receiver.size(), drainage.receiver.size());
  for (std::size_t i = 0; i < drainage.order.size(); ++i) ranks[drainage.order[i]] = i;
  return ranks;
}

TEST(SceneDrainage, EveryCellComesOnceAndAfterTheOneItFlowsTo) {
  const SceneGrid<Fixed> relief = RandomRelief(1, 37, 23);
  const SceneDrainage drainage = RouteWater(relief);
  ASSERT_EQ(drainage.order.size(), relief.Size());
  const std::vector<std::size_t> ranks = RanksOf(drainage);
  for (std::size_t cell = 0; cell < relief.Size(); ++cell) {
    ASSERT_LT(ranks[cell], relief.Size());
    if (drainage.receiver[cell] == cell) continue;
    ASSERT_LT(ranks[drainage.receiver[cell]], ranks[cell]);
  }
}

TEST(SceneDrainage, OnlyTheSeaKeepsItsWater) {
  const SceneGrid<Fixed> relief = RandomRelief(2, 31, 29);
  const SceneDrainage drainage = RouteWater(relief);
  for (std::size_t cell = 0; cell < relief.Size(); ++cell) {
    ASSERT_EQ(drainage.receiver[cell] == cell, relief[cell] <= 0) << cell;
  }
}

TEST(SceneDrainage, WaterFlowsToNeighboursOnly) {
  const SceneDrainage drainage = RouteWater(RandomRelief(3, 31, 29));
  for (std::size_t cell = 0; cell < drainage.receiver.size(); ++cell) {
    const int below = static_cast<int>(drainage.receiver[cell]);
    const int here = static_cast<int>(cell);
    ASSERT_LE(std::abs(below % 31 - here % 31), 1);
    ASSERT_LE(std::abs(below / 31 - here / 31), 1);
  }
}

TEST(SceneDrainage, AreasCountTheCellsThatAWalkDownhillPasses) {
  const SceneDrainage drainage = RouteWater(RandomRelief(4, 31, 29));
  std::vector<std::uint32_t> walked(drainage.receiver.size(), 0);
  for (std::uint32_t start = 0; start < walked.size(); ++start) {
    std::uint32_t cell = start;
    ++walked[cell];
    while (drainage.receiver[cell] != cell) ++walked[cell = drainage.receiver[cell]];
  }
  EXPECT_EQ(drainage.area, walked);
}

TEST(SceneDrainage, AHollowEmptiesOverItsLowestRim) {
  SceneGrid<Fixed> relief(5, 3);
  for (std::size_t i = 0; i < relief.Size(); ++i) relief[i] = 9 * kOne;
  relief(0, 1) = 0;
  relief(1, 1) = 4 * kOne;
  relief(2, 1) = kOne;
  relief(3, 1) = 6 * kOne;
  const SceneDrainage drainage = RouteWater(relief);
  EXPECT_EQ(drainage.receiver[relief.Index(2, 1)], relief.Index(1, 1));
  EXPECT_EQ(drainage.receiver[relief.Index(1, 1)], relief.Index(0, 1));
}

TEST(SceneDrainage, LandWithoutASeaHasNoDrainage) {
  SceneGrid<Fixed> relief(4, 4);
  for (std::size_t i = 0; i < relief.Size(); ++i) relief[i] = kOne;
  EXPECT_TRUE(RouteWater(relief).order.empty());
}

TEST(SceneDrainage, ErosionKeepsSlopesBelowTheSteepest) {
  SceneGrid<Fixed> relief = RandomRelief(5, 40, 40);
  relief(0, 0) = 0;
  SceneGrid<Fixed> uplift(40, 40);
  for (std::size_t i = 0; i < uplift.Size(); ++i) uplift[i] = 50 * kOne;
  const SceneErosion erosion{kOne / 100, 30 * kOne, 0, 20};
  const SceneDrainage drainage = Erode(&relief, uplift, erosion);
  for (std::size_t cell = 0; cell < relief.Size(); ++cell) {
    ASSERT_LE(relief[cell] - relief[drainage.receiver[cell]], 43 * kOne);
  }
}

TEST(SceneDrainage, ErosionLeavesTheSeaAlone) {
  SceneGrid<Fixed> relief = RandomRelief(6, 30, 30);
  const SceneGrid<Fixed> before = relief;
  SceneGrid<Fixed> uplift(30, 30);
  for (std::size_t i = 0; i < uplift.Size(); ++i) uplift[i] = 10 * kOne;
  Erode(&relief, uplift, {kOne / 10, 30 * kOne, kOne / 10, 5});
  for (std::size_t cell = 0; cell < relief.Size(); ++cell) {
    ASSERT_EQ(relief[cell] <= 0, before[cell] <= 0);
  }
}

}  // namespace
}  // namespace ravelin
