// Reading an area of a raster from its top row to its bottom row.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "Kv/Progress.h"
#include "SatCommonUtils/Raster.h"
#include "host/raster/PixelArea.h"

namespace ravelin {

/// Asks a raster of 16-bit samples for an area in blocks of up to 256 rows, top block first, and
/// hands them on with the top row first, so that memory does not grow with the image's height. A
/// block takes at most 64 MiB unless a single row takes more.
///
/// The raster must outlive the reader. `area` must lie inside the level. May be read several times.
class AreaReader {
 public:
  /// Gets rows of Width() pixels of Channels() samples each, packed, in the machine's byte order.
  /// Valid during the call only.
  using BlockUser = std::function<void(const std::uint16_t* samples, long rows)>;

  /// `name` is what errors are about. Throws HostError when a row is too long to be worked on
  /// (more than 256 MiB).
  AreaReader(SatCommonUtils::TBasePushbroomDibData& raster, unsigned long level,
             const PixelArea& area, std::string name);

  long Width() const { return area_.width; }
  long Height() const { return area_.height; }
  long Channels() const { return raster_.bandsCount; }

  /// Reads the whole area once. `progress` (may be null) gets the number of rows read so far, those
  /// of earlier passes counted. Throws HostError when the raster does not give a block.
  void ReadBlocks(const BlockUser& use, TKvProgressHandler* progress);

 private:
  void ReadRows(long top, long rows);
  void PurgeSometimes(long rows);

  SatCommonUtils::TBasePushbroomDibData& raster_;
  unsigned long level_;
  PixelArea area_;
  std::string name_;
  long levelHeight_;
  long blockRows_;
  unsigned long rowsRead_ = 0;
  std::size_t unpurgedBytes_ = 0;
  std::vector<std::uint16_t> block_;
};

}  // namespace ravelin
