#include "host/Histogram.h"

#include <numeric>

namespace ravelin {
namespace {

constexpr std::size_t kValues = 65536;

}  // namespace

Histogram::Histogram() : counts_(kValues, 0) {}

void Histogram::Add(const std::uint16_t* samples, long count, long step) {
  for (long i = 0; i < count; ++i) ++counts_[samples[i * step]];
}

std::uint16_t Histogram::Percentile(unsigned int percent) const {
  const std::uint64_t total = std::accumulate(counts_.begin() + 1, counts_.end(), std::uint64_t{0});
  if (total == 0) return 0;
  const std::uint64_t rank = total / 100 * percent + (total % 100 * percent + 99) / 100;
  std::uint64_t seen = 0;
  std::size_t value = 0;
  while (seen < rank) seen += counts_[++value];
  return static_cast<std::uint16_t>(value);
}

}  // namespace ravelin
