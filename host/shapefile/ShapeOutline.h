// Rings drawn as a picture.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "SatCommonUtils/Shapefile.h"
#include "host/io/PendingFile.h"
#include "host/raster/PixelArea.h"

namespace ravelin {

/// Grey pixels, the top row first.
struct GreyPicture {
  ImageSize size;
  std::vector<std::uint8_t> pixels;
};

/// Whether every coordinate is a finite number.
bool CanBeDrawn(const std::vector<SatCommonUtils::TShapeFileRing>& rings);

/// Draws the rings, closed, into a picture that is at most as large as `most` (17 x 17 at least)
/// and touches it in one direction: dark lines, what lies inside an odd number of rings light grey,
/// the rest white. A unit is as long in x as in y. For rings with points that can be drawn. Time is
/// linear in the points and, for each line, in the pixels that it crosses.
GreyPicture DrawOutline(const std::vector<SatCommonUtils::TShapeFileRing>& rings,
                        const ImageSize& most);

/// Writes a picture as a PNG into a file that is not committed. Throws HostError naming `name`.
void WriteGreyPicture(const GreyPicture& picture, PendingFile& file, const std::string& name);

}  // namespace ravelin
