#include <cmath>
#include <utility>

#include "SatCommonUtils/Raster.h"

namespace SatCommonUtils {
namespace {

/// A side of a raster in whole pixels; 0 for what is not a size, held at 2^62.
long WholePixels(double side) {
  constexpr double most = 4611686018427387904.0;
  if (!(side > 0)) return 0;
  return static_cast<long>(std::fmin(side, most));
}

}  // namespace

TPushbroomDibDataEnvelope::TPushbroomDibDataEnvelope(var_a_legacy::var_a<TKvDibData*> data,
                                                     std::string name, bool flag)
    : data(std::move(data)) {
  if (!this->data) return;
  const TKvDibRect bounds = this->data->Bounds();
  width = WholePixels(bounds.size[0]);
  height = WholePixels(bounds.size[1]);
  channels = this->data->Channels();
  bandsCount = static_cast<long>(channels.kinds.size());
  bandFlag = flag;
  bandName = std::move(name);
  this->data->GetAllLevels(&levelBounds);
}

TPushbroomDibDataEnvelope::~TPushbroomDibDataEnvelope() = default;

int TPushbroomDibDataEnvelope::GetRect(const TKvDibDataOutBuffer& out, const TKvDibRect& rect,
                                       const TInterpolationQuality& quality, int param,
                                       TKvProgressHandler* progress) {
  if (!data) return kvDibNothing;
  return data->GetRect(out, rect, quality, param, progress);
}

void TPushbroomDibDataEnvelope::PurgeCache() {
  if (data) data->PurgeCache();
}

}  // namespace SatCommonUtils
