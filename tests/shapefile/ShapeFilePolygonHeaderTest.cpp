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

TShapeFilePolygonHeader Header(const TModelFile& file) {
  TShapeFilePolygonHeader header;
  std::memcpy(&header, file.Bytes().data() + 100, sizeof header);
  return header;
}

TModelFile WithCounts(int parts, int points) {
  TModelFile file;
  file.numParts = parts;
  file.numPoints = points;
  return file;
}

TEST(ShapeFilePolygonHeaderTest, ANewHeaderHasAnEmptyBoxAndNoCounts) {
  const TShapeFilePolygonHeader header;
  const std::string expected = BigInt(0) + BigInt(0) + LittleInt(-1) + LittleDouble(DBL_MAX) +
                               LittleDouble(DBL_MAX) + LittleDouble(-DBL_MAX) +
                               LittleDouble(-DBL_MAX) + LittleInt(-1) + LittleInt(-1);
  EXPECT_EQ(std::string(reinterpret_cast<const char*>(&header), sizeof header), expected);
}

TEST(ShapeFilePolygonHeaderTest, ANewHeaderIsInvalid) {
  EXPECT_FALSE(TShapeFilePolygonHeader());
}

TEST(ShapeFilePolygonHeaderTest, BigEndianFieldsStayInFileOrder) {
  const TShapeFilePolygonHeader header = Header(FileOf({kSquare}));
  EXPECT_EQ(header.recordNumber, 0x01000000);
  EXPECT_EQ(header.contentLength, 0x40000000);
  EXPECT_EQ(header.numPoints, 5);
}

TEST(ShapeFilePolygonHeaderTest, OnlyPolygonAndPolygonZAreValid) {
  for (int type = -1; type < 40; ++type) {
    TModelFile file;
    file.recordType = type;
    EXPECT_EQ(bool(Header(file)), type == 5 || type == 15) << type;
  }
}

TEST(ShapeFilePolygonHeaderTest, AnInvertedBoxIsInvalid) {
  TModelFile wide;
  wide.xMin = 11;
  EXPECT_FALSE(Header(wide));
  TModelFile high;
  high.yMin = 11;
  EXPECT_FALSE(Header(high));
}

TEST(ShapeFilePolygonHeaderTest, ABoxWithANaNIsInvalid) {
  for (double TModelFile::*edge :
       {&TModelFile::xMin, &TModelFile::xMax, &TModelFile::yMin, &TModelFile::yMax}) {
    TModelFile file;
    file.*edge = std::nan("");
    EXPECT_FALSE(Header(file));
  }
}

TEST(ShapeFilePolygonHeaderTest, CountsMustNotBeNegative) {
  EXPECT_TRUE(Header(WithCounts(0, 0)));
  EXPECT_FALSE(Header(WithCounts(-1, 0)));
  EXPECT_FALSE(Header(WithCounts(-2, -1)));
}

TEST(ShapeFilePolygonHeaderTest, PointsMustBeAsManyAsParts) {
  EXPECT_TRUE(Header(WithCounts(3, 3)));
  EXPECT_FALSE(Header(WithCounts(3, 2)));
  EXPECT_FALSE(Header(WithCounts(0, -1)));
}

TEST(ShapeFilePolygonHeaderTest, RecordNumberAndContentLengthAreNotLookedAt) {
  TShapeFilePolygonHeader header = Header(FileOf({kSquare}));
  header.recordNumber = 0;
  header.contentLength = 0;
  EXPECT_TRUE(header);
}

TEST(ShapeFilePolygonHeaderTest, PrintsEveryFieldOnALine) {
  TModelFile file = FileOf({kSquare});
  file.xMin = -1.5;
  file.yMax = 20;
  TDebugLines sink;
  Header(file).DebugOutput("title");
  EXPECT_THAT(sink.lines,
              testing::ElementsAre("----- title -----", "RecordNumber 1", "ContentLength 128",
                                   "ShapeType 5", "BoundingBox: Xmin -1.5", "BoundingBox: Ymin 0",
                                   "BoundingBox: Xmax 10", "BoundingBox: Ymax 20", "NumParts 1",
                                   "NumPoints 5", "^^^^^ title ^^^^^"));
}

}  // namespace
