#include "host/SampleCommand.h"

#include <algorithm>
#include <cstdint>
#include <iostream>
#include <memory>
#include <vector>

#include "host/HostError.h"
#include "host/MakeFolder.h"
#include "host/PendingFile.h"
#include "host/SampleLabel.h"
#include "host/SampleLayout.h"
#include "host/Scene.h"

namespace ravelin {

namespace {

using Samples = SceneGrid<std::uint16_t>;

void WriteFile(const std::string& path, const void* bytes, std::size_t count) {
  PendingFile file(path);
  file.Write(bytes, count);
  file.Commit();
}

void WriteText(const std::string& path, const std::string& text) {
  WriteFile(path, text.data(), text.size());
}

/// Writes the part of the samples that `tile`'s files hold.
void WriteSamples(const std::string& path, const Samples& samples, const SampleTile& tile) {
  const bool big = tile.order == BytesOrder::boBigEndian;
  std::vector<unsigned char> bytes;
  bytes.reserve(2 * static_cast<std::size_t>(tile.fileWidth) *
                static_cast<std::size_t>(tile.fileHeight));
  for (int y = tile.fileTop; y < tile.fileTop + tile.fileHeight; ++y) {
    for (int x = tile.fileLeft; x < tile.fileLeft + tile.fileWidth; ++x) {
      const unsigned sample = samples(x, y);
      const auto high = static_cast<unsigned char>(sample >> 8);
      const auto low = static_cast<unsigned char>(sample & 0xFFu);
      bytes.push_back(big ? high : low);
      bytes.push_back(big ? low : high);
    }
  }
  WriteFile(path, bytes.data(), bytes.size());
}

SampleTile WholeScene(BytesOrder order) {
  SampleTile whole = {};
  whole.fileWidth = kSceneWidth;
  whole.fileHeight = kSceneHeight;
  whole.order = order;
  return whole;
}

std::string Inside(const std::string& folder, const std::string& name) {
  return folder.ends_with('/') ? folder + name : folder + "/" + name;
}

/// The text as one word of a shell's command line.
std::string ShellWord(const std::string& text) {
  const auto isPlain = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("/._-=:").find(c) != std::string_view::npos;
  };
  if (std::all_of(text.begin(), text.end(), isPlain)) return text;
  std::string word = "'";
  for (const char c : text) word += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return word + "'";
}

std::string BandOption(const std::string& folder, const SampleBand& band, const char* key) {
  const char* order = band.order == BytesOrder::boBigEndian ? ":big" : ":little";
  return " \\\n    " + ShellWord(key + ("=" + Inside(folder, BandFileName(band))) + order);
}

std::string ComposeLine(const std::string& folder, bool all) {
  std::string line = "  ravelin compose --size " + std::to_string(kSceneWidth) + "x" +
                     std::to_string(kSceneHeight) + " --band";
  line += BandOption(folder, kSampleBands[2], "red");
  line += BandOption(folder, kSampleBands[1], "green");
  line += BandOption(folder, kSampleBands[0], "blue");
  if (all)
    line += BandOption(folder, kSampleBands[3], std::to_string(kSampleBands[3].kind).c_str());
  return line + " \\\n    -o " + ShellWord(Inside(folder, all ? "composed.bip" : "composed.png")) +
         "\n";
}

std::string StitchLine(const std::string& folder) {
  const std::string index = Inside(Inside(folder, kSampleTileFolder), kSampleIndexFile);
  return "  ravelin stitch " + ShellWord(index) + " -o " +
         ShellWord(Inside(folder, "stitched.png")) + "\n";
}

/// What was written, and what to type next.
std::string Summary(const std::string& folder) {
  std::string text = "The sample product is in " + Printable(folder) + ":\n";
  for (const SampleBand& band : kSampleBands) {
    text += "  " + BandFileName(band) + ": " + std::to_string(kSceneWidth) + " x " +
            std::to_string(kSceneHeight) + " unsigned 16-bit samples, " +
            (band.order == BytesOrder::boBigEndian ? "big" : "little") + "-endian\n";
  }
  text += std::string("  ") + kSampleTileFolder + "/" + kSampleIndexFile +
          ": index of the same scene as 3 x 3 super tiles, their files beside it\n";
  text += std::string("  ") + kSampleLabelFile + ": what the files hold (PVL)\n";
  text += std::string("  ") + kSampleProjectionFile + ": the map projection (WKT)\n";
  return text + "\nA picture in natural colours, all bands in one file, the tiles put together:\n" +
         ComposeLine(folder, false) + ComposeLine(folder, true) + StitchLine(folder);
}

}  // namespace

void WriteSample(const std::string& folder) {
  const std::string tileFolder = Inside(folder, kSampleTileFolder);
  MakeFolder(folder);
  MakeFolder(tileFolder);
  const Scene scene = MakeScene();
  for (std::size_t i = 0; i < kSampleBands.size(); ++i) {
    const SampleBand& band = kSampleBands[i];
    WriteSamples(Inside(folder, BandFileName(band)), scene[i], WholeScene(band.order));
    for (const SampleTile& tile : SampleTiles()) {
      WriteSamples(Inside(tileFolder, TileFileName(tile, band)), scene[i], tile);
    }
  }
  WriteText(Inside(tileFolder, kSampleIndexFile), SampleIndex());
  WriteText(Inside(folder, kSampleProjectionFile), SampleProjection());
  WriteText(Inside(folder, kSampleLabelFile), SampleLabel());
}

void AddSampleCommand(CLI::App& app) {
  const auto folder = std::make_shared<std::string>();
  CLI::App* command =
      app.add_subcommand("sample", "Write a demonstration product to try things on");
  command->add_option("DIR", *folder, "Folder to write into; made when it is missing")->required();
  command->footer("Example:\n  ravelin sample sample");
  command->callback([folder] {
    const std::string place = folder->starts_with('-') ? "./" + *folder : *folder;
    WriteSample(place);
    std::cout << Summary(place);
  });
}

}  // namespace ravelin
