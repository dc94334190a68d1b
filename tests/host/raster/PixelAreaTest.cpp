#include "host/raster/PixelArea.h"

#include <gtest/gtest.h>

namespace {

using ravelin::Inside;
using ravelin::ParseArea;
using ravelin::ParseSize;

TEST(PixelArea, ReadsASize) {
  const auto size = ParseSize("1200x900");
  ASSERT_TRUE(size);
  EXPECT_EQ(size->width, 1200);
  EXPECT_EQ(size->height, 900);
}

TEST(PixelArea, TakesSidesFromOneToTheLargest) {
  EXPECT_TRUE(ParseSize("1x1"));
  EXPECT_TRUE(ParseSize("2147483647x2147483647"));
}

TEST(PixelArea, RefusesOtherSizes) {
  for (const char* text : {"", "x", "1", "1x", "x1", "0x1", "1x0", "-1x1", "1x1x1", "1 x1", "1,1",
                           "2147483648x1", "1x99999999999999999999", "1.0x1"}) {
    EXPECT_FALSE(ParseSize(text)) << text;
  }
}

TEST(PixelArea, ReadsAnArea) {
  const auto area = ParseArea("1,2,30,40");
  ASSERT_TRUE(area);
  EXPECT_EQ(area->x, 1);
  EXPECT_EQ(area->y, 2);
  EXPECT_EQ(area->width, 30);
  EXPECT_EQ(area->height, 40);
}

TEST(PixelArea, RefusesOtherAreas) {
  for (const char* text : {"", "1,2,3", "1,2,3,4,5", "-1,0,1,1", "0,-1,1,1", "0,0,0,1", "0,0,1,0",
                           "0,0,1,2147483648", "a,0,1,1", "0,0,1,1 ", "0;0;1;1"}) {
    EXPECT_FALSE(ParseArea(text)) << text;
  }
}

TEST(PixelArea, LiesInsideUpToTheLastPixel) {
  EXPECT_TRUE(Inside({0, 0, 8, 6}, {8, 6}));
  EXPECT_TRUE(Inside({7, 5, 1, 1}, {8, 6}));
}

TEST(PixelArea, DoesNotLieInsideOnePixelFurther) {
  EXPECT_FALSE(Inside({0, 0, 9, 6}, {8, 6}));
  EXPECT_FALSE(Inside({0, 0, 8, 7}, {8, 6}));
  EXPECT_FALSE(Inside({8, 0, 1, 1}, {8, 6}));
  EXPECT_FALSE(Inside({0, 6, 1, 1}, {8, 6}));
  EXPECT_FALSE(Inside({-1, 0, 1, 1}, {8, 6}));
}

}  // namespace
