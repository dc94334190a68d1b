#include "raster/PixelKernelLoops.h"
#include "raster/PixelKernelSets.h"
#include "raster/PixelVectorSse41.h"

namespace SatCommonUtils {
namespace {

void CopySwapped(void* to, const void* from, size_t count) {
  if (count < TSse41::kSamples) return PlainKernels().copySwapped(to, from, count);
  CopySwappedBlocks<TSse41>(static_cast<unsigned char*>(to),
                            static_cast<const unsigned char*>(from), count);
}

void Interleave(void* to, const unsigned char* const* from, int channels, size_t count) {
  if (count < TSse41::kSamples) return PlainKernels().interleave(to, from, channels, count);
  InterleaveBlocks<TSse41>(static_cast<unsigned char*>(to), from, channels, count);
}

}  // namespace

const TPixelKernels kSse41Kernels = {CopySwapped, Interleave, "sse4.1"};

}  // namespace SatCommonUtils
