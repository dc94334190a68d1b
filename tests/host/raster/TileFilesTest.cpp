#include "host/raster/TileFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "host/HostError.h"
#include "host/support/ErrorOf.h"
#include "support/TempFolder.h"

namespace {

using ravelin::HostError;
using ravelin::OutsideIndexFolder;
using ravelin::ResolveTileFile;

class TileFiles : public testing::Test {
 protected:
  void SetUp() override {
    folder_.MakeFolder("in");
    folder_.MakeFolder("in/deep");
    folder_.MakeFolder("inside-by-name-only");
    folder_.Write("in/t.idx", "");
    folder_.Write("out.raw", "");
  }

  std::string Resolve(const std::string& name, bool allowOutside = false) const {
    return ResolveTileFile(folder_ / "in/t.idx", name, allowOutside);
  }

  std::string Real(const std::string& name) const {
    return std::filesystem::weakly_canonical(folder_ / name).string();
  }

  TempFolder folder_;
};

TEST_F(TileFiles, AreLookedUpBesideTheIndex) {
  EXPECT_EQ(Resolve("a.raw"), Real("in/a.raw"));
  EXPECT_EQ(Resolve("deep/a.raw"), Real("in/deep/a.raw"));
}

TEST_F(TileFiles, MayGoUpAsLongAsTheyStayInside) {
  EXPECT_EQ(Resolve("deep/../a.raw"), Real("in/a.raw"));
}

TEST_F(TileFiles, MayBeAbsoluteInsideTheFolder) {
  EXPECT_EQ(Resolve(folder_ / "in/a.raw"), Real("in/a.raw"));
}

TEST_F(TileFiles, AreRefusedAboveTheFolder) {
  EXPECT_THROW(Resolve("../out.raw"), OutsideIndexFolder);
  EXPECT_THROW(Resolve("deep/../../out.raw"), OutsideIndexFolder);
  EXPECT_THROW(Resolve("missing/../../out.raw"), OutsideIndexFolder);
}

TEST_F(TileFiles, AreRefusedAtAnAbsolutePlaceElsewhere) {
  EXPECT_THROW(Resolve(folder_ / "out.raw"), OutsideIndexFolder);
  EXPECT_THROW(Resolve("/etc/hostname"), OutsideIndexFolder);
}

TEST_F(TileFiles, AreRefusedInAFolderWhoseNameOnlyBeginsAlike) {
  EXPECT_THROW(Resolve("../inside-by-name-only/a.raw"), OutsideIndexFolder);
}

TEST_F(TileFiles, AreRefusedThroughALinkThatLeadsOutside) {
  std::filesystem::create_symlink(folder_ / "out.raw", folder_ / "in/link.raw");
  std::filesystem::create_directory_symlink(folder_.Path(), folder_ / "in/up");
  EXPECT_THROW(Resolve("link.raw"), OutsideIndexFolder);
  EXPECT_THROW(Resolve("up/out.raw"), OutsideIndexFolder);
}

TEST_F(TileFiles, AreTakenThroughALinkThatStaysInside) {
  folder_.Write("in/deep/a.raw", "");
  std::filesystem::create_symlink("deep/a.raw", folder_ / "in/link.raw");
  EXPECT_EQ(Resolve("link.raw"), Real("in/deep/a.raw"));
}

TEST_F(TileFiles, MayLieAnywhereWhenThatIsAllowed) {
  EXPECT_EQ(Resolve("../out.raw", true), Real("out.raw"));
  EXPECT_EQ(Resolve(folder_ / "out.raw", true), Real("out.raw"));
}

TEST_F(TileFiles, SayWhatToDoWhenRefused) {
  EXPECT_EQ(
      ErrorOf([&] { Resolve("../out.raw"); }),
      "../out.raw: leads outside the folder of the index; add --allow-outside if the index may "
      "read it");
}

TEST_F(TileFiles, EndInAnErrorWhenALinkLeadsInCircles) {
  std::filesystem::create_symlink("circle", folder_ / "in/circle");
  EXPECT_EQ(ErrorOf([&] { Resolve("circle"); }),
            "circle: cannot be found: Too many levels of symbolic links; check the name in the "
            "index");
}

TEST_F(TileFiles, EndInAnErrorWhenTheNameIsTooLong) {
  EXPECT_THROW(Resolve(std::string(5000, 'a')), HostError);
}

TEST(TileIndexFile, IsReadFromItsPath) {
  TempFolder folder;
  folder.Write("t.idx", "0 0 9 7 0 0 10 8 1=a\n");
  EXPECT_EQ(ravelin::ReadTileIndex(folder / "t.idx").tiles.size(), 1u);
}

TEST(TileIndexFile, IsRefusedWhenItIsMissingAFolderOrTooLong) {
  TempFolder folder;
  folder.MakeFolder("folder");
  folder.WriteSparse("long", ravelin::kMaxIndexBytes + 1);
  EXPECT_THROW(ravelin::ReadTileIndex(folder / "missing"), HostError);
  EXPECT_THROW(ravelin::ReadTileIndex(folder / "folder"), HostError);
  EXPECT_THROW(ravelin::ReadTileIndex(folder / "long"), HostError);
}

}  // namespace
