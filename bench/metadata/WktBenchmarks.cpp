// Converts WKT from text to text.
#include <benchmark/benchmark.h>

#include <stdexcept>
#include <string>

#include "SatCommonUtils/Metadata.h"
#include "bench/metadata/Labels.h"

namespace RavelinBench {
namespace {

/// The real texts as siblings in one section, repeated to a megabyte.
std::string JoinedTexts() {
  std::string all;
  for (const TText& text : RealTexts("wkt")) all += "," + text.bytes;
  std::string joined = "ALL[\"texts\"";
  while (!all.empty() && joined.size() < 1000000) joined += all;
  return joined + "]";
}

void BenchWkt(benchmark::State& state, const std::string& text) {
  std::string xml;
  SatCommonUtils::WktSectionToXml(text, &xml);
  if (xml.size() < text.size()) throw std::runtime_error("the text ends before its end");
  for (auto unused : state) {
    SatCommonUtils::WktSectionToXml(text, &xml);
    benchmark::DoNotOptimize(xml.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<long>(text.size()));
}

BENCHMARK_CAPTURE(BenchWkt, siblings, ManySections())->Name("wkt/siblings");

const bool realTexts = [] {
  const std::string joined = JoinedTexts();
  if (joined.size() > 1000) benchmark::RegisterBenchmark("wkt/real", BenchWkt, joined);
  return true;
}();

}  // namespace
}  // namespace RavelinBench
