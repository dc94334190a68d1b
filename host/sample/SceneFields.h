// The patchwork of fields in the plain.
#pragma once

#include <cstdint>

#include "host/sample/SceneFixed.h"
#include "host/sample/SceneNoise.h"
#include "host/sample/SceneSpectrum.h"

namespace ravelin {

/// Districts of irregular outline, each with its own direction and size of parcels; in a district
/// strips of uneven width, each cut into parcels of uneven length with a crop of its own.
class SceneFields {
 public:
  Spectrum At(Fixed x, Fixed y) const;

 private:
  SceneNoise edges_{311, 60, 2};
  SceneNoise growth_{331, 22, 2};
};

}  // namespace ravelin
