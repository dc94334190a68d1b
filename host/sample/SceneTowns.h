// Towns, villages and the roads between them.
#pragma once

#include "host/sample/SceneFixed.h"
#include "host/sample/SceneGrid.h"
#include "host/sample/SceneNoise.h"
#include "host/sample/SceneSpectrum.h"

namespace ravelin {

class SceneTowns {
 public:
  SceneTowns();

  /// How much of a pixel is built up, 0 ... 1.
  Fixed BuiltUpAt(int x, int y) const;
  /// Roofs, streets and gardens.
  Spectrum StreetsAt(int x, int y) const;
  /// How much of a pixel is a road between towns, 0 ... 1.
  Fixed RoadAt(int x, int y) const { return roads_(x, y); }

 private:
  void LayRoad(std::size_t from, std::size_t to);
  void Pave(Fixed x, Fixed y);

  SceneNoise outskirts_{511, 34, 3};
  SceneNoise bends_{531, 130, 2};
  SceneGrid<Fixed> roads_;
};

inline constexpr Spectrum kRoad = Reflectance(980, 1090, 1190, 1700);

}  // namespace ravelin
