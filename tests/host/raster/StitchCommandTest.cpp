#include "host/raster/StitchCommand.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "host/support/PngFile.h"
#include "host/support/Samples.h"
#include "host/support/Subcommand.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Words = std::vector<std::string>;

CommandResult Stitch(const TempFolder& folder, Words arguments) {
  return RunSubcommand("stitch", std::move(arguments), folder);
}

TEST(StitchCommand, PutsTheTilesTogether) {
  TempFolder folder;
  folder.Write("l", LittleBytes({1, 2, 5, 6}));
  folder.Write("r", BigBytes({3, 4, 7, 8}));
  folder.Write("t.idx", "0 0 1 1 0 0 2 2 red=l\n2 0 3 1 0 0 2 2 red=r:big\n");
  const CommandResult result = Stitch(folder, {"t.idx", "-o", "o.bip"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(folder.Read("o.bip"), LittleBytes({1, 2, 3, 4, 5, 6, 7, 8}));
  EXPECT_THAT(folder.Read("o.hdr"), HasSubstr("band names = {Red}"));
}

TEST(StitchCommand, ShowsTilesOfSeveralFilesInTheirColours) {
  TempFolder folder;
  folder.Write("r", LittleBytes({0x6100, 0x6200, 0x6300, 0x6400}));
  folder.Write("g", LittleBytes({0x4100, 0x4200, 0x4300, 0x4400}));
  folder.Write("b", LittleBytes({0x3100, 0x3200, 0x3300, 0x3400}));
  folder.Write("t.idx", "0 0 1 1 0 0 2 2 blue=b red=r green=g\n");
  EXPECT_EQ(Stitch(folder, {"t.idx", "--stretch", "none", "-o", "o.png"}).exitCode, 0);
  EXPECT_THAT(ReadPng(folder / "o.png").samples,
              ElementsAre(0x61, 0x41, 0x31, 0x62, 0x42, 0x32, 0x63, 0x43, 0x33, 0x64, 0x44, 0x34));
}

TEST(StitchCommand, FindsTheFilesBesideTheIndex) {
  TempFolder folder;
  folder.MakeFolder("scene");
  folder.Write("scene/a", LittleBytes({1, 2, 3, 4}));
  folder.Write("scene/t.idx", "0 0 1 1 0 0 2 2 1=a\n");
  EXPECT_EQ(Stitch(folder, {"scene/t.idx", "-o", "o.bip"}).exitCode, 0);
  EXPECT_EQ(folder.Read("o.bip"), LittleBytes({1, 2, 3, 4}));
}

TEST(StitchCommand, ReadsOutsideTheFolderOnlyWhenToldTo) {
  TempFolder folder;
  folder.MakeFolder("scene");
  folder.Write("a", LittleBytes({1, 2, 3, 4}));
  folder.Write("scene/t.idx", "0 0 1 1 0 0 2 2 1=../a\n");
  EXPECT_EQ(Stitch(folder, {"scene/t.idx", "-o", "o.bip"}).exitCode, 1);
  EXPECT_FALSE(folder.Has("o.bip"));
  EXPECT_EQ(Stitch(folder, {"scene/t.idx", "--allow-outside", "-o", "o.bip"}).exitCode, 0);
  EXPECT_EQ(folder.Read("o.bip"), LittleBytes({1, 2, 3, 4}));
}

TEST(StitchCommand, TakesLevelZero) {
  TempFolder folder;
  folder.Write("a", LittleBytes({1, 2, 3, 4}));
  folder.Write("t.idx", "0 0 1 1 0 0 2 2 1=a\n");
  EXPECT_EQ(Stitch(folder, {"t.idx", "--level", "0", "-o", "o.bip"}).exitCode, 0);
  EXPECT_EQ(folder.Read("o.bip"), LittleBytes({1, 2, 3, 4}));
}

// A scene of random pixels cut into a grid with uneven edges, every tile's file with a random
// margin.
class Grid {
 public:
  Grid(const TempFolder& folder, unsigned int seed) : folder_(folder), random_(seed) {
    columns_ = Edges();
    rows_ = Edges();
    width_ = columns_.back();
    height_ = rows_.back();
    for (int band = 0; band < 3; ++band) {
      bands_.push_back(RandomSamples(static_cast<std::size_t>(width_ * height_), random_()));
    }
    for (std::size_t c = 0; c + 1 < columns_.size(); ++c) {
      for (std::size_t r = 0; r + 1 < rows_.size(); ++r) WriteTile(c, r);
    }
    folder_.Write("t.idx", index_);
  }

  long Width() const { return width_; }
  long Height() const { return height_; }
  Samples Pixels() const { return Interleave(bands_); }

 private:
  std::vector<long> Edges() {
    std::vector<long> edges = {0};
    const std::size_t count = 1 + random_() % 4;
    while (edges.size() <= count)
      edges.push_back(edges.back() + 2 + static_cast<long>(random_() % 150));
    return edges;
  }

  long Margin() { return static_cast<long>(random_() % 4); }

  void WriteTile(std::size_t c, std::size_t r) {
    const long left = columns_[c];
    const long top = rows_[r];
    const long w = columns_[c + 1] - left;
    const long h = rows_[r + 1] - top;
    const long srcLeft = Margin();
    const long srcTop = Margin();
    const long fileWidth = srcLeft + w + Margin();
    const long fileHeight = srcTop + h + Margin();
    for (const long number :
         {left, top, left + w - 1, top + h - 1, srcLeft, srcTop, fileWidth, fileHeight}) {
      index_ += std::to_string(number) + " ";
    }
    const bool big = random_() % 2 == 0;
    for (std::size_t band = 0; band < bands_.size(); ++band) {
      Samples file = RandomSamples(static_cast<std::size_t>(fileWidth * fileHeight), random_());
      for (long y = 0; y < h; ++y) {
        const auto from = bands_[band].begin() + (top + y) * width_ + left;
        std::copy(from, from + w, file.begin() + (srcTop + y) * fileWidth + srcLeft);
      }
      const std::string name =
          std::to_string(c) + "_" + std::to_string(r) + "_" + std::to_string(band);
      folder_.Write(name, big ? BigBytes(file) : LittleBytes(file));
      index_ += std::to_string(band) + "=" + name + (big ? ":big " : " ");
    }
    index_ += "\n";
  }

  const TempFolder& folder_;
  std::mt19937 random_;
  std::vector<long> columns_;
  std::vector<long> rows_;
  long width_;
  long height_;
  std::vector<Samples> bands_;
  std::string index_;
};

TEST(StitchCommand, GivesBackTheSceneThatWasCut) {
  for (unsigned int seed = 1; seed <= 5; ++seed) {
    TempFolder folder;
    const Grid grid(folder, seed);
    ASSERT_EQ(Stitch(folder, {"t.idx", "-o", "o.bip"}).exitCode, 0) << seed;
    ASSERT_EQ(folder.Read("o.bip"), LittleBytes(grid.Pixels())) << seed;
  }
}

TEST(StitchCommand, CutsTheAreaFromTheTopLeft) {
  for (unsigned int seed = 21; seed <= 24; ++seed) {
    TempFolder folder;
    const Grid grid(folder, seed);
    const long x = grid.Width() / 3;
    const long y = grid.Height() / 4;
    const long w = grid.Width() / 2;
    const long h = grid.Height() / 2;
    const std::string rect = std::to_string(x) + "," + std::to_string(y) + "," + std::to_string(w) +
                             "," + std::to_string(h);
    ASSERT_EQ(Stitch(folder, {"t.idx", "--rect", rect, "-o", "o.bip"}).exitCode, 0) << seed;
    const Samples expected = Cut(grid.Pixels(), grid.Width(), 3, x, y, w, h);
    ASSERT_EQ(folder.Read("o.bip"), LittleBytes(expected)) << seed;
  }
}

}  // namespace
