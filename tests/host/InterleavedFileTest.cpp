#include "host/InterleavedFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/HostError.h"
#include "host/support/PixelRaster.h"
#include "host/support/Samples.h"
#include "host/support/TempFolder.h"

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

}  // namespace
