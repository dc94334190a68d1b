#include <cstdint>
#include <cstring>

#include "SatCommonUtils/Raster.h"

namespace SatCommonUtils {

void EndianSwap(unsigned short* value) {
  *value = __builtin_bswap16(*value);
}

void EndianSwap(unsigned int* value) {
  *value = __builtin_bswap32(*value);
}

void EndianSwap(double* value) {
  std::uint64_t bits;
  std::memcpy(&bits, value, sizeof bits);
  bits = __builtin_bswap64(bits);
  std::memcpy(value, &bits, sizeof bits);
}

}  // namespace SatCommonUtils
