#include "raster/Interleave.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "raster/RasterTest.h"

namespace {

using raster_test::Output;
using raster_test::RasterTest;
using SatCommonUtils::Interleave;
using SatCommonUtils::TChannelSource;

using InterleaveTest = RasterTest;

/// Rows of random bytes for one channel, `gap` bytes apart, the bottom row last in memory when
/// `topFirst` is set.
class Channel {
 public:
  Channel(std::mt19937& random, long width, long height, long bytesPerPixel, long gap,
          bool topFirst)
      : step_(width * bytesPerPixel + gap),
        bytesPerPixel_(bytesPerPixel),
        bytes_(static_cast<std::size_t>(std::max(height * step_ - gap, 1L))) {
    for (unsigned char& b : bytes_) b = static_cast<unsigned char>(random());
    bottom_ = topFirst ? std::max(height - 1, 0L) * step_ : 0;
    if (topFirst) step_ = -step_;
  }

  TChannelSource Source() const { return {{bytes_.data() + bottom_, step_}, bytesPerPixel_}; }
  unsigned char At(long x, long y, long byte) const {
    return bytes_.at(static_cast<std::size_t>(bottom_ + y * step_ + x * bytesPerPixel_ + byte));
  }
  long BytesPerPixel() const { return bytesPerPixel_; }

 private:
  long step_;
  long bytesPerPixel_;
  std::vector<unsigned char> bytes_;
  long bottom_;
};

/// Byte by byte: channel k from its k-th multiple on, what leaves the pixel left out.
void InterleaveNaively(const std::vector<Channel>& channels, Output& out, long width, long height,
                       long outPixel) {
  for (std::size_t k = 0; k < channels.size(); ++k) {
    const long size = channels[k].BytesPerPixel();
    for (long y = 0; y < height; ++y) {
      for (long x = 0; x < width; ++x) {
        for (long byte = 0; byte < size; ++byte) {
          const long place = static_cast<long>(k) * size + byte;
          if (place < outPixel) out.At(y, x * outPixel + place) = channels[k].At(x, y, byte);
        }
      }
    }
  }
}

void ExpectAsNaively(const std::vector<Channel>& channels, long width, long height, long outPixel,
                     long stride) {
  std::vector<TChannelSource> sources;
  for (const Channel& channel : channels) sources.push_back(channel.Source());
  std::vector<const unsigned char*> cursors(sources.size());
  Output out(std::max(height, 1L), stride);
  Output expected(std::max(height, 1L), stride);
  Interleave(sources, out.Buffer().data, stride, width, height, outPixel, &cursors);
  InterleaveNaively(channels, expected, width, height, outPixel);
  EXPECT_EQ(out.bytes, expected.bytes)
      << channels.size() << " channels, " << width << " x " << height << " pixels of " << outPixel
      << " bytes, stride " << stride;
}

std::vector<Channel> Channels(std::mt19937& random, std::size_t count, long width, long height,
                              long bytesPerPixel, long gap = 0, bool topFirst = false) {
  std::vector<Channel> channels;
  for (std::size_t k = 0; k < count; ++k) {
    channels.emplace_back(random, width, height, bytesPerPixel, gap, topFirst);
  }
  return channels;
}

template <class Check>
void ForEachCountAndSize(Check check) {
  for (std::size_t count = 1; count <= 12; ++count) {
    for (long size = 1; size <= 4; ++size) check(count, size);
  }
}

TEST_F(InterleaveTest, ChannelsThatFillThePixelLieSideBySide) {
  std::mt19937 random(1);
  ForEachCountAndSize([&](std::size_t count, long size) {
    const long pixel = static_cast<long>(count) * size;
    for (long width : {1L, 2L, 7L, 8L, 16L, 17L, 33L, 100L}) {
      ExpectAsNaively(Channels(random, count, width, 3, size), width, 3, pixel, width * pixel);
    }
  });
}

TEST_F(InterleaveTest, WhatLeavesASmallerPixelIsLeftOut) {
  std::mt19937 random(2);
  ForEachCountAndSize([&](std::size_t count, long size) {
    for (long pixel = 0; pixel < static_cast<long>(count) * size; ++pixel) {
      ExpectAsNaively(Channels(random, count, 19, 2, size), 19, 2, pixel, 19 * pixel + 3);
    }
  });
}

TEST_F(InterleaveTest, BytesBehindTheChannelsOfALargerPixelAreLeftAsTheyAre) {
  std::mt19937 random(3);
  ForEachCountAndSize([&](std::size_t count, long size) {
    for (long more : {1L, 2L, 5L}) {
      const long pixel = static_cast<long>(count) * size + more;
      ExpectAsNaively(Channels(random, count, 19, 2, size), 19, 2, pixel, 19 * pixel);
    }
  });
}

TEST_F(InterleaveTest, RowsMayLieApartAndGoDownInMemoryOnEitherSide) {
  std::mt19937 random(4);
  ForEachCountAndSize([&](std::size_t count, long size) {
    const long pixel = static_cast<long>(count) * size;
    for (long stride : {21 * pixel, 21 * pixel + 5, -21 * pixel, -21 * pixel - 5}) {
      for (bool topFirst : {false, true}) {
        ExpectAsNaively(Channels(random, count, 21, 4, size, 3, topFirst), 21, 4, pixel, stride);
      }
    }
  });
}

TEST_F(InterleaveTest, AChannelOfOtherSizeGoesToItsOwnMultiple) {
  std::mt19937 random(5);
  for (int i = 0; i < 3000; ++i) {
    const long width = static_cast<long>(random() % 40) + 1;
    const long height = static_cast<long>(random() % 4) + 1;
    std::vector<Channel> channels;
    long sum = 0;
    for (std::size_t count = random() % 12 + 1; count > 0; --count) {
      const long size = static_cast<long>(random() % 5);
      channels.emplace_back(random, width, height, size, static_cast<long>(random() % 4),
                            random() % 2 == 0);
      sum += size;
    }
    const long pixel = std::max(sum + static_cast<long>(random() % 9) - 4, 0L);
    const long row = width * pixel + static_cast<long>(random() % 6) + 1;
    ExpectAsNaively(channels, width, height, pixel, random() % 2 == 0 ? row : -row);
  }
}

TEST_F(InterleaveTest, ThreeBytesSplitBetweenChannelsAreCutInsideAChannel) {
  const unsigned char first[] = {1, 2, 3, 4};
  const unsigned char second[] = {5, 6, 7, 8};
  const std::vector<TChannelSource> sources = {{{first, 4}, 2}, {{second, 4}, 2}};
  std::vector<const unsigned char*> cursors(2);
  unsigned char out[] = {9, 9, 9, 9, 9, 9, 9};
  Interleave(sources, out, 6, 2, 1, 3, &cursors);
  EXPECT_EQ(std::vector<unsigned char>(out, out + 7),
            (std::vector<unsigned char>{1, 2, 5, 3, 4, 7, 9}));
}

TEST_F(InterleaveTest, NoRowsAndNoChannelsWriteNothing) {
  std::mt19937 random(6);
  ExpectAsNaively(Channels(random, 3, 5, 0, 2), 5, 0, 6, 30);
  ExpectAsNaively({}, 5, 3, 6, 30);
}

/// One row after the other would take weeks.
TEST_F(InterleaveTest, AnyNumberOfRowsWithoutAByteToCopyIsDoneAtOnce) {
  constexpr long kRows = 1000000000000000;
  const unsigned char bytes[] = {1, 2, 3, 4};
  std::vector<const unsigned char*> cursors(2);
  unsigned char out[] = {9};
  Interleave({{{bytes, 0}, 0}, {{bytes, 0}, 0}}, out, 0, 1, kRows, 4, &cursors);
  Interleave({{{bytes, 0}, 2}, {{bytes, 0}, 2}}, out, 0, 1, kRows, 0, &cursors);
  Interleave({}, out, 0, 1, kRows, 4, &cursors);
  EXPECT_EQ(out[0], 9);
}

}  // namespace
