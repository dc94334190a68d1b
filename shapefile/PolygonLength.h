// How long the file of a polygon is.
#pragma once

#include <limits>
#include <optional>

namespace SatCommonUtils {

constexpr unsigned long kShapePartBytes = 4;
constexpr unsigned long kShapePointBytes = 16;
/// The file's header, and its record's up to the part indices.
constexpr unsigned long kShapeHeaderBytes = 100;
constexpr unsigned long kShapeRecordHeaderBytes = 52;
/// What a record's content length leaves out: record number and content length themselves.
constexpr unsigned long kShapeUncountedBytes = 8;

/// Bytes of the main file that holds one polygon of that many parts and points, closing points
/// counted; none when a shapefile cannot be that long.
inline std::optional<unsigned int> PolygonFileBytes(unsigned long parts, unsigned long points) {
  constexpr unsigned long kMost = std::numeric_limits<unsigned int>::max();
  constexpr unsigned long kFixed = kShapeHeaderBytes + kShapeRecordHeaderBytes;
  if (parts > kMost / kShapePartBytes || points > kMost / kShapePointBytes) return std::nullopt;
  const unsigned long bytes = kFixed + parts * kShapePartBytes + points * kShapePointBytes;
  if (bytes > kMost) return std::nullopt;
  return static_cast<unsigned int>(bytes);
}

}  // namespace SatCommonUtils
