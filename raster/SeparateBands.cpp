#include <algorithm>
#include <cstring>
#include <new>
#include <set>
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

long BytesPerPixel(const TKvDibChannels& channels) {
  return SizeProduct(channels.kinds.size(), channels.sampleSize).value_or(-1);
}

/// The pixels of one band for the part of the request inside the raster.
struct TChannelSource {
  TPixelRows rows;
  long bytesPerPixel;
};

/// One request while it is answered.
struct TComposition {
  const TKvDibRect& rect;
  const TInterpolationQuality& quality;
  int param;
  TKvProgressHandler* progress;
  TKvDibRectI request;
  TInnerPart part;
};

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
bool FetchBand(TBasePushbroomDibData& band, const TComposition& work, bool inPlace,
               TKvDibDataOutBufferAutoRelease& block, TChannelSource* source) {
  const long bytesPerPixel = BytesPerPixel(band.channels);
  // The block is taken in any case: a request too large for it gives 2.
  if (!AllocateBlock(block, work.request, bytesPerPixel)) return false;
  source->bytesPerPixel = bytesPerPixel;
  if (inPlace && ReadInPlace(band, work.part.rect, &source->rows)) return true;
  source->rows = {block.data + work.part.skipY * block.stride + work.part.skipX * bytesPerPixel,
                  block.stride};
  // A failed read is the result 2, which has bit 2: the composition goes on.
  if (inPlace) return true;
  const int result = band.GetRect(block, work.rect, work.quality, work.param, work.progress);
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

/// Interleaves rows of channels into rows of pixels.
class TInterleaver {
 public:
  TInterleaver(const std::vector<TChannelSource>& sources, long outPixel)
      : sources_(sources), outPixel_(outPixel), rows_(sources.size()) {
    for (std::size_t k = 0; k < sources.size(); ++k) rows_[k] = sources[k].rows.bottom;
    constexpr long sampleBytes = sizeof(unsigned short);
    const bool words = std::all_of(
        sources.begin(), sources.end(),
        [](const TChannelSource& source) { return source.bytesPerPixel == sampleBytes; });
    uniform_ = words && outPixel == static_cast<long>(sources.size()) * sampleBytes;
  }

  /// Writes one row of `pixels` and goes on to the next one up.
  void WriteRow(unsigned char* to, long pixels) {
    if (uniform_ && rows_.size() == 1) {
      std::memcpy(to, rows_[0], static_cast<std::size_t>(pixels * outPixel_));
    } else if (uniform_ && rows_.size() <= kMaxKernelChannels) {
      Kernels().interleave(to, rows_.data(), static_cast<int>(rows_.size()),
                           static_cast<std::size_t>(pixels));
    } else {
      for (std::size_t k = 0; k < rows_.size(); ++k) {
        const long offset = static_cast<long>(k) * sources_[k].bytesPerPixel;
        CopyChannel(to, sources_[k], rows_[k], offset, outPixel_, pixels);
      }
    }
    for (std::size_t k = 0; k < rows_.size(); ++k) rows_[k] += sources_[k].rows.step;
  }

 private:
  const std::vector<TChannelSource>& sources_;
  long outPixel_;
  std::vector<const unsigned char*> rows_;
  bool uniform_;
};

/// Whether every band can be read in place for this request. Bands that run code of others, or one
/// band in two places, might overwrite a read buffer that is still needed.
bool AllInPlace(const std::vector<TBasePushbroomDibData*>& order, const TComposition& work,
                long width, long height) {
  std::set<const TBasePushbroomDibData*> seen;
  return std::all_of(order.begin(), order.end(), [&](TBasePushbroomDibData* band) {
    if (!CanReadInPlace(*band) || band->width != width || band->height != height) return false;
    TKvDibRectI own;
    const unsigned long level = band->Rect2RectI(work.rect, work.quality, work.param, &own, false);
    const bool same = own.x == work.request.x && own.y == work.request.y &&
                      own.w == work.request.w && own.h == work.request.h;
    return level == 0 && same && seen.insert(band).second;
  });
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
  const std::map<int, TBand> wanted = given;
  Reset();
  if (wanted.empty()) return false;
  const TBand& first = wanted.begin()->second;
  const bool fit = std::all_of(wanted.begin(), wanted.end(), [&first](const auto& entry) {
    const TBand& band = entry.second;
    return first && band && band->width == first->width && band->height == first->height &&
           band->channels.sampleSize == first->channels.sampleSize;
  });
  if (!fit) return false;

  bands = wanted;
  width = first->width;
  height = first->height;
  bandsCount = static_cast<long>(bands.size());
  channels.sampleSize = first->channels.sampleSize;
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
  TKvDibRectI request;
  if (Rect2RectI(rect, quality, param, &request, false) != 0) {
    throw std::logic_error("@TSeparateBandsDibData::GetRectMS - Invalid scale");
  }
  const std::optional<TInnerPart> part = CutToRaster(request, width, height);
  if (!part) return kvDibNothing;
  const TComposition work{rect, quality, param, progress, request, *part};

  std::vector<TBasePushbroomDibData*> order;
  for (const auto& channel : channelBands) {
    const auto band = bands.find(channel.second);
    if (band == bands.end() || !band->second) return kvDibNothing;
    order.push_back(band->second.get());
  }
  const bool inPlace = AllInPlace(order, work, width, height);
  const TBlocks blocks(order.size());
  std::vector<TChannelSource> sources(order.size());
  for (std::size_t k = 0; k < order.size(); ++k) {
    if (!FetchBand(*order[k], work, inPlace, blocks[k], &sources[k])) return kvDibNothing;
  }

  const long outPixel = BytesPerPixel(channels);
  unsigned char* to = PixelAddress(out, part->skipX, part->skipY, outPixel);
  if (outPixel < 0 || to == nullptr) return kvDibNothing;
  TInterleaver interleaver(sources, outPixel);
  for (long row = 0; row < part->rect.h; ++row, to += out.stride) {
    interleaver.WriteRow(to, part->rect.w);
  }
  return kvDibWritten;
}

void TSeparateBandsDibData::PurgeCache() {
  for (const auto& entry : bands) {
    if (entry.second) entry.second->PurgeCache();
  }
}

}  // namespace SatCommonUtils
