// The log saved to files.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "log/LogTest.h"
#include "support/TempFolder.h"

namespace {

using log_test::Joined;
using log_test::MixedLines;
using log_test::MixedLog;
using SatCommonUtils::TSatLog;

class SatLogFileTest : public ::testing::Test {
 protected:
  TempFolder folder;
};

/// While it lives, files of this process end at `bytes`: a disk that is full there.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : handler_(::signal(SIGXFSZ, SIG_IGN)) {
    ::getrlimit(RLIMIT_FSIZE, &former_);
    const rlimit tight = {bytes, former_.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &tight);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &former_);
    ::signal(SIGXFSZ, handler_);
  }

 private:
  rlimit former_{};
  void (*handler_)(int);
};

bool SaveWithRoom(const TSatLog& log, const std::string& path, rlim_t room) {
  const FileSizeLimit limit(room);
  return log.SaveToFile(path);
}

/// How many descriptors this process has open.
long OpenFiles() {
  long count = 0;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
    count += entry.is_symlink() ? 1 : 0;
  }
  return count;
}

TEST_F(SatLogFileTest, TheFileHoldsTheLinesAndNothingElse) {
  EXPECT_TRUE(MixedLog().SaveToFile(folder / "log"));
  EXPECT_EQ(folder.Read("log"), Joined(MixedLines()));
}

TEST_F(SatLogFileTest, AFileThatIsThereIsReplaced) {
  folder.Write("log", std::string(1000, 'x'));
  EXPECT_TRUE(MixedLog().SaveToFile(folder / "log"));
  EXPECT_EQ(folder.Read("log"), Joined(MixedLines()));
}

TEST_F(SatLogFileTest, AnEmptyLogMakesAnEmptyFile) {
  EXPECT_TRUE(TSatLog().SaveToFile(folder / "log"));
  EXPECT_TRUE(std::filesystem::is_regular_file(folder / "log"));
  EXPECT_EQ(folder.Read("log"), "");
}

TEST_F(SatLogFileTest, AnEmptyLogEmptiesAFileThatIsThere) {
  folder.Write("log", "as it was");
  EXPECT_TRUE(TSatLog().SaveToFile(folder / "log"));
  EXPECT_EQ(folder.Read("log"), "");
}

TEST_F(SatLogFileTest, APathIsTakenAsItIs) {
  EXPECT_TRUE(MixedLog().SaveToFile(folder / "Run \\ \xFC.LOG"));
  EXPECT_EQ(folder.Read("Run \\ \xFC.LOG"), Joined(MixedLines()));
}

TEST_F(SatLogFileTest, AFileThatCannotBeOpenedGivesFalse) {
  const TSatLog log = MixedLog();
  EXPECT_FALSE(log.SaveToFile(""));
  EXPECT_FALSE(log.SaveToFile(folder.Path()));
  EXPECT_FALSE(log.SaveToFile(folder / "no-such-folder/log"));
  EXPECT_FALSE(log.SaveToFile(folder / std::string("a\0b", 3)));
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST_F(SatLogFileTest, AFileThatCannotBeOpenedGivesFalseForAnEmptyLogToo) {
  EXPECT_FALSE(TSatLog().SaveToFile(folder.Path()));
}

TEST_F(SatLogFileTest, AFileWithoutPermissionGivesFalseAndStays) {
  if (::geteuid() == 0) GTEST_SKIP() << "root may write everywhere";
  const std::string path = folder.Write("log", "as it was");
  std::filesystem::permissions(path, std::filesystem::perms::owner_read);
  EXPECT_FALSE(MixedLog().SaveToFile(path));
  EXPECT_EQ(folder.Read("log"), "as it was");
}

TEST_F(SatLogFileTest, AFullDeviceGivesFalse) {
  if (::access("/dev/full", W_OK) != 0) GTEST_SKIP() << "there is no /dev/full";
  EXPECT_FALSE(MixedLog().SaveToFile("/dev/full"));
}

TEST_F(SatLogFileTest, AnEmptyLogIsSavedToAFullDevice) {
  if (::access("/dev/full", W_OK) != 0) GTEST_SKIP() << "there is no /dev/full";
  EXPECT_TRUE(TSatLog().SaveToFile("/dev/full"));
}

TEST_F(SatLogFileTest, ADiskThatIsFullAtAnyByteGivesFalseAndKeepsWhatFits) {
  const std::string whole = Joined(MixedLines());
  for (rlim_t room = 0; room <= whole.size() + 1; ++room) {
    const bool isSaved = SaveWithRoom(MixedLog(), folder / "log", room);
    EXPECT_EQ(isSaved, room >= whole.size()) << room;
    EXPECT_EQ(folder.Read("log"), whole.substr(0, room)) << room;
  }
}

TEST_F(SatLogFileTest, TheFileIsClosedAfterASuccessAndAfterAFailure) {
  const long before = OpenFiles();
  EXPECT_TRUE(MixedLog().SaveToFile(folder / "log"));
  EXPECT_EQ(OpenFiles(), before);
  EXPECT_FALSE(SaveWithRoom(MixedLog(), folder / "log", 10));
  EXPECT_EQ(OpenFiles(), before);
}

}  // namespace
