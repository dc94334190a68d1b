#include "host/sample/SceneFixed.h"

#include <gtest/gtest.h>

#include <random>

namespace ravelin {
namespace {

TEST(SceneFixed, IntegerSqrtIsTheLargestRootNotAboveTheValue) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 20000; ++i) {
    const std::uint64_t value = random() >> (random() % 64);
    const std::uint64_t root = IntegerSqrt(value);
    ASSERT_LE(root * root, value);
    ASSERT_TRUE(root == 0xFFFFFFFFu || (root + 1) * (root + 1) > value) << value;
  }
}

TEST(SceneFixed, IntegerSqrtOfTheLargestValueFits) {
  EXPECT_EQ(IntegerSqrt(0xFFFFFFFFFFFFFFFFu), 0xFFFFFFFFu);
  EXPECT_EQ(IntegerSqrt(0), 0u);
}

TEST(SceneFixed, LengthOfASlantedVector) {
  EXPECT_EQ(Length(-3 * kOne, 4 * kOne), 5 * kOne);
}

TEST(SceneFixed, ProductsRoundDown) {
  EXPECT_EQ(Times(kOne / 2, 3 * kOne), 3 * kOne / 2);
  EXPECT_EQ(Times(-1, 1), -1);
  EXPECT_EQ(Times(1, 1), 0);
}

TEST(SceneFixed, SmoothStepRisesFromZeroToOne) {
  EXPECT_EQ(SmoothStep(10, 20 * kOne, 10), 0);
  EXPECT_EQ(SmoothStep(10, 20 * kOne, -kOne), 0);
  EXPECT_EQ(SmoothStep(0, 20 * kOne, 10 * kOne), kOne / 2);
  EXPECT_EQ(SmoothStep(10, 20 * kOne, 30 * kOne), kOne);
  Fixed before = 0;
  for (Fixed value = 0; value <= 20 * kOne; value += kOne / 8) {
    const Fixed now = SmoothStep(0, 20 * kOne, value);
    ASSERT_GE(now, before);
    before = now;
  }
}

TEST(SceneFixed, MixReachesBothEnds) {
  EXPECT_EQ(Mix(-7, 100, 0), -7);
  EXPECT_EQ(Mix(-7, 100, kOne), 100);
}

}  // namespace
}  // namespace ravelin
