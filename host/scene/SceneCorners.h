// The corners that a label gives its scene.
#pragma once

#include <optional>
#include <string>

#include "SatCommonUtils/Log.h"
#include "SatCommonUtils/Shapefile.h"
#include "host/scene/SceneKeys.h"

namespace ravelin {

/// Four corners in the order of a ring that runs clockwise where north is up.
struct SceneCorners {
  SatCommonUtils::TShapeFilePoint upperLeft;
  SatCommonUtils::TShapeFilePoint upperRight;
  SatCommonUtils::TShapeFilePoint lowerRight;
  SatCommonUtils::TShapeFilePoint lowerLeft;
};

/// The corners in degrees, x longitude and y latitude. Across the meridian of 180 degrees western
/// longitudes go on beyond 180. None when the label has none, or not all of them, or one that is no
/// place on Earth, which goes to `log`. Throws HostError for a corner given in several ways.
std::optional<SceneCorners> CornersInDegrees(const LabelScope& label, SatCommonUtils::TSatLog* log);

/// The corners in the units of the label's projection.
std::optional<SceneCorners> CornersInProjection(const LabelScope& label,
                                                SatCommonUtils::TSatLog* log);

}  // namespace ravelin
