// A raster of given pixels.
#pragma once

#include <cstring>

#include "SatCommonUtils/Raster.h"
#include "host/support/Samples.h"

/// Width x height pixels of `bands` interleaved samples, the top row first in `pixels`. Answers
/// requests that lie inside.
class PixelRaster : public SatCommonUtils::TBasePushbroomDibData {
 public:
  PixelRaster(long w, long h, long bands, Samples pixels) : pixels_(std::move(pixels)) {
    width = w;
    height = h;
    bandsCount = bands;
    channels.sampleSize = 2;
    channels.kinds.assign(static_cast<std::size_t>(bands), 32);
    FillDefaultLevelBounds({static_cast<unsigned long>(w), static_cast<unsigned long>(h)}, 1);
  }

  using TBasePushbroomDibData::GetRect;
  int GetRect(const TKvDibDataOutBuffer& out, const TKvDibRect& rect, const TInterpolationQuality&,
              int, TKvProgressHandler*) override {
    TKvDibRectI area = {};
    Rect2RectI(rect, iqNearest, 0, &area, false);
    for (long row = 0; row < area.h; ++row) {
      const long y = height - 1 - (area.y + row);
      std::memcpy(out.data + row * out.stride, pixels_.data() + (y * width + area.x) * bandsCount,
                  static_cast<std::size_t>(area.w * bandsCount) * 2);
    }
    return kvDibWritten;
  }
  void PurgeCache() override {}

 private:
  Samples pixels_;
};
