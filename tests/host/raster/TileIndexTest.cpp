#include "host/raster/TileIndex.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "host/HostError.h"
#include "host/support/ErrorOf.h"

namespace {

using ravelin::HostError;
using ravelin::TileIndex;
using testing::HasSubstr;
constexpr auto kBig = SatCommonUtils::TRawWordDibData::boBigEndian;
constexpr auto kLittle = SatCommonUtils::TRawWordDibData::boLittleEndian;

TileIndex Parse(const std::string& text) {
  return ravelin::ParseTileIndex(text, "t.idx");
}

std::string ErrorOf(const std::string& text) {
  return ::ErrorOf([&] { Parse(text); });
}

const std::string kTwoTiles =
    "# a scene\n"
    "0 0 9 7 0 0 10 8 red=a.raw green=b.raw:big\n"
    "\n"
    "10 0 14 7 2 1 8 9 green=\"d d.raw\":big red=c.raw\n";

TEST(TileIndex, ReadsTheFieldsOfATile) {
  const TileIndex index = Parse(kTwoTiles);
  ASSERT_EQ(index.tiles.size(), 2u);
  const ravelin::TileEntry& tile = index.tiles[1];
  EXPECT_EQ(tile.left, 10);
  EXPECT_EQ(tile.top, 0);
  EXPECT_EQ(tile.right, 14);
  EXPECT_EQ(tile.bottom, 7);
  EXPECT_EQ(tile.srcLeft, 2);
  EXPECT_EQ(tile.srcTop, 1);
  EXPECT_EQ(tile.fileSize.width, 8);
  EXPECT_EQ(tile.fileSize.height, 9);
  EXPECT_EQ(tile.line, 4u);
}

TEST(TileIndex, ReadsTheFilesOfATile) {
  const ravelin::TileEntry tile = Parse(kTwoTiles).tiles[0];
  ASSERT_EQ(tile.bands.size(), 2u);
  EXPECT_EQ(tile.bands[0].key, 6);
  EXPECT_EQ(tile.bands[0].file, "a.raw");
  EXPECT_EQ(tile.bands[0].order, kLittle);
  EXPECT_EQ(tile.bands[1].key, 4);
  EXPECT_EQ(tile.bands[1].order, kBig);
}

TEST(TileIndex, ReadsNamesWithBlanksInQuotes) {
  const ravelin::TileEntry tile = Parse(kTwoTiles).tiles[1];
  EXPECT_EQ(tile.bands[0].file, "d d.raw");
  EXPECT_EQ(tile.bands[0].order, kBig);
}

TEST(TileIndex, TakesAByteOrderInQuotesForAPartOfTheName) {
  const ravelin::TileEntry tile = Parse("0 0 9 7 0 0 10 8 1=\"a:big\"\n").tiles[0];
  EXPECT_EQ(tile.bands[0].file, "a:big");
  EXPECT_EQ(tile.bands[0].order, kLittle);
}

TEST(TileIndex, SkipsCommentsAndBlankLines) {
  EXPECT_EQ(Parse("# x\n \t\n  # y\n0 0 9 7 0 0 10 8 1=a\n#z").tiles.size(), 1u);
}

TEST(TileIndex, TakesTabsAndCarriageReturnsForBlanks) {
  const TileIndex index = Parse("0\t0\t9  7 0 0 10 8\t1=a.raw\r\n");
  EXPECT_EQ(index.tiles.at(0).bands.at(0).file, "a.raw");
}

TEST(TileIndex, SkipsAByteOrderMark) {
  EXPECT_EQ(Parse("\xef\xbb\xbf"
                  "0 0 9 7 0 0 10 8 1=a\n")
                .tiles.size(),
            1u);
}

TEST(TileIndex, ReachesFromTheSmallestToTheLargestEdge) {
  const TileIndex index = Parse("5 8 9 9 0 0 5 2 1=a\n3 9 4 20 0 0 2 12 1=b\n");
  EXPECT_EQ(index.Left(), 3);
  EXPECT_EQ(index.Top(), 8);
  EXPECT_EQ(index.Size().width, 7);
  EXPECT_EQ(index.Size().height, 13);
}

TEST(TileIndex, NamesTheLineAndTheFieldThatIsNoNumber) {
  EXPECT_EQ(ErrorOf("\n0 0 9 seven 0 0 10 8 1=a\n"),
            "t.idx: line 2: bottom is 'seven', not a whole number from 0 to 2147483646; give left "
            "top right bottom srcLeft srcTop width height, then the files");
}

TEST(TileIndex, RefusesNumbersOutOfRange) {
  EXPECT_THAT(ErrorOf("-1 0 9 7 0 0 10 8 1=a\n"), HasSubstr("left is '-1'"));
  EXPECT_THAT(ErrorOf("0 0 9 7 0 0 0 8 1=a\n"), HasSubstr("width is '0'"));
  EXPECT_THAT(ErrorOf("0 0 2147483647 7 0 0 10 8 1=a\n"), HasSubstr("right is '2147483647'"));
  EXPECT_THAT(ErrorOf("0 0 9 7 0 99999999999999999999 10 8 1=a\n"), HasSubstr("srcTop is"));
}

TEST(TileIndex, RefusesATileThatEndsBeforeItBegins) {
  EXPECT_THAT(ErrorOf("5 0 4 7 0 0 10 8 1=a\n"), HasSubstr("ends before it begins"));
  EXPECT_THAT(ErrorOf("0 5 9 4 0 0 10 8 1=a\n"), HasSubstr("ends before it begins"));
}

TEST(TileIndex, RefusesContentOutsideTheFiles) {
  EXPECT_THAT(ErrorOf("0 0 9 7 1 0 10 8 1=a\n"),
              HasSubstr("the tile's 10 x 8 pixels from 1,0 do not lie in its files of 10 x 8"));
  EXPECT_THAT(ErrorOf("0 0 9 7 0 1 10 8 1=a\n"), HasSubstr("do not lie in its files"));
}

TEST(TileIndex, RefusesATileWithoutFiles) {
  EXPECT_THAT(ErrorOf("0 0 9 7 0 0 10 8\n"), HasSubstr("the tile has no file"));
  EXPECT_THAT(ErrorOf("0 0 9 7 0 0 10\n"), HasSubstr("height is ''"));
}

TEST(TileIndex, RefusesMalformedFiles) {
  EXPECT_THAT(ErrorOf("0 0 9 7 0 0 10 8 a.raw\n"), HasSubstr("not of the form KEY=FILE"));
  EXPECT_THAT(ErrorOf("0 0 9 7 0 0 10 8 1=\"a.raw\n"), HasSubstr("quote is not closed"));
  EXPECT_THAT(ErrorOf("0 0 9 7 0 0 10 8 1=\"\"\n"), HasSubstr("a file name is empty"));
  EXPECT_THAT(ErrorOf("0 0 9 7 0 0 10 8 1=\"a\":mid\n"), HasSubstr("no byte order"));
  EXPECT_THAT(ErrorOf("0 0 9 7 0 0 10 8 pink=a\n"), HasSubstr("no band key"));
}

TEST(TileIndex, RefusesAKeyTwiceInATile) {
  EXPECT_THAT(ErrorOf("0 0 9 7 0 0 10 8 red=a 6=b\n"),
              HasSubstr("line 1: the key 6 stands there twice"));
}

TEST(TileIndex, RefusesTilesWithDifferentKeys) {
  EXPECT_THAT(ErrorOf("0 0 9 7 0 0 10 8 red=a\n10 0 19 7 0 0 10 8 blue=b\n"),
              HasSubstr("line 2: the tile's keys are not those of the first tile"));
}

TEST(TileIndex, RefusesAnIndexWithoutTiles) {
  EXPECT_THAT(ErrorOf(""), HasSubstr("ends without a tile"));
  EXPECT_THAT(ErrorOf("# nothing\n"), HasSubstr("ends without a tile"));
}

TEST(TileIndex, RefusesASceneOnePixelWideOrHigh) {
  EXPECT_THAT(ErrorOf("0 0 0 7 0 0 1 8 1=a\n"), HasSubstr("a scene of 1 x 8 pixels"));
  EXPECT_THAT(ErrorOf("0 0 7 0 0 0 8 1 1=a\n"), HasSubstr("a scene of 8 x 1 pixels"));
}

TEST(TileIndex, RefusesTilesThatHardlyCoverTheirScene) {
  EXPECT_THAT(ErrorOf("0 0 1 1 0 0 2 2 1=a\n2000000000 0 2000000001 1 0 0 2 2 1=b\n"),
              HasSubstr("cover less than a pixel in 1000"));
}

TEST(TileIndex, RefusesANulByte) {
  EXPECT_THAT(ErrorOf(std::string("0 0 9 7 0 0 10 8 1=a\0b\n", 23)), HasSubstr("NUL"));
}

TEST(TileIndex, RefusesALineThatIsTooLong) {
  const std::string line = "0 0 9 7 0 0 10 8 1=";
  EXPECT_EQ(Parse(line + std::string(ravelin::kMaxIndexLine - line.size(), 'a')).tiles.size(), 1u);
  EXPECT_THAT(ErrorOf(line + std::string(ravelin::kMaxIndexLine, 'a')),
              HasSubstr("line 1: is longer than 65536 bytes"));
}

// What every index that is taken promises.
void ExpectWhole(const TileIndex& index) {
  ASSERT_FALSE(index.tiles.empty());
  for (const ravelin::TileEntry& tile : index.tiles) {
    EXPECT_LE(0, tile.left);
    EXPECT_LE(tile.left, tile.right);
    EXPECT_LE(0, tile.top);
    EXPECT_LE(tile.top, tile.bottom);
    EXPECT_LE(0, tile.srcLeft);
    EXPECT_LE(tile.srcLeft + tile.right - tile.left + 1, tile.fileSize.width);
    EXPECT_LE(0, tile.srcTop);
    EXPECT_LE(tile.srcTop + tile.bottom - tile.top + 1, tile.fileSize.height);
    std::set<int> keys;
    for (const auto& band : tile.bands) EXPECT_TRUE(keys.insert(band.key).second);
    EXPECT_FALSE(keys.empty());
  }
  EXPECT_GE(index.Size().width, 2);
  EXPECT_GE(index.Size().height, 2);
}

void ExpectWholeOrRefusedWithItsLine(const std::string& text) {
  try {
    ExpectWhole(Parse(text));
  } catch (const HostError& error) {
    EXPECT_THAT(error.what(), testing::StartsWith("t.idx: line ")) << text;
  }
}

TEST(TileIndex, CutAtAnyByteIsWholeOrRefusedWithItsLine) {
  for (std::size_t length = 0; length <= kTwoTiles.size(); ++length) {
    ExpectWholeOrRefusedWithItsLine(kTwoTiles.substr(0, length));
  }
}

TEST(TileIndex, WithAnyByteChangedIsWholeOrRefusedWithItsLine) {
  for (std::size_t i = 0; i < kTwoTiles.size(); ++i) {
    for (int byte = 0; byte < 256; ++byte) {
      std::string text = kTwoTiles;
      text[i] = static_cast<char>(byte);
      ExpectWholeOrRefusedWithItsLine(text);
    }
  }
}

}  // namespace
