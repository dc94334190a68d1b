#include "host/scene/Footprint.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/support/PngFile.h"
#include "support/TempFolder.h"

namespace {

using namespace ravelin;
using SatCommonUtils::TSatLog;
using SatCommonUtils::TShapeFilePolygonData;
using testing::ElementsAre;
using testing::HasSubstr;

const SceneCorners kDegrees = {{1, 4}, {2, 4}, {2, 3}, {1, 3}};
const SceneCorners kMetres = {{100, 400}, {200, 400}, {200, 300}, {100, 300}};
const Projection kProjected = {"a.wkt", "PROJCS[\"a\"]", "<PROJCS/>"};
const Projection kGeographic = {"a.wkt", "GEOGCS[\"a\"]", "<GEOGCS/>"};

SceneDescription SceneOf(std::optional<SceneCorners> degrees, std::optional<SceneCorners> metres,
                         const std::string& datum = "") {
  SceneDescription scene = {};
  scene.degrees = degrees;
  scene.metres = metres;
  scene.datum = datum;
  return scene;
}

TEST(Footprint, IsInTheProjectionWhenThatIsThere) {
  TSatLog log;
  const auto footprint = MakeFootprint(SceneOf(kDegrees, kMetres), kProjected, &log);
  ASSERT_TRUE(footprint);
  EXPECT_EQ(footprint->ring[0].x, 100);
  EXPECT_EQ(footprint->prj, kProjected.wkt);
}

TEST(Footprint, IsInDegreesWithoutAProjection) {
  TSatLog log;
  const auto footprint = MakeFootprint(SceneOf(kDegrees, kMetres, "WGS84"), std::nullopt, &log);
  ASSERT_TRUE(footprint);
  EXPECT_EQ(footprint->ring[0].x, 1);
  EXPECT_THAT(footprint->prj, HasSubstr("GEOGCS[\"WGS 84\""));
}

TEST(Footprint, IsInDegreesOfAGeographicSystem) {
  TSatLog log;
  const auto footprint = MakeFootprint(SceneOf(kDegrees, kMetres), kGeographic, &log);
  ASSERT_TRUE(footprint);
  EXPECT_EQ(footprint->ring[0].x, 1);
  EXPECT_EQ(footprint->prj, kGeographic.wkt);
}

TEST(Footprint, HasNoPrjForADatumThatIsNotKnown) {
  for (const char* datum : {"", "NAD27", "WGS72"}) {
    TSatLog log;
    const auto footprint = MakeFootprint(SceneOf(kDegrees, std::nullopt, datum), {}, &log);
    ASSERT_TRUE(footprint);
    EXPECT_EQ(footprint->prj, "");
    EXPECT_EQ(log.items.back().type, TSatLog::mtWarning);
  }
}

TEST(Footprint, HasNoPrjInAProjectionThatIsNotKnown) {
  TSatLog log;
  const auto footprint = MakeFootprint(SceneOf(std::nullopt, kMetres, "WGS84"), {}, &log);
  ASSERT_TRUE(footprint);
  EXPECT_EQ(footprint->ring[0].x, 100);
  EXPECT_EQ(footprint->prj, "");
}

TEST(Footprint, IsNoneWithoutCorners) {
  TSatLog log;
  EXPECT_FALSE(MakeFootprint(SceneOf(std::nullopt, std::nullopt), kProjected, &log));
  ASSERT_EQ(log.items.size(), 1u);
  EXPECT_EQ(log.items[0].message, "footprint: none, the label gives no corners\n");
}

TEST(Footprint, RunsClockwise) {
  TSatLog log;
  const SceneCorners southUp = {{1, 3}, {2, 3}, {2, 4}, {1, 4}};
  const auto footprint = MakeFootprint(SceneOf(southUp, std::nullopt), {}, &log);
  ASSERT_TRUE(footprint);
  std::vector<double> ys;
  for (const auto& point : footprint->ring) ys.push_back(point.y);
  EXPECT_THAT(ys, ElementsAre(3, 4, 4, 3));
}

TEST(Footprint, IsWrittenWithItsCompanions) {
  TempFolder folder;
  TSatLog log;
  SceneOutput output(folder.Path());
  AddFootprint(*MakeFootprint(SceneOf(kDegrees, kMetres), kProjected, &log), output);
  output.Commit();
  EXPECT_THAT(folder.Names(), ElementsAre("footprint.dbf", "footprint.png", "footprint.prj",
                                          "footprint.shp", "footprint.shx"));
  TShapeFilePolygonData polygon;
  ASSERT_TRUE(polygon.InitializeFromFile(folder / "footprint.shp"));
  ASSERT_EQ(polygon.rings.size(), 1u);
  EXPECT_EQ(polygon.rings[0].size(), 4u);
  EXPECT_EQ(polygon.info.xMax, 200);
  EXPECT_EQ(folder.Read("footprint.prj"), kProjected.wkt);
  EXPECT_EQ(ReadPng(folder / "footprint.png").channels, 1);
}

TEST(Footprint, IsWrittenWithoutPrjWhenThatIsNotKnown) {
  TempFolder folder;
  TSatLog log;
  SceneOutput output(folder.Path());
  AddFootprint(*MakeFootprint(SceneOf(kDegrees, std::nullopt), {}, &log), output);
  output.Commit();
  EXPECT_FALSE(folder.Has("footprint.prj"));
}

}  // namespace
