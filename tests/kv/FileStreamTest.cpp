#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "Kv/Services.h"
#include "Kv/Stream.h"
#include "StreamModel.h"
#include "gmock/gmock.h"
#include "gtest/gtest.h"
#include "support/FailingNew.h"
#include "support/TempFolder.h"

namespace {

using kv_test::LineLikeBytes;
using kv_test::ReadExact;
using kv_test::ReadLineExact;
using kv_test::StepAndCompare;
using kv_test::StreamModel;
using testing::HasSubstr;

// Every test is run with the services down and up: what a stream answers is the same.
class FileStreamTest : public testing::TestWithParam<bool> {
 protected:
  FileStreamTest() {
    if (GetParam()) Init_KvServices();
  }
  ~FileStreamTest() override { Deinit_KvServices(); }

  bool OpenToRead(const std::string& path) {
    return stream.Open(TKvPath(path), kvOpenRead, kvShareAll);
  }
  bool OpenToWrite(const std::string& path) {
    return stream.Open(TKvPath(path), kvOpenWrite, kvShareAll);
  }
  unsigned long Write(const std::string& bytes) { return stream.Write(bytes.data(), bytes.size()); }

  const TempFolder folder;
  TKvFileStream stream;
};

INSTANTIATE_TEST_SUITE_P(Services, FileStreamTest, testing::Bool(),
                         [](const auto& up) { return std::string(up.param ? "Up" : "Down"); });

std::string ErrorOf(const std::string& path, int mode) {
  try {
    const TKvFileStream stream(TKvPath(path), static_cast<kvOpenMode>(mode), kvShareAll);
    return "";
  } catch (const TKvError& error) {
    return error.what();
  }
}

// The user of the tests without the right to everything.
class PlainUser {
 public:
  PlainUser() {
    if (root_ && ::seteuid(65534) != 0) throw std::runtime_error("cannot leave root");
  }
  PlainUser(const PlainUser&) = delete;
  PlainUser& operator=(const PlainUser&) = delete;
  ~PlainUser() {
    if (root_ && ::seteuid(0) != 0) ADD_FAILURE() << "cannot become root again";
  }

 private:
  const bool root_ = ::geteuid() == 0;
};

TEST_P(FileStreamTest, ANewStreamIsNotOpenAndAnswersNothing) {
  char byte = '#';
  EXPECT_FALSE(stream.IsOpen());
  EXPECT_EQ(stream.Read(&byte, 1), 0u);
  EXPECT_EQ(stream.Write(&byte, 1), 0u);
  EXPECT_FALSE(stream.SetPos(0));
  EXPECT_EQ(stream.GetPos(), 0u);
  EXPECT_EQ(stream.getSize(), 0u);
  EXPECT_TRUE(stream.Eof());
  EXPECT_EQ(byte, '#');
  EXPECT_EQ(ReadLineExact(stream, 1).consumed, 0u);
  EXPECT_EQ(stream.ReadLine(nullptr, 0), 0u);
  stream.Purge();
  stream.Close();
}

TEST_P(FileStreamTest, AFileIsReadFromItsBeginning) {
  ASSERT_TRUE(OpenToRead(folder.Write("a", "abcdef")));
  EXPECT_TRUE(stream.IsOpen());
  EXPECT_EQ(stream.getSize(), 6u);
  EXPECT_EQ(stream.GetPos(), 0u);
  EXPECT_EQ(ReadExact(stream, 4), "abcd");
  EXPECT_EQ(stream.GetPos(), 4u);
}

TEST_P(FileStreamTest, AReadIsShortAtTheEnd) {
  ASSERT_TRUE(OpenToRead(folder.Write("a", "abcdef")));
  stream.SetPos(4);
  EXPECT_FALSE(stream.Eof());
  EXPECT_EQ(ReadExact(stream, 4), "ef");
  EXPECT_EQ(stream.GetPos(), 6u);
  EXPECT_TRUE(stream.Eof());
}

TEST_P(FileStreamTest, AnEmptyFileIsAtItsEnd) {
  ASSERT_TRUE(OpenToRead(folder.Write("a", "")));
  EXPECT_TRUE(stream.Eof());
  EXPECT_EQ(ReadExact(stream, 4), "");
  EXPECT_EQ(ReadLineExact(stream, 4).consumed, 0u);
}

TEST_P(FileStreamTest, APositionBehindTheEndIsTakenAndReadsNothing) {
  ASSERT_TRUE(OpenToRead(folder.Write("a", "abcdef")));
  constexpr unsigned long kLast = static_cast<unsigned long>(std::numeric_limits<off_t>::max());
  for (const unsigned long pos : {7ul, 1ul << 40, kLast}) {
    EXPECT_TRUE(stream.SetPos(pos));
    EXPECT_EQ(ReadExact(stream, 4), "");
    EXPECT_EQ(stream.GetPos(), pos);
    EXPECT_TRUE(stream.Eof());
  }
}

TEST_P(FileStreamTest, APositionThatNoFileHasIsRefusedAndChangesNothing) {
  ASSERT_TRUE(OpenToRead(folder.Write("a", "abcdef")));
  stream.SetPos(2);
  EXPECT_FALSE(stream.SetPos(1ul << 63));
  EXPECT_FALSE(stream.SetPos(std::numeric_limits<unsigned long>::max()));
  EXPECT_EQ(ReadExact(stream, 2), "cd");
}

TEST_P(FileStreamTest, BytesAddedAfterOpeningAreRead) {
  const std::string path = folder.Write("a", "abc");
  ASSERT_TRUE(OpenToRead(path));
  EXPECT_EQ(ReadExact(stream, 3), "abc");
  EXPECT_TRUE(stream.Eof());
  folder.Write("a", "abcdef");
  EXPECT_EQ(stream.getSize(), 6u);
  EXPECT_FALSE(stream.Eof());
  EXPECT_EQ(ReadExact(stream, 9), "def");
  stream.SetPos(2);
  EXPECT_EQ(ReadExact(stream, 3), "cde");
}

TEST_P(FileStreamTest, BytesChangedAfterOpeningAreReadAsTheyAre) {
  const std::string path = folder.Write("a", "abc");
  ASSERT_TRUE(OpenToRead(path));
  EXPECT_EQ(ReadExact(stream, 3), "abc");
  folder.Write("a", "xyz");
  stream.SetPos(0);
  EXPECT_EQ(ReadExact(stream, 3), "xyz");
}

TEST_P(FileStreamTest, AFileBeyondFourGibibytesIsReadAndWritten) {
  constexpr unsigned long kFar = (5ul << 30) + 12345;
  ASSERT_TRUE(OpenToWrite(folder / "a"));
  ASSERT_TRUE(stream.SetPos(kFar));
  ASSERT_EQ(Write("far away\n"), 9u);
  EXPECT_EQ(stream.GetPos(), kFar + 9);
  ASSERT_TRUE(OpenToRead(folder / "a"));
  EXPECT_EQ(stream.getSize(), kFar + 9);
  stream.SetPos(kFar - 2);
  EXPECT_EQ(ReadExact(stream, 6), std::string("\0\0far ", 6));
  EXPECT_EQ(ReadLineExact(stream, 20).text, "away");
  EXPECT_TRUE(stream.Eof());
}

TEST_P(FileStreamTest, WritingCreatesAFileThatTheUmaskProtects) {
  const mode_t former = ::umask(027);
  const bool opened = OpenToWrite(folder / "a");
  ::umask(former);
  ASSERT_TRUE(opened);
  struct stat status = {};
  ASSERT_EQ(::stat((folder / "a").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777u, 0640u);
}

TEST_P(FileStreamTest, WritingEmptiesTheFileThatIsThere) {
  folder.Write("a", "long former contents");
  ASSERT_TRUE(OpenToWrite(folder / "a"));
  EXPECT_EQ(stream.getSize(), 0u);
  EXPECT_EQ(Write("new"), 3u);
  EXPECT_EQ(folder.Read("a"), "new");
}

TEST_P(FileStreamTest, WhatIsWrittenIsThereBeforeTheStreamIsClosed) {
  ASSERT_TRUE(OpenToWrite(folder / "a"));
  EXPECT_EQ(Write("one"), 3u);
  EXPECT_EQ(folder.Read("a"), "one");
  EXPECT_EQ(Write("two"), 3u);
  EXPECT_EQ(folder.Read("a"), "onetwo");
  EXPECT_EQ(stream.getSize(), 6u);
}

TEST_P(FileStreamTest, AWriteGoesToThePosition) {
  ASSERT_TRUE(OpenToWrite(folder / "a"));
  Write("abcdef");
  stream.SetPos(2);
  EXPECT_EQ(Write("XY"), 2u);
  EXPECT_EQ(stream.GetPos(), 4u);
  stream.SetPos(8);
  EXPECT_EQ(Write("z"), 1u);
  EXPECT_EQ(folder.Read("a"), std::string("abXYef\0\0z", 9));
}

TEST_P(FileStreamTest, AFileOpenedForWritingCannotBeRead) {
  ASSERT_TRUE(OpenToWrite(folder / "a"));
  Write("abc\n");
  stream.SetPos(0);
  EXPECT_EQ(ReadExact(stream, 3), "");
  EXPECT_EQ(ReadLineExact(stream, 9).consumed, 0u);
  EXPECT_EQ(stream.GetPos(), 0u);
}

TEST_P(FileStreamTest, AFileOpenedForReadingCannotBeWritten) {
  ASSERT_TRUE(OpenToRead(folder.Write("a", "abc")));
  EXPECT_EQ(Write("xyz"), 0u);
  EXPECT_EQ(stream.GetPos(), 0u);
  EXPECT_EQ(folder.Read("a"), "abc");
}

TEST_P(FileStreamTest, AFullDiskIsReportedByTheWriteThatMetIt) {
  if (!OpenToWrite("/dev/full")) GTEST_SKIP() << "there is no /dev/full";
  EXPECT_EQ(Write("abc"), 0u);
  EXPECT_EQ(stream.GetPos(), 0u);
}

TEST_P(FileStreamTest, AWriteThatPartlyFitsTellsHowMuchReachedTheFile) {
  ASSERT_TRUE(OpenToWrite(folder / "a"));
  struct rlimit former = {};
  ::getrlimit(RLIMIT_FSIZE, &former);
  const auto formerHandler = ::signal(SIGXFSZ, SIG_IGN);
  const struct rlimit tight = {10000, former.rlim_max};
  ::setrlimit(RLIMIT_FSIZE, &tight);
  const unsigned long first = Write(std::string(16384, 'x'));
  const unsigned long second = Write("x");
  ::setrlimit(RLIMIT_FSIZE, &former);
  ::signal(SIGXFSZ, formerHandler);
  EXPECT_EQ(first, 10000u);
  EXPECT_EQ(second, 0u);
  EXPECT_EQ(stream.GetPos(), 10000u);
  EXPECT_EQ(folder.Read("a").size(), 10000u);
}

TEST_P(FileStreamTest, AMissingFileCannotBeOpenedToRead) {
  EXPECT_FALSE(OpenToRead(folder / "missing"));
  EXPECT_FALSE(OpenToRead(""));
  EXPECT_FALSE(stream.IsOpen());
  EXPECT_FALSE(std::filesystem::exists(folder / "missing"));
}

TEST_P(FileStreamTest, AFileInAMissingFolderCannotBeOpenedToWrite) {
  EXPECT_FALSE(OpenToWrite(folder / "missing/a"));
}

TEST_P(FileStreamTest, AFolderCannotBeOpened) {
  EXPECT_FALSE(OpenToRead(folder.Path()));
  EXPECT_FALSE(OpenToWrite(folder.Path()));
}

TEST_P(FileStreamTest, AFileWithoutPermissionCannotBeOpened) {
  const std::string path = folder.Write("a", "abc");
  ASSERT_EQ(::chmod(folder.Path().c_str(), 0755), 0);
  ASSERT_EQ(::chmod(path.c_str(), 0), 0);
  const PlainUser user;
  EXPECT_FALSE(OpenToRead(path));
  EXPECT_FALSE(OpenToWrite(path));
}

TEST_P(FileStreamTest, APathThatHoldsANulByteIsRefused) {
  folder.Write("a", "abc");
  EXPECT_FALSE(OpenToRead(folder / std::string("a\0b", 3)));
  EXPECT_FALSE(OpenToWrite(folder / std::string("n\0b", 3)));
  EXPECT_FALSE(std::filesystem::exists(folder / "n"));
}

TEST_P(FileStreamTest, AModeThatDoesNotExistIsRefused) {
  const std::string path = folder.Write("a", "abc");
  for (const int mode : {0, 1, 2, 8, 11, -1}) {
    EXPECT_FALSE(stream.Open(TKvPath(path), static_cast<kvOpenMode>(mode), kvShareAll)) << mode;
  }
  EXPECT_EQ(folder.Read("a"), "abc");
}

TEST_P(FileStreamTest, TheErrorNamesThePathAndTheReason) {
  const std::string missing = folder / "missing";
  EXPECT_EQ(ErrorOf(missing, kvOpenRead), missing + ": No such file or directory");
  EXPECT_EQ(ErrorOf(folder.Path(), kvOpenRead), folder.Path() + ": Is a directory");
  EXPECT_THAT(ErrorOf(folder / "n", 7), HasSubstr("mode"));
  EXPECT_THAT(ErrorOf(std::string("a\0b", 3), kvOpenRead), HasSubstr("a\\0b: "));
  EXPECT_THAT(ErrorOf(std::string("a\0b", 3), kvOpenRead), HasSubstr("NUL"));
}

TEST_P(FileStreamTest, AFileCannotBeOpenedWithoutMemoryForIt) {
  const TKvPath path(folder.Write("a", "abc"));
  bool opened = true;
  {
    const ravelin_test::FailingNew failing(0);
    opened = stream.Open(path, kvOpenRead, kvShareAll);
  }
  EXPECT_FALSE(opened);
  EXPECT_FALSE(stream.IsOpen());
}

TEST_P(FileStreamTest, TheConstructorOpens) {
  const TKvFileStream open(TKvPath(folder.Write("a", "abc")), kvOpenRead, kvShareAll);
  EXPECT_TRUE(open.IsOpen());
  EXPECT_EQ(open.getSize(), 3u);
}

TEST_P(FileStreamTest, OpeningClosesWhatWasOpenAndStartsAnew) {
  ASSERT_TRUE(OpenToRead(folder.Write("a", "abc\n")));
  ReadLineExact(stream, 2);
  ASSERT_TRUE(OpenToRead(folder.Write("b", "xyz")));
  EXPECT_EQ(ReadExact(stream, 9), "xyz");
  EXPECT_FALSE(OpenToRead(folder / "missing"));
  EXPECT_FALSE(stream.IsOpen());
}

TEST_P(FileStreamTest, AClosedStreamAnswersNothing) {
  ASSERT_TRUE(OpenToRead(folder.Write("a", "abc")));
  ReadLineExact(stream, 2);
  stream.Close();
  EXPECT_FALSE(stream.IsOpen());
  EXPECT_EQ(ReadExact(stream, 3), "");
  EXPECT_TRUE(stream.Eof());
}

TEST_P(FileStreamTest, AProgramStartedDoesNotInheritTheFile) {
  const int before = ::dup(0);
  ::close(before);
  ASSERT_TRUE(OpenToRead(folder.Write("a", "abc")));
  EXPECT_EQ(::fcntl(before, F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

TEST_P(FileStreamTest, AReadAfterALineContinuesBehindIt) {
  ASSERT_TRUE(OpenToRead(folder.Write("a", "one\ntwo\nthree\n" + std::string(20000, 'x'))));
  EXPECT_EQ(ReadLineExact(stream, 100).text, "one");
  EXPECT_EQ(stream.GetPos(), 4u);
  EXPECT_EQ(ReadExact(stream, 2), "tw");
  EXPECT_EQ(ReadLineExact(stream, 100).text, "o");
  EXPECT_EQ(ReadLineExact(stream, 100).text, "three");
  EXPECT_EQ(ReadExact(stream, 30000), std::string(20000, 'x'));
}

TEST_P(FileStreamTest, ALineIsLongerThanWhatIsReadAhead) {
  const std::string line(100000, 'x');
  ASSERT_TRUE(OpenToRead(folder.Write("a", line + "\nrest")));
  EXPECT_EQ(ReadLineExact(stream, 200000).text, line);
  EXPECT_EQ(ReadLineExact(stream, 200000).text, "rest");
}

TEST_P(FileStreamTest, ALineThatJustFitsTakesItsLfAlongAcrossThePortionsReadAhead) {
  for (unsigned long size = 8190; size <= 8195; ++size) {
    ASSERT_TRUE(OpenToRead(folder.Write("a", std::string(size, 'x') + "\ny")));
    EXPECT_EQ(ReadLineExact(stream, size + 1).consumed, size + 1);
    EXPECT_EQ(ReadLineExact(stream, size + 1).text, "y");
    stream.SetPos(0);
    EXPECT_EQ(ReadLineExact(stream, size).consumed, size - 1);
    EXPECT_EQ(ReadLineExact(stream, size).text, "x");
  }
}

TEST_P(FileStreamTest, SetPosDropsWhatWasReadAhead) {
  ASSERT_TRUE(OpenToRead(folder.Write("a", "one\ntwo\n")));
  ReadLineExact(stream, 100);
  folder.Write("a", "ONE\nTWO\n");
  stream.SetPos(4);
  EXPECT_EQ(ReadLineExact(stream, 100).text, "TWO");
}

TEST_P(FileStreamTest, PurgeDropsWhatWasReadAhead) {
  ASSERT_TRUE(OpenToRead(folder.Write("a", "one\ntwo\n")));
  ReadLineExact(stream, 100);
  folder.Write("a", "ONE\nTWO\n");
  stream.Purge();
  EXPECT_EQ(stream.GetPos(), 4u);
  EXPECT_EQ(ReadLineExact(stream, 100).text, "TWO");
}

TEST_P(FileStreamTest, AReadDoesNotServeFromWhatWasReadAhead) {
  ASSERT_TRUE(OpenToRead(folder.Write("a", "one\ntwo\n")));
  ReadLineExact(stream, 100);
  std::filesystem::resize_file(folder / "a", 5);
  EXPECT_EQ(ReadExact(stream, 4), "t");
  EXPECT_TRUE(stream.Eof());
  EXPECT_EQ(ReadLineExact(stream, 100).consumed, 0u);
}

TEST_P(FileStreamTest, ALineBufferWithoutRoomEndsALoopOverEof) {
  for (const unsigned long size : {0ul, 1ul}) {
    ASSERT_TRUE(OpenToRead(folder.Write("a", "abc")));
    EXPECT_EQ(ReadLineExact(stream, size).consumed, 0u);
    EXPECT_TRUE(stream.Eof());
    EXPECT_TRUE(stream.SetPos(0));
    EXPECT_FALSE(stream.Eof());
    EXPECT_EQ(ReadExact(stream, 3), "abc");
  }
}

TEST_P(FileStreamTest, AReadThatFailsMakesEofTrueUntilThePositionIsSet) {
  ASSERT_TRUE(OpenToWrite(folder / "a"));
  Write("abc");
  EXPECT_TRUE(stream.SetPos(1));
  EXPECT_FALSE(stream.Eof());
  EXPECT_EQ(ReadExact(stream, 1), "");
  EXPECT_TRUE(stream.Eof());
  EXPECT_TRUE(stream.SetPos(1));
  EXPECT_FALSE(stream.Eof());
}

TEST_P(FileStreamTest, AFileThatEndsBeforeItsSizeEndsALoopOverEof) {
  // The system gives such files the size of a page, whatever they hold.
  if (!OpenToRead("/sys/kernel/mm/transparent_hugepage/enabled") || stream.getSize() == 0) {
    GTEST_SKIP() << "there is no such file here";
  }
  ReadExact(stream, 100000);
  EXPECT_LT(stream.GetPos(), stream.getSize());
  EXPECT_TRUE(stream.Eof());
  EXPECT_TRUE(stream.SetPos(0));
  EXPECT_FALSE(stream.Eof());
}

TEST_P(FileStreamTest, ADeviceWithoutASizeIsReadUntilItGivesNoMore) {
  ASSERT_TRUE(OpenToRead("/dev/zero"));
  EXPECT_EQ(stream.getSize(), 0u);
  EXPECT_FALSE(stream.Eof());
  EXPECT_EQ(ReadExact(stream, 5), std::string(5, '\0'));
  EXPECT_FALSE(stream.Eof());
  ASSERT_TRUE(OpenToRead("/dev/null"));
  EXPECT_FALSE(stream.Eof());
  EXPECT_EQ(ReadExact(stream, 5), "");
  EXPECT_TRUE(stream.Eof());
}

TEST_P(FileStreamTest, AnswersRandomCallsLikeTheModel) {
  for (unsigned seed = 0; seed < 20; ++seed) {
    std::mt19937 random(seed);
    const std::string bytes = LineLikeBytes(random, random() % 30000);
    ASSERT_TRUE(OpenToRead(folder.Write("a", bytes)));
    StreamModel model(bytes);
    for (int step = 0; step < 1000; ++step) {
      ASSERT_NO_FATAL_FAILURE(StepAndCompare(stream, model, random, bytes.size()))
          << "seed " << seed << " step " << step;
    }
  }
}

TEST_P(FileStreamTest, RandomWritesMakeTheFileThatAMemoryStreamMakes) {
  std::mt19937 random(5);
  ASSERT_TRUE(OpenToWrite(folder / "a"));
  TKvMemoryStream memory;
  for (int step = 0; step < 1000; ++step) {
    if (random() % 3 == 0) {
      const unsigned long pos = random() % 50000;
      stream.SetPos(pos);
      memory.SetPos(pos);
    }
    const std::string bytes(random() % 100, static_cast<char>(random()));
    ASSERT_EQ(Write(bytes), memory.Write(bytes.data(), bytes.size()));
    ASSERT_EQ(stream.getSize(), memory.getSize());
    ASSERT_EQ(stream.GetPos(), memory.GetPos());
  }
  EXPECT_EQ(folder.Read("a"), memory.Bytes());
}

// A pipe with a name, and a thread that writes the parts given into it one by one.
class PipeTest : public FileStreamTest {
 protected:
  void Send(std::vector<std::string> parts) {
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    sender_ = std::thread([this, parts = std::move(parts)] {
      TKvFileStream out(TKvPath(folder / "pipe"), kvOpenWrite, kvShareAll);
      for (const std::string& part : parts) {
        EXPECT_EQ(out.Write(part.data(), part.size()), part.size());
        ::usleep(1000);
      }
    });
    ASSERT_TRUE(OpenToRead(folder / "pipe"));
  }
  ~PipeTest() override {
    if (sender_.joinable()) sender_.join();
  }

 private:
  std::thread sender_;
};

INSTANTIATE_TEST_SUITE_P(Services, PipeTest, testing::Bool(),
                         [](const auto& up) { return std::string(up.param ? "Up" : "Down"); });

TEST_P(PipeTest, AReadCollectsWhatComesInParts) {
  Send({"abc", "def", "ghi"});
  EXPECT_EQ(ReadExact(stream, 7), "abcdefg");
  EXPECT_FALSE(stream.Eof());
  EXPECT_EQ(stream.GetPos(), 7u);
  EXPECT_EQ(ReadExact(stream, 7), "hi");
  EXPECT_TRUE(stream.Eof());
}

TEST_P(PipeTest, LinesAndReadsFollowEachOther) {
  Send({"one\ntw", "o\nrest", " of it\nlast"});
  EXPECT_EQ(ReadLineExact(stream, 100).text, "one");
  EXPECT_EQ(ReadLineExact(stream, 100).text, "two");
  EXPECT_EQ(ReadExact(stream, 7), "rest of");
  EXPECT_EQ(ReadLineExact(stream, 100).text, " it");
  EXPECT_EQ(ReadLineExact(stream, 100).text, "last");
  EXPECT_TRUE(stream.Eof());
}

TEST_P(PipeTest, ALoopOverEofEnds) {
  Send({"one\n", "two\n", "\n", "four"});
  std::string all;
  while (!stream.Eof()) {
    const auto line = ReadLineExact(stream, 3);
    all += line.text + std::to_string(line.consumed) + ",";
  }
  EXPECT_EQ(all, "on2,e2,tw2,o2,1,fo2,ur2,");
}

TEST_P(PipeTest, ThePositionCanOnlyBeSetWhereItIs) {
  Send({"one\ntwo\n"});
  EXPECT_TRUE(stream.SetPos(0));
  ReadLineExact(stream, 100);
  EXPECT_TRUE(stream.SetPos(4));
  EXPECT_FALSE(stream.SetPos(0));
  EXPECT_FALSE(stream.SetPos(5));
  EXPECT_EQ(ReadExact(stream, 4), "two\n");
}

TEST_P(PipeTest, PurgeLosesNothing) {
  Send({"one\ntwo\n"});
  ReadLineExact(stream, 100);
  stream.Purge();
  EXPECT_EQ(ReadLineExact(stream, 100).text, "two");
}

TEST_P(PipeTest, HasNoSize) {
  Send({"one\ntwo\n"});
  EXPECT_EQ(stream.getSize(), 0u);
  EXPECT_EQ(ReadExact(stream, 8), "one\ntwo\n");
}

}  // namespace
