// The raster of a tile index.
#pragma once

#include <string>
#include <vector>

#include "Kv/VarA.h"
#include "SatCommonUtils/Raster.h"
#include "host/raster/TileIndex.h"

namespace ravelin {

struct TileSet {
  var_a_legacy::var_a<SatCommonUtils::TSuperTiledDibDataEnvelope*> raster;
  std::vector<int> keys;  ///< of the channels, in their order
};

/// Opens every file of the index and stitches the tiles. A tile of one file is a raw band, one of
/// several a compositor of raw bands. The scene begins at the smallest left and top. Throws
/// HostError naming the file that is missing, of the wrong size or outside the index's folder.
TileSet OpenTileSet(const TileIndex& index, const std::string& indexPath, bool allowOutside);

}  // namespace ravelin
