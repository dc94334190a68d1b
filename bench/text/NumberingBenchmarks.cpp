// Names that are not taken, among many that are.
#include <benchmark/benchmark.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "SatCommonUtils/Text.h"

namespace RavelinBench {
namespace {

using SatCommonUtils::GenerateUniqueString;

/// 100,000 names, the first `inARow` of them those that the search for a name meets.
std::vector<std::string> Names(int inARow) {
  std::vector<std::string> names = {"Band"};
  for (int i = 1; i < inARow; ++i) names.push_back("BAND[" + std::to_string(i) + "]");
  while (names.size() < 100000) names.push_back("Layer " + std::to_string(names.size()));
  return names;
}

void BenchUnique(benchmark::State& state, int inARow) {
  const std::vector<std::string> names = Names(inARow);
  const std::string expected = "band[" + std::to_string(inARow) + "]";
  if (GenerateUniqueString("band", names, false) != expected) {
    throw std::runtime_error("another name is unique");
  }
  for (auto unused : state) benchmark::DoNotOptimize(GenerateUniqueString("band", names, false));
}

BENCHMARK_CAPTURE(BenchUnique, , 1)->Name("unique/one_taken")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BenchUnique, , 10000)
    ->Name("unique/ten_thousand_taken")
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace RavelinBench
