// Converts WKT from text to text.
#include <benchmark/benchmark.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "SatCommonUtils/Metadata.h"
#include "bench/metadata/Labels.h"
#include "bench/support/Floor.h"
#include "bench/support/Size.h"

namespace RavelinBench {
namespace {

/// The real texts as siblings in one section, repeated to so many bytes.
std::string JoinedTexts(int bytes) {
  std::string all;
  for (const TText& text : RealTexts("wkt")) all += "," + text.bytes;
  std::string joined = "ALL[\"texts\"";
  while (!all.empty() && joined.size() < static_cast<std::size_t>(bytes)) joined += all;
  return joined + "]";
}

std::string Converted(const std::string& text) {
  std::string xml;
  SatCommonUtils::WktSectionToXml(text, &xml);
  if (xml.size() < text.size()) throw std::runtime_error("the text ends before its end");
  return xml;
}

void BenchWkt(benchmark::State& state, const std::string& text) {
  std::string xml = Converted(text);
  for (auto unused : state) {
    SatCommonUtils::WktSectionToXml(text, &xml);
    benchmark::DoNotOptimize(xml.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<long>(text.size()));
}

/// Finds the commas of the text and appends the pieces of the XML.
void BenchFloor(benchmark::State& state, const std::string& text) {
  const std::string xml = Converted(text);
  const std::vector<std::string_view> pieces = Pieces(xml);
  for (auto unused : state) {
    ScanFor(',', text);
    benchmark::DoNotOptimize(Joined(pieces).data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<long>(text.size()));
}

void Register(const std::string& job, std::string (*make)(int)) {
  const auto add = [&](const char* name, auto bench, int bytes) {
    benchmark::RegisterBenchmark((job + name).c_str(), [=](benchmark::State& state) {
      bench(state, make(bytes));
    })->Unit(benchmark::kMillisecond);
  };
  const int bytes = Sized(1000000);
  add("/ours", BenchWkt, bytes);
  add("/floor", BenchFloor, bytes);
  add("/4x", BenchWkt, kGrowth * bytes);
}

const bool registered = [] {
  Register("wkt/siblings", Sections);
  if (!RealTexts("wkt").empty()) Register("wkt/real", JoinedTexts);
  return true;
}();

}  // namespace
}  // namespace RavelinBench
