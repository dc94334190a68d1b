// Band rasters that tests script: what they are asked is recorded, what they answer is set.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "SatCommonUtils/Raster.h"

namespace raster_test {

/// A band of the given size. Its GetRect records its arguments, runs `paint` when there is one (it
/// may write pixels and may throw) and returns `result`.
class MockBand : public SatCommonUtils::TBasePushbroomDibData {
 public:
  struct Call {
    TKvDibDataOutBuffer out;
    TKvDibRect rect;
    TInterpolationQuality quality;
    int param;
    TKvProgressHandler* progress;
  };

  MockBand(long w, long h, unsigned long sampleSize, std::vector<int> kinds,
           unsigned long levels = 1) {
    width = w;
    height = h;
    bandsCount = static_cast<long>(kinds.size());
    channels.sampleSize = sampleSize;
    channels.kinds = std::move(kinds);
    FillDefaultLevelBounds({{static_cast<unsigned long>(w), static_cast<unsigned long>(h)}},
                           levels);
  }

  int result = kvDibWritten;
  std::function<void(const TKvDibDataOutBuffer&, const TKvDibRect&)> paint;
  std::vector<Call> calls;
  std::string* purgeLog = nullptr;  ///< gets `purgeName` at every PurgeCache
  char purgeName = '?';
  std::function<void()> atDestruction;

  ~MockBand() override {
    if (atDestruction) atDestruction();
  }

  using TBasePushbroomDibData::GetRect;
  int GetRect(const TKvDibDataOutBuffer& out, const TKvDibRect& rect,
              const TInterpolationQuality& quality, int param,
              TKvProgressHandler* progress) override {
    calls.push_back({out, rect, quality, param, progress});
    if (paint) paint(out, rect);
    return result;
  }
  void PurgeCache() override {
    if (purgeLog != nullptr) *purgeLog += purgeName;
  }
};

}  // namespace raster_test
