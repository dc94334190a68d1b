// The text file that lists the super tiles of a scene (docs/tile-index.md).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/raster/BandArgument.h"
#include "host/raster/PixelArea.h"

namespace ravelin {

/// One line of an index: where the tile's content stands in the scene, where it starts in the
/// tile's own files, how large those are, and the files.
struct TileEntry {
  long left;  ///< columns from the left and rows from the top of the scene, right and bottom
              ///< included
  long top;
  long right;
  long bottom;
  long srcLeft;
  long srcTop;
  ImageSize fileSize;
  std::vector<BandArgument> bands;  ///< at least one; file names as they stand in the index
  unsigned long line;               ///< counted from 1; 0 when no index lists the tile
  std::string place;                ///< for messages: "line 3 of the index"
};

struct TileIndex {
  std::vector<TileEntry> tiles;  ///< at least one, all with the same keys

  /// Size of the scene: from the smallest left and top to the largest right and bottom.
  ImageSize Size() const;
  long Left() const;  ///< smallest left
  long Top() const;   ///< smallest top
};

/// What is wrong with a tile or a set of them, and what to do.
struct TileFault {
  std::string what;
  std::string remedy;
};

/// The checks that ParseTileIndex makes, for tiles that come from elsewhere. Throw TileFault.
/// Whether a tile ends behind its beginning and its content lies inside its files.
void CheckTilePlace(const TileEntry& tile);
/// Whether a tile has the keys of the first one, each once.
void CheckTileKeys(const TileEntry& tile, const TileEntry& first);
/// Whether they make a scene of at least 2 x 2 pixels and cover a fair part of it.
void CheckTileCover(const TileIndex& index);

/// Longest index that is read, and longest line in one.
constexpr unsigned long kMaxIndexBytes = 64ul << 20;
constexpr unsigned long kMaxIndexLine = 64ul << 10;

/// Reads an index. What it returns is whole: places are sane, content lies inside the tile's files,
/// every tile has the same keys, each once, and the tiles cover a fair part of the scene. Throws
/// HostError naming `file`, the line, and what to do. Linear in the text.
TileIndex ParseTileIndex(std::string_view text, const std::string& file);

}  // namespace ravelin
