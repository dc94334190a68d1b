// The images that the benchmarks read, made once in a temporary folder.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace RavelinBench {

/// A folder of its own, removed with all its files at destruction.
class TTempFolder {
 public:
  TTempFolder();
  TTempFolder(const TTempFolder&) = delete;
  TTempFolder& operator=(const TTempFolder&) = delete;
  ~TTempFolder();

  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

/// A headerless file of unsigned 16-bit big-endian samples: `height` rows of `width`, top row
/// first.
struct TRawFile {
  std::string path;
  long width;
  long height;
  unsigned seed;  ///< of the noise in it
};

/// One image. Either one file a channel, or one channel cut into square tiles, row by row from the
/// top left one: a file each, or, with levels, a raster in memory each.
struct TDataSet {
  std::string name;
  long width;  ///< pixels of the level that is read
  long height;
  int channels;
  long tilesAcross;     ///< tiles a row and a column; 1: not cut
  unsigned long level;  ///< 0: full resolution
  bool isLarge;         ///< four times the pixels; measures growth
  std::vector<TRawFile> files;

  bool IsMosaic() const { return tilesAcross > 1; }
};

/// Descriptions; the files are yet to be made.
TDataSet RawBand(const std::filesystem::path& folder, bool isLarge);
/// Of all numbers of bands one size.
TDataSet Bands(const std::filesystem::path& folder, int channels, bool isLarge);
TDataSet Mosaic(const std::filesystem::path& folder, bool isLarge);
/// A level of a mosaic of as many tiles in memory.
TDataSet MosaicLevel(unsigned long level, bool isLarge);

/// Fills each file with noise by one large write, so that the page cache holds it in large pieces.
/// Throws std::runtime_error when a file cannot be written.
void MakeFiles(const TDataSet& set);

}  // namespace RavelinBench
