#include "host/scene/SceneSummary.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "host/scene/support/JsonSchema.h"

namespace {

using namespace ravelin;

nlohmann::json Schema() {
  std::ifstream file(RAVELIN_SOURCE_FOLDER "/docs/scene.schema.json");
  return nlohmann::json::parse(file);
}

SceneReport Report() {
  SceneReport report;
  report.folder = "in";
  report.output = "out";
  report.label = "in/x.lbl";
  report.dialect = "nasa";
  report.size = {4, 3};
  report.quicklook = {4, 3};
  report.channels = {{6, "Red", "r.raw", "big", {12, 1, 9, 4.5, 2, 8}}};
  report.degrees = SceneCorners{{1, 4}, {2, 4}, {2, 3}, {1, 3}};
  report.warnings = {"something"};
  report.files = {{"ravelin.log", 7}};
  return report;
}

TEST(SceneSummary, FitsItsSchema) {
  SceneReport failed;
  failed.folder = "in";
  failed.output = "out";
  failed.error = "in: no such folder";
  EXPECT_EQ(SchemaFault(SceneSummary({Report(), failed}), Schema()), "");
}

TEST(SceneSummary, WouldNotFitOtherwise) {
  for (const char* path : {"/scenes/0/size/width", "/scenes/0/done", "/scenes/0/bands/0/statistics",
                           "/scenes/0/files/0/bytes", "/scenes/0/cornersDegrees/upperLeft/0"}) {
    nlohmann::json summary = SceneSummary({Report()});
    summary.at(nlohmann::json::json_pointer(path)) = "a text";
    EXPECT_NE(SchemaFault(summary, Schema()), "") << path;
  }
  nlohmann::json summary = SceneSummary({Report()});
  summary["scenes"][0].erase("warnings");
  EXPECT_EQ(SchemaFault(summary, Schema()), "#/scenes/0 has no warnings");
  summary = SceneSummary({Report()});
  summary["scenes"][0]["more"] = 1;
  EXPECT_EQ(SchemaFault(summary, Schema()), "#/scenes/0 has a member more: more");
}

TEST(SceneSummary, TellsWhatIsNotKnownAsNull) {
  SceneReport report = Report();
  report.channels[0].file = "";
  report.degrees.reset();
  const nlohmann::json scene = SceneSummary({report})["scenes"][0];
  EXPECT_TRUE(scene["bands"][0]["file"].is_null());
  EXPECT_TRUE(scene["cornersDegrees"].is_null());
  EXPECT_TRUE(scene["error"].is_null());
  EXPECT_TRUE(scene["done"].get<bool>());
}

TEST(SceneSummary, CarriesNamesThatAreNotUtf8) {
  SceneReport report = Report();
  report.folder = "gr\xfcn";
  EXPECT_EQ(SceneSummary({report})["scenes"][0]["folder"], "gr\xc3\xbcn");
}

TEST(SceneSummaryText, EndsWithTheFiles) {
  EXPECT_EQ(SceneSummaryText(Report()),
            "in: 4 x 3 pixels, 1 band: Red\n  note: something\nout/ravelin.log\n");
}

TEST(SceneSummaryText, SaysNothingElseOfASceneThatFailed) {
  SceneReport report = Report();
  report.error = "in: something";
  EXPECT_EQ(SceneSummaryText(report), "  note: something\nout/ravelin.log\n");
}

TEST(SceneSummaryText, ShowsControlBytes) {
  SceneReport report = Report();
  report.folder = "in\x1b";
  EXPECT_THAT(SceneSummaryText(report), testing::StartsWith("in\\x1b: "));
}

}  // namespace
