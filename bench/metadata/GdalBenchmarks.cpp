// Reads the statements of NASA PVL with GDAL's parser of keyword files, from memory.
#include <benchmark/benchmark.h>
#include <cpl_vsi.h>
#include <cplkeywordparser.h>

#include <stdexcept>
#include <string>

#include "bench/metadata/Labels.h"

namespace RavelinBench {
namespace {

int CountKeywords(const char* path) {
  CPLKeywordParser parser;
  VSILFILE* const file = VSIFOpenL(path, "rb");
  const bool parsed = file != nullptr && parser.Ingest(file) != 0;
  if (file != nullptr) VSIFCloseL(file);
  if (!parsed) throw std::runtime_error("GDAL does not read the label");
  return CSLCount(parser.GetAllKeywords());
}

void BenchGdal(benchmark::State& state) {
  constexpr const char* kPath = "/vsimem/bench_label.txt";
  std::string text = ManyStatements();
  VSIFCloseL(VSIFileFromMemBuffer(kPath, reinterpret_cast<GByte*>(text.data()), text.size(), 0));
  if (CountKeywords(kPath) != kManyStatements) throw std::runtime_error("statements are missing");
  for (auto unused : state) benchmark::DoNotOptimize(CountKeywords(kPath));
  state.SetBytesProcessed(state.iterations() * static_cast<long>(text.size()));
  VSIUnlink(kPath);
}

BENCHMARK(BenchGdal)->Name("nasa_pvl/gdal");

}  // namespace
}  // namespace RavelinBench
