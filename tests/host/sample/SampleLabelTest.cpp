#include "host/sample/SampleLabel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <numbers>
#include <sstream>
#include <vector>

#include "host/raster/TileIndex.h"
#include "host/sample/SampleLayout.h"
#include "host/sample/SceneTerrain.h"

namespace ravelin {
namespace {

/// The label's values by the names of their groups and their own, joined by "/"; quotes taken off.
/// Fails the test when groups do not match.
std::map<std::string, std::string> Values(const std::string& label) {
  std::map<std::string, std::string> values;
  std::vector<std::string> groups;
  std::istringstream lines(label);
  for (std::string line; std::getline(lines, line) && line != "END";) {
    const std::size_t start = line.find_first_not_of(' ');
    const std::size_t equals = line.find(" = ");
    EXPECT_NE(equals, std::string::npos) << line;
    const std::string name = line.substr(start, equals - start);
    std::string value = line.substr(equals + 3);
    if (name == "END_GROUP") {
      EXPECT_EQ(groups.back(), value);
      groups.pop_back();
      continue;
    }
    if (name == "GROUP") {
      groups.push_back(value);
      continue;
    }
    if (value.front() == '"') value = value.substr(1, value.size() - 2);
    std::string key;
    for (const std::string& group : groups) key += group + "/";
    EXPECT_TRUE(values.emplace(key + name, value).second) << key + name;
  }
  EXPECT_TRUE(groups.empty());
  return values;
}

std::string Value(const std::string& name) {
  const auto values = Values(SampleLabel());
  const auto found = values.find("SAMPLE_METADATA_FILE/" + name);
  EXPECT_NE(found, values.end()) << name;
  return found == values.end() ? "0" : found->second;
}

double Number(const std::string& name) {
  return std::stod(Value(name));
}

/// The number behind `start` in the projection's text.
double Parameter(const std::string& start) {
  const std::string text = SampleProjection();
  const std::size_t place = text.find(start);
  EXPECT_NE(place, std::string::npos) << start;
  return std::stod(text.substr(place + start.size()));
}

struct Metres {
  double east;
  double north;
};

/// Transverse Mercator by the series of Krueger to the third power of n; good to a millimetre in a
/// zone. Every constant is taken from the projection's text.
Metres Project(double latitude, double longitude) {
  const double axis = Parameter("SPHEROID[\"WGS 84\",");
  const double flattening = 1 / Parameter("SPHEROID[\"WGS 84\",6378137,");
  const double n = flattening / (2 - flattening);
  const double radius = axis / (1 + n) * (1 + n * n / 4 + n * n * n * n / 64);
  const double radians = std::numbers::pi / 180;
  const double phi = latitude * radians;
  const double lambda = (longitude - Parameter("PARAMETER[\"central_meridian\",")) * radians;
  const double e = std::sqrt(flattening * (2 - flattening));
  const double t = std::sinh(std::atanh(std::sin(phi)) - e * std::atanh(e * std::sin(phi)));
  const double xi = std::atan2(t, std::cos(lambda));
  const double eta = std::atanh(std::sin(lambda) / std::sqrt(1 + t * t));
  const double alpha[] = {n / 2 - 2 * n * n / 3 + 5 * n * n * n / 16,
                          13 * n * n / 48 - 3 * n * n * n / 5, 61 * n * n * n / 240};
  Metres metres = {eta, xi};
  for (int j = 1; j <= 3; ++j) {
    metres.east += alpha[j - 1] * std::cos(2 * j * xi) * std::sinh(2 * j * eta);
    metres.north += alpha[j - 1] * std::sin(2 * j * xi) * std::cosh(2 * j * eta);
  }
  const double scale = radius * Parameter("PARAMETER[\"scale_factor\",");
  return {Parameter("PARAMETER[\"false_easting\",") + scale * metres.east,
          Parameter("PARAMETER[\"false_northing\",") + scale * metres.north};
}

std::string CornerKey(const std::string& corner, const std::string& what) {
  return "PROJECTION_ATTRIBUTES/CORNER_" + corner + "_" + what + "_PRODUCT";
}

TEST(SampleLabel, EndsWithEnd) {
  const std::string label = SampleLabel();
  EXPECT_EQ(label.substr(label.size() - 5), "\nEND\n");
}

TEST(SampleLabel, EachValueStandsOnALineOfItsOwnInItsGroup) {
  EXPECT_GT(Values(SampleLabel()).size(), 150u);
}

TEST(SampleLabel, TellsSizesAndSampleTypeOfEachBand) {
  for (std::size_t i = 0; i < kSampleBands.size(); ++i) {
    const std::string group = "BAND_" + std::to_string(i + 1) + "/";
    const bool big = kSampleBands[i].order == BytesOrder::boBigEndian;
    EXPECT_EQ(Value(group + "FILE_NAME"), BandFileName(kSampleBands[i]));
    EXPECT_EQ(Value(group + "LINES"), "900");
    EXPECT_EQ(Value(group + "LINE_SAMPLES"), "1200");
    EXPECT_EQ(Value(group + "SAMPLE_BITS"), "16");
    EXPECT_EQ(Value(group + "SAMPLE_TYPE"), big ? "MSB_UNSIGNED_INTEGER" : "LSB_UNSIGNED_INTEGER");
    EXPECT_EQ(Number(group + "CHANNEL_KIND"), kSampleBands[i].kind);
  }
}

TEST(SampleLabel, NamesTheChannelRoles) {
  EXPECT_EQ(Value("BAND_1/CHANNEL_ROLE"), "BLUE");
  EXPECT_EQ(Value("BAND_2/CHANNEL_ROLE"), "GREEN");
  EXPECT_EQ(Value("BAND_3/CHANNEL_ROLE"), "RED");
  EXPECT_EQ(Value("BAND_4/CHANNEL_ROLE"), "NEAR_INFRARED");
}

TEST(SampleLabel, GeographicCornersAreThoseOfTheProjectedOnes) {
  for (const char* corner : {"UL", "UR", "LL", "LR"}) {
    const Metres metres =
        Project(Number(CornerKey(corner, "LAT")), Number(CornerKey(corner, "LON")));
    EXPECT_NEAR(metres.east, Number(CornerKey(corner, "PROJECTION_X")), 0.1) << corner;
    EXPECT_NEAR(metres.north, Number(CornerKey(corner, "PROJECTION_Y")), 0.1) << corner;
  }
}

TEST(SampleLabel, CornersSpanTheSceneInWholePixels) {
  const double pixel = Number("PROJECTION_ATTRIBUTES/GRID_CELL_SIZE");
  const auto x = [](const char* corner) { return Number(CornerKey(corner, "PROJECTION_X")); };
  const auto y = [](const char* corner) { return Number(CornerKey(corner, "PROJECTION_Y")); };
  EXPECT_EQ(pixel, kScenePixelSize);
  EXPECT_EQ(x("UR") - x("UL"), (kSceneWidth - 1) * pixel);
  EXPECT_EQ(x("LR") - x("LL"), (kSceneWidth - 1) * pixel);
  EXPECT_EQ(y("UL") - y("LL"), (kSceneHeight - 1) * pixel);
  EXPECT_EQ(y("UR") - y("LR"), (kSceneHeight - 1) * pixel);
}

TEST(SampleLabel, TheZoneIsThatOfTheProjection) {
  const double zone = Number("PROJECTION_ATTRIBUTES/UTM_ZONE");
  EXPECT_EQ(Parameter("PARAMETER[\"central_meridian\","), 6 * zone - 183);
  EXPECT_EQ(Value("PROJECTION_ATTRIBUTES/UTM_HEMISPHERE"), "SOUTH");
  EXPECT_EQ(Parameter("PARAMETER[\"false_northing\","), 10000000);
  EXPECT_EQ(Parameter("AUTHORITY[\"EPSG\",\"327"), zone);
}

TEST(SampleLabel, TilesAreThoseOfTheIndex) {
  const TileIndex index = ParseTileIndex(SampleIndex(), "index.txt");
  ASSERT_EQ(index.tiles.size(), 9u);
  for (std::size_t i = 0; i < 9; ++i) {
    const TileEntry& tile = index.tiles[i];
    const std::string group =
        "TILE_LAYOUT/TILE_R" + std::to_string(i / 3 + 1) + "C" + std::to_string(i % 3 + 1) + "/";
    EXPECT_EQ(Number(group + "LEFT"), static_cast<double>(tile.left));
    EXPECT_EQ(Number(group + "TOP"), static_cast<double>(tile.top));
    EXPECT_EQ(Number(group + "RIGHT"), static_cast<double>(tile.right));
    EXPECT_EQ(Number(group + "BOTTOM"), static_cast<double>(tile.bottom));
    EXPECT_EQ(Number(group + "SOURCE_LEFT"), static_cast<double>(tile.srcLeft));
    EXPECT_EQ(Number(group + "SOURCE_TOP"), static_cast<double>(tile.srcTop));
    EXPECT_EQ(Number(group + "LINE_SAMPLES"), static_cast<double>(tile.fileSize.width));
    EXPECT_EQ(Number(group + "LINES"), static_cast<double>(tile.fileSize.height));
    const bool big = tile.bands[0].order == BytesOrder::boBigEndian;
    EXPECT_EQ(Value(group + "SAMPLE_TYPE"), big ? "MSB_UNSIGNED_INTEGER" : "LSB_UNSIGNED_INTEGER");
    for (std::size_t band = 0; band < 4; ++band) {
      EXPECT_EQ(Value(group + "FILE_NAME_BAND_" + std::to_string(band + 1)),
                "tiles/" + tile.bands[band].file);
    }
  }
}

TEST(SampleIndex, SomeTilesHaveAMarginAndBothByteOrdersOccur) {
  bool margin = false, big = false, little = false;
  for (const TileEntry& tile : ParseTileIndex(SampleIndex(), "index.txt").tiles) {
    margin = margin || (tile.srcLeft > 0 && tile.srcTop > 0);
    big = big || tile.bands[0].order == BytesOrder::boBigEndian;
    little = little || tile.bands[0].order == BytesOrder::boLittleEndian;
  }
  EXPECT_TRUE(margin);
  EXPECT_TRUE(big);
  EXPECT_TRUE(little);
}

TEST(SampleIndex, TheTilesCoverEachPixelOnce) {
  std::vector<int> covered(static_cast<std::size_t>(kSceneWidth * kSceneHeight));
  for (const TileEntry& tile : ParseTileIndex(SampleIndex(), "index.txt").tiles) {
    for (long y = tile.top; y <= tile.bottom; ++y) {
      for (long x = tile.left; x <= tile.right; ++x) {
        ++covered.at(static_cast<std::size_t>(y * kSceneWidth + x));
      }
    }
  }
  for (const int times : covered) ASSERT_EQ(times, 1);
}

TEST(SampleIndex, TilesDifferInSize) {
  const TileIndex index = ParseTileIndex(SampleIndex(), "index.txt");
  const auto width = [&](std::size_t i) { return index.tiles[i].right - index.tiles[i].left; };
  const auto height = [&](std::size_t i) { return index.tiles[i].bottom - index.tiles[i].top; };
  EXPECT_NE(width(0), width(1));
  EXPECT_NE(width(1), width(2));
  EXPECT_NE(width(0), width(2));
  EXPECT_NE(height(0), height(3));
  EXPECT_NE(height(3), height(6));
  EXPECT_NE(height(0), height(6));
}

}  // namespace
}  // namespace ravelin
