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
};

/// One image. Either one file a channel, or one channel cut into square tiles, a file each, row by
/// row from the top left one.
struct TDataSet {
  std::string name;
  long width;
  long height;
  int channels;
  long tilesAcross;  ///< tiles a row and a column; 1: not cut
  std::vector<TRawFile> files;

  bool IsMosaic() const { return tilesAcross > 1; }
};

/// Each file is filled with noise by one large write, so that the page cache holds it in large
/// pieces. Throws std::runtime_error when a file cannot be written.
TDataSet MakeRawBand(const std::filesystem::path& folder);
/// Of the 3 and the 7 bands of one size.
TDataSet MakeBands(const std::filesystem::path& folder, int channels);
TDataSet MakeMosaic(const std::filesystem::path& folder);

}  // namespace RavelinBench
