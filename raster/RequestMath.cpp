#include "raster/RequestMath.h"

#include <cstdint>

namespace SatCommonUtils {

std::optional<TInnerPart> CutToRaster(const TKvDibRectI& request, long width, long height) {
  if (request.w < 1 || request.h < 1) return std::nullopt;
  const long x0 = std::max(request.x, 0L);
  const long y0 = std::max(request.y, 0L);
  const long x1 = std::min(SaturatedSum(request.x, request.w), width);
  const long y1 = std::min(SaturatedSum(request.y, request.h), height);
  if (x1 <= x0 || y1 <= y0) return std::nullopt;
  return TInnerPart{{x0, y0, x1 - x0, y1 - y0}, x0 - request.x, y0 - request.y};
}

std::optional<long> BufferBytes(long pixels, long rows, long bytesPerPixel, long writtenPerPixel) {
  constexpr long kSlack = 4;
  if (bytesPerPixel < 0) return std::nullopt;
  const std::optional<long> packed = SizeProduct(pixels, rows, bytesPerPixel);
  const std::optional<long> excess =
      SizeProduct(pixels, std::max(writtenPerPixel, bytesPerPixel) - bytesPerPixel);
  long bytes;
  if (!packed || !excess || __builtin_add_overflow(*packed, *excess, &bytes) ||
      __builtin_add_overflow(bytes, kSlack, &bytes)) {
    return std::nullopt;
  }
  return bytes;
}

unsigned char* PixelAddress(const TKvDibDataOutBuffer& out, long x, long y, long bytesPerPixel) {
  constexpr std::uintptr_t kAddressSpace = 1UL << 56;
  long column;
  long row;
  long offset;
  std::uintptr_t address;
  if (__builtin_mul_overflow(x, bytesPerPixel, &column) ||
      __builtin_mul_overflow(y, out.stride, &row) || __builtin_add_overflow(column, row, &offset) ||
      __builtin_add_overflow(reinterpret_cast<std::uintptr_t>(out.data), offset, &address) ||
      address > kAddressSpace) {
    return nullptr;
  }
  return out.data + offset;
}

}  // namespace SatCommonUtils
