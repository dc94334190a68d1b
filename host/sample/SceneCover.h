// What covers the ground of the demonstration scene.
#pragma once

#include "host/sample/SceneFields.h"
#include "host/sample/SceneNoise.h"
#include "host/sample/SceneSpectrum.h"
#include "host/sample/SceneTerrain.h"
#include "host/sample/SceneTowns.h"

namespace ravelin {

/// Water, woods, fields, towns, rock and snow, placed as the terrain suggests. The terrain must
/// outlive it.
class SceneCover {
 public:
  explicit SceneCover(const SceneTerrain& terrain) : terrain_(terrain) {}

  /// The reflectance of a pixel in full sunlight on level ground.
  Spectrum At(int x, int y) const;

 private:
  struct Site;

  Spectrum SeaAt(const Site& site) const;
  Spectrum LandAt(const Site& site) const;
  Spectrum PlainAt(const Site& site) const;
  Spectrum MountainAt(const Site& site) const;
  Spectrum WoodAt(const Site& site) const;
  Spectrum AddBeach(const Site& site, const Spectrum& land) const;
  Spectrum AddRiver(const Site& site, const Spectrum& land) const;

  const SceneTerrain& terrain_;
  SceneFields fields_;
  SceneTowns towns_;
  SceneNoise regions_{211, 120, 3};
  SceneNoise patches_{231, 40, 3};
  SceneNoise grain_{251, 5, 2};
};

}  // namespace ravelin
