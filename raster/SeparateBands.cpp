#include <algorithm>
#include <cstring>
#include <new>
#include <stdexcept>

#include "SatCommonUtils/Raster.h"
#include "raster/InPlaceRead.h"
#include "raster/PixelKernels.h"
#include "raster/RequestMath.h"

namespace SatCommonUtils {
namespace {

using TBand = var_a_legacy::var_a<TBasePushbroomDibData*>;
using TBlocks = var_a_legacy::newarray_a<TKvDibDataOutBufferAutoRelease>;

constexpr int kVisibleKinds[] = {6, 4, 3};
/// What a band's block is longer than its rows.
constexpr long kBlockSlack = 4;

/// The keys of the bands in channel order: the three visible ones first when all are there.
std::vector<int> ChannelOrder(const std::map<int, TBand>& bands) {
  const auto isVisible = [](int key) {
    return std::find(std::begin(kVisibleKinds), std::end(kVisibleKinds), key) !=
           std::end(kVisibleKinds);
  };
  const bool allVisible = std::all_of(std::begin(kVisibleKinds), std::end(kVisibleKinds),
                                      [&bands](int key) { return bands.count(key) != 0; });
  std::vector<int> order;
  if (allVisible) order.assign(std::begin(kVisibleKinds), std::end(kVisibleKinds));
  for (const auto& entry : bands) {
    if (!allVisible || !isVisible(entry.first)) order.push_back(entry.first);
  }
  return order;
}

/// The pixels of one band for the part of the request inside the raster.
struct TChannelSource {
  TPixelRows rows;
  long bytesPerPixel;
};

/// What one request needs of memory, all of it allocated before the first band is asked.
struct TWorkspace {
  std::vector<TBasePushbroomDibData*> bands;  ///< in channel order
  std::vector<TChannelSource> sources;
  std::vector<const unsigned char*> rows;
  TBlocks blocks;
  bool distinct = false;  ///< no band fills two channels
};

/// One request while it is answered.
struct TRequest {
  const TKvDibRect& rect;
  const TInterpolationQuality& quality;
  int param;
  TKvProgressHandler* progress;
  TKvDibRectI pixels;
  TInnerPart part;
};

/// False when a channel has no band or memory is short.
bool Prepare(const std::map<unsigned int, int>& channelBands, const std::map<int, TBand>& bands,
             TWorkspace* space) {
  try {
    for (const auto& channel : channelBands) {
      const auto band = bands.find(channel.second);
      if (band == bands.end() || !band->second) return false;
      space->bands.push_back(band->second.get());
    }
    space->sources.resize(space->bands.size());
    space->rows.resize(space->bands.size());
    space->blocks = TBlocks(space->bands.size());
    std::vector<TBasePushbroomDibData*> sorted = space->bands;
    std::sort(sorted.begin(), sorted.end());
    space->distinct = std::adjacent_find(sorted.begin(), sorted.end()) == sorted.end();
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}

/// A block of full requested rows for one band; false when it cannot be allocated.
bool AllocateBlock(TKvDibDataOutBufferAutoRelease& block, const TKvDibRectI& request,
                   long bytesPerPixel) {
  const std::optional<long> stride = SizeProduct(request.w, bytesPerPixel);
  const std::optional<long> rows = stride ? SizeProduct(request.h, *stride) : std::nullopt;
  long bytes;
  if (!rows || __builtin_add_overflow(*rows, kBlockSlack, &bytes)) return false;
  try {
    block.data = new unsigned char[static_cast<std::size_t>(bytes)];
  } catch (const std::bad_alloc&) {
    return false;
  }
  block.stride = *stride;
  return true;
}

/// Gets one band's pixels. They lie in the band's block, or in place when `inPlace`; what the band
/// does not write of its block stays as it was allocated. False when memory is short or the band's
/// result lacks bit 2.
bool FetchBand(TBasePushbroomDibData& band, const TRequest& request, bool inPlace,
               TKvDibDataOutBufferAutoRelease& block, TChannelSource* source) {
  const long bytesPerPixel = BytesPerPixel(band.channels);
  // The block is taken in any case: a request too large for it gives 2.
  if (!AllocateBlock(block, request.pixels, bytesPerPixel)) return false;
  source->bytesPerPixel = bytesPerPixel;
  if (inPlace && ReadInPlace(band, request.part.rect, &source->rows)) return true;
  const TInnerPart& part = request.part;
  source->rows = {block.data + part.skipY * block.stride + part.skipX * bytesPerPixel,
                  block.stride};
  // A failed read is the result 2, which has bit 2: the composition goes on.
  if (inPlace) return true;
  const int result =
      band.GetRect(block, request.rect, request.quality, request.param, request.progress);
  return (result & kvDibNothing) != 0;
}

/// Copies one channel's pixels into their place; never beyond the destination pixel.
void CopyChannel(unsigned char* to, const TChannelSource& source, const unsigned char* from,
                 long offset, long outPixel, long pixels) {
  const long bytes = std::min(source.bytesPerPixel, outPixel - offset);
  if (bytes <= 0) return;
  to += offset;
  for (long i = 0; i < pixels; ++i, to += outPixel, from += source.bytesPerPixel) {
    std::memcpy(to, from, static_cast<std::size_t>(bytes));
  }
}

/// Whether all channels are 16-bit samples that fill the destination pixel exactly.
bool AllWords(const std::vector<TChannelSource>& sources, long outPixel) {
  constexpr long sampleBytes = sizeof(unsigned short);
  return outPixel == static_cast<long>(sources.size()) * sampleBytes &&
         std::all_of(sources.begin(), sources.end(), [](const TChannelSource& source) {
           return source.bytesPerPixel == sampleBytes;
         });
}

/// Interleaves one row of pixels from `rows`.
void WriteRow(unsigned char* to, const TWorkspace& space, long outPixel, long pixels, bool words) {
  const std::vector<const unsigned char*>& rows = space.rows;
  if (words && rows.size() == 1) {
    std::memcpy(to, rows[0], static_cast<std::size_t>(pixels * outPixel));
  } else if (words && rows.size() <= kMaxKernelChannels) {
    Kernels().interleave(to, rows.data(), static_cast<int>(rows.size()),
                         static_cast<std::size_t>(pixels));
  } else {
    for (std::size_t k = 0; k < rows.size(); ++k) {
      const long offset = static_cast<long>(k) * space.sources[k].bytesPerPixel;
      CopyChannel(to, space.sources[k], rows[k], offset, outPixel, pixels);
    }
  }
}

/// Interleaves all rows of the part, from `to` upwards.
void Interleave(unsigned char* to, long stride, const TKvDibRectI& part, long outPixel,
                TWorkspace* space) {
  const bool words = AllWords(space->sources, outPixel);
  for (std::size_t k = 0; k < space->rows.size(); ++k) {
    space->rows[k] = space->sources[k].rows.bottom;
  }
  for (long row = 0; row < part.h; ++row, to += stride) {
    WriteRow(to, *space, outPixel, part.w, words);
    for (std::size_t k = 0; k < space->rows.size(); ++k) {
      space->rows[k] += space->sources[k].rows.step;
    }
  }
}

/// Whether every band can be read in place for this request. Bands that run code of others, or one
/// band in two channels, might overwrite a read buffer that is still needed.
bool AllInPlace(const TWorkspace& space, const TRequest& request, long width, long height) {
  const auto fits = [&](TBasePushbroomDibData* band) {
    if (!CanReadInPlace(*band) || band->width != width || band->height != height) return false;
    TKvDibRectI own;
    const unsigned long level =
        band->Rect2RectI(request.rect, request.quality, request.param, &own, false);
    return level == 0 && SameRect(own, request.pixels);
  };
  return space.distinct && std::all_of(space.bands.begin(), space.bands.end(), fits);
}

}  // namespace

TSeparateBandsDibData::TSeparateBandsDibData() {
  Reset();
}
TSeparateBandsDibData::~TSeparateBandsDibData() = default;

void TSeparateBandsDibData::Reset() {
  bands.clear();
  channelBands.clear();
  width = 0;
  height = 0;
  bandsCount = 0;
  channels = {1, 0, {}};
  ResetLevelBounds();
}

bool TSeparateBandsDibData::Setup(const std::map<int, TBand>& given) {
  // The argument may be this object's own map.
  std::map<int, TBand> wanted = given;
  Reset();
  if (wanted.empty()) return false;
  const TBand& first = wanted.begin()->second;
  const bool fit = std::all_of(wanted.begin(), wanted.end(), [&first](const auto& entry) {
    const TBand& band = entry.second;
    return first && band && band->width == first->width && band->height == first->height &&
           band->channels.sampleSize == first->channels.sampleSize;
  });
  if (!fit) return false;

  width = first->width;
  height = first->height;
  channels.sampleSize = first->channels.sampleSize;
  bands.swap(wanted);
  bandsCount = static_cast<long>(bands.size());
  channels.kinds = ChannelOrder(bands);
  unsigned int channel = 0;
  for (const int key : channels.kinds) channelBands[channel++] = key;
  FillDefaultLevelBounds({static_cast<unsigned long>(width), static_cast<unsigned long>(height)},
                         1);
  return true;
}

int TSeparateBandsDibData::GetRect(const TKvDibDataOutBuffer& out, const TKvDibRect& rect,
                                   const TInterpolationQuality& quality, int param,
                                   TKvProgressHandler* progress) {
  TKvDibRectI pixels;
  if (Rect2RectI(rect, quality, param, &pixels, false) != 0) {
    throw std::logic_error("@TSeparateBandsDibData::GetRectMS - Invalid scale");
  }
  const std::optional<TInnerPart> part = CutToRaster(pixels, width, height);
  if (!part) return kvDibNothing;
  const TRequest request{rect, quality, param, progress, pixels, *part};

  TWorkspace space;
  if (!Prepare(channelBands, bands, &space)) return kvDibNothing;
  const bool inPlace = AllInPlace(space, request, width, height);
  for (std::size_t k = 0; k < space.bands.size(); ++k) {
    if (!FetchBand(*space.bands[k], request, inPlace, space.blocks[k], &space.sources[k])) {
      return kvDibNothing;
    }
  }

  const long outPixel = BytesPerPixel(channels);
  unsigned char* to = PixelAddress(out, part->skipX, part->skipY, outPixel);
  if (outPixel < 0 || to == nullptr) return kvDibNothing;
  Interleave(to, out.stride, part->rect, outPixel, &space);
  return kvDibWritten;
}

void TSeparateBandsDibData::PurgeCache() {
  for (const auto& entry : bands) {
    if (entry.second) entry.second->PurgeCache();
  }
}

}  // namespace SatCommonUtils
