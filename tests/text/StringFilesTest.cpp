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
#include "support/FailingNew.h"
#include "support/TempFolder.h"

namespace {

using namespace std::string_literals;
using SatCommonUtils::ReadStringFromFile;
using SatCommonUtils::WriteStringToFile;

TEST(WriteStringToFile, MakesAFileOfTheBytes) {
  const TempFolder folder;
  EXPECT_TRUE(WriteStringToFile(folder / "a", "one\r\ntwo\0three"s));
  EXPECT_EQ(folder.Read("a"), "one\r\ntwo\0three"s);
}

TEST(WriteStringToFile, ReplacesWhatTheFileHeld) {
  const TempFolder folder;
  folder.Write("a", "longer than before");
  EXPECT_TRUE(WriteStringToFile(folder / "a", "new"));
  EXPECT_EQ(folder.Read("a"), "new");
}

TEST(WriteStringToFile, MakesAnEmptyFileOfAnEmptyString) {
  const TempFolder folder;
  EXPECT_TRUE(WriteStringToFile(folder / "a", ""));
  EXPECT_TRUE(std::filesystem::exists(folder / "a"));
  EXPECT_EQ(folder.Read("a"), "");
}

TEST(WriteStringToFile, FailsInAFolderThatIsNotThere) {
  const TempFolder folder;
  EXPECT_FALSE(WriteStringToFile(folder / "none/a", "x"));
  EXPECT_FALSE(std::filesystem::exists(folder / "none"));
}

TEST(WriteStringToFile, FailsOnNamesThatNoFileCanHave) {
  const TempFolder folder;
  EXPECT_FALSE(WriteStringToFile("", "x"));
  EXPECT_FALSE(WriteStringToFile(folder.Path(), "x"));
  EXPECT_FALSE(WriteStringToFile(folder / "a\0b"s, "x"));
  EXPECT_FALSE(WriteStringToFile(folder / std::string(300, 'a'), "x"));
  EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST(WriteStringToFile, FailsOnAFullDisk) {
  if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "there is no /dev/full here";
  EXPECT_FALSE(WriteStringToFile("/dev/full", "x"));
}

/// 0 when writing fails at every limit below the length and works at the length. The limits stay.
int WriteUpToEveryLimit(const std::string& path) {
  signal(SIGXFSZ, SIG_IGN);
  const std::string content = "twenty bytes of text";
  for (rlim_t limit = 0; limit <= content.size(); ++limit) {
    const rlimit files = {limit, RLIM_INFINITY};
    if (setrlimit(RLIMIT_FSIZE, &files) != 0) return 2;
    if (WriteStringToFile(path, content) != (limit == content.size())) return 1;
  }
  return 0;
}

/// Ends the process, its folder removed.
[[noreturn]] void WriteInAFolderOfItsOwn() {
  const int code = WriteUpToEveryLimit(TempFolder() / "a");
  std::_Exit(code);
}

TEST(WriteStringToFile, FailsWhenOnlyAPartOfItCanBeWritten) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(WriteInAFolderOfItsOwn(), ::testing::ExitedWithCode(0), "");
}

TEST(WriteStringToFile, FailsWithoutPermission) {
  if (::geteuid() == 0) GTEST_SKIP() << "the super-user may write everywhere";
  const TempFolder folder;
  folder.Write("a", "held");
  ::chmod((folder / "a").c_str(), 0400);
  EXPECT_FALSE(WriteStringToFile(folder / "a", "x"));
  EXPECT_EQ(folder.Read("a"), "held");
}

TEST(ReadStringFromFile, GivesAllBytes) {
  const TempFolder folder;
  std::string bytes;
  for (int i = 0; i < 100000; ++i) bytes += static_cast<char>(i * 7);
  folder.Write("a", bytes);
  EXPECT_TRUE(ReadStringFromFile(folder / "a") == bytes);
}

TEST(ReadStringFromFile, GivesAllBytesWhileTheServicesAreThereToo) {
  const TempFolder folder;
  Init_KvServices();
  EXPECT_TRUE(WriteStringToFile(folder / "a", "one\0two"s));
  const std::string read = ReadStringFromFile(folder / "a");
  Deinit_KvServices();
  EXPECT_EQ(read, "one\0two"s);
}

TEST(ReadStringFromFile, IsEmptyForAnEmptyFile) {
  const TempFolder folder;
  folder.Write("a", "");
  EXPECT_EQ(ReadStringFromFile(folder / "a"), "");
}

TEST(ReadStringFromFile, IsEmptyForWhatIsNoFile) {
  const TempFolder folder;
  EXPECT_EQ(ReadStringFromFile(folder / "none"), "");
  EXPECT_EQ(ReadStringFromFile(folder.Path()), "");
  EXPECT_EQ(ReadStringFromFile(""), "");
  EXPECT_EQ(ReadStringFromFile("/dev/null"), "");
}

TEST(ReadStringFromFile, IsEmptyForANameWithANul) {
  const TempFolder folder;
  folder.Write("a", "held");
  EXPECT_EQ(ReadStringFromFile(folder / "a\0b"s), "");
}

TEST(ReadStringFromFile, IsEmptyForAFileThatNoMemoryCanHold) {
  const TempFolder folder;
  const std::string path = folder.Write("a", "");
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
  const TempFolder folder;
  folder.Write("a", "held");
  ::chmod((folder / "a").c_str(), 0);
  EXPECT_EQ(ReadStringFromFile(folder / "a"), "");
}

const char* const kLongName = "a-name-that-is-too-long-to-be-held-in-the-string-itself";

TEST(StringFilesMemory, NoAllocationThatFailsGetsOutOfWriting) {
  const TempFolder folder;
  const std::string path = folder / kLongName;
  const std::string content(1000, 'x');
  unsigned long failures = 0;
  bool isWritten = false;
  for (; !isWritten && failures < 50; ++failures) {
    const ravelin_test::FailingNew failing(failures);
    isWritten = WriteStringToFile(path, content);
  }
  EXPECT_TRUE(isWritten);
  EXPECT_GT(failures, 1u);
  EXPECT_EQ(folder.Read(kLongName), content);
}

TEST(StringFilesMemory, NoAllocationThatFailsGetsOutOfReading) {
  const TempFolder folder;
  const std::string content(1000, 'x');
  const std::string path = folder.Write(kLongName, content);
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
