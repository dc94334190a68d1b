#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstring>
#include <stdexcept>
#include <string>

#include "SatCommonUtils/Shapefile.h"
#include "shapefile/ShapeFiles.h"

namespace {

using namespace SatCommonUtils;
using shape_test::TModelFile;

TShapeFileHeader Header(const TModelFile& file) {
  TShapeFileHeader header;
  std::memcpy(&header, file.Bytes().data(), sizeof header);
  return header;
}

/// A file whose eight bounds differ.
TModelFile OfType(int type) {
  TModelFile file;
  file.type = type;
  file.lengthInWords = 118;
  file.xMin = 1;
  file.xMax = 2;
  file.yMin = 3;
  file.yMax = 4;
  file.zMin = 5;
  file.zMax = 6;
  file.mMin = 7;
  file.mMax = 8;
  return file;
}

void ExpectReset(double low, double high) {
  EXPECT_EQ(low, DBL_MAX);
  EXPECT_EQ(high, -DBL_MAX);
}

void ExpectAllReset(const TShapeFileHeaderInfo& info) {
  EXPECT_EQ(info.fileLength, 0u);
  EXPECT_EQ(info.shapeType, -1);
  ExpectReset(info.xMin, info.xMax);
  ExpectReset(info.yMin, info.yMax);
  ExpectReset(info.zMin, info.zMax);
  ExpectReset(info.mMin, info.mMax);
}

void ExpectBox(const TShapeFileHeaderInfo& info) {
  EXPECT_EQ(info.xMin, 1);
  EXPECT_EQ(info.xMax, 2);
  EXPECT_EQ(info.yMin, 3);
  EXPECT_EQ(info.yMax, 4);
}

TEST(ShapeFileHeaderInfoTest, ANewOneIsResetAndInvalid) {
  const TShapeFileHeaderInfo info;
  ExpectAllReset(info);
  EXPECT_FALSE(info);
}

TEST(ShapeFileHeaderInfoTest, TakesLengthTypeAndBoxOver) {
  TShapeFileHeaderInfo info;
  ASSERT_TRUE(info.Setup(Header(OfType(5))));
  EXPECT_TRUE(info);
  EXPECT_EQ(info.fileLength, 236u);
  EXPECT_EQ(info.shapeType, 5);
  ExpectBox(info);
}

TEST(ShapeFileHeaderInfoTest, HeightsAndMeasuresOfOtherThanZTypesStayReset) {
  for (const int type : {0, 1, 3, 5, 8, 31}) {
    TShapeFileHeaderInfo info;
    ASSERT_TRUE(info.Setup(Header(OfType(type)))) << type;
    ExpectReset(info.zMin, info.zMax);
    ExpectReset(info.mMin, info.mMax);
  }
}

TEST(ShapeFileHeaderInfoTest, TakesHeightsAndMeasuresOfZTypesOver) {
  for (const int type : {11, 13, 15, 18}) {
    TShapeFileHeaderInfo info;
    ASSERT_TRUE(info.Setup(Header(OfType(type)))) << type;
    ExpectBox(info);
    EXPECT_EQ(info.zMin, 5);
    EXPECT_EQ(info.zMax, 6);
    EXPECT_EQ(info.mMin, 7);
    EXPECT_EQ(info.mMax, 8);
  }
}

TEST(ShapeFileHeaderInfoTest, RefusesEveryMType) {
  for (const int type : {21, 23, 25, 28}) {
    TShapeFileHeaderInfo info;
    EXPECT_FALSE(info.Setup(Header(OfType(type)))) << type;
    EXPECT_FALSE(info);
    EXPECT_EQ(info.shapeType, type);
    ExpectBox(info);
    ExpectReset(info.mMin, info.mMax);
  }
}

TEST(ShapeFileHeaderInfoTest, RefusesALengthOfZero) {
  TModelFile file = OfType(5);
  file.lengthInWords = 0;
  TShapeFileHeaderInfo info;
  EXPECT_FALSE(info.Setup(Header(file)));
  EXPECT_FALSE(info);
}

TEST(ShapeFileHeaderInfoTest, CutsALengthFromFourGibibytesOnTo32Bits) {
  TModelFile file = OfType(5);
  file.lengthInWords = -1;
  TShapeFileHeaderInfo info;
  EXPECT_TRUE(info.Setup(Header(file)));
  EXPECT_EQ(info.fileLength, 0xFFFFFFFEu);
  file.lengthInWords = -2147483648;
  EXPECT_FALSE(info.Setup(Header(file)));
  EXPECT_EQ(info.fileLength, 0u);
}

TEST(ShapeFileHeaderInfoTest, AnInvalidHeaderResetsIt) {
  TShapeFileHeaderInfo info(Header(OfType(15)));
  EXPECT_FALSE(info.Setup(TShapeFileHeader()));
  ExpectAllReset(info);
}

TEST(ShapeFileHeaderInfoTest, ResetForgetsEverything) {
  TShapeFileHeaderInfo info(Header(OfType(15)));
  info.Reset();
  ExpectAllReset(info);
}

TEST(ShapeFileHeaderInfoTest, SetupForgetsWhatWasThere) {
  TShapeFileHeaderInfo info(Header(OfType(15)));
  ASSERT_TRUE(info.Setup(Header(OfType(5))));
  ExpectReset(info.zMin, info.zMax);
  ExpectReset(info.mMin, info.mMax);
}

TEST(ShapeFileHeaderInfoTest, IsInvalidWithoutALength) {
  TShapeFileHeaderInfo info(Header(OfType(5)));
  info.fileLength = 0;
  EXPECT_FALSE(info);
}

TEST(ShapeFileHeaderInfoTest, IsInvalidWithoutAType) {
  TShapeFileHeaderInfo info(Header(OfType(5)));
  info.shapeType = sftInvalid;
  EXPECT_FALSE(info);
}

TEST(ShapeFileHeaderInfoTest, IsInvalidWithAnInvertedBox) {
  TShapeFileHeaderInfo info(Header(OfType(5)));
  info.xMax = 0;
  EXPECT_FALSE(info);
  info = Header(OfType(5));
  info.yMax = 0;
  EXPECT_FALSE(info);
}

TEST(ShapeFileHeaderInfoTest, IsInvalidWithANaN) {
  const auto isValid = [](int type, double TShapeFileHeaderInfo::*bound) {
    TShapeFileHeaderInfo info(Header(OfType(15)));
    info.shapeType = static_cast<TShapeFileType>(type);
    info.*bound = std::nan("");
    return bool(info);
  };
  using Info = TShapeFileHeaderInfo;
  for (const auto edge : {&Info::xMin, &Info::xMax, &Info::yMin, &Info::yMax}) {
    EXPECT_FALSE(isValid(5, edge));
  }
  EXPECT_FALSE(isValid(15, &Info::zMin));
  EXPECT_FALSE(isValid(15, &Info::zMax));
  EXPECT_FALSE(isValid(25, &Info::mMin));
  EXPECT_FALSE(isValid(25, &Info::mMax));
}

TEST(ShapeFileHeaderInfoTest, HeightsCountForZTypesOnly) {
  TShapeFileHeaderInfo info(Header(OfType(15)));
  info.zMax = 0;
  EXPECT_FALSE(info);
  info.shapeType = sftPolygon;
  EXPECT_TRUE(info);
}

TEST(ShapeFileHeaderInfoTest, MeasuresCountForMTypesOnly) {
  TShapeFileHeaderInfo info(Header(OfType(15)));
  info.mMax = 0;
  EXPECT_TRUE(info);
  info.shapeType = sftPolygonM;
  EXPECT_FALSE(info);
  info.mMax = 8;
  EXPECT_TRUE(info);
}

TEST(ShapeFileHeaderInfoTest, TheConstructorThrowsWhereSetupFails) {
  try {
    const TShapeFileHeaderInfo info{TShapeFileHeader()};
    FAIL() << "nothing was thrown";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(),
                 "TShapeFileHeaderInfo::TShapeFileHeaderInfo(const TShapeFileHeader& src)");
  }
}

}  // namespace
