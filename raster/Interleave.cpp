#include "raster/Interleave.h"

#include <algorithm>
#include <cstring>

#include "raster/PixelKernels.h"
#include "raster/WideInterleave.h"

namespace SatCommonUtils {
namespace {

using TCursors = std::vector<const unsigned char*>;

/// Whether all channels are 16-bit samples that fill the destination pixel exactly.
bool AllWords(const std::vector<TChannelSource>& sources, long outPixel) {
  constexpr long sampleBytes = sizeof(unsigned short);
  return outPixel == static_cast<long>(sources.size()) * sampleBytes &&
         std::all_of(sources.begin(), sources.end(), [](const TChannelSource& source) {
           return source.bytesPerPixel == sampleBytes;
         });
}

/// Whether pixels or channels have no bytes; then the number of rows has no limit either.
bool NothingToCopy(const std::vector<TChannelSource>& sources, long outPixel) {
  return outPixel < 1 ||
         std::all_of(sources.begin(), sources.end(),
                     [](const TChannelSource& source) { return source.bytesPerPixel < 1; });
}

/// Copies one channel's pixels into their place; never beyond the destination pixel.
void CopyChannel(unsigned char* to, const unsigned char* from, long bytesPerPixel, long offset,
                 long outPixel, long pixels) {
  const long bytes = std::min(bytesPerPixel, outPixel - offset);
  if (bytes <= 0) return;
  to += offset;
  for (long i = 0; i < pixels; ++i, to += outPixel, from += bytesPerPixel) {
    std::memcpy(to, from, static_cast<std::size_t>(bytes));
  }
}

void WriteRow(unsigned char* to, const std::vector<TChannelSource>& sources,
              const TCursors& cursors, long outPixel, long pixels, bool words) {
  if (words && cursors.size() == 1) {
    std::memcpy(to, cursors[0], static_cast<std::size_t>(pixels * outPixel));
  } else if (words && cursors.size() <= kMaxKernelChannels) {
    Kernels().interleave(to, cursors.data(), static_cast<int>(cursors.size()),
                         static_cast<std::size_t>(pixels));
  } else if (words) {
    InterleaveWide(to, cursors.data(), cursors.size(), static_cast<std::size_t>(pixels));
  } else {
    for (std::size_t k = 0; k < cursors.size(); ++k) {
      const long bytesPerPixel = sources[k].bytesPerPixel;
      CopyChannel(to, cursors[k], bytesPerPixel, static_cast<long>(k) * bytesPerPixel, outPixel,
                  pixels);
    }
  }
}

}  // namespace

void Interleave(const std::vector<TChannelSource>& sources, unsigned char* to, long stride,
                long width, long height, long outPixel, TCursors* cursors) {
  if (NothingToCopy(sources, outPixel)) return;
  const bool words = AllWords(sources, outPixel);
  for (std::size_t k = 0; k < sources.size(); ++k) (*cursors)[k] = sources[k].rows.bottom;
  for (long row = 0; row < height; ++row) {
    WriteRow(to + row * stride, sources, *cursors, outPixel, width, words);
    for (std::size_t k = 0; k < sources.size(); ++k) (*cursors)[k] += sources[k].rows.step;
  }
}

}  // namespace SatCommonUtils
