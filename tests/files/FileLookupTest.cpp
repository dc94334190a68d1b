#include <gtest/gtest.h>
#include <unistd.h>

#include <QtCore/QDirIterator>
#include <filesystem>
#include <new>
#include <string>

#include "SatCommonUtils/Files.h"
#include "support/FailingNew.h"
#include "support/TempFolder.h"

namespace {

using SatCommonUtils::FileExists;
namespace fs = std::filesystem;

/// The name found, "(none)" when there is none; a failure must leave the string.
std::string Found(const std::string& folder, const std::string& filter) {
  std::string name = "(none)";
  const bool found = FileExists(folder, filter, &name);
  EXPECT_EQ(found, name != "(none)");
  EXPECT_EQ(FileExists(folder, filter, nullptr), found);
  return name;
}

class FileLookupTest : public testing::Test {
 protected:
  TempFolder folder;
};

TEST_F(FileLookupTest, AFileIsFoundByItsName) {
  folder.Write("scene.tif", "");
  EXPECT_EQ(Found(folder.Path(), "scene.tif"), "scene.tif");
}

TEST_F(FileLookupTest, LetterCaseIsIgnoredAndTheNameIsThatOnDisk) {
  folder.Write("SCENE_B1.TIF", "");
  EXPECT_EQ(Found(folder.Path(), "scene_b1.tif"), "SCENE_B1.TIF");
}

TEST_F(FileLookupTest, LetterCaseIsIgnoredBeyondAsciiToo) {
  folder.Write("\xc3\x84MNE.SHP", "");
  EXPECT_EQ(Found(folder.Path(), "\xc3\xa4mne.shp"), "\xc3\x84MNE.SHP");
}

TEST_F(FileLookupTest, WhatIsNotThereIsNotFound) {
  folder.Write("scene.tif", "");
  EXPECT_EQ(Found(folder.Path(), "scene.ti"), "(none)");
  EXPECT_EQ(Found(folder.Path(), "cene.tif"), "(none)");
}

TEST_F(FileLookupTest, AStarStandsForAnyCharactersDotsToo) {
  folder.Write("scene.b1.tif", "");
  EXPECT_EQ(Found(folder.Path(), "*"), "scene.b1.tif");
  EXPECT_EQ(Found(folder.Path(), "*.tif"), "scene.b1.tif");
  EXPECT_EQ(Found(folder.Path(), "S*N*f"), "scene.b1.tif");
  EXPECT_EQ(Found(folder.Path(), "*x*"), "(none)");
}

TEST_F(FileLookupTest, AQuestionMarkStandsForOneCharacter) {
  folder.Write("b\xc3\xbc.img", "");
  EXPECT_EQ(Found(folder.Path(), "b?.img"), "b\xc3\xbc.img");
  EXPECT_EQ(Found(folder.Path(), "b??.img"), "(none)");
}

TEST_F(FileLookupTest, BracketsHoldASetOfCharacters) {
  folder.Write("b5.img", "");
  EXPECT_EQ(Found(folder.Path(), "B[1-5].img"), "b5.img");
  EXPECT_EQ(Found(folder.Path(), "b[!5].img"), "(none)");
}

TEST_F(FileLookupTest, ABracketInASetIsACharacterLikeOthers) {
  folder.Write("b[5].img", "");
  EXPECT_EQ(Found(folder.Path(), "b[[]5].img"), "b[5].img");
  EXPECT_EQ(Found(folder.Path(), "b[5].img"), "(none)");
}

TEST_F(FileLookupTest, SignsOfRegularExpressionsAreCharactersLikeOthers) {
  folder.Write("a+(b)^$|{1}.txt", "");
  EXPECT_EQ(Found(folder.Path(), "A+(b)^$|{1}.txt"), "a+(b)^$|{1}.txt");
  EXPECT_EQ(Found(folder.Path(), "a+.b.*txt"), "(none)");
}

TEST_F(FileLookupTest, AnEmptyFilterFindsNothing) {
  folder.Write("a", "");
  EXPECT_EQ(Found(folder.Path(), ""), "(none)");
}

TEST_F(FileLookupTest, ASetWithoutAnEndFindsNothingAndPrintsNothing) {
  folder.Write("a", "");
  folder.Write("[", "");
  testing::internal::CaptureStderr();
  EXPECT_EQ(Found(folder.Path(), "["), "(none)");
  EXPECT_EQ(Found(folder.Path(), "[a"), "(none)");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(FileLookupTest, OfSeveralTheFirstOfTheFileSystemIsFound) {
  for (int i = 0; i < 20; ++i) folder.Write(std::to_string(i * 7 % 20) + ".TIF", "");
  QDirIterator files(QString::fromStdString(folder.Path()), QDir::Files);
  files.next();
  EXPECT_EQ(Found(folder.Path(), "*.tif"), files.fileName().toStdString());
}

TEST_F(FileLookupTest, FoldersAndHiddenFilesAreNotFound) {
  folder.MakeFolder("scene");
  folder.Write(".hidden", "");
  EXPECT_EQ(Found(folder.Path(), "scene"), "(none)");
  EXPECT_EQ(Found(folder.Path(), ".hidden"), "(none)");
  EXPECT_EQ(Found(folder.Path(), ".."), "(none)");
}

TEST_F(FileLookupTest, FilesInSubfoldersAreNotFound) {
  folder.MakeFolder("sub");
  folder.Write("sub/a.txt", "");
  EXPECT_EQ(Found(folder.Path(), "a.txt"), "(none)");
  EXPECT_EQ(Found(folder.Path(), "sub/a.txt"), "(none)");
}

TEST_F(FileLookupTest, LinksToFilesAreFoundButNotThoseToNowhere) {
  folder.Write("a", "");
  fs::create_symlink("a", folder / "link");
  fs::create_symlink("missing", folder / "broken");
  EXPECT_EQ(Found(folder.Path(), "LINK"), "link");
  EXPECT_EQ(Found(folder.Path(), "broken"), "(none)");
}

TEST_F(FileLookupTest, FilesWhoseNamesAreNotUtf8AreNotFound) {
  folder.Write("latin\xfc.txt", "");
  EXPECT_EQ(Found(folder.Path(), "*"), "(none)");
  EXPECT_EQ(Found(folder.Path(), "latin\xfc.txt"), "(none)");
}

TEST_F(FileLookupTest, FolderAndFilterEndAtTheirFirstNul) {
  folder.Write("a.txt", "");
  EXPECT_EQ(Found(folder.Path() + std::string("\0/missing", 9), "A.txt"), "a.txt");
  EXPECT_EQ(Found(folder.Path(), std::string("A.txt\0b", 7)), "a.txt");
}

TEST_F(FileLookupTest, AFolderThatIsMissingHoldsNothing) {
  EXPECT_EQ(Found(folder / "missing", "*"), "(none)");
}

TEST_F(FileLookupTest, AFolderWithoutPermissionHoldsNothing) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may read every folder";
  folder.MakeFolder("closed");
  folder.Write("closed/a.txt", "");
  fs::permissions(folder / "closed", fs::perms::none);
  EXPECT_EQ(Found(folder / "closed", "*"), "(none)");
  fs::permissions(folder / "closed", fs::perms::owner_all);
}

TEST_F(FileLookupTest, EveryFailureToAllocatePasses) {
  folder.Write("a name that is too long to be kept inside a string object", "");
  // Qt makes what it keeps for a thread at the first pattern but "*", and does not survive a
  // failure then.
  Found(folder.Path(), "A*");
  unsigned long failures = 0;
  for (bool done = false; !done; ++failures) {
    ASSERT_LT(failures, 10000u);
    std::string name;
    try {
      const ravelin_test::FailingNew failing(failures);
      EXPECT_TRUE(FileExists(folder.Path(), "A*", &name));
      done = true;
    } catch (const std::bad_alloc&) {
    }
  }
  EXPECT_GT(failures, 2u);
}

}  // namespace
