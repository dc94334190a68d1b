// The bands of spacecraft whose labels do not tell what they show.
#pragma once

#include <string>
#include <vector>

namespace ravelin {

/// Numbers of bands as the label's FILE_NAME_BAND_n counts them.
struct Spacecraft {
  std::vector<std::string> names;  ///< without '_'
  int blue;
  int green;
  int red;
  std::vector<int> panchromatic;
  std::vector<int> thermal;

  /// Channel-kind code of a band: 3, 4 or 6 when it is visible, else 0.
  int VisibleKey(int band) const;
};

/// The spacecraft that a label's SPACECRAFT_ID names, letter case and '_' ignored; null when its
/// bands are not known.
const Spacecraft* FindSpacecraft(const std::string& id);

}  // namespace ravelin
