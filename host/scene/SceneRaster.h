// The pixels of a scene.
#pragma once

#include <vector>

#include "Kv/VarA.h"
#include "SatCommonUtils/Log.h"
#include "SatCommonUtils/Raster.h"
#include "host/scene/ProductFolder.h"
#include "host/scene/SceneDescription.h"

namespace ravelin {

struct SceneRaster {
  var_a_legacy::var_a<SatCommonUtils::TBasePushbroomDibData*> raster;
  std::vector<int> keys;  ///< of the channels, in their order
};

/// Finds and opens the files of a scene and puts them together: stitched when the description has
/// tiles, else composed. What was opened goes to `log`. Throws HostError naming the file that is
/// missing, of the wrong size, unreadable or outside the folder.
SceneRaster OpenScene(const SceneDescription& scene, const ProductFolder& folder,
                      SatCommonUtils::TSatLog* log);

}  // namespace ravelin
