#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "SatCommonUtils/Shapefile.h"
#include "shapefile/DebugSink.h"
#include "shapefile/ShapeFiles.h"

namespace {

using namespace SatCommonUtils;
using namespace shape_test;

void ExpectReset(const TShapeFilePolygonData& data) {
  EXPECT_FALSE(data);
  EXPECT_EQ(data.info.fileLength, 0u);
  EXPECT_EQ(data.info.shapeType, 5);
  EXPECT_EQ(data.info.xMin, DBL_MAX);
  EXPECT_EQ(data.info.xMax, -DBL_MAX);
  EXPECT_EQ(data.info.yMin, DBL_MAX);
  EXPECT_EQ(data.info.yMax, -DBL_MAX);
  EXPECT_EQ(data.info.zMin, DBL_MAX);
  EXPECT_EQ(data.info.zMax, -DBL_MAX);
  EXPECT_EQ(data.info.mMin, DBL_MAX);
  EXPECT_EQ(data.info.mMax, -DBL_MAX);
  EXPECT_TRUE(data.rings.empty());
  EXPECT_EQ(data.rings.capacity(), 0u);
}

TShapeFilePolygonData Polygon(const TRings& rings) {
  TShapeFilePolygonData data;
  EXPECT_TRUE(data.Setup(rings));
  return data;
}

TEST(ShapeFilePolygonDataTest, ADefaultPointLiesAtTheLargestNumber) {
  EXPECT_EQ(TShapeFilePoint().x, DBL_MAX);
  EXPECT_EQ(TShapeFilePoint().y, DBL_MAX);
}

TEST(ShapeFilePolygonDataTest, ANewOneIsEmptyAndOfTypePolygon) {
  ExpectReset(TShapeFilePolygonData());
}

TEST(ShapeFilePolygonDataTest, SetupTakesACopyOfTheRings) {
  TRings rings = {kSquare, kTriangle};
  const TShapeFilePolygonData data = Polygon(rings);
  rings[0][0].x = 99;
  EXPECT_EQ(BytesOf(data.rings), BytesOf({kSquare, kTriangle}));
}

TEST(ShapeFilePolygonDataTest, SetupFillsLengthTypeAndBox) {
  const TShapeFilePolygonData data = Polygon({kTriangle, {{-7, 3}, {5, -2.5}, {1, 1}}});
  EXPECT_TRUE(data);
  EXPECT_EQ(data.info.fileLength, 152u + 2 * 4 + 8 * 16);
  EXPECT_EQ(data.info.shapeType, 5);
  EXPECT_EQ(data.info.xMin, -7);
  EXPECT_EQ(data.info.xMax, 5);
  EXPECT_EQ(data.info.yMin, -2.5);
  EXPECT_EQ(data.info.yMax, 4);
  EXPECT_EQ(data.info.zMin, 0);
  EXPECT_EQ(data.info.zMax, 0);
  EXPECT_EQ(data.info.mMin, 0);
  EXPECT_EQ(data.info.mMax, 0);
}

TEST(ShapeFilePolygonDataTest, ASquareHas236Bytes) {
  EXPECT_EQ(Polygon({kSquare}).info.fileLength, 236u);
}

TEST(ShapeFilePolygonDataTest, SetupWithoutRingsResets) {
  TShapeFilePolygonData data = Polygon({kSquare});
  EXPECT_FALSE(data.Setup({}));
  ExpectReset(data);
}

TEST(ShapeFilePolygonDataTest, SetupWithoutPointsResets) {
  TShapeFilePolygonData data = Polygon({kSquare});
  EXPECT_FALSE(data.Setup({{}, {}}));
  ExpectReset(data);
}

TEST(ShapeFilePolygonDataTest, SetupTakesAnyNumberOfPointsThatIsNotZero) {
  EXPECT_TRUE(TShapeFilePolygonData().Setup({{{1, 2}}}));
  EXPECT_TRUE(TShapeFilePolygonData().Setup({{}, {{1, 2}}}));
}

TEST(ShapeFilePolygonDataTest, SetupForgetsTheFormerRings) {
  TShapeFilePolygonData data = Polygon({{{-100, -100}, {100, 100}, {0, 5}}});
  ASSERT_TRUE(data.Setup({kTriangle}));
  EXPECT_EQ(data.rings.size(), 1u);
  EXPECT_EQ(data.info.xMin, 2);
  EXPECT_EQ(data.info.xMax, 4);
}

TEST(ShapeFilePolygonDataTest, SetupTakesItsOwnRings) {
  TShapeFilePolygonData data = Polygon({kSquare});
  data.rings.push_back(kTriangle);
  ASSERT_TRUE(data.Setup(data.rings));
  EXPECT_EQ(BytesOf(data.rings), BytesOf({kSquare, kTriangle}));
  EXPECT_EQ(data.info.fileLength, 304u);
}

TEST(ShapeFilePolygonDataTest, CoordinatesThatAreNoNumbersDoNotCountForTheBox) {
  const double nan = std::nan("");
  const TShapeFilePolygonData data = Polygon({{{nan, 1}, {2, nan}, {3, 4}, {nan, nan}}});
  EXPECT_EQ(data.info.xMin, 2);
  EXPECT_EQ(data.info.xMax, 3);
  EXPECT_EQ(data.info.yMin, 1);
  EXPECT_EQ(data.info.yMax, 4);
  EXPECT_FALSE(TShapeFilePolygonData().Setup({{{nan, nan}, {nan, nan}, {nan, nan}}}));
}

TEST(ShapeFilePolygonDataTest, TheBoxReachesInfinitePoints) {
  const double infinity = std::numeric_limits<double>::infinity();
  const TShapeFilePolygonData data = Polygon({{{-infinity, 1}, {2, infinity}, {3, 4}}});
  EXPECT_EQ(data.info.xMin, -infinity);
  EXPECT_EQ(data.info.yMax, infinity);
}

TEST(ShapeFilePolygonDataTest, PointsAreCountedWithTheClosingPointOfEachRing) {
  EXPECT_EQ(TShapeFilePolygonData().GetPointsNumber(), 0u);
  EXPECT_EQ(Polygon({kSquare}).GetPointsNumber(), 5u);
  EXPECT_EQ(Polygon({kSquare, kTriangle}).GetPointsNumber(), 9u);
  EXPECT_EQ(Polygon({kSquare, {}, {}}).GetPointsNumber(), 7u);
}

TEST(ShapeFilePolygonDataTest, ResetFreesTheRings) {
  TShapeFilePolygonData data = Polygon({kSquare});
  data.Reset();
  ExpectReset(data);
}

TEST(ShapeFilePolygonDataTest, IsInvalidWithoutRings) {
  TShapeFilePolygonData data = Polygon({kSquare});
  data.rings.clear();
  EXPECT_FALSE(data);
}

TEST(ShapeFilePolygonDataTest, IsInvalidWithoutALength) {
  TShapeFilePolygonData data = Polygon({kSquare});
  data.info.fileLength = 0;
  EXPECT_FALSE(data);
}

TEST(ShapeFilePolygonDataTest, IsInvalidWithAnInvertedBox) {
  TShapeFilePolygonData wide = Polygon({kSquare});
  wide.info.xMin = 11;
  EXPECT_FALSE(wide);
  TShapeFilePolygonData high = Polygon({kSquare});
  high.info.yMin = 11;
  EXPECT_FALSE(high);
}

TEST(ShapeFilePolygonDataTest, OnlyPolygonAndPolygonZAreValid) {
  for (int type = -1; type < 40; ++type) {
    TShapeFilePolygonData data = Polygon({kSquare});
    data.info.shapeType = static_cast<TShapeFileType>(type);
    EXPECT_EQ(bool(data), type == 5 || type == 15) << type;
  }
}

TEST(ShapeFilePolygonDataTest, HeightsCountForPolygonZOnly) {
  TShapeFilePolygonData data = Polygon({kSquare});
  data.info.zMin = 1;
  data.info.mMin = 1;
  EXPECT_TRUE(data);
  data.info.shapeType = sftPolygonZ;
  EXPECT_FALSE(data);
  data.info.zMax = 1;
  EXPECT_TRUE(data);
}

TEST(ShapeFilePolygonDataTest, CopiesAreIndependent) {
  const TShapeFilePolygonData data = Polygon({kSquare});
  TShapeFilePolygonData copy = data;
  copy.rings[0][0].x = 99;
  copy.info.xMax = 99;
  EXPECT_EQ(data.rings[0][0].x, 0);
  EXPECT_EQ(data.info.xMax, 10);
}

TEST(ShapeFilePolygonDataTest, PrintsEveryRingAndPoint) {
  TShapeFilePolygonData data;
  data.rings = {{{0, 1.5}, {-2, 1e7}}, {}, {{3.0000004, 4.0000006}}};
  TDebugLines sink;
  data.DebugOutput();
  EXPECT_THAT(sink.lines, testing::ElementsAre(
                              "---+--- Ring -------", "            0.000000             1.500000",
                              "           -2.000000      10000000.000000", "---+--- Ring -------",
                              "---+--- Ring -------", "            3.000000             4.000001"));
}

TEST(ShapeFilePolygonDataTest, PrintsTheLongestNumbersWhole) {
  TShapeFilePolygonData data;
  data.rings = {{{-DBL_MAX, -DBL_MAX}}};
  TDebugLines sink;
  data.DebugOutput();
  const std::string number = std::to_string(-DBL_MAX);
  ASSERT_EQ(sink.lines.size(), 2u);
  EXPECT_EQ(sink.lines[1], number + " " + number);
}

}  // namespace
