#include "host/raster/TileSet.h"

#include <sys/resource.h>

#include <map>

#include "host/HostError.h"
#include "host/raster/BandFile.h"
#include "host/raster/TileFiles.h"

namespace ravelin {
namespace {

using SatCommonUtils::TBasePushbroomDibData;
using SatCommonUtils::TSeparateBandsDibData;
using SatCommonUtils::TSuperTileData;
using SatCommonUtils::TSuperTiledDibDataEnvelope;
using BandReference = var_a_legacy::var_a<TBasePushbroomDibData*>;

// Every file of a set stays open, and there may be more of them than a process may have open by
// default.
void RaiseOpenFilesLimit() {
  struct rlimit limit = {};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_NOFILE, &limit);
}

class Opener {
 public:
  Opener(const TileIndex& index, const std::string& indexPath, bool allowOutside)
      : index_(index),
        indexPath_(indexPath),
        allowOutside_(allowOutside),
        left_(index.Left()),
        top_(index.Top()) {}

  TileSet Open() {
    std::vector<TSuperTileData> tiles;
    for (const TileEntry& entry : index_.tiles) tiles.push_back(OpenTile(entry));
    set_.raster = var_a_legacy::var_a<TSuperTiledDibDataEnvelope*>(new TSuperTiledDibDataEnvelope);
    if (!set_.raster->Setup(tiles, nullptr)) {
      throw HostError(indexPath_, "the tiles do not fit together",
                      "give tiles with the same bands");
    }
    return set_;
  }

 private:
  TSuperTileData OpenTile(const TileEntry& entry) {
    return {entry.left - left_, entry.top - top_, entry.right - left_, entry.bottom - top_,
            entry.srcLeft,      entry.srcTop,     OpenRaster(entry),   entry.bands.front().file};
  }

  BandReference OpenRaster(const TileEntry& entry) {
    if (entry.bands.size() > 1) return OpenCompositor(entry);
    set_.keys = {entry.bands.front().key};
    return OpenBand(entry, entry.bands.front());
  }

  BandReference OpenCompositor(const TileEntry& entry) {
    std::map<int, BandReference> bands;
    for (const BandArgument& band : entry.bands) bands.emplace(band.key, OpenBand(entry, band));
    const var_a_legacy::var_a<TSeparateBandsDibData*> compositor(new TSeparateBandsDibData);
    if (!compositor->Setup(bands)) {
      throw HostError(indexPath_, entry.place + ": the bands do not fit", "give files of one size");
    }
    set_.keys.clear();
    for (const auto& [channel, key] : compositor->channelBands) set_.keys.push_back(key);
    return compositor;
  }

  BandReference OpenBand(const TileEntry& entry, const BandArgument& band) const {
    BandLayout layout;
    layout.size = entry.fileSize;
    layout.order = band.order;
    layout.remedy = "check width and height in " + entry.place;
    layout.shortRemedy = layout.remedy;
    const std::string path = ResolveTileFile(indexPath_, band.file, allowOutside_);
    return BandReference(new BandFile(path, layout));
  }

  const TileIndex& index_;
  const std::string& indexPath_;
  bool allowOutside_;
  long left_;
  long top_;
  TileSet set_;
};

}  // namespace

TileSet OpenTileSet(const TileIndex& index, const std::string& indexPath, bool allowOutside) {
  RaiseOpenFilesLimit();
  return Opener(index, indexPath, allowOutside).Open();
}

}  // namespace ravelin
