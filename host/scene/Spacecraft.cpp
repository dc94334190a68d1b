#include "host/scene/Spacecraft.h"

#include <algorithm>

#include "Kv/Text.h"
#include "host/raster/BandArgument.h"

namespace ravelin {
namespace {

// U.S. Geological Survey, "What are the band designations for the Landsat satellites?"
const std::vector<Spacecraft>& AllSpacecraft() {
  static const std::vector<Spacecraft> all = {
      {{"LANDSAT4", "LANDSAT5"}, 1, 2, 3, {}, {6}},
      {{"LANDSAT7"}, 1, 2, 3, {8}, {6}},
      {{"LANDSAT8", "LANDSAT9"}, 2, 3, 4, {8}, {10, 11}},
  };
  return all;
}

}  // namespace

int Spacecraft::VisibleKey(int band) const {
  if (band == blue) return kBlueKey;
  if (band == green) return kGreenKey;
  return band == red ? kRedKey : 0;
}

const Spacecraft* FindSpacecraft(const std::string& id) {
  std::string name = toupper(id);
  std::erase(name, '_');
  for (const Spacecraft& spacecraft : AllSpacecraft()) {
    const std::vector<std::string>& names = spacecraft.names;
    if (std::find(names.begin(), names.end(), name) != names.end()) return &spacecraft;
  }
  return nullptr;
}

}  // namespace ravelin
