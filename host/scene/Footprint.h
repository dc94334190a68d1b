// The outline of a scene on the ground.
#pragma once

#include <optional>
#include <string>

#include "SatCommonUtils/Log.h"
#include "SatCommonUtils/Shapefile.h"
#include "host/scene/Projection.h"
#include "host/scene/SceneDescription.h"
#include "host/scene/SceneOutput.h"

namespace ravelin {

struct Footprint {
  SatCommonUtils::TShapeFileRing ring;  ///< clockwise, as outer rings of shapefiles run
  std::string prj;                      ///< WKT of its coordinates; empty when they are not known
  std::string units;                    ///< of the coordinates, for people
};

/// The outline through the corners of the scene: in the units of its projection when that is there
/// as WKT, else in degrees, with the WKT of WGS 84 when the label says that this is the datum. None
/// when the label has no corners. What was chosen goes to `log`.
std::optional<Footprint> MakeFootprint(const SceneDescription& scene,
                                       const std::optional<Projection>& projection,
                                       SatCommonUtils::TSatLog* log);

/// Adds footprint.shp, .shx and .dbf, .prj when the coordinates are known, and the drawing
/// footprint.png. Throws HostError.
void AddFootprint(const Footprint& footprint, SceneOutput& output);

}  // namespace ravelin
