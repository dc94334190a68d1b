// The measured jobs: which windows of which image.
#pragma once

#include <string>
#include <vector>

#include "bench/raster/Reader.h"

namespace RavelinBench {

struct TJob {
  std::string name;  ///< "raw/whole"
  const TDataSet* set;
  std::vector<TWindow> windows;  ///< of one pass, in order

  /// Output bytes of a window, of the largest window, of a pass.
  std::size_t Bytes(const TWindow& window) const;
  std::size_t LargestBytes() const;
  std::size_t PassBytes() const;
};

/// For an image in bands: whole in blocks of 256 rows as the command asks, in tiles of 512 x 512,
/// in 1000 random windows of 256 x 256. For a mosaic: whole, in 1000 random windows of 512 x 512;
/// of a level of it: whole.
std::vector<TJob> JobsFor(const TDataSet& set);

/// Reads every window with each reader (null ones left out) and throws std::runtime_error naming
/// the job and window where one gives other bytes than the first.
void CheckEqual(const TJob& job, const std::vector<TReader*>& readers);

}  // namespace RavelinBench
