#include <algorithm>
#include <cstring>
#include <new>
#include <stdexcept>

#include "SatCommonUtils/Raster.h"
#include "raster/InPlaceRead.h"
#include "raster/RequestMath.h"

namespace SatCommonUtils {
namespace {

/// What the tile buffer is longer than a tile's part.
constexpr long kBufferSlack = 4;
/// No buffer of a process is longer: user addresses have 47 bits.
constexpr long kMostBytes = 1L << 47;

/// Clears `h` rows of `w` pixels; false, and nothing is written, when no buffer can be so large.
bool Clear(const TKvDibDataOutBuffer& out, long w, long h, long bytesPerPixel) {
  const std::optional<long> rowBytes = SizeProduct(w, bytesPerPixel);
  const long step = out.stride < 0 ? SaturatedDifference(0, out.stride) : out.stride;
  const std::optional<long> bytes =
      rowBytes ? SizeProduct(std::max(step, *rowBytes), h) : std::nullopt;
  if (!bytes || *bytes > kMostBytes) return false;
  unsigned char* to = out.data;
  for (long row = 0; row < h; ++row, to += out.stride) {
    std::memset(to, 0, static_cast<std::size_t>(*rowBytes));
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

/// The part of a tile that a request touches, seen three ways.
struct TTilePart {
  TTopDownRect inStitched;
  TKvDibRectI inTile;  ///< pixels of the tile's raster, rows from the bottom
};

TTilePart PartOfTile(const TSuperTileData& tile, unsigned long level, const TTopDownRect& wanted) {
  const long left = AtLevel(tile.left, level);
  const long top = AtLevel(tile.top, level);
  const TTopDownRect common{std::max(left, wanted.left), std::max(top, wanted.top),
                            std::min(AtLevel(tile.right, level), wanted.right),
                            std::min(AtLevel(tile.bottom, level), wanted.bottom)};
  if (common.Empty()) return {common, {0, 0, 0, 0}};
  const long tileHeight = SignedSize(tile.raster->GetScaleDimensions(level)[1]);
  const long column = SaturatedDifference(common.left, left);
  const long lastRow = SaturatedDifference(common.bottom, top);
  const long y = SaturatedDifference(SaturatedDifference(tileHeight - 1, lastRow),
                                     AtLevel(tile.srcTop, level));
  return {common,
          {SaturatedSum(column, AtLevel(tile.srcLeft, level)), y, common.right - common.left + 1,
           common.bottom - common.top + 1}};
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

  /// Whether the raster reads exactly `part` for `rect`, and can do so in place.
  bool InPlace(TBasePushbroomDibData& raster, const TKvDibRect& rect,
               const TKvDibRectI& part) const {
    if (!CanReadInPlace(raster)) return false;
    TKvDibRectI own;
    if (raster.Rect2RectI(rect, quality, param, &own, false) != 0 || !SameRect(own, part))
      return false;
    const std::optional<TInnerPart> inside = CutToRaster(own, raster.width, raster.height);
    return inside && SameRect(inside->rect, part);
  }

  /// Copies the rows of a tile's part to their place; never beyond the tile's own row.
  void Paste(const TPixelRows& rows, const TTopDownRect& at, long tileRowBytes) const {
    const long columns = at.right - at.left + 1;
    const long firstRow = levelHeight - 1 - at.bottom - request.y;
    unsigned char* to = PixelAddress(out, at.left - request.x, firstRow, bytesPerPixel);
    const unsigned char* from = rows.bottom;
    const auto bytes = static_cast<std::size_t>(std::min(columns * bytesPerPixel, tileRowBytes));
    for (long row = at.top; row <= at.bottom; ++row, to += out.stride, from += rows.step) {
      std::memcpy(to, from, bytes);
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
  // The argument may be this object's own list.
  std::vector<TSuperTileData> wanted = given;
  Reset();
  unsigned long stitchedWidth;
  unsigned long stitchedHeight;
  unsigned long bands;
  unsigned long sampleSize;
  if (!GetStitchedRasterDimensions(wanted, &stitchedWidth, &stitchedHeight) ||
      !GetStitchedRasterRadiometry(wanted, &bands, &sampleSize)) {
    return false;
  }
  width = SignedSize(stitchedWidth);
  height = SignedSize(stitchedHeight);
  bandsCount = static_cast<long>(bands);
  channels.sampleSize = sampleSize;
  tiles.swap(wanted);
  if (bandsCount == 1) {
    channels.kinds.assign(1, 1);
  } else if (!SetVisibleBandsOrder(order)) {
    channels = tiles.front().raster->channels;
  }
  unsigned long levels = tiles.front().raster->GetAllLevels(nullptr);
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
  if (!tile.raster) return false;
  TBasePushbroomDibData& raster = *tile.raster;
  const TTilePart part = PartOfTile(tile, work.level, work.wanted);
  if (part.inStitched.Empty()) return true;

  const long bytesPerPixel = BytesPerPixel(raster.channels);
  if (!GrowTileBuffer(SizeProduct(bytesPerPixel, part.inTile.w, part.inTile.h))) return false;
  const TKvDibDataOutBuffer buffer{tileBuffer, part.inTile.w * bytesPerPixel};
  const TKvDibRect rect = RectI2Rect(work.level, part.inTile);
  TPixelRows rows{buffer.data, buffer.stride};
  const bool inPlace = work.InPlace(raster, rect, part.inTile);
  if (!inPlace || !ReadInPlace(raster, part.inTile, &rows)) {
    std::memset(tileBuffer, 0, tileBufferSize);
    // A failed read is the result 2, which has bit 2: the cleared buffer is pasted.
    const int result = inPlace
                           ? kvDibNothing
                           : raster.GetRect(buffer, rect, work.quality, work.param, work.progress);
    if ((result & kvDibNothing) == 0) return false;
  }
  work.Paste(rows, part.inStitched, buffer.stride);
  return true;
}

void TSuperTiledDibDataEnvelope::PurgeCache() {
  for (const TSuperTileData& tile : tiles) {
    if (tile.raster) tile.raster->PurgeCache();
  }
}

bool TSuperTiledDibDataEnvelope::AllocTileBuffer(long* size, unsigned long bytesPerPixel) {
  if (!GrowTileBuffer(SizeProduct(bytesPerPixel, size[0], size[1]))) return false;
  std::memset(tileBuffer, 0, tileBufferSize);
  return true;
}

bool TSuperTiledDibDataEnvelope::GrowTileBuffer(std::optional<long> bytes) {
  long needed;
  if (!bytes || __builtin_add_overflow(*bytes, kBufferSlack, &needed)) return false;
  if (tileBufferSize >= static_cast<unsigned long>(needed)) return true;
  FreeTileBuffer();
  try {
    tileBuffer = new unsigned char[static_cast<std::size_t>(needed)];
  } catch (const std::bad_alloc&) {
    return false;
  }
  tileBufferSize = static_cast<unsigned long>(needed);
  return true;
}

void TSuperTiledDibDataEnvelope::FreeTileBuffer() {
  delete[] tileBuffer;
  tileBuffer = nullptr;
  tileBufferSize = 0;
}

}  // namespace SatCommonUtils
