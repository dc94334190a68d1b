#include "host/sample/SampleLayout.h"

#include "host/sample/SceneTerrain.h"

namespace ravelin {

namespace {

/// Where the tiles begin, and the end of the scene.
constexpr int kColumns[] = {0, 371, 834, kSceneWidth};
constexpr int kRows[] = {0, 268, 611, kSceneHeight};

struct Margins {
  int left;
  int top;
  int right;
  int bottom;
};

Margins MarginsOf(int row, int column) {
  if (row == 2 && column == 2) return {16, 12, 24, 8};
  if (row == 3 && column == 3) return {5, 9, 0, 0};
  return {};
}

SampleTile TileAt(int row, int column) {
  const Margins margins = MarginsOf(row, column);
  SampleTile tile = {};
  tile.row = row;
  tile.column = column;
  tile.left = kColumns[column - 1];
  tile.top = kRows[row - 1];
  tile.right = kColumns[column] - 1;
  tile.bottom = kRows[row] - 1;
  tile.fileLeft = tile.left - margins.left;
  tile.fileTop = tile.top - margins.top;
  tile.fileWidth = tile.right + 1 + margins.right - tile.fileLeft;
  tile.fileHeight = tile.bottom + 1 + margins.bottom - tile.fileTop;
  tile.order = (row + column) % 2 == 0 ? BytesOrder::boLittleEndian : BytesOrder::boBigEndian;
  return tile;
}

}  // namespace

std::vector<SampleTile> SampleTiles() {
  std::vector<SampleTile> tiles;
  for (int row = 1; row <= 3; ++row) {
    for (int column = 1; column <= 3; ++column) tiles.push_back(TileAt(row, column));
  }
  return tiles;
}

std::string BandFileName(const SampleBand& band) {
  return std::string(band.name) + ".raw";
}

std::string TileFileName(const SampleTile& tile, const SampleBand& band) {
  std::string name = "r";
  name += std::to_string(tile.row);
  name += "c";
  name += std::to_string(tile.column);
  return name + "_" + band.name + ".raw";
}

}  // namespace ravelin
