#include "host/scene/SceneStatistics.h"

#include "host/raster/Picture.h"

namespace ravelin {

SceneStatistics::SceneStatistics(long channels) : histograms_(static_cast<std::size_t>(channels)) {}

void SceneStatistics::Add(const std::uint16_t* samples, long pixels) {
  const auto channels = static_cast<long>(histograms_.size());
  for (Histogram& histogram : histograms_) histogram.Add(samples++, pixels, channels);
}

std::vector<BandStatistics> SceneStatistics::Results() const {
  std::vector<BandStatistics> results;
  for (const Histogram& histogram : histograms_) {
    results.push_back({histogram.Count(), histogram.Minimum(), histogram.Maximum(),
                       histogram.Mean(), histogram.Percentile(kDarkPercent),
                       histogram.Percentile(kBrightPercent)});
  }
  return results;
}

}  // namespace ravelin
