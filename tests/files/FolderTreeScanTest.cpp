#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QtCore/QDirIterator>
#include <filesystem>
#include <fstream>
#include <limits>
#include <map>
#include <new>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "SatCommonUtils/Files.h"
#include "files/ProgressLog.h"
#include "kv/Growth.h"
#include "support/FailingNew.h"
#include "support/TempFolder.h"

namespace {

using files_test::ProgressLog;
using SatCommonUtils::FillFolderAndSubfoldersFilesList;
using SatCommonUtils::TFilenamesList;
using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;
using Names = std::vector<std::string>;
using Tree = std::map<std::string, TFilenamesList>;
using NamesByFolder = std::map<std::string, Names>;

Names Walk(const TFilenamesList& list) {
  Names names;
  std::string name;
  for (bool more = list.GetFirst(&name); more; more = list.GetNext(&name)) names.push_back(name);
  return names;
}

NamesByFolder Walk(const Tree& tree) {
  NamesByFolder names;
  for (const auto& [folder, list] : tree) names[folder] = Walk(list);
  return names;
}

struct ScanResult {
  unsigned long count = 0;
  NamesByFolder tree;
};

ScanResult Scan(const std::string& folder, bool upperCaseKeys = false) {
  Tree tree;
  const unsigned long count =
      FillFolderAndSubfoldersFilesList(folder, &tree, upperCaseKeys, nullptr);
  return {count, Walk(tree)};
}

class FolderTreeScanTest : public testing::Test {
 protected:
  /// Writes an empty file and makes the folders that lead to it.
  void File(const std::string& path) const {
    fs::create_directories(fs::path(folder / path).parent_path());
    folder.Write(path, "");
  }
  void Link(const std::string& target, const std::string& path) const {
    fs::create_directories(fs::path(folder / path).parent_path());
    fs::create_symlink(target, folder / path);
  }

  TempFolder folder;
  const std::string top = folder.Path() + "/top";

  void SetUp() override { fs::create_directory(top); }
};

TEST_F(FolderTreeScanTest, AFolderHoldsTheFilesOfItsSubfolderTooWhichCountTwice) {
  File("top/f1");
  File("top/s/f2");
  const ScanResult result = Scan(top);
  EXPECT_EQ(result.count, 3u);
  EXPECT_THAT(result.tree, ElementsAre(Pair(top, UnorderedElementsAre("f1", "f2")),
                                       Pair(top + "/s", ElementsAre("f2"))));
}

TEST_F(FolderTreeScanTest, AFileCountsTwiceAsMuchWithEveryFolderDown) {
  std::string path = "top";
  unsigned long expected = 1;
  for (int depth = 0; depth < 12; ++depth, path += "/d", expected *= 2) {
    File(path + "/file");
    EXPECT_EQ(Scan(top).count, expected) << depth;
    fs::remove(folder / (path + "/file"));
  }
}

TEST_F(FolderTreeScanTest, EveryFolderAboveAFileHoldsItsName) {
  File("top/a/b/c/file");
  EXPECT_THAT(Scan(top).tree, AllOf(SizeIs(4), Each(Pair(testing::_, ElementsAre("file")))));
}

TEST_F(FolderTreeScanTest, CountsStayAtTheLargestValue) {
  std::string path = "top";
  for (int depth = 0; depth < 70; ++depth) path += "/d";
  File(path + "/file");
  File("top/file");
  const ScanResult result = Scan(top);
  EXPECT_EQ(result.count, std::numeric_limits<unsigned long>::max());
  EXPECT_THAT(result.tree, SizeIs(71));
}

TEST_F(FolderTreeScanTest, NamesStandInTheOrderOfAWalkThatEntersAFolderWhereItMeetsIt) {
  for (const char* name : {"top/1", "top/a/2", "top/b/3", "top/b/c/4", "top/5", "top/a/6"})
    File(name);
  Names order;
  QDirIterator files(QString::fromStdString(top), QDir::Files, QDirIterator::Subdirectories);
  while (files.hasNext()) {
    files.next();
    order.push_back(files.fileName().toStdString());
  }
  EXPECT_EQ(Scan(top).tree[top], order);
}

TEST_F(FolderTreeScanTest, AFolderWithoutFilesHasNoEntry) {
  File("top/a/file");
  fs::create_directories(top + "/empty/more");
  EXPECT_THAT(Scan(top).tree,
              ElementsAre(Pair(top, ElementsAre("file")), Pair(top + "/a", ElementsAre("file"))));
}

TEST_F(FolderTreeScanTest, AnEmptyFolderGivesNothing) {
  const ScanResult result = Scan(top);
  EXPECT_EQ(result.count, 0u);
  EXPECT_THAT(result.tree, IsEmpty());
}

TEST_F(FolderTreeScanTest, AFolderThatIsMissingOrAFileGivesNothing) {
  File("top/file");
  for (const std::string& path : {folder / "missing", top + "/file", std::string()}) {
    const ScanResult result = Scan(path);
    EXPECT_EQ(result.count, 0u) << path;
    EXPECT_THAT(result.tree, IsEmpty()) << path;
  }
}

TEST_F(FolderTreeScanTest, HiddenFilesAndFoldersAreLeftOut) {
  File("top/.hidden");
  File("top/.folder/file");
  File("top/shown");
  EXPECT_THAT(Scan(top).tree, ElementsAre(Pair(top, ElementsAre("shown"))));
}

TEST_F(FolderTreeScanTest, FilesAndFoldersWhoseNamesAreNotUtf8AreLeftOut) {
  File("top/latin\xfc");
  File("top/folder\xfc/file");
  File("top/\xc3\xbc/\xc3\xa4");
  EXPECT_THAT(Scan(top).tree, ElementsAre(Pair(top, ElementsAre("\xc3\xa4")),
                                          Pair(top + "/\xc3\xbc", ElementsAre("\xc3\xa4"))));
}

TEST_F(FolderTreeScanTest, TheKeyOfTheTopFolderIsThePathAsGiven) {
  File("top/s/file");
  const std::string doubled = top + "/../top/";
  EXPECT_THAT(Scan(doubled).tree, ElementsAre(Pair(doubled, ElementsAre("file")),
                                              Pair(doubled + "s", ElementsAre("file"))));
  const std::string withNul = top + std::string("\0more", 5);
  EXPECT_THAT(Scan(withNul).tree, ElementsAre(Pair(withNul, ElementsAre("file")),
                                              Pair(top + "/s", ElementsAre("file"))));
}

TEST_F(FolderTreeScanTest, KeysAreInUpperCaseWhenAskedFor) {
  File("top/data/scene \xc3\xbc/File");
  std::string upper = top + "/data/scene ";
  for (char& c : upper) c = static_cast<char>(std::toupper(c));
  EXPECT_THAT(Scan(top + "/data/scene \xc3\xbc", true).tree,
              ElementsAre(Pair(upper + "\xc3\xbc", ElementsAre("File"))));
}

TEST_F(FolderTreeScanTest, OfFoldersWithOneUpperCaseKeyTheLastThatIsMetRemains) {
  File("top/a/1");
  File("top/A/2");
  const ScanResult result = Scan(top, true);
  ASSERT_THAT(result.tree, SizeIs(2));
  const Names& all = result.tree.begin()->second;
  ASSERT_THAT(all, SizeIs(2));
  EXPECT_THAT(result.tree.rbegin()->second, ElementsAre(all[1]));
  EXPECT_EQ(result.count, 4u);
}

TEST_F(FolderTreeScanTest, AnEntryIsReplacedAndItsCursorIsAtTheEnd) {
  File("top/new");
  Tree tree;
  tree[top].Insert("old");
  tree[top].GetFirst(nullptr);
  tree["other"].Insert("kept");
  EXPECT_EQ(FillFolderAndSubfoldersFilesList(top, &tree, false, nullptr), 1u);
  EXPECT_FALSE(tree[top].GetCurrent(nullptr));
  EXPECT_THAT(Walk(tree),
              ElementsAre(Pair(top, ElementsAre("new")), Pair("other", ElementsAre("kept"))));
}

TEST_F(FolderTreeScanTest, AFolderWithoutFilesLeavesTheEntryThatItHad) {
  Tree tree;
  tree[top].Insert("old");
  FillFolderAndSubfoldersFilesList(top, &tree, false, nullptr);
  EXPECT_THAT(Walk(tree), ElementsAre(Pair(top, ElementsAre("old"))));
}

TEST_F(FolderTreeScanTest, ALinkToAFileIsAFile) {
  File("elsewhere/file");
  Link("../elsewhere/file", "top/link");
  Link("missing", "top/broken");
  EXPECT_THAT(Scan(top).tree, ElementsAre(Pair(top, ElementsAre("link"))));
}

TEST_F(FolderTreeScanTest, SpecialFilesAreLeftOut) {
  File("top/s/file");
  ASSERT_EQ(::mkfifo((top + "/s/pipe").c_str(), 0600), 0);
  const ScanResult result = Scan(top);
  EXPECT_EQ(result.count, 2u);
  EXPECT_THAT(result.tree,
              ElementsAre(Pair(top, ElementsAre("file")), Pair(top + "/s", ElementsAre("file"))));
}

TEST_F(FolderTreeScanTest, ALinkToAFolderHasEntriesOfItsOwnButIsNotInThoseAbove) {
  File("elsewhere/file");
  File("elsewhere/deep/file2");
  Link("../../elsewhere", "top/s/link");
  const ScanResult result = Scan(top);
  EXPECT_THAT(result.tree, ElementsAre(Pair(top + "/s/link", UnorderedElementsAre("file", "file2")),
                                       Pair(top + "/s/link/deep", ElementsAre("file2"))));
  EXPECT_EQ(result.count, 2 * 3u);
}

TEST_F(FolderTreeScanTest, TwoLinksToOneFolderAreScannedBoth) {
  File("elsewhere/file");
  Link("../elsewhere", "top/a");
  Link("../elsewhere", "top/b");
  EXPECT_THAT(Scan(top).tree, ElementsAre(Pair(top + "/a", ElementsAre("file")),
                                          Pair(top + "/b", ElementsAre("file"))));
}

TEST_F(FolderTreeScanTest, ALinkToASiblingIsFollowed) {
  File("top/a/file");
  Link("a", "top/b");
  const ScanResult result = Scan(top);
  EXPECT_THAT(result.tree,
              ElementsAre(Pair(top, ElementsAre("file")), Pair(top + "/a", ElementsAre("file")),
                          Pair(top + "/b", ElementsAre("file"))));
  EXPECT_EQ(result.count, 3u);
}

TEST_F(FolderTreeScanTest, ALinkToTheFolderThatItIsInIsNotFollowed) {
  File("top/s/file");
  Link(".", "top/s/self");
  const ScanResult result = Scan(top);
  EXPECT_EQ(result.count, 2u);
  EXPECT_THAT(result.tree,
              ElementsAre(Pair(top, ElementsAre("file")), Pair(top + "/s", ElementsAre("file"))));
}

TEST_F(FolderTreeScanTest, ALinkToAFolderAboveIsNotFollowed) {
  File("top/s/file");
  Link(top, "top/s/to_top");
  Link("..", "top/above_top");
  Link("/", "top/root");
  const ScanResult result = Scan(top);
  EXPECT_EQ(result.count, 2u);
  EXPECT_THAT(result.tree, SizeIs(2));
}

TEST_F(FolderTreeScanTest, LinksThatLeadToEachOtherEnd) {
  File("top/a/1");
  File("top/b/2");
  Link("../b", "top/a/to_b");
  Link("../a", "top/b/to_a");
  const ScanResult result = Scan(top);
  EXPECT_THAT(
      result.tree,
      ElementsAre(Pair(top, UnorderedElementsAre("1", "2")), Pair(top + "/a", ElementsAre("1")),
                  Pair(top + "/a/to_b", ElementsAre("2")), Pair(top + "/b", ElementsAre("2")),
                  Pair(top + "/b/to_a", ElementsAre("1"))));
  EXPECT_EQ(result.count, 8u);
}

TEST_F(FolderTreeScanTest, ALoopBehindALinkEnds) {
  File("elsewhere/deep/file");
  Link("../../top", "elsewhere/deep/back");
  Link("../elsewhere", "top/link");
  const ScanResult result = Scan(top);
  EXPECT_THAT(result.tree, ElementsAre(Pair(top + "/link", ElementsAre("file")),
                                       Pair(top + "/link/deep", ElementsAre("file"))));
  EXPECT_EQ(result.count, 2u);
}

TEST_F(FolderTreeScanTest, ALinkToItselfIsLeftOut) {
  Link("self", "top/self");
  EXPECT_EQ(Scan(top).count, 0u);
}

TEST_F(FolderTreeScanTest, ATopFolderThatIsALinkIsScanned) {
  File("top/s/file");
  Link("top", "link");
  Link("../../link", "top/s/back");
  const ScanResult result = Scan(folder / "link");
  EXPECT_THAT(result.tree, ElementsAre(Pair(folder / "link", ElementsAre("file")),
                                       Pair(folder / "link/s", ElementsAre("file"))));
}

TEST_F(FolderTreeScanTest, AFolderWithoutPermissionIsSkipped) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may read every folder";
  File("top/closed/file");
  File("top/open/file");
  fs::permissions(top + "/closed", fs::perms::none);
  EXPECT_THAT(Scan(top).tree, ElementsAre(Pair(top, ElementsAre("file")),
                                          Pair(top + "/open", ElementsAre("file"))));
  fs::permissions(top + "/closed", fs::perms::owner_all);
}

TEST_F(FolderTreeScanTest, NoFolderStaysOpenWhileThoseBelowAreScanned) {
  std::string path = "top";
  for (int depth = 0; depth < 100; ++depth) path += "/d";
  File(path + "/file");
  rlimit former{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &former), 0);
  rlimit few = former;
  few.rlim_cur = 40;
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &few), 0);
  EXPECT_THAT(Scan(top).tree, SizeIs(101));
  ::setrlimit(RLIMIT_NOFILE, &former);
}

TEST_F(FolderTreeScanTest, ATreeDeeperThanAPathMayBeLongIsScannedAsFarAsPathsReach) {
  const std::string name(250, 'd');
  int descriptor = ::open(top.c_str(), O_PATH);
  for (int depth = 0; depth < 20; ++depth) {
    ASSERT_EQ(::mkdirat(descriptor, name.c_str(), 0700), 0);
    const int below = ::openat(descriptor, name.c_str(), O_PATH);
    ASSERT_GE(below, 0);
    ::close(std::exchange(descriptor, below));
    ::close(::openat(descriptor, "file", O_WRONLY | O_CREAT, 0600));
  }
  ::close(descriptor);
  const ScanResult result = Scan(top);
  const unsigned long reached = result.tree.at(top).size();
  EXPECT_TRUE(reached == 15 || reached == 16) << reached;
  EXPECT_EQ(result.count, (2UL << reached) - 2);
}

TEST_F(FolderTreeScanTest, TheHandlerIsAskedAfterEveryEntryOnceAndServedWhenItWants) {
  File("top/1");
  File("top/a/2");
  fs::create_directories(top + "/a/empty");
  Tree tree;
  ProgressLog progress(3);
  FillFolderAndSubfoldersFilesList(top, &tree, false, &progress);
  EXPECT_EQ(progress.calls, "Iqqqsq.");
}

TEST_F(FolderTreeScanTest, TheHandlerIsNotAskedBehindLinks) {
  File("elsewhere/1");
  File("elsewhere/a/2");
  Link("../elsewhere", "top/link");
  Link(".", "top/self");
  Tree tree;
  ProgressLog progress(0);
  FillFolderAndSubfoldersFilesList(top, &tree, false, &progress);
  EXPECT_EQ(progress.calls, "Iqq.");
}

TEST_F(FolderTreeScanTest, TheTopFolderIsWrittenWhenTheHandlerHasStopped) {
  File("top/1");
  File("top/a/2");
  Tree tree;
  NamesByFolder atStop;
  ProgressLog progress(0);
  progress.onStop = [&] { atStop = Walk(tree); };
  FillFolderAndSubfoldersFilesList(top, &tree, false, &progress);
  EXPECT_THAT(atStop, ElementsAre(Pair(top + "/a", ElementsAre("2"))));
  EXPECT_THAT(tree, SizeIs(2));
}

TEST_F(FolderTreeScanTest, WhatTheHandlerThrowsPassesAndTheScopeIsStopped) {
  File("top/a/1");
  Tree tree;
  ProgressLog progress(2);
  progress.onService = [] { throw std::runtime_error("enough"); };
  EXPECT_THROW(FillFolderAndSubfoldersFilesList(top, &tree, false, &progress), std::runtime_error);
  EXPECT_EQ(progress.calls, "Iqqs.");
  EXPECT_THAT(Walk(tree), ElementsAre(Pair(top + "/a", ElementsAre("1"))));
}

TEST_F(FolderTreeScanTest, EveryFailureToAllocatePasses) {
  File("top/a/a name that is too long to be kept inside a string object");
  Link("../a", "top/b/link");
  const ScanResult expected = Scan(top);
  unsigned long failures = 0;
  for (bool done = false; !done; ++failures) {
    ASSERT_LT(failures, 10000u);
    Tree tree;
    try {
      const ravelin_test::FailingNew failing(failures);
      EXPECT_EQ(FillFolderAndSubfoldersFilesList(top, &tree, false, nullptr), expected.count);
      done = true;
    } catch (const std::bad_alloc&) {
    }
    if (done) {
      EXPECT_EQ(Walk(tree), expected.tree);
    }
  }
  EXPECT_GT(failures, 10u);
}

// The steps of the scan as they are described, with as many walks as that takes.
class ScanModel {
 public:
  explicit ScanModel(fs::path top) : top_(std::move(top)) {}

  unsigned long Scan(const QString& folder) {
    Names names;
    unsigned long count = 0;
    QDirIterator entries(folder, QDir::Dirs | QDir::Files | QDir::NoDot | QDir::NoDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
      entries.next();
      if (entries.fileInfo().isDir()) {
        if (!LeadsInside(entries.filePath().toStdString())) count += Scan(entries.filePath());
      } else {
        names.push_back(entries.fileName().toStdString());
        ++count;
      }
    }
    if (!names.empty()) tree[folder.toStdString()] = names;
    return count;
  }

  NamesByFolder tree;

 private:
  /// Whether a path is a link to a folder on the way to it, or above one.
  bool LeadsInside(const fs::path& path) const {
    if (!fs::is_symlink(path)) return false;
    const std::string target = fs::canonical(path).string() + "/";
    for (fs::path on = path.parent_path(); on != top_.parent_path(); on = on.parent_path()) {
      if ((fs::canonical(on).string() + "/").rfind(target, 0) == 0) return true;
    }
    return false;
  }

  fs::path top_;
};

/// Makes up to a dozen files, folders, and links among them.
void MakeRandomTree(const fs::path& top, std::mt19937& random) {
  std::vector<fs::path> folders = {top};
  for (unsigned long i = 0, n = 1 + random() % 12; i < n; ++i) {
    const fs::path path = folders[random() % folders.size()] /
                          ((random() % 12 == 0 ? ".n" : "n") + std::to_string(i));
    switch (random() % 6) {
      case 0:
      case 1:
        fs::create_directory(path);
        folders.push_back(path);
        break;
      case 2:
        fs::create_directory_symlink(folders[random() % folders.size()], path);
        break;
      default:
        std::ofstream(path).flush();
    }
  }
}

TEST_F(FolderTreeScanTest, RandomTreesAreScannedAsTheStepsSay) {
  std::mt19937 random(73);
  for (int i = 0; i < 150; ++i) {
    const std::string path = top + "/" + std::to_string(i);
    fs::create_directory(path);
    MakeRandomTree(path, random);
    ScanModel model(path);
    const unsigned long count = model.Scan(QString::fromStdString(path));
    const ScanResult result = Scan(path);
    ASSERT_EQ(result.count, count) << i;
    ASSERT_EQ(result.tree, model.tree) << i;
  }
}

TEST_F(FolderTreeScanTest, AScanIsLinearInTheNumberOfFolders) {
  const auto made = [&](unsigned long size) {
    const std::string path = top + "/" + std::to_string(size);
    if (!fs::create_directory(path)) return path;
    for (unsigned long i = 0; i < size; ++i) fs::create_directory(path + "/" + std::to_string(i));
    std::ofstream(path + "/file").flush();
    return path;
  };
  made(100), made(400);
  EXPECT_TRUE(kv_test::IsLinear(100, [&](unsigned long size) { Scan(made(size)); }));
}

}  // namespace
