// Writes and reads the ring with the module.
#include <benchmark/benchmark.h>

#include <stdexcept>
#include <string>

#include "SatCommonUtils/Shapefile.h"
#include "bench/shapefile/Ring.h"

namespace RavelinBench {
namespace {

using SatCommonUtils::TShapeFilePolygonData;

void BenchWrite(benchmark::State& state, int points) {
  TShapeFilePolygonData data;
  data.Setup({Ring(points)});
  const std::string path = TemporaryPath("ours" + std::to_string(points) + ".shp");
  for (auto unused : state) {
    RemoveUntimed(path, &state);
    if (!data.WriteToFile(path)) throw std::runtime_error("not written");
  }
}

void BenchRead(benchmark::State& state, int points) {
  const std::string path = RingFile("ring" + std::to_string(points) + ".shp", points);
  for (auto unused : state) {
    TShapeFilePolygonData data;
    if (!data.InitializeFromFile(path) ||
        data.GetPointsNumber() != static_cast<unsigned long>(points) + 1) {
      throw std::runtime_error("not read");
    }
    benchmark::DoNotOptimize(data.rings.data());
  }
}

const bool registered = [] {
  const auto add = [](const char* name, auto bench, int points) {
    benchmark::RegisterBenchmark(name, bench, points)->Unit(benchmark::kMillisecond);
  };
  add("shapefile_write/ours", BenchWrite, kPoints);
  add("shapefile_write/4x", BenchWrite, kGrowth * kPoints);
  add("shapefile_read/ours", BenchRead, kPoints);
  add("shapefile_read/4x", BenchRead, kGrowth * kPoints);
  return true;
}();

}  // namespace
}  // namespace RavelinBench
