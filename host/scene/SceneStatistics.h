// What the samples of a scene are like.
#pragma once

#include <cstdint>
#include <vector>

#include "host/raster/AreaReader.h"
#include "host/raster/Histogram.h"

namespace ravelin {

/// Of one channel. Zeros stand for pixels that are not there and are left out; without others all
/// is 0.
struct BandStatistics {
  std::uint64_t count;  ///< of samples that are not 0
  std::uint16_t minimum;
  std::uint16_t maximum;
  double mean;
  std::uint16_t dark;    ///< 2nd percentile
  std::uint16_t bright;  ///< 98th percentile
};

/// Counts the samples of all channels.
class SceneStatistics {
 public:
  explicit SceneStatistics(long channels);

  /// Counts pixels of interleaved samples.
  void Add(const std::uint16_t* samples, long pixels);
  /// One for each channel.
  std::vector<BandStatistics> Results() const;

 private:
  std::vector<Histogram> histograms_;
};

}  // namespace ravelin
