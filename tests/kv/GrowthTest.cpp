#include "Growth.h"

#include <gtest/gtest.h>

namespace kv_test {
namespace {

void Spin(unsigned long count) {
  for (volatile unsigned long i = 0; i < count;) i = i + 1;
}

TEST(Growth, OfASimpleLoopIsLinear) {
  EXPECT_TRUE(IsLinear(100000, Spin));
}

TEST(Growth, OfALoopWithinALoopIsNotLinear) {
  EXPECT_FALSE(IsLinear(300, [](unsigned long count) {
    for (unsigned long i = 0; i < count; ++i) Spin(count);
  }));
}

}  // namespace
}  // namespace kv_test
