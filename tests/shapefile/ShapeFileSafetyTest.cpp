// Files that are cut, changed or random, and allocations that fail: compared with the plain reader
// where there is anything to compare.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "SatCommonUtils/Shapefile.h"
#include "shapefile/ShapeFiles.h"
#include "support/FailingNew.h"
#include "support/TempFolder.h"

namespace {

using namespace SatCommonUtils;
using namespace shape_test;
using ravelin_test::FailingNew;

testing::AssertionResult ReadsAsTheModel(const std::string& bytes) {
  const TModelResult expected = ReadByModel(bytes);
  TKvMemoryStream stream(bytes);
  TShapeFilePolygonData data;
  const bool good = data.Initialize(&stream);
  if (good != expected.good) return testing::AssertionFailure() << "it gave " << good;
  if (BytesOf(data.rings) != BytesOf(expected.rings)) {
    return testing::AssertionFailure() << "the rings differ";
  }
  if (good && !data) return testing::AssertionFailure() << "read, but not valid";
  return testing::AssertionSuccess();
}

TModelFile PolygonZ() {
  TModelFile file = FileOf({kSquare, kTriangle});
  file.type = file.recordType = 15;
  file.zMin = -1;
  file.zMax = 1;
  file.tail = std::string(2 * (16 + 9 * 8), '\1');
  return file;
}

const TModelFile kFiles[] = {FileOf({kSquare}), FileOf({kSquare, kTriangle, kSquare}), PolygonZ()};

TEST(ShapeFileSafetyTest, AFileCutAnywhereGivesFalse) {
  for (const TModelFile& file : kFiles) {
    const std::string bytes = file.Bytes();
    ASSERT_TRUE(ReadsAsTheModel(bytes));
    for (unsigned long size = 0; size < bytes.size(); ++size) {
      TKvMemoryStream stream(bytes.substr(0, size));
      TShapeFilePolygonData data;
      ASSERT_FALSE(data.Initialize(&stream)) << size;
      ASSERT_TRUE(data.rings.empty()) << size;
    }
  }
}

TEST(ShapeFileSafetyTest, AFileCutAnywhereWithAStoredLengthToMatchIsReadAsTheModelSays) {
  for (const TModelFile& file : kFiles) {
    const std::string bytes = file.Bytes();
    for (unsigned long size = 28; size < bytes.size(); ++size) {
      std::string cut = bytes.substr(0, size);
      cut.replace(24, 4, BigInt(static_cast<int>(size / 2)));
      ASSERT_TRUE(ReadsAsTheModel(cut)) << size;
    }
  }
}

TEST(ShapeFileSafetyTest, EveryByteOfTheFirst156MayHaveEveryValue) {
  for (const TModelFile& file : kFiles) {
    const std::string bytes = file.Bytes();
    for (unsigned long at = 0; at < 156; ++at) {
      for (int value = 0; value < 256; ++value) {
        std::string changed = bytes;
        changed[at] = static_cast<char>(value);
        ASSERT_TRUE(ReadsAsTheModel(changed)) << "byte " << at << " is " << value;
      }
    }
  }
}

TEST(ShapeFileSafetyTest, EveryByteMayBeInverted) {
  for (const TModelFile& file : kFiles) {
    const std::string bytes = file.Bytes();
    for (unsigned long at = 0; at < bytes.size(); ++at) {
      std::string changed = bytes;
      changed[at] = static_cast<char>(~changed[at]);
      ASSERT_TRUE(ReadsAsTheModel(changed)) << "byte " << at;
    }
  }
}

TEST(ShapeFileSafetyTest, RandomPolygonsAreReadAsTheModelSays) {
  std::mt19937 random(20);
  unsigned long good = 0;
  for (int run = 0; run < 20000; ++run) {
    TModelFile file;
    const int points = static_cast<int>(random() % 40);
    for (int i = 0; i < points; ++i)
      file.points.push_back({1.0 * i, static_cast<double>(random() % 100)});
    const int parts = static_cast<int>(random() % 5);
    int index = 0;
    for (int i = 0; i < parts; ++i) {
      file.parts.push_back(random() % 20 == 0 ? static_cast<int>(random() % 50) - 5 : index);
      index += 3 + static_cast<int>(random() % 10);
    }
    if (random() % 10 == 0) file.numPoints = points + static_cast<int>(random() % 5) - 2;
    if (random() % 10 == 0) file.numParts = parts + static_cast<int>(random() % 5) - 2;
    ASSERT_TRUE(ReadsAsTheModel(file.Bytes())) << run;
    if (ReadByModel(file.Bytes()).good) ++good;
  }
  EXPECT_GT(good, 1000u);
}

TEST(ShapeFileSafetyTest, RandomBytesBehindAGoodHeaderAreReadAsTheModelSays) {
  std::mt19937 random(21);
  for (int run = 0; run < 20000; ++run) {
    std::string bytes = FileOf({kSquare, kTriangle}).Bytes();
    const unsigned long changes = 1 + random() % 4;
    for (unsigned long i = 0; i < changes; ++i) {
      bytes[100 + random() % (bytes.size() - 100)] = static_cast<char>(random());
    }
    ASSERT_TRUE(ReadsAsTheModel(bytes)) << run;
  }
}

TEST(ShapeFileSafetyTest, ReadingWithoutMemoryGivesFalse) {
  TKvMemoryStream stream(FileOf({kSquare, kTriangle, TShapeFileRing(5000, {1, 2})}).Bytes());
  for (unsigned long allocations = 0;; ++allocations) {
    TShapeFilePolygonData data;
    bool good = false;
    {
      const FailingNew failing(allocations);
      good = data.Initialize(&stream);
    }
    ASSERT_EQ(data.rings.size(), good ? 3u : 0u);
    if (good) {
      EXPECT_GT(allocations, 4u);
      return;
    }
  }
}

TEST(ShapeFileSafetyTest, ReadingAFileWithoutMemoryGivesFalseAndResets) {
  const TempFolder folder;
  const std::string path = folder.Write("a.shp", FileOf({kSquare, kTriangle}).Bytes());
  for (unsigned long allocations = 0;; ++allocations) {
    TShapeFilePolygonData data;
    bool good = false;
    {
      const FailingNew failing(allocations);
      good = data.InitializeFromFile(path);
    }
    ASSERT_EQ(bool(data), good);
    if (good) {
      EXPECT_GT(allocations, 4u);
      return;
    }
  }
}

TEST(ShapeFileSafetyTest, SetupWithoutMemoryGivesFalseAndResets) {
  const TRings rings = {kSquare, kTriangle};
  for (unsigned long allocations = 0;; ++allocations) {
    TShapeFilePolygonData data;
    bool good = false;
    {
      const FailingNew failing(allocations);
      good = data.Setup(rings);
    }
    ASSERT_EQ(bool(data), good);
    ASSERT_EQ(data.rings.size(), good ? 2u : 0u);
    if (good) {
      EXPECT_EQ(allocations, 3u);
      return;
    }
  }
}

TEST(ShapeFileSafetyTest, WritingWithoutMemoryGivesFalse) {
  TShapeFilePolygonData data;
  ASSERT_TRUE(data.Setup({kSquare, kTriangle}));
  for (unsigned long allocations = 0;; ++allocations) {
    TKvMemoryStream stream;
    bool good = false;
    {
      const FailingNew failing(allocations);
      good = data.Write(&stream);
    }
    if (good) {
      EXPECT_EQ(stream.Bytes().size(), 304u);
      EXPECT_GT(allocations, 0u);
      return;
    }
    ASSERT_LT(stream.Bytes().size(), 304u);
  }
}

TEST(ShapeFileSafetyTest, WritingAFileWithoutMemoryGivesFalse) {
  const TempFolder folder;
  const std::string path = folder / "a.shp";
  TShapeFilePolygonData data;
  ASSERT_TRUE(data.Setup({kSquare}));
  for (unsigned long allocations = 0;; ++allocations) {
    bool good = false;
    {
      const FailingNew failing(allocations);
      good = data.WriteToFile(path);
    }
    if (good) {
      EXPECT_EQ(folder.Read("a.shp"), FileOf({kSquare}).Bytes());
      EXPECT_GT(allocations, 0u);
      return;
    }
  }
}

TEST(ShapeFileSafetyTest, CheckingAFileWithoutMemoryGivesNoType) {
  const TempFolder folder;
  const std::string path = folder.Write("a.shp", FileOf({kSquare}).Bytes());
  for (unsigned long allocations = 0;; ++allocations) {
    TShapeFileType type = sftInvalid;
    {
      const FailingNew failing(allocations);
      type = CheckShapeFile(path);
    }
    if (type == sftPolygon) {
      EXPECT_GT(allocations, 0u);
      return;
    }
    ASSERT_EQ(type, sftInvalid);
  }
}

}  // namespace
