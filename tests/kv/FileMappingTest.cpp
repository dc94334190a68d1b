// Reading while the services are up: from a mapping that the file may be cut under.
#include <fcntl.h>
#include <linux/magic.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/statfs.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "BuildKind.h"
#include "Kv/Services.h"
#include "Kv/Stream.h"
#include "StreamModel.h"
#include "gtest/gtest.h"
#include "support/TempFolder.h"

namespace {

using kv_test::kSanitized;
using kv_test::LineLikeBytes;
using kv_test::ReadExact;
using kv_test::ReadLineExact;
using kv_test::StepAndCompare;
using kv_test::StreamModel;

constexpr unsigned long kPage = 4096;
constexpr unsigned long kMiB = 1ul << 20;

class FileMappingTest : public testing::Test {
 protected:
  FileMappingTest() { Init_KvServices(); }
  ~FileMappingTest() override { Deinit_KvServices(); }

  const TempFolder folder;
};

// A descriptor to ask the system with, beside the stream.
class Descriptor {
 public:
  explicit Descriptor(const std::string& path) : number_(::open(path.c_str(), O_RDWR | O_CLOEXEC)) {
    if (number_ < 0) throw std::runtime_error("cannot open " + path);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() { ::close(number_); }

  std::string Read(unsigned long pos, unsigned long count) const {
    std::string bytes(count, '#');
    const ssize_t got = ::pread(number_, bytes.data(), count, static_cast<off_t>(pos));
    bytes.resize(got < 0 ? 0 : static_cast<std::size_t>(got));
    return bytes;
  }
  void Cut(unsigned long size) const {
    ASSERT_EQ(::ftruncate(number_, static_cast<off_t>(size)), 0);
  }
  void Write(unsigned long pos, const std::string& bytes) const {
    ASSERT_EQ(::pwrite(number_, bytes.data(), bytes.size(), static_cast<off_t>(pos)),
              static_cast<ssize_t>(bytes.size()));
  }

 private:
  int number_;
};

std::string ReadAt(TKvStream& stream, unsigned long pos, unsigned long count) {
  EXPECT_TRUE(stream.SetPos(pos));
  return ReadExact(stream, count);
}

void ExpectSame(TKvStream& stream, const Descriptor& file, unsigned long pos, unsigned long count) {
  ASSERT_EQ(ReadAt(stream, pos, count), file.Read(pos, count)) << "at " << pos << " of " << count;
}

std::string NonZeroBytes(std::mt19937& random, unsigned long size) {
  std::string bytes(size, '\0');
  for (char& byte : bytes) byte = static_cast<char>(1 + random() % 255);
  return bytes;
}

// Bytes of which most pages hold long runs of zeros, and some nothing else.
std::string MostlyZeroBytes(std::mt19937& random, unsigned long size) {
  std::string bytes(size, '\0');
  for (unsigned long i = 0; i < size; i += 1 + random() % 700) bytes[i] = 'x';
  return bytes;
}

bool IsMapped(const std::string& path) {
  std::ifstream maps("/proc/self/maps");
  std::stringstream text;
  text << maps.rdbuf();
  return text.str().find(path) != std::string::npos;
}

// The figure of a line "<name>: <figure>..." in a file of the system; 0 when there is none.
unsigned long Figure(const std::string& file, const std::string& name) {
  std::ifstream in(file);
  for (std::string line; std::getline(in, line);) {
    if (line.rfind(name + ":", 0) == 0) return std::stoul(line.substr(name.size() + 1));
  }
  return 0;
}

unsigned long ResidentFileBytes() {
  const std::string status = "/proc/self/status";
  return (Figure(status, "RssFile") + Figure(status, "RssShmem")) * 1024;
}

bool IsInMemory(const std::string& path) {
  struct statfs system = {};
  return ::statfs(path.c_str(), &system) == 0 && system.f_type == TMPFS_MAGIC;
}

// Cuts a file byte by byte under its mapping; at every size, reads of all kinds have to be those
// that the system gives.
void CutAtEveryByte(const TempFolder& folder, const std::string& bytes, unsigned seed) {
  std::mt19937 random(seed);
  const unsigned long size = bytes.size();
  const Descriptor file(folder.Write("a", bytes));
  TKvFileStream stream(TKvPath(folder / "a"), kvOpenRead, kvShareAll);
  for (unsigned long cut = size; cut > 0; --cut) {
    file.Cut(cut - 1);
    const unsigned long end = cut - 1;
    const unsigned long near = random() % 20;
    const unsigned long begin = end - std::min(end, random() % 9000);
    ASSERT_NO_FATAL_FAILURE(ExpectSame(stream, file, begin, end - begin + 1));
    ASSERT_NO_FATAL_FAILURE(ExpectSame(stream, file, begin, end - begin + near + 1));
    ASSERT_NO_FATAL_FAILURE(ExpectSame(stream, file, end - std::min(end, near), near + 1));
    const unsigned long pos = random() % size;
    ASSERT_NO_FATAL_FAILURE(ExpectSame(stream, file, pos, 1 + random() % (size - pos)));
    ASSERT_NO_FATAL_FAILURE(ExpectSame(stream, file, 0, cut % 64 == 0 ? size : 1));
  }
}

TEST_F(FileMappingTest, AFileCutAtEveryByteIsReadAsTheSystemReadsIt) {
  std::mt19937 random(1);
  CutAtEveryByte(folder, NonZeroBytes(random, 3 * kPage + 100), 1);
}

TEST_F(FileMappingTest, AFileOfZerosCutAtEveryByteIsReadAsTheSystemReadsIt) {
  CutAtEveryByte(folder, std::string(3 * kPage + 100, '\0'), 2);
}

TEST_F(FileMappingTest, AFileWithZerosCutAtEveryByteIsReadAsTheSystemReadsIt) {
  std::mt19937 random(3);
  CutAtEveryByte(folder, MostlyZeroBytes(random, 3 * kPage), 3);
}

TEST_F(FileMappingTest, ACutAroundEveryPageBorderIsReadAsTheSystemReadsIt) {
  std::mt19937 random(4);
  const unsigned long size = 4 * kPage;
  const std::string bytes = NonZeroBytes(random, size);
  for (unsigned long border = 0; border <= size; border += kPage) {
    for (unsigned long cut = border - std::min(border, 3ul); cut <= std::min(border + 3, size);
         ++cut) {
      const Descriptor file(folder.Write("a", bytes));
      TKvFileStream stream(TKvPath(folder / "a"), kvOpenRead, kvShareAll);
      ReadAt(stream, 0, size);
      file.Cut(cut);
      for (unsigned long pos = cut - std::min(cut, 3ul); pos <= std::min(cut + 3, size - 1);
           ++pos) {
        for (const unsigned long count : {1ul, 2ul, 3ul, 4ul, 5ul, kPage, kPage + 1, size - pos}) {
          if (count > size - pos) continue;
          ASSERT_NO_FATAL_FAILURE(ExpectSame(stream, file, pos, count)) << "cut at " << cut;
        }
      }
    }
  }
}

TEST_F(FileMappingTest, AFileCutBetweenTwoReadsEndsWhereItWasCut) {
  folder.Write("a", std::string(3 * kPage, 'x'));
  TKvFileStream stream(TKvPath(folder / "a"), kvOpenRead, kvShareAll);
  EXPECT_EQ(ReadExact(stream, 10), "xxxxxxxxxx");
  std::filesystem::resize_file(folder / "a", 15);
  EXPECT_EQ(ReadExact(stream, 2 * kPage), "xxxxx");
  EXPECT_EQ(stream.GetPos(), 15u);
  EXPECT_TRUE(stream.Eof());
  EXPECT_EQ(stream.getSize(), 15u);
}

TEST_F(FileMappingTest, AFileThatWasCutAndGrewAgainIsReadToItsNewEnd) {
  const Descriptor file(folder.Write("a", std::string(3 * kPage, 'x')));
  TKvFileStream stream(TKvPath(folder / "a"), kvOpenRead, kvShareAll);
  ReadAt(stream, 0, 3 * kPage);
  file.Cut(100);
  EXPECT_EQ(ReadAt(stream, 0, 3 * kPage).size(), 100u);
  file.Cut(2 * kPage + 7);
  ExpectSame(stream, file, 0, 3 * kPage);
  EXPECT_EQ(ReadAt(stream, 0, 3 * kPage).size(), 2 * kPage + 7);
}

TEST_F(FileMappingTest, LinesOfAFileThatWasCutEndWhereItWasCut) {
  std::string bytes;
  for (int i = 0; i < 5000; ++i) bytes += "line\n";
  folder.Write("a", bytes);
  TKvFileStream stream(TKvPath(folder / "a"), kvOpenRead, kvShareAll);
  ReadLineExact(stream, 100);
  std::filesystem::resize_file(folder / "a", 10003);
  unsigned long lines = 1;
  std::string last;
  while (!stream.Eof()) {
    last = ReadLineExact(stream, 100).text;
    ++lines;
  }
  EXPECT_EQ(lines, 2001u);
  EXPECT_EQ(last, "lin");
}

// Whether `read` is what `bytes` hold from `pos` on, but for zeros that a cut leaves for a moment.
bool HoldsNothingForeign(const std::string& bytes, unsigned long pos, const std::string& read) {
  return std::equal(read.begin(), read.end(), bytes.begin() + static_cast<std::ptrdiff_t>(pos),
                    [](char is, char was) { return is == was || is == 0; });
}

TEST_F(FileMappingTest, AFileCutWhileItIsReadGivesItsBytesOrZerosAndNothingElse) {
  std::mt19937 random(6);
  const unsigned long size = 64 * kPage;
  const std::string bytes = NonZeroBytes(random, size);
  for (int round = 0; round < 4; ++round) {
    const Descriptor file(folder.Write("a", bytes));
    TKvFileStream stream(TKvPath(folder / "a"), kvOpenRead, kvShareAll);
    std::thread cutter([&] {
      for (unsigned long cut = size; cut > 1000; cut -= 1777) file.Cut(cut);
      file.Cut(0);
    });
    while (stream.getSize() > 0) {
      const unsigned long pos = random() % size;
      const unsigned long count = 1 + random() % (3 * kPage);
      const std::string read = ReadAt(stream, pos, count);
      if (!HoldsNothingForeign(bytes, pos, read)) {
        ADD_FAILURE() << "foreign bytes at " << pos << " of " << count;
        break;
      }
    }
    cutter.join();
    EXPECT_EQ(ReadAt(stream, 0, size), "");
  }
}

TEST_F(FileMappingTest, StreamsOnSeveralThreadsMeetTheirOwnFaultsOnly) {
  std::vector<std::thread> threads;
  for (unsigned t = 0; t < 4; ++t) {
    threads.emplace_back([t] {
      const TempFolder own;
      std::mt19937 random(t);
      CutAtEveryByte(
          own, t % 2 == 0 ? NonZeroBytes(random, 2 * kPage) : MostlyZeroBytes(random, 2 * kPage),
          t);
    });
  }
  for (std::thread& thread : threads) thread.join();
}

TEST_F(FileMappingTest, AFileIsMappedFromItsFirstReadUntilItIsClosed) {
  const std::string path = std::filesystem::canonical(folder.Write("a", "abcdef")).string();
  TKvFileStream stream(TKvPath(path), kvOpenRead, kvShareAll);
  ReadAt(stream, 0, 3);
  EXPECT_TRUE(IsMapped(path));
  stream.Purge();
  EXPECT_EQ(ReadAt(stream, 3, 3), "def");
  EXPECT_TRUE(IsMapped(path));
  stream.Close();
  EXPECT_FALSE(IsMapped(path));
}

TEST_F(FileMappingTest, AFileIsNotMappedWhileTheServicesAreDown) {
  const std::string path = std::filesystem::canonical(folder.Write("a", "abcdef")).string();
  Deinit_KvServices();
  TKvFileStream stream(TKvPath(path), kvOpenRead, kvShareAll);
  EXPECT_EQ(ReadAt(stream, 0, 3), "abc");
  EXPECT_FALSE(IsMapped(path));
  Init_KvServices();
  EXPECT_EQ(ReadAt(stream, 3, 3), "def");
  EXPECT_TRUE(IsMapped(path));
}

TEST_F(FileMappingTest, AFileCutAfterTheServicesWentDownIsStillReadSafely) {
  const Descriptor file(folder.Write("a", std::string(3 * kPage, 'x')));
  TKvFileStream stream(TKvPath(folder / "a"), kvOpenRead, kvShareAll);
  ReadAt(stream, 0, 3 * kPage);
  Deinit_KvServices();
  file.Cut(100);
  ExpectSame(stream, file, 0, 3 * kPage);
  ExpectSame(stream, file, 2 * kPage, 10);
}

TEST_F(FileMappingTest, ServicesThatComeAndGoChangeNoAnswer) {
  for (unsigned seed = 0; seed < 10; ++seed) {
    std::mt19937 random(seed);
    const std::string bytes = LineLikeBytes(random, random() % 30000);
    folder.Write("a", bytes);
    TKvFileStream stream(TKvPath(folder / "a"), kvOpenRead, kvShareAll);
    StreamModel model(bytes);
    for (int step = 0; step < 1000; ++step) {
      if (random() % 20 == 0) KvServicesReady() ? Deinit_KvServices() : Init_KvServices();
      ASSERT_NO_FATAL_FAILURE(StepAndCompare(stream, model, random, bytes.size()))
          << "seed " << seed << " step " << step;
    }
    Init_KvServices();
  }
}

// Calls of the system that read, as the system counts them; less those of asking.
unsigned long ReadCallsOf(const std::string& path, int reads) {
  TKvFileStream stream(TKvPath(path), kvOpenRead, kvShareAll);
  char buffer[512];
  stream.Read(buffer, sizeof buffer);
  const auto count = [] { return Figure("/proc/self/io", "syscr"); };
  const unsigned long asking = count();
  const unsigned long before = count();
  for (int i = 0; i < reads; ++i) {
    stream.SetPos(static_cast<unsigned long>(i) * 7);
    EXPECT_EQ(stream.Read(buffer, sizeof buffer), sizeof buffer);
  }
  return count() - before - (before - asking);
}

TEST_F(FileMappingTest, AReadCostsNoReadingCallOfTheSystemAndOneWithoutServices) {
  if (Figure("/proc/self/io", "syscr") == 0) GTEST_SKIP() << "the system does not count calls";
  const std::string path = folder.Write("a", std::string(4 * kPage, 'x'));
  EXPECT_EQ(ReadCallsOf(path, 1000), 0u);
  Deinit_KvServices();
  EXPECT_EQ(ReadCallsOf(path, 1000), 1000u);
}

TEST_F(FileMappingTest, LinesAreReadAheadThroughABuffer) {
  const auto count = [] { return Figure("/proc/self/io", "syscr"); };
  if (count() == 0) GTEST_SKIP() << "the system does not count calls";
  std::string lines;
  for (int i = 0; i < 1000; ++i) lines += "line\n";
  Deinit_KvServices();
  TKvFileStream stream(TKvPath(folder.Write("a", lines)), kvOpenRead, kvShareAll);
  const unsigned long asking = count();
  const unsigned long before = count();
  char line[10];
  for (int i = 0; i < 1000; ++i) ASSERT_EQ(stream.ReadLine(line, sizeof line), 5u);
  EXPECT_LE(count() - before - (before - asking), 10u);
}

constexpr int kCannotTell = 2;

// Runs `action` in a process that the system ends at any call but to read, write and end; returns
// its exit code, or -1.
template <class Action>
int ExitWithoutCalls(const Action& action) {
  const pid_t process = ::fork();
  if (process == 0) {
    if (::prctl(PR_SET_SECCOMP, SECCOMP_MODE_STRICT) != 0) ::_exit(kCannotTell);
    ::syscall(SYS_exit, action() ? 0 : 1);
  }
  int status = 0;
  const bool ended = ::waitpid(process, &status, 0) == process && WIFEXITED(status);
  return ended ? WEXITSTATUS(status) : -1;
}

TEST_F(FileMappingTest, SettingThePositionMakesNoCallOfTheSystemAndNeitherDoesAMappedRead) {
  if (kSanitized) GTEST_SKIP() << "the sanitizer makes calls of its own";
  TKvFileStream stream(TKvPath(folder.Write("a", std::string(4 * kPage, 'x'))), kvOpenRead,
                       kvShareAll);
  ReadExact(stream, 10);
  const auto read = [&] {
    char row[100];
    for (unsigned long pos = 0; pos < 3 * kPage; pos += 7) {
      if (!stream.SetPos(pos) || stream.Read(row, sizeof row) != sizeof row) return false;
    }
    return stream.GetPos() > 3 * kPage;
  };
  const auto seek = [&] { return stream.SetPos(5) && stream.GetPos() == 5; };
  const int mapped = ExitWithoutCalls(read);
  if (mapped == kCannotTell)
    GTEST_SKIP() << "the system cannot be told to end a process that calls";
  EXPECT_EQ(mapped, 0);
  Deinit_KvServices();
  EXPECT_EQ(ExitWithoutCalls(seek), 0);
  EXPECT_EQ(ExitWithoutCalls(read), -1);
}

TEST_F(FileMappingTest, WithoutAddressSpaceForAMappingTheFileIsReadAllTheSame) {
  if (kSanitized) GTEST_SKIP() << "the sanitizer itself needs more address space";
  const std::string path = std::filesystem::canonical(folder.WriteSparse("a", 8ul << 30)).string();
  const Descriptor file(path);
  struct rlimit former = {};
  ::getrlimit(RLIMIT_AS, &former);
  const struct rlimit tight = {Figure("/proc/self/status", "VmSize") * 1024 + 64 * kMiB,
                               former.rlim_max};
  ::setrlimit(RLIMIT_AS, &tight);
  TKvFileStream stream(TKvPath(path), kvOpenRead, kvShareAll);
  const std::string read = ReadAt(stream, 5ul << 30, 100);
  const bool mapped = IsMapped(path);
  ::setrlimit(RLIMIT_AS, &former);
  EXPECT_EQ(read, std::string(100, '\0'));
  EXPECT_FALSE(mapped);
}

// A file larger than what a stream keeps resident, and how much of it is.
class ResidencyTest : public FileMappingTest {
 protected:
  static constexpr unsigned long kSize = 1024 * kMiB;
  static constexpr unsigned long kLimit = 64 * kMiB;
  static constexpr unsigned long kSlack = 4 * kMiB;  // what the program itself may load meanwhile

  ResidencyTest()
      : stream(TKvPath(folder.WriteSparse("a", kSize)), kvOpenRead, kvShareAll),
        before_(ResidentFileBytes()) {}

  unsigned long Resident() const {
    const unsigned long now = ResidentFileBytes();
    return now > before_ ? now - before_ : 0;
  }
  void Touch(unsigned long pos) {
    char row[512];
    stream.SetPos(pos);
    ASSERT_EQ(stream.Read(row, sizeof row), sizeof row);
  }

  TKvFileStream stream;

 private:
  const unsigned long before_;
};

TEST_F(ResidencyTest, AFileReadThroughRowByRowStaysWithinTheLimit) {
  unsigned long most = 0;
  // In memory, holes take room once they are read through a mapping.
  const unsigned long end = IsInMemory(folder.Path()) ? kSize / 4 : kSize;
  for (unsigned long pos = 0; pos < end; pos += 16384) {
    ASSERT_NO_FATAL_FAILURE(Touch(pos));
    if (pos % (8 * kMiB) == 0) most = std::max(most, Resident());
  }
  EXPECT_LE(most, kLimit + kSlack);
  EXPECT_GE(most, kLimit / 8);  // it is mapped indeed
}

TEST_F(ResidencyTest, RowsAtRandomStayWithinTheLimit) {
  std::mt19937 random(1);
  unsigned long most = 0;
  for (int i = 0; i < 20000; ++i) {
    ASSERT_NO_FATAL_FAILURE(Touch(random() % (256 * kMiB)));
    if (i % 500 == 0) most = std::max(most, Resident());
  }
  EXPECT_LE(most, kLimit + kSlack);
}

TEST_F(ResidencyTest, AReadLargerThanTheLimitStaysWithinIt) {
  const unsigned long count = 100 * kMiB;
  const auto buffer = std::make_unique<char[]>(count);
  stream.SetPos(kMiB + 1);
  EXPECT_EQ(stream.Read(buffer.get(), count), count);
  EXPECT_LE(Resident(), kLimit + kSlack);
  EXPECT_EQ(stream.GetPos(), kMiB + 1 + count);
}

TEST_F(ResidencyTest, PurgeGivesEveryPageBack) {
  for (unsigned long pos = 0; pos < 32 * kMiB; pos += 16384) Touch(pos);
  EXPECT_GE(Resident(), 4 * kMiB);
  stream.Purge();
  EXPECT_LE(Resident(), kSlack);
  ASSERT_NO_FATAL_FAILURE(Touch(100 * kMiB));
}

TEST_F(ResidencyTest, BytesAcrossThePiecesThatAreGivenBackAreTheFilesOwn) {
  const Descriptor file(folder / "a");
  std::mt19937 random(2);
  const std::string marks = NonZeroBytes(random, 5000);
  for (unsigned long border = 2 * kMiB; border < 200 * kMiB; border += 2 * kMiB) {
    file.Write(border - 2500, marks);
  }
  for (int i = 0; i < 2000; ++i) {
    const unsigned long border = 2 * kMiB * (1 + random() % 99);
    const unsigned long pos = border - random() % 3000;
    ASSERT_NO_FATAL_FAILURE(ExpectSame(stream, file, pos, 1 + random() % 6000));
  }
}

TEST_F(ResidencyTest, ALargeFileCutInsideAndBetweenPiecesIsReadAsTheSystemReadsIt) {
  const Descriptor file(folder / "a");
  file.Write(0, std::string(9 * kMiB, 'x'));
  Touch(0);
  for (const unsigned long cut : {8 * kMiB + 1, 8 * kMiB, 8 * kMiB - 1, 5 * kMiB, 4 * kMiB + kPage,
                                  4 * kMiB + 1, 4 * kMiB, 4 * kMiB - 1, 17ul}) {
    file.Cut(cut);
    ASSERT_NO_FATAL_FAILURE(ExpectSame(stream, file, 0, 9 * kMiB));
    ASSERT_NO_FATAL_FAILURE(ExpectSame(stream, file, cut - 10, 100));
    ASSERT_NO_FATAL_FAILURE(ExpectSame(stream, file, cut - 10, 3 * kMiB));
    ASSERT_NO_FATAL_FAILURE(ExpectSame(stream, file, cut, 1));
  }
}

}  // namespace
