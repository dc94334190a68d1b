#include "SatCommonUtils/Shapefile.h"

namespace SatCommonUtils {

TShapeFileType IntToShapeFileType(int code) {
  switch (code) {
    case sftNull:
    case sftPoint:
    case sftPolyline:
    case sftPolygon:
    case sftMultipoint:
    case sftPointZ:
    case sftPolylineZ:
    case sftPolygonZ:
    case sftMultipointZ:
    case sftPointM:
    case sftPolylineM:
    case sftPolygonM:
    case sftMultipointM:
    case sftMultipatch:
      return static_cast<TShapeFileType>(code);
    default:
      return sftInvalid;
  }
}

bool IsZtype(TShapeFileType type) {
  return type == sftPointZ || type == sftPolylineZ || type == sftPolygonZ || type == sftMultipointZ;
}

bool IsMtype(TShapeFileType type) {
  return type == sftPointM || type == sftPolylineM || type == sftPolygonM || type == sftMultipointM;
}

}  // namespace SatCommonUtils
