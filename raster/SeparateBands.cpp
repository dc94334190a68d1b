#include <algorithm>
#include <new>
#include <stdexcept>

#include "SatCommonUtils/Raster.h"
#include "raster/ChannelKinds.h"
#include "raster/InPlaceRead.h"
#include "raster/Interleave.h"
#include "raster/RequestMath.h"

namespace SatCommonUtils {
namespace {

using TBand = var_a_legacy::var_a<TBasePushbroomDibData*>;
using TBlocks = var_a_legacy::newarray_a<TKvDibDataOutBufferAutoRelease>;

constexpr int kVisibleKinds[] = {kFirstVisible, kSecondVisible, kThirdVisible};

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

/// What one request needs of memory beside the blocks, allocated before the first band is asked.
struct TWorkspace {
  std::vector<TBasePushbroomDibData*> bands;  ///< in channel order
  std::vector<TChannelSource> sources;
  std::vector<const unsigned char*> cursors;
  TBlocks blocks;
  bool distinct = false;  ///< no band fills two channels
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
    space->cursors.resize(space->bands.size());
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
bool AllocateBlock(TKvDibDataOutBufferAutoRelease& block, const TKvDibRectI& pixels,
                   const TBasePushbroomDibData& band) {
  const long bytesPerPixel = BytesPerPixel(band.channels);
  const std::optional<long> bytes =
      BufferBytes(pixels.w, pixels.h, bytesPerPixel, WrittenBytesPerPixel(band));
  if (!bytes) return false;
  try {
    block.data = new unsigned char[static_cast<std::size_t>(*bytes)];
  } catch (const std::bad_alloc&) {
    return false;
  }
  block.stride = pixels.w * bytesPerPixel;
  return true;
}

/// Gets the pixels of one channel. What the band does not write of its block stays as it was
/// allocated. The block is taken in any case: a request too large for it gives 2. False when memory
/// is short or the band's result lacks bit 2, which a failed read does not.
bool FetchBand(TBasePushbroomDibData& band, const TBandRequest& request, const TKvDibRectI& pixels,
               const TInnerPart& part, bool inPlace, TKvDibDataOutBufferAutoRelease& block,
               TChannelSource* source) {
  if (!AllocateBlock(block, pixels, band)) return false;
  source->bytesPerPixel = BytesPerPixel(band.channels);
  source->rows = {block.data + part.skipY * block.stride + part.skipX * source->bytesPerPixel,
                  block.stride};
  const int result = ReadBand(band, request, inPlace ? &part.rect : nullptr, block, &source->rows);
  return (result & kvDibNothing) != 0;
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
  Reset();
  bool taken = false;
  try {
    taken = Take(given);
  } catch (const std::bad_alloc&) {  // a compositor that cannot be set up whole stays empty
  }
  if (!taken) Reset();
  return taken;
}

bool TSeparateBandsDibData::Take(const std::map<int, TBand>& given) {
  if (given.empty()) return false;
  const TBand& first = given.begin()->second;
  const bool fit = std::all_of(given.begin(), given.end(), [&first](const auto& entry) {
    const TBand& band = entry.second;
    return first && band && band->width == first->width && band->height == first->height &&
           band->channels.sampleSize == first->channels.sampleSize;
  });
  if (!fit) return false;

  bands = given;
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
  TKvDibRectI pixels;
  if (Rect2RectI(rect, quality, param, &pixels, false) != 0) {
    throw std::logic_error("@TSeparateBandsDibData::GetRectMS - Invalid scale");
  }
  const std::optional<TInnerPart> part = CutToRaster(pixels, width, height);
  if (!part) return kvDibNothing;

  TWorkspace space;
  if (!Prepare(channelBands, bands, &space)) return kvDibNothing;
  const TBandRequest request{rect, quality, param, progress};
  const bool inPlace =
      space.distinct &&
      std::all_of(space.bands.begin(), space.bands.end(), [&](TBasePushbroomDibData* band) {
        return CanReadInPlace(*band, request, pixels, part->rect);
      });
  for (std::size_t k = 0; k < space.bands.size(); ++k) {
    if (!FetchBand(*space.bands[k], request, pixels, *part, inPlace, space.blocks[k],
                   &space.sources[k])) {
      return kvDibNothing;
    }
  }

  const long outPixel = BytesPerPixel(channels);
  unsigned char* to = PixelAddress(out, part->skipX, part->skipY, outPixel);
  if (outPixel < 0 || to == nullptr) return kvDibNothing;
  Interleave(space.sources, to, out.stride, part->rect.w, part->rect.h, outPixel, &space.cursors);
  return kvDibWritten;
}

void TSeparateBandsDibData::PurgeCache() {
  for (const auto& entry : bands) {
    if (entry.second) entry.second->PurgeCache();
  }
}

}  // namespace SatCommonUtils
