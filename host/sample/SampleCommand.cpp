#include "host/sample/SampleCommand.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

#include "host/HostError.h"
#include "host/documents/ShellText.h"
#include "host/io/MakeFolder.h"
#include "host/io/PendingFile.h"
#include "host/io/TextOutput.h"
#include "host/sample/SampleLabel.h"
#include "host/sample/SampleLayout.h"
#include "host/sample/Scene.h"

namespace ravelin {
namespace {

using Samples = SceneGrid<std::uint16_t>;

/// The files of a product, which appear together.
class ProductFiles {
 public:
  void Write(const std::string& path, const void* bytes, std::size_t count) {
    files_.push_back(std::make_unique<PendingFile>(path));
    files_.back()->Write(bytes, count);
  }
  void WriteText(const std::string& path, const std::string& text) {
    Write(path, text.data(), text.size());
  }
  void Commit() const {
    std::vector<PendingFile*> files;
    for (const std::unique_ptr<PendingFile>& file : files_) files.push_back(file.get());
    PendingFile::CommitTogether(files);
  }

 private:
  std::vector<std::unique_ptr<PendingFile>> files_;
};

/// The part of the samples that `tile`'s files hold.
std::vector<unsigned char> TileBytes(const Samples& samples, const SampleTile& tile) {
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
  return bytes;
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

/// Makes the folder and that of the tiles in it, whose path it returns.
std::string MakeFolders(const std::string& folder) {
  MakeFolder(folder);
  std::string tiles = Inside(folder, kSampleTileFolder);
  MakeFolder(tiles);
  return tiles;
}

/// The text as one word of a shell's command line.
std::string ShellWord(const std::string& text) {
  const auto isPlain = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("/._-=:").find(c) != std::string_view::npos;
  };
  if (std::all_of(text.begin(), text.end(), isPlain)) return text;
  return ShellQuoted(text);
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
  // First what may fail, then what takes a while.
  MakeFolders(folder);
  WriteSample(MakeScene(), folder);
}

void WriteSample(const Scene& scene, const std::string& folder) {
  const std::string tileFolder = MakeFolders(folder);
  ProductFiles files;
  const auto write = [&](const std::string& path, const Samples& samples, const SampleTile& tile) {
    const std::vector<unsigned char> bytes = TileBytes(samples, tile);
    files.Write(path, bytes.data(), bytes.size());
  };
  for (std::size_t i = 0; i < kSampleBands.size(); ++i) {
    const SampleBand& band = kSampleBands[i];
    write(Inside(folder, BandFileName(band)), scene[i], WholeScene(band.order));
    for (const SampleTile& tile : SampleTiles()) {
      write(Inside(tileFolder, TileFileName(tile, band)), scene[i], tile);
    }
  }
  files.WriteText(Inside(tileFolder, kSampleIndexFile), SampleIndex());
  files.WriteText(Inside(folder, kSampleProjectionFile), SampleProjection());
  files.WriteText(Inside(folder, kSampleLabelFile), SampleLabel());
  files.Commit();
}

void AddSampleCommand(CommandEntry& program) {
  const auto folder = std::make_shared<std::string>();
  CommandEntry command =
      program.AddCommand("sample", "Write a demonstration product to try things on");
  command.AddOption("DIR", *folder, "Folder to write into; made when it is missing")
      .Kind(FolderValue())
      .Required();
  command.Footer("Example:\n  ravelin sample sample");
  command.OnRun([folder] {
    const std::string place = folder->starts_with('-') ? "./" + *folder : *folder;
    WriteSample(place);
    PrintText(Summary(place));
  });
}

}  // namespace ravelin
