// The text file that lists the tiles of a scene.
#include "host/raster/TileIndex.h"

#include <set>
#include <string_view>

#include "fuzz/FuzzInput.h"
#include "host/HostError.h"

namespace {

void CheckTile(const ravelin::TileEntry& tile) {
  Require(0 <= tile.left && tile.left <= tile.right, "columns are in order");
  Require(0 <= tile.top && tile.top <= tile.bottom, "rows are in order");
  Require(0 <= tile.srcLeft && tile.srcLeft + tile.right - tile.left < tile.fileSize.width,
          "columns lie in the files");
  Require(0 <= tile.srcTop && tile.srcTop + tile.bottom - tile.top < tile.fileSize.height,
          "rows lie in the files");
  std::set<int> keys;
  for (const ravelin::BandArgument& band : tile.bands) {
    Require(keys.insert(band.key).second, "keys differ");
    Require(!band.file.empty() && band.file.find('\0') == std::string::npos, "files have names");
  }
  Require(!keys.empty(), "a tile has a file");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const ravelin::TileIndex index = ravelin::ParseTileIndex(text, "index");
    Require(!index.tiles.empty(), "an index has a tile");
    for (const ravelin::TileEntry& tile : index.tiles) CheckTile(tile);
    Require(index.Size().width >= 2 && index.Size().height >= 2, "a scene has 2 x 2 pixels");
  } catch (const ravelin::HostError& error) {
    Require(std::string_view(error.what()).starts_with("index: line "), "errors name the line");
  }
  return 0;
}
