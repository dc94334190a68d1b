// Real scenes, where they are at hand: the folder RAVELIN_TEST_DATA, or ../shared/data beside the
// checkout.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "host/support/PngFile.h"
#include "host/support/RunCommand.h"
#include "support/TempFolder.h"

namespace {

using Words = std::vector<std::string>;

std::string DataFolder() {
  const char* given = std::getenv("RAVELIN_TEST_DATA");
  return given != nullptr ? given : std::string(RAVELIN_SOURCE_FOLDER) + "/../shared/data";
}

std::string BytesOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

class RealScene : public testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::is_directory(data_)) {
      GTEST_SKIP() << "no real scenes at " << data_ << "; name their folder in RAVELIN_TEST_DATA";
    }
  }

  std::string Band(const std::string& name) const {
    return data_ + "/scene/LC08_L2SP_218074_20190114_20200829_02_T1_SR_" + name;
  }

  // An index of the tiles that a tiles.csv lists, keys counted from 10 in the order of its files.
  void WriteIndex(const std::string& set) const {
    std::ifstream table(data_ + "/" + set + "/tiles.csv");
    std::string index;
    std::string line;
    std::getline(table, line);
    while (std::getline(table, line)) index += IndexLine(set, line);
    folder_.Write(set + ".idx", index);
  }

  std::string IndexLine(const std::string& set, const std::string& line) const {
    Words fields;
    std::istringstream row(line.substr(0, line.find('\r')));
    for (std::string field; std::getline(row, field, ',');) fields.push_back(field);
    std::string text;
    for (std::size_t i = 1; i <= 8; ++i) text += fields.at(i) + " ";
    const std::string order = fields.at(9) == "BE" ? ":big" : ":little";
    for (std::size_t i = 10; i < fields.size(); ++i) {
      text += std::to_string(i) + "=\"" + data_ + "/" + set + "/" + fields[i] + "\"" + order + " ";
    }
    return text + "\n";
  }

  std::string Stitched(const std::string& set) const {
    WriteIndex(set);
    const CommandResult result =
        RunCommand({"stitch", set + ".idx", "--allow-outside", "-o", "o.bip"}, folder_.Path());
    EXPECT_EQ(result.exitCode, 0) << result.err;
    return folder_.Read("o.bip");
  }

  std::string data_ = DataFolder() + "/raster";
  TempFolder folder_;
};

TEST_F(RealScene, ComposesToItsKnownPixels) {
  const CommandResult result = RunCommand(
      {"compose", "--size", "400x300", "--band", "2=" + Band("B2_le.raw"),
       "3=" + Band("B3_be.RAW:big"), "4=" + Band("B4_le.Raw"), "5=" + Band("B5_be.raw:big"),
       "7=" + Band("B6_le.RAW"), "8=" + Band("B7_be.Raw:big"), "-o", "o.bip"},
      folder_.Path());
  ASSERT_EQ(result.exitCode, 0) << result.err;
  EXPECT_EQ(folder_.Read("o.bip"), BytesOf(data_ + "/scene/expected_all_bands_le.bip"));
}

TEST_F(RealScene, StitchesFromThreeByThreeTilesToItsKnownPixels) {
  EXPECT_EQ(Stitched("tiles3x3"), BytesOf(data_ + "/tiles3x3/expected_whole_le.bip"));
}

TEST_F(RealScene, StitchesFromTilesWithMarginsToItsKnownPixels) {
  EXPECT_EQ(Stitched("tiles2x2_margin"), BytesOf(data_ + "/tiles2x2_margin/expected_whole_le.raw"));
}

TEST_F(RealScene, KeepsTheRowsOfABandThatWasCutShort) {
  const CommandResult result =
      RunCommand({"compose", "--size", "867x534", "--allow-short", "--band",
                  "1=" + data_ + "/pan/truncated_be.raw:big", "-o", "o.bip"},
                 folder_.Path());
  ASSERT_EQ(result.exitCode, 0) << result.err;
  ASSERT_EQ(
      RunCommand({"compose", "--size", "867x534", "--band",
                  "1=" + data_ + "/pan/LC08_L1TP_204023_20200927_20201006_02_T1_B8_be.raw:big",
                  "-o", "whole.bip"},
                 folder_.Path())
          .exitCode,
      0);
  const std::string cut = folder_.Read("o.bip");
  const std::string whole = folder_.Read("whole.bip");
  const std::size_t there = 104907 & ~1ul;
  EXPECT_EQ(cut.substr(0, there), whole.substr(0, there));
  EXPECT_EQ(cut.substr(there), std::string(whole.size() - there, '\0'));
}

TEST_F(RealScene, IsAPictureOfThreeColoursStretchedOverItsRange) {
  const CommandResult result =
      RunCommand({"compose", "--size", "400x300", "--band", "red=" + Band("B4_le.Raw"),
                  "green=" + Band("B3_be.RAW:big"), "blue=" + Band("B2_le.raw"), "-o", "o.png"},
                 folder_.Path());
  ASSERT_EQ(result.exitCode, 0) << result.err;
  const PngFile png = ReadPng(folder_ / "o.png");
  EXPECT_EQ(png.width, 400);
  EXPECT_EQ(png.height, 300);
  ASSERT_EQ(png.channels, 3);
  for (std::size_t c = 0; c < 3; ++c) {
    std::size_t dark = 0;
    std::size_t bright = 0;
    for (std::size_t i = c; i < png.samples.size(); i += 3) {
      if (png.samples[i] == 0) ++dark;
      if (png.samples[i] == 255) ++bright;
    }
    EXPECT_GE(dark, 2400u) << c;
    EXPECT_GE(bright, 2400u) << c;
    EXPECT_LE(dark + bright, 12000u) << c;
  }
}

}  // namespace
