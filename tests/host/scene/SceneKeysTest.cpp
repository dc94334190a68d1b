#include "host/scene/SceneKeys.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <set>

#include "host/scene/support/Scopes.h"
#include "host/support/ErrorOf.h"

namespace {

using namespace ravelin;
using testing::ElementsAre;
using testing::HasSubstr;

TEST(SceneKeys, HaveEachNameOnce) {
  std::set<std::string> names;
  for (const SceneKey& key : SceneKeys()) {
    EXPECT_TRUE(names.insert(key.name).second) << key.name;
    for (const char* other : key.others) EXPECT_TRUE(names.insert(other).second) << other;
  }
}

TEST(SceneKeys, StandInTheDocument) {
  std::ifstream file(RAVELIN_SOURCE_FOLDER "/docs/scene.md");
  const std::string document(std::istreambuf_iterator<char>(file), {});
  for (const SceneKey& key : SceneKeys()) {
    EXPECT_THAT(document, HasSubstr("`" + std::string(key.name) + "`"));
    for (const char* other : key.others) EXPECT_THAT(document, HasSubstr("`" + std::string(other)));
  }
}

TEST(StandardName, KnowsOtherNamesInAnyCase) {
  EXPECT_EQ(StandardName("LINES"), "LINES");
  EXPECT_EQ(StandardName("Reflective_Lines"), "LINES");
  EXPECT_EQ(StandardName("PRODUCT_LR_CORNER_MAPY"), "CORNER_LR_PROJECTION_Y_PRODUCT");
  EXPECT_EQ(StandardName("LINE"), "");
}

TEST(StandardName, KnowsBandsByTheirNumbers) {
  EXPECT_EQ(StandardName("FILE_NAME_BAND_07"), "FILE_NAME_BAND_7");
  EXPECT_EQ(StandardName("BAND10_FILE_NAME"), "FILE_NAME_BAND_10");
  EXPECT_EQ(StandardName("DATA_TYPE_BAND_2"), "DATA_TYPE_BAND_2");
  EXPECT_EQ(StandardName("FILE_NAME_BAND_ST_B10"), "");
  EXPECT_EQ(StandardName("FILE_NAME_BAND_-1"), "");
  EXPECT_EQ(StandardName("FILE_NAME_BAND_"), "");
  EXPECT_EQ(StandardName("BAND_FILE_NAME"), "");
}

TEST(KeyMappings, ReadKeyAndName) {
  const KeyMapping mapping = ParseKeyMapping("Image/numRows=lines");
  EXPECT_EQ(mapping.key, "IMAGE/NUMROWS");
  EXPECT_EQ(mapping.name, "LINES");
}

TEST(KeyMappings, RefuseNamesThatAreNotInTheTable) {
  EXPECT_EQ(ErrorOf<std::invalid_argument>([] { ParseKeyMapping("ROWS"); }),
            "'ROWS' is not of the form KEY=NAME");
  EXPECT_EQ(ErrorOf<std::invalid_argument>([] { ParseKeyMapping("=LINES"); }),
            "'=LINES' is not of the form KEY=NAME");
  EXPECT_EQ(ErrorOf<std::invalid_argument>([] { ParseKeyMapping("ROWS=LINE"); }),
            "'LINE' is no name of the table in docs/scene.md");
  EXPECT_EQ(ErrorOf<std::invalid_argument>([] { ParseKeyMapping("ROWS=REFLECTIVE_LINES"); }),
            "'REFLECTIVE_LINES' is no name of the table in docs/scene.md: give LINES");
}

TEST(LabelScopes, KeepBandsAndTilesApart) {
  const SortedLabel label(
      "LINES = 1\nGROUP = BAND_2\nLINES = 2\nGROUP = INNER\nLINE_SAMPLES = 3\nEND_GROUP = INNER\n"
      "END_GROUP = BAND_2\nGROUP = TILE_LAYOUT\nTILE_ROWS = 1\nGROUP = TILE_A\nLEFT = 0\n"
      "LINES = 4\nEND_GROUP = TILE_A\nEND_GROUP = TILE_LAYOUT\n");
  EXPECT_EQ(label->main.Text("LINES", ""), "1");
  EXPECT_EQ(label->main.Path(), "");
  ASSERT_EQ(label->bands.size(), 1u);
  EXPECT_EQ(label->bands[0].Path(), "BAND_2");
  EXPECT_EQ(label->bands[0].Text("LINES", ""), "2");
  EXPECT_EQ(label->bands[0].Text("LINE_SAMPLES", ""), "3");
  ASSERT_EQ(label->tiles.size(), 1u);
  EXPECT_EQ(label->tiles[0].Path(), "TILE_LAYOUT/TILE_A");
  EXPECT_EQ(label->tiles[0].Text("LINES", ""), "4");
}

TEST(LabelScopes, GiveNothingForWhatIsNotThere) {
  const SortedLabel label("A = 1\n");
  EXPECT_EQ(label->main.Text("LINES", ""), std::nullopt);
  EXPECT_EQ(label->main.Number("LINES", ""), std::nullopt);
}

TEST(LabelScopes, TakeAValueThatStandsThereTwiceAlike) {
  const SortedLabel label("LINES = 5\nGROUP = A\nREFLECTIVE_LINES = \" 5 \"\nEND_GROUP = A\n");
  EXPECT_EQ(label->main.Text("LINES", ""), "5");
}

TEST(LabelScopes, ChooseNothingFromDifferentValues) {
  const SortedLabel label("LINES = 5\nGROUP = A\nREFLECTIVE_LINES = 6\nEND_GROUP = A\n");
  EXPECT_EQ(ErrorOf([&] { label->main.Text("LINES", "--size WxH"); }),
            "x.lbl: gives LINES several times: LINES = 5, A/REFLECTIVE_LINES = 6; choose by --size "
            "WxH");
}

TEST(LabelScopes, NameFivePlacesOfMany) {
  std::string text;
  for (int i = 1; i <= 9; ++i) text += "LINES = " + std::to_string(i) + "\n";
  const SortedLabel label(text);
  const std::string error = ErrorOf([&] { label->main.Text("LINES", "--size WxH"); });
  EXPECT_THAT(error, HasSubstr("LINES = 5;"));
}

TEST(LabelScopes, LeaveOutTheInputOfALevel2Product) {
  const std::string input = "GROUP = LEVEL1_RECORD\nLINES = 6\nEND_GROUP = LEVEL1_RECORD\n";
  const std::string record =
      "GROUP = LEVEL2_PROCESSING_RECORD\nA = 1\nEND_GROUP = LEVEL2_PROCESSING_RECORD\n";
  EXPECT_EQ(SortedLabel("LINES = 5\n" + record + input)->main.Text("LINES", ""), "5");
  EXPECT_NE(ErrorOf([&] { SortedLabel("LINES = 5\n" + input)->main.Text("LINES", ""); }), "");
}

TEST(LabelScopes, PreferAMappedValue) {
  const std::string text =
      "LINES = 5\nGROUP = A\nROWS = 6\nEND_GROUP = A\nGROUP = B\nROWS = 7\n"
      "END_GROUP = B\n";
  EXPECT_EQ(SortedLabel(text, {{"A/ROWS", "LINES"}})->main.Text("LINES", ""), "6");
  EXPECT_EQ(SortedLabel(text, {{"B/ROWS", "LINES"}})->main.Text("LINES", ""), "7");
  EXPECT_THAT(ErrorOf([&] {
                SortedLabel(text, {{"ROWS", "LINES"}})->main.Text("LINES", "x");
              }),
              HasSubstr("A/ROWS = 6, B/ROWS = 7"));
}

TEST(LabelScopes, ResolveAConflictByTheMappingOfOnePlace) {
  const std::string text =
      "GROUP = A\nLINES = 6\nEND_GROUP = A\nGROUP = B\nLINES = 7\n"
      "END_GROUP = B\n";
  EXPECT_EQ(SortedLabel(text, {{"A/LINES", "LINES"}})->main.Text("LINES", ""), "6");
}

TEST(LabelScopes, MapWholeNamesOnly) {
  const SortedLabel label("NROWS = 5\n", {{"ROWS", "LINES"}});
  EXPECT_EQ(label->main.Text("LINES", ""), std::nullopt);
  EXPECT_THAT(label->unusedMappings, ElementsAre("ROWS"));
}

TEST(LabelScopes, NameFilesOfBandsWithoutANumber) {
  const SortedLabel label("GROUP = A\nFILE_NAME_BAND_QUALITY = q.raw\nEND_GROUP = A\n");
  EXPECT_THAT(label->otherBands, ElementsAre("A/FILE_NAME_BAND_QUALITY"));
}

TEST(LabelScopes, RefuseANumberThatIsNone) {
  const SortedLabel label("GROUP = A\nCORNER_UL_LAT_PRODUCT = north\nEND_GROUP = A\n");
  EXPECT_EQ(ErrorOf([&] { label->main.Number("CORNER_UL_LAT_PRODUCT", "--map"); }),
            "x.lbl: A/CORNER_UL_LAT_PRODUCT is 'north', which is no number; correct the label or "
            "choose by --map");
}

}  // namespace
