// Paths and file names as plain texts.
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "SatCommonUtils/Files.h"
#include "kv/Growth.h"
#include "support/FailingNew.h"

namespace {

using namespace SatCommonUtils;

using Parts = std::pair<std::string, std::string>;
using SplitFunction = void (*)(std::string, std::string*, std::string*);

/// Folder and name; both held something before.
Parts PartsOf(SplitFunction split, const std::string& path) {
  Parts parts("old folder", "old name");
  split(path, &parts.first, &parts.second);
  return parts;
}
Parts Split(const std::string& path) {
  return PartsOf(SplitPathFilename, path);
}
Parts Split2(const std::string& path) {
  return PartsOf(SplitPathFilename2, path);
}

TEST(SplitPathFilenameTest, TheFolderLosesItsSlashAndTheNameFollowsTheLastOne) {
  EXPECT_EQ(Split("/data/scene/b1.raw"), Parts("/data/scene", "b1.raw"));
}

TEST(SplitPathFilenameTest, ANameAloneHasAnEmptyFolder) {
  EXPECT_EQ(Split("b1.raw"), Parts("", "b1.raw"));
}

TEST(SplitPathFilenameTest, APathThatEndsWithASlashHasAnEmptyName) {
  EXPECT_EQ(Split("data/scene/"), Parts("data/scene", ""));
}

TEST(SplitPathFilenameTest, AllSlashesBehindTheFolderGo) {
  EXPECT_EQ(Split("data///b1.raw"), Parts("data", "b1.raw"));
}

TEST(SplitPathFilenameTest, TheRootKeepsItsSlash) {
  EXPECT_EQ(Split("/b1.raw"), Parts("/", "b1.raw"));
  EXPECT_EQ(Split("//b1.raw"), Parts("/", "b1.raw"));
  EXPECT_EQ(Split("/"), Parts("/", ""));
}

TEST(SplitPathFilenameTest, ABackslashDoesNotSeparate) {
  EXPECT_EQ(Split("a\\b"), Parts("", "a\\b"));
  EXPECT_EQ(Split("a/b\\c"), Parts("a", "b\\c"));
  EXPECT_EQ(Split("a\\b/c"), Parts("a\\b", "c"));
}

TEST(SplitPathFilenameTest, AnEmptyPathHasEmptyParts) {
  EXPECT_EQ(Split(""), Parts("", ""));
}

TEST(SplitPathFilename2Test, TheLaterOfBothSeparatorsWins) {
  EXPECT_EQ(Split2("a\\b/c"), Parts("a\\b", "c"));
  EXPECT_EQ(Split2("a/b\\c"), Parts("a/b", "c"));
}

TEST(SplitPathFilename2Test, ANameAloneHasAnEmptyFolder) {
  EXPECT_EQ(Split2("name.txt"), Parts("", "name.txt"));
}

TEST(SplitPathFilename2Test, APathThatEndsWithASeparatorHasAnEmptyName) {
  EXPECT_EQ(Split2("c:\\data\\"), Parts("c:\\data", ""));
  EXPECT_EQ(Split2("c:/data/"), Parts("c:/data", ""));
}

TEST(SplitPathFilename2Test, OnlyOneSeparatorIsDropped) {
  EXPECT_EQ(Split2("a\\\\b"), Parts("a\\", "b"));
  EXPECT_EQ(Split2("a//"), Parts("a/", ""));
}

TEST(SplitPathFilename2Test, ASeparatorAtTheBeginningLeavesAnEmptyFolder) {
  EXPECT_EQ(Split2("/b"), Parts("", "b"));
  EXPECT_EQ(Split2("\\b"), Parts("", "b"));
}

TEST(SplitPathFilename2Test, AnEmptyPathHasEmptyParts) {
  EXPECT_EQ(Split2(""), Parts("", ""));
}

TEST(SplitPathFilename2Test, BytesOfAnyKindArePassedOn) {
  EXPECT_EQ(Split2(std::string("\xFF\0/\0.\xC3", 6)),
            Parts(std::string("\xFF\0", 2), std::string("\0.\xC3", 3)));
}

TEST(SplitPathFilenamesTest, ThePathMayBeOneOfTheResults) {
  for (const SplitFunction split : {SplitPathFilename, SplitPathFilename2}) {
    std::string path = "a/b", other;
    split(path, &path, &other);
    EXPECT_EQ(Parts(path, other), Parts("a", "b"));
    path = "a/b";
    split(path, &other, &path);
    EXPECT_EQ(Parts(other, path), Parts("a", "b"));
  }
}

TEST(SplitPathFilenamesTest, OneStringForBothResultsEndsWithTheName) {
  for (const SplitFunction split : {SplitPathFilename, SplitPathFilename2}) {
    std::string both;
    split("a/b", &both, &both);
    EXPECT_EQ(both, "b");
  }
}

TEST(ChangeFileExtTest, TheExtensionIsReplaced) {
  EXPECT_EQ(ChangeFileExt("img.raw", "hdr"), "img.hdr");
}

TEST(ChangeFileExtTest, ANameWithoutOneGetsIt) {
  EXPECT_EQ(ChangeFileExt("img", "hdr"), "img.hdr");
  EXPECT_EQ(ChangeFileExt("", "hdr"), ".hdr");
}

TEST(ChangeFileExtTest, OnlyTheLastExtensionIsReplaced) {
  EXPECT_EQ(ChangeFileExt("a.b.c", "d"), "a.b.d");
}

TEST(ChangeFileExtTest, AnExtensionWithADotGivesTwoDots) {
  EXPECT_EQ(ChangeFileExt("img.raw", ".hdr"), "img..hdr");
}

TEST(ChangeFileExtTest, AnEmptyExtensionLeavesTheDot) {
  EXPECT_EQ(ChangeFileExt("img.raw", ""), "img.");
  EXPECT_EQ(ChangeFileExt("img", ""), "img.");
}

TEST(ChangeFileExtTest, ADotAtAnEndIsADotLikeAnyOther) {
  EXPECT_EQ(ChangeFileExt("img.", "hdr"), "img.hdr");
  EXPECT_EQ(ChangeFileExt(".img", "hdr"), ".hdr");
}

TEST(ChangeFileExtTest, ADotInAFoldersNameCountsWhenTheFilesHasNone) {
  EXPECT_EQ(ChangeFileExt("dir.old/file", "hdr"), "dir.hdr");
}

TEST(CutFileExtTest, TheLastExtensionAndItsDotGo) {
  EXPECT_EQ(CutFileExt("a.b.c"), "a.b");
}

TEST(CutFileExtTest, ANameWithoutADotStays) {
  EXPECT_EQ(CutFileExt("abc"), "abc");
  EXPECT_EQ(CutFileExt(""), "");
}

TEST(CutFileExtTest, ANameWhoseOnlyDotIsItsFirstByteBecomesEmpty) {
  EXPECT_EQ(CutFileExt(".profile"), "");
}

TEST(CutFileExtTest, ADotAtTheEndGoesAlone) {
  EXPECT_EQ(CutFileExt("a."), "a");
  EXPECT_EQ(CutFileExt("a.."), "a.");
}

TEST(CutFileExtTest, ADotInAFoldersNameCountsWhenTheFilesHasNone) {
  EXPECT_EQ(CutFileExt("dir.old\\file"), "dir");
}

TEST(GetFileExtTest, TheLastExtensionComesWithoutItsDot) {
  EXPECT_EQ(GetFileExt("a.tar.gz"), "gz");
}

TEST(GetFileExtTest, ANameWithoutADotHasNone) {
  EXPECT_EQ(GetFileExt("abc"), "");
  EXPECT_EQ(GetFileExt(""), "");
}

TEST(GetFileExtTest, ANameThatEndsWithADotHasAnEmptyOne) {
  EXPECT_EQ(GetFileExt("abc."), "");
}

TEST(GetFileExtTest, ANameThatBeginsWithItsOnlyDotIsAllExtension) {
  EXPECT_EQ(GetFileExt(".profile"), "profile");
}

TEST(GetFileExtTest, ADotInAFoldersNameCountsWhenTheFilesHasNone) {
  EXPECT_EQ(GetFileExt("dir.old\\file"), "old\\file");
  EXPECT_EQ(GetFileExt("dir.old/file"), "old/file");
}

TEST(RemoveTrailingBackslashTest, OneBackslashGoes) {
  EXPECT_EQ(RemoveTrailingBackslash("c:\\data\\"), "c:\\data");
  EXPECT_EQ(RemoveTrailingBackslash("\\"), "");
}

TEST(RemoveTrailingBackslashTest, OfTwoOneStays) {
  EXPECT_EQ(RemoveTrailingBackslash("c:\\data\\\\"), "c:\\data\\");
}

TEST(RemoveTrailingBackslashTest, ASlashStays) {
  EXPECT_EQ(RemoveTrailingBackslash("data/"), "data/");
  EXPECT_EQ(RemoveTrailingBackslash("data\\/"), "data\\/");
}

TEST(RemoveTrailingBackslashTest, APathWithoutOneStays) {
  EXPECT_EQ(RemoveTrailingBackslash("c:\\data"), "c:\\data");
  EXPECT_EQ(RemoveTrailingBackslash(""), "");
}

TEST(AddTrailingBackslashTest, APathWithoutOneGetsOne) {
  EXPECT_EQ(AddTrailingBackslash("c:\\data"), "c:\\data\\");
}

TEST(AddTrailingBackslashTest, APathWithOneStays) {
  EXPECT_EQ(AddTrailingBackslash("c:\\data\\"), "c:\\data\\");
  EXPECT_EQ(AddTrailingBackslash("\\"), "\\");
}

TEST(AddTrailingBackslashTest, APathThatEndsWithASlashGetsOneToo) {
  EXPECT_EQ(AddTrailingBackslash("data/"), "data/\\");
}

TEST(AddTrailingBackslashTest, AnEmptyPathStaysEmpty) {
  EXPECT_EQ(AddTrailingBackslash(""), "");
}

TEST(GetUpperFolderTest, TheLastFolderGoesWithItsTrailingBackslash) {
  EXPECT_EQ(GetUpperFolder("c:\\data\\sub\\"), "c:\\data");
  EXPECT_EQ(GetUpperFolder("c:\\data\\sub"), "c:\\data");
}

TEST(GetUpperFolderTest, NothingIsAboveADrive) {
  EXPECT_EQ(GetUpperFolder("c:\\"), "");
  EXPECT_EQ(GetUpperFolder("c:"), "");
}

TEST(GetUpperFolderTest, NothingIsAboveANameAlone) {
  EXPECT_EQ(GetUpperFolder("data"), "");
  EXPECT_EQ(GetUpperFolder(""), "");
}

TEST(GetUpperFolderTest, NothingIsAbovePathsInTheRoot) {
  EXPECT_EQ(GetUpperFolder("\\data"), "");
  EXPECT_EQ(GetUpperFolder("\\"), "");
}

TEST(GetUpperFolderTest, OfTwoTrailingBackslashesTheSecondSeparates) {
  EXPECT_EQ(GetUpperFolder("c:\\data\\\\"), "c:\\data");
}

TEST(GetUpperFolderTest, ASlashDoesNotSeparate) {
  EXPECT_EQ(GetUpperFolder("/data/sub"), "");
  EXPECT_EQ(GetUpperFolder("c:\\a/b\\c"), "c:\\a/b");
}

TEST(GetFolderNameTest, TheNameFollowsTheLastBackslash) {
  EXPECT_EQ(GetFolderName("c:\\data\\sub\\"), "sub");
  EXPECT_EQ(GetFolderName("c:\\data\\sub"), "sub");
}

TEST(GetFolderNameTest, ANameAloneIsItsOwn) {
  EXPECT_EQ(GetFolderName("data"), "data");
  EXPECT_EQ(GetFolderName("data\\"), "data");
  EXPECT_EQ(GetFolderName(""), "");
}

TEST(GetFolderNameTest, APathThatEndsWithTwoBackslashesHasNone) {
  EXPECT_EQ(GetFolderName("c:\\data\\\\"), "");
  EXPECT_EQ(GetFolderName("\\\\"), "");
}

TEST(GetFolderNameTest, TheRootHasNone) {
  EXPECT_EQ(GetFolderName("\\"), "");
}

TEST(GetFolderNameTest, ASlashDoesNotSeparate) {
  EXPECT_EQ(GetFolderName("c:\\a/b/"), "a/b/");
}

// The model: byte by byte, as plainly as can be.

/// The position of the last byte that is one of `wanted`, counted from 1; 0 when there is none.
unsigned long LastOf(const std::string& text, const std::string& wanted) {
  unsigned long last = 0;
  for (unsigned long i = 0; i < text.size(); ++i) {
    for (const char c : wanted) {
      if (text[i] == c) last = i + 1;
    }
  }
  return last;
}

std::string Before(const std::string& text, unsigned long end) {
  std::string part;
  for (unsigned long i = 0; i < end; ++i) part += text[i];
  return part;
}

std::string From(const std::string& text, unsigned long begin) {
  std::string part;
  for (unsigned long i = begin; i < text.size(); ++i) part += text[i];
  return part;
}

Parts ModelSplit2(const std::string& path) {
  const unsigned long at = LastOf(path, "\\/");
  return at == 0 ? Parts("", path) : Parts(Before(path, at - 1), From(path, at));
}

Parts ModelSplit(const std::string& path) {
  Parts parts = {Before(path, LastOf(path, "/")), From(path, LastOf(path, "/"))};
  while (parts.first.size() > 1 && parts.first.back() == '/') parts.first.pop_back();
  return parts;
}

std::string ModelWithout(const std::string& path) {
  return LastOf(path, "\\") == path.size() ? Before(path, path.empty() ? 0 : path.size() - 1)
                                           : path;
}

std::string ModelWith(const std::string& path) {
  return LastOf(path, "\\") == path.size() ? path : path + "\\";
}

std::string ModelUpper(const std::string& path) {
  const unsigned long at = LastOf(ModelWithout(path), "\\");
  return at == 0 ? "" : Before(path, at - 1);
}

std::string RandomPath(std::mt19937* random) {
  static const std::string kOften = "\\\\//..aB:";
  std::string path((*random)() % 13, ' ');
  for (char& c : path) {
    const bool isOften = (*random)() % 8 != 0;
    c = isOften ? kOften[(*random)() % kOften.size()] : static_cast<char>((*random)());
  }
  return path;
}

TEST(PathsRandomTest, RandomPathsGiveWhatAPlainModelGives) {
  std::mt19937 random(7101);
  for (int i = 0; i < 200000; ++i) {
    const std::string path = RandomPath(&random);
    const std::string ext = RandomPath(&random);
    const unsigned long dot = LastOf(path, ".");
    const std::string stem = dot == 0 ? path : Before(path, dot - 1);
    ASSERT_EQ(Split(path), ModelSplit(path)) << path;
    ASSERT_EQ(Split2(path), ModelSplit2(path)) << path;
    ASSERT_EQ(ChangeFileExt(path, ext), stem + "." + ext) << path;
    ASSERT_EQ(CutFileExt(path), stem) << path;
    ASSERT_EQ(GetFileExt(path), dot == 0 ? "" : From(path, dot)) << path;
    ASSERT_EQ(RemoveTrailingBackslash(path), ModelWithout(path)) << path;
    ASSERT_EQ(AddTrailingBackslash(path), ModelWith(path)) << path;
    ASSERT_EQ(GetUpperFolder(path), ModelUpper(path)) << path;
    ASSERT_EQ(GetFolderName(path), From(ModelWithout(path), LastOf(ModelWithout(path), "\\")))
        << path;
  }
}

/// Calls every function with one path.
void CallAll(const std::string& path) {
  std::string folder, name;
  SplitPathFilename(path, &folder, &name);
  SplitPathFilename2(path, &folder, &name);
  ChangeFileExt(path, path);
  CutFileExt(path);
  GetFileExt(path);
  RemoveTrailingBackslash(path);
  AddTrailingBackslash(path);
  GetUpperFolder(path);
  GetFolderName(path);
}

std::string Repeated(unsigned long count, const std::string& piece) {
  std::string text;
  for (unsigned long i = 0; i < count; ++i) text += piece;
  return text;
}

TEST(PathsGrowthTest, PathsOfAnyMakeCostLinearTime) {
  for (const char* piece : {"\\", "/", ".", "a", "ab.\\c/"}) {
    EXPECT_TRUE(kv_test::IsLinear(200000, [&](unsigned long size) {
      CallAll(Repeated(size, piece));
    })) << piece;
  }
}

/// Whether `action` throws std::bad_alloc with no allocation, with one ... until it succeeds, and
/// how often that was.
unsigned long FailuresOf(const std::function<void()>& action) {
  for (unsigned long successes = 0; successes < 100; ++successes) {
    try {
      const ravelin_test::FailingNew failing(successes);
      action();
      return successes;
    } catch (const std::bad_alloc&) {
    }
  }
  ADD_FAILURE() << "it never succeeded";
  return 0;
}

TEST(PathsMemoryTest, AnAllocationThatFailsPasses) {
  const std::string path = Repeated(20, "folder\\") + "/" + Repeated(20, "na.me") + "\\";
  EXPECT_GE(FailuresOf([&] { ChangeFileExt(path, path); }), 3u);
  EXPECT_GE(FailuresOf([&] { CutFileExt(path); }), 1u);
  EXPECT_GE(FailuresOf([&] { GetFileExt(path + path); }), 1u);
  EXPECT_GE(FailuresOf([&] { RemoveTrailingBackslash(path); }), 1u);
  EXPECT_GE(FailuresOf([&] { AddTrailingBackslash(path); }), 1u);
  EXPECT_GE(FailuresOf([&] { GetUpperFolder(path); }), 2u);
  EXPECT_GE(FailuresOf([&] { GetFolderName(path); }), 1u);
}

TEST(PathsMemoryTest, ASplitThatFailsLeavesBothResults) {
  const std::string path = Repeated(20, "folder") + "/" + Repeated(20, "na.me");
  for (const SplitFunction split : {SplitPathFilename, SplitPathFilename2}) {
    Parts parts("old folder", "old name");
    const unsigned long failures = FailuresOf([&] {
      EXPECT_EQ(parts, Parts("old folder", "old name"));
      split(path, &parts.first, &parts.second);
    });
    EXPECT_GE(failures, 2u);
    EXPECT_EQ(parts, Parts(Repeated(20, "folder"), Repeated(20, "na.me")));
  }
}

}  // namespace
