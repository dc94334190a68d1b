#include "host/shapefile/ShapeRing.h"

#include <algorithm>

#include "Kv/Stream.h"

namespace ravelin {
namespace {

using SatCommonUtils::TShapeFilePoint;
using SatCommonUtils::TShapeFileRing;

/// Twice the area, positive when the ring runs anticlockwise. Reckoned from the first point: far
/// from the origin the products would drown it.
double DoubledArea(const TShapeFileRing& ring) {
  const TShapeFilePoint& origin = ring.front();
  double sum = 0;
  for (std::size_t i = 1; i + 1 < ring.size(); ++i) {
    sum += (ring[i].x - origin.x) * (ring[i + 1].y - origin.y) -
           (ring[i + 1].x - origin.x) * (ring[i].y - origin.y);
  }
  return sum;
}

}  // namespace

bool MakeClockwise(TShapeFileRing* ring) {
  if (!(DoubledArea(*ring) > 0)) return false;
  std::reverse(ring->begin() + 1, ring->end());
  return true;
}

std::optional<std::string> ShapeMainFile(const TShapeFileRing& ring) {
  SatCommonUtils::TShapeFilePolygonData polygon;
  TKvMemoryStream stream;
  if (!polygon.Setup({ring}) || !polygon.Write(&stream)) return std::nullopt;
  return stream.Bytes();
}

}  // namespace ravelin
