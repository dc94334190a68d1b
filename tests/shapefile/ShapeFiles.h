// Main files made byte by byte, and a plain reader to compare with.
#pragma once

#include <cstring>
#include <optional>
#include <string>
#include <vector>

#include "SatCommonUtils/Shapefile.h"

namespace shape_test {

using SatCommonUtils::TShapeFilePoint;
using SatCommonUtils::TShapeFileRing;
using TRings = std::vector<TShapeFileRing>;

inline std::string LittleInt(int value) {
  const auto bits = static_cast<unsigned int>(value);
  std::string bytes;
  for (int shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(bits >> shift & 0xff);
  return bytes;
}

inline std::string BigInt(int value) {
  const std::string bytes = LittleInt(value);
  return std::string(bytes.rbegin(), bytes.rend());
}

inline std::string LittleDouble(double value) {
  std::string bytes(sizeof value, '\0');
  std::memcpy(bytes.data(), &value, sizeof value);
  return bytes;
}

/// A main file with one polygon record; every field may be set to something wrong.
struct TModelFile {
  int fileCode = 9994;
  std::optional<int> lengthInWords;  ///< none: the right one
  int version = 1000;
  int type = 5;
  int recordType = 5;
  double xMin = 0, yMin = 0, xMax = 10, yMax = 10;
  double zMin = 0, zMax = 0, mMin = 0, mMax = 0;
  std::optional<int> numParts;
  std::optional<int> numPoints;
  std::vector<int> parts;
  std::vector<TShapeFilePoint> points;
  std::string tail;  ///< behind the points

  std::string Box() const {
    return LittleDouble(xMin) + LittleDouble(yMin) + LittleDouble(xMax) + LittleDouble(yMax);
  }
  std::string Record() const {
    std::string bytes = LittleInt(recordType) + Box() +
                        LittleInt(numParts.value_or(static_cast<int>(parts.size())));
    bytes += LittleInt(numPoints.value_or(static_cast<int>(points.size())));
    for (const int part : parts) bytes += LittleInt(part);
    for (const TShapeFilePoint& point : points) {
      bytes += LittleDouble(point.x) + LittleDouble(point.y);
    }
    return bytes + tail;
  }
  std::string Bytes() const {
    const std::string record = Record();
    const int words = static_cast<int>(record.size() / 2);
    std::string bytes = BigInt(fileCode) + std::string(20, '\0');
    bytes += BigInt(lengthInWords.value_or(words + 54)) + LittleInt(version) + LittleInt(type);
    bytes += Box() + LittleDouble(zMin) + LittleDouble(zMax);
    bytes += LittleDouble(mMin) + LittleDouble(mMax);
    return bytes + BigInt(1) + BigInt(words) + record;
  }
};

/// The file of the rings as the format wants it: closed, indices that count the closing points.
inline TModelFile FileOf(const TRings& rings) {
  TModelFile file;
  for (const TShapeFileRing& ring : rings) {
    file.parts.push_back(static_cast<int>(file.points.size()));
    file.points.insert(file.points.end(), ring.begin(), ring.end());
    file.points.push_back(ring.front());
  }
  return file;
}

inline const TShapeFileRing kSquare = {{0, 0}, {0, 10}, {10, 10}, {10, 0}};
inline const TShapeFileRing kTriangle = {{2, 2}, {4, 2}, {3, 4}};

/// For comparing, also where coordinates are not numbers.
inline std::string BytesOf(const TRings& rings) {
  std::string bytes;
  for (const TShapeFileRing& ring : rings) {
    bytes += "ring";
    for (const TShapeFilePoint& point : ring) {
      bytes += LittleDouble(point.x) + LittleDouble(point.y);
    }
  }
  return bytes;
}

struct TModelResult {
  bool good = false;
  TRings rings;
};

/// What reading a polygon of these bytes gives, worked out step by step.
TModelResult ReadByModel(const std::string& bytes);

}  // namespace shape_test
