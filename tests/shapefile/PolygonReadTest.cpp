// What TShapeFilePolygonData::Initialize makes of files.
#include <gtest/gtest.h>

#include <cmath>
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

struct TRead {
  bool good;
  TShapeFilePolygonData data;
};

TRead Read(const std::string& bytes) {
  TRead read;
  TKvMemoryStream stream(bytes);
  read.good = read.data.Initialize(&stream);
  return read;
}

void ExpectRings(const TModelFile& file, const TRings& rings) {
  const TRead read = Read(file.Bytes());
  EXPECT_TRUE(read.good);
  EXPECT_TRUE(read.data);
  EXPECT_EQ(BytesOf(read.data.rings), BytesOf(rings));
}

/// False, and these are the rings before the failure.
void ExpectFailure(const TModelFile& file, const TRings& rings = {}) {
  const TRead read = Read(file.Bytes());
  EXPECT_FALSE(read.good);
  EXPECT_EQ(BytesOf(read.data.rings), BytesOf(rings));
}

TModelFile TwoRings(const std::vector<int>& parts) {
  TModelFile file = FileOf({kSquare, kTriangle});
  file.parts = parts;
  return file;
}

TEST(PolygonReadTest, AClosedRingLosesItsClosingPoint) {
  ExpectRings(FileOf({kSquare}), {kSquare});
}

TEST(PolygonReadTest, EveryPartIsARing) {
  ExpectRings(FileOf({kSquare, kTriangle, kSquare}), {kSquare, kTriangle, kSquare});
}

TEST(PolygonReadTest, TheInfoIsThatOfTheHeader) {
  TModelFile file = FileOf({kSquare});
  file.type = 15;
  file.zMin = 5;
  file.zMax = 6;
  file.mMin = 7;
  file.mMax = 8;
  const TShapeFilePolygonData data = Read(file.Bytes()).data;
  EXPECT_EQ(data.info.fileLength, 236u);
  EXPECT_EQ(data.info.shapeType, 15);
  EXPECT_EQ(data.info.xMax, 10);
  EXPECT_EQ(data.info.zMax, 6);
  EXPECT_EQ(data.info.mMax, 8);
}

TEST(PolygonReadTest, HeightsAndMeasuresOfAPolygonZAreLeftOut) {
  TModelFile file = FileOf({kSquare, kTriangle});
  file.type = file.recordType = 15;
  file.tail = std::string(2 * (16 + 9 * 8), 'z');
  ExpectRings(file, {kSquare, kTriangle});
}

TEST(PolygonReadTest, FileAndRecordMayBeOfDifferentPolygonTypes) {
  TModelFile file = FileOf({kSquare});
  file.type = 15;
  ExpectRings(file, {kSquare});
  file.type = 5;
  file.recordType = 15;
  ExpectRings(file, {kSquare});
}

TEST(PolygonReadTest, OnlyTheFirstRecordIsRead) {
  TModelFile file = FileOf({kSquare});
  file.tail = BigInt(2) + BigInt(0) + "anything";
  ExpectRings(file, {kSquare});
}

TEST(PolygonReadTest, RecordNumberAndContentLengthAreNotLookedAt) {
  std::string bytes = FileOf({kSquare}).Bytes();
  bytes.replace(100, 8, "whatever");
  EXPECT_TRUE(Read(bytes).good);
}

TEST(PolygonReadTest, TheFileIsReadFromItsBeginning) {
  TKvMemoryStream stream(FileOf({kSquare}).Bytes());
  stream.SetPos(50);
  EXPECT_TRUE(TShapeFilePolygonData().Initialize(&stream));
}

TEST(PolygonReadTest, AStreamWithoutPositionsIsRefused) {
  TLimitedStream stream(FileOf({kSquare}).Bytes());
  stream.canSetPos = false;
  TShapeFilePolygonData data;
  EXPECT_FALSE(data.Initialize(&stream));
  EXPECT_EQ(stream.reads, 0);
}

TEST(PolygonReadTest, ANullStreamResets) {
  TRead read = Read(FileOf({kSquare}).Bytes());
  EXPECT_FALSE(read.data.Initialize(nullptr));
  EXPECT_FALSE(read.data);
  EXPECT_TRUE(read.data.rings.empty());
  EXPECT_EQ(read.data.info.shapeType, 5);
}

TEST(PolygonReadTest, WhatWasThereIsForgotten) {
  TRead read = Read(FileOf({kSquare, kTriangle}).Bytes());
  TKvMemoryStream stream(FileOf({kTriangle}).Bytes());
  ASSERT_TRUE(read.data.Initialize(&stream));
  EXPECT_EQ(BytesOf(read.data.rings), BytesOf({kTriangle}));
  TKvMemoryStream empty;
  EXPECT_FALSE(read.data.Initialize(&empty));
  EXPECT_TRUE(read.data.rings.empty());
}

TEST(PolygonReadTest, FilesOfEveryOtherTypeAreRefused) {
  for (int type = -1; type < 40; ++type) {
    TModelFile file = FileOf({kSquare});
    file.type = type;
    EXPECT_EQ(Read(file.Bytes()).good, type == 5 || type == 15) << type;
  }
}

TEST(PolygonReadTest, RecordsOfEveryOtherTypeAreRefused) {
  for (int type = -1; type < 40; ++type) {
    TModelFile file = FileOf({kSquare});
    file.recordType = type;
    EXPECT_EQ(Read(file.Bytes()).good, type == 5 || type == 15) << type;
  }
}

TEST(PolygonReadTest, APolygonMIsRefused) {
  TModelFile file = FileOf({kSquare});
  file.type = file.recordType = 25;
  ExpectFailure(file);
}

TEST(PolygonReadTest, AStoredLengthOtherThanTheSizeIsRefused) {
  for (const int words : {0, 117, 119, 118 + (1 << 30)}) {
    TModelFile file = FileOf({kSquare});
    file.lengthInWords = words;
    ExpectFailure(file);
  }
  EXPECT_FALSE(Read(FileOf({kSquare}).Bytes() + "tail").good);
}

TEST(PolygonReadTest, AnInvertedBoxOfTheRecordIsRefused) {
  std::string bytes = FileOf({kSquare}).Bytes();
  bytes.replace(112, 8, LittleDouble(11));
  EXPECT_FALSE(Read(bytes).good);
}

TEST(PolygonReadTest, AFileWithoutARecordIsRefused) {
  std::string bytes = FileOf({kSquare}).Bytes().substr(0, 100);
  bytes.replace(24, 4, BigInt(50));
  EXPECT_FALSE(Read(bytes).good);
}

TEST(PolygonReadTest, WithoutPartsAllPointsAreOneRing) {
  TModelFile file = FileOf({kSquare});
  file.parts.clear();
  ExpectRings(file, {kSquare});
}

TEST(PolygonReadTest, WithOnePartAllPointsAreOneRingWhateverItsIndexSays) {
  for (const int index : {0, 1, 4, 5, 1000, -1, -2147483647 - 1, 2147483647}) {
    TModelFile file = FileOf({kSquare});
    file.parts = {index};
    ExpectRings(file, {kSquare});
  }
}

TEST(PolygonReadTest, TheFirstRingBeginsAtTheFirstPointWhateverItsIndexSays) {
  for (const int index : {1, 100, -1}) ExpectRings(TwoRings({index, 5}), {kSquare, kTriangle});
}

TEST(PolygonReadTest, AnIndexIsWhereTheRingBeforeEnds) {
  ExpectRings(TwoRings({0, 4}), {{kSquare[0], kSquare[1], kSquare[2]},
                                 {kSquare[0], kTriangle[0], kTriangle[1], kTriangle[2]}});
}

TEST(PolygonReadTest, AnIndexThatDescendsGivesFalseAndLeavesTheRingsBefore) {
  TModelFile file = FileOf({kSquare, kTriangle, kSquare});
  file.parts = {0, 5, 4};
  ExpectFailure(file, {kSquare});
}

TEST(PolygonReadTest, ANegativeIndexGivesFalse) {
  ExpectFailure(TwoRings({0, -1}));
  ExpectFailure(TwoRings({0, -2147483647 - 1}));
}

TEST(PolygonReadTest, AnIndexBeyondThePointsGivesFalse) {
  ExpectFailure(TwoRings({0, 10}));
  ExpectFailure(TwoRings({0, 2147483647}));
  TModelFile file = FileOf({kSquare, kTriangle, kSquare});
  file.parts = {0, 5, 15};
  ExpectFailure(file, {kSquare});
}

TEST(PolygonReadTest, AnIndexBehindTheLastPointLeavesNothingForItsRing) {
  ExpectFailure(TwoRings({0, 9}), {{kSquare[0], kSquare[1], kSquare[2], kSquare[3], kSquare[0],
                                    kTriangle[0], kTriangle[1], kTriangle[2]}});
}

TEST(PolygonReadTest, AFailureBehindTheHeaderLeavesTheHeader) {
  TModelFile file = FileOf({kSquare});
  file.lengthInWords = 117;
  const TShapeFilePolygonData wrongLength = Read(file.Bytes()).data;
  EXPECT_EQ(wrongLength.info.fileLength, 234u);
  EXPECT_EQ(wrongLength.info.xMax, 10);
  EXPECT_FALSE(wrongLength);
  const TRead badRing = Read(TwoRings({0, 6}).Bytes());
  EXPECT_FALSE(badRing.good);
  EXPECT_TRUE(badRing.data);  // a header and a ring
}

TEST(PolygonReadTest, ARefusedHeaderLeavesAnEmptyOneOfTypePolygon) {
  TModelFile file = FileOf({kSquare});
  file.type = 25;
  const TShapeFilePolygonData data = Read(file.Bytes()).data;
  EXPECT_EQ(data.info.shapeType, 5);
  EXPECT_EQ(data.info.fileLength, 0u);
}

TEST(PolygonReadTest, ThreePointsAndAClosingPointAreARing) {
  ExpectRings(FileOf({kTriangle}), {kTriangle});
}

TEST(PolygonReadTest, TwoPointsAndAClosingPointAreNone) {
  ExpectFailure(FileOf({{{1, 1}, {2, 2}}}));
  ExpectFailure(FileOf({kSquare, {{1, 1}, {2, 2}}, kTriangle}), {kSquare});
}

TEST(PolygonReadTest, APolygonWithoutPointsIsRefused) {
  ExpectFailure(TModelFile());
}

TEST(PolygonReadTest, WhetherTheLastPointClosesTheRingIsNotLookedAt) {
  TModelFile file = FileOf({kSquare});
  file.points.back() = {77, 78};
  ExpectRings(file, {kSquare});
}

TEST(PolygonReadTest, AnyCoordinatesAreTaken) {
  const double nan = std::nan("");
  const TShapeFileRing odd = {{nan, INFINITY}, {-INFINITY, nan}, {1e308, -0.0}};
  ExpectRings(FileOf({odd}), {odd});
}

TEST(PolygonReadTest, RingsOfAllLengthsAreReadWhole) {
  TRings rings;
  for (int size = 3; size < 300; ++size) rings.emplace_back(size, TShapeFilePoint{1.0 * size, 2});
  for (const unsigned long size : {2046UL, 2047UL, 2048UL, 4095UL, 10000UL}) {
    rings.emplace_back(size, TShapeFilePoint{3, 1.0 * static_cast<double>(size)});
    rings.push_back(kTriangle);
  }
  const TRead read = Read(FileOf(rings).Bytes());
  EXPECT_TRUE(read.good);
  EXPECT_TRUE(BytesOf(read.data.rings) == BytesOf(rings));
}

TEST(PolygonReadTest, CountsThatTheStreamCannotHoldAreRefusedBeforeMoreIsRead) {
  for (const int points : {6, 1000, 2147483647}) {
    for (const int parts : {0, 1, 2, points}) {
      TModelFile file = FileOf({kSquare});
      file.numParts = parts;
      file.numPoints = points;
      TLimitedStream stream(file.Bytes());
      EXPECT_FALSE(TShapeFilePolygonData().Initialize(&stream));
      EXPECT_EQ(stream.reads, 2);
    }
  }
}

TEST(PolygonReadTest, ReadsAreFew) {
  TLimitedStream one(FileOf({TShapeFileRing(100000, {1, 2})}).Bytes());
  ASSERT_TRUE(TShapeFilePolygonData().Initialize(&one));
  EXPECT_LE(one.reads, 60);  // 1.6 MB
  TLimitedStream many(FileOf(TRings(20000, kTriangle)).Bytes());
  ASSERT_TRUE(TShapeFilePolygonData().Initialize(&many));
  EXPECT_LE(many.reads, 60);  // 1.36 MB
}

TEST(PolygonReadTest, AShortReadAnywhereGivesFalseAndNoRings) {
  const std::string bytes = FileOf({kSquare, kTriangle, kSquare}).Bytes();
  for (unsigned long most = 0; most < bytes.size(); ++most) {
    TLimitedStream stream(bytes);
    stream.most = most;
    TShapeFilePolygonData data;
    ASSERT_FALSE(data.Initialize(&stream)) << most;
    ASSERT_TRUE(data.rings.empty()) << most;
  }
}

TEST(PolygonReadTest, AShortReadOfTheLastPointOfALongRingGivesFalse) {
  for (const unsigned long size : {8191UL, 8192UL, 8193UL, 16384UL}) {
    const std::string bytes = FileOf({TShapeFileRing(size, {1, 2})}).Bytes();
    TLimitedStream stream(bytes);
    stream.most = bytes.size() - 1;
    TShapeFilePolygonData data;
    EXPECT_FALSE(data.Initialize(&stream)) << size;
    EXPECT_TRUE(data.rings.empty()) << size;
  }
}

TEST(PolygonReadTest, AShortReadBehindABadRingLeavesNoRings) {
  TModelFile file = FileOf({kSquare, kTriangle, kSquare});
  file.parts = {0, 5, 4};
  TLimitedStream stream(file.Bytes());
  stream.most = file.Bytes().size() - 1;
  TShapeFilePolygonData data;
  EXPECT_FALSE(data.Initialize(&stream));
  EXPECT_TRUE(data.rings.empty());
}

TEST(PolygonReadTest, WhatTheStreamThrowsPassesAnywhere) {
  const std::string bytes = FileOf({kSquare, kTriangle}).Bytes();
  for (unsigned long most = 0; most < bytes.size(); ++most) {
    TLimitedStream stream(bytes);
    stream.most = most;
    stream.throws = true;
    TShapeFilePolygonData data;
    ASSERT_THROW(data.Initialize(&stream), std::runtime_error) << most;
    ASSERT_FALSE(data) << most;
  }
}

TEST(PolygonReadTest, AFileIsReadLikeAStream) {
  const TempFolder folder;
  TShapeFilePolygonData data;
  EXPECT_TRUE(data.InitializeFromFile(folder.Write("a.shp", FileOf({kSquare, kTriangle}).Bytes())));
  EXPECT_EQ(BytesOf(data.rings), BytesOf({kSquare, kTriangle}));
}

TEST(PolygonReadTest, AFileThatFailsLeavesNoRings) {
  const TempFolder folder;
  TShapeFilePolygonData data;
  const TModelFile file = FileOf({kSquare, {{1, 1}, {2, 2}}});
  EXPECT_FALSE(data.InitializeFromFile(folder.Write("a.shp", file.Bytes())));
  EXPECT_FALSE(data);
  EXPECT_TRUE(data.rings.empty());
  EXPECT_EQ(data.info.fileLength, 0u);
}

TEST(PolygonReadTest, TimeIsLinearInTheRings) {
  const auto read = [](unsigned long rings) {
    static std::string bytes;
    static unsigned long size = 0;
    if (size != rings) {
      bytes = FileOf(TRings(rings, kTriangle)).Bytes();
      size = rings;
    }
    TKvMemoryStream stream(bytes);
    TShapeFilePolygonData().Initialize(&stream);
  };
  EXPECT_TRUE(kv_test::IsLinear(2000, read));
}

TEST(PolygonReadTest, TimeIsLinearInPartsThatAreBad) {
  const auto read = [](unsigned long parts) {
    TModelFile file = FileOf({kTriangle});
    file.parts.assign(parts, 4);
    file.points.assign(parts, {1, 1});
    TKvMemoryStream stream(file.Bytes());
    TShapeFilePolygonData().Initialize(&stream);
  };
  EXPECT_TRUE(kv_test::IsLinear(2000, read));
}

}  // namespace
