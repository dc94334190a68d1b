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
  const TSuperTileData& first = tiles.front();
  long left = first.left;
  long top = first.top;
  long right = first.right;
  long bottom = first.bottom;
  for (const TSuperTileData& tile : tiles) {
    left = std::min(left, tile.left);
    top = std::min(top, tile.top);
    right = std::max(right, tile.right);
    bottom = std::max(bottom, tile.bottom);
  }
  // An extent one pixel wide or high is refused on purpose; callers rely on it.
  if (bottom <= top || right <= left) return false;
  *width = Extent(left, right);
  *height = Extent(top, bottom);
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
