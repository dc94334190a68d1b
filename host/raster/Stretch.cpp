#include "host/raster/Stretch.h"

#include <algorithm>

namespace ravelin {
namespace {

constexpr std::size_t kValues = 65536;

std::uint64_t Between(std::uint64_t part, std::uint64_t whole, std::uint64_t brightest) {
  if (whole == 0) return (brightest + 1) / 2;
  return (2 * part * brightest + whole) / (2 * whole);
}

}  // namespace

std::vector<std::uint16_t> LinearStretch(std::uint16_t low, std::uint16_t high,
                                         std::uint16_t brightest) {
  std::vector<std::uint16_t> table(kValues, 0);
  const std::size_t first = std::max<std::size_t>(low, 1);
  const std::size_t last = high;
  for (std::size_t value = first; value <= last; ++value) {
    table[value] = static_cast<std::uint16_t>(Between(value - low, last - low, brightest));
  }
  for (std::size_t value = last + 1; value < kValues; ++value) table[value] = brightest;
  return table;
}

std::vector<std::uint16_t> NoStretch(int bits) {
  std::vector<std::uint16_t> table(kValues);
  for (std::size_t value = 0; value < kValues; ++value) {
    table[value] = static_cast<std::uint16_t>(bits == 8 ? value >> 8 : value);
  }
  return table;
}

}  // namespace ravelin
