#include "host/scene/Footprint.h"

#include <algorithm>
#include <vector>

#include "Kv/Stream.h"
#include "Kv/Text.h"
#include "host/HostError.h"
#include "host/PngWriter.h"
#include "host/ShapeCompanions.h"
#include "host/ShapeOutline.h"
#include "host/scene/SceneLog.h"

namespace ravelin {
namespace {

using SatCommonUtils::TSatLog;
using SatCommonUtils::TShapeFilePolygonData;
using SatCommonUtils::TShapeFileRing;

constexpr ImageSize kDrawing = {512, 512};

constexpr const char* kWgs84 =
    "GEOGCS[\"WGS 84\",DATUM[\"WGS_1984\",SPHEROID[\"WGS 84\",6378137,298.257223563]],"
    "PRIMEM[\"Greenwich\",0],UNIT[\"degree\",0.0174532925199433],AUTHORITY[\"EPSG\",\"4326\"]]\n";

bool IsWgs84(const std::string& datum) {
  std::string name = toupper(datum);
  std::erase_if(name, [](char c) { return c == ' ' || c == '_' || c == '-'; });
  return name == "WGS84" || name == "WGS1984";
}

/// Twice the area, positive when the ring runs anticlockwise.
double SignedArea(const TShapeFileRing& ring) {
  double area = 0;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const auto& a = ring[i];
    const auto& b = ring[(i + 1) % ring.size()];
    area += (a.x - ring[0].x) * (b.y - ring[0].y) - (b.x - ring[0].x) * (a.y - ring[0].y);
  }
  return area;
}

TShapeFileRing RingOf(const SceneCorners& corners) {
  TShapeFileRing ring = {corners.upperLeft, corners.upperRight, corners.lowerRight,
                         corners.lowerLeft};
  if (SignedArea(ring) > 0) std::reverse(ring.begin() + 1, ring.end());
  return ring;
}

Footprint InDegrees(const SceneDescription& scene, const std::optional<Projection>& projection) {
  Footprint footprint = {RingOf(*scene.degrees), "", "degrees"};
  if (projection && !projection->IsProjected()) {
    footprint.prj = projection->wkt;
  } else if (IsWgs84(scene.datum)) {
    footprint.prj = kWgs84;
  }
  return footprint;
}

std::string MainFile(const TShapeFileRing& ring, const std::string& name) {
  TShapeFilePolygonData polygon;
  TKvMemoryStream stream;
  if (!polygon.Setup({ring}) || !polygon.Write(&stream)) {
    throw HostError(name, "the corners make no polygon", "check the corners in the label");
  }
  return stream.Bytes();
}

void AddDrawing(const TShapeFileRing& ring, SceneOutput& output) {
  const std::string name = "footprint.png";
  const GreyPicture picture = DrawOutline({ring}, kDrawing);
  PngWriter writer(output.Add(name), {picture.size.width, picture.size.height, 1, 8},
                   output.PathOf(name));
  for (long row = 0; row < picture.size.height; ++row) {
    writer.WriteRow(picture.pixels.data() + row * picture.size.width);
  }
  writer.Finish();
}

}  // namespace

std::optional<Footprint> MakeFootprint(const SceneDescription& scene,
                                       const std::optional<Projection>& projection, TSatLog* log) {
  std::optional<Footprint> footprint;
  if (scene.metres && projection && projection->IsProjected()) {
    footprint = {RingOf(*scene.metres), projection->wkt, "the units of the projection"};
  } else if (scene.degrees) {
    footprint = InDegrees(scene, projection);
  } else if (scene.metres) {
    footprint = {RingOf(*scene.metres), "", "the units of the projection"};
  }
  if (!footprint) {
    LogInfo(log, "footprint: none, the label gives no corners");
    return footprint;
  }
  LogInfo(log, "footprint: in " + footprint->units);
  if (footprint->prj.empty()) {
    LogWarning(log, "footprint: without footprint.prj, its coordinate system is not known");
  }
  return footprint;
}

void AddFootprint(const Footprint& footprint, SceneOutput& output) {
  const std::string name = "footprint.shp";
  const std::string mainFile = MainFile(footprint.ring, output.PathOf(name));
  const ShapeCompanions companions = MakeShapeCompanions(mainFile, output.PathOf(name));
  output.AddBytes(name, mainFile);
  output.AddBytes("footprint.shx", companions.index);
  output.AddBytes("footprint.dbf", companions.attributes);
  if (!footprint.prj.empty()) output.AddBytes("footprint.prj", footprint.prj);
  AddDrawing(footprint.ring, output);
}

}  // namespace ravelin
