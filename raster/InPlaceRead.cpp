#include "raster/InPlaceRead.h"

#include <typeinfo>

namespace SatCommonUtils {

bool CanReadInPlace(const TBasePushbroomDibData& band) {
  const std::type_info& type = typeid(band);
  if (type != typeid(TRawWordDibData) && type != typeid(TRawDibData<unsigned short>)) return false;
  return band.bandsCount == 1 && band.channels.kinds.size() == 1 &&
         band.channels.sampleSize == sizeof(unsigned short);
}

bool ReadInPlace(TBasePushbroomDibData& band, const TKvDibRectI& part, TPixelRows* rows) {
  long pos[2] = {part.x, band.height - part.y - part.h};
  long size[2] = {part.w, part.h};
  if (!band.AllocReadData(pos, size)) return false;
  const unsigned short* lastRow = band.GetReadBuffer() + (part.h - 1) * part.w;
  rows->bottom = reinterpret_cast<const unsigned char*>(lastRow);
  rows->step = -part.w * static_cast<long>(sizeof(unsigned short));
  return true;
}

}  // namespace SatCommonUtils
