// What a scene is made of, by its label and the options.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "SatCommonUtils/Log.h"
#include "host/raster/TileIndex.h"
#include "host/scene/SceneCorners.h"
#include "host/scene/SceneOptions.h"

namespace ravelin {

struct SceneBand {
  int key;            ///< channel-kind code; unique in the scene
  std::string name;   ///< what it is called in listings
  std::string file;   ///< in the product's folder
  std::string place;  ///< what names the file: a path in the label, or --band
  BytesOrder order;
};

struct SceneDescription {
  ImageSize size;
  unsigned long headerBytes = 0;        ///< of every band file
  std::vector<SceneBand> bands;         ///< empty when there are tiles
  std::vector<TileEntry> tiles;         ///< with the file names of the label
  std::optional<SceneCorners> degrees;  ///< x longitude, y latitude
  std::optional<SceneCorners> metres;   ///< of the projection
  std::string datum;                    ///< as the label has it; empty when it has none
  std::string projectionFile;           ///< as the label names it; empty when it does not
};

/// Makes the description; what was decided and left out goes to `log`. Throws HostError for what
/// the label in `file` does not tell, or tells in more than one way, naming the key and the option
/// to give instead, and for samples that are not unsigned 16-bit.
SceneDescription DescribeScene(const LabelScopes& label, const SceneOptions& options,
                               const std::string& file, SatCommonUtils::TSatLog* log);

}  // namespace ravelin
