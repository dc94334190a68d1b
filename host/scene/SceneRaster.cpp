#include "host/scene/SceneRaster.h"

#include <filesystem>
#include <map>

#include "host/HostError.h"
#include "host/raster/BandFile.h"
#include "host/raster/TileSet.h"
#include "host/scene/SceneLog.h"

namespace ravelin {
namespace {

using SatCommonUtils::TBasePushbroomDibData;
using SatCommonUtils::TSatLog;
using SatCommonUtils::TSeparateBandsDibData;
using BandMap = std::map<int, var_a_legacy::var_a<TBasePushbroomDibData*>>;

std::string BandRemedy(const std::string& place) {
  return place == "--band" ? "check --band" : "check " + place + " of the label or give --band";
}

BandLayout LayoutOf(const SceneDescription& scene, const SceneBand& band) {
  BandLayout layout;
  layout.size = scene.size;
  layout.offset = scene.headerBytes;
  layout.order = band.order;
  layout.remedy = "check LINES and LINE_SAMPLES of the label, or give --size";
  layout.shortRemedy = layout.remedy;
  return layout;
}

SceneRaster Compose(const SceneDescription& scene, const ProductFolder& folder, TSatLog* log) {
  SceneRaster result;
  BandMap bands;
  for (const SceneBand& band : scene.bands) {
    const std::string path = folder.FindBand(band.file, BandRemedy(band.place));
    const BandLayout layout = LayoutOf(scene, band);
    bands.emplace(band.key, var_a_legacy::var_a<BandFile*>(new BandFile(path, layout)));
    LogInfo(log, "opened " + path + ": " + BandName(band.key) + ", " + OrderName(band.order) +
                     "-endian, " + std::to_string(BandFileBytes(path, layout)) + " bytes");
  }
  const var_a_legacy::var_a<TSeparateBandsDibData*> image(new TSeparateBandsDibData);
  if (!image->Setup(bands)) {
    throw HostError(folder.Path(), "the bands do not fit together", "give bands of one size");
  }
  for (const auto& [channel, key] : image->channelBands) result.keys.push_back(key);
  result.raster = image;
  return result;
}

SceneRaster Stitch(const SceneDescription& scene, const ProductFolder& folder, TSatLog* log) {
  TileIndex index = {scene.tiles};
  std::size_t files = 0;
  for (TileEntry& tile : index.tiles) {
    for (BandArgument& band : tile.bands) {
      const std::string path = folder.FindBand(band.file, BandRemedy(tile.place));
      band.file = std::filesystem::absolute(path).string();
      ++files;
    }
  }
  const TileSet set = OpenTileSet(index, folder.Path() + "/.", true);
  LogInfo(log, "opened " + std::to_string(files) + " files of " +
                   std::to_string(index.tiles.size()) + " tiles");
  return {set.raster, set.keys};
}

}  // namespace

SceneRaster OpenScene(const SceneDescription& scene, const ProductFolder& folder, TSatLog* log) {
  return scene.tiles.empty() ? Compose(scene, folder, log) : Stitch(scene, folder, log);
}

}  // namespace ravelin
