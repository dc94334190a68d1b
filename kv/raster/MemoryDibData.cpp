#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>

#include "Kv/Raster.h"
#include "raster/BufferMath.h"

namespace {

// The pixels [low, high) of one axis that a request and a raster share.
struct Overlap {
  long low, high;

  bool IsEmpty() const { return low >= high; }
};

Overlap OverlapOf(long start, long length, unsigned long side) {
  long end = 0;
  if (__builtin_add_overflow(start, length, &end)) end = length < 0 ? LONG_MIN : LONG_MAX;
  const auto last = static_cast<long>(std::min<unsigned long>(side, LONG_MAX));
  return {std::max(start, 0L), std::min(end, last)};
}

// Two rows of a level, the upper one a repetition at an odd edge; `width` pixels each.
struct RowPair {
  const unsigned char* lower;
  const unsigned char* upper;
  unsigned long width;
  unsigned long channels;
  unsigned long sampleSize;
};

template <class Sample>
Sample Load(const unsigned char* bytes) {
  Sample sample = 0;
  std::memcpy(&sample, bytes, sizeof(sample));
  return sample;
}

// The mean of four, halves up. Quotients and remainders are added apart: the sum of 8-byte samples
// would overflow.
template <class Sample>
Sample Mean(Sample a, Sample b, Sample c, Sample d) {
  const std::uint64_t quotients = std::uint64_t{a} / 4 + b / 4 + c / 4 + d / 4;
  const std::uint64_t remainders = std::uint64_t{a} % 4 + b % 4 + c % 4 + d % 4;
  return static_cast<Sample>(quotients + (remainders + 2) / 4);
}

// Pixels that are missing at an odd edge are taken by repeating the others, which leaves the mean
// as it is.
template <class Sample>
void MeanRow(const RowPair& rows, unsigned char* out) {
  for (unsigned long x = 0; x < rows.width; x += 2) {
    const unsigned long next = std::min(x + 1, rows.width - 1);
    for (unsigned long c = 0; c < rows.channels; ++c) {
      const unsigned long left = (x * rows.channels + c) * sizeof(Sample);
      const unsigned long right = (next * rows.channels + c) * sizeof(Sample);
      const Sample mean = Mean(Load<Sample>(rows.lower + left), Load<Sample>(rows.lower + right),
                               Load<Sample>(rows.upper + left), Load<Sample>(rows.upper + right));
      std::memcpy(out, &mean, sizeof(mean));
      out += sizeof(mean);
    }
  }
}

void FirstPixelRow(const RowPair& rows, unsigned char* out) {
  const unsigned long pixel = rows.channels * rows.sampleSize;
  for (unsigned long x = 0; x < rows.width; x += 2) {
    std::memcpy(out, rows.lower + x * pixel, pixel);
    out += pixel;
  }
}

using RowHalver = void (*)(const RowPair&, unsigned char*);

RowHalver HalverFor(unsigned long sampleSize) {
  switch (sampleSize) {
    case 1:
      return MeanRow<std::uint8_t>;
    case 2:
      return MeanRow<std::uint16_t>;
    case 4:
      return MeanRow<std::uint32_t>;
    case 8:
      return MeanRow<std::uint64_t>;
    default:
      return FirstPixelRow;
  }
}

}  // namespace

TKvMemoryDibData::TKvMemoryDibData(unsigned long width, unsigned long height,
                                   const TKvDibChannels& channels, unsigned long levels)
    : channels_(channels),
      pixelSize_(kv::CheckedProduct(channels.sampleSize, channels.kinds.size())) {
  TKvMultiScaleDibData::FillDefaultLevelBounds({{width, height}}, levels);
  levels_.resize(levels);
  for (unsigned long i = 0; i < levels; ++i) {
    Level& level = levels_[i];
    level.size = TKvMultiScaleDibData::GetScaleDimensions(i);
    const unsigned long row = kv::CheckedProduct(level.size[0], pixelSize_);
    level.pixels.resize(kv::CheckedProduct(level.size[1], row));
  }
}

TKvMemoryDibData::~TKvMemoryDibData() = default;

unsigned char* TKvMemoryDibData::Pixels() {
  const bool empty = levels_.empty() || levels_.front().pixels.empty();
  return empty ? nullptr : levels_.front().pixels.data();
}

void TKvMemoryDibData::BuildLevels() {
  for (unsigned long i = 1; i < levels_.size(); ++i) BuildLevel(levels_[i - 1], levels_[i]);
}

void TKvMemoryDibData::BuildLevel(const Level& below, Level& level) const {
  if (level.pixels.empty()) return;
  const RowHalver halve = HalverFor(channels_.sampleSize);
  const unsigned long rowBelow = below.size[0] * pixelSize_;
  const unsigned long row = level.size[0] * pixelSize_;
  for (unsigned long y = 0; y < level.size[1]; ++y) {
    const unsigned char* lower = below.pixels.data() + 2 * y * rowBelow;
    const unsigned char* upper = 2 * y + 1 < below.size[1] ? lower + rowBelow : lower;
    halve({lower, upper, below.size[0], channels_.kinds.size(), channels_.sampleSize},
          level.pixels.data() + y * row);
  }
}

const TKvDibChannels& TKvMemoryDibData::Channels() const {
  return channels_;
}

void TKvMemoryDibData::PurgeCache() {}

int TKvMemoryDibData::GetRect(unsigned long level, const TKvDibRectI& rect,
                              const TKvDibDataOutBuffer& out) {
  // Level bounds may have been refilled since the pixels were allocated.
  if (level >= levels_.size() || level >= GetAllLevels(nullptr)) return kvDibNothing;
  const Level& source = levels_[level];
  const Overlap across = OverlapOf(rect.x, rect.w, source.size[0]);
  const Overlap up = OverlapOf(rect.y, rect.h, source.size[1]);
  if (source.pixels.empty() || out.data == nullptr || across.IsEmpty() || up.IsEmpty()) {
    return kvDibNothing;
  }
  const auto pixel = static_cast<long>(pixelSize_);
  const long bytes = (across.high - across.low) * pixel;
  long skipped = 0;
  long end = 0;
  long first = 0;
  long last = 0;
  if (__builtin_mul_overflow(across.low - rect.x, pixel, &skipped) ||
      __builtin_add_overflow(skipped, bytes, &end) ||
      !kv::OffsetInBuffer(up.low - rect.y, out.stride, skipped, &first) ||
      !kv::OffsetInBuffer(up.high - 1 - rect.y, out.stride, end, &last)) {
    return kvDibNothing;
  }
  const auto sourceRow = static_cast<long>(source.size[0]) * pixel;
  const unsigned char* from = source.pixels.data() + up.low * sourceRow + across.low * pixel;
  unsigned char* to = out.data + first;
  for (long y = 0; y < up.high - up.low; ++y) {
    std::memcpy(to + y * out.stride, from + y * sourceRow, static_cast<unsigned long>(bytes));
  }
  return kvDibWritten;
}
