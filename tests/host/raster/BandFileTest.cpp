#include "host/raster/BandFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "host/HostError.h"
#include "host/support/ErrorOf.h"
#include "host/support/Samples.h"
#include "support/TempFolder.h"

namespace {

using ravelin::BandFile;
using ravelin::BandLayout;
using ravelin::HostError;
using testing::HasSubstr;

constexpr auto kBig = SatCommonUtils::TRawWordDibData::boBigEndian;

BandLayout Layout(long width, long height, unsigned long offset = 0) {
  BandLayout layout;
  layout.size = {width, height};
  layout.offset = offset;
  layout.remedy = "check";
  layout.shortRemedy = "lengthen";
  return layout;
}

BandLayout ShortAllowed(long width, long height, unsigned long offset = 0) {
  BandLayout layout = Layout(width, height, offset);
  layout.allowShort = true;
  return layout;
}

std::string ErrorOf(const std::string& path, const BandLayout& layout) {
  return ::ErrorOf([&] { BandFile band(path, layout); });
}

// The whole band, top row first.
Samples PixelsOf(BandFile& band) {
  Samples pixels(static_cast<std::size_t>(band.width * band.height));
  const long stride = band.width * 2;
  auto* last = reinterpret_cast<unsigned char*>(pixels.data()) + (band.height - 1) * stride;
  EXPECT_EQ(band.GetRect({last, -stride}, band.Bounds(), iqNearest, 0, nullptr), kvDibWritten);
  return pixels;
}

TEST(BandFile, GivesTheSamplesOfTheFile) {
  TempFolder folder;
  const Samples samples = {1, 2, 3, 4, 5, 65535};
  folder.Write("a.raw", LittleBytes(samples));
  BandFile band(folder / "a.raw", Layout(3, 2));
  EXPECT_EQ(PixelsOf(band), samples);
}

TEST(BandFile, GivesBigEndianSamples) {
  TempFolder folder;
  const Samples samples = {1, 2, 3, 4, 5, 65280};
  folder.Write("a.raw", BigBytes(samples));
  BandLayout layout = Layout(2, 3);
  layout.order = kBig;
  BandFile band(folder / "a.raw", layout);
  EXPECT_EQ(PixelsOf(band), samples);
}

TEST(BandFile, SkipsTheHeader) {
  TempFolder folder;
  const Samples samples = {1, 2, 3, 4};
  folder.Write("a.raw", "head!" + LittleBytes(samples));
  BandFile band(folder / "a.raw", Layout(2, 2, 5));
  EXPECT_EQ(PixelsOf(band), samples);
}

TEST(BandFile, RefusesAFileThatIsTooShortWithBothFigures) {
  TempFolder folder;
  folder.Write("a.raw", std::string(11, 'x'));
  EXPECT_EQ(ErrorOf(folder / "a.raw", Layout(3, 2)),
            (folder / "a.raw") + ": holds 11 bytes, but 3 x 2 pixels of 2 bytes make 12; lengthen");
}

TEST(BandFile, RefusesAFileThatIsTooLongWithBothFigures) {
  TempFolder folder;
  folder.Write("a.raw", std::string(20, 'x'));
  const std::string error =
      ": holds 20 bytes, but 3 x 2 pixels of 2 bytes behind 7 bytes of "
      "header make 19; check";
  EXPECT_EQ(ErrorOf(folder / "a.raw", Layout(3, 2, 7)), (folder / "a.raw") + error);
  EXPECT_EQ(ErrorOf(folder / "a.raw", ShortAllowed(3, 2, 7)), (folder / "a.raw") + error);
}

TEST(BandFile, MakesMissingPixelsBlackWhereShortFilesAreAllowed) {
  TempFolder folder;
  folder.Write("a.raw", "h" + LittleBytes({1, 2, 3, 4}) + "x");
  BandFile band(folder / "a.raw", ShortAllowed(3, 3, 1));
  EXPECT_EQ(PixelsOf(band), (Samples{1, 2, 3, 4, 0, 0, 0, 0, 0}));
  EXPECT_EQ(band.MissingBytes(), 9u);
}

TEST(BandFile, TakesAnEmptyFileWhereShortFilesAreAllowed) {
  TempFolder folder;
  folder.Write("a.raw", "");
  BandFile band(folder / "a.raw", ShortAllowed(2, 1));
  EXPECT_EQ(PixelsOf(band), (Samples{0, 0}));
}

TEST(BandFile, RefusesWhatIsNoRegularFile) {
  TempFolder folder;
  mkfifo((folder / "pipe").c_str(), 0600);
  EXPECT_THAT(ErrorOf(folder / "missing", Layout(1, 1)), HasSubstr("no such file; check the name"));
  EXPECT_THAT(ErrorOf(folder.Path(), Layout(1, 1)), HasSubstr("is a folder"));
  EXPECT_THAT(ErrorOf(folder / "pipe", Layout(1, 1)), HasSubstr("is not a regular file"));
}

TEST(BandFile, RefusesAFileWithoutPermission) {
  if (geteuid() == 0) GTEST_SKIP() << "the super-user may read everything";
  TempFolder folder;
  folder.Write("a.raw", "ab");
  chmod((folder / "a.raw").c_str(), 0);
  EXPECT_THAT(ErrorOf(folder / "a.raw", Layout(1, 1)), HasSubstr("cannot be opened"));
}

TEST(BandFile, RefusesSizesThatNoFileHas) {
  TempFolder folder;
  folder.Write("a.raw", "ab");
  const std::string path = folder / "a.raw";
  EXPECT_THAT(ErrorOf(path, Layout(2147483647, 2147483647, 1ul << 62)), HasSubstr("no file is"));
  EXPECT_THAT(ErrorOf(path, Layout(1, 1, ~0ul)), HasSubstr("no file is that long"));
}

TEST(BandFile, ThrowsWhenTheFileIsCutWhileItIsRead) {
  TempFolder folder;
  folder.Write("a.raw", LittleBytes({1, 2, 3, 4}));
  BandFile band(folder / "a.raw", Layout(2, 2));
  std::filesystem::resize_file(folder / "a.raw", 6);
  Samples pixels(4);
  const TKvDibDataOutBuffer out = {reinterpret_cast<unsigned char*>(pixels.data()), 4};
  EXPECT_THROW(band.GetRect(out, band.Bounds(), iqNearest, 0, nullptr), HostError);
}

}  // namespace
