#include "host/shapefile/ShapeRefusal.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>
#include <vector>

#include "SatCommonUtils/Shapefile.h"
#include "shapefile/ShapeFiles.h"

namespace {

using namespace shape_test;
using SatCommonUtils::TShapeFilePolygonData;

std::string Refusal(const std::string& bytes) {
  TKvMemoryStream stream(bytes);
  TShapeFilePolygonData data;
  EXPECT_FALSE(data.Initialize(&stream));
  return ravelin::ShapeRefusal(stream);
}

std::string Refusal(const TModelFile& file) {
  return Refusal(file.Bytes());
}

TModelFile TwoRings(const std::vector<int>& parts) {
  TModelFile file = FileOf({kSquare, kTriangle});
  file.parts = parts;
  return file;
}

TEST(ShapeRefusal, TellsOfAFileThatIsShorterThanAHeader) {
  EXPECT_EQ(Refusal(""), "no shapefile: it has 0 bytes, the header alone has 100");
  EXPECT_EQ(Refusal(FileOf({kSquare}).Bytes().substr(0, 99)),
            "no shapefile: it has 99 bytes, the header alone has 100");
}

TEST(ShapeRefusal, TellsOfAnotherFileCode) {
  TModelFile file = FileOf({kSquare});
  file.fileCode = -5;
  EXPECT_EQ(Refusal(file), "no shapefile: the file code is -5, not 9994");
}

TEST(ShapeRefusal, TellsOfAFileCodeInTheWrongByteOrder) {
  TModelFile file = FileOf({kSquare});
  file.fileCode = 0x0A270000;
  EXPECT_EQ(Refusal(file), "the file code 9994 is stored in the wrong byte order");
}

TEST(ShapeRefusal, TellsOfAnotherVersion) {
  TModelFile file = FileOf({kSquare});
  file.version = 1001;
  EXPECT_EQ(Refusal(file), "version 1001 is not known, only 1000 is");
}

TEST(ShapeRefusal, TellsOfATypeThatIsNone) {
  TModelFile file = FileOf({kSquare});
  file.type = 2;
  EXPECT_EQ(Refusal(file), "shape type 2 is not known");
}

TEST(ShapeRefusal, TellsOfEveryTypeThatIsNotRead) {
  const std::pair<int, const char*> types[] = {
      {0, "null shape"},  {1, "point"},       {3, "polyline"},      {8, "multipoint"},
      {11, "point Z"},    {13, "polyline Z"}, {18, "multipoint Z"}, {21, "point M"},
      {23, "polyline M"}, {25, "polygon M"},  {28, "multipoint M"}, {31, "multipatch"}};
  for (const auto& [type, name] : types) {
    TModelFile file = FileOf({kSquare});
    file.type = type;
    EXPECT_EQ(Refusal(file), std::string(name) + " files are not read");
  }
}

TEST(ShapeRefusal, TellsOfABoxThatIsNone) {
  TModelFile file = FileOf({kSquare});
  file.yMax = -1;
  EXPECT_EQ(Refusal(file), "the box of the header ends before it begins, or is no number");
  std::string bytes = FileOf({kSquare}).Bytes();
  bytes.replace(112, 8, LittleDouble(11));
  EXPECT_EQ(Refusal(bytes), "the box of the first record ends before it begins, or is no number");
}

TEST(ShapeRefusal, TellsOfHeightsThatAreNone) {
  TModelFile file = FileOf({kSquare});
  file.type = 15;
  file.zMin = 1;
  EXPECT_EQ(Refusal(file), "the heights of the header end before they begin, or are no numbers");
}

TEST(ShapeRefusal, TellsOfAnotherLength) {
  EXPECT_EQ(Refusal(FileOf({kSquare}).Bytes() + "tail"),
            "stored length 236 but the file has 240 bytes");
  TModelFile file = FileOf({kSquare});
  file.lengthInWords = 0;
  EXPECT_EQ(Refusal(file), "stored length 0 but the file has 236 bytes");
}

std::string Cut(unsigned long size) {
  std::string bytes = FileOf({kSquare}).Bytes().substr(0, size);
  return bytes.replace(24, 4, BigInt(static_cast<int>(size / 2)));
}

TEST(ShapeRefusal, TellsOfARecordThatIsMissingOrCut) {
  EXPECT_EQ(Refusal(Cut(100)), "there is no record");
  EXPECT_EQ(Refusal(Cut(150)),
            "the first record is cut short: the file has 150 bytes, a polygon's begin takes 152");
}

TEST(ShapeRefusal, TellsOfARecordOfAnotherType) {
  TModelFile file = FileOf({kSquare});
  file.recordType = 0;
  EXPECT_EQ(Refusal(file), "the first record is of shape type 0 (null shape), not a polygon");
  file.recordType = 2;
  EXPECT_EQ(Refusal(file), "the first record is of shape type 2 (unknown), not a polygon");
}

TEST(ShapeRefusal, TellsOfCountsThatCannotBe) {
  TModelFile file = FileOf({kSquare});
  file.numParts = -1;
  EXPECT_EQ(Refusal(file), "the first record counts 5 points in -1 parts");
  file.numParts = 6;
  EXPECT_EQ(Refusal(file), "the first record counts 5 points in 6 parts, fewer points than parts");
  file.numParts = 1;
  file.numPoints = 2147483647;
  EXPECT_EQ(Refusal(file),
            "the first record counts 2147483647 points in 1 parts, which takes 34359738508 bytes, "
            "but the file has 236");
}

TEST(ShapeRefusal, TellsOfIndicesThatCannotBe) {
  EXPECT_EQ(Refusal(TwoRings({0, -7})), "the start index of ring 2 is -7");
  EXPECT_EQ(Refusal(TwoRings({0, 10})), "the start index of ring 2 is 10, beyond the 9 points");
  TModelFile file = FileOf({kSquare, kTriangle, kSquare});
  file.parts = {0, 5, 4};
  EXPECT_EQ(Refusal(file), "the start index of ring 3 is 4, before ring 2 begins");
}

TEST(ShapeRefusal, TellsOfARingThatIsTooShort) {
  EXPECT_EQ(Refusal(TwoRings({0, 3})),
            "ring 1 has 3 points, a ring needs 4 with its closing point");
  EXPECT_EQ(Refusal(TwoRings({0, 6})),
            "ring 2 has 3 points, a ring needs 4 with its closing point");
  EXPECT_EQ(Refusal(TModelFile()), "ring 1 has 0 points, a ring needs 4 with its closing point");
}

TEST(ShapeRefusal, HasAReasonForWhateverTheModuleRefuses) {
  std::mt19937 random(23);
  TModelFile polygonZ = FileOf({kSquare, kTriangle});
  polygonZ.type = 15;
  const std::string files[] = {FileOf({kSquare, kTriangle, kSquare}).Bytes(), polygonZ.Bytes()};
  unsigned long refused = 0;
  for (int run = 0; run < 20000; ++run) {
    std::string bytes = files[random() % 2];
    for (unsigned long i = 0; i < 1 + random() % 2; ++i) {
      bytes[random() % 172] = static_cast<char>(random());
    }
    TKvMemoryStream stream(bytes);
    if (TShapeFilePolygonData().Initialize(&stream)) continue;
    ++refused;
    ASSERT_NE(ravelin::ShapeRefusal(stream), "cannot be read to its end") << run;
  }
  EXPECT_GT(refused, 1000u);
}

}  // namespace
