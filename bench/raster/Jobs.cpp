#include "bench/raster/Jobs.h"

#include <algorithm>
#include <numeric>
#include <random>
#include <stdexcept>

#include "bench/support/Size.h"

namespace RavelinBench {
namespace {

/// Row after row of tiles, from the bottom.
std::vector<TWindow> Tiles(const TDataSet& set, long tileWidth, long tileHeight) {
  std::vector<TWindow> windows;
  for (long y = 0; y < set.height; y += tileHeight) {
    for (long x = 0; x < set.width; x += tileWidth) {
      windows.push_back(
          {x, y, std::min(tileWidth, set.width - x), std::min(tileHeight, set.height - y)});
    }
  }
  return windows;
}

/// The same ones in every run.
std::vector<TWindow> RandomWindows(const TDataSet& set, long side) {
  const int count = (set.isLarge ? kGrowth : 1) * Sized(1000);
  std::mt19937 random(20240611);
  std::uniform_int_distribution<long> x(0, set.width - side);
  std::uniform_int_distribution<long> y(0, set.height - side);
  std::vector<TWindow> windows;
  for (int i = 0; i < count; ++i) {
    const long left = x(random);
    windows.push_back({left, y(random), side, side});
  }
  return windows;
}

}  // namespace

std::size_t TJob::Bytes(const TWindow& window) const {
  return static_cast<std::size_t>(window.width * window.height * set->channels * 2);
}

std::size_t TJob::LargestBytes() const {
  std::size_t largest = 0;
  for (const TWindow& window : windows) largest = std::max(largest, Bytes(window));
  return largest;
}

std::size_t TJob::PassBytes() const {
  return std::accumulate(
      windows.begin(), windows.end(), std::size_t{0},
      [this](std::size_t sum, const TWindow& window) { return sum + Bytes(window); });
}

std::vector<TJob> JobsFor(const TDataSet& set) {
  if (set.level > 0) {
    return {{set.name + "/level" + std::to_string(set.level), &set, Tiles(set, set.width, 256)}};
  }
  std::vector<TJob> jobs{{set.name + "/whole", &set, Tiles(set, set.width, 256)}};
  if (!set.IsMosaic()) jobs.push_back({set.name + "/tiles", &set, Tiles(set, 512, 512)});
  const long side = set.IsMosaic() ? 512 : 256;
  jobs.push_back({set.name + "/windows", &set, RandomWindows(set, side)});
  return jobs;
}

void CheckEqual(const TJob& job, const std::vector<TReader*>& readers) {
  for (std::size_t i = 0; i < job.windows.size(); ++i) {
    const TWindow& window = job.windows[i];
    std::vector<unsigned char> expected(job.Bytes(window), 0x55);
    readers.at(0)->Read(window, expected.data());
    for (TReader* reader : readers) {
      if (reader == nullptr || reader == readers[0]) continue;
      // Filled otherwise, so that bytes that neither writes differ.
      std::vector<unsigned char> given(job.Bytes(window), 0xAA);
      reader->Read(window, given.data());
      if (given != expected) {
        throw std::runtime_error(job.name + ": the readers differ in window " + std::to_string(i));
      }
    }
  }
}

}  // namespace RavelinBench
