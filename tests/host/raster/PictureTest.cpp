#include "host/raster/Picture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "host/support/PixelRaster.h"
#include "host/support/PngFile.h"
#include "host/support/Samples.h"
#include "support/TempFolder.h"

namespace {

using ravelin::PictureOptions;
using ravelin::StretchKind;

struct Image {
  long width;
  long height;
  long bands;
  Samples pixels;
};

PngFile PictureOf(const Image& image, const PictureOptions& options,
                  std::ostream* terminal = nullptr) {
  TempFolder folder;
  PixelRaster raster(image.width, image.height, image.bands, image.pixels);
  ravelin::AreaReader area(raster, 0, {0, 0, image.width, image.height}, "a.png");
  ravelin::WritePicture(area, options, folder / "a.png", terminal);
  return ReadPng(folder / "a.png");
}

PictureOptions Fixed(std::uint16_t low, std::uint16_t high, int bits = 8) {
  return {{StretchKind::kFixed, low, high}, bits};
}

PictureOptions Unstretched(int bits) {
  return {{StretchKind::kNone, 0, 0}, bits};
}

// The stretch by its definition, a channel at a time.
Samples NaivePicture(const Image& image, int bits) {
  const std::size_t bands = static_cast<std::size_t>(image.bands);
  const std::size_t shown = image.bands >= 3 ? 3 : 1;
  const std::size_t count = image.pixels.size() / bands;
  Samples picture(count * shown);
  for (std::size_t c = 0; c < shown; ++c) {
    Samples sorted;
    for (std::size_t i = 0; i < count; ++i) {
      if (image.pixels[i * bands + c] != 0) sorted.push_back(image.pixels[i * bands + c]);
    }
    std::sort(sorted.begin(), sorted.end());
    const double low = sorted[(sorted.size() * 2 + 99) / 100 - 1];
    const double high = sorted[(sorted.size() * 98 + 99) / 100 - 1];
    const double brightest = bits == 8 ? 255 : 65535;
    for (std::size_t i = 0; i < count; ++i) {
      const double part = (image.pixels[i * bands + c] - low) / (high - low);
      const double value = std::clamp(part, 0.0, 1.0) * brightest;
      picture[i * shown + c] = static_cast<std::uint16_t>(value + 0.5);
    }
  }
  return picture;
}

TEST(Picture, HasTheTopRowFirst) {
  const PngFile png = PictureOf({2, 2, 1, {0x0100, 0x0200, 0x0300, 0x0400}}, Unstretched(8));
  EXPECT_THAT(png.samples, testing::ElementsAre(1, 2, 3, 4));
}

TEST(Picture, ShowsTheFirstThreeChannelsAsRedGreenBlue) {
  const PngFile png =
      PictureOf({1, 1, 5, {0x0100, 0x0200, 0x0300, 0x0400, 0x0500}}, Unstretched(8));
  EXPECT_EQ(png.channels, 3);
  EXPECT_THAT(png.samples, testing::ElementsAre(1, 2, 3));
}

TEST(Picture, ShowsOneChannelAsGrey) {
  EXPECT_EQ(PictureOf({1, 1, 1, {0x0700}}, Unstretched(8)).channels, 1);
}

TEST(Picture, ShowsTheFirstOfTwoChannelsAsGrey) {
  const PngFile png = PictureOf({2, 1, 2, {0x0100, 0x0200, 0x0300, 0x0400}}, Unstretched(8));
  EXPECT_EQ(png.channels, 1);
  EXPECT_THAT(png.samples, testing::ElementsAre(1, 3));
}

TEST(Picture, KeepsSixteenBitsWithoutStretch) {
  const PngFile png = PictureOf({3, 1, 1, {0, 0x1234, 0xffff}}, Unstretched(16));
  EXPECT_EQ(png.bits, 16);
  EXPECT_THAT(png.samples, testing::ElementsAre(0, 0x1234, 0xffff));
}

TEST(Picture, StretchesBetweenGivenLimits) {
  const PngFile png = PictureOf({5, 1, 1, {0, 100, 150, 200, 300}}, Fixed(100, 200));
  EXPECT_THAT(png.samples, testing::ElementsAre(0, 0, 128, 255, 255));
}

TEST(Picture, StretchesToSixteenBits) {
  const PngFile png = PictureOf({3, 1, 1, {100, 150, 200}}, Fixed(100, 200, 16));
  EXPECT_THAT(png.samples, testing::ElementsAre(0, 32768, 65535));
}

TEST(Picture, StretchesEachChannelByItsOwnPercentiles) {
  const PngFile png = PictureOf({2, 1, 3, {10, 1000, 7, 20, 3000, 9}}, {});
  EXPECT_THAT(png.samples, testing::ElementsAre(0, 0, 0, 255, 255, 255));
}

TEST(Picture, AgreesWithTheStretchByItsDefinition) {
  for (unsigned int seed = 1; seed <= 6; ++seed) {
    const long bands = 1 + seed % 4;
    const long width = 40 + seed;
    const long height = 300;
    const Image image = {width, height, bands,
                         RandomSamples(static_cast<std::size_t>(width * height * bands), seed)};
    for (const int bits : {8, 16}) {
      EXPECT_EQ(PictureOf(image, {{}, bits}).samples, NaivePicture(image, bits)) << seed;
    }
  }
}

TEST(Picture, TakesAChannelOfOneValue) {
  const PngFile png = PictureOf({2, 1, 1, {500, 0}}, {});
  EXPECT_THAT(png.samples, testing::ElementsAre(128, 0));
}

TEST(Picture, TakesABlackChannel) {
  EXPECT_THAT(PictureOf({2, 1, 1, {0, 0}}, {}).samples, testing::ElementsAre(0, 0));
}

TEST(Picture, ShowsItsProgressOnATerminal) {
  std::ostringstream terminal;
  PictureOf({2, 2, 1, {1, 2, 3, 4}}, {}, &terminal);
  EXPECT_THAT(terminal.str(), testing::HasSubstr(" 50 %"));
  EXPECT_THAT(terminal.str(), testing::HasSubstr("100 %"));
}

TEST(Picture, TakesGivenLimitsOfEachChannel) {
  PictureOptions options;
  options.limits = {{0, 255}, {100, 355}, {0, 510}};
  const PngFile picture = PictureOf({1, 1, 4, {7, 107, 20, 9}}, options);
  EXPECT_EQ(picture.samples, Samples({7, 7, 10}));
}

}  // namespace
