#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
#include <stdexcept>

#include "Kv/Raster.h"
#include "SatCommonUtils/Raster.h"
#include "bench/raster/Reader.h"

namespace RavelinBench {
namespace {

using namespace SatCommonUtils;
using TTile = var_a_legacy::var_a<TKvDibData*>;

constexpr unsigned long kLevels = 3;

TTile MakeTile(const TRawFile& file) {
  const auto width = static_cast<unsigned long>(file.width);
  const auto height = static_cast<unsigned long>(file.height);
  const var_a_legacy::var_a<TKvMemoryDibData*> tile(
      new TKvMemoryDibData(width, height, {1, 2, {1}}, kLevels));
  std::mt19937_64 random(file.seed);
  for (unsigned long at = 0; at + 8 <= 2 * width * height; at += 8) {
    const std::uint64_t word = random();
    std::memcpy(tile->Pixels() + at, &word, 8);
  }
  tile->BuildLevels();
  return tile;
}

std::vector<TTile> MakeTiles(const TDataSet& set) {
  std::vector<TTile> tiles;
  for (const TRawFile& file : set.files) tiles.push_back(MakeTile(file));
  return tiles;
}

class TModuleLevelReader : public TReader {
 public:
  explicit TModuleLevelReader(const TDataSet& set) : level_(set.level) {
    const std::vector<TTile> rasters = MakeTiles(set);
    std::vector<TSuperTileData> tiles;
    for (std::size_t i = 0; i < set.files.size(); ++i) {
      const TRawFile& file = set.files[i];
      const long left = static_cast<long>(i) % set.tilesAcross * file.width;
      const long top = static_cast<long>(i) / set.tilesAcross * file.height;
      const var_a_legacy::var_a<TBasePushbroomDibData*> envelope(
          new TPushbroomDibDataEnvelope(rasters[i], "", false));
      tiles.push_back(
          {left, top, left + file.width - 1, top + file.height - 1, 0, 0, envelope, file.path});
    }
    if (!mosaic_.Setup(tiles, nullptr)) throw std::runtime_error("the module refuses the tiles");
  }

  void Read(const TWindow& window, unsigned char* out) override {
    const TKvDibRect rect =
        mosaic_.RectI2Rect(level_, {window.x, window.y, window.width, window.height});
    if (mosaic_.GetRect({out, 2 * window.width}, rect, iqNearest, 0, nullptr) != kvDibWritten) {
      throw std::runtime_error("the module wrote no pixels");
    }
  }

 private:
  unsigned long level_;
  TSuperTiledDibDataEnvelope mosaic_;
};

class TFloorLevelReader : public TReader {
 public:
  explicit TFloorLevelReader(const TDataSet& set)
      : level_(set.level),
        across_(set.tilesAcross),
        side_(set.width / set.tilesAcross),
        tiles_(MakeTiles(set)) {}

  void Read(const TWindow& window, unsigned char* out) override {
    const long top = window.y + window.height - 1;
    const long right = window.x + window.width - 1;
    for (long row = window.y / side_; row <= top / side_; ++row) {
      for (long column = window.x / side_; column <= right / side_; ++column) {
        Copy(window, row, column, out);
      }
    }
  }

 private:
  /// `row` counts tiles from the bottom.
  void Copy(const TWindow& window, long row, long column, unsigned char* out) {
    const long left = std::max(window.x, column * side_);
    const long bottom = std::max(window.y, row * side_);
    const long right = std::min(window.x + window.width, (column + 1) * side_);
    const long top = std::min(window.y + window.height, (row + 1) * side_);
    const long stride = 2 * window.width;
    unsigned char* const to = out + (bottom - window.y) * stride + 2 * (left - window.x);
    const auto tile = static_cast<std::size_t>((across_ - 1 - row) * across_ + column);
    auto& raster = dynamic_cast<TKvMultiScaleDibData&>(*tiles_[tile]);
    raster.GetRect(level_,
                   {left - column * side_, bottom - row * side_, right - left, top - bottom},
                   {to, stride});
  }

  unsigned long level_;
  long across_;
  long side_;
  std::vector<TTile> tiles_;
};

}  // namespace

std::unique_ptr<TReader> MakeModuleLevelReader(const TDataSet& set) {
  return std::make_unique<TModuleLevelReader>(set);
}

std::unique_ptr<TReader> MakeFloorLevelReader(const TDataSet& set) {
  return std::make_unique<TFloorLevelReader>(set);
}

}  // namespace RavelinBench
