#include "host/raster/PngWriter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/HostError.h"
#include "host/support/ErrorOf.h"
#include "host/support/PngFile.h"
#include "support/TempFolder.h"

namespace {

using ravelin::HostError;
using ravelin::PendingFile;
using ravelin::PngWriter;
using testing::ElementsAre;

TEST(PngWriter, WritesGreyOfEightBits) {
  TempFolder folder;
  PendingFile file(folder / "a.png");
  PngWriter writer(file, {3, 2, 1, 8}, "a.png");
  const std::uint8_t rows[] = {1, 2, 3, 4, 5, 255};
  writer.WriteRow(rows);
  writer.WriteRow(rows + 3);
  writer.Finish();
  file.Commit();
  const PngFile png = ReadPng(folder / "a.png");
  EXPECT_EQ(png.width, 3);
  EXPECT_EQ(png.height, 2);
  EXPECT_EQ(png.channels, 1);
  EXPECT_EQ(png.bits, 8);
  EXPECT_THAT(png.samples, ElementsAre(1, 2, 3, 4, 5, 255));
}

TEST(PngWriter, WritesColoursOfSixteenBitsUpperByteFirst) {
  TempFolder folder;
  PendingFile file(folder / "a.png");
  PngWriter writer(file, {1, 1, 3, 16}, "a.png");
  const std::uint8_t row[] = {0x12, 0x34, 0x00, 0x01, 0xff, 0xfe};
  writer.WriteRow(row);
  writer.Finish();
  file.Commit();
  const PngFile png = ReadPng(folder / "a.png");
  EXPECT_EQ(png.channels, 3);
  EXPECT_EQ(png.bits, 16);
  EXPECT_THAT(png.samples, ElementsAre(0x1234, 0x0001, 0xfffe));
}

TEST(PngWriter, RefusesWhatNoPngCanBe) {
  TempFolder folder;
  PendingFile file(folder / "a.png");
  EXPECT_THAT(ErrorOf([&] {
                PngWriter writer(file, {0, 1, 1, 8}, "a.png");
              }),
              testing::StartsWith("a.png: cannot be made a PNG: "));
}

TEST(PngWriter, RefusesToFinishWithRowsMissing) {
  TempFolder folder;
  PendingFile file(folder / "a.png");
  PngWriter writer(file, {1, 2, 1, 8}, "a.png");
  const std::uint8_t row[] = {1};
  writer.WriteRow(row);
  EXPECT_THROW(writer.Finish(), HostError);
}

TEST(PngWriter, TakesWidthsBeyondAMillion) {
  TempFolder folder;
  PendingFile file(folder / "a.png");
  PngWriter writer(file, {1500000, 1, 1, 8}, "a.png");
  writer.WriteRow(std::vector<std::uint8_t>(1500000, 9).data());
  writer.Finish();
  file.Commit();
  EXPECT_GT(folder.Read("a.png").size(), 100u);
}

}  // namespace
