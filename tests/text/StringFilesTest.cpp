#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <string>

#include "Kv/Services.h"
#include "SatCommonUtils/Text.h"
#include "kv/TemporaryFolder.h"
#include "support/FailingNew.h"

namespace {

using namespace std::string_literals;
using kv_test::TemporaryFolder;
using SatCommonUtils::ReadStringFromFile;
using SatCommonUtils::WriteStringToFile;

TEST(WriteStringToFile, MakesAFileOfTheBytes) {
  const TemporaryFolder folder;
  EXPECT_TRUE(WriteStringToFile(folder.Path("a"), "one\r\ntwo\0three"s));
  EXPECT_EQ(folder.Contents("a"), "one\r\ntwo\0three"s);
}

TEST(WriteStringToFile, ReplacesWhatTheFileHeld) {
  const TemporaryFolder folder;
  folder.File("a", "longer than before");
  EXPECT_TRUE(WriteStringToFile(folder.Path("a"), "new"));
  EXPECT_EQ(folder.Contents("a"), "new");
}

TEST(WriteStringToFile, MakesAnEmptyFileOfAnEmptyString) {
  const TemporaryFolder folder;
  EXPECT_TRUE(WriteStringToFile(folder.Path("a"), ""));
  EXPECT_TRUE(std::filesystem::exists(folder.Path("a")));
  EXPECT_EQ(folder.Contents("a"), "");
}

TEST(WriteStringToFile, FailsInAFolderThatIsNotThere) {
  const TemporaryFolder folder;
  EXPECT_FALSE(WriteStringToFile(folder.Path("none/a"), "x"));
  EXPECT_FALSE(std::filesystem::exists(folder.Path("none")));
}

TEST(WriteStringToFile, FailsOnNamesThatNoFileCanHave) {
  const TemporaryFolder folder;
  EXPECT_FALSE(WriteStringToFile("", "x"));
  EXPECT_FALSE(WriteStringToFile(folder.Path(), "x"));
  EXPECT_FALSE(WriteStringToFile(folder.Path("a\0b"s), "x"));
  EXPECT_FALSE(WriteStringToFile(folder.Path(std::string(300, 'a')), "x"));
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST(WriteStringToFile, FailsOnAFullDisk) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "there is no /dev/full here";
  EXPECT_FALSE(WriteStringToFile("/dev/full", "x"));
}

/// Ends the process: 0 when writing fails at every limit below the length and works at the length.
[[noreturn]] void WriteUpToEveryLimit(const std::string& path) {
  signal(SIGXFSZ, SIG_IGN);
  const std::string content = "twenty bytes of text";
  for (rlim_t limit = 0; limit <= content.size(); ++limit) {
    const rlimit files = {limit, RLIM_INFINITY};
    if (setrlimit(RLIMIT_FSIZE, &files) != 0) std::_Exit(2);
    if (WriteStringToFile(path, content) != (limit == content.size())) std::_Exit(1);
  }
  std::_Exit(0);
}

TEST(WriteStringToFile, FailsWhenOnlyAPartOfItCanBeWritten) {
  const TemporaryFolder folder;
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(WriteUpToEveryLimit(folder.Path("a")), ::testing::ExitedWithCode(0), "");
}

TEST(WriteStringToFile, FailsWithoutPermission) {
  if (::geteuid() == 0) GTEST_SKIP() << "the super-user may write everywhere";
  const TemporaryFolder folder;
  folder.File("a", "held");
  ::chmod(folder.Path("a").c_str(), 0400);
  EXPECT_FALSE(WriteStringToFile(folder.Path("a"), "x"));
  EXPECT_EQ(folder.Contents("a"), "held");
}

TEST(ReadStringFromFile, GivesAllBytes) {
  const TemporaryFolder folder;
  std::string bytes;
  for (int i = 0; i < 100000; ++i) bytes += static_cast<char>(i * 7);
  folder.File("a", bytes);
  EXPECT_TRUE(ReadStringFromFile(folder.Path("a")) == bytes);
}

TEST(ReadStringFromFile, GivesAllBytesWhileTheServicesAreThereToo) {
  const TemporaryFolder folder;
  Init_KvServices();
  EXPECT_TRUE(WriteStringToFile(folder.Path("a"), "one\0two"s));
  const std::string read = ReadStringFromFile(folder.Path("a"));
  Deinit_KvServices();
  EXPECT_EQ(read, "one\0two"s);
}

TEST(ReadStringFromFile, IsEmptyForAnEmptyFile) {
  const TemporaryFolder folder;
  folder.File("a", "");
  EXPECT_EQ(ReadStringFromFile(folder.Path("a")), "");
}

TEST(ReadStringFromFile, IsEmptyForWhatIsNoFile) {
  const TemporaryFolder folder;
  EXPECT_EQ(ReadStringFromFile(folder.Path("none")), "");
  EXPECT_EQ(ReadStringFromFile(folder.Path()), "");
  EXPECT_EQ(ReadStringFromFile(""), "");
  EXPECT_EQ(ReadStringFromFile("/dev/null"), "");
}

TEST(ReadStringFromFile, IsEmptyForANameWithANul) {
  const TemporaryFolder folder;
  folder.File("a", "held");
  EXPECT_EQ(ReadStringFromFile(folder.Path("a\0b"s)), "");
}

TEST(ReadStringFromFile, IsEmptyForAFileThatNoMemoryCanHold) {
  const TemporaryFolder folder;
  const std::string path = folder.File("a", "");
  std::error_code error;
  std::filesystem::resize_file(path, 1UL << 43, error);
  if (error) GTEST_SKIP() << "no file of 8 TiB can be made here: " << error.message();
  EXPECT_EQ(ReadStringFromFile(path), "");
}

TEST(ReadStringFromFile, IsEmptyForAFileThatEndsBeforeItsSize) {
  // A page by its size, a few bytes when it is read.
  const std::string path = "/sys/devices/system/cpu/online";
  std::ifstream file(path, std::ios::binary);
  const std::string bytes(std::istreambuf_iterator<char>(file), {});
  std::error_code error;
  const auto size = std::filesystem::file_size(path, error);
  if (error || bytes.empty() || bytes.size() == size) GTEST_SKIP() << "no such file here";
  EXPECT_EQ(ReadStringFromFile(path), "");
}

TEST(ReadStringFromFile, IsEmptyWithoutPermission) {
  if (::geteuid() == 0) GTEST_SKIP() << "the super-user may read everything";
  const TemporaryFolder folder;
  folder.File("a", "held");
  ::chmod(folder.Path("a").c_str(), 0);
  EXPECT_EQ(ReadStringFromFile(folder.Path("a")), "");
}

const char* const kLongName = "a-name-that-is-too-long-to-be-held-in-the-string-itself";

TEST(StringFilesMemory, NoAllocationThatFailsGetsOutOfWriting) {
  const TemporaryFolder folder;
  const std::string path = folder.Path(kLongName);
  const std::string content(1000, 'x');
  unsigned long failures = 0;
  bool isWritten = false;
  for (; !isWritten && failures < 50; ++failures) {
    const ravelin_test::FailingNew failing(failures);
    isWritten = WriteStringToFile(path, content);
  }
  EXPECT_TRUE(isWritten);
  EXPECT_GT(failures, 1u);
  EXPECT_EQ(folder.Contents(kLongName), content);
}

TEST(StringFilesMemory, NoAllocationThatFailsGetsOutOfReading) {
  const TemporaryFolder folder;
  const std::string content(1000, 'x');
  const std::string path = folder.File(kLongName, content);
  unsigned long failures = 0;
  std::string read;
  for (; read.empty() && failures < 50; ++failures) {
    const ravelin_test::FailingNew failing(failures);
    read = ReadStringFromFile(path);
  }
  EXPECT_EQ(read, content);
  EXPECT_GT(failures, 1u);
}

}  // namespace
