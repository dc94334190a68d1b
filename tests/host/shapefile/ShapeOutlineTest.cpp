#include "host/shapefile/ShapeOutline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "shapefile/ShapeFiles.h"

namespace {

using ravelin::CanBeDrawn;
using ravelin::DrawOutline;
using ravelin::GreyPicture;
using shape_test::TRings;
using shape_test::TShapeFilePoint;
using shape_test::TShapeFileRing;

constexpr int kWhite = 255;
constexpr int kInside = 224;

int At(const GreyPicture& picture, long x, long y) {
  return picture.pixels.at(static_cast<std::size_t>(y * picture.size.width + x));
}

/// Closed by hand, with corners at whole pixels of a picture of 117 x 117: a unit is a pixel.
const TShapeFileRing kFrame = {{0, 0}, {0, 100}, {100, 100}, {100, 0}};

TEST(ShapeOutline, LinesAreDarkInsideIsGreyOutsideIsWhite) {
  const GreyPicture picture = DrawOutline({kFrame}, {117, 117});
  EXPECT_EQ(picture.size.width, 117);
  EXPECT_EQ(picture.size.height, 117);
  EXPECT_EQ(At(picture, 8, 8), 0);
  EXPECT_EQ(At(picture, 58, 8), 0);
  EXPECT_EQ(At(picture, 108, 58), 0);
  EXPECT_EQ(At(picture, 58, 108), 0);
  EXPECT_EQ(At(picture, 8, 58), 0);
  EXPECT_EQ(At(picture, 58, 58), kInside);
  EXPECT_EQ(At(picture, 5, 58), kWhite);
  EXPECT_EQ(At(picture, 58, 111), kWhite);
}

TEST(ShapeOutline, AHoleIsWhite) {
  const GreyPicture picture =
      DrawOutline({kFrame, {{30, 30}, {70, 30}, {70, 70}, {30, 70}}}, {117, 117});
  EXPECT_EQ(At(picture, 58, 58), kWhite);
  EXPECT_EQ(At(picture, 20, 58), kInside);
  EXPECT_EQ(At(picture, 38, 58), 0);
}

TEST(ShapeOutline, LargeYIsUp) {
  const GreyPicture picture = DrawOutline({{{0, 0}, {50, 100}, {100, 0}}}, {117, 117});
  EXPECT_EQ(At(picture, 58, 8), 0);
  EXPECT_EQ(At(picture, 12, 8), kWhite);
  EXPECT_EQ(At(picture, 12, 108), 0);
}

TEST(ShapeOutline, AUnitIsAsLongInXAsInY) {
  const GreyPicture wide = DrawOutline({{{0, 0}, {0, 50}, {200, 50}, {200, 0}}}, {217, 217});
  EXPECT_EQ(wide.size.width, 217);
  EXPECT_EQ(wide.size.height, 67);
  const GreyPicture high = DrawOutline({{{0, 0}, {0, 200}, {50, 200}, {50, 0}}}, {217, 217});
  EXPECT_EQ(high.size.width, 67);
  EXPECT_EQ(high.size.height, 217);
}

TEST(ShapeOutline, TheLastPointIsJoinedToTheFirst) {
  const GreyPicture picture = DrawOutline({{{0, 0}, {0, 100}, {100, 100}}}, {117, 117});
  EXPECT_LT(At(picture, 58, 58), 50);
}

TEST(ShapeOutline, RingsWithoutExtentAreDrawn) {
  for (const TShapeFileRing& ring :
       {TShapeFileRing{{5, 5}, {5, 5}, {5, 5}}, TShapeFileRing{{0, 5}, {1, 5}, {2, 5}},
        TShapeFileRing{{5, 0}, {5, 1}, {5, 2}}}) {
    const GreyPicture picture = DrawOutline({ring}, {64, 48});
    EXPECT_LE(picture.size.width, 64);
    EXPECT_LE(picture.size.height, 48);
    EXPECT_LT(*std::min_element(picture.pixels.begin(), picture.pixels.end()), 120);
  }
}

TEST(ShapeOutline, ExtremeCoordinatesStayInsideThePicture) {
  std::mt19937_64 random(24);
  for (int run = 0; run < 300; ++run) {
    TRings rings(1 + random() % 3);
    for (TShapeFileRing& ring : rings) {
      while (ring.size() < 3 + random() % 5) {
        const double x =
            std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 2030) - 1070);
        const double y =
            std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 2030) - 1070);
        const TShapeFilePoint point = {random() % 2 == 0 ? x : -x, random() % 2 == 0 ? y : -y};
        if (CanBeDrawn({{point}})) ring.push_back(point);
      }
    }
    const GreyPicture picture = DrawOutline(rings, {40, 60});
    ASSERT_LE(picture.size.width, 40);
    ASSERT_LE(picture.size.height, 60);
    ASSERT_GE(picture.size.width, 17);
    ASSERT_GE(picture.size.height, 17);
    ASSERT_LT(*std::min_element(picture.pixels.begin(), picture.pixels.end()), 120);
  }
}

TEST(ShapeOutline, TheWidestBoxIsDrawn) {
  const double most = std::numeric_limits<double>::max();
  const GreyPicture picture =
      DrawOutline({{{-most, -most}, {-most, most}, {most, most}, {most, -most}}}, {117, 117});
  EXPECT_EQ(picture.size.width, 117);
  EXPECT_EQ(At(picture, 8, 58), 0);
  EXPECT_EQ(At(picture, 58, 58), kInside);
}

TEST(ShapeOutline, OnlyFiniteNumbersCanBeDrawn) {
  EXPECT_TRUE(CanBeDrawn({kFrame}));
  EXPECT_FALSE(CanBeDrawn({kFrame, {{0, 0}, {1, std::nan("")}, {2, 2}}}));
  EXPECT_FALSE(CanBeDrawn({{{0, 0}, {1, 1}, {-INFINITY, 2}}}));
}

}  // namespace
