#include "raster/WideInterleave.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace SatCommonUtils {
namespace {

using Bytes = std::vector<unsigned char>;

Bytes RandomBytes(std::size_t count, std::mt19937* random) {
  Bytes bytes(count);
  for (unsigned char& byte : bytes) byte = static_cast<unsigned char>((*random)());
  return bytes;
}

/// The pixels' bytes, with `margin` bytes of 0x55 on either side.
Bytes Expected(const std::vector<Bytes>& channels, std::size_t count, std::size_t margin) {
  Bytes out(margin, 0x55);
  for (std::size_t p = 0; p < count; ++p) {
    for (const Bytes& channel : channels) {
      out.push_back(channel[2 * p]);
      out.push_back(channel[2 * p + 1]);
    }
  }
  out.resize(out.size() + margin, 0x55);
  return out;
}

void ExpectInterleaved(std::size_t channels, std::size_t count) {
  constexpr std::size_t kMargin = 31;
  std::mt19937 random(1);
  std::vector<Bytes> samples;
  std::vector<const unsigned char*> from;
  // Exactly as long as the samples, so that the sanitizer sees reading beyond them.
  for (std::size_t k = 0; k < channels; ++k) samples.push_back(RandomBytes(2 * count, &random));
  for (const Bytes& channel : samples) from.push_back(channel.data());
  Bytes out(2 * kMargin + 2 * channels * count, 0x55);
  InterleaveWide(out.data() + kMargin, from.data(), channels, count);
  EXPECT_EQ(out, Expected(samples, count, kMargin)) << channels << " channels, " << count;
}

TEST(WideInterleaveTest, AnyNumberOfChannelsAndPixelsLieSideBySide) {
  for (std::size_t channels = kLeastWideChannels; channels <= 40; ++channels) {
    for (std::size_t count = 0; count <= 40; ++count) ExpectInterleaved(channels, count);
  }
}

TEST(WideInterleaveTest, HundredsOfChannelsDoToo) {
  ExpectInterleaved(224, 333);
  ExpectInterleaved(801, 17);
}

}  // namespace
}  // namespace SatCommonUtils
