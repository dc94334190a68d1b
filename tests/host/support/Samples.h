// 16-bit samples as the bytes of files.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

using Samples = std::vector<std::uint16_t>;

inline std::string LittleBytes(const Samples& samples) {
  std::string bytes;
  for (const std::uint16_t sample : samples) {
    bytes += static_cast<char>(sample & 0xff);
    bytes += static_cast<char>(sample >> 8);
  }
  return bytes;
}

inline std::string BigBytes(const Samples& samples) {
  std::string bytes;
  for (const std::uint16_t sample : samples) {
    bytes += static_cast<char>(sample >> 8);
    bytes += static_cast<char>(sample & 0xff);
  }
  return bytes;
}

/// Random samples, about one in eight of them 0.
inline Samples RandomSamples(std::size_t count, unsigned long seed) {
  std::mt19937 random(seed);
  Samples samples(count);
  for (std::uint16_t& sample : samples) {
    sample = static_cast<std::uint16_t>(random() % 8 == 0 ? 0 : random() % 65536);
  }
  return samples;
}

/// The samples of several bands of one size, interleaved by pixel.
inline Samples Interleave(const std::vector<Samples>& bands) {
  Samples pixels;
  for (std::size_t i = 0; i < bands.front().size(); ++i) {
    for (const Samples& band : bands) pixels.push_back(band[i]);
  }
  return pixels;
}

/// An area of an image of `channels` interleaved samples, `width` pixels a row.
inline Samples Cut(const Samples& pixels, long width, long channels, long x, long y, long w,
                   long h) {
  Samples cut;
  for (long row = y; row < y + h; ++row) {
    const auto begin = pixels.begin() + (row * width + x) * channels;
    cut.insert(cut.end(), begin, begin + w * channels);
  }
  return cut;
}
