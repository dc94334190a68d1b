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

/// True when a buffer can hold bytes this far from its start, on either side: user address spaces
/// end at 2^56 bytes.
inline bool IsWithinBuffers(long offset) {
  constexpr long kAddressSpace = 1L << 56;
  return offset >= -kAddressSpace && offset <= kAddressSpace;
}

/// Stores the offset of what lies `rows` rows and `bytes` bytes from a buffer's start. False when
/// no buffer can hold it.
inline bool OffsetInBuffer(long rows, long stride, long bytes, long* offset) {
  long rowOffset = 0;
  if (__builtin_mul_overflow(rows, stride, &rowOffset)) return false;
  if (!IsWithinBuffers(rowOffset) || !IsWithinBuffers(bytes)) return false;
  *offset = rowOffset + bytes;
  return true;
}

}  // namespace kv
