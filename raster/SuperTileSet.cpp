#include <algorithm>

#include "SatCommonUtils/Raster.h"
#include "raster/RequestMath.h"

namespace SatCommonUtils {
namespace {

/// Takes `value` as the set's common one while there is none; false when it is another one.
bool Agrees(unsigned long value, unsigned long* common) {
  if (*common == 0) *common = value;
  return *common == value;
}

/// The pixels from `first` to `last`, both counted.
unsigned long Extent(long first, long last) {
  return static_cast<unsigned long>(last) + 1 - static_cast<unsigned long>(first);
}

bool FitsItsPlace(const TSuperTileData& tile) {
  const bool placed =
      tile.left >= 0 && tile.left < tile.right && tile.top >= 0 && tile.top < tile.bottom;
  return placed && tile.raster &&
         static_cast<unsigned long>(tile.raster->width) == Extent(tile.left, tile.right) &&
         static_cast<unsigned long>(tile.raster->height) == Extent(tile.top, tile.bottom);
}

}  // namespace

bool GetStitchedRasterDimensions(const std::vector<TSuperTileData>& tiles, unsigned long* width,
                                 unsigned long* height) {
  *width = 0;
  *height = 0;
  if (tiles.empty()) return false;
  TSuperTileData all{tiles.front()};
  for (const TSuperTileData& tile : tiles) {
    all.left = std::min(all.left, tile.left);
    all.top = std::min(all.top, tile.top);
    all.right = std::max(all.right, tile.right);
    all.bottom = std::max(all.bottom, tile.bottom);
  }
  // An extent one pixel wide or high is refused on purpose; callers rely on it.
  if (all.bottom <= all.top || all.right <= all.left) return false;
  *width = Extent(all.left, all.right);
  *height = Extent(all.top, all.bottom);
  return true;
}

bool GetStitchedRasterRadiometry(const std::vector<TSuperTileData>& tiles, unsigned long* bands,
                                 unsigned long* sampleSize) {
  *bands = 0;
  *sampleSize = 0;
  for (const TSuperTileData& tile : tiles) {
    if (!tile.raster) return false;
    const auto tileBands = static_cast<unsigned long>(tile.raster->bandsCount);
    if (!Agrees(tileBands, bands)) return false;
    if (!Agrees(tile.raster->channels.sampleSize, sampleSize)) return false;
  }
  return *bands != 0 && *sampleSize != 0;
}

bool CheckSuperTilesDataset(const std::vector<TSuperTileData>& tiles) {
  unsigned long bands;
  unsigned long sampleSize;
  return std::all_of(tiles.begin(), tiles.end(), FitsItsPlace) &&
         GetStitchedRasterRadiometry(tiles, &bands, &sampleSize);
}

unsigned long GetSuperTilesFileNames(const std::vector<TSuperTileData>& tiles,
                                     std::vector<std::string>* names) {
  for (const TSuperTileData& tile : tiles) names->push_back(tile.fileName);
  return names->size();
}

}  // namespace SatCommonUtils
