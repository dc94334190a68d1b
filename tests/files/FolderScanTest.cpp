#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <QtCore/QDirIterator>
#include <algorithm>
#include <clocale>
#include <filesystem>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "SatCommonUtils/Files.h"
#include "files/ProgressLog.h"
#include "kv/Growth.h"
#include "support/FailingNew.h"
#include "support/TempFolder.h"

namespace {

using files_test::ProgressLog;
using SatCommonUtils::FillFolderFilesList;
using SatCommonUtils::TFilenamesList;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
namespace fs = std::filesystem;
using Names = std::vector<std::string>;

Names Walk(const TFilenamesList& list) {
  Names names;
  std::string name;
  for (bool more = list.GetFirst(&name); more; more = list.GetNext(&name)) names.push_back(name);
  return names;
}

/// The files of a folder, which must be as many as the scan says.
Names FilesOf(const std::string& folder) {
  TFilenamesList list;
  const unsigned long count = FillFolderFilesList(folder, &list, nullptr);
  const Names names = Walk(list);
  EXPECT_EQ(count, names.size());
  return names;
}

TEST(FolderScanTest, TheBareNamesOfTheFilesAreListed) {
  const TempFolder folder;
  folder.Write("a.txt", "");
  folder.Write("B.TIF", "");
  EXPECT_THAT(FilesOf(folder.Path()), UnorderedElementsAre("a.txt", "B.TIF"));
}

TEST(FolderScanTest, NamesAreAppendedToThoseOfTheListAndAllAreCounted) {
  const TempFolder folder;
  folder.Write("a.txt", "");
  folder.Write("b.txt", "");
  TFilenamesList list;
  for (const char* name : {"1", "2", "3"}) list.Insert(name);
  EXPECT_EQ(FillFolderFilesList(folder.Path(), &list, nullptr), 5u);
  const Names names = Walk(list);
  EXPECT_THAT(Names(names.begin(), names.begin() + 3), ElementsAre("1", "2", "3"));
  EXPECT_THAT(Names(names.begin() + 3, names.end()), UnorderedElementsAre("a.txt", "b.txt"));
}

TEST(FolderScanTest, NamesStandInTheOrderOfTheFileSystem) {
  const TempFolder folder;
  for (int i = 0; i < 20; ++i) folder.Write(std::to_string(i * 7 % 20), "");
  Names order;
  QDirIterator files(QString::fromStdString(folder.Path()), QDir::Files);
  while (files.hasNext()) {
    files.next();
    order.push_back(files.fileName().toStdString());
  }
  EXPECT_EQ(FilesOf(folder.Path()), order);
}

TEST(FolderScanTest, TheCursorOfTheListStays) {
  const TempFolder folder;
  folder.Write("a.txt", "");
  TFilenamesList list;
  FillFolderFilesList(folder.Path(), &list, nullptr);
  std::string name;
  EXPECT_FALSE(list.GetCurrent(&name));
  list.GetFirst(nullptr);
  FillFolderFilesList(folder.Path(), &list, nullptr);
  EXPECT_TRUE(list.GetCurrent(&name) && list.GetNext(nullptr) && !list.GetNext(nullptr));
}

TEST(FolderScanTest, HiddenFilesAreNotListed) {
  const TempFolder folder;
  folder.Write("a.txt", "");
  folder.Write(".hidden", "");
  EXPECT_THAT(FilesOf(folder.Path()), ElementsAre("a.txt"));
}

TEST(FolderScanTest, FoldersAreNotListedNorEntered) {
  const TempFolder folder;
  folder.MakeFolder("sub");
  folder.Write("sub/b.txt", "");
  folder.Write("a.txt", "");
  EXPECT_THAT(FilesOf(folder.Path()), ElementsAre("a.txt"));
}

TEST(FolderScanTest, LinksToFilesAreListedButNotThoseToFoldersOrNowhere) {
  const TempFolder folder;
  folder.Write("a.txt", "");
  folder.MakeFolder("sub");
  fs::create_symlink("a.txt", folder / "link.txt");
  fs::create_symlink("sub", folder / "folder.lnk");
  fs::create_symlink("missing", folder / "broken.txt");
  EXPECT_THAT(FilesOf(folder.Path()), UnorderedElementsAre("a.txt", "link.txt"));
}

TEST(FolderScanTest, SpecialFilesAreNotListed) {
  const TempFolder folder;
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  (folder / "socket").copy(address.sun_path, sizeof address.sun_path - 1);
  const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(::bind(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  EXPECT_THAT(FilesOf(folder.Path()), IsEmpty());
  ::close(descriptor);
}

TEST(FolderScanTest, AFolderThatIsMissingOrAFileLeavesTheList) {
  const TempFolder folder;
  folder.Write("a.txt", "");
  TFilenamesList list;
  list.Insert("held");
  EXPECT_EQ(FillFolderFilesList(folder / "missing", &list, nullptr), 1u);
  EXPECT_EQ(FillFolderFilesList(folder / "a.txt", &list, nullptr), 1u);
  EXPECT_EQ(FillFolderFilesList("", &list, nullptr), 1u);
  EXPECT_THAT(Walk(list), ElementsAre("held"));
}

TEST(FolderScanTest, AFolderWithoutPermissionHoldsNothing) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may read every folder";
  const TempFolder folder;
  folder.MakeFolder("closed");
  folder.Write("closed/a.txt", "");
  fs::permissions(folder / "closed", fs::perms::none);
  EXPECT_THAT(FilesOf(folder / "closed"), IsEmpty());
  fs::permissions(folder / "closed", fs::perms::owner_all);
}

TEST(FolderScanTest, AFolderMayBeGivenAsALinkOrWithATrailingSlash) {
  const TempFolder folder;
  folder.MakeFolder("sub");
  folder.Write("sub/a.txt", "");
  fs::create_directory_symlink("sub", folder / "link");
  EXPECT_THAT(FilesOf(folder / "link"), ElementsAre("a.txt"));
  EXPECT_THAT(FilesOf(folder / "sub/"), ElementsAre("a.txt"));
}

TEST(FolderScanTest, NamesInUtf8AreListedByteForByteWhateverTheLocale) {
  const TempFolder folder;
  folder.MakeFolder(
      "\xc3\x9cn\xc3\xaf"
      "code \xf0\x9f\x9b\xb0");
  folder.Write(
      "\xc3\x9cn\xc3\xaf"
      "code \xf0\x9f\x9b\xb0/\xc3\x84mne.shp",
      "");
  for (const char* locale : {"C", "C.UTF-8"}) {
    std::setlocale(LC_ALL, locale);
    EXPECT_THAT(FilesOf(folder / "\xc3\x9cn\xc3\xaf"
                                 "code \xf0\x9f\x9b\xb0"),
                ElementsAre("\xc3\x84mne.shp"));
  }
  std::setlocale(LC_ALL, "C");
}

TEST(FolderScanTest, FilesWhoseNamesAreNotUtf8AreNotListed) {
  const TempFolder folder;
  folder.Write("a.txt", "");
  folder.Write("latin\xfc.txt", "");
  folder.Write("surrogate\xed\xa0\x80.txt", "");
  folder.Write("cut\xc3", "");
  EXPECT_THAT(FilesOf(folder.Path()), ElementsAre("a.txt"));
}

TEST(FolderScanTest, AFolderWhoseNameIsNotUtf8HoldsNothing) {
  const TempFolder folder;
  folder.MakeFolder("latin\xfc");
  folder.Write("latin\xfc/a.txt", "");
  EXPECT_THAT(FilesOf(folder / "latin\xfc"), IsEmpty());
}

TEST(FolderScanTest, NamesMayHoldAnyByteThatTheSystemAllows) {
  const TempFolder folder;
  for (const char* name : {"a\nb", "back\\slash", "*?[x]", " ", "\x7f\x01"}) folder.Write(name, "");
  EXPECT_THAT(FilesOf(folder.Path()),
              UnorderedElementsAre("a\nb", "back\\slash", "*?[x]", " ", "\x7f\x01"));
}

TEST(FolderScanTest, APathEndsAtItsFirstNul) {
  const TempFolder folder;
  folder.Write("a.txt", "");
  EXPECT_THAT(FilesOf(folder.Path() + std::string("\0/missing", 9)), ElementsAre("a.txt"));
}

TEST(FolderScanTest, TheHandlerIsStartedAskedAfterEveryFileAndStopped) {
  const TempFolder folder;
  for (const char* name : {"a", "b", "c"}) folder.Write(name, "");
  TFilenamesList list;
  ProgressLog progress(2);
  FillFolderFilesList(folder.Path(), &list, &progress);
  EXPECT_EQ(progress.calls, "Iqqsq.");
}

TEST(FolderScanTest, AnEmptyFolderStartsAndStopsTheHandler) {
  const TempFolder folder;
  TFilenamesList list;
  ProgressLog progress(1);
  FillFolderFilesList(folder.Path(), &list, &progress);
  EXPECT_EQ(progress.calls, "I.");
}

TEST(FolderScanTest, AFileIsInTheListWhenTheHandlerIsServed) {
  const TempFolder folder;
  for (const char* name : {"a", "b", "c"}) folder.Write(name, "");
  TFilenamesList list;
  ProgressLog progress(1);
  Names sizes;
  progress.onService = [&] { sizes.push_back(std::to_string(Walk(list).size())); };
  FillFolderFilesList(folder.Path(), &list, &progress);
  EXPECT_THAT(sizes, ElementsAre("1", "2", "3"));
}

TEST(FolderScanTest, WhatTheHandlerThrowsPassesAndTheScopeIsStopped) {
  const TempFolder folder;
  for (const char* name : {"a", "b", "c"}) folder.Write(name, "");
  TFilenamesList list;
  ProgressLog progress(2);
  progress.onService = [] { throw std::runtime_error("enough"); };
  EXPECT_THROW(FillFolderFilesList(folder.Path(), &list, &progress), std::runtime_error);
  EXPECT_EQ(progress.calls, "Iqqs.");
  EXPECT_EQ(Walk(list).size(), 2u);
}

TEST(FolderScanTest, EveryFailureToAllocatePasses) {
  const TempFolder folder;
  folder.Write("a name that is too long to be kept inside a string object", "");
  FilesOf(folder.Path());
  unsigned long failures = 0;
  for (bool done = false; !done; ++failures) {
    ASSERT_LT(failures, 10000u);
    TFilenamesList list;
    try {
      const ravelin_test::FailingNew failing(failures);
      EXPECT_EQ(FillFolderFilesList(folder.Path(), &list, nullptr), 1u);
      done = true;
    } catch (const std::bad_alloc&) {
    }
  }
  EXPECT_GT(failures, 2u);
}

TEST(FolderScanTest, AScanIsLinearInTheNumberOfFiles) {
  const TempFolder folder;
  const auto fill = [&](unsigned long size) {
    const std::string path = folder / std::to_string(size);
    if (!fs::create_directory(path)) return path;
    for (unsigned long i = 0; i < size; ++i)
      folder.Write(std::to_string(size) + "/" + std::to_string(i), "");
    return path;
  };
  fill(250), fill(1000);
  EXPECT_TRUE(kv_test::IsLinear(250, [&](unsigned long size) { FilesOf(fill(size)); }));
}

}  // namespace
