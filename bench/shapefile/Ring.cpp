#include "bench/shapefile/Ring.h"

#include <stdlib.h>

#include <cmath>
#include <filesystem>
#include <random>
#include <stdexcept>

namespace RavelinBench {
namespace {

class TFolder {
 public:
  TFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "ravelin-bench-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = name;
  }
  TFolder(const TFolder&) = delete;
  TFolder& operator=(const TFolder&) = delete;
  ~TFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace

const SatCommonUtils::TShapeFileRing& Ring() {
  static const SatCommonUtils::TShapeFileRing ring = [] {
    SatCommonUtils::TShapeFileRing points(kPoints);
    std::mt19937 random(1);
    std::uniform_real_distribution<double> radius(9.9, 10.0);
    for (int i = 0; i < kPoints; ++i) {
      const double angle = -2 * M_PI * i / kPoints;
      const double r = radius(random);
      points[static_cast<std::size_t>(i)] = {r * std::cos(angle), r * std::sin(angle)};
    }
    return points;
  }();
  return ring;
}

const TClosedRing& ClosedRing() {
  static const TClosedRing closed = [] {
    TClosedRing ring;
    for (const auto& point : Ring()) {
      ring.x.push_back(point.x);
      ring.y.push_back(point.y);
    }
    ring.x.push_back(ring.x.front());
    ring.y.push_back(ring.y.front());
    return ring;
  }();
  return closed;
}

std::string TemporaryPath(const std::string& name) {
  static const TFolder folder;
  return folder.Path() + "/" + name;
}

const std::string& RingFile() {
  static const std::string path = [] {
    SatCommonUtils::TShapeFilePolygonData data;
    std::string name = TemporaryPath("ring.shp");
    if (!data.Setup({Ring()}) || !data.WriteToFile(name)) {
      throw std::runtime_error("the ring cannot be written");
    }
    return name;
  }();
  return path;
}

}  // namespace RavelinBench
