// Converts PVL of both dialects from a memory stream to a memory stream, beside the least that any
// conversion does.
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

using StreamPointer = var_a_legacy::var_a<TKvStream*>;

void Convert(TDialect dialect, const StreamPointer& in, const StreamPointer& out) {
  if (dialect == TDialect::kNasa) {
    SatCommonUtils::NASA_PVLtoXML(in, out);
  } else {
    SatCommonUtils::PVLtoXML(in, out);
  }
}

std::string Converted(TDialect dialect, const std::string& text) {
  auto* const bytes = new TKvMemoryStream;
  const StreamPointer out(bytes);
  Convert(dialect, StreamPointer(new TKvMemoryStream(text)), out);
  return bytes->Bytes();
}

void SetSpeed(benchmark::State& state, const std::string& text) {
  state.SetBytesProcessed(state.iterations() * static_cast<long>(text.size()));
}

void BenchConvert(benchmark::State& state, TDialect dialect, const std::string& text) {
  const StreamPointer in(new TKvMemoryStream(text));
  for (auto unused : state) Convert(dialect, in, StreamPointer(new TKvMemoryStream));
  SetSpeed(state, text);
}

/// Finds the lines of the text and appends the pieces of the XML that it gives, to a string and
/// from there to a stream.
void BenchFloor(benchmark::State& state, TDialect dialect, const std::string& text) {
  const std::string xml = Converted(dialect, text);
  const std::vector<std::string_view> pieces = Pieces(xml);
  for (auto unused : state) {
    ScanFor('\n', text);
    const std::string out = Joined(pieces);
    TKvMemoryStream stream;
    if (stream.Write(out.data(), out.size()) != xml.size()) {
      throw std::runtime_error("the pieces are not all of the XML");
    }
  }
  SetSpeed(state, text);
}

/// How many semicolons and equals signs stand outside quotes; a backslash guards a quote.
long StatementEnds(std::string_view text) {
  long ends = 0;
  bool quoted = false;
  char previous = '\0';
  for (const char c : text) {
    if (c == '"' && previous != '\\') quoted = !quoted;
    if (!quoted && (c == ';' || c == '=')) ++ends;
    previous = c;
  }
  return ends;
}

/// Of hostile texts: reads the lines, looks at every byte for quotes and for what ends statements
/// outside of them, and appends the pieces as above.
void BenchHostileFloor(benchmark::State& state, TDialect dialect, const std::string& text) {
  const std::string xml = Converted(dialect, text);
  const std::vector<std::string_view> pieces = Pieces(xml);
  std::string lines(text.size(), '\0');
  for (auto unused : state) {
    CopyLines(text, &lines);
    benchmark::DoNotOptimize(StatementEnds(lines));
    const std::string out = Joined(pieces);
    TKvMemoryStream stream;
    stream.Write(out.data(), out.size());
  }
  SetSpeed(state, text);
}

/// The texts are made when they are run.
using MakeText = std::string (*)(TDialect dialect, int size, int variant);

std::string MakeStatements(TDialect dialect, int size, int /*variant*/) {
  return Statements(dialect, size);
}

std::string MakeHostile(TDialect /*dialect*/, int size, int variant) {
  return HostileLabels(size)[static_cast<std::size_t>(variant)].bytes;
}

struct TLabelJob {
  std::string name;
  TDialect dialect;
  MakeText make;
  void (*floor)(benchmark::State& state, TDialect dialect, const std::string& text);
  int size;
  int variant = 0;
};

void Register(const TLabelJob& job) {
  const auto add = [&job](const char* name, auto bench, int size) {
    benchmark::RegisterBenchmark((job.name + name).c_str(), [=](benchmark::State& state) {
      bench(state, job.dialect, job.make(job.dialect, size, job.variant));
    })->Unit(benchmark::kMillisecond);
  };
  add("/ours", BenchConvert, job.size);
  add("/floor", job.floor, job.size);
  add("/4x", BenchConvert, kGrowth * job.size);
}

const bool registered = [] {
  const int statements = Sized(kStatementsOfMegabyte);
  Register({"nasa_pvl/1MB", TDialect::kNasa, MakeStatements, BenchFloor, statements});
  Register({"nasa_pvl/16MB", TDialect::kNasa, MakeStatements, BenchFloor, 16 * statements});
  Register({"pvl/1MB", TDialect::kGeneral, MakeStatements, BenchFloor, statements});
  Register({"pvl/16MB", TDialect::kGeneral, MakeStatements, BenchFloor, 16 * statements});
  int variant = 0;
  for (const TText& text : HostileLabels(0)) {
    Register({"pvl_hostile/" + text.name, TDialect::kGeneral, MakeHostile, BenchHostileFloor,
              Sized(1000000), variant++});
  }
  for (const TText& label : RealTexts("pvl/nasa/mtl")) {
    benchmark::RegisterBenchmark(("nasa_pvl_real/" + label.name).c_str(), BenchConvert,
                                 TDialect::kNasa, label.bytes);
  }
  return true;
}();

}  // namespace
}  // namespace RavelinBench
