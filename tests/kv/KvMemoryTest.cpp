// The framework while allocations fail.
#include <gtest/gtest.h>

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
  TKvFileStream file(path, kvOpenRead, kvShareAll);
  const std::string other = folder / "other";
  std::string bytes(10, '.');
  const ravelin_test::FailingNew failing(0);
  EXPECT_EQ(file.Read(bytes.data(), bytes.size()), 10u);
  EXPECT_EQ(bytes, "some bytes");
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

}  // namespace
