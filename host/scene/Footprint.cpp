#include "host/scene/Footprint.h"

#include <utility>

#include "Kv/Text.h"
#include "host/HostError.h"
#include "host/scene/SceneLog.h"
#include "host/shapefile/ShapeCompanions.h"
#include "host/shapefile/ShapeOutline.h"
#include "host/shapefile/ShapeRing.h"

namespace ravelin {
namespace {

using SatCommonUtils::TSatLog;
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

TShapeFileRing RingOf(const SceneCorners& corners) {
  TShapeFileRing ring = {corners.upperLeft, corners.upperRight, corners.lowerRight,
                         corners.lowerLeft};
  MakeClockwise(&ring);
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
  std::optional<std::string> bytes = ShapeMainFile(ring);
  if (!bytes)
    throw HostError(name, "the corners make no polygon", "check the corners in the label");
  return *std::move(bytes);
}

void AddDrawing(const TShapeFileRing& ring, SceneOutput& output) {
  const std::string name = "footprint.png";
  WriteGreyPicture(DrawOutline({ring}, kDrawing), output.Add(name), output.PathOf(name));
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
