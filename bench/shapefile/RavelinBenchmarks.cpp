// Writes and reads the ring with the module.
#include <benchmark/benchmark.h>

#include <stdexcept>

#include "SatCommonUtils/Shapefile.h"
#include "bench/shapefile/Ring.h"

namespace RavelinBench {
namespace {

using SatCommonUtils::TShapeFilePolygonData;

void BenchWrite(benchmark::State& state) {
  TShapeFilePolygonData data;
  data.Setup({Ring()});
  const std::string path = TemporaryPath("ravelin.shp");
  for (auto unused : state) {
    if (!data.WriteToFile(path)) throw std::runtime_error("not written");
  }
}

void BenchRead(benchmark::State& state) {
  const std::string& path = RingFile();
  for (auto unused : state) {
    TShapeFilePolygonData data;
    if (!data.InitializeFromFile(path) || data.GetPointsNumber() != kPoints + 1) {
      throw std::runtime_error("not read");
    }
    benchmark::DoNotOptimize(data.rings.data());
  }
}

BENCHMARK(BenchWrite)->Name("write/ravelin")->Unit(benchmark::kMillisecond);
BENCHMARK(BenchRead)->Name("read/ravelin")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace RavelinBench
