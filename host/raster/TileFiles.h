// The files that a tile index names.
#pragma once

#include <string>

#include "host/HostError.h"
#include "host/raster/TileIndex.h"

namespace ravelin {

/// Reads the index file at `path`; throws HostError.
TileIndex ReadTileIndex(const std::string& path);

/// Thrown for a file that lies outside the folder of its index.
class OutsideIndexFolder : public HostError {
 public:
  explicit OutsideIndexFolder(const std::string& name);
};

/// Where the file that an index calls `name` is: beside the index when the name is relative, with
/// every link resolved. Throws OutsideIndexFolder when that is outside the index's folder, through
/// an absolute name, "..", or a link, unless `allowOutside`; HostError when it cannot be told. The
/// file need not exist.
std::string ResolveTileFile(const std::string& indexPath, const std::string& name,
                            bool allowOutside);

}  // namespace ravelin
