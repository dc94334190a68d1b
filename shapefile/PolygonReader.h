// Rings out of the points of a polygon record.
#pragma once

#include <vector>

#include "SatCommonUtils/Shapefile.h"

namespace SatCommonUtils {

/// Reads part indices and points from where the stream stands, behind the record's fixed part, and
/// appends the rings to `rings`; the closing points are left out. False when the stream ends
/// before, nothing is appended then, and when a ring is shorter than three points and the closing
/// one or does not lie within the points: the rings before it are appended. The counts must not
/// be negative, and the stream be long enough to hold them; both are the caller's to check. Throws
/// std::bad_alloc, and what the stream throws.
bool ReadPolygonRings(TKvStream& stream, int numParts, int numPoints,
                      std::vector<TShapeFileRing>* rings);

}  // namespace SatCommonUtils
