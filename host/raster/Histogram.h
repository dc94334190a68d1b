// Statistics of one channel.
#pragma once

#include <cstdint>
#include <vector>

namespace ravelin {

/// Counts 16-bit samples by value. Zeros stand for pixels that are not there and are left out.
class Histogram {
 public:
  Histogram();

  /// Counts `count` samples, `step` samples apart.
  void Add(const std::uint16_t* samples, long count, long step);
  /// The smallest value that at least `percent` (1 to 100) of a hundred samples do not exceed; 0
  /// when there is no sample.
  std::uint16_t Percentile(unsigned int percent) const;
  /// How many samples were counted, zeros left out.
  std::uint64_t Count() const;
  /// The smallest, the largest and the mean sample; 0 when there is none.
  std::uint16_t Minimum() const;
  std::uint16_t Maximum() const;
  double Mean() const;

 private:
  std::vector<std::uint64_t> counts_;
};

}  // namespace ravelin
