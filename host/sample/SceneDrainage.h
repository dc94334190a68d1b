// Running water on a relief: where it flows, how much gathers, and how it carves valleys.
#pragma once

#include <cstdint>
#include <vector>

#include "host/sample/SceneFixed.h"
#include "host/sample/SceneGrid.h"

namespace ravelin {

/// Where the water of each cell goes.
struct SceneDrainage {
  /// All cells, every one after the cell that its water flows to.
  std::vector<std::uint32_t> order;
  /// The neighbour that takes a cell's water; the cell itself in the sea.
  std::vector<std::uint32_t> receiver;
  /// Cells whose water passes through a cell, itself counted.
  std::vector<std::uint32_t> area;
};

/// Routes the water of every cell to the sea, the cells of height 0 and below. Water in a hollow
/// leaves it over the lowest rim. Neighbours are the eight cells around a cell, so one sea cell is
/// enough for all; without any, the drainage holds no cell. Time: n log n.
SceneDrainage RouteWater(const SceneGrid<Fixed>& height);

struct SceneErosion {
  Fixed incision;  ///< how fast water cuts, for one cell's water
  Fixed steepest;  ///< metres that a cell may stand above the one its water flows to
  Fixed creep;     ///< share of the difference to the neighbours that slopes lose to creeping soil
  int rounds;      ///< rounds of uplift and erosion
};

/// Raises the relief by `uplift` (metres a round) and lets water carve it: stream power with the
/// square root of the drained area, solved implicitly from the sea upwards. Returns the drainage of
/// the last round.
SceneDrainage Erode(SceneGrid<Fixed>* height, const SceneGrid<Fixed>& uplift,
                    const SceneErosion& erosion);

}  // namespace ravelin
