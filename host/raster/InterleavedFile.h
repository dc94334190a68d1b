// An image of interleaved samples (.bip) with its ENVI header (.hdr).
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "host/io/PendingFile.h"
#include "host/raster/AreaReader.h"

namespace ravelin {

/// Writes the area as width x height pixels of all channels, unsigned 16-bit little-endian, top row
/// first, no padding; beside it the header, named after `path` with .hdr in place of its ending.
/// Both are complete before either is put in place, and the header comes first, so that whoever
/// waits for the image finds its header. `terminal` (may be null) gets a progress bar. Throws
/// HostError.
void WriteInterleaved(AreaReader& area, const std::vector<std::string>& bandNames,
                      const std::string& path, std::ostream* terminal);

/// The same into files that are not committed. `use` (may be empty) gets the rows, too.
void WriteInterleaved(AreaReader& area, const std::vector<std::string>& bandNames,
                      PendingFile& image, PendingFile& header, const AreaReader::BlockUser& use,
                      std::ostream* terminal);

}  // namespace ravelin
