// The numbers of shapefiles: some fields are big-endian, the others little-endian.
#pragma once

#include <bit>

#include "SatCommonUtils/Raster.h"

namespace SatCommonUtils {

static_assert(std::endian::native == std::endian::little,
              "the little-endian fields are read and written as they are");

/// From the file's order to the machine's, and back.
inline unsigned int SwappedUnsigned(unsigned int value) {
  EndianSwap(&value);
  return value;
}
inline int Swapped(int value) {
  return static_cast<int>(SwappedUnsigned(static_cast<unsigned int>(value)));
}

/// A big-endian length in units of two bytes, as bytes. Lengths from 4 GiB on are cut to 32 bits.
inline unsigned int LengthInBytes(int words) {
  return SwappedUnsigned(static_cast<unsigned int>(words)) * 2;
}

/// A length in bytes as it is stored.
inline int StoredLength(unsigned int bytes) {
  return Swapped(static_cast<int>(bytes / 2));
}

}  // namespace SatCommonUtils
