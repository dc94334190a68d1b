// What became of a scene.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/raster/PixelArea.h"
#include "host/raster/TileIndex.h"
#include "host/scene/SceneCorners.h"
#include "host/scene/SceneOutput.h"
#include "host/scene/SceneStatistics.h"

namespace ravelin {

struct SceneChannel {
  int key;
  std::string name;
  std::string file;   ///< empty when it comes from tiles
  std::string order;  ///< "big" or "little"; empty when it comes from tiles
  BandStatistics statistics;
};

/// What is not known yet when a scene fails is empty.
struct SceneReport {
  std::string folder;
  std::string output;
  std::string error;  ///< empty: the work is done
  std::string label;
  std::string dialect;
  ImageSize size = {0, 0};
  ImageSize quicklook = {0, 0};
  bool allCounted = false;  ///< statistics of all pixels, not of those of the quicklook
  std::vector<SceneChannel> channels;
  std::vector<TileEntry> tiles;
  std::string projection;  ///< the file
  std::optional<SceneCorners> degrees;
  std::optional<SceneCorners> metres;
  std::vector<std::string> warnings;
  std::vector<SceneOutput::File> files;  ///< that were written
};

}  // namespace ravelin
