// Checked sizes and offsets of pixel buffers, in bytes.
#pragma once

#include <stdexcept>

namespace kv {

/// The product; throws std::length_error when it does not fit.
inline unsigned long CheckedProduct(unsigned long a, unsigned long b) {
  unsigned long product = 0;
  if (__builtin_mul_overflow(a, b, &product)) throw std::length_error("Raster size overflows");
  return product;
}

/// Stores the offset of a pixel `rows` rows and `bytes` bytes from a buffer's start. False when no
/// buffer can hold it: user address spaces end at 2^56 bytes.
inline bool OffsetInBuffer(long rows, long stride, long bytes, long* offset) {
  constexpr long kAddressSpace = 1L << 56;
  return !__builtin_mul_overflow(rows, stride, offset) &&
         !__builtin_add_overflow(*offset, bytes, offset) && *offset >= -kAddressSpace &&
         *offset <= kAddressSpace;
}

}  // namespace kv
