// Converts NASA PVL from a memory stream to a memory stream, beside the least that any conversion
// does.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "SatCommonUtils/Metadata.h"
#include "bench/metadata/Labels.h"

namespace RavelinBench {
namespace {

using StreamPointer = var_a_legacy::var_a<TKvStream*>;

std::string Convert(const std::string& text) {
  auto* const bytes = new TKvMemoryStream;
  const StreamPointer out(bytes);
  if (!SatCommonUtils::NASA_PVLtoXML(StreamPointer(new TKvMemoryStream(text)), out)) {
    throw std::runtime_error("the label does not convert");
  }
  return bytes->Bytes();
}

void SetSpeed(benchmark::State& state, const std::string& text) {
  state.SetBytesProcessed(state.iterations() * static_cast<long>(text.size()));
}

void BenchConvert(benchmark::State& state, const std::string& text) {
  const StreamPointer in(new TKvMemoryStream(text));
  for (auto unused : state) {
    SatCommonUtils::NASA_PVLtoXML(in, StreamPointer(new TKvMemoryStream));
  }
  SetSpeed(state, text);
}

/// What the XML is put together from: indentation, marks, names, values, line ends.
std::vector<std::string_view> Pieces(std::string_view xml) {
  std::vector<std::string_view> pieces;
  while (!xml.empty()) {
    const bool mark = std::strchr("\t<>/\n", xml.front()) != nullptr;
    const std::size_t other =
        mark ? xml.find_first_not_of(xml.front() == '\t' ? "\t" : "</") : xml.find_first_of("<>\n");
    const std::size_t length = std::min(std::max<std::size_t>(other, 1), xml.size());
    pieces.push_back(xml.substr(0, length));
    xml.remove_prefix(length);
  }
  return pieces;
}

/// Finds the lines of the text with memchr and appends the pieces of the XML that it gives, to a
/// string and from there to a stream.
void BenchFloor(benchmark::State& state) {
  const std::string& text = ManyStatements();
  const std::string xml = Convert(text);
  const std::vector<std::string_view> pieces = Pieces(xml);
  for (auto unused : state) {
    const char* const end = text.data() + text.size();
    const void* line = text.data();
    while (line != nullptr) {
      const char* const begin = static_cast<const char*>(line) + 1;
      line = std::memchr(begin, '\n', static_cast<std::size_t>(end - begin));
      benchmark::DoNotOptimize(line);
    }
    std::string out;
    for (const std::string_view piece : pieces) out.append(piece);
    TKvMemoryStream stream;
    if (stream.Write(out.data(), out.size()) != xml.size())
      throw std::runtime_error("the pieces are not all of the XML");
  }
  SetSpeed(state, text);
}

BENCHMARK_CAPTURE(BenchConvert, many, ManyStatements())->Name("nasa_pvl/ravelin");
BENCHMARK(BenchFloor)->Name("nasa_pvl/floor");

const bool realLabels = [] {
  for (const TText& label : RealTexts("pvl/nasa/mtl")) {
    benchmark::RegisterBenchmark(("nasa_pvl_real/" + label.name).c_str(), BenchConvert,
                                 label.bytes);
  }
  return true;
}();

}  // namespace
}  // namespace RavelinBench
