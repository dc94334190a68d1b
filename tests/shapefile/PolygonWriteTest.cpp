// What TShapeFilePolygonData::Write writes, to the letter.
#include <gtest/gtest.h>

#include <cfloat>
#include <stdexcept>
#include <string>
#include <vector>

#include "SatCommonUtils/Shapefile.h"
#include "kv/Growth.h"
#include "shapefile/ShapeFiles.h"
#include "shapefile/Streams.h"
#include "support/TempFolder.h"

namespace {

using namespace SatCommonUtils;
using namespace shape_test;

TShapeFilePolygonData Polygon(const TRings& rings) {
  TShapeFilePolygonData data;
  EXPECT_TRUE(data.Setup(rings));
  return data;
}

std::string Written(const TShapeFilePolygonData& data) {
  TKvMemoryStream stream;
  EXPECT_TRUE(data.Write(&stream));
  return stream.Bytes();
}

/// The bytes that hexadecimal digits stand for, blanks between them left out.
std::string Hex(const std::string& digits) {
  std::string bytes;
  std::string pair;
  for (const char c : digits) {
    if (c != ' ') pair += c;
    if (pair.size() < 2) continue;
    bytes += static_cast<char>(std::stoi(pair, nullptr, 16));
    pair.clear();
  }
  return bytes;
}

TShapeFileRing Circle(int points) {
  TShapeFileRing ring;
  for (int i = 0; i < points; ++i) ring.push_back({1.0 * i, 1.0 * i * (points - i)});
  return ring;
}

TEST(PolygonWriteTest, ASquareGivesTheFileThatTheFormatWants) {
  EXPECT_EQ(Written(Polygon({kSquare})), FileOf({kSquare}).Bytes());
}

TEST(PolygonWriteTest, ASquareHas236BytesAndSaysSo) {
  const std::string bytes = Written(Polygon({kSquare}));
  EXPECT_EQ(bytes.size(), 236u);
  EXPECT_EQ(bytes.substr(24, 4), BigInt(118));
  EXPECT_EQ(bytes.substr(104, 4), BigInt(64));
}

TEST(PolygonWriteTest, TwoRingsGiveTheseVeryBytes) {
  const TShapeFilePolygonData data =
      Polygon({{{0, 0}, {0, 4}, {4, 4}, {4, 0}}, {{1, 1}, {2, 1}, {2, 2}}});
  const std::string zero = "0000000000000000 ";
  const std::string one = "000000000000F03F ";
  const std::string two = "0000000000000040 ";
  const std::string four = "0000000000001040 ";
  EXPECT_EQ(Written(data),
            Hex("0000270A 00000000 00000000 00000000 00000000 00000000 00000098 "
                "E8030000 05000000 " +
                zero + zero + four + four + zero + zero + zero + zero +
                "00000001 00000062 05000000 " + zero + zero + four + four + "02000000 09000000 " +
                "00000000 04000000 " +  // the second ring begins at point 5: callers rely on the 4
                zero + zero + zero + four + four + four + four + zero + zero + zero +  //
                one + one + two + one + two + two + one + one));
}

TEST(PolygonWriteTest, PartIndicesFallShortByTheClosingPointsBefore) {
  const std::string bytes = Written(Polygon({kSquare, kTriangle, Circle(9), kTriangle}));
  std::string indices;
  for (const int index : {0, 4, 7, 16}) indices += LittleInt(index);
  EXPECT_EQ(bytes.substr(152, 16), indices);
}

TEST(PolygonWriteTest, TwoRingsReadBackAsTheIndicesSay) {
  TKvMemoryStream stream(Written(Polygon({kSquare, kTriangle})));
  TShapeFilePolygonData read;
  EXPECT_TRUE(read.Initialize(&stream));
  const TRings expected = {{kSquare[0], kSquare[1], kSquare[2]},
                           {kSquare[0], kTriangle[0], kTriangle[1], kTriangle[2]}};
  EXPECT_EQ(BytesOf(read.rings), BytesOf(expected));
}

TEST(PolygonWriteTest, OneRingReadsBackUnchanged) {
  const TShapeFilePolygonData data = Polygon({Circle(5000)});
  TKvMemoryStream stream(Written(data));
  TShapeFilePolygonData read;
  ASSERT_TRUE(read.Initialize(&stream));
  EXPECT_EQ(BytesOf(read.rings), BytesOf(data.rings));
  EXPECT_EQ(read.info.fileLength, data.info.fileLength);
}

TEST(PolygonWriteTest, TheBoxIsThatOfTheInfo) {
  TShapeFilePolygonData data = Polygon({kSquare});
  data.info.xMin = -1;
  data.info.yMin = -2;
  data.info.xMax = 30;
  data.info.yMax = 40;
  TModelFile file = FileOf({kSquare});
  file.xMin = -1;
  file.yMin = -2;
  file.xMax = 30;
  file.yMax = 40;
  EXPECT_EQ(Written(data), file.Bytes());
}

TEST(PolygonWriteTest, LengthsAndCountsAreThoseOfTheRings) {
  TShapeFilePolygonData data = Polygon({kTriangle});
  data.rings = {kSquare};
  data.info.xMin = data.info.yMin = 0;
  data.info.xMax = data.info.yMax = 10;
  data.info.fileLength = 1;
  EXPECT_EQ(Written(data), FileOf({kSquare}).Bytes());
}

TEST(PolygonWriteTest, APolygonZIsWrittenAsAPolygonWithoutHeights) {
  TShapeFilePolygonData data = Polygon({kSquare});
  data.info.shapeType = sftPolygonZ;
  data.info.zMin = data.info.mMin = 3;
  data.info.zMax = data.info.mMax = 4;
  EXPECT_EQ(Written(data), FileOf({kSquare}).Bytes());
}

TEST(PolygonWriteTest, ARingWithoutPointsIsOneDefaultPoint) {
  const std::string bytes = Written(Polygon({kSquare, {}, kTriangle}));
  ASSERT_EQ(bytes.size(), 152u + 3 * 4 + 10 * 16);
  EXPECT_EQ(bytes.substr(24, 4), BigInt(162));
  EXPECT_EQ(bytes.substr(144, 20),
            LittleInt(3) + LittleInt(10) + LittleInt(0) + LittleInt(4) + LittleInt(4));
  EXPECT_EQ(bytes.substr(164 + 5 * 16, 16), LittleDouble(DBL_MAX) + LittleDouble(DBL_MAX));
}

TEST(PolygonWriteTest, AnInvalidOneWritesNothing) {
  TLimitedStream stream;
  EXPECT_FALSE(TShapeFilePolygonData().Write(&stream));
  TShapeFilePolygonData data = Polygon({kSquare});
  data.info.shapeType = sftPolyline;
  EXPECT_FALSE(data.Write(&stream));
  EXPECT_EQ(stream.writes, 0);
}

TEST(PolygonWriteTest, ANullStreamGivesFalse) {
  EXPECT_FALSE(Polygon({kSquare}).Write(nullptr));
}

TEST(PolygonWriteTest, WritesFromWhereTheStreamStands) {
  TKvMemoryStream stream("before ");
  stream.SetPos(7);
  ASSERT_TRUE(Polygon({kSquare}).Write(&stream));
  EXPECT_EQ(stream.Bytes(), "before " + FileOf({kSquare}).Bytes());
}

TEST(PolygonWriteTest, AShortWriteAnywhereGivesFalse) {
  for (const TRings& rings : {TRings{kSquare}, TRings{kSquare, kTriangle, Circle(6000)}}) {
    const TShapeFilePolygonData data = Polygon(rings);
    const std::string whole = Written(data);
    const unsigned long step = whole.size() < 1000 ? 1 : whole.size() / 1000;
    for (unsigned long most = 0; most < whole.size(); most += step) {
      TLimitedStream stream;
      stream.most = most;
      ASSERT_FALSE(data.Write(&stream)) << most;
      ASSERT_EQ(stream.Bytes(), whole.substr(0, most));
    }
  }
}

TEST(PolygonWriteTest, NothingMoreIsWrittenAfterAShortWrite) {
  TLimitedStream stream;
  stream.most = 99;
  EXPECT_FALSE(Polygon({kSquare}).Write(&stream));
  EXPECT_EQ(stream.writes, 1);
  TLimitedStream second;
  second.most = 151;
  EXPECT_FALSE(Polygon({kSquare}).Write(&second));
  EXPECT_EQ(second.writes, 2);
}

TEST(PolygonWriteTest, WhatTheStreamThrowsPasses) {
  TLimitedStream stream;
  stream.most = 160;
  stream.throws = true;
  EXPECT_THROW(Polygon({kSquare}).Write(&stream), std::runtime_error);
}

TEST(PolygonWriteTest, TheHeadersAreAWriteEachAndTheRestFew) {
  TLimitedStream one;
  ASSERT_TRUE(Polygon({Circle(100000)}).Write(&one));
  EXPECT_LE(one.writes, 5);
  TLimitedStream many;
  ASSERT_TRUE(Polygon(TRings(20000, kTriangle)).Write(&many));
  EXPECT_LE(many.writes, 25);  // 1.36 MB
}

TEST(PolygonWriteTest, ManyRingsAreWrittenWhole) {
  TRings rings;
  for (int i = 0; i < 3000; ++i) rings.push_back(Circle(3 + i % 11));
  for (const int large : {4094, 4095, 4096, 4097, 20000}) {
    rings.push_back(Circle(large));
    rings.push_back(kTriangle);
  }
  std::string points;
  for (const TShapeFileRing& ring : rings) {
    for (const TShapeFilePoint& point : ring)
      points += LittleDouble(point.x) + LittleDouble(point.y);
    points += LittleDouble(ring[0].x) + LittleDouble(ring[0].y);
  }
  EXPECT_TRUE(Written(Polygon(rings)).substr(152 + 4 * rings.size()) == points);
}

TEST(PolygonWriteTest, AFileWrittenIsTheSame) {
  const TempFolder folder;
  ASSERT_TRUE(Polygon({kSquare}).WriteToFile(folder / "a.shp"));
  EXPECT_EQ(folder.Read("a.shp"), FileOf({kSquare}).Bytes());
}

TEST(PolygonWriteTest, AFileOnAFullDiskGivesFalse) {
  EXPECT_FALSE(Polygon({kSquare}).WriteToFile("/dev/full"));
}

TEST(PolygonWriteTest, TimeIsLinearInTheRings) {
  const auto write = [](unsigned long rings) {
    TShapeFilePolygonData data;
    data.Setup(TRings(rings, kTriangle));
    TKvMemoryStream stream;
    data.Write(&stream);
  };
  EXPECT_TRUE(kv_test::IsLinear(5000, write));
}

}  // namespace
