#include "host/shapefile/ShapeRing.h"

#include <gtest/gtest.h>

#include "shapefile/ShapeFiles.h"

namespace {

using ravelin::MakeClockwise;
using shape_test::BytesOf;
using shape_test::FileOf;
using shape_test::kSquare;
using shape_test::TShapeFileRing;

TEST(ShapeRing, IsTurnedRoundItsFirstPointWhenItRunsAnticlockwise) {
  TShapeFileRing ring = {{0, 0}, {4, 0}, {4, 4}, {0, 4}};
  EXPECT_TRUE(MakeClockwise(&ring));
  EXPECT_EQ(BytesOf({ring}), BytesOf({{{0, 0}, {0, 4}, {4, 4}, {4, 0}}}));
}

TEST(ShapeRing, StaysAsItIsWhenItRunsClockwise) {
  TShapeFileRing ring = {{0, 0}, {0, 4}, {4, 4}, {4, 0}};
  EXPECT_FALSE(MakeClockwise(&ring));
  EXPECT_EQ(BytesOf({ring}), BytesOf({{{0, 0}, {0, 4}, {4, 4}, {4, 0}}}));
}

TEST(ShapeRing, StaysAsItIsWithoutAnArea) {
  TShapeFileRing ring = {{0, 0}, {1, 1}, {2, 2}};
  EXPECT_FALSE(MakeClockwise(&ring));
}

TEST(ShapeRing, IsTurnedWhenItIsSmallAndFarFromTheOrigin) {
  TShapeFileRing ring = {{5e8, 5e8}, {5e8 + 1e-3, 5e8}, {5e8 + 1e-3, 5e8 + 1e-3}};
  EXPECT_TRUE(MakeClockwise(&ring));
}

TEST(ShapeRing, BecomesAMainFile) {
  EXPECT_EQ(ravelin::ShapeMainFile(kSquare), FileOf({kSquare}).Bytes());
}

TEST(ShapeRing, BecomesNoFileWhenItsBoxIsNone) {
  EXPECT_EQ(ravelin::ShapeMainFile({}), std::nullopt);
}

}  // namespace
