#include <map>
#include <stdexcept>

#include "Kv/Stream.h"
#include "SatCommonUtils/Raster.h"
#include "bench/raster/Reader.h"

namespace RavelinBench {
namespace {

using namespace SatCommonUtils;
using TBand = var_a_legacy::var_a<TBasePushbroomDibData*>;

/// Keys that a compositor of bands puts in this order.
constexpr int kBandKeys[] = {6, 4, 3, 33, 34, 35, 36, 37, 38, 39, 40, 41, 42};

TBand OpenBand(const TRawFile& file) {
  const var_a_legacy::var_a<TKvStream*> stream(
      new TKvFileStream(TKvPath(file.path), kvOpenRead, kvShareAll));
  var_a_legacy::var_a<TRawWordDibData*> band(new TRawWordDibData);
  if (!band->Setup(stream, static_cast<unsigned long>(file.width),
                   static_cast<unsigned long>(file.height), TRawWordDibData::boBigEndian)) {
    throw std::runtime_error("the module refuses " + file.path);
  }
  return band;
}

TBand OpenBands(const TDataSet& set) {
  std::map<int, TBand> bands;
  for (std::size_t i = 0; i < set.files.size(); ++i) bands[kBandKeys[i]] = OpenBand(set.files[i]);
  var_a_legacy::var_a<TSeparateBandsDibData*> compositor(new TSeparateBandsDibData);
  if (!compositor->Setup(bands)) throw std::runtime_error("the module refuses the bands");
  return compositor;
}

TBand OpenMosaic(const TDataSet& set) {
  std::vector<TSuperTileData> tiles;
  for (std::size_t i = 0; i < set.files.size(); ++i) {
    const TRawFile& file = set.files[i];
    const long left = static_cast<long>(i) % set.tilesAcross * file.width;
    const long top = static_cast<long>(i) / set.tilesAcross * file.height;
    tiles.push_back(
        {left, top, left + file.width - 1, top + file.height - 1, 0, 0, OpenBand(file), file.path});
  }
  var_a_legacy::var_a<TSuperTiledDibDataEnvelope*> mosaic(new TSuperTiledDibDataEnvelope);
  if (!mosaic->Setup(tiles, nullptr)) throw std::runtime_error("the module refuses the tiles");
  return mosaic;
}

TBand Open(const TDataSet& set) {
  if (set.IsMosaic()) return OpenMosaic(set);
  return set.channels == 1 ? OpenBand(set.files[0]) : OpenBands(set);
}

class TModuleReader : public TReader {
 public:
  explicit TModuleReader(const TDataSet& set)
      : raster_(Open(set)), pixelBytes_(2L * set.channels) {}

  void Read(const TWindow& window, unsigned char* out) override {
    const TKvDibDataOutBuffer buffer{out, window.width * pixelBytes_};
    const TKvDibRect rect{{{static_cast<double>(window.x), static_cast<double>(window.y)}},
                          {{static_cast<double>(window.width), static_cast<double>(window.height)}},
                          1};
    if (raster_->GetRect(buffer, rect, iqNearest, 0, nullptr) != kvDibWritten) {
      throw std::runtime_error("the module wrote no pixels");
    }
  }

 private:
  TBand raster_;
  long pixelBytes_;
};

}  // namespace

std::unique_ptr<TReader> MakeModuleReader(const TDataSet& set) {
  return std::make_unique<TModuleReader>(set);
}

}  // namespace RavelinBench
