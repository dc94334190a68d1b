// Why a file cannot be read as the shapefile of a polygon.
#pragma once

#include <string>

#include "Kv/Stream.h"

namespace ravelin {

/// The refusal of what has nothing wrong: not all of it could be read, or memory was short.
inline constexpr const char* kShapeUnreadable = "cannot be read to its end";

/// Why the module refuses what the stream holds, for people and without a full stop: "polygon M
/// files are not read". To be asked when it has refused it.
std::string ShapeRefusal(TKvStream& stream);

}  // namespace ravelin
