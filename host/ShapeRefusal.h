// Why a file cannot be read as the shapefile of a polygon.
#pragma once

#include <string>

#include "Kv/Stream.h"

namespace ravelin {

/// Why the module refuses what the stream holds, for people and without a full stop: "polygon M
/// files are not read". To be asked when it has refused it.
std::string ShapeRefusal(TKvStream& stream);

}  // namespace ravelin
