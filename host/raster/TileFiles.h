// The files that a tile index names.
#pragma once

#include <string>

#include "host/raster/TileIndex.h"

namespace ravelin {

/// Reads the index file at `path`; throws HostError.
TileIndex ReadTileIndex(const std::string& path);

/// Where the file that an index calls `name` is: beside the index when the name is relative, with
/// every link resolved. Throws HostError when that is outside the index's folder, through an
/// absolute name, "..", or a link, unless `allowOutside`. The file need not exist.
std::string ResolveTileFile(const std::string& indexPath, const std::string& name,
                            bool allowOutside);

}  // namespace ravelin
