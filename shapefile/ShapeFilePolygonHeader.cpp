#include <type_traits>

#include "SatCommonUtils/Shapefile.h"
#include "shapefile/ByteOrder.h"
#include "shapefile/DebugLines.h"

namespace SatCommonUtils {

static_assert(sizeof(TShapeFilePolygonHeader) == 52 &&
              std::is_trivially_copyable_v<TShapeFilePolygonHeader>);

TShapeFilePolygonHeader::TShapeFilePolygonHeader() = default;

TShapeFilePolygonHeader::operator bool() const {
  return (shapeType == sftPolygon || shapeType == sftPolygonZ) && xMax >= xMin && yMax >= yMin &&
         numParts >= 0 && numPoints >= numParts;
}

void TShapeFilePolygonHeader::DebugOutput(const std::string& title) const {
  PrintTitle(title);
  PrintField("RecordNumber", Swapped(recordNumber));
  PrintField("ContentLength", static_cast<int>(LengthInBytes(contentLength)));
  PrintField("ShapeType", shapeType);
  PrintField("BoundingBox: Xmin", xMin);
  PrintField("BoundingBox: Ymin", yMin);
  PrintField("BoundingBox: Xmax", xMax);
  PrintField("BoundingBox: Ymax", yMax);
  PrintField("NumParts", numParts);
  PrintField("NumPoints", numPoints);
  PrintEnd(title);
}

}  // namespace SatCommonUtils
