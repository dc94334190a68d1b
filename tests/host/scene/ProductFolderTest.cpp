#include "host/scene/ProductFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "host/scene/support/Scopes.h"
#include "host/support/ErrorOf.h"
#include "support/TempFolder.h"

namespace {

using namespace ravelin;
using testing::HasSubstr;

TEST(ProductFolder, MustBeThere) {
  EXPECT_THAT(ErrorOf([] { ProductFolder("/no/such"); }), HasSubstr("/no/such: no such folder"));
  TempFolder folder;
  folder.Write("file", "");
  EXPECT_THAT(ErrorOf([&] { ProductFolder(folder / "file"); }), HasSubstr("is not a folder"));
}

TEST(ProductFolder, MustBeReadable) {
  if (geteuid() == 0) GTEST_SKIP() << "the super-user may read everything";
  TempFolder folder;
  folder.MakeFolder("in");
  chmod((folder / "in").c_str(), 0);
  EXPECT_THAT(ErrorOf([&] { ProductFolder(folder / "in"); }), HasSubstr("cannot be read"));
  chmod((folder / "in").c_str(), 0700);
}

TEST(ProductFolder, HasItsOwnName) {
  TempFolder folder;
  folder.MakeFolder("in");
  EXPECT_EQ(ProductFolder(folder / "in/").Name(), "in");
  EXPECT_EQ(ProductFolder(folder / "in/../in/.").Name(), "in");
  EXPECT_EQ(ProductFolder("/").Name(), "");
}

TEST(ProductFolder, FindsFilesWithoutRegardToCase) {
  TempFolder folder;
  folder.Write("Red_B4.RAW", "");
  const ProductFolder product(folder.Path());
  EXPECT_EQ(product.Find("red_b4.raw"), folder / "Red_B4.RAW");
  EXPECT_EQ(product.Find("Red_B4.RAW"), folder / "Red_B4.RAW");
  EXPECT_EQ(product.Find("red_b5.raw"), std::nullopt);
  EXPECT_EQ(product.Find(""), std::nullopt);
}

TEST(ProductFolder, PrefersTheVeryName) {
  TempFolder folder;
  folder.Write("A.raw", "");
  folder.Write("a.raw", "");
  EXPECT_EQ(ProductFolder(folder.Path()).Find("a.raw"), folder / "a.raw");
  EXPECT_EQ(ProductFolder(folder.Path()).Find("A.raw"), folder / "A.raw");
}

TEST(ProductFolder, FindsFilesInFoldersWithoutRegardToCase) {
  TempFolder folder;
  folder.MakeFolder("Tiles");
  folder.Write("Tiles/a.raw", "");
  const ProductFolder product(folder.Path());
  EXPECT_EQ(product.Find("TILES/A.RAW"), folder / "Tiles/a.raw");
  EXPECT_EQ(product.Find("other/A.RAW"), std::nullopt);
}

TEST(ProductFolder, TakesPatternsForNames) {
  TempFolder folder;
  folder.Write("a1.raw", "");
  folder.Write("B[1]*.raw", "");
  const ProductFolder product(folder.Path());
  EXPECT_EQ(product.Find("a?.raw"), std::nullopt);
  EXPECT_EQ(product.Find("*"), std::nullopt);
  EXPECT_EQ(product.Find("a[1].raw"), std::nullopt);
  EXPECT_EQ(product.Find("b[1]*.RAW"), folder / "B[1]*.raw");
}

TEST(ProductFolder, RefusesNamesThatLeadOutside) {
  TempFolder folder;
  folder.MakeFolder("in");
  folder.Write("secret.raw", "");
  const ProductFolder product(folder / "in");
  EXPECT_EQ(ErrorOf([&] { product.Find("../secret.raw"); }),
            "../secret.raw: leads outside the folder " + folder / "in" +
                "; put a copy into the folder and name that");
  EXPECT_THAT(ErrorOf([&] { product.Find("a/../../in2"); }), HasSubstr("leads outside"));
  EXPECT_THAT(ErrorOf([&] { product.Find(folder / "in/a.raw"); }),
              HasSubstr("is no name in the folder"));
}

TEST(ProductFolder, RefusesLinksThatLeadOutside) {
  TempFolder folder;
  folder.MakeFolder("in");
  folder.Write("secret.raw", "");
  std::filesystem::create_symlink("../secret.raw", folder / "in/link.raw");
  std::filesystem::create_symlink("..", folder / "in/up");
  const ProductFolder product(folder / "in");
  for (const char* name : {"link.raw", "LINK.RAW", "up/secret.raw", "UP/secret.raw"}) {
    EXPECT_THAT(ErrorOf([&] { product.Find(name); }), HasSubstr("leads outside")) << name;
  }
}

TEST(ProductFolder, FollowsLinksInside) {
  TempFolder folder;
  folder.Write("a.raw", "");
  std::filesystem::create_symlink("a.raw", folder / "link.raw");
  EXPECT_EQ(ProductFolder(folder.Path()).Find("Link.raw"), folder / "link.raw");
}

TEST(FindBand, TakesRawSamplesForATiff) {
  TempFolder folder;
  folder.Write("B4.RAW", "");
  folder.Write("B4.TIF", "");
  EXPECT_EQ(ProductFolder(folder.Path()).FindBand("b4.tif", ""), folder / "B4.RAW");
  EXPECT_EQ(ProductFolder(folder.Path()).FindBand("B4.Tiff", ""), folder / "B4.RAW");
}

TEST(FindBand, RefusesATiff) {
  TempFolder folder;
  folder.Write("B4.TIF", "");
  EXPECT_EQ(ErrorOf([&] { ProductFolder(folder.Path()).FindBand("B4.TIF", "give --band"); }),
            folder /
                "B4.TIF: is a TIFF, whose pixels are not read; convert it to raw samples in "
                "B4.raw, or give --band");
}

TEST(FindBand, NamesAFileThatIsMissing) {
  TempFolder folder;
  EXPECT_EQ(ErrorOf([&] { ProductFolder(folder.Path()).FindBand("B4.TIF", "give --band"); }),
            folder / "B4.raw: no such file; give --band");
}

}  // namespace
