#include "Kv/Path.h"

#include <unistd.h>

#include <filesystem>
#include <string>

#include "gtest/gtest.h"
#include "support/TempFolder.h"

namespace {

// Makes another folder the working folder for a while.
class WorkingFolder {
 public:
  explicit WorkingFolder(const std::string& folder) : former_(std::filesystem::current_path()) {
    std::filesystem::current_path(folder);
  }
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;
  ~WorkingFolder() { std::filesystem::current_path(former_); }

 private:
  std::filesystem::path former_;
};

std::string Folder(const std::string& path) {
  return TKvPath(path).path(false).toSysStr();
}
std::string AbsoluteFolder(const std::string& path) {
  return TKvPath(path).path(true).toSysStr();
}
std::string WithoutSlash(const std::string& path) {
  return TKvPath(path).remSlash().toSysStr();
}

TEST(PathTest, ANewPathIsEmpty) {
  EXPECT_EQ(TKvPath().toSysStr(), "");
}

TEST(PathTest, KeepsEveryByteAsGiven) {
  const std::string odd("//a/./b/../\xff\\c d\0e/", 19);
  EXPECT_EQ(TKvPath(odd).toSysStr(), odd);
}

TEST(PathTest, TheFolderPartReachesToTheLastSlash) {
  EXPECT_EQ(Folder("/data/scene/b1.raw"), "/data/scene/");
  EXPECT_EQ(Folder("scene/b1.raw"), "scene/");
  EXPECT_EQ(Folder("a//b"), "a//");
}

TEST(PathTest, TheFolderPartOfAPathThatEndsInASlashIsAllOfIt) {
  EXPECT_EQ(Folder("/data/scene/"), "/data/scene/");
  EXPECT_EQ(Folder("/"), "/");
}

TEST(PathTest, TheFolderPartIsEmptyWithoutASlash) {
  EXPECT_EQ(Folder("b1.raw"), "");
  EXPECT_EQ(Folder(""), "");
  EXPECT_EQ(Folder("a\\b"), "");
}

TEST(PathTest, TheAbsoluteFolderOfARelativePathStartsAtTheWorkingFolder) {
  const TempFolder folder;
  const WorkingFolder working(folder.Path());
  const std::string here = std::filesystem::current_path().string();
  EXPECT_EQ(AbsoluteFolder("b1.raw"), here + "/");
  EXPECT_EQ(AbsoluteFolder("scene/b1.raw"), here + "/scene/");
  EXPECT_EQ(AbsoluteFolder("../b1.raw"), here + "/../");
}

TEST(PathTest, TheAbsoluteFolderInTheRootFolderHasOneSlash) {
  const WorkingFolder working("/");
  EXPECT_EQ(AbsoluteFolder("b1.raw"), "/");
}

TEST(PathTest, TheAbsoluteFolderOfAnAbsolutePathIsItsFolder) {
  EXPECT_EQ(AbsoluteFolder("/data/scene/b1.raw"), "/data/scene/");
}

TEST(PathTest, TheAbsoluteFolderOfAnEmptyPathIsEmpty) {
  EXPECT_EQ(AbsoluteFolder(""), "");
}

TEST(PathTest, ARelativePathStaysRelativeWhereTheWorkingFolderIsGone) {
  const TempFolder folder;
  const std::string gone = folder / "gone";
  std::filesystem::create_directory(gone);
  const WorkingFolder working(gone);
  std::filesystem::remove(gone);
  EXPECT_EQ(AbsoluteFolder("scene/b1.raw"), "scene/");
}

TEST(PathTest, RemSlashTakesAllTrailingSlashesAway) {
  EXPECT_EQ(WithoutSlash("/data/scene/"), "/data/scene");
  EXPECT_EQ(WithoutSlash("scene///"), "scene");
  EXPECT_EQ(WithoutSlash("/data"), "/data");
  EXPECT_EQ(WithoutSlash(""), "");
}

TEST(PathTest, RemSlashKeepsOneSlashOfAPathOfSlashesAlone) {
  EXPECT_EQ(WithoutSlash("/"), "/");
  EXPECT_EQ(WithoutSlash("///"), "/");
}

TEST(PathTest, TheFileNameIsWhatFollowsTheLastSlash) {
  EXPECT_EQ(TKvPath("/data/scene/b1.raw").fileName(), "b1.raw");
  EXPECT_EQ(TKvPath("b1.raw").fileName(), "b1.raw");
  EXPECT_EQ(TKvPath("a\\b").fileName(), "a\\b");
}

TEST(PathTest, TheFileNameBehindATrailingSlashIsEmpty) {
  EXPECT_EQ(TKvPath("/data/").fileName(), "");
  EXPECT_EQ(TKvPath("").fileName(), "");
}

TEST(DeleteFileTest, DeletesAFile) {
  const TempFolder folder;
  const std::string file = folder.Write("a", "x");
  EXPECT_TRUE(KvDeleteFile(TKvPath(file)));
  EXPECT_FALSE(std::filesystem::exists(file));
}

TEST(DeleteFileTest, DeletesALinkAndNotWhatItLeadsTo) {
  const TempFolder folder;
  const std::string file = folder.Write("a", "x");
  std::filesystem::create_symlink(file, folder / "link");
  EXPECT_TRUE(KvDeleteFile(TKvPath(folder / "link")));
  EXPECT_FALSE(std::filesystem::is_symlink(folder / "link"));
  EXPECT_TRUE(std::filesystem::exists(file));
}

TEST(DeleteFileTest, IsFalseForWhatIsNotThere) {
  const TempFolder folder;
  EXPECT_FALSE(KvDeleteFile(TKvPath(folder / "missing")));
  EXPECT_FALSE(KvDeleteFile(TKvPath()));
}

TEST(DeleteFileTest, NeverDeletesAFolder) {
  const TempFolder folder;
  std::filesystem::create_directory(folder / "empty");
  EXPECT_FALSE(KvDeleteFile(TKvPath(folder / "empty")));
  EXPECT_FALSE(KvDeleteFile(TKvPath(folder / "empty/")));
  EXPECT_TRUE(std::filesystem::is_directory(folder / "empty"));
}

TEST(DeleteFileTest, NeverDeletesAFolderThroughALink) {
  const TempFolder folder;
  std::filesystem::create_directory(folder / "empty");
  std::filesystem::create_directory_symlink(folder / "empty", folder / "link");
  EXPECT_FALSE(KvDeleteFile(TKvPath(folder / "link/")));
  EXPECT_TRUE(std::filesystem::is_directory(folder / "empty"));
}

TEST(DeleteFileTest, RefusesAPathThatHoldsANulByte) {
  const TempFolder folder;
  const std::string file = folder.Write("a", "x");
  EXPECT_FALSE(KvDeleteFile(TKvPath(file + std::string("\0b", 2))));
  EXPECT_TRUE(std::filesystem::exists(file));
}

}  // namespace
