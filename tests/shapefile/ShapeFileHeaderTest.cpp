#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstring>
#include <string>

#include "SatCommonUtils/Shapefile.h"
#include "shapefile/DebugSink.h"
#include "shapefile/ShapeFiles.h"

namespace {

using namespace SatCommonUtils;
using namespace shape_test;

/// The header of these bytes, which may be those of a whole file.
TShapeFileHeader Header(const std::string& bytes) {
  TShapeFileHeader header;
  std::memcpy(&header, bytes.data(), sizeof header);
  return header;
}

TShapeFileHeader Header(const TModelFile& file) {
  return Header(file.Bytes());
}

TModelFile OfType(int type) {
  TModelFile file;
  file.type = type;
  return file;
}

TEST(ShapeFileHeaderTest, ANewHeaderHasAnEmptyBoxAndNoCodes) {
  const TShapeFileHeader header;
  const std::string expected = BigInt(-1) + std::string(24, '\0') + LittleInt(0) + LittleInt(-1) +
                               LittleDouble(DBL_MAX) + LittleDouble(DBL_MAX) +
                               LittleDouble(-DBL_MAX) + LittleDouble(-DBL_MAX) +
                               LittleDouble(DBL_MAX) + LittleDouble(-DBL_MAX) +
                               LittleDouble(DBL_MAX) + LittleDouble(-DBL_MAX);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(&header), sizeof header), expected);
}

TEST(ShapeFileHeaderTest, ANewHeaderIsInvalid) {
  EXPECT_FALSE(TShapeFileHeader());
}

TEST(ShapeFileHeaderTest, BigEndianFieldsStayInFileOrder) {
  const TShapeFileHeader header = Header(FileOf({kSquare}));
  EXPECT_EQ(header.fileCode, 0x0A270000);
  EXPECT_EQ(header.fileLength, 0x76000000);
  EXPECT_EQ(header.version, 1000);
}

TEST(ShapeFileHeaderTest, AHeaderOfEveryTypeIsValid) {
  for (const int type : {0, 1, 3, 5, 8, 11, 13, 15, 18, 21, 23, 25, 28, 31}) {
    EXPECT_TRUE(Header(OfType(type))) << type;
  }
}

TEST(ShapeFileHeaderTest, ATypeThatIsNoCodeIsInvalid) {
  for (const int type : {-1, 2, 4, 16, 30, 32, 1 << 24}) EXPECT_FALSE(Header(OfType(type))) << type;
}

TEST(ShapeFileHeaderTest, AnotherFileCodeIsInvalid) {
  TModelFile file;
  file.fileCode = 9995;
  EXPECT_FALSE(Header(file));
}

TEST(ShapeFileHeaderTest, AFileCodeInLittleEndianOrderIsInvalid) {
  std::string bytes = TModelFile().Bytes();
  bytes.replace(0, 4, "\x0A\x27\0\0", 4);
  EXPECT_FALSE(Header(bytes));
}

TEST(ShapeFileHeaderTest, AnotherVersionIsInvalid) {
  TModelFile file;
  file.version = 1001;
  EXPECT_FALSE(Header(file));
}

TEST(ShapeFileHeaderTest, ABoxWithoutExtentIsValid) {
  TModelFile file;
  file.xMin = file.xMax = file.yMin = file.yMax = 3;
  EXPECT_TRUE(Header(file));
}

TEST(ShapeFileHeaderTest, AnInvertedBoxIsInvalid) {
  TModelFile wide;
  wide.xMin = std::nextafter(10, 11);
  EXPECT_FALSE(Header(wide));
  TModelFile high;
  high.yMin = std::nextafter(10, 11);
  EXPECT_FALSE(Header(high));
}

TEST(ShapeFileHeaderTest, ABoxWithANaNIsInvalid) {
  for (double TModelFile::*edge :
       {&TModelFile::xMin, &TModelFile::xMax, &TModelFile::yMin, &TModelFile::yMax}) {
    TModelFile file;
    file.*edge = std::nan("");
    EXPECT_FALSE(Header(file));
  }
}

TEST(ShapeFileHeaderTest, HeightsCountForZTypesOnly) {
  for (const int type : {0, 1, 3, 5, 8, 11, 13, 15, 18, 21, 23, 25, 28, 31}) {
    for (const double zMax : {4.0, std::nan("")}) {
      TModelFile file = OfType(type);
      file.zMin = 5;
      file.zMax = zMax;
      EXPECT_EQ(bool(Header(file)), !IsZtype(IntToShapeFileType(type))) << type;
    }
  }
}

TEST(ShapeFileHeaderTest, MeasuresCountForMTypesOnly) {
  for (const int type : {0, 1, 3, 5, 8, 11, 13, 15, 18, 21, 23, 25, 28, 31}) {
    for (const double mMax : {4.0, std::nan("")}) {
      TModelFile file = OfType(type);
      file.mMin = 5;
      file.mMax = mMax;
      EXPECT_EQ(bool(Header(file)), !IsMtype(IntToShapeFileType(type))) << type;
    }
  }
}

TEST(ShapeFileHeaderTest, TheLengthIsNotLookedAt) {
  TModelFile file;
  file.lengthInWords = 0;
  EXPECT_TRUE(Header(file));
}

TEST(ShapeFileHeaderTest, PrintsEveryFieldOnALine) {
  TShapeFileHeader header;
  header.fileCode = 0x0A270000;
  header.unused1 = 0x01000000;
  header.unused2 = 0x02000000;
  header.unused3 = 0x03000000;
  header.unused4 = 0x04000000;
  header.unused5 = 0x05000000;
  header.fileLength = 0x76000000;
  header.version = 1000;
  header.shapeType = 5;
  header.xMin = -1.5;
  header.yMin = 0;
  header.xMax = 1e10;
  header.yMax = 1234567;
  header.zMin = -3;
  header.mMax = 8.25;
  TDebugLines sink;
  header.DebugOutput("title");
  EXPECT_THAT(
      sink.lines,
      testing::ElementsAre(
          "----- title -----", "FileCode 9994", "Unused1 1", "Unused2 2", "Unused3 3", "Unused4 4",
          "Unused5 5", "FileLength 236", "Version 1000", "ShapeType 5", "BoundingBox: Xmin -1.5",
          "BoundingBox: Ymin 0", "BoundingBox: Xmax 1e+10", "BoundingBox: Ymax 1.23457e+06",
          "BoundingBox: Zmin -3", "BoundingBox: Zmax -1.79769e+308",
          "BoundingBox: Mmin 1.79769e+308", "BoundingBox: Mmax 8.25", "^^^^^ title ^^^^^"));
}

}  // namespace
