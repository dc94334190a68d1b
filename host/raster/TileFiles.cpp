#include "host/raster/TileFiles.h"

#include <filesystem>

#include "host/HostError.h"
#include "host/io/InputFile.h"
#include "host/io/InsideFolder.h"

namespace ravelin {
namespace {

namespace fs = std::filesystem;

}  // namespace

TileIndex ReadTileIndex(const std::string& path) {
  return ParseTileIndex(ReadWholeFile(path, kMaxIndexBytes), path);
}

std::string ResolveTileFile(const std::string& indexPath, const std::string& name,
                            bool allowOutside) {
  std::error_code error;
  const fs::path folder = fs::canonical(fs::path(indexPath).parent_path() / ".", error);
  if (error) throw HostError(indexPath, "its folder cannot be found", "check the name");
  const fs::path file = fs::weakly_canonical(folder / name, error);
  if (error) {
    throw HostError(name, "cannot be found: " + error.message(), "check the name in the index");
  }
  if (!allowOutside && !IsInsideFolder(file, folder)) {
    throw HostError(name, "leads outside the folder of the index",
                    "add --allow-outside if the index may read it");
  }
  return file.string();
}

}  // namespace ravelin
