#include "raster/PixelKernelLoops.h"
#include "raster/PixelKernelSets.h"
#include "raster/PixelVectorAvx2.h"

namespace SatCommonUtils {
namespace {

void CopySwapped(void* to, const void* from, size_t count) {
  if (count < TAvx2::kSamples) return kSse41Kernels.copySwapped(to, from, count);
  CopySwappedBlocks<TAvx2>(static_cast<unsigned char*>(to), static_cast<const unsigned char*>(from),
                           count);
}

void Interleave(void* to, const unsigned char* const* from, int channels, size_t count) {
  if (count < TAvx2::kSamples) return kSse41Kernels.interleave(to, from, channels, count);
  InterleaveBlocks<TAvx2>(static_cast<unsigned char*>(to), from, channels, count);
}

}  // namespace

const TPixelKernels kAvx2Kernels = {CopySwapped, Interleave, "avx2"};

}  // namespace SatCommonUtils
