// Rows of separate channels into rows of pixels.
#pragma once

#include <vector>

#include "raster/InPlaceRead.h"

namespace SatCommonUtils {

/// The pixels of one channel.
struct TChannelSource {
  TPixelRows rows;
  long bytesPerPixel;
};

/// Writes `height` rows of `width` pixels of `outPixel` bytes, the first one at `to`, `stride`
/// bytes from a row to the next one up. Channel k goes to byte k x its bytes of each pixel; what
/// would leave the pixel is left out. `cursors` is room for as many pointers as there are channels.
void Interleave(const std::vector<TChannelSource>& sources, unsigned char* to, long stride,
                long width, long height, long outPixel, std::vector<const unsigned char*>* cursors);

}  // namespace SatCommonUtils
