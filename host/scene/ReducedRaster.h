// A smaller picture of a raster.
#pragma once

#include <cstdint>
#include <vector>

#include "Kv/VarA.h"
#include "SatCommonUtils/Raster.h"
#include "host/raster/PixelArea.h"

namespace ravelin {

/// The size with the longer side reduced to `longest`, the other in proportion, at least 1; the
/// size itself when it is not longer.
ImageSize ReducedSize(const ImageSize& size, long longest);

/// A raster of 16-bit samples seen in fewer pixels: each is the one in the middle of the pixels
/// that it stands for. Only the rows that are shown are read, one at a time.
///
/// Shares the whole raster. Has one level.
class ReducedRaster : public SatCommonUtils::TBasePushbroomDibData {
 public:
  /// `size` is at least 1 x 1 and not larger than the raster.
  ReducedRaster(var_a_legacy::var_a<SatCommonUtils::TBasePushbroomDibData*> whole,
                const ImageSize& size);

  using TBasePushbroomDibData::GetRect;
  /// The area must lie inside. Gives what the raster gives for the first row that it does not give;
  /// what the raster throws passes.
  int GetRect(const TKvDibDataOutBuffer& out, const TKvDibRect& rect,
              const TInterpolationQuality& quality, int param,
              TKvProgressHandler* progress) override;
  void PurgeCache() override;

 private:
  int ReadRow(long row);
  void CopyRow(unsigned char* out, const TKvDibRectI& area) const;

  var_a_legacy::var_a<SatCommonUtils::TBasePushbroomDibData*> whole_;
  std::vector<std::uint16_t> row_;  ///< one of the whole raster
  std::size_t unpurgedBytes_ = 0;
};

}  // namespace ravelin
