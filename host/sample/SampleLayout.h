// The files of the sample product: its bands, its super tiles and their names.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "host/raster/BandArgument.h"

namespace ravelin {

struct SampleBand {
  const char* name;  ///< as file names and keys have it
  const char* role;  ///< as the label has it
  int kind;          ///< channel-kind code
  BytesOrder order;
};

/// In the order of the scene's bands.
inline constexpr std::array<SampleBand, 4> kSampleBands = {{
    {"blue", "BLUE", kBlueKey, BytesOrder::boBigEndian},
    {"green", "GREEN", kGreenKey, BytesOrder::boLittleEndian},
    {"red", "RED", kRedKey, BytesOrder::boBigEndian},
    {"nir", "NEAR_INFRARED", 32, BytesOrder::boLittleEndian},
}};

inline constexpr const char* kSampleLabelFile = "sample.lbl";
inline constexpr const char* kSampleProjectionFile = "sample.wkt";
inline constexpr const char* kSampleTileFolder = "tiles";
inline constexpr const char* kSampleIndexFile = "index.txt";

/// A super tile: the part of the scene that it shows and the part that its files hold. Some files
/// hold a margin of their neighbours' pixels. Columns from the left, rows from the top.
struct SampleTile {
  int row;  ///< in the grid of tiles, from 1
  int column;
  int left;
  int top;
  int right;  ///< right and bottom included
  int bottom;
  int fileLeft;  ///< where the files start in the scene
  int fileTop;
  int fileWidth;
  int fileHeight;
  BytesOrder order;  ///< of all its files
};

/// The 3 x 3 tiles, row by row.
std::vector<SampleTile> SampleTiles();

/// Name of a band's file in the product's folder.
std::string BandFileName(const SampleBand& band);
/// Name of a tile's file in the folder of the tiles.
std::string TileFileName(const SampleTile& tile, const SampleBand& band);

}  // namespace ravelin
