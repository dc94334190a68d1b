#include "host/scene/SceneCorners.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "host/scene/SceneLog.h"

namespace ravelin {
namespace {

using SatCommonUtils::TSatLog;
using SatCommonUtils::TShapeFilePoint;
using FourPoints = std::array<TShapeFilePoint, 4>;

constexpr std::array<const char*, 4> kCorners = {"UL", "UR", "LR", "LL"};

/// Reads one coordinate after the other and keeps the names of those that are not there.
class CoordinateReader {
 public:
  explicit CoordinateReader(const LabelScope& label) : label_(label) {}

  double Read(const std::string& name) {
    const std::optional<double> number = label_.Number(name, "--map KEY=" + name);
    if (!number) missing_ += (missing_.empty() ? "" : ", ") + name;
    found_ += number ? 1 : 0;
    return number.value_or(0);
  }

  /// Whether all are there; says so in the log when only some are.
  bool IsComplete(TSatLog* log) const {
    if (found_ > 0 && !missing_.empty()) {
      LogWarning(log, "corners: left out, the label does not give " + missing_);
    }
    return missing_.empty();
  }

 private:
  const LabelScope& label_;
  std::string missing_;
  int found_ = 0;
};

/// The points of all corners by the ends of the names of their coordinates.
std::optional<FourPoints> ReadPoints(const LabelScope& label, const std::string& xEnd,
                                     const std::string& yEnd, TSatLog* log) {
  CoordinateReader reader(label);
  FourPoints points;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const std::string start = std::string("CORNER_") + kCorners[i];
    points[i].x = reader.Read(start + xEnd);
    points[i].y = reader.Read(start + yEnd);
  }
  return reader.IsComplete(log) ? std::optional(points) : std::nullopt;
}

bool IsOnEarth(const TShapeFilePoint& point) {
  return std::abs(point.x) <= 360 && std::abs(point.y) <= 90;
}

bool IsWest(const TShapeFilePoint& a, const TShapeFilePoint& b) {
  return a.x < b.x;
}

/// No scene is wider than half the Earth: one that seems so lies across the meridian of 180
/// degrees.
void JoinAcrossMeridian(FourPoints& points) {
  const auto [west, east] = std::minmax_element(points.begin(), points.end(), IsWest);
  if (east->x - west->x <= 180) return;
  for (TShapeFilePoint& point : points) {
    if (point.x < 0) point.x += 360;
  }
}

SceneCorners CornersOf(const FourPoints& points) {
  return {points[0], points[1], points[2], points[3]};
}

}  // namespace

std::optional<SceneCorners> CornersInDegrees(const LabelScope& label, TSatLog* log) {
  std::optional<FourPoints> points = ReadPoints(label, "_LON_PRODUCT", "_LAT_PRODUCT", log);
  if (!points) return std::nullopt;
  if (!std::all_of(points->begin(), points->end(), IsOnEarth)) {
    LogWarning(log, "corners: left out, one of them is no longitude and latitude in degrees");
    return std::nullopt;
  }
  JoinAcrossMeridian(*points);
  return CornersOf(*points);
}

std::optional<SceneCorners> CornersInProjection(const LabelScope& label, TSatLog* log) {
  const std::optional<FourPoints> points =
      ReadPoints(label, "_PROJECTION_X_PRODUCT", "_PROJECTION_Y_PRODUCT", log);
  return points ? std::optional(CornersOf(*points)) : std::nullopt;
}

}  // namespace ravelin
