// A short cut for rasters made of the module's own raw bands: their pixels are used where they were
// read instead of being copied into a buffer of the caller's first. What is read, and what a
// failure gives, is the same.
#pragma once

#include "SatCommonUtils/Raster.h"

namespace SatCommonUtils {

/// Rows of pixels from the bottom one, `step` bytes from a row to the next one up.
struct TPixelRows {
  const unsigned char* bottom;
  long step;
};

/// Whether the band is one of the module's raw readers, nothing derived from them, in its usual
/// state: one kind, one sample of 2 bytes a pixel.
bool CanReadInPlace(const TBasePushbroomDibData& band);

/// Reads `part`, which must lie inside a band for which CanReadInPlace holds, into the band's read
/// buffer. The rows belong to the band until its next request. False when the read fails.
bool ReadInPlace(TBasePushbroomDibData& band, const TKvDibRectI& part, TPixelRows* rows);

}  // namespace SatCommonUtils
