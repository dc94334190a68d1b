#include "host/io/PendingFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>

#include "host/HostError.h"
#include "host/support/ErrorOf.h"
#include "support/TempFolder.h"

namespace {

using ravelin::HostError;
using ravelin::PendingFile;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

void Write(PendingFile& file, const std::string& bytes) {
  file.Write(bytes.data(), bytes.size());
}

std::string ErrorOf(const std::string& path) {
  return ::ErrorOf([&] { PendingFile file(path); });
}

TEST(PendingFile, HoldsWhatWasWrittenOnceItIsCommitted) {
  TempFolder folder;
  PendingFile file(folder / "a");
  Write(file, "one ");
  Write(file, "two");
  file.Commit();
  EXPECT_EQ(folder.Read("a"), "one two");
  EXPECT_THAT(folder.Names(), ElementsAre("a"));
}

TEST(PendingFile, IsNotThereBeforeItIsCommitted) {
  TempFolder folder;
  PendingFile file(folder / "a");
  Write(file, std::string(1 << 20, 'x'));
  EXPECT_FALSE(folder.Has("a"));
}

TEST(PendingFile, LeavesNothingWhenItIsGivenUp) {
  TempFolder folder;
  {
    PendingFile file(folder / "a");
    Write(file, std::string(1 << 20, 'x'));
  }
  EXPECT_THAT(folder.Names(), IsEmpty());
}

TEST(PendingFile, LeavesTheFormerFileWhenItIsGivenUp) {
  TempFolder folder;
  folder.Write("a", "former");
  {
    PendingFile file(folder / "a");
    Write(file, "new");
  }
  EXPECT_EQ(folder.Read("a"), "former");
}

TEST(PendingFile, ReplacesTheFormerFileWhole) {
  TempFolder folder;
  folder.Write("a", "a former file that is longer");
  PendingFile file(folder / "a");
  Write(file, "new");
  EXPECT_EQ(folder.Read("a"), "a former file that is longer");
  file.Commit();
  EXPECT_EQ(folder.Read("a"), "new");
}

TEST(PendingFile, KeepsThePermissionsOfTheFileItReplaces) {
  TempFolder folder;
  folder.Write("a", "former");
  chmod((folder / "a").c_str(), 0640);
  PendingFile(folder / "a").Commit();
  struct stat status = {};
  stat((folder / "a").c_str(), &status);
  EXPECT_EQ(status.st_mode & 0777u, 0640u);
}

TEST(PendingFile, FollowsALinkToTheFileItReplaces) {
  TempFolder folder;
  folder.Write("real", "former");
  std::filesystem::create_symlink("real", folder / "link");
  PendingFile file(folder / "link");
  Write(file, "new");
  file.Commit();
  EXPECT_EQ(folder.Read("real"), "new");
  EXPECT_TRUE(std::filesystem::is_symlink(folder / "link"));
}

TEST(PendingFile, RefusesALinkThatLeadsNowhere) {
  TempFolder folder;
  std::filesystem::create_symlink("missing", folder / "link");
  EXPECT_THAT(ErrorOf(folder / "link"), HasSubstr("is a link that leads nowhere"));
}

TEST(PendingFile, RefusesAFolder) {
  TempFolder folder;
  EXPECT_THAT(ErrorOf(folder.Path()), HasSubstr("is a folder; name a file to write"));
}

TEST(PendingFile, RefusesWhatIsNoRegularFile) {
  EXPECT_THAT(ErrorOf("/dev/null"), HasSubstr("is not a regular file"));
}

TEST(PendingFile, RefusesAFolderThatIsNotThere) {
  TempFolder folder;
  EXPECT_THAT(ErrorOf(folder / "missing/a"),
              HasSubstr("No such file or directory; make its folder"));
}

TEST(PendingFile, RefusesANameThatIsTooLongBeforeAnyWork) {
  TempFolder folder;
  EXPECT_THAT(ErrorOf(folder / std::string(300, 'a')), HasSubstr("File name too long"));
}

TEST(PendingFile, RefusesAFolderWithoutPermission) {
  if (geteuid() == 0) GTEST_SKIP() << "the super-user may write everywhere";
  TempFolder folder;
  folder.MakeFolder("closed");
  chmod((folder / "closed").c_str(), 0500);
  EXPECT_THAT(ErrorOf(folder / "closed/a"), HasSubstr("Permission denied"));
}

TEST(PendingFile, FindsANameBesideAFormerTemporaryFile) {
  TempFolder folder;
  PendingFile one(folder / "a");
  PendingFile two(folder / "a");
  Write(one, "one");
  Write(two, "two");
  one.Commit();
  two.Commit();
  EXPECT_EQ(folder.Read("a"), "two");
  EXPECT_THAT(folder.Names(), ElementsAre("a"));
}

TEST(PendingFile, ReportsAFullDiskByTheWriteThatMetIt) {
  TempFolder folder;
  const auto former = std::signal(SIGXFSZ, SIG_IGN);
  struct rlimit limit = {};
  getrlimit(RLIMIT_FSIZE, &limit);
  const rlim_t kept = limit.rlim_cur;
  limit.rlim_cur = 100000;
  setrlimit(RLIMIT_FSIZE, &limit);
  const std::string message = ::ErrorOf([&] {
    PendingFile file(folder / "a");
    Write(file, std::string(1 << 20, 'x'));
    file.Commit();
  });
  limit.rlim_cur = kept;
  setrlimit(RLIMIT_FSIZE, &limit);
  std::signal(SIGXFSZ, former);
  EXPECT_THAT(message, HasSubstr("cannot be written: File too large; raise the limit"));
  EXPECT_THAT(folder.Names(), IsEmpty());
}

TEST(PendingFile, AppearsTogetherWithItsCompanions) {
  TempFolder folder;
  PendingFile one(folder / "a");
  PendingFile two(folder / "b");
  Write(one, "one");
  Write(two, "two");
  PendingFile::CommitTogether({&one, &two});
  EXPECT_EQ(folder.Read("a"), "one");
  EXPECT_EQ(folder.Read("b"), "two");
}

TEST(PendingFile, TakesCompanionsAwayAgainWhenItCannotAppear) {
  TempFolder folder;
  PendingFile one(folder / "a");
  PendingFile two(folder / "b");
  folder.MakeFolder("b");
  EXPECT_THROW(PendingFile::CommitTogether({&one, &two}), HostError);
  EXPECT_FALSE(folder.Has("a"));
}

TEST(PendingFile, TellsItsTemporaryPathAndSize) {
  TempFolder folder;
  PendingFile file(folder / "a");
  EXPECT_TRUE(std::filesystem::exists(file.TemporaryPath()));
  Write(file, "one");
  EXPECT_EQ(file.Size(), 3u);
  file.Commit();
  EXPECT_EQ(file.TemporaryPath(), "");
}

}  // namespace
