// Arithmetic on pixel requests that cannot overflow, whatever a host asks for.
#pragma once

#include <algorithm>
#include <limits>
#include <optional>

#include "Kv/Raster.h"

namespace SatCommonUtils {

/// a + b and a - b, held at the ends of the range.
inline long SaturatedSum(long a, long b) {
  long sum;
  if (!__builtin_add_overflow(a, b, &sum)) return sum;
  return b < 0 ? std::numeric_limits<long>::min() : std::numeric_limits<long>::max();
}
inline long SaturatedDifference(long a, long b) {
  long difference;
  if (!__builtin_sub_overflow(a, b, &difference)) return difference;
  return b < 0 ? std::numeric_limits<long>::max() : std::numeric_limits<long>::min();
}

/// The product of sizes; empty when one is negative or the product of the first few
/// leaves the range of long.
template <class... Sizes>
std::optional<long> SizeProduct(Sizes... sizes) {
  long product = 1;
  const auto multiply = [&product](auto size) {
    return size >= 0 && !__builtin_mul_overflow(product, size, &product);
  };
  if (!(multiply(sizes) && ...)) return std::nullopt;
  return product;
}

/// A size as a signed one, held at the end of the range.
inline long SignedSize(unsigned long size) {
  constexpr unsigned long most = std::numeric_limits<long>::max();
  return static_cast<long>(std::min(size, most));
}

inline bool SameRect(const TKvDibRectI& a, const TKvDibRectI& b) {
  return a.x == b.x && a.y == b.y && a.w == b.w && a.h == b.h;
}

/// The bytes of a pixel of interleaved channels; -1 when they leave the range of long.
inline long BytesPerPixel(const TKvDibChannels& channels) {
  return SizeProduct(channels.kinds.size(), channels.sampleSize).value_or(-1);
}

/// The length of a buffer for `rows` rows of `pixels` that somebody writes: 4 bytes more than the
/// rows, and as much more as the last row is longer when more bytes a pixel are written than it
/// has. Nothing when that leaves the range of long, or a size is negative.
std::optional<long> BufferBytes(long pixels, long rows, long bytesPerPixel, long writtenPerPixel);

/// The part of a request that lies inside a raster.
struct TInnerPart {
  TKvDibRectI rect;  ///< in the raster's pixels, not empty
  long skipX;        ///< pixels of the request left of the part
  long skipY;        ///< rows of the request below the part
};

/// Cuts a request to a raster of `width` x `height` pixels; nothing when no pixel is left.
std::optional<TInnerPart> CutToRaster(const TKvDibRectI& request, long width, long height);

/// The address of the request's pixel (x, y), counted from its lower left one, in an output buffer
/// of `bytesPerPixel`; null when that lies beyond any address.
unsigned char* PixelAddress(const TKvDibDataOutBuffer& out, long x, long y, long bytesPerPixel);

}  // namespace SatCommonUtils
