#include "host/scene/Spacecraft.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using namespace ravelin;

TEST(Spacecraft, AreFoundInAnyWriting) {
  for (const char* id : {"LANDSAT_8", "Landsat9", "landsat_8"}) {
    const Spacecraft* craft = FindSpacecraft(id);
    ASSERT_NE(craft, nullptr) << id;
    EXPECT_EQ(craft->red, 4);
  }
}

TEST(Spacecraft, KnowTheirVisibleBands) {
  const Spacecraft* old = FindSpacecraft("LANDSAT_5");
  ASSERT_NE(old, nullptr);
  EXPECT_EQ(old->VisibleKey(1), 3);
  EXPECT_EQ(old->VisibleKey(2), 4);
  EXPECT_EQ(old->VisibleKey(3), 6);
  EXPECT_EQ(old->VisibleKey(4), 0);
}

TEST(Spacecraft, KnowBandsOfAnotherSize) {
  EXPECT_THAT(FindSpacecraft("LANDSAT_7")->panchromatic, testing::ElementsAre(8));
  EXPECT_THAT(FindSpacecraft("LANDSAT_9")->thermal, testing::ElementsAre(10, 11));
}

TEST(Spacecraft, AreNotGuessed) {
  for (const char* id : {"", "LANDSAT_3", "LANDSAT_80", "VG2"}) {
    EXPECT_EQ(FindSpacecraft(id), nullptr) << id;
  }
}

}  // namespace
