#include <gtest/gtest.h>

#include <limits>
#include <set>

#include "SatCommonUtils/Shapefile.h"

namespace {

using namespace SatCommonUtils;

const std::set<int> kCodes = {0, 1, 3, 5, 8, 11, 13, 15, 18, 21, 23, 25, 28, 31};

TEST(ShapeFileTypeTest, TheFourteenCodesAreTypes) {
  for (const int code : kCodes) EXPECT_EQ(IntToShapeFileType(code), code);
}

TEST(ShapeFileTypeTest, EveryOtherNumberIsInvalid) {
  for (int code = -1000; code <= 1000; ++code) {
    if (kCodes.count(code) == 0) {
      EXPECT_EQ(IntToShapeFileType(code), -1) << code;
    }
  }
  EXPECT_EQ(IntToShapeFileType(std::numeric_limits<int>::min()), -1);
  EXPECT_EQ(IntToShapeFileType(std::numeric_limits<int>::max()), -1);
}

TEST(ShapeFileTypeTest, FourTypesAreZTypes) {
  const std::set<int> types = {11, 13, 15, 18};
  for (const int code : kCodes) {
    EXPECT_EQ(IsZtype(IntToShapeFileType(code)), types.count(code) == 1) << code;
  }
  EXPECT_FALSE(IsZtype(sftInvalid));
}

TEST(ShapeFileTypeTest, FourTypesAreMTypes) {
  const std::set<int> types = {21, 23, 25, 28};
  for (const int code : kCodes) {
    EXPECT_EQ(IsMtype(IntToShapeFileType(code)), types.count(code) == 1) << code;
  }
  EXPECT_FALSE(IsMtype(sftInvalid));
}

}  // namespace
