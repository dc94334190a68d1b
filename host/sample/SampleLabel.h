// The texts of the sample product.
#pragma once

#include <string>

namespace ravelin {

/// The label: NASA-dialect PVL, LF line ends, UTF-8 without a mark, a group for the contents, each
/// band, the projection and each tile. Corners are those of the outermost pixels' centres.
std::string SampleLabel();

/// The projection of the label as well-known text (WKT1): UTM zone 59 south on WGS 84.
std::string SampleProjection();

/// The index of the super tiles (docs/tile-index.md).
std::string SampleIndex();

}  // namespace ravelin
