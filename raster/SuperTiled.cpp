#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>

#include "SatCommonUtils/Raster.h"
#include "raster/ChannelKinds.h"
#include "raster/InPlaceRead.h"
#include "raster/RequestMath.h"

namespace SatCommonUtils {
namespace {

/// No buffer is longer: the addresses of a process have 47 bits.
constexpr long kMostBytes = 1L << 47;

/// Clears `h` rows of `w` pixels; false, and nothing is written, when no buffer can be so large.
bool Clear(const TKvDibDataOutBuffer& out, long w, long h, long bytesPerPixel) {
  const std::optional<long> rowBytes = SizeProduct(w, bytesPerPixel);
  if (!rowBytes || *rowBytes > kMostBytes) return false;
  const long step = out.stride < 0 ? SaturatedDifference(0, out.stride) : out.stride;
  // Rows without a byte, or all in one place, need no more than one. No stride follows the last.
  const long rows = *rowBytes == 0 || step == 0 ? 1 : h;
  const std::optional<long> bytesBefore = SizeProduct(std::max(step, *rowBytes), rows - 1);
  if (!bytesBefore || *bytesBefore > kMostBytes - *rowBytes) return false;
  for (long row = 0; row < rows; ++row) {
    std::memset(out.data + row * out.stride, 0, static_cast<std::size_t>(*rowBytes));
  }
  return true;
}

/// Pixels of one level, columns from the left and rows from the top, right and bottom inclusive.
struct TTopDownRect {
  long left;
  long top;
  long right;
  long bottom;

  bool Empty() const { return right < left || bottom < top; }
};

/// Full-resolution pixels to pixels of a level.
long AtLevel(long pixels, unsigned long level) {
  return pixels >> std::min(level, 63UL);
}

/// The part of a tile, as it lies in the stitched raster, that a request touches.
TTopDownRect TouchedPart(const TSuperTileData& tile, unsigned long level,
                         const TTopDownRect& wanted) {
  return {std::max(AtLevel(tile.left, level), wanted.left),
          std::max(AtLevel(tile.top, level), wanted.top),
          std::min(AtLevel(tile.right, level), wanted.right),
          std::min(AtLevel(tile.bottom, level), wanted.bottom)};
}

/// The same part in pixels of the tile's raster, rows from the bottom.
TKvDibRectI InTile(const TTopDownRect& part, const TSuperTileData& tile, unsigned long level) {
  const long tileHeight = SignedSize(tile.raster->GetScaleDimensions(level)[1]);
  const long column = SaturatedDifference(part.left, AtLevel(tile.left, level));
  const long lastRow = SaturatedDifference(part.bottom, AtLevel(tile.top, level));
  const long x = SaturatedSum(column, AtLevel(tile.srcLeft, level));
  const long y = SaturatedDifference(SaturatedDifference(tileHeight - 1, lastRow),
                                     AtLevel(tile.srcTop, level));
  return {x, y, part.right - part.left + 1, part.bottom - part.top + 1};
}

}  // namespace

/// One request while it is answered.
struct TSuperTiledDibDataEnvelope::TStitching {
  const TKvDibDataOutBuffer& out;
  const TInterpolationQuality& quality;
  int param;
  TKvProgressHandler* progress;
  unsigned long level;
  TKvDibRectI request;
  long levelHeight;
  TTopDownRect wanted;
  long bytesPerPixel;

  /// Copies the rows of a tile's part to their place; never beyond the tile's own row.
  void Paste(const TPixelRows& rows, const TTopDownRect& at, long tileRowBytes) const {
    const long columns = at.right - at.left + 1;
    const auto bytes = static_cast<std::size_t>(std::min(columns * bytesPerPixel, tileRowBytes));
    // Rows without bytes have no limit to their number, nor to where they would lie.
    if (bytes == 0) return;
    const long firstRow = levelHeight - 1 - at.bottom - request.y;
    unsigned char* const to = PixelAddress(out, at.left - request.x, firstRow, bytesPerPixel);
    for (long row = 0; row <= at.bottom - at.top; ++row) {
      std::memcpy(to + row * out.stride, rows.bottom + row * rows.step, bytes);
    }
  }
};

TSuperTiledDibDataEnvelope::TSuperTiledDibDataEnvelope() {
  Reset();
}

TSuperTiledDibDataEnvelope::~TSuperTiledDibDataEnvelope() {
  delete[] tileBuffer;
}

void TSuperTiledDibDataEnvelope::Reset() {
  tiles.clear();
  width = 0;
  height = 0;
  bandsCount = 0;
  channels = {1, 0, {}};
  FreeTileBuffer();
  ResetLevelBounds();
}

bool TSuperTiledDibDataEnvelope::Setup(const std::vector<TSuperTileData>& given,
                                       const TVisibleBandsOrder* order) {
  Reset();
  bool taken = false;
  try {
    taken = Take(given, order);
  } catch (const std::bad_alloc&) {  // a raster that cannot be set up whole stays empty
  } catch (const std::length_error&) {
  }
  if (!taken) Reset();
  return taken;
}

bool TSuperTiledDibDataEnvelope::Take(const std::vector<TSuperTileData>& given,
                                      const TVisibleBandsOrder* order) {
  unsigned long stitchedWidth;
  unsigned long stitchedHeight;
  unsigned long bands;
  unsigned long sampleSize;
  if (!GetStitchedRasterDimensions(given, &stitchedWidth, &stitchedHeight) ||
      !GetStitchedRasterRadiometry(given, &bands, &sampleSize)) {
    return false;
  }
  width = SignedSize(stitchedWidth);
  height = SignedSize(stitchedHeight);
  bandsCount = static_cast<long>(bands);
  channels.sampleSize = sampleSize;
  tiles = given;
  if (bandsCount == 1) {
    channels.kinds.assign(1, kSingleBand);
  } else if (!SetVisibleBandsOrder(order)) {
    channels = tiles.front().raster->channels;
  }
  unsigned long levels = std::numeric_limits<unsigned long>::max();
  for (const TSuperTileData& tile : tiles) {
    levels = std::min(levels, tile.raster->GetAllLevels(nullptr));
  }
  FillDefaultLevelBounds({stitchedWidth, stitchedHeight}, levels);
  return true;
}

int TSuperTiledDibDataEnvelope::GetRect(const TKvDibDataOutBuffer& out, const TKvDibRect& rect,
                                        const TInterpolationQuality& quality, int param,
                                        TKvProgressHandler* progress) {
  TKvDibRectI request;
  const unsigned long level = Rect2RectI(rect, quality, param, &request, false);
  if (level >= GetAllLevels(nullptr)) {
    // The words are the pushbroom reader's; callers rely on them.
    throw std::logic_error("@TPushbroomDibData<T>::GetRect - Invalid scale");
  }
  const long bytesPerPixel = BytesPerPixel(channels);
  if (request.w > 0 && request.h > 0 && !Clear(out, request.w, request.h, bytesPerPixel)) {
    return kvDibNothing;
  }
  const vec_t_<unsigned long, 2> size = GetScaleDimensions(level);
  const long levelHeight = SignedSize(size[1]);
  const std::optional<TInnerPart> part = CutToRaster(request, SignedSize(size[0]), levelHeight);
  if (!part) return kvDibNothing;

  const TKvDibRectI& inner = part->rect;
  const TTopDownRect wanted{inner.x, levelHeight - inner.y - inner.h, inner.x + inner.w - 1,
                            levelHeight - 1 - inner.y};
  const TStitching work{out,     quality,     param,  progress,     level,
                        request, levelHeight, wanted, bytesPerPixel};
  const bool drawn = std::all_of(tiles.begin(), tiles.end(),
                                 [&](const TSuperTileData& tile) { return DrawTile(tile, work); });
  return drawn ? kvDibWritten : kvDibNothing;
}

bool TSuperTiledDibDataEnvelope::DrawTile(const TSuperTileData& tile, const TStitching& work) {
  const TTopDownRect touched = TouchedPart(tile, work.level, work.wanted);
  if (touched.Empty()) return true;
  if (!tile.raster) return false;
  TBasePushbroomDibData& raster = *tile.raster;
  const TKvDibRectI part = InTile(touched, tile, work.level);

  const long bytesPerPixel = BytesPerPixel(raster.channels);
  const std::optional<long> needed =
      BufferBytes(part.w, part.h, bytesPerPixel, WrittenBytesPerPixel(raster));
  if (!needed || !GrowTileBuffer(*needed)) return false;
  const TKvDibDataOutBuffer buffer{tileBuffer, part.w * bytesPerPixel};
  const TKvDibRect rect = RectI2Rect(work.level, part);
  const TBandRequest request{rect, work.quality, work.param, work.progress};
  const bool inPlace = CanReadInPlace(raster, request, part, part);
  if (!inPlace) ClearTileBuffer();
  TPixelRows rows{buffer.data, buffer.stride};
  const int result = ReadBand(raster, request, inPlace ? &part : nullptr, buffer, &rows);
  if ((result & kvDibNothing) == 0) return false;
  // A failed read has bit 2: the cleared buffer is pasted.
  if (inPlace && rows.bottom == tileBuffer) ClearTileBuffer();
  work.Paste(rows, touched, buffer.stride);
  return true;
}

void TSuperTiledDibDataEnvelope::PurgeCache() {
  for (const TSuperTileData& tile : tiles) {
    if (tile.raster) tile.raster->PurgeCache();
  }
}

bool TSuperTiledDibDataEnvelope::AllocTileBuffer(long* size, unsigned long bytesPerPixel) {
  const long pixel = SignedSize(bytesPerPixel);
  const std::optional<long> needed = BufferBytes(size[0], size[1], pixel, pixel);
  if (!needed) FreeTileBuffer();  // as for one that cannot be allocated
  if (!needed || !GrowTileBuffer(*needed)) return false;
  ClearTileBuffer();
  return true;
}

bool TSuperTiledDibDataEnvelope::GrowTileBuffer(long bytes) {
  const auto needed = static_cast<unsigned long>(bytes);
  if (tileBufferSize >= needed) return true;
  FreeTileBuffer();
  try {
    tileBuffer = new unsigned char[needed]();
  } catch (const std::bad_alloc&) {
    return false;
  }
  tileBufferSize = needed;
  return true;
}

void TSuperTiledDibDataEnvelope::ClearTileBuffer() {
  std::memset(tileBuffer, 0, tileBufferSize);
}

void TSuperTiledDibDataEnvelope::FreeTileBuffer() {
  delete[] tileBuffer;
  tileBuffer = nullptr;
  tileBufferSize = 0;
}

}  // namespace SatCommonUtils
