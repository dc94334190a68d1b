// Fair-weather clouds over the demonstration scene, and their shadows.
#pragma once

#include "host/sample/SceneFixed.h"
#include "host/sample/SceneGrid.h"

namespace ravelin {

/// Grids of kSceneWidth x kSceneHeight, top row first.
struct SceneClouds {
  SceneGrid<Fixed> cover;       ///< how much of the ground a cloud hides, 0 ... 1
  SceneGrid<Fixed> brightness;  ///< reflectance of the cloud
  SceneGrid<Fixed> shadow;      ///< how much of the sun a cloud takes from the ground, 0 ... 1
};

SceneClouds MakeClouds();

}  // namespace ravelin
