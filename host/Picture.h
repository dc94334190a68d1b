// A picture (PNG) made from an area of a raster.
#pragma once

#include <ostream>
#include <string>

#include "host/AreaReader.h"
#include "host/Stretch.h"

namespace ravelin {

struct PictureOptions {
  Stretch stretch;
  int bits = 8;  ///< of a sample: 8 or 16
};

/// Writes the area as a PNG, its top row first: the first three channels as red, green and blue, or
/// the first one as grey when there are fewer. Zero samples are black whatever the stretch. Reads
/// the area twice when its percentiles are asked for. `terminal` (may be null) gets a progress bar.
/// Throws HostError.
void WritePicture(AreaReader& area, const PictureOptions& options, const std::string& path,
                  std::ostream* terminal);

}  // namespace ravelin
