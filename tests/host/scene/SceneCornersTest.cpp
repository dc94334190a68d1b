#include "host/scene/SceneCorners.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/scene/support/Scopes.h"
#include "host/support/ErrorOf.h"

namespace {

using namespace ravelin;
using SatCommonUtils::TSatLog;
using testing::HasSubstr;

std::string Corner(const char* name, double latitude, double longitude) {
  const std::string start = std::string("CORNER_") + name;
  return start + "_LAT_PRODUCT = " + std::to_string(latitude) + "\n" + start +
         "_LON_PRODUCT = " + std::to_string(longitude) + "\n";
}

std::optional<SceneCorners> DegreesOf(const std::string& text, TSatLog* log) {
  return CornersInDegrees(SortedLabel(text)->main, log);
}

TEST(SceneCorners, AreReadInDegrees) {
  TSatLog log;
  const auto corners = DegreesOf(
      Corner("UL", 4, 1) + Corner("UR", 4.5, 2) + Corner("LL", 3, 1.5) + Corner("LR", 3.5, 2.5),
      &log);
  ASSERT_TRUE(corners);
  EXPECT_EQ(corners->upperLeft.x, 1);
  EXPECT_EQ(corners->upperLeft.y, 4);
  EXPECT_EQ(corners->upperRight.y, 4.5);
  EXPECT_EQ(corners->lowerRight.x, 2.5);
  EXPECT_EQ(corners->lowerLeft.x, 1.5);
  EXPECT_TRUE(log.items.empty());
}

TEST(SceneCorners, AreReadInTheOlderNames) {
  TSatLog log;
  std::string text;
  for (const char* name : {"UL", "UR", "LL", "LR"}) {
    const std::string start = std::string("PRODUCT_") + name + "_CORNER_";
    text += start + "MAPX = 500000.5\n" + start + "MAPY = -2 <m>\n";
  }
  const auto corners = CornersInProjection(SortedLabel(text)->main, &log);
  ASSERT_TRUE(corners);
  EXPECT_EQ(corners->upperRight.x, 500000.5);
  EXPECT_EQ(corners->lowerLeft.y, -2);
}

TEST(SceneCorners, AreNoneWithoutAWord) {
  TSatLog log;
  EXPECT_FALSE(DegreesOf("A = 1\n", &log));
  EXPECT_TRUE(log.items.empty());
}

TEST(SceneCorners, AreLeftOutWhenSomeAreMissing) {
  TSatLog log;
  EXPECT_FALSE(DegreesOf(Corner("UL", 4, 1) + Corner("UR", 4, 2) + Corner("LR", 3, 2), &log));
  ASSERT_EQ(log.items.size(), 1u);
  EXPECT_EQ(log.items[0].type, TSatLog::mtWarning);
  EXPECT_EQ(log.items[0].message,
            "corners: left out, the label does not give CORNER_LL_LON_PRODUCT, "
            "CORNER_LL_LAT_PRODUCT\n");
}

TEST(SceneCorners, AreLeftOutWhenTheyAreNoPlacesOnEarth) {
  TSatLog log;
  EXPECT_FALSE(DegreesOf(
      Corner("UL", 91, 1) + Corner("UR", 4, 2) + Corner("LL", 3, 1) + Corner("LR", 3, 2), &log));
  ASSERT_EQ(log.items.size(), 1u);
  EXPECT_THAT(log.items[0].message, HasSubstr("no longitude and latitude"));
}

TEST(SceneCorners, StayTogetherAcrossTheMeridianOf180Degrees) {
  TSatLog log;
  const auto corners = DegreesOf(Corner("UL", 4, 179) + Corner("UR", 4, -179) +
                                     Corner("LL", 3, 178.5) + Corner("LR", 3, -179.5),
                                 &log);
  ASSERT_TRUE(corners);
  EXPECT_EQ(corners->upperLeft.x, 179);
  EXPECT_EQ(corners->upperRight.x, 181);
  EXPECT_EQ(corners->lowerRight.x, 180.5);
}

TEST(SceneCorners, AreNotChosenFromDifferentValues) {
  TSatLog log;
  const std::string text = Corner("UL", 4, 1) + Corner("UL", 5, 1);
  EXPECT_THAT(ErrorOf([&] { DegreesOf(text, &log); }),
              HasSubstr("choose by --map KEY=CORNER_UL_LAT_PRODUCT"));
}

}  // namespace
