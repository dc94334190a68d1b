#include "host/raster/TileSet.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/raster/TileFiles.h"
#include "host/support/ErrorOf.h"
#include "host/support/Samples.h"
#include "support/TempFolder.h"

namespace {

using ravelin::TileSet;

TileSet Open(const TempFolder& folder, const std::string& index) {
  folder.Write("t.idx", index);
  return ravelin::OpenTileSet(ravelin::ReadTileIndex(folder / "t.idx"), folder / "t.idx", false);
}

// The whole scene, top row first.
Samples PixelsOf(const TileSet& set) {
  auto& raster = *set.raster;
  const long stride = raster.width * raster.bandsCount * 2;
  Samples pixels(static_cast<std::size_t>(raster.height * stride / 2), 77);
  auto* last = reinterpret_cast<unsigned char*>(pixels.data()) + (raster.height - 1) * stride;
  EXPECT_EQ(raster.GetRect({last, -stride}, raster.Bounds(), iqNearest, 0, nullptr), kvDibWritten);
  return pixels;
}

TEST(TileSet, PutsTilesWhereTheIndexSays) {
  TempFolder folder;
  folder.Write("l", LittleBytes({1, 2, 5, 6}));
  folder.Write("r", BigBytes({3, 4, 7, 8}));
  const TileSet set = Open(folder, "0 0 1 1 0 0 2 2 1=l\n2 0 3 1 0 0 2 2 1=r:big\n");
  EXPECT_EQ(PixelsOf(set), (Samples{1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(TileSet, LeavesTheMarginsOfTilesOut) {
  TempFolder folder;
  folder.Write("t", LittleBytes({9, 9, 9, 9, 1, 2, 9, 3, 4}));
  EXPECT_EQ(PixelsOf(Open(folder, "0 0 1 1 1 1 3 3 1=t\n")), (Samples{1, 2, 3, 4}));
}

TEST(TileSet, IsBlackWhereThereIsNoTile) {
  TempFolder folder;
  folder.Write("a", LittleBytes({1, 2, 3, 4}));
  folder.Write("b", LittleBytes({5}));
  const TileSet set = Open(folder, "0 0 1 1 0 0 2 2 1=a\n2 1 2 1 0 0 1 1 1=b\n");
  EXPECT_EQ(PixelsOf(set), (Samples{1, 2, 0, 3, 4, 5}));
}

TEST(TileSet, BeginsAtTheSmallestEdges) {
  TempFolder folder;
  folder.Write("a", LittleBytes({1, 2, 3, 4}));
  EXPECT_EQ(PixelsOf(Open(folder, "100 50 101 51 0 0 2 2 1=a\n")), (Samples{1, 2, 3, 4}));
}

TEST(TileSet, ComposesTilesOfSeveralFilesRedGreenBlueFirst) {
  TempFolder folder;
  folder.Write("b", LittleBytes({3, 3, 3, 3}));
  folder.Write("g", LittleBytes({4, 4, 4, 4}));
  folder.Write("r", LittleBytes({6, 6, 6, 6}));
  folder.Write("n", LittleBytes({1, 1, 1, 1}));
  const TileSet set = Open(folder, "0 0 1 1 0 0 2 2 blue=b green=g red=r 1=n\n");
  EXPECT_EQ(PixelsOf(set), (Samples{6, 4, 3, 1, 6, 4, 3, 1, 6, 4, 3, 1, 6, 4, 3, 1}));
  EXPECT_THAT(set.keys, testing::ElementsAre(6, 4, 3, 1));
}

TEST(TileSet, KeepsTheKeyOfASingleBand) {
  TempFolder folder;
  folder.Write("a", LittleBytes({1, 2, 3, 4}));
  EXPECT_THAT(Open(folder, "0 0 1 1 0 0 2 2 -9=a\n").keys, testing::ElementsAre(-9));
}

TEST(TileSet, NamesAFileThatIsMissing) {
  TempFolder folder;
  EXPECT_THAT(ErrorOf([&] { Open(folder, "0 0 1 1 0 0 2 2 1=a\n"); }),
              testing::EndsWith("/a: no such file; check the name"));
}

TEST(TileSet, NamesAFileOfTheWrongSize) {
  TempFolder folder;
  folder.Write("a", "1234567");
  EXPECT_THAT(
      ErrorOf([&] { Open(folder, "0 0 1 1 0 0 2 2 1=a\n"); }),
      testing::EndsWith("/a: holds 7 bytes, but 2 x 2 pixels of 2 bytes make 8; check width "
                        "and height in line 1 of the index"));
}

TEST(TileSet, OpensMoreFilesThanAProcessMayByDefault) {
  TempFolder folder;
  std::string index;
  Samples expected;
  for (int i = 0; i < 1200; ++i) {
    const auto sample = static_cast<std::uint16_t>(i + 1);
    const std::string name = std::to_string(i);
    folder.Write(name, LittleBytes({sample, sample}));
    index += std::to_string(i) + " 0 " + std::to_string(i) + " 1 0 0 1 2 1=" + name + "\n";
    expected.push_back(sample);
  }
  const Samples pixels = PixelsOf(Open(folder, index));
  EXPECT_EQ(Samples(pixels.begin(), pixels.begin() + 1200), expected);
}

}  // namespace
