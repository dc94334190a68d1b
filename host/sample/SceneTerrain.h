// The relief of the demonstration scene: mountains, hills, a plain with rivers, the coast.
#pragma once

#include "host/sample/SceneFixed.h"
#include "host/sample/SceneGrid.h"

namespace ravelin {

inline constexpr int kSceneWidth = 1200;    ///< pixels
inline constexpr int kSceneHeight = 900;    ///< pixels
inline constexpr int kScenePixelSize = 30;  ///< metres along a pixel

/// What the relief tells of each pixel; grids of kSceneWidth x kSceneHeight, top row first.
struct SceneTerrain {
  SceneGrid<Fixed> height;  ///< metres above the sea; below 0 in it
  SceneGrid<Fixed> shore;   ///< pixels from the coast, about; negative in the sea
  SceneGrid<Fixed> bank;    ///< pixels from the nearest river bank, negative in the river
  SceneGrid<Fixed> slope;   ///< rise over run
  SceneGrid<Fixed> light;   ///< sunlight relative to level ground
};

SceneTerrain MakeTerrain();

}  // namespace ravelin
