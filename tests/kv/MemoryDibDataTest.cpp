#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "Kv/Raster.h"
#include "support/FailingNew.h"

namespace {

using Bytes = std::vector<unsigned char>;
using Size = vec_t_<unsigned long, 2>;

constexpr unsigned char kUntouched = 0xEE;

TKvDibChannels ChannelsOf(unsigned long sampleSize, unsigned long count) {
  return {0, sampleSize, std::vector<int>(count, 32)};
}

// A grey raster of bytes whose pixel (x, y) is 10 * y + x.
TKvMemoryDibData Numbered(unsigned long width, unsigned long height, unsigned long levels = 1) {
  TKvMemoryDibData raster(width, height, ChannelsOf(1, 1), levels);
  for (unsigned long y = 0; y < height; ++y) {
    for (unsigned long x = 0; x < width; ++x) {
      raster.Pixels()[y * width + x] = static_cast<unsigned char>(10 * y + x);
    }
  }
  return raster;
}

void FillRandomly(unsigned char* bytes, std::size_t count, unsigned seed) {
  std::mt19937 random(seed);
  for (std::size_t i = 0; i < count; ++i) bytes[i] = static_cast<unsigned char>(random());
}

// All pixels of a level.
Bytes LevelBytes(TKvMemoryDibData& raster, unsigned long level) {
  const Size size = raster.GetScaleDimensions(level);
  const TKvDibChannels& channels = raster.Channels();
  const unsigned long row = size[0] * channels.sampleSize * channels.kinds.size();
  Bytes bytes(row * size[1], kUntouched);
  raster.GetRect(level, {0, 0, static_cast<long>(size[0]), static_cast<long>(size[1])},
                 {bytes.data(), static_cast<long>(row)});
  return bytes;
}

std::uint64_t SampleAt(const Bytes& bytes, std::size_t index, std::size_t sampleSize) {
  std::uint64_t value = 0;
  const unsigned char* sample = bytes.data() + index * sampleSize;
  switch (sampleSize) {
    case 1:
      return *sample;
    case 2: {
      std::uint16_t narrow = 0;
      std::memcpy(&narrow, sample, 2);
      return narrow;
    }
    case 4: {
      std::uint32_t narrow = 0;
      std::memcpy(&narrow, sample, 4);
      return narrow;
    }
    default:
      std::memcpy(&value, sample, 8);
      return value;
  }
}

// Naive mean with halves up, carrying the remainder from value to value so that no sum overflows.
std::uint64_t NaiveMean(const std::vector<std::uint64_t>& covered) {
  std::uint64_t whole = 0;
  std::uint64_t rest = 0;
  for (const std::uint64_t value : covered) {
    whole += value / covered.size();
    rest += value % covered.size();
    if (rest >= covered.size()) {
      rest -= covered.size();
      ++whole;
    }
  }
  return 2 * rest >= covered.size() ? whole + 1 : whole;
}

void ExpectMeansOfTheLevelBelow(const Bytes& below, Size belowSize, const Bytes& level, Size size,
                                std::size_t sampleSize, std::size_t channels) {
  for (std::size_t y = 0; y < size[1]; ++y) {
    for (std::size_t x = 0; x < size[0]; ++x) {
      for (std::size_t c = 0; c < channels; ++c) {
        std::vector<std::uint64_t> covered;
        for (std::size_t v = 2 * y; v < std::min<std::size_t>(2 * y + 2, belowSize[1]); ++v) {
          for (std::size_t u = 2 * x; u < std::min<std::size_t>(2 * x + 2, belowSize[0]); ++u) {
            covered.push_back(SampleAt(below, (v * belowSize[0] + u) * channels + c, sampleSize));
          }
        }
        ASSERT_EQ(SampleAt(level, (y * size[0] + x) * channels + c, sampleSize), NaiveMean(covered))
            << "x " << x << " y " << y << " channel " << c;
      }
    }
  }
}

void ExpectMeansAtEveryLevel(Size size, std::size_t sampleSize, std::size_t channels) {
  constexpr unsigned long kLevels = 5;
  TKvMemoryDibData raster(size[0], size[1], ChannelsOf(sampleSize, channels), kLevels);
  FillRandomly(raster.Pixels(), size[0] * size[1] * sampleSize * channels,
               static_cast<unsigned>(size[0] * 100 + size[1] * 10 + sampleSize + channels));
  raster.BuildLevels();
  for (unsigned long level = 1; level < kLevels; ++level) {
    ExpectMeansOfTheLevelBelow(LevelBytes(raster, level - 1), raster.GetScaleDimensions(level - 1),
                               LevelBytes(raster, level), raster.GetScaleDimensions(level),
                               sampleSize, channels);
  }
}

void ExpectMeansForOddAndEvenSizes(std::size_t sampleSize) {
  for (const Size size : {Size{{1, 1}}, Size{{2, 2}}, Size{{1, 7}}, Size{{8, 1}}, Size{{5, 3}},
                          Size{{17, 9}}, Size{{16, 12}}, Size{{6, 11}}}) {
    for (std::size_t channels = 1; channels <= 4; ++channels) {
      SCOPED_TRACE(std::to_string(size[0]) + " x " + std::to_string(size[1]) + " x " +
                   std::to_string(channels));
      ExpectMeansAtEveryLevel(size, sampleSize, channels);
    }
  }
}

// Level 1 of one row of samples.
template <class Sample>
Sample MeanOf(const std::vector<Sample>& row) {
  TKvMemoryDibData raster(row.size(), 1, ChannelsOf(sizeof(Sample), 1), 2);
  std::memcpy(raster.Pixels(), row.data(), row.size() * sizeof(Sample));
  raster.BuildLevels();
  Sample mean = 0;
  raster.GetRect(1, {0, 0, 1, 1},
                 {reinterpret_cast<unsigned char*>(&mean), static_cast<long>(sizeof(mean))});
  return mean;
}

TEST(MemoryDibData, IsReadByThreadsTogether) {
  TKvMemoryDibData raster = Numbered(7, 5, 3);
  raster.BuildLevels();
  const std::vector<Bytes> expected = {LevelBytes(raster, 0), LevelBytes(raster, 1),
                                       LevelBytes(raster, 2)};
  std::vector<int> right(4);
  std::vector<std::thread> threads;
  for (int& count : right) {
    threads.emplace_back([&raster, &expected, &count] {
      for (unsigned long turn = 0; turn < 60; ++turn) {
        count += LevelBytes(raster, turn % 3) == expected[turn % 3] ? 1 : 0;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(right, std::vector<int>(4, 60));
}

}  // namespace

TEST(MemoryDibData, KeepsItsChannels) {
  const TKvMemoryDibData raster(3, 2, {5, 2, {6, 4, 3}}, 1);
  EXPECT_EQ(raster.Channels().sampleType, 5);
  EXPECT_EQ(raster.Channels().sampleSize, 2U);
  EXPECT_EQ(raster.Channels().kinds, (std::vector<int>{6, 4, 3}));
}

TEST(MemoryDibData, HasTheLevelsAskedFor) {
  const TKvMemoryDibData raster(100, 7, ChannelsOf(1, 1), 3);
  EXPECT_EQ(raster.GetAllLevels(nullptr), 3U);
  EXPECT_EQ(raster.Bounds().size, (vec_t_<double, 2>{{100, 7}}));
  EXPECT_EQ(raster.GetScaleDimensions(2), (Size{{25, 2}}));
}

TEST(MemoryDibData, IsZeroAtEveryLevelAtFirst) {
  TKvMemoryDibData raster(5, 3, ChannelsOf(2, 3), 3);
  EXPECT_EQ(LevelBytes(raster, 0), Bytes(5 * 3 * 6, 0));
  EXPECT_EQ(LevelBytes(raster, 1), Bytes(3 * 2 * 6, 0));
  EXPECT_EQ(LevelBytes(raster, 2), Bytes(2 * 1 * 6, 0));
}

TEST(MemoryDibData, PixelsAreRowsFromTheBottomInterleavedWithoutPadding) {
  TKvMemoryDibData raster(3, 2, ChannelsOf(2, 2), 1);
  FillRandomly(raster.Pixels(), 24, 1);
  const Bytes pixels(raster.Pixels(), raster.Pixels() + 24);
  EXPECT_EQ(LevelBytes(raster, 0), pixels);
  // The pixel (2, 1).
  Bytes pixel(4);
  raster.GetRect(0, {2, 1, 1, 1}, {pixel.data(), 4});
  EXPECT_EQ(pixel, Bytes(pixels.begin() + 20, pixels.end()));
}

TEST(MemoryDibData, PurgeCacheKeepsThePixels) {
  TKvMemoryDibData raster = Numbered(3, 2);
  raster.PurgeCache();
  EXPECT_EQ(LevelBytes(raster, 0), (Bytes{0, 1, 2, 10, 11, 12}));
}

TEST(MemoryDibData, CopiesHavePixelsOfTheirOwn) {
  TKvMemoryDibData raster = Numbered(3, 2);
  TKvMemoryDibData copy = raster;
  copy.Pixels()[0] = 99;
  EXPECT_EQ(raster.Pixels()[0], 0);
  EXPECT_EQ(copy.Pixels()[5], 12);
}

TEST(MemoryDibData, TakesEverythingOfTheOneAssigned) {
  TKvMemoryDibData small(1, 1, {0, 1, {1}}, 1);
  {
    TKvMemoryDibData large(5, 4, {7, 2, {6, 4, 3}}, 3);
    large.Pixels()[119] = 9;
    small = large;
    large.Pixels()[119] = 8;
  }
  EXPECT_EQ(small.Pixels()[119], 9);
  EXPECT_EQ(small.Channels().kinds, (std::vector<int>{6, 4, 3}));
  EXPECT_EQ(small.GetAllLevels(nullptr), 3U);
  TKvMemoryDibData& itself = small;
  small = itself;
  EXPECT_EQ(small.Pixels()[119], 9);
}

TEST(MemoryGetRect, CopiesThePixelsAskedFor) {
  TKvMemoryDibData raster = Numbered(5, 4);
  Bytes out(6);
  EXPECT_EQ(raster.GetRect(0, {1, 2, 3, 2}, {out.data(), 3}), kvDibWritten);
  EXPECT_EQ(out, (Bytes{21, 22, 23, 31, 32, 33}));
}

TEST(MemoryGetRect, LeavesTheBytesBetweenRows) {
  TKvMemoryDibData raster = Numbered(5, 4);
  Bytes out(8, kUntouched);
  raster.GetRect(0, {0, 0, 2, 2}, {out.data(), 4});
  EXPECT_EQ(out, (Bytes{0, 1, 0xEE, 0xEE, 10, 11, 0xEE, 0xEE}));
}

TEST(MemoryGetRect, WritesDownwardsWithANegativeStride) {
  TKvMemoryDibData raster = Numbered(2, 3);
  Bytes out(6);
  EXPECT_EQ(raster.GetRect(0, {0, 0, 2, 3}, {out.data() + 4, -2}), kvDibWritten);
  EXPECT_EQ(out, (Bytes{20, 21, 10, 11, 0, 1}));
}

TEST(MemoryGetRect, CopiesOnlyWhatLiesInsideToItsPlace) {
  TKvMemoryDibData raster = Numbered(3, 2);
  Bytes out(5 * 4, kUntouched);
  EXPECT_EQ(raster.GetRect(0, {-1, -1, 5, 4}, {out.data(), 5}), kvDibWritten);
  EXPECT_EQ(out, (Bytes{0xEE, 0xEE, 0xEE, 0xEE, 0xEE,  //
                        0xEE, 0,    1,    2,    0xEE,  //
                        0xEE, 10,   11,   12,   0xEE,  //
                        0xEE, 0xEE, 0xEE, 0xEE, 0xEE}));
}

TEST(MemoryGetRect, WritesNothingOutsideTheRaster) {
  TKvMemoryDibData raster = Numbered(3, 2);
  Bytes out(4, kUntouched);
  for (const TKvDibRectI& rect :
       {TKvDibRectI{3, 0, 2, 2}, TKvDibRectI{0, 2, 2, 2}, TKvDibRectI{-2, 0, 2, 2},
        TKvDibRectI{0, -2, 2, 2}, TKvDibRectI{1, 1, 0, 1}, TKvDibRectI{1, 1, 1, 0}}) {
    EXPECT_EQ(raster.GetRect(0, rect, {out.data(), 2}), kvDibNothing);
  }
  EXPECT_EQ(out, Bytes(4, kUntouched));
}

TEST(MemoryGetRect, WritesNothingForALevelThatIsNotThere) {
  TKvMemoryDibData raster = Numbered(3, 2, 2);
  unsigned char byte = kUntouched;
  EXPECT_EQ(raster.GetRect(2, {0, 0, 1, 1}, {&byte, 1}), kvDibNothing);
  EXPECT_EQ(raster.GetRect(ULONG_MAX, {0, 0, 1, 1}, {&byte, 1}), kvDibNothing);
  EXPECT_EQ(byte, kUntouched);
}

TEST(MemoryGetRect, WritesNothingWithoutABuffer) {
  TKvMemoryDibData raster = Numbered(3, 2);
  EXPECT_EQ(raster.GetRect(0, {0, 0, 3, 2}, {nullptr, 3}), kvDibNothing);
}

TEST(MemoryGetRect, WritesNothingForNegativeSizes) {
  TKvMemoryDibData raster = Numbered(3, 2);
  unsigned char byte = kUntouched;
  for (const long side : {-1L, -(1L << 62), LONG_MIN}) {
    EXPECT_EQ(raster.GetRect(0, {1, 1, side, 1}, {&byte, 1}), kvDibNothing);
    EXPECT_EQ(raster.GetRect(0, {1, 1, 1, side}, {&byte, 1}), kvDibNothing);
    EXPECT_EQ(raster.GetRect(0, {LONG_MIN, LONG_MIN, side, side}, {&byte, 1}), kvDibNothing);
  }
  EXPECT_EQ(byte, kUntouched);
}

TEST(MemoryGetRect, WritesNothingWhereTheBufferCannotReach) {
  TKvMemoryDibData raster = Numbered(3, 2);
  unsigned char byte = kUntouched;
  constexpr long kFar = 1L << 62;
  for (const TKvDibRectI& rect :
       {TKvDibRectI{-kFar, -kFar, LONG_MAX, LONG_MAX}, TKvDibRectI{-kFar, 0, kFar + 5, 1},
        TKvDibRectI{0, -kFar, 1, kFar + 5}, TKvDibRectI{kFar, kFar, LONG_MAX, LONG_MAX},
        TKvDibRectI{LONG_MIN, LONG_MIN, LONG_MAX, LONG_MAX}}) {
    for (const long stride : {1L, -1L, 100L, kFar, LONG_MAX, LONG_MIN}) {
      EXPECT_EQ(raster.GetRect(0, rect, {&byte, stride}), kvDibNothing);
    }
  }
  EXPECT_EQ(byte, kUntouched);
}

TEST(MemoryGetRect, TakesAnyStrideForOneRow) {
  TKvMemoryDibData raster = Numbered(3, 2);
  for (const long stride : {LONG_MAX, LONG_MIN, 0L}) {
    Bytes out(3, kUntouched);
    EXPECT_EQ(raster.GetRect(0, {0, 1, 3, 1}, {out.data(), stride}), kvDibWritten);
    EXPECT_EQ(out, (Bytes{10, 11, 12}));
  }
}

TEST(MemoryGetRect, TakesAHugeSizeThatStartsInside) {
  TKvMemoryDibData raster = Numbered(3, 2);
  Bytes out(2, kUntouched);
  EXPECT_EQ(raster.GetRect(0, {1, 1, LONG_MAX, LONG_MAX}, {out.data(), 2}), kvDibWritten);
  EXPECT_EQ(out, (Bytes{11, 12}));
}

TEST(MemoryGetRect, AgreesWithANaiveModelOnRandomRectangles) {
  constexpr long kWidth = 7;
  constexpr long kHeight = 5;
  constexpr long kPixel = 6;
  TKvMemoryDibData raster(kWidth, kHeight, ChannelsOf(2, 3), 1);
  FillRandomly(raster.Pixels(), kWidth * kHeight * kPixel, 3);
  std::mt19937 random(11);
  const auto draw = [&random](long low, long high) {
    return std::uniform_int_distribution<long>(low, high)(random);
  };
  for (int i = 0; i < 2000; ++i) {
    const TKvDibRectI rect = {draw(-9, 9), draw(-9, 9), draw(0, 12), draw(0, 12)};
    const long stride = rect.w * kPixel + draw(0, 3);
    Bytes expected(static_cast<std::size_t>(stride * rect.h), kUntouched);
    bool written = false;
    for (long y = std::max(rect.y, 0L); y < std::min(rect.y + rect.h, kHeight); ++y) {
      for (long x = std::max(rect.x, 0L); x < std::min(rect.x + rect.w, kWidth); ++x) {
        std::copy_n(raster.Pixels() + (y * kWidth + x) * kPixel, kPixel,
                    expected.begin() + (y - rect.y) * stride + (x - rect.x) * kPixel);
        written = true;
      }
    }
    Bytes out(expected.size(), kUntouched);
    ASSERT_EQ(raster.GetRect(0, rect, {out.data(), stride}), written ? kvDibWritten : kvDibNothing);
    ASSERT_EQ(out, expected);
  }
}

TEST(MemoryGetRect, TheRequestFormServesTheLevelOfItsScale) {
  TKvMemoryDibData raster = Numbered(4, 4, 2);
  raster.BuildLevels();
  Bytes out(4, kUntouched);
  EXPECT_EQ(raster.GetRect({out.data(), 2}, {{{0, 0}}, {{4, 4}}, 2}, iqNearest, 0, nullptr),
            kvDibWritten);
  EXPECT_EQ(out, LevelBytes(raster, 1));
  EXPECT_THROW(raster.GetRect({out.data(), 2}, {{{0, 0}}, {{4, 4}}, 4}, iqNearest, 0, nullptr),
               std::logic_error);
}

TEST(MemoryGetRect, KeepsToThePixelsItHasWhenLevelBoundsAreRefilled) {
  TKvMemoryDibData raster = Numbered(3, 2);
  raster.FillDefaultLevelBounds({{1000, 1000}}, 9);
  Bytes out(20 * 20, kUntouched);
  EXPECT_EQ(raster.GetRect(0, {0, 0, 20, 20}, {out.data(), 20}), kvDibWritten);
  EXPECT_EQ(std::count(out.begin(), out.end(), kUntouched), 400 - 6);
  EXPECT_EQ(raster.GetRect(5, {0, 0, 20, 20}, {out.data(), 20}), kvDibNothing);
}

TEST(MemoryGetRect, WritesNothingAfterLevelBoundsAreReset) {
  TKvMemoryDibData raster = Numbered(3, 2);
  raster.ResetLevelBounds();
  unsigned char byte = kUntouched;
  EXPECT_EQ(raster.GetRect(0, {0, 0, 1, 1}, {&byte, 1}), kvDibNothing);
  EXPECT_EQ(byte, kUntouched);
}

TEST(BuildLevels, TakesTheMeanOfFourPixels) {
  TKvMemoryDibData raster(2, 2, ChannelsOf(1, 1), 2);
  std::memcpy(raster.Pixels(), "\x01\x02\x04\x09", 4);
  raster.BuildLevels();
  EXPECT_EQ(LevelBytes(raster, 1), Bytes{4});
}

TEST(BuildLevels, RoundsHalvesUp) {
  EXPECT_EQ(MeanOf<std::uint8_t>({1, 2}), 2);
  EXPECT_EQ(MeanOf<std::uint8_t>({254, 255}), 255);
  EXPECT_EQ(MeanOf<std::uint16_t>({0, 1}), 1);
  TKvMemoryDibData raster(2, 2, ChannelsOf(1, 1), 2);
  std::memcpy(raster.Pixels(), "\0\0\1\0", 4);
  raster.BuildLevels();
  EXPECT_EQ(LevelBytes(raster, 1), Bytes{0});
  std::memcpy(raster.Pixels(), "\0\0\1\1", 4);
  raster.BuildLevels();
  EXPECT_EQ(LevelBytes(raster, 1), Bytes{1});
}

TEST(BuildLevels, TakesFewerPixelsAtAnOddEdge) {
  TKvMemoryDibData raster = Numbered(3, 3, 2);
  raster.BuildLevels();
  // (0 + 1 + 10 + 11) / 4, (2 + 12) / 2, (20 + 21) / 2, 22
  EXPECT_EQ(LevelBytes(raster, 1), (Bytes{6, 7, 21, 22}));
}

TEST(BuildLevels, DoesNotOverflowAtTheLargestSamples) {
  EXPECT_EQ(MeanOf<std::uint8_t>({255, 255}), 255);
  EXPECT_EQ(MeanOf<std::uint16_t>({65535, 65535}), 65535);
  EXPECT_EQ(MeanOf<std::uint32_t>({UINT32_MAX, UINT32_MAX}), UINT32_MAX);
  EXPECT_EQ(MeanOf<std::uint64_t>({UINT64_MAX, UINT64_MAX}), UINT64_MAX);
  EXPECT_EQ(MeanOf<std::uint64_t>({UINT64_MAX, UINT64_MAX - 1}), UINT64_MAX);
  EXPECT_EQ(MeanOf<std::uint64_t>({UINT64_MAX, 0}), 1UL << 63);
}

TEST(BuildLevels, AgreesWithANaiveModelForSamplesOfOneByte) {
  ExpectMeansForOddAndEvenSizes(1);
}

TEST(BuildLevels, AgreesWithANaiveModelForSamplesOfTwoBytes) {
  ExpectMeansForOddAndEvenSizes(2);
}

TEST(BuildLevels, AgreesWithANaiveModelForSamplesOfFourBytes) {
  ExpectMeansForOddAndEvenSizes(4);
}

TEST(BuildLevels, AgreesWithANaiveModelForSamplesOfEightBytes) {
  ExpectMeansForOddAndEvenSizes(8);
}

TEST(BuildLevels, TakesTheLowerLeftPixelForOtherSampleSizes) {
  constexpr std::size_t kPixel = 3 * 2;
  TKvMemoryDibData raster(5, 3, ChannelsOf(3, 2), 2);
  FillRandomly(raster.Pixels(), 5 * 3 * kPixel, 5);
  raster.BuildLevels();
  Bytes expected;
  for (const std::size_t y : {0U, 2U}) {
    for (const std::size_t x : {0U, 2U, 4U}) {
      const unsigned char* pixel = raster.Pixels() + (y * 5 + x) * kPixel;
      expected.insert(expected.end(), pixel, pixel + kPixel);
    }
  }
  EXPECT_EQ(LevelBytes(raster, 1), expected);
}

TEST(BuildLevels, KeepsOnePixelAtEveryFurtherLevel) {
  TKvMemoryDibData raster(1, 1, ChannelsOf(1, 1), 100);
  raster.Pixels()[0] = 77;
  raster.BuildLevels();
  EXPECT_EQ(LevelBytes(raster, 1), Bytes{77});
  EXPECT_EQ(LevelBytes(raster, 99), Bytes{77});
}

TEST(BuildLevels, FollowsAChangeOfThePixels) {
  TKvMemoryDibData raster = Numbered(2, 1, 2);
  raster.BuildLevels();
  raster.Pixels()[0] = 41;
  raster.BuildLevels();
  EXPECT_EQ(LevelBytes(raster, 1), Bytes{21});
}

TEST(BuildLevels, LeavesLevelZero) {
  TKvMemoryDibData raster = Numbered(3, 2, 2);
  raster.BuildLevels();
  EXPECT_EQ(LevelBytes(raster, 0), (Bytes{0, 1, 2, 10, 11, 12}));
}

TEST(BuildLevels, KeepsToThePixelsItHasWhenLevelBoundsAreRefilled) {
  TKvMemoryDibData raster = Numbered(2, 1, 2);
  raster.FillDefaultLevelBounds({{1000, 1000}}, 9);
  raster.BuildLevels();
  unsigned char mean = 0;
  raster.GetRect(1, {0, 0, 1, 1}, {&mean, 1});
  EXPECT_EQ(mean, 1);
}

TEST(EmptyMemoryDibData, IsSafeInEveryCall) {
  const auto exercise = [](TKvMemoryDibData raster) {
    EXPECT_EQ(raster.Pixels(), nullptr);
    raster.BuildLevels();
    raster.PurgeCache();
    unsigned char byte = kUntouched;
    EXPECT_EQ(raster.GetRect(0, {0, 0, 1, 1}, {&byte, 1}), kvDibNothing);
    EXPECT_EQ(raster.GetRect(1, {0, 0, 1, 1}, {&byte, 1}), kvDibNothing);
    EXPECT_EQ(byte, kUntouched);
  };
  exercise({0, 5, ChannelsOf(1, 1), 2});
  exercise({5, 0, ChannelsOf(1, 1), 2});
  exercise({0, 0, ChannelsOf(1, 1), 2});
  exercise({5, 5, ChannelsOf(1, 1), 0});
  exercise({5, 5, ChannelsOf(0, 1), 2});
  exercise({5, 5, ChannelsOf(1, 0), 2});
  exercise({ULONG_MAX, ULONG_MAX, ChannelsOf(1, 0), 2});
  exercise({ULONG_MAX, 0, ChannelsOf(1, 1), 2});
}

TEST(EmptyMemoryDibData, WithoutLevelsHasNoBounds) {
  const TKvMemoryDibData raster(5, 5, ChannelsOf(1, 1), 0);
  EXPECT_EQ(raster.Bounds().size, (vec_t_<double, 2>{{0, 0}}));
  EXPECT_EQ(raster.GetAllLevels(nullptr), 0U);
}

TEST(HugeMemoryDibData, IsRefusedWhenItsSizeOverflows) {
  EXPECT_THROW(TKvMemoryDibData(ULONG_MAX, 2, ChannelsOf(1, 1), 1), std::length_error);
  EXPECT_THROW(TKvMemoryDibData(1UL << 33, 1UL << 33, ChannelsOf(1, 1), 1), std::length_error);
  EXPECT_THROW(TKvMemoryDibData(1UL << 31, 1UL << 31, ChannelsOf(2, 2), 1), std::length_error);
  EXPECT_THROW(TKvMemoryDibData(1, 1, ChannelsOf(ULONG_MAX, 2), 1), std::length_error);
  EXPECT_THROW(TKvMemoryDibData(1, 1, ChannelsOf(ULONG_MAX, 1), 1), std::length_error);
}

TEST(HugeMemoryDibData, IsRefusedWhenItsLevelsOverflow) {
  EXPECT_THROW(TKvMemoryDibData(1, 1, ChannelsOf(1, 1), ULONG_MAX), std::length_error);
}

TEST(HugeMemoryDibData, ThrowsBadAllocWhenMemoryIsShort) {
  // As many allocations succeed as the raster makes before its end, one more each time.
  unsigned long successes = 0;
  for (bool failed = true; failed; ++successes) {
    const TKvDibChannels channels = ChannelsOf(1, 3);
    failed = false;
    try {
      const ravelin_test::FailingNew failing(successes);
      const TKvMemoryDibData raster(8, 8, channels, 3);
    } catch (const std::bad_alloc&) {
      failed = true;
    }
  }
  EXPECT_GT(successes, 4U);
}
