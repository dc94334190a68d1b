#include "bench/raster/FusedKernel.h"

#include "raster/PixelKernelLoops.h"
#include "raster/PixelVectorAvx2.h"

namespace RavelinBench {
namespace {

struct TSwappingAvx2 : TAvx2 {
  static Vec Load(const unsigned char* from) { return Shuffle(TAvx2::Load(from), kSwapTable.byte); }
};

}  // namespace

void InterleaveSwapped(unsigned char* to, const unsigned char* const* from, int channels,
                       std::size_t count) {
  InterleaveBlocks<TSwappingAvx2>(to, from, channels, count);
}

}  // namespace RavelinBench
