// What the raster tests share: the fixture, requests, and output buffers with guards.
#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "Kv/Kv.h"
#include "SatCommonUtils/Raster.h"
#include "raster/AllocationWatch.h"

namespace raster_test {

/// Fails a test after which an array turned out to be written behind its end.
class RasterTest : public ::testing::Test {
 protected:
  ~RasterTest() override { EXPECT_EQ(DamagedArrays(), damagedBefore_); }

 private:
  long damagedBefore_ = DamagedArrays();
};

inline TKvDibRect Request(double x, double y, double w, double h, double scale = 1) {
  return {{{x, y}}, {{w, h}}, scale};
}

inline bool operator==(const TKvDibRect& a, const TKvDibRect& b) {
  return a.pos == b.pos && a.size == b.size && a.scale == b.scale;
}

/// The caller's buffer of a request: `rows` rows, `stride` bytes apart, which may be negative. All
/// bytes, and a margin around them, hold kGuard at first, so that comparing the bytes of two
/// outputs compares what lies around the pixels too.
class Output {
 public:
  static constexpr unsigned char kGuard = 0xA7;

  Output(long rows, long stride)
      : bytes(static_cast<std::size_t>(2 * kMargin + rows * (stride < 0 ? -stride : stride)),
              kGuard),
        stride_(stride),
        origin_(kMargin + (stride < 0 ? (1 - rows) * stride : 0)) {}

  TKvDibDataOutBuffer Buffer() { return {bytes.data() + origin_, stride_}; }
  unsigned char& At(long row, long byte) {
    return bytes.at(static_cast<std::size_t>(origin_ + row * stride_ + byte));
  }
  unsigned short Word(long row, long word) {
    unsigned short value;
    std::memcpy(&value, &At(row, 2 * word), sizeof value);
    return value;
  }
  void PutWord(long row, long word, unsigned short value) {
    std::memcpy(&At(row, 2 * word), &value, sizeof value);
  }
  bool Untouched() const {
    for (unsigned char b : bytes) {
      if (b != kGuard) return false;
    }
    return true;
  }

  std::vector<unsigned char> bytes;

 private:
  static constexpr long kMargin = 256;
  long stride_;
  long origin_;
};

/// Fails the test when it is called at all.
class NoProgressWanted : public TKvProgressHandler {
 public:
  bool NeedsService() override { return Called(false); }
  void Service() override { Called(true); }
  void Start(bool) override { Called(true); }
  void Step(unsigned long) override { Called(true); }
  void Stop() override { Called(true); }

 private:
  bool Called(bool result) {
    ADD_FAILURE() << "the progress handler was called";
    return result;
  }
};

}  // namespace raster_test
