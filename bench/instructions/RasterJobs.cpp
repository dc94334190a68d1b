#include <map>
#include <memory>
#include <random>
#include <stdexcept>

#include "Kv/Stream.h"
#include "SatCommonUtils/Raster.h"
#include "bench/instructions/Jobs.h"

namespace RavelinBench {
namespace {

using namespace SatCommonUtils;
using TBand = var_a_legacy::var_a<TBasePushbroomDibData*>;
using TWork = std::function<void()>;

std::string Noise(unsigned long bytes) {
  std::mt19937 random(1);
  std::string noise;
  for (unsigned long i = 0; i < bytes; ++i) noise += static_cast<char>(random());
  return noise;
}

TBand MakeBand(unsigned long side) {
  const var_a_legacy::var_a<TKvStream*> stream(new TKvMemoryStream(Noise(2 * side * side)));
  var_a_legacy::var_a<TRawWordDibData*> band(new TRawWordDibData);
  if (!band->Setup(stream, side, side, TRawWordDibData::boBigEndian)) {
    throw std::runtime_error("the band is refused");
  }
  return band;
}

/// Reads all of the raster.
TWork WholeOf(const TBand& raster) {
  const long pixelBytes = 2 * raster->bandsCount;
  const auto bytes = static_cast<std::size_t>(raster->width * raster->height * pixelBytes);
  const auto out = std::make_shared<std::vector<unsigned char>>(bytes);
  return [=] {
    const TKvDibDataOutBuffer buffer{out->data(), raster->width * pixelBytes};
    if (raster->GetRect(buffer, raster->Bounds(), iqNearest, 0, nullptr) != kvDibWritten) {
      throw std::runtime_error("no pixels were written");
    }
  };
}

TWork RawBand() {
  return WholeOf(MakeBand(1024));
}

TWork Composite(int channels) {
  std::map<int, TBand> bands;
  for (int i = 0; i < channels; ++i) bands[33 + i] = MakeBand(256);
  var_a_legacy::var_a<TSeparateBandsDibData*> composite(new TSeparateBandsDibData);
  if (!composite->Setup(bands)) throw std::runtime_error("the bands are refused");
  return WholeOf(composite);
}

TWork Mosaic() {
  constexpr long kSide = 128;
  std::vector<TSuperTileData> tiles;
  for (long i = 0; i < 64; ++i) {
    const long left = i % 8 * kSide;
    const long top = i / 8 * kSide;
    tiles.push_back(
        {left, top, left + kSide - 1, top + kSide - 1, 0, 0, MakeBand(kSide), std::string()});
  }
  var_a_legacy::var_a<TSuperTiledDibDataEnvelope*> mosaic(new TSuperTiledDibDataEnvelope);
  if (!mosaic->Setup(tiles, nullptr)) throw std::runtime_error("the tiles are refused");
  return WholeOf(mosaic);
}

}  // namespace

std::vector<TCountedJob> RasterJobs() {
  return {{"raw_band", RawBand},
          {"composite_3", [] { return Composite(3); }},
          {"composite_13", [] { return Composite(13); }},
          {"mosaic", Mosaic}};
}

}  // namespace RavelinBench
