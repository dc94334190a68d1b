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

SatCommonUtils::TShapeFileRing Ring(int points) {
  SatCommonUtils::TShapeFileRing ring;
  std::mt19937 random(1);
  std::uniform_real_distribution<double> radius(9.9, 10.0);
  for (int i = 0; i < points; ++i) {
    const double angle = -2 * M_PI * i / points;
    const double r = radius(random);
    ring.push_back({r * std::cos(angle), r * std::sin(angle)});
  }
  return ring;
}

TClosedRing ClosedRing(int points) {
  TClosedRing closed;
  for (const auto& point : Ring(points)) {
    closed.x.push_back(point.x);
    closed.y.push_back(point.y);
  }
  closed.x.push_back(closed.x.front());
  closed.y.push_back(closed.y.front());
  return closed;
}

std::string TemporaryPath(const std::string& name) {
  static const TFolder folder;
  return folder.Path() + "/" + name;
}

void RemoveUntimed(const std::string& path, benchmark::State* state) {
  state->PauseTiming();
  for (const char* ending : {".shp", ".shx", ".dbf"}) {
    std::filesystem::remove(std::filesystem::path(path).replace_extension(ending));
  }
  state->ResumeTiming();
}

std::string RingFile(const std::string& name, int points) {
  SatCommonUtils::TShapeFilePolygonData data;
  std::string path = TemporaryPath(name);
  if (!data.Setup({Ring(points)}) || !data.WriteToFile(path)) {
    throw std::runtime_error("the ring cannot be written");
  }
  return path;
}

}  // namespace RavelinBench
