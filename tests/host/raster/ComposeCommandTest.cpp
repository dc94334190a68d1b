#include "host/raster/ComposeCommand.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <unistd.h>

#include <random>
#include <string>
#include <utility>
#include <vector>

#include "host/support/PngFile.h"
#include "host/support/Samples.h"
#include "host/support/Subcommand.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Words = std::vector<std::string>;

CommandResult Compose(const TempFolder& folder, Words arguments) {
  return RunSubcommand("compose", std::move(arguments), folder);
}

TEST(ComposeCommand, InterleavesBandsByAscendingKey) {
  TempFolder folder;
  const Samples one = RandomSamples(12, 1);
  const Samples two = RandomSamples(12, 2);
  folder.Write("1.raw", LittleBytes(one));
  folder.Write("2.raw", BigBytes(two));
  const CommandResult result = Compose(folder, {"--size", "4x3", "--band", "9=2.raw:big", "--band",
                                                "-1=1.raw:little", "-o", "o.bip"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(folder.Read("o.bip"), LittleBytes(Interleave({one, two})));
  EXPECT_THAT(folder.Read("o.hdr"), HasSubstr("band names = {Band -1, Band 9}"));
}

TEST(ComposeCommand, PutsRedGreenBlueFirst) {
  TempFolder folder;
  for (const char* name : {"r", "g", "b", "n"}) folder.Write(name, std::string(8, name[0]));
  EXPECT_EQ(Compose(folder,
                    {"--size", "2x2", "--band", "1=n", "blue=b", "green=g", "red=r", "-o", "o.bip"})
                .exitCode,
            0);
  EXPECT_EQ(folder.Read("o.bip"), "rrggbbnnrrggbbnnrrggbbnnrrggbbnn");
  EXPECT_THAT(folder.Read("o.hdr"), HasSubstr("band names = {Red, Green, Blue, Band 1}"));
}

TEST(ComposeCommand, CutsTheAreaFromTheTopLeft) {
  TempFolder folder;
  folder.Write("a", LittleBytes({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
  EXPECT_EQ(Compose(folder, {"--size", "4x3", "--band", "1=a", "--rect", "1,0,2,2", "-o", "o.bip"})
                .exitCode,
            0);
  EXPECT_EQ(folder.Read("o.bip"), LittleBytes({2, 3, 6, 7}));
}

TEST(ComposeCommand, SkipsTheHeaderOfEveryFile) {
  TempFolder folder;
  folder.Write("a", "head" + LittleBytes({1, 2}));
  folder.Write("b", "HEAD" + BigBytes({3, 4}));
  EXPECT_EQ(
      Compose(folder, {"--size", "2x1", "--offset", "4", "--band", "1=a", "2=b:big", "-o", "o.bip"})
          .exitCode,
      0);
  EXPECT_EQ(folder.Read("o.bip"), LittleBytes({1, 3, 2, 4}));
}

TEST(ComposeCommand, MakesMissingPixelsBlackAndSaysSo) {
  TempFolder folder;
  folder.Write("a", LittleBytes({1, 2, 3}));
  folder.Write("b", LittleBytes({5, 6, 7, 8}));
  const CommandResult result =
      Compose(folder, {"--size", "2x2", "--allow-short", "--band", "1=a", "2=b", "-o", "o.bip"});
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "ravelin: a: note: 2 bytes are missing; their pixels are black\n");
  EXPECT_EQ(folder.Read("o.bip"), LittleBytes({1, 5, 2, 6, 3, 7, 0, 8}));
}

TEST(ComposeCommand, WritesAPictureTopRowFirst) {
  TempFolder folder;
  folder.Write("a", LittleBytes({0x0100, 0x0200, 0x0300, 0x0400}));
  EXPECT_EQ(Compose(folder, {"--size", "2x2", "--band", "1=a", "--stretch", "none", "-o", "o.png"})
                .exitCode,
            0);
  EXPECT_THAT(ReadPng(folder / "o.png").samples, ElementsAre(1, 2, 3, 4));
}

TEST(ComposeCommand, AgreesWithANaiveInterleaveOnRandomAreas) {
  std::mt19937 random(11);
  for (int round = 0; round < 6; ++round) {
    TempFolder folder;
    const long width = 1 + static_cast<long>(random() % 90);
    const long height = 1 + static_cast<long>(random() % 700);
    const long x = static_cast<long>(random()) % width;
    const long y = static_cast<long>(random()) % height;
    const long w = 1 + static_cast<long>(random()) % (width - x);
    const long h = 1 + static_cast<long>(random()) % (height - y);
    const auto count = static_cast<std::size_t>(width * height);
    std::vector<Samples> bands;
    Words arguments = {"--size", std::to_string(width) + "x" + std::to_string(height)};
    for (unsigned int key = 0; key < 1 + random() % 5; ++key) {
      bands.push_back(RandomSamples(count, random()));
      const bool big = random() % 2 == 0;
      const std::string name = std::to_string(key) + ".raw";
      folder.Write(name, big ? BigBytes(bands.back()) : LittleBytes(bands.back()));
      arguments.insert(arguments.end(),
                       {"--band", std::to_string(100 + key) + "=" + name + (big ? ":big" : "")});
    }
    const std::string rect = std::to_string(x) + "," + std::to_string(y) + "," + std::to_string(w) +
                             "," + std::to_string(h);
    arguments.insert(arguments.end(), {"--rect", rect, "-o", "o.bip"});
    ASSERT_EQ(Compose(folder, arguments).exitCode, 0);
    const Samples expected =
        Cut(Interleave(bands), width, static_cast<long>(bands.size()), x, y, w, h);
    ASSERT_EQ(folder.Read("o.bip"), LittleBytes(expected)) << round;
  }
}

TEST(ComposeCommand, ReplacesTheOutputOnlyWhenItSucceeds) {
  TempFolder folder;
  folder.Write("a", LittleBytes({1, 2}));
  folder.Write("o.bip", "former image");
  folder.Write("o.hdr", "former header");
  EXPECT_EQ(Compose(folder, {"--size", "3x1", "--band", "1=a", "-o", "o.bip"}).exitCode, 1);
  EXPECT_EQ(folder.Read("o.bip"), "former image");
  EXPECT_EQ(folder.Read("o.hdr"), "former header");
  EXPECT_EQ(Compose(folder, {"--size", "2x1", "--band", "1=a", "-o", "o.bip"}).exitCode, 0);
  EXPECT_EQ(folder.Read("o.bip"), LittleBytes({1, 2}));
  EXPECT_THAT(folder.Names(), ElementsAre("a", "o.bip", "o.hdr"));
}

TEST(ComposeCommand, LeavesNothingBehindWhenTheDiskIsFull) {
  TempFolder folder;
  folder.WriteSparse("a", 2000000);
  const auto limitFiles = [] {
    const struct rlimit limit = {500000, 500000};
    setrlimit(RLIMIT_FSIZE, &limit);
  };
  const CommandResult result =
      RunCommand({"compose", "--size", "1000x1000", "--band", "1=a", "-o", "o.bip"}, folder.Path(),
                 limitFiles);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.err,
            "ravelin: o.bip: cannot be written: File too large; raise the limit on the size of "
            "files or write to another disk\n");
  EXPECT_THAT(folder.Names(), ElementsAre("a"));
}

TEST(ComposeCommand, KeepsItsMemorySmallOnLargeImages) {
  if (RAVELIN_SANITIZED) GTEST_SKIP() << "a sanitizer's own memory would be measured";
  TempFolder folder;
  Words arguments = {"--size", "20000x2500", "-o", "o.png"};
  for (const char* name : {"red", "green", "blue"}) {
    folder.WriteSparse(name, 20000ul * 2500 * 2);
    arguments.insert(arguments.end(), {"--band", std::string(name) + "=" + name});
  }
  const CommandResult result = Compose(folder, arguments);
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_LT(result.maxResidentKiB, 200 * 1024);
}

TEST(ComposeCommand, EndsWithAMessageWhenMemoryIsShort) {
  if (RAVELIN_SANITIZED) GTEST_SKIP() << "a sanitizer does not start in little memory";
  TempFolder folder;
  folder.Write("a", "");
  const auto limitMemory = [] {
    const struct rlimit limit = {100ul << 20, 100ul << 20};
    setrlimit(RLIMIT_AS, &limit);
  };
  const CommandResult result = RunCommand(
      {"compose", "--size", "100000000x2", "--allow-short", "--band", "1=a", "-o", "o.bip"},
      folder.Path(), limitMemory);
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_THAT(result.err, testing::EndsWith(
                              "ravelin: memory: there is not enough; ask for a smaller --rect\n"));
  EXPECT_THAT(folder.Names(), ElementsAre("a"));
}

TEST(ComposeCommand, ShowsProgressOnATerminalOnly) {
  TempFolder folder;
  folder.Write("a", LittleBytes({1, 2}));
  int terminal = -1;
  int side = -1;
  if (openpty(&terminal, &side, nullptr, nullptr, nullptr) != 0) {
    GTEST_SKIP() << "There are no terminals to open here";
  }
  const auto useTerminal = [&] { dup2(side, STDERR_FILENO); };
  EXPECT_EQ(RunCommand({"compose", "--size", "2x1", "--band", "1=a", "-o", "o.bip"}, folder.Path(),
                       useTerminal)
                .exitCode,
            0);
  close(side);
  std::string drawn(4096, '\0');
  drawn.resize(
      static_cast<std::size_t>(std::max<ssize_t>(read(terminal, drawn.data(), drawn.size()), 0)));
  close(terminal);
  EXPECT_THAT(drawn, HasSubstr("] 100 %"));
  EXPECT_THAT(drawn, testing::EndsWith("\r\x1b[K"));
}

TEST(ComposeCommand, MakesAnImageThatGdalReads) {
  if (std::system("command -v gdalinfo >/dev/null 2>&1") != 0) GTEST_SKIP() << "no gdalinfo here";
  TempFolder folder;
  folder.Write("r", LittleBytes({600, 1, 2, 3, 4, 5}));
  folder.Write("n", LittleBytes({10, 20, 30, 40, 50, 60}));
  ASSERT_EQ(Compose(folder, {"--size", "3x2", "--band", "red=r", "12=n", "-o", "o.bip"}).exitCode,
            0);
  const std::string ask = "cd '" + folder.Path() + "' && gdalinfo -stats o.bip > info.txt 2>&1";
  ASSERT_EQ(std::system(ask.c_str()), 0);
  const std::string info = folder.Read("info.txt");
  EXPECT_THAT(info, HasSubstr("Size is 3, 2"));
  EXPECT_THAT(info, HasSubstr("INTERLEAVE=PIXEL"));
  EXPECT_THAT(info, HasSubstr("Type=UInt16"));
  EXPECT_THAT(info, HasSubstr("Description = Red"));
  EXPECT_THAT(info, HasSubstr("STATISTICS_MAXIMUM=600"));
  EXPECT_THAT(info, HasSubstr("STATISTICS_MINIMUM=10"));
}

}  // namespace
