#include "host/scene/SceneTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Kv/Stream.h"
#include "Kv/XIni.h"
#include "host/tree/TreeConversion.h"

namespace {

using namespace ravelin;
using SatCommonUtils::TStringTree;

SceneReport Report() {
  SceneReport report;
  report.folder = "in\tput";
  report.label = "in/x.lbl";
  report.dialect = "nasa";
  report.size = {4, 3};
  report.channels = {{6, "Red", "r.raw", "big", {12, 1, 9, 4.5, 2, 8}}};
  TileEntry tile = {};
  tile.right = 3;
  tile.bottom = 2;
  tile.srcLeft = 5;
  tile.bands = {{6, "t.raw", BytesOrder::boBigEndian}};
  report.tiles = {tile};
  report.degrees = SceneCorners{{-1.5, 4}, {2, 4}, {2, 3}, {1, 3}};
  return report;
}

const std::string kText =
    "(1,0)Scene\n"
    "(10,0)[1]Folder\tin\\tput\n"
    "(11,0)[1]Label\tin/x.lbl\n"
    "(12,0)[1]Dialect\tnasa\n"
    "(13,0)[1]Width\t4\n"
    "(14,0)[1]Height\t3\n"
    "(16,0)[1]Statistics of\tthe pixels of the quicklook\n"
    "\t(2,0)Band\n"
    "\t(20,0)[1]Key\t6\n"
    "\t(21,0)[1]Name\tRed\n"
    "\t(22,0)[1]File\tr.raw\n"
    "\t(23,0)[1]Byte order\tbig\n"
    "\t(30,0)[1]Samples that are not 0\t12\n"
    "\t(31,0)[1]Minimum\t1\n"
    "\t(32,0)[1]Maximum\t9\n"
    "\t(33,0)[1]Mean\t4.5\n"
    "\t(34,0)[1]2nd percentile\t2\n"
    "\t(35,0)[1]98th percentile\t8\n"
    "\t\n"
    "\t(3,0)Tile\n"
    "\t(40,0)[4]Left, top, right, bottom\t0\t0\t3\t2\n"
    "\t(41,0)[2]Source left, top\t5\t0\n"
    "\t(42,0)[1]Files\tt.raw\n"
    "\t\n"
    "\t(4,0)Corners, degrees\n"
    "\t(50,0)[2]Upper left\t-1.500000000\t4.000000000\n"
    "\t(51,0)[2]Upper right\t2.000000000\t4.000000000\n"
    "\t(52,0)[2]Lower right\t2.000000000\t3.000000000\n"
    "\t(53,0)[2]Lower left\t1.000000000\t3.000000000\n"
    "\t\n"
    "\n";

TEST(SceneTree, HoldsWhatWasFound) {
  TStringTree tree(kSceneTag, 0, nullptr, "Scene");
  FillSceneTree(Report(), &tree);
  EXPECT_EQ(SatCommonUtils::WriteTreeToString(tree), kText);
}

TEST(SceneTree, SaysWhenAllPixelsWereCounted) {
  SceneReport report = Report();
  report.allCounted = true;
  TStringTree tree(kSceneTag, 0, nullptr, "Scene");
  FillSceneTree(report, &tree);
  std::string counted;
  EXPECT_TRUE(tree.GetString(kCountedTag, 0, &counted));
  EXPECT_EQ(counted, "all pixels");
}

TEST(SceneTree, ReadsBackFromXml) {
  TStringTree tree(kSceneTag, 0, nullptr, "Scene");
  FillSceneTree(Report(), &tree);
  const var_a_legacy::var_a<TKvStream*> xml(new TKvMemoryStream(ravelin::TreeXml(tree, "scene")));
  TKvXIniReader reader(xml);
  const unsigned long section = reader.EnterSectionSE("scene");
  TStringTree copy(0, 0, nullptr, "");
  EXPECT_TRUE(copy.ReadFromXML(&reader, section, nullptr));
  EXPECT_EQ(SatCommonUtils::WriteTreeToString(copy), kText);
}

}  // namespace
