// Shapefiles while allocations fail, beside what ShapeFileSafetyTest.cpp has.
#include <gtest/gtest.h>

#include <string>

#include "Kv/Services.h"
#include "SatCommonUtils/Shapefile.h"
#include "shapefile/ShapeFiles.h"
#include "support/EveryAllocation.h"
#include "support/TempFolder.h"

namespace {

using namespace SatCommonUtils;
using namespace shape_test;
using ravelin_test::GivesEverywhere;
using ravelin_test::ThrowsEverywhere;

const std::vector<TShapeFileRing> kRings = {{{0, 0}, {0, 1}, {1, 1}}, {{2, 2}, {2, 3}, {3, 3}}};

TEST(ShapeFileMemoryTest, PolygonsAreSetUpReadAndWritten) {
  GivesEverywhere(
      "Setup", [] { return TShapeFilePolygonData().Setup(kRings); }, false);
  TShapeFilePolygonData polygon;
  ASSERT_TRUE(polygon.Setup({kRings.front()}));
  GivesEverywhere(
      "Write",
      [&] {
        TKvMemoryStream stream;
        return polygon.Write(&stream);
      },
      false);
  const TempFolder folder;
  const std::string path = folder / "a-name-that-is-too-long-for-the-string-itself.shp";
  GivesEverywhere(
      "WriteToFile", [&] { return polygon.WriteToFile(path); }, false);
  GivesEverywhere(
      "InitializeFromFile",
      [&] {
        TShapeFilePolygonData data;
        return data.InitializeFromFile(path);
      },
      false);
  GivesEverywhere(
      "InitializeFromFile of the header", [&] { return TShapeFileData().InitializeFromFile(path); },
      false);
  GivesEverywhere(
      "CheckShapeFile", [&] { return CheckShapeFile(path); }, sftInvalid);
  TKvFileStream stream(TKvPath(path), kvOpenRead, kvShareAll);
  GivesEverywhere(
      "Initialize",
      [&] {
        stream.SetPos(0);
        TShapeFilePolygonData data;
        return data.Initialize(&stream) ? data.rings.size() : 0;
      },
      0u);
}

TEST(ShapeFileMemoryTest, WhatIsPrintedThrows) {
  TShapeFilePolygonData polygon;
  ASSERT_TRUE(polygon.Setup(kRings));
  const std::string title(100, 't');
  unsigned long printed = 0;
  const TKvDebugSink former = KvSetDebugSink([&](const std::string&) { ++printed; });
  const auto prints = [&](const char* name, const auto& print) {
    ThrowsEverywhere(name, [&] {
      printed = 0;
      print();
      return printed;
    });
  };
  prints("header", [&] { TShapeFileHeader().DebugOutput(title); });
  prints("polygon header", [&] { TShapeFilePolygonHeader().DebugOutput(title); });
  prints("points", [&] { polygon.DebugOutput(); });
  KvSetDebugSink(former);
}

TEST(ShapeFileMemoryTest, AHeaderThatIsRefusedThrowsItsReasonOrBadAlloc) {
  for (unsigned long successes = 0;; ++successes) {
    bool refused = false;
    try {
      const ravelin_test::FailingNew failing(successes);
      const TShapeFileHeaderInfo info{TShapeFileHeader()};
    } catch (const std::bad_alloc&) {
      continue;
    } catch (const std::runtime_error&) {
      refused = true;
    }
    EXPECT_TRUE(refused);
    break;
  }
}

TEST(ShapeFileMemoryTest, ACopyThrows) {
  TShapeFilePolygonData polygon;
  ASSERT_TRUE(polygon.Setup(kRings));
  ThrowsEverywhere("copy", [&] { return TShapeFilePolygonData(polygon).rings.size(); });
}

}  // namespace
