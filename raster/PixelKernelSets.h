// The sets that need more than the baseline instructions. Only PixelKernels.cpp looks at them
// unasked: their kernels must not run before the machine has been asked for the instructions.
#pragma once

#include "raster/PixelKernels.h"

namespace SatCommonUtils {

extern const TPixelKernels kSse41Kernels;
extern const TPixelKernels kAvx2Kernels;

}  // namespace SatCommonUtils
