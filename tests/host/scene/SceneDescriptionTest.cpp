#include "host/scene/SceneDescription.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "host/HostError.h"
#include "host/sample/SampleLabel.h"
#include "host/sample/SampleLayout.h"
#include "host/scene/support/Scopes.h"
#include "host/support/ErrorOf.h"

namespace {

using namespace ravelin;
using SatCommonUtils::TSatLog;
using testing::HasSubstr;

SceneDescription Describe(const std::string& text, const SceneOptions& options = {},
                          TSatLog* log = nullptr) {
  TSatLog own;
  const SortedLabel label(text, options.mappings);
  return DescribeScene(*label, options, "x.lbl", log != nullptr ? log : &own);
}

std::string Failure(const std::string& text, const SceneOptions& options = {}) {
  return ErrorOf([&] { Describe(text, options); });
}

std::string Messages(const TSatLog& log) {
  std::string text;
  for (const auto& item : log.items) text += item.GetMsgLine();
  return text;
}

std::string Band(int number, const std::string& values) {
  const std::string name = "BAND_" + std::to_string(number);
  return "GROUP = " + name + "\n" + values + "END_GROUP = " + name + "\n";
}

const std::string kSize = "LINES = 3\nLINE_SAMPLES = 4\n";
const std::string kType = "SAMPLE_TYPE = LSB_UNSIGNED_INTEGER\n";

SceneOptions Chosen(std::optional<BytesOrder> order = std::nullopt) {
  SceneOptions options;
  options.bands = {{6, "a.raw", order}};
  return options;
}

TEST(SceneDescription, KnowsTheSample) {
  const SceneDescription scene = Describe(SampleLabel());
  EXPECT_EQ(ToText(scene.size), "1200 x 900");
  EXPECT_TRUE(scene.bands.empty());
  ASSERT_EQ(scene.tiles.size(), SampleTiles().size());
  EXPECT_EQ(scene.tiles[4].srcLeft, 16);
  EXPECT_EQ(scene.tiles[4].bands[3].key, 32);
  EXPECT_EQ(scene.tiles[4].bands[3].file, "tiles/r2c2_nir.raw");
  EXPECT_EQ(scene.tiles[1].bands[0].order, BytesOrder::boBigEndian);
  EXPECT_EQ(scene.projectionFile, "sample.wkt");
  EXPECT_EQ(scene.datum, "WGS84");
  EXPECT_EQ(scene.metres->lowerRight.x, 578970);
  EXPECT_EQ(scene.degrees->upperLeft.y, -43.603735);
}

TEST(SceneDescription, TakesBandsOfGroups) {
  const SceneDescription scene =
      Describe(kSize + Band(1, "FILE_NAME = a\nSAMPLE_TYPE = MSB_UNSIGNED_INTEGER\n") +
               Band(2, "FILE_NAME = b\nSAMPLE_TYPE = PC_UNSIGNED_INTEGER\n"));
  ASSERT_EQ(scene.bands.size(), 2u);
  EXPECT_EQ(scene.bands[0].file, "a");
  EXPECT_EQ(scene.bands[0].key, 101);
  EXPECT_EQ(scene.bands[0].order, BytesOrder::boBigEndian);
  EXPECT_EQ(scene.bands[1].order, BytesOrder::boLittleEndian);
}

TEST(SceneDescription, TakesTheSizeOfTheBandsWhenTheLabelHasNoOther) {
  EXPECT_EQ(ToText(Describe(kType + Band(1, "FILE_NAME = a\n" + kSize)).size), "4 x 3");
}

TEST(SceneDescription, PrefersTheSizeAndOrderOfTheOptions) {
  SceneOptions options;
  options.size = {7, 8};
  options.order = BytesOrder::boBigEndian;
  const SceneDescription scene =
      Describe(kSize + kType + Band(1, "FILE_NAME = a\n" + kSize), options);
  EXPECT_EQ(ToText(scene.size), "7 x 8");
  EXPECT_EQ(scene.bands.at(0).order, BytesOrder::boBigEndian);
}

TEST(SceneDescription, UsesChosenBandsAlone) {
  const SceneDescription scene = Describe(kSize + kType + Band(1, "FILE_NAME = b\n"), Chosen());
  ASSERT_EQ(scene.bands.size(), 1u);
  EXPECT_EQ(scene.bands[0].file, "a.raw");
  EXPECT_EQ(scene.bands[0].order, BytesOrder::boLittleEndian);
  EXPECT_EQ(Describe(kSize + kType, Chosen(BytesOrder::boBigEndian)).bands[0].order,
            BytesOrder::boBigEndian);
}

TEST(SceneDescription, UsesChosenBandsInsteadOfTiles) {
  const SceneDescription scene = Describe(SampleLabel(), Chosen(BytesOrder::boBigEndian));
  EXPECT_TRUE(scene.tiles.empty());
  EXPECT_EQ(scene.bands.size(), 1u);
}

TEST(SceneDescription, AsksForTheSize) {
  EXPECT_EQ(Failure(kType + Band(1, "FILE_NAME = a\n")),
            "x.lbl: tells no size: LINES and LINE_SAMPLES are missing; give --size WxH, or --map "
            "KEY=LINES and --map KEY=LINE_SAMPLES");
  EXPECT_EQ(Failure("LINES = 3\n"), "x.lbl: does not tell LINE_SAMPLES; give --size WxH");
  EXPECT_EQ(Failure("LINE_SAMPLES = 3\n"), "x.lbl: does not tell LINES; give --size WxH");
}

TEST(SceneDescription, AsksForTheOrder) {
  EXPECT_EQ(
      Failure(kSize + Band(1, "FILE_NAME = a.raw\n")),
      "x.lbl: does not tell the byte order of a.raw: SAMPLE_TYPE is missing; give --order big "
      "or --order little");
  EXPECT_THAT(Failure(kSize, Chosen()), HasSubstr("the byte order of a.raw"));
}

TEST(SceneDescription, AsksForTheBands) {
  EXPECT_EQ(Failure(kSize + kType),
            "x.lbl: names no band file: FILE_NAME in groups BAND_n, or FILE_NAME_BAND_n, is "
            "missing; give --band KEY=FILE for every band");
}

TEST(SceneDescription, RefusesSamplesThatAreNotUnsigned) {
  EXPECT_THAT(Failure(kSize + "SAMPLE_TYPE = LSB_INTEGER\n", Chosen()),
              HasSubstr("SAMPLE_TYPE is LSB_INTEGER, but only unsigned whole numbers are read"));
  SceneOptions asked = Chosen();
  asked.order = BytesOrder::boLittleEndian;
  EXPECT_EQ(Failure(kSize + "SAMPLE_TYPE = LSB_INTEGER\n", asked), "");
}

TEST(SceneDescription, RefusesSamplesThatAreNotOf16Bits) {
  EXPECT_EQ(Failure(kSize + kType + "SAMPLE_BITS = 8\n", Chosen()),
            "x.lbl: SAMPLE_BITS is 8, but only samples of 16 bits are read; convert the files to "
            "unsigned 16-bit samples and correct the label");
  EXPECT_THAT(Failure(kSize + kType + Band(1, "FILE_NAME = a\nSAMPLE_BITS = 32\n")),
              HasSubstr("BAND_1/SAMPLE_BITS is 32"));
  EXPECT_THAT(Failure(kSize + kType + "FILE_NAME_BAND_1 = a\nDATA_TYPE_BAND_1 = \"UINT8\"\n"),
              HasSubstr("FILE_NAME_BAND_1 is of the type UINT8, but only UINT16 is read"));
}

TEST(SceneDescription, SkipsBandsOfAnotherSizeAndSaysSo) {
  TSatLog log;
  const SceneDescription scene =
      Describe(kSize + kType +
                   "SPACECRAFT_ID = LANDSAT_8\nFILE_NAME_BAND_4 = r\nFILE_NAME_BAND_8 = p\n"
                   "FILE_NAME_BAND_10 = t\nPANCHROMATIC_LINES = 6\nPANCHROMATIC_SAMPLES = 8\n"
                   "THERMAL_LINES = 3\nTHERMAL_SAMPLES = 4\nFILE_NAME_BAND_QUALITY = q\n",
               {}, &log);
  ASSERT_EQ(scene.bands.size(), 2u);
  EXPECT_EQ(scene.bands[0].file, "r");
  EXPECT_EQ(scene.bands[1].file, "t");
  EXPECT_THAT(Messages(log), HasSubstr("* skipped p: its size is 8 x 6 pixels\n"));
  EXPECT_THAT(Messages(log), HasSubstr("* skipped FILE_NAME_BAND_QUALITY: its band has no number"));
}

TEST(SceneDescription, SkipsTheHeaderOfTheFiles) {
  EXPECT_EQ(Describe(kSize + kType + "HEADER_BYTES = 512\n", Chosen()).headerBytes, 512u);
  EXPECT_EQ(Describe(kSize + kType, Chosen()).headerBytes, 0u);
}

TEST(SceneDescription, RefusesAMappingOfWhatIsNotThere) {
  SceneOptions options = Chosen();
  options.mappings = {{"ROWS", "LINES"}};
  EXPECT_EQ(Failure(kSize + kType, options), "x.lbl: has no value ROWS; check --map");
}

TEST(SceneDescription, ReadsMappedNames) {
  SceneOptions options;
  options.mappings = {{"ROWS", "LINES"}, {"COLUMNS", "LINE_SAMPLES"}, {"RED", "FILE_NAME_BAND_3"}};
  const SceneDescription scene = Describe(kType + "ROWS = 3\nCOLUMNS = 4\nRED = r.raw\n", options);
  EXPECT_EQ(ToText(scene.size), "4 x 3");
  EXPECT_EQ(scene.bands.at(0).file, "r.raw");
}

std::string Tile(const std::string& name, int left, const std::string& rest) {
  return "GROUP = TILE_" + name + "\nLEFT = " + std::to_string(left) +
         "\nTOP = 0\nRIGHT = " + std::to_string(left + 1) + "\nBOTTOM = 2\n" + rest +
         "END_GROUP = TILE_" + name + "\n";
}
const std::string kTileRest =
    "SOURCE_LEFT = 0\nSOURCE_TOP = 0\nLINES = 3\nLINE_SAMPLES = 2\nFILE_NAME_BAND_2 = a\n" + kType;

TEST(SceneDescription, TakesTheSizeOfTiles) {
  const SceneDescription scene = Describe(Tile("A", 0, kTileRest) + Tile("B", 2, kTileRest));
  EXPECT_EQ(ToText(scene.size), "4 x 3");
  EXPECT_EQ(scene.tiles.at(1).place, "TILE_B");
  EXPECT_EQ(scene.tiles.at(1).bands.at(0).key, 102);
}

TEST(SceneDescription, RefusesTilesThatDoNotMakeTheSize) {
  EXPECT_EQ(
      Failure("LINES = 9\nLINE_SAMPLES = 4\n" + Tile("A", 0, kTileRest) + Tile("B", 2, kTileRest)),
      "x.lbl: the tiles make 4 x 3 pixels, but the label says 4 x 9; correct the tiles of the "
      "label or give the right --size");
}

TEST(SceneDescription, AsksForWhatATileDoesNotTell) {
  EXPECT_EQ(Failure(Tile("A", 0, "LINES = 3\n")),
            "x.lbl: does not tell TILE_A/SOURCE_LEFT; give --map KEY=SOURCE_LEFT");
}

TEST(SceneDescription, RefusesTilesThatDoNotLieInTheirFiles) {
  EXPECT_THAT(Failure(Tile("A", 0,
                           "SOURCE_LEFT = 1\nSOURCE_TOP = 0\nLINES = 3\nLINE_SAMPLES = 2\n"
                           "FILE_NAME_BAND_2 = a\n" +
                               kType)),
              HasSubstr("x.lbl: TILE_A: the tile's 2 x 3 pixels from 1,0 do not lie in its files"));
}

TEST(SceneDescription, RefusesTilesOfDifferentBands) {
  EXPECT_THAT(Failure(Tile("A", 0, kTileRest) + Tile("B", 2, kTileRest + "FILE_NAME_BAND_3 = b\n")),
              HasSubstr("TILE_B: the tile's keys are not those of the first tile"));
}

TEST(SceneDescription, RefusesTilesWithoutFiles) {
  EXPECT_THAT(
      Failure(
          Tile("A", 0, "SOURCE_LEFT = 0\nSOURCE_TOP = 0\nLINES = 3\nLINE_SAMPLES = 2\n" + kType)),
      HasSubstr("does not tell TILE_A/FILE_NAME_BAND_n"));
}

/// Describes a text, or refuses it with a HostError; anything else passes.
void ExpectDescribedOrRefused(const std::string& text) {
  try {
    const SceneDescription scene = Describe(text);
    EXPECT_GE(scene.size.width, 1);
    EXPECT_GE(scene.size.height, 1);
    EXPECT_NE(scene.bands.empty(), scene.tiles.empty());
  } catch (const HostError& error) {
    EXPECT_THAT(error.what(), testing::StartsWith("x.lbl: "));
  }
}

TEST(SceneDescription, IsMadeOrRefusedOfALabelCutAnywhere) {
  const std::string label = SampleLabel();
  for (std::size_t length = 0; length <= label.size(); length += 5) {
    ExpectDescribedOrRefused(label.substr(0, length));
  }
}

TEST(SceneDescription, IsMadeOrRefusedOfALabelWithBytesChanged) {
  std::mt19937 random(7);
  const std::string label = SampleLabel();
  for (int round = 0; round < 1500; ++round) {
    std::string text = label;
    for (int change = 0; change < 3; ++change) {
      text[random() % text.size()] = static_cast<char>(random() % 256);
    }
    ExpectDescribedOrRefused(text);
  }
}

}  // namespace
