// Points in text, one a line.
#pragma once

#include <string>
#include <string_view>

#include "SatCommonUtils/Shapefile.h"

namespace ravelin {

/// The points of a text with "x y" on each line; empty lines and those that begin with '#' are
/// passed over. A last point that is the first one again is left out. Throws HostError naming
/// `name` and the line for anything else, and when there are fewer than three points.
SatCommonUtils::TShapeFileRing ParsePoints(std::string_view text, const std::string& name);

}  // namespace ravelin
