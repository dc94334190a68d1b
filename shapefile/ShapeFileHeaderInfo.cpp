#include <stdexcept>

#include "SatCommonUtils/Shapefile.h"
#include "shapefile/ByteOrder.h"

namespace SatCommonUtils {

TShapeFileHeaderInfo::TShapeFileHeaderInfo() = default;

TShapeFileHeaderInfo::TShapeFileHeaderInfo(const TShapeFileHeader& src) {
  if (!Setup(src)) {
    throw std::runtime_error(
        "TShapeFileHeaderInfo::TShapeFileHeaderInfo(const TShapeFileHeader& src)");
  }
}

void TShapeFileHeaderInfo::Reset() {
  *this = TShapeFileHeaderInfo();
}

bool TShapeFileHeaderInfo::Setup(const TShapeFileHeader& header) {
  Reset();
  if (!header) return false;
  fileLength = LengthInBytes(header.fileLength);
  shapeType = IntToShapeFileType(header.shapeType);
  xMin = header.xMin;
  xMax = header.xMax;
  yMin = header.yMin;
  yMax = header.yMax;
  // The measures of an M type are not taken over, so none is valid. Callers rely on it.
  if (IsZtype(shapeType)) {
    zMin = header.zMin;
    zMax = header.zMax;
    mMin = header.mMin;
    mMax = header.mMax;
  }
  return *this;
}

TShapeFileHeaderInfo::operator bool() const {
  if (fileLength == 0 || shapeType == sftInvalid) return false;
  if (!(xMax >= xMin && yMax >= yMin)) return false;
  if (IsZtype(shapeType)) return zMax >= zMin;
  if (IsMtype(shapeType)) return mMax >= mMin;
  return true;
}

}  // namespace SatCommonUtils
