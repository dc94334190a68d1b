// The demonstration scene: a coast below mountains on a day with few clouds, as a satellite's
// four-band sensor sees it. No such place exists; the program computes it, the same on every
// machine.
#pragma once

#include <array>
#include <cstdint>

#include "host/sample/SceneGrid.h"
#include "host/sample/SceneSpectrum.h"
#include "host/sample/SceneTerrain.h"

namespace ravelin {

/// The bands blue, green, red, near infrared: kSceneWidth x kSceneHeight samples each, top row
/// first. A sample is (reflectance + 0.2) / 0.0000275; none is 0.
using Scene = std::array<SceneGrid<std::uint16_t>, kSceneBands>;

Scene MakeScene();

}  // namespace ravelin
