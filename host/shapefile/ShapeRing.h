// Rings of shapefiles.
#pragma once

#include <optional>
#include <string>

#include "SatCommonUtils/Shapefile.h"

namespace ravelin {

/// Turns an anticlockwise ring round, as outer rings of shapefiles run clockwise; its first point
/// stays the first. False when there was nothing to turn.
bool MakeClockwise(SatCommonUtils::TShapeFileRing* ring);

/// The bytes of the main file that holds the ring; none when it is no polygon or has too many
/// points for a shapefile.
std::optional<std::string> ShapeMainFile(const SatCommonUtils::TShapeFileRing& ring);

}  // namespace ravelin
