// What is asked of a scene beside its label.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/raster/BandArgument.h"
#include "host/raster/PixelArea.h"
#include "host/scene/LabelFile.h"
#include "host/scene/SceneKeys.h"

namespace ravelin {

/// A band that is given by --band; without an order that of the scene counts.
struct BandChoice {
  int key;
  std::string file;  ///< in the product's folder
  std::optional<BytesOrder> order;
};
/// Reads KEY=FILE[:big|:little]. Throws std::invalid_argument saying what is wrong.
BandChoice ParseBandChoice(std::string_view text);

/// "big" or "little".
std::optional<BytesOrder> ParseOrderName(std::string_view text);
std::string OrderName(BytesOrder order);

struct SceneOptions {
  std::string label;  ///< empty: the only one in the folder
  std::optional<Dialect> dialect;
  std::optional<ImageSize> size;
  std::optional<BytesOrder> order;
  std::vector<BandChoice> bands;  ///< with different keys; none: those of the label
  std::vector<KeyMapping> mappings;
  bool pixels = false;  ///< write all pixels
  bool full = false;    ///< a quicklook that is not reduced
};

}  // namespace ravelin
