// The framework while allocations fail.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "Kv/Kv.h"
#include "support/EveryAllocation.h"
#include "support/TempFolder.h"

namespace {

using ravelin_test::GivesEverywhere;
using ravelin_test::ThrowsEverywhere;

const std::string kLong(100, 'x');

TEST(KvMemoryTest, Paths) {
  const TKvPath path("/" + kLong + "/" + kLong);
  ThrowsEverywhere("path", [&] { return path.path(false).toSysStr(); });
  ThrowsEverywhere("absolute path", [] { return TKvPath(kLong).path(true).toSysStr(); });
  ThrowsEverywhere("remSlash", [&] { return path.remSlash().toSysStr(); });
  ThrowsEverywhere("fileName", [&] { return path.fileName(); });
  ThrowsEverywhere("copy", [&] { return TKvPath(path).toSysStr(); });
}

TEST(KvMemoryTest, Texts) {
  ThrowsEverywhere("trim", [] { return trim(" " + kLong); });
  ThrowsEverywhere("tolower", [] { return tolower(kLong); });
  ThrowsEverywhere("toupper", [] { return toupper(kLong); });
  ThrowsEverywhere("KvAnsiToChar", [] { return KvAnsiToChar(kLong + "\x80", kvEncodingUtf8); });
}

TEST(KvMemoryTest, FilesAreOpenedAndDeleted) {
  const TempFolder folder;
  const std::string name = folder.Write(kLong, "some bytes");
  ThrowsEverywhere("making an open stream",
                   [&] { return TKvFileStream(TKvPath(name), kvOpenRead, kvShareAll).IsOpen(); });
  const TKvPath path(name);
  GivesEverywhere(
      "Open", [&] { return TKvFileStream().Open(path, kvOpenRead, kvShareAll); }, false);
  bool deleted = false;
  const auto failed = [&] { EXPECT_EQ(folder.Read(kLong), "some bytes"); };
  EXPECT_GT(ravelin_test::FailuresOf([&] { deleted = KvDeleteFile(path); }, failed), 0u);
  EXPECT_TRUE(deleted);
}

TEST(KvMemoryTest, OpenStreamsNeedNoMemory) {
  const TempFolder folder;
  TKvFileStream out(TKvPath(folder / "a"), kvOpenWrite, kvShareAll);
  TKvMemoryStream memory("some\nbytes");
  char line[20];
  std::string read(5, '.');
  for (const bool mapped : {false, true}) {
    if (mapped) Init_KvServices();
    TKvFileStream in(TKvPath(folder.Write("b", "some\nbytes")), kvOpenRead, kvShareAll);
    const ravelin_test::FailingNew failing(0);
    for (TKvStream* const stream :
         {static_cast<TKvStream*>(&in), static_cast<TKvStream*>(&memory)}) {
      EXPECT_TRUE(stream->SetPos(0));
      EXPECT_EQ(stream->ReadLine(line, sizeof line), 5u);
      EXPECT_EQ(stream->Read(read.data(), read.size()), 5u);
      EXPECT_EQ(line + read, "somebytes");
      EXPECT_EQ(stream->GetPos(), stream->getSize());
      EXPECT_TRUE(stream->Eof());
      stream->Purge();
    }
    EXPECT_EQ(out.Write("bytes", 5), 5u);
  }
  Deinit_KvServices();
  EXPECT_EQ(folder.Read("a"), "bytesbytes");
}

TEST(KvMemoryTest, AMissingFileIsNamedOrThereIsNoMemory) {
  const std::string name = "/none/" + kLong;
  const std::string whole = name + ": No such file or directory";
  for (unsigned long successes = 0;; ++successes) {
    std::string said;
    said.reserve(1000);
    try {
      const ravelin_test::FailingNew failing(successes);
      const TKvFileStream file(TKvPath(name), kvOpenRead, kvShareAll);
    } catch (const std::bad_alloc&) {
      continue;
    } catch (const TKvError& error) {
      said = error.what();
    }
    EXPECT_EQ(said, whole);
    break;
  }
}

TEST(KvMemoryTest, MemoryStreams) {
  GivesEverywhere(
      "Write", [] { return TKvMemoryStream().Write(kLong.data(), 100); }, 0ul);
  ThrowsEverywhere("a stream of bytes", [] { return TKvMemoryStream(kLong).getSize(); });
}

TEST(KvMemoryTest, Rasters) {
  const TKvDibChannels channels = {0, 1, {6, 4, 3}};
  ThrowsEverywhere("a raster",
                   [&] { return TKvMemoryDibData(5, 4, channels, 3).GetScaleDimensions(2)[0]; });
  TKvMemoryDibData raster(5, 4, channels, 3);
  ThrowsEverywhere("GetAllLevels", [&] {
    std::vector<TKvDibRect> levels;
    return raster.GetAllLevels(&levels);
  });
  ThrowsEverywhere("a copy", [&] { return TKvMemoryDibData(raster).GetAllLevels(nullptr); });
  for (unsigned long successes = 0;; ++successes) {
    const auto filled = ravelin_test::RunFailing(
        [&] {
          raster.FillDefaultLevelBounds({{7, 7}}, 50);
          return true;
        },
        successes, 1);
    EXPECT_EQ(raster.GetAllLevels(nullptr), filled ? 50u : 3u);
    if (filled) break;
  }
  ThrowsEverywhere("ChannelKindToText", [] { return ChannelKindToText(-1234567890); });
  const ravelin_test::FailingNew failing(0);
  raster.BuildLevels();
}

TEST(KvMemoryTest, ARasterThatCannotBeAssignedStaysAsItWas) {
  TKvMemoryDibData small(5, 4, {0, 1, {6, 4, 3}}, 3);
  std::fill_n(small.Pixels(), 60, static_cast<unsigned char>(7));
  const TKvMemoryDibData large(50, 40, {0, 2, {6, 4, 3, 1}}, 3);
  for (unsigned long successes = 0;; ++successes) {
    TKvMemoryDibData target(small);
    const auto assigned = ravelin_test::RunFailing([&] { return &(target = large); }, successes, 1);
    if (assigned) {
      EXPECT_GT(successes, 3u);
      EXPECT_EQ(target.Bounds().size, (vec_t_<double, 2>{{50, 40}}));
      break;
    }
    EXPECT_EQ(target.Bounds().size, (vec_t_<double, 2>{{5, 4}}));
    EXPECT_EQ(target.Channels().kinds.size(), 3u);
    std::vector<unsigned char> pixels(60);
    ASSERT_EQ(target.GetRect(0, {0, 0, 5, 4}, {pixels.data(), 15}), kvDibWritten);
    EXPECT_EQ(pixels, std::vector<unsigned char>(60, 7));
    pixels.assign(8000, 0);
    ASSERT_EQ(target.GetRect(0, {0, 0, 50, 40}, {pixels.data(), 200}), kvDibWritten);
    EXPECT_EQ(std::count(pixels.begin(), pixels.end(), 7), 60);
  }
}

TEST(KvMemoryTest, ASinkThatCannotBeInstalledLeavesTheFormerOne) {
  unsigned long former = 0;
  unsigned long next = 0;
  // Too large for a function object to hold without memory of its own.
  const std::string weight = kLong;
  const auto install = [&](unsigned long& lines) {
    return KvSetDebugSink([&lines, weight](const std::string&) { lines += weight.size() / 100; });
  };
  install(former);
  for (unsigned long successes = 0; next == 0; ++successes) {
    ASSERT_LT(successes, 100u);
    former = 0;
    const auto installed =
        ravelin_test::RunFailing([&] { return bool(install(next)); }, successes, 1);
    KvPrintDbgMsg("line");
    EXPECT_EQ(former + next, 1u);
    EXPECT_EQ(next, installed ? 1u : 0u);
  }
  KvSetDebugSink({});
}

TEST(KvMemoryTest, ALineThatThereIsNoMemoryForIsLostAndThrowsNothing) {
  for (unsigned long successes = 0;; ++successes) {
    testing::internal::CaptureStderr();
    const auto printed = ravelin_test::RunFailing(
        [] {
          KvPrintDbgMsg(kLong);
          return true;
        },
        successes, 1);
    const bool failed = ravelin_test::AllocationFailed();
    EXPECT_TRUE(printed.has_value());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), failed ? "" : kLong + "\n");
    if (failed) continue;
    EXPECT_GT(successes, 0u);
    break;
  }
}

TEST(KvMemoryDeathTest, TheFirstLineOfAProgramNeedsNoMemory) {
  // So that it is the first: in a process that is started for it.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const auto print = [] {
    const ravelin_test::FailingNew failing(0);
    KvPrintDbgMsg("first");
    std::_Exit(0);
  };
  EXPECT_EXIT(print(), testing::ExitedWithCode(0), "first\n");
}

}  // namespace
