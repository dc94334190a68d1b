#include "host/raster/TileFiles.h"

#include <filesystem>
#include <new>
#include <system_error>

#include "host/io/InputFile.h"
#include "host/io/InsideFolder.h"

namespace ravelin {
namespace {

namespace fs = std::filesystem;

void CheckFound(const std::error_code& error, const std::string& name, const char* remedy) {
  if (error == std::errc::not_enough_memory) throw std::bad_alloc();
  if (error) throw HostError(name, "cannot be found: " + error.message(), remedy);
}

}  // namespace

OutsideIndexFolder::OutsideIndexFolder(const std::string& name)
    : HostError(name, "leads outside the folder of the index",
                "add --allow-outside if the index may read it") {}

TileIndex ReadTileIndex(const std::string& path) {
  return ParseTileIndex(ReadWholeFile(path, kMaxIndexBytes), path);
}

std::string ResolveTileFile(const std::string& indexPath, const std::string& name,
                            bool allowOutside) {
  std::error_code error;
  const fs::path folder = fs::canonical(fs::path(indexPath).parent_path() / ".", error);
  CheckFound(error, indexPath, "check the name");
  const fs::path file = fs::weakly_canonical(folder / name, error);
  CheckFound(error, name, "check the name in the index");
  if (!allowOutside && !IsInsideFolder(file, folder)) throw OutsideIndexFolder(name);
  return file.string();
}

}  // namespace ravelin
