#include "raster/PixelKernels.h"

#include <cstring>

#include "raster/PixelKernelSets.h"

namespace SatCommonUtils {
namespace {

void CopySwapped(void* to, const void* from, std::size_t count) {
  auto* out = static_cast<unsigned char*>(to);
  const auto* in = static_cast<const unsigned char*>(from);
  for (std::size_t i = 0; i < count; ++i) {
    std::uint16_t sample;
    std::memcpy(&sample, in + 2 * i, 2);
    sample = static_cast<std::uint16_t>(sample << 8 | sample >> 8);
    std::memcpy(out + 2 * i, &sample, 2);
  }
}

void Interleave(void* to, const unsigned char* const* from, int channels, std::size_t count) {
  auto* out = static_cast<unsigned char*>(to);
  for (std::size_t p = 0; p < count; ++p) {
    for (int k = 0; k < channels; ++k, out += 2) std::memcpy(out, from[k] + 2 * p, 2);
  }
}

constexpr TPixelKernels kPlainKernels = {CopySwapped, Interleave, "plain"};

const TPixelKernels& BestKernels() {
  if (const TPixelKernels* avx2 = Avx2Kernels()) return *avx2;
  if (const TPixelKernels* sse41 = Sse41Kernels()) return *sse41;
  return kPlainKernels;
}

}  // namespace

const TPixelKernels& Kernels() {
  static const TPixelKernels& best = BestKernels();
  return best;
}

const TPixelKernels& PlainKernels() {
  return kPlainKernels;
}

const TPixelKernels* Sse41Kernels() {
  return __builtin_cpu_supports("sse4.1") ? &kSse41Kernels : nullptr;
}

const TPixelKernels* Avx2Kernels() {
  return __builtin_cpu_supports("avx2") ? &kAvx2Kernels : nullptr;
}

}  // namespace SatCommonUtils
