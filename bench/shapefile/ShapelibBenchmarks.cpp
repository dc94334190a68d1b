// Writes and reads the ring with shapelib, which writes the index, too.
#include <benchmark/benchmark.h>
#include <shapefil.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "bench/shapefile/Ring.h"

namespace RavelinBench {
namespace {

using TFile = std::unique_ptr<SHPInfo, decltype(&SHPClose)>;
using TObject = std::unique_ptr<SHPObject, decltype(&SHPDestroyObject)>;

TObject Object() {
  const TClosedRing ring = ClosedRing(kPoints);
  return {SHPCreateSimpleObject(SHPT_POLYGON, static_cast<int>(ring.x.size()), ring.x.data(),
                                ring.y.data(), nullptr),
          &SHPDestroyObject};
}

void Write(const std::string& path, const SHPObject* object) {
  const TFile file(SHPCreate(path.c_str(), SHPT_POLYGON), &SHPClose);
  if (file == nullptr || SHPWriteObject(file.get(), -1, const_cast<SHPObject*>(object)) < 0) {
    throw std::runtime_error("not written");
  }
}

void BenchWrite(benchmark::State& state) {
  const TObject object = Object();
  const std::string path = TemporaryPath("shapelib.shp");
  for (auto unused : state) {
    RemoveUntimed(path, &state);
    Write(path, object.get());
  }
}

void BenchRead(benchmark::State& state) {
  const std::string path = TemporaryPath("shapelib_read.shp");
  Write(path, Object().get());
  for (auto unused : state) {
    const TFile file(SHPOpen(path.c_str(), "rb"), &SHPClose);
    const TObject object(file == nullptr ? nullptr : SHPReadObject(file.get(), 0),
                         &SHPDestroyObject);
    if (object == nullptr || object->nVertices != kPoints + 1) throw std::runtime_error("not read");
    benchmark::DoNotOptimize(object->padfX);
  }
}

BENCHMARK(BenchWrite)->Name("shapefile_write/peer:shapelib")->Unit(benchmark::kMillisecond);
BENCHMARK(BenchRead)->Name("shapefile_read/peer:shapelib")->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace RavelinBench
