// Polygons exchanged with shapelib, point for point.
#include <gtest/gtest.h>
#include <shapefil.h>

#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "SatCommonUtils/Shapefile.h"
#include "shapefile/ShapeFiles.h"
#include "support/TempFolder.h"

namespace {

using namespace SatCommonUtils;
using namespace shape_test;

using TFile = std::unique_ptr<SHPInfo, decltype(&SHPClose)>;
using TObject = std::unique_ptr<SHPObject, decltype(&SHPDestroyObject)>;

/// Has shapelib write the rings, closed, as one record each list of rings.
void WriteByShapelib(const std::string& path, int type, const std::vector<TRings>& records) {
  const TFile file(SHPCreate(path.c_str(), type), &SHPClose);
  if (file == nullptr) throw std::runtime_error("shapelib cannot make " + path);
  for (const TRings& rings : records) {
    std::vector<int> parts;
    std::vector<double> x, y, z, m;
    const TModelFile points = FileOf(rings);
    for (const TShapeFilePoint& point : points.points) {
      x.push_back(point.x);
      y.push_back(point.y);
      z.push_back(1000 + point.x);
      m.push_back(-point.y);
    }
    parts = points.parts;
    const TObject object(
        SHPCreateObject(type, -1, static_cast<int>(parts.size()), parts.data(), nullptr,
                        static_cast<int>(x.size()), x.data(), y.data(), z.data(), m.data()),
        &SHPDestroyObject);
    if (SHPWriteObject(file.get(), -1, object.get()) < 0) throw std::runtime_error("not written");
  }
}

void ExpectReadBack(int type, const TRings& rings) {
  const TempFolder folder;
  const std::string path = folder / "a.shp";
  WriteByShapelib(path, type, {rings});
  TShapeFilePolygonData data;
  ASSERT_TRUE(data.InitializeFromFile(path));
  EXPECT_EQ(data.info.shapeType, type);
  EXPECT_TRUE(BytesOf(data.rings) == BytesOf(rings));
  EXPECT_EQ(CheckShapeFile(path), type);
}

TRings ManyRings(unsigned long count) {
  std::mt19937 random(22);
  std::uniform_real_distribution<double> coordinate(-180, 180);
  TRings rings(count);
  for (TShapeFileRing& ring : rings) {
    const unsigned long points = 3 + random() % 30;
    for (unsigned long i = 0; i < points; ++i) {
      const double x = coordinate(random);
      ring.push_back({x, coordinate(random)});
    }
  }
  return rings;
}

TEST(ShapelibTest, APolygonOfOneRingIsReadBack) {
  ExpectReadBack(SHPT_POLYGON, {kSquare});
}

TEST(ShapelibTest, APolygonWithAHoleIsReadBack) {
  ExpectReadBack(SHPT_POLYGON, {kSquare, kTriangle});
}

TEST(ShapelibTest, APolygonZIsReadBackWithoutItsHeights) {
  ExpectReadBack(SHPT_POLYGONZ, {kSquare});
  ExpectReadBack(SHPT_POLYGONZ, {kSquare, kTriangle});
}

TEST(ShapelibTest, ManyPartsAreReadBack) {
  ExpectReadBack(SHPT_POLYGON, ManyRings(1000));
  ExpectReadBack(SHPT_POLYGONZ, ManyRings(1000));
}

TEST(ShapelibTest, ManyPointsAreReadBack) {
  TRings rings(1);
  for (int i = 0; i < 100000; ++i) rings[0].push_back({0.1 * i, 0.7 * i * i});
  ExpectReadBack(SHPT_POLYGON, rings);
}

TEST(ShapelibTest, OfSeveralRecordsTheFirstIsRead) {
  const TempFolder folder;
  const std::string path = folder / "a.shp";
  WriteByShapelib(path, SHPT_POLYGON, {{kTriangle}, {kSquare}, {kSquare, kTriangle}});
  TShapeFilePolygonData data;
  ASSERT_TRUE(data.InitializeFromFile(path));
  EXPECT_EQ(BytesOf(data.rings), BytesOf({kTriangle}));
}

TEST(ShapelibTest, OtherTypesAreRefused) {
  for (const int type : {SHPT_ARC, SHPT_ARCZ, SHPT_ARCM, SHPT_POLYGONM, SHPT_MULTIPOINT}) {
    const TempFolder folder;
    const std::string path = folder / "a.shp";
    WriteByShapelib(path, type, {{kSquare}});
    EXPECT_FALSE(TShapeFilePolygonData().InitializeFromFile(path)) << type;
    EXPECT_EQ(CheckShapeFile(path), type);
  }
}

TEST(ShapelibTest, AFileWithoutRecordsIsRefused) {
  const TempFolder folder;
  WriteByShapelib(folder / "a.shp", SHPT_POLYGON, {});
  EXPECT_FALSE(TShapeFilePolygonData().InitializeFromFile(folder / "a.shp"));
}

/// The record that shapelib reads in a file that the module wrote.
class WrittenByTheModuleTest : public testing::Test {
 protected:
  const SHPObject& Record(const TRings& rings) {
    TShapeFilePolygonData data;
    EXPECT_TRUE(data.Setup(rings));
    const std::string path = folder_ / "a.shp";
    EXPECT_TRUE(data.WriteToFile(path));
    SAHooks hooks;
    SASetupDefaultHooks(&hooks);
    EXPECT_TRUE(SHPRestoreSHX(path.c_str(), "rb", &hooks));
    file_.reset(SHPOpen(path.c_str(), "rb"));
    EXPECT_NE(file_, nullptr);
    int count = 0;
    int type = 0;
    SHPGetInfo(file_.get(), &count, &type, nullptr, nullptr);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(type, SHPT_POLYGON);
    object_.reset(SHPReadObject(file_.get(), 0));
    EXPECT_NE(object_, nullptr);
    return *object_;
  }

 private:
  const TempFolder folder_;
  TFile file_{nullptr, &SHPClose};
  TObject object_{nullptr, &SHPDestroyObject};
};

TEST_F(WrittenByTheModuleTest, ARingIsReadByShapelib) {
  const TRings rings = ManyRings(1);
  const SHPObject& record = Record(rings);
  ASSERT_EQ(record.nParts, 1);
  ASSERT_EQ(record.nVertices, static_cast<int>(rings[0].size()) + 1);
  TShapeFileRing read;
  for (int i = 0; i + 1 < record.nVertices; ++i) read.push_back({record.padfX[i], record.padfY[i]});
  EXPECT_EQ(BytesOf({read}), BytesOf(rings));
  EXPECT_EQ(record.padfX[record.nVertices - 1], record.padfX[0]);
  EXPECT_EQ(record.padfY[record.nVertices - 1], record.padfY[0]);
}

TEST_F(WrittenByTheModuleTest, TheBoxIsReadByShapelib) {
  const SHPObject& record = Record({{{-7, 3}, {5, -2.5}, {1, 1}}});
  EXPECT_EQ(record.dfXMin, -7);
  EXPECT_EQ(record.dfXMax, 5);
  EXPECT_EQ(record.dfYMin, -2.5);
  EXPECT_EQ(record.dfYMax, 3);
}

TEST_F(WrittenByTheModuleTest, TheIndicesOfSeveralRingsAreReadAsTheyFallShort) {
  const SHPObject& record = Record({kSquare, kTriangle});
  ASSERT_EQ(record.nParts, 2);
  EXPECT_EQ(record.panPartStart[0], 0);
  EXPECT_EQ(record.panPartStart[1], 4);
  EXPECT_EQ(record.nVertices, 9);
}

}  // namespace
