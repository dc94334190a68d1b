// Writes and reads the ring with OGR, which writes index and attributes, too.
#include <benchmark/benchmark.h>
#include <ogrsf_frmts.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "bench/shapefile/Ring.h"

namespace RavelinBench {
namespace {

OGRPolygon Polygon() {
  const TClosedRing closed = ClosedRing(kPoints);
  OGRLinearRing ring;
  ring.setPoints(static_cast<int>(closed.x.size()), closed.x.data(), closed.y.data());
  OGRPolygon polygon;
  polygon.addRing(&ring);
  return polygon;
}

void Write(const std::string& path, const OGRPolygon& polygon) {
  GDALDriver* const driver = GetGDALDriverManager()->GetDriverByName("ESRI Shapefile");
  const GDALDatasetUniquePtr data(driver->Create(path.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
  OGRLayer* const layer = data->CreateLayer("ring", nullptr, wkbPolygon, nullptr);
  const std::unique_ptr<OGRFeature> feature(new OGRFeature(layer->GetLayerDefn()));
  feature->SetGeometry(&polygon);
  if (layer->CreateFeature(feature.get()) != OGRERR_NONE) throw std::runtime_error("not written");
}

int ReadPoints(const std::string& path) {
  const GDALDatasetUniquePtr data(GDALDataset::Open(path.c_str(), GDAL_OF_VECTOR));
  if (data == nullptr) throw std::runtime_error("not opened");
  const std::unique_ptr<OGRFeature> feature(data->GetLayer(0)->GetNextFeature());
  if (feature == nullptr) throw std::runtime_error("not read");
  return feature->GetGeometryRef()->toPolygon()->getExteriorRing()->getNumPoints();
}

void BenchWrite(benchmark::State& state) {
  const OGRPolygon polygon = Polygon();
  const std::string path = TemporaryPath("ogr.shp");
  for (auto unused : state) {
    RemoveUntimed(path, &state);
    Write(path, polygon);
  }
}

void BenchRead(benchmark::State& state) {
  const std::string path = TemporaryPath("ogr_read.shp");
  Write(path, Polygon());
  for (auto unused : state) {
    if (ReadPoints(path) != kPoints + 1) throw std::runtime_error("points are missing");
  }
}

const bool registered = [] {
  GDALAllRegister();
  benchmark::RegisterBenchmark("shapefile_write/peer:OGR", BenchWrite)
      ->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark("shapefile_read/peer:OGR", BenchRead)->Unit(benchmark::kMillisecond);
  return true;
}();

}  // namespace
}  // namespace RavelinBench
