#include <gtest/gtest.h>
#include <unistd.h>
#include <zlib.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "host/Application.h"
#include "host/HostError.h"
#include "host/raster/TileIndex.h"
#include "host/sample/SampleCommand.h"
#include "support/TempFolder.h"

namespace ravelin {
namespace {

namespace fs = std::filesystem;

std::string Bytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  EXPECT_TRUE(file.good()) << path;
  return {std::istreambuf_iterator<char>(file), {}};
}

unsigned long Crc(const std::string& bytes) {
  return crc32(0, reinterpret_cast<const Bytef*>(bytes.data()), static_cast<uInt>(bytes.size()));
}

/// The names of all files below the folder, relative to it.
std::set<std::string> FilesIn(const std::string& folder) {
  std::set<std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) {
    if (!entry.is_directory()) files.insert(fs::relative(entry.path(), folder).string());
  }
  return files;
}

/// Samples of a file in the machine's order.
std::vector<unsigned> Samples(const std::string& path, bool big) {
  const std::string bytes = Bytes(path);
  std::vector<unsigned> samples(bytes.size() / 2);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const auto first = static_cast<unsigned char>(bytes[2 * i]);
    const auto second = static_cast<unsigned char>(bytes[2 * i + 1]);
    samples[i] = big ? first * 256u + second : second * 256u + first;
  }
  return samples;
}

int RunWords(const std::vector<std::string>& words) {
  std::vector<const char*> arguments;
  for (const std::string& word : words) arguments.push_back(word.c_str());
  return RunApplication(static_cast<int>(arguments.size()), arguments.data());
}

/// The command lines in a text: those that begin with "  ravelin", split into words as a shell
/// does.
std::vector<std::vector<std::string>> CommandsIn(std::string text) {
  for (std::size_t at; (at = text.find("\\\n")) != std::string::npos;) text.replace(at, 2, " ");
  std::vector<std::vector<std::string>> commands;
  std::size_t start = 0;
  while ((start = text.find("  ravelin ", start)) != std::string::npos) {
    const std::size_t end = text.find('\n', start);
    std::vector<std::string> words;
    bool quoted = false, inWord = false;
    for (; start < end; ++start) {
      const char c = text[start];
      if (!quoted && c == ' ') {
        inWord = false;
        continue;
      }
      if (!inWord) words.emplace_back();
      inWord = true;
      if (c == '\'') {
        quoted = !quoted;
      } else if (c == '\\' && !quoted) {
        words.back() += text[++start];
      } else {
        words.back() += c;
      }
    }
    commands.push_back(words);
  }
  return commands;
}

const std::map<std::string, unsigned long>& KnownSums() {
  static const std::map<std::string, unsigned long> sums = {
#include "tests/host/sample/SampleSums.inc"
  };
  return sums;
}

/// The folder of the sample, which takes a second to make: tests that only read share it.
const std::string& Written() {
  static const TempFolder folder;
  static const std::string out = [] {
    WriteSample(folder / "out");
    return folder / "out";
  }();
  return out;
}

TEST(Sample, EveryFileHoldsTheKnownBytes) {
  std::map<std::string, unsigned long> sums;
  for (const std::string& file : FilesIn(Written())) {
    sums[file] = Crc(Bytes(Written() + "/" + file));
  }
  EXPECT_EQ(sums, KnownSums());
}

TEST(Sample, ASecondRunReplacesWhatWasChangedAndKeepsOtherFiles) {
  const TempFolder folder;
  fs::copy(Written(), folder / "out", fs::copy_options::recursive);
  const std::string band = Bytes(folder / "out/nir.raw");
  std::ofstream(folder / "out/nir.raw") << "changed";
  std::ofstream(folder / "out/mine.txt") << "mine";
  const auto files = FilesIn(folder / "out");
  WriteSample(folder / "out");
  EXPECT_EQ(Bytes(folder / "out/nir.raw"), band);
  EXPECT_EQ(Bytes(folder / "out/mine.txt"), "mine");
  EXPECT_EQ(FilesIn(folder / "out"), files);
}

TEST(Sample, TheTilesPutTogetherAreTheWhole) {
  const std::map<int, std::vector<unsigned>> whole = {{3, Samples(Written() + "/blue.raw", true)},
                                                      {4, Samples(Written() + "/green.raw", false)},
                                                      {6, Samples(Written() + "/red.raw", true)},
                                                      {32, Samples(Written() + "/nir.raw", false)}};
  const std::string index = Written() + "/tiles/index.txt";
  for (const TileEntry& tile : ParseTileIndex(Bytes(index), index).tiles) {
    for (const BandArgument& band : tile.bands) {
      const auto samples =
          Samples(Written() + "/tiles/" + band.file, band.order == BytesOrder::boBigEndian);
      const auto width = static_cast<std::size_t>(tile.fileSize.width);
      const auto left = static_cast<std::size_t>(tile.left - tile.srcLeft);
      const auto top = static_cast<std::size_t>(tile.top - tile.srcTop);
      ASSERT_EQ(samples.size(), width * static_cast<std::size_t>(tile.fileSize.height));
      for (std::size_t i = 0; i < samples.size(); ++i) {
        const std::size_t place = (top + i / width) * 1200 + left + i % width;
        ASSERT_EQ(samples[i], whole.at(band.key).at(place)) << band.file << " " << i;
      }
    }
  }
}

TEST(Sample, TheLabelNamesEveryFile) {
  std::set<std::string> named = {"sample.lbl"};
  std::ifstream label(Written() + "/sample.lbl");
  for (std::string line; std::getline(label, line);) {
    if (line.find(" FILE_NAME") == std::string::npos) continue;
    const std::size_t quote = line.find('"');
    named.insert(line.substr(quote + 1, line.size() - quote - 2));
  }
  EXPECT_EQ(named, FilesIn(Written()));
}

TEST(Sample, ThePrintedCommandsWorkAndShowTheSamePicture) {
  const TempFolder folder;
  testing::internal::CaptureStdout();
  const int status = RunWords({"ravelin", "sample", folder / "it's here"});
  const std::string printed = testing::internal::GetCapturedStdout();
  ASSERT_EQ(status, kExitDone);
  const auto commands = CommandsIn(printed);
  ASSERT_EQ(commands.size(), 3u);
  for (const auto& command : commands) EXPECT_EQ(RunWords(command), kExitDone);
  EXPECT_EQ(fs::file_size(folder / "it's here/composed.bip"), 1200u * 900 * 4 * 2);
  EXPECT_EQ(Bytes(folder / "it's here/composed.png"), Bytes(folder / "it's here/stitched.png"));
}

/// What the command says when it cannot write into `place`.
std::string Refusal(const std::string& place) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(RunWords({"ravelin", "sample", place}), kExitFailed);
  return testing::internal::GetCapturedStderr();
}

TEST(Sample, AFileInPlaceOfTheFolderIsNamed) {
  const TempFolder folder;
  std::ofstream(folder / "file") << "mine";
  EXPECT_EQ(Refusal(folder / "file").find("ravelin: " + (folder / "file") + ": "), 0u);
  EXPECT_EQ(Bytes(folder / "file"), "mine");
}

TEST(Sample, AFileOnTheWayToTheFolderIsAnError) {
  const TempFolder folder;
  std::ofstream(folder / "file") << "mine";
  EXPECT_EQ(Refusal(folder / "file/below").find("ravelin: " + (folder / "file/below") + ": "), 0u);
}

TEST(Sample, AFolderThatMayNotBeWrittenIsNamed) {
  if (geteuid() == 0) GTEST_SKIP() << "root may write everywhere";
  const TempFolder folder;
  fs::permissions(folder.Path(), fs::perms::owner_read | fs::perms::owner_exec);
  EXPECT_EQ(Refusal(folder / "out").find("ravelin: " + (folder / "out") + ": "), 0u);
}

TEST(Sample, AFolderInPlaceOfABandIsNamedAndNoHalfFileStays) {
  const TempFolder folder;
  fs::create_directories(folder / "out/blue.raw");
  EXPECT_EQ(Refusal(folder / "out").find("ravelin: " + (folder / "out/blue.raw") + ": "), 0u);
  EXPECT_TRUE(FilesIn(folder / "out").empty());
}

TEST(Sample, WithoutAFolderTheUseIsWrong) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(RunWords({"ravelin", "sample"}), kExitWrongUse);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("DIR"), std::string::npos);
}

}  // namespace
}  // namespace ravelin
