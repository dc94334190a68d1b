#include "host/raster/InterleavedFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/HostError.h"
#include "host/support/PixelRaster.h"
#include "host/support/Samples.h"
#include "support/TempFolder.h"

namespace {

void Write(const TempFolder& folder, const std::string& name) {
  PixelRaster raster(2, 2, 2, {1, 0x1234, 3, 4, 5, 6, 7, 65535});
  ravelin::AreaReader area(raster, 0, {0, 0, 2, 2}, name);
  ravelin::WriteInterleaved(area, {"Red", "Band 9"}, folder / name, nullptr);
}

TEST(InterleavedFile, HoldsLittleEndianPixelsTopRowFirst) {
  TempFolder folder;
  Write(folder, "a.bip");
  EXPECT_EQ(folder.Read("a.bip"), LittleBytes({1, 0x1234, 3, 4, 5, 6, 7, 65535}));
}

TEST(InterleavedFile, HasItsHeaderBesideIt) {
  TempFolder folder;
  Write(folder, "a.bip");
  EXPECT_EQ(folder.Read("a.hdr"),
            "ENVI\nsamples = 2\nlines = 2\nbands = 2\nheader offset = 0\n"
            "file type = ENVI Standard\ndata type = 12\ninterleave = bip\nbyte order = 0\n"
            "band names = {Red, Band 9}\n");
  EXPECT_THAT(folder.Names(), testing::ElementsAre("a.bip", "a.hdr"));
}

TEST(InterleavedFile, DoesNotAppearWithoutItsHeader) {
  TempFolder folder;
  folder.MakeFolder("a.hdr");
  EXPECT_THROW(Write(folder, "a.bip"), ravelin::HostError);
  EXPECT_THAT(folder.Names(), testing::ElementsAre("a.hdr"));
}

TEST(InterleavedFile, HandsOnTheRowsThatItWrites) {
  TempFolder folder;
  PixelRaster raster(2, 2, 1, {1, 2, 3, 4});
  ravelin::AreaReader area(raster, 0, {0, 0, 2, 2}, "a.bip");
  ravelin::PendingFile image(folder / "a.bip");
  ravelin::PendingFile header(folder / "a.hdr");
  Samples seen;
  const auto use = [&](const std::uint16_t* samples, long rows) {
    seen.insert(seen.end(), samples, samples + rows * 2);
  };
  ravelin::WriteInterleaved(area, {"Gray"}, image, header, use, nullptr);
  EXPECT_EQ(seen, Samples({1, 2, 3, 4}));
  EXPECT_FALSE(folder.Has("a.bip"));
  image.Commit();
  EXPECT_EQ(folder.Read("a.bip"), LittleBytes({1, 2, 3, 4}));
}

}  // namespace
