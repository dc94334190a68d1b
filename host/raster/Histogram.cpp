#include "host/raster/Histogram.h"

#include <algorithm>
#include <numeric>

namespace ravelin {
namespace {

constexpr std::size_t kValues = 65536;

bool IsCounted(std::uint64_t count) {
  return count > 0;
}

}  // namespace

Histogram::Histogram() : counts_(kValues, 0) {}

void Histogram::Add(const std::uint16_t* samples, long count, long step) {
  for (long i = 0; i < count; ++i) ++counts_[samples[i * step]];
}

std::uint16_t Histogram::Percentile(unsigned int percent) const {
  const std::uint64_t total = Count();
  if (total == 0) return 0;
  const std::uint64_t rank = total / 100 * percent + (total % 100 * percent + 99) / 100;
  std::uint64_t seen = 0;
  std::size_t value = 0;
  while (seen < rank) seen += counts_[++value];
  return static_cast<std::uint16_t>(value);
}

std::uint64_t Histogram::Count() const {
  return std::accumulate(counts_.begin() + 1, counts_.end(), std::uint64_t{0});
}

std::uint16_t Histogram::Minimum() const {
  const auto first = std::find_if(counts_.begin() + 1, counts_.end(), IsCounted);
  return first == counts_.end() ? 0 : static_cast<std::uint16_t>(first - counts_.begin());
}

std::uint16_t Histogram::Maximum() const {
  const auto last = std::find_if(counts_.rbegin(), counts_.rend() - 1, IsCounted);
  return static_cast<std::uint16_t>(counts_.rend() - 1 - last);
}

double Histogram::Mean() const {
  double sum = 0;
  for (std::size_t value = 1; value < kValues; ++value) {
    sum += static_cast<double>(counts_[value]) * static_cast<double>(value);
  }
  const std::uint64_t count = Count();
  return count == 0 ? 0 : sum / static_cast<double>(count);
}

}  // namespace ravelin
