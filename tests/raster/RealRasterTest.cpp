// Composes and stitches real scenes, where they are at hand, and compares every pixel with what
// other programs made of them.
#include <gmock/gmock.h>
#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <sstream>

#include "SatCommonUtils/Module.h"
#include "raster/RasterTest.h"

namespace {

using raster_test::Output;
using raster_test::RasterTest;
using raster_test::Request;
using SatCommonUtils::TRawWordDibData;
using SatCommonUtils::TSeparateBandsDibData;
using SatCommonUtils::TSuperTileData;
using SatCommonUtils::TSuperTiledDibDataEnvelope;
using BandReference = var_a_legacy::var_a<SatCommonUtils::TBasePushbroomDibData*>;
using StreamReference = var_a_legacy::var_a<TKvStream*>;

constexpr auto kLittle = TRawWordDibData::boLittleEndian;
constexpr auto kBig = TRawWordDibData::boBigEndian;

std::string DataFolder() {
  const char* named = std::getenv("RAVELIN_TEST_DATA");
  return std::string(named != nullptr ? named : RAVELIN_TEST_DATA_DIR) + "/raster/";
}

/// Samples of a file of 16-bit little-endian words.
std::vector<unsigned short> Words(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::vector<unsigned short> words;
  for (int low = file.get(), high = file.get(); file; low = file.get(), high = file.get()) {
    words.push_back(static_cast<unsigned short>(low | high << 8));
  }
  return words;
}

BandReference OpenBand(const std::string& path, long width, long height,
                       TRawWordDibData::TBytesOrder order) {
  auto* band = new TRawWordDibData;
  BandReference reference(band);
  StreamReference stream(new TKvFileStream(TKvPath(path), kvOpenRead, kvShareAll));
  EXPECT_TRUE(band->Setup(stream, static_cast<unsigned long>(width),
                          static_cast<unsigned long>(height), order));
  return reference;
}

/// Whether the services are up tells how files are read, so every test runs both ways.
class RealRasterTest : public RasterTest, public ::testing::WithParamInterface<bool> {
 protected:
  void SetUp() override {
    struct stat status;
    if (stat(DataFolder().c_str(), &status) != 0) {
      GTEST_SKIP() << "no real scenes in " << DataFolder()
                   << "; RAVELIN_TEST_DATA names another folder";
    }
    if (GetParam()) Init_Ravelin();
  }
  void TearDown() override { Deinit_Ravelin(); }

  /// Compares a request with the window of `whole`, which holds the top row first.
  static void ExpectWindow(TKvDibData& raster, const std::vector<unsigned short>& whole, long width,
                           long height, long channels, long x, long y, long w, long h) {
    Output out(h, w * channels * 2 + 6);
    ASSERT_EQ(raster.GetRect(out.Buffer(),
                             Request(static_cast<double>(x), static_cast<double>(y),
                                     static_cast<double>(w), static_cast<double>(h)),
                             iqNearest, 0, nullptr),
              3);
    ASSERT_EQ(whole.size(), static_cast<std::size_t>(width * height * channels));
    for (long row = 0; row < h; ++row) {
      const long fromTop = height - 1 - (y + row);
      for (long i = 0; i < w * channels; ++i) {
        ASSERT_EQ(out.Word(row, i),
                  whole[static_cast<std::size_t>((fromTop * width + x) * channels + i)])
            << "row " << row << " sample " << i;
      }
    }
  }

  static void ExpectWhole(TKvDibData& raster, const std::vector<unsigned short>& whole, long width,
                          long height, long channels) {
    ExpectWindow(raster, whole, width, height, channels, 0, 0, width, height);
  }

  static void ExpectRandomWindows(TKvDibData& raster, const std::vector<unsigned short>& whole,
                                  long width, long height, long channels) {
    std::mt19937 random(99);
    auto below = [&random](long n) {
      return std::uniform_int_distribution<long>(0, n - 1)(random);
    };
    for (int i = 0; i < 200; ++i) {
      const long x = below(width), y = below(height);
      const long w = 1 + below(std::min(width - x, 90L)), h = 1 + below(std::min(height - y, 90L));
      ASSERT_NO_FATAL_FAILURE(ExpectWindow(raster, whole, width, height, channels, x, y, w, h));
    }
  }
};

INSTANTIATE_TEST_SUITE_P(Files, RealRasterTest, ::testing::Values(false, true),
                         [](const ::testing::TestParamInfo<bool>& info) {
                           return info.param ? "ReadFromMappings" : "ReadByCalls";
                         });

constexpr long kSceneWidth = 400;
constexpr long kSceneHeight = 300;

/// The scene's bands by name, as the expected pixels name them.
std::map<std::string, BandReference> SceneBands() {
  const std::string folder = DataFolder() + "scene/LC08_L2SP_218074_20190114_20200829_02_T1_";
  std::map<std::string, BandReference> bands;
  for (const auto& [name, file, order] :
       {std::tuple("SR_B2", "SR_B2_le.raw", kLittle), std::tuple("SR_B3", "SR_B3_be.RAW", kBig),
        std::tuple("SR_B4", "SR_B4_le.Raw", kLittle), std::tuple("SR_B5", "SR_B5_be.raw", kBig),
        std::tuple("SR_B6", "SR_B6_le.RAW", kLittle), std::tuple("SR_B7", "SR_B7_be.Raw", kBig)}) {
    bands[name] = OpenBand(folder + file, kSceneWidth, kSceneHeight, order);
  }
  return bands;
}

TEST_P(RealRasterTest, TheSixBandsOfTheSceneComposeToItsInterleavedPixels) {
  std::map<int, BandReference> keyed;
  int key = 10;
  for (const auto& [name, band] : SceneBands()) keyed[key++] = band;
  TSeparateBandsDibData compositor;
  ASSERT_TRUE(compositor.Setup(keyed));
  const auto whole = Words(DataFolder() + "scene/expected_all_bands_le.bip");
  ExpectWhole(compositor, whole, kSceneWidth, kSceneHeight, 6);
  ExpectRandomWindows(compositor, whole, kSceneWidth, kSceneHeight, 6);
}

TEST_P(RealRasterTest, TheVisibleBandsOfTheSceneComeAsRedGreenBlue) {
  auto bands = SceneBands();
  TSeparateBandsDibData compositor;
  ASSERT_TRUE(compositor.Setup({{3, bands["SR_B2"]}, {4, bands["SR_B3"]}, {6, bands["SR_B4"]}}));
  Output out(kSceneHeight, kSceneWidth * 6);
  ASSERT_EQ(compositor.GetRect(out.Buffer(), Request(0, 0, kSceneWidth, kSceneHeight), iqNearest, 0,
                               nullptr),
            3);
  const auto all = Words(DataFolder() + "scene/expected_all_bands_le.bip");
  for (long row = 0; row < kSceneHeight; ++row) {
    for (long x = 0; x < kSceneWidth; ++x) {
      const auto pixel = static_cast<std::size_t>(((kSceneHeight - 1 - row) * kSceneWidth + x) * 6);
      ASSERT_EQ(out.Word(row, 3 * x), all[pixel + 2]);
      ASSERT_EQ(out.Word(row, 3 * x + 1), all[pixel + 1]);
      ASSERT_EQ(out.Word(row, 3 * x + 2), all[pixel]);
    }
  }
}

TEST_P(RealRasterTest, EveryWindowOfTheSceneHasThePixelsAndTheSumOfItsBands) {
  std::ifstream file(DataFolder() + "scene/expected_windows.json");
  const auto facts = nlohmann::json::parse(file);
  const auto all = Words(DataFolder() + "scene/expected_all_bands_le.bip");
  const auto names = facts.at("bands").get<std::vector<std::string>>();
  auto bands = SceneBands();
  for (const auto& window : facts.at("windows")) {
    std::map<int, BandReference> keyed;
    std::vector<std::size_t> columns;
    int key = 100;
    for (const auto& name : window.at("bands").get<std::vector<std::string>>()) {
      keyed[key++] = bands.at(name);
      columns.push_back(
          static_cast<std::size_t>(std::find(names.begin(), names.end(), name) - names.begin()));
    }
    TSeparateBandsDibData compositor;
    ASSERT_TRUE(compositor.Setup(keyed));
    const long x = window.at("x"), y = window.at("y_from_bottom"), w = window.at("w"),
               h = window.at("h");
    const auto channels = static_cast<long>(columns.size());
    ASSERT_EQ(window.at("y_from_top").get<long>(), kSceneHeight - y - h);
    Output out(h, w * channels * 2);
    ASSERT_EQ(compositor.GetRect(out.Buffer(),
                                 Request(static_cast<double>(x), static_cast<double>(y),
                                         static_cast<double>(w), static_cast<double>(h)),
                                 iqNearest, 0, nullptr),
              3);
    unsigned long sum = 0;
    for (long row = 0; row < h; ++row) {
      const long fromTop = kSceneHeight - 1 - (y + row);
      for (long i = 0; i < w * channels; ++i) {
        const auto pixel = static_cast<std::size_t>(fromTop * kSceneWidth + x + i / channels);
        ASSERT_EQ(out.Word(row, i),
                  all[pixel * 6 + columns[static_cast<std::size_t>(i % channels)]]);
        sum += out.Word(row, i);
      }
    }
    EXPECT_EQ(sum, window.at("sum").get<unsigned long>());
  }
}

constexpr long kPanWidth = 867;
constexpr long kPanHeight = 534;

TEST_P(RealRasterTest, ThePanchromaticBandHasItsKnownCornersAndSum) {
  BandReference pan =
      OpenBand(DataFolder() + "pan/LC08_L1TP_204023_20200927_20201006_02_T1_B8_be.raw", kPanWidth,
               kPanHeight, kBig);
  Output out(kPanHeight, kPanWidth * 2);
  ASSERT_EQ(pan->GetRect(out.Buffer(), Request(0, 0, kPanWidth, kPanHeight), iqNearest, 0, nullptr),
            3);
  EXPECT_EQ(out.Word(kPanHeight - 1, 0), 7211);
  EXPECT_EQ(out.Word(kPanHeight - 1, kPanWidth - 1), 7722);
  EXPECT_EQ(out.Word(0, 0), 7114);
  EXPECT_EQ(out.Word(0, kPanWidth - 1), 7424);
  unsigned long sum = 0;
  unsigned short low = 0xFFFF, high = 0;
  for (long row = 0; row < kPanHeight; ++row) {
    for (long x = 0; x < kPanWidth; ++x) {
      sum += out.Word(row, x);
      low = std::min(low, out.Word(row, x));
      high = std::max(high, out.Word(row, x));
    }
  }
  EXPECT_EQ(sum, 3428304035u);
  EXPECT_EQ(low, 6142);
  EXPECT_EQ(high, 27221);
}

TEST_P(RealRasterTest, ATruncatedBandServesTheRowsThatItHasAndNoOthers) {
  BandReference whole =
      OpenBand(DataFolder() + "pan/LC08_L1TP_204023_20200927_20201006_02_T1_B8_be.raw", kPanWidth,
               kPanHeight, kBig);
  BandReference cut = OpenBand(DataFolder() + "pan/truncated_be.raw", kPanWidth, kPanHeight, kBig);
  const long rows = 60, half = (104907 - rows * kPanWidth * 2) / 2;
  auto serve = [](BandReference& band, Output& out, double x, double y, double w, double h) {
    return band->GetRect(out.Buffer(), Request(x, y, w, h), iqNearest, 0, nullptr);
  };
  Output expected(rows, kPanWidth * 2), out(rows, kPanWidth * 2);
  ASSERT_EQ(serve(whole, expected, 0, kPanHeight - rows, kPanWidth, rows), 3);
  EXPECT_EQ(serve(cut, out, 0, kPanHeight - rows, kPanWidth, rows), 3);
  EXPECT_EQ(out.bytes, expected.bytes);

  Output none(rows + 1, kPanWidth * 2);
  EXPECT_EQ(serve(cut, none, 0, kPanHeight - rows - 1, kPanWidth, rows + 1), 2);
  EXPECT_EQ(serve(cut, none, 0, 0, kPanWidth, 1), 2);
  EXPECT_EQ(serve(cut, none, static_cast<double>(half), kPanHeight - rows - 1, 1, 1), 2);
  EXPECT_TRUE(none.Untouched());

  Output last(1, half * 2), lastExpected(1, half * 2);
  EXPECT_EQ(serve(cut, last, 0, kPanHeight - rows - 1, static_cast<double>(half), 1), 3);
  ASSERT_EQ(serve(whole, lastExpected, 0, kPanHeight - rows - 1, static_cast<double>(half), 1), 3);
  EXPECT_EQ(last.bytes, lastExpected.bytes);
}

struct Tile {
  TSuperTileData place;
  long fileWidth;
  long fileHeight;
  TRawWordDibData::TBytesOrder order;
  std::vector<std::string> files;
};

std::vector<Tile> ReadTiles(const std::string& folder) {
  std::ifstream index(folder + "tiles.csv");
  std::vector<Tile> tiles;
  std::string line;
  for (std::getline(index, line); std::getline(index, line);) {
    std::stringstream fields(line);
    std::vector<std::string> f;
    for (std::string field; std::getline(fields, field, ',');) f.push_back(field);
    Tile tile;
    tile.place = {std::stol(f.at(1)), std::stol(f.at(2)), std::stol(f.at(3)), std::stol(f.at(4)),
                  std::stol(f.at(5)), std::stol(f.at(6)), BandReference(),    f.at(0)};
    tile.fileWidth = std::stol(f.at(7));
    tile.fileHeight = std::stol(f.at(8));
    tile.order = f.at(9) == "BE" ? kBig : kLittle;
    tile.files.assign(f.begin() + 10, f.end());
    tiles.push_back(tile);
  }
  return tiles;
}

TEST_P(RealRasterTest, NineTilesOfThreeBandsStitchToTheUncutScene) {
  const std::string folder = DataFolder() + "tiles3x3/";
  std::vector<TSuperTileData> tiles;
  for (const Tile& tile : ReadTiles(folder)) {
    std::map<int, BandReference> bands;
    const int keys[] = {6, 4, 3};
    for (std::size_t i = 0; i < 3; ++i) {
      bands[keys[i]] =
          OpenBand(folder + tile.files.at(i), tile.fileWidth, tile.fileHeight, tile.order);
    }
    auto* compositor = new TSeparateBandsDibData;
    tiles.push_back(tile.place);
    tiles.back().raster = BandReference(compositor);
    ASSERT_TRUE(compositor->Setup(bands));
  }
  ASSERT_EQ(tiles.size(), 9u);
  EXPECT_TRUE(SatCommonUtils::CheckSuperTilesDataset(tiles));
  TSuperTiledDibDataEnvelope raster;
  const SatCommonUtils::TVisibleBandsOrder order = {0, 1, 2};
  ASSERT_TRUE(raster.Setup(tiles, &order));
  EXPECT_THAT(raster.channels.kinds, ::testing::ElementsAre(6, 4, 3));
  const auto whole = Words(folder + "expected_whole_le.bip");
  ExpectWhole(raster, whole, 433, 267, 3);
  ExpectRandomWindows(raster, whole, 433, 267, 3);
}

TEST_P(RealRasterTest, FourTilesWithMarginsStitchToTheUncutBand) {
  const std::string folder = DataFolder() + "tiles2x2_margin/";
  const auto whole = Words(folder + "expected_whole_le.raw");
  std::vector<TSuperTileData> tiles;
  for (const Tile& tile : ReadTiles(folder)) {
    tiles.push_back(tile.place);
    tiles.back().raster =
        OpenBand(folder + tile.files.at(0), tile.fileWidth, tile.fileHeight, tile.order);
  }
  ASSERT_EQ(tiles.size(), 4u);
  TSuperTiledDibDataEnvelope raster;
  ASSERT_TRUE(raster.Setup(tiles, nullptr));
  ExpectWhole(raster, whole, 433, 267, 1);
  ExpectRandomWindows(raster, whole, 433, 267, 1);
}

}  // namespace
