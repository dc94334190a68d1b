// The rivers of a relief as smooth lines of growing width.
#pragma once

#include <cstdint>
#include <vector>

#include "host/sample/SceneDrainage.h"
#include "host/sample/SceneFixed.h"
#include "host/sample/SceneGrid.h"

namespace ravelin {

/// Farther from a river than this nothing depends on it; pixels.
inline constexpr Fixed kRiverReach = 14 * kOne;

/// The distance of each pixel to the nearest river bank: 0 at the bank, negative in the water, at
/// most kRiverReach. `width` is the relief's width in cells, `cellSize` the pixels along a cell,
/// `source` the area in cells from which on water is a river.
SceneGrid<Fixed> MeasureBanks(const SceneDrainage& drainage, int width, int cellSize,
                              std::uint32_t source);

}  // namespace ravelin
