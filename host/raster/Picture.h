// A picture (PNG) made from an area of a raster.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "host/io/PendingFile.h"
#include "host/raster/AreaReader.h"
#include "host/raster/Stretch.h"

namespace ravelin {

/// Samples shown as black and as white.
struct StretchLimits {
  std::uint16_t low;
  std::uint16_t high;
};

/// The percentiles that a picture is stretched between unless it is asked for something else.
constexpr unsigned int kDarkPercent = 2;
constexpr unsigned int kBrightPercent = 98;

struct PictureOptions {
  Stretch stretch;
  int bits = 8;  ///< of a sample: 8 or 16
  /// The limits of each channel shown, where they are known: they go before `stretch`.
  std::vector<StretchLimits> limits = {};
};

/// Channels that a picture of a raster of so many shows: 3 or 1.
int ShownChannels(long channels);

/// Writes the area as a PNG, its top row first: the first three channels as red, green and blue, or
/// the first one as grey when there are fewer. Zero samples are black whatever the stretch. Reads
/// the area twice when its percentiles are asked for. `terminal` (may be null) gets a progress bar.
/// Throws HostError.
void WritePicture(AreaReader& area, const PictureOptions& options, const std::string& path,
                  std::ostream* terminal);
/// The same into a file that is not committed; errors are about `path`.
void WritePicture(AreaReader& area, const PictureOptions& options, PendingFile& file,
                  const std::string& path, std::ostream* terminal);

}  // namespace ravelin
