#include "host/scene/ReducedRaster.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace ravelin {
namespace {

// Rows far apart are not read again: files are told so after this much.
constexpr std::size_t kPurgeBytes = std::size_t{32} << 20;

// Sides of images are below 2^31, so that these products fit.

/// The pixel in the middle of those that pixel `i` of `few` stands for; of two, the later.
long Middle(long i, long few, long many) {
  const auto twice = 2 * static_cast<unsigned long>(i) + 1;
  return static_cast<long>(twice * static_cast<unsigned long>(many) /
                           (2 * static_cast<unsigned long>(few)));
}

/// side x reduced / longest, rounded to the nearest, at least 1.
long Scaled(long side, long longest, long reduced) {
  const auto whole = static_cast<unsigned long>(longest);
  const auto product = 2 * static_cast<unsigned long>(side) * static_cast<unsigned long>(reduced);
  return std::max(1L, static_cast<long>((product + whole) / (2 * whole)));
}

}  // namespace

ImageSize ReducedSize(const ImageSize& size, long longest) {
  const long longer = std::max(size.width, size.height);
  if (longer <= longest) return size;
  return {Scaled(size.width, longer, longest), Scaled(size.height, longer, longest)};
}

ReducedRaster::ReducedRaster(var_a_legacy::var_a<TBasePushbroomDibData*> whole,
                             const ImageSize& size)
    : whole_(std::move(whole)) {
  width = size.width;
  height = size.height;
  bandsCount = whole_->bandsCount;
  channels = whole_->channels;
  FillDefaultLevelBounds({static_cast<unsigned long>(width), static_cast<unsigned long>(height)},
                         1);
  row_.resize(static_cast<std::size_t>(whole_->width * bandsCount));
}

int ReducedRaster::GetRect(const TKvDibDataOutBuffer& out, const TKvDibRect& rect,
                           const TInterpolationQuality& quality, int param, TKvProgressHandler*) {
  TKvDibRectI area = {};
  Rect2RectI(rect, quality, param, &area, false);
  for (long row = 0; row < area.h; ++row) {
    const long fromTop = height - 1 - (area.y + row);
    const int result = ReadRow(Middle(fromTop, height, whole_->height));
    if (result != kvDibWritten) return result;
    CopyRow(out.data + row * out.stride, area);
  }
  return kvDibWritten;
}

/// Reads a row of the whole raster, counted from the top.
int ReducedRaster::ReadRow(long row) {
  const TKvDibDataOutBuffer out = {reinterpret_cast<unsigned char*>(row_.data()),
                                   static_cast<long>(row_.size() * sizeof(row_[0]))};
  const TKvDibRect rect = whole_->RectI2Rect(0, {0, whole_->height - 1 - row, whole_->width, 1});
  const int result = whole_->GetRect(out, rect, iqNearest, 0, nullptr);
  unpurgedBytes_ += row_.size() * sizeof(row_[0]);
  if (unpurgedBytes_ >= kPurgeBytes) PurgeCache();
  return result;
}

void ReducedRaster::CopyRow(unsigned char* out, const TKvDibRectI& area) const {
  const auto pixelBytes = static_cast<std::size_t>(bandsCount) * sizeof(row_[0]);
  for (long x = area.x; x < area.x + area.w; ++x, out += pixelBytes) {
    const long column = Middle(x, width, whole_->width);
    std::memcpy(out, row_.data() + column * bandsCount, pixelBytes);
  }
}

void ReducedRaster::PurgeCache() {
  whole_->PurgeCache();
  unpurgedBytes_ = 0;
}

}  // namespace ravelin
