// Searches a list of a million file names by mask, beside the C library's matching of patterns.
#include <benchmark/benchmark.h>
#include <fnmatch.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "SatCommonUtils/Files.h"

namespace {

using SatCommonUtils::TFilenamesList;

constexpr int kNames = 1000000;

/// Names as products have them, a tenth of each kind of ending, in either letter case.
std::vector<std::string> MakeNames() {
  const char* const endings[] = {"B1.TIF",  "b2.tif", "B3.TIF", "b4.tif",   "MTL.txt",
                                 "ang.TXT", "B8.raw", "QA.TIF", "meta.xml", "b1.ovr"};
  std::vector<std::string> names;
  for (int i = 0; i < kNames; ++i) {
    names.push_back("LC08_L2SP_" + std::to_string(200000 + i) + "_20190114_" + endings[i % 10]);
  }
  return names;
}

const std::vector<std::string>& Names() {
  static const std::vector<std::string> names = MakeNames();
  return names;
}

const TFilenamesList& List() {
  static const TFilenamesList list = [] {
    TFilenamesList made;
    for (const std::string& name : Names()) made.Insert(name);
    return made;
  }();
  return list;
}

void Count(benchmark::State& state, const char* mask) {
  for (auto unused : state) benchmark::DoNotOptimize(List().FindAll(mask, nullptr));
  state.SetItemsProcessed(state.iterations() * kNames);
}

void FindAll(benchmark::State& state, const char* mask) {
  if (List().FindAll(mask, nullptr) == 0) throw std::runtime_error("nothing matches");
  for (auto unused : state) {
    std::vector<std::string> found;
    List().FindAll(mask, &found);
    benchmark::DoNotOptimize(found.data());
  }
  state.SetItemsProcessed(state.iterations() * kNames);
}

void CountWithFnmatch(benchmark::State& state, const char* pattern) {
  for (auto unused : state) {
    long count = 0;
    for (const std::string& name : Names()) {
      count += ::fnmatch(pattern, name.c_str(), FNM_CASEFOLD) == 0;
    }
    benchmark::DoNotOptimize(count);
  }
  state.SetItemsProcessed(state.iterations() * kNames);
}

BENCHMARK_CAPTURE(Count, ending, "*.tif")->Name("count/ending");
BENCHMARK_CAPTURE(Count, piece, "lc08_????_??????_20190114_b?.*")->Name("count/piece");
BENCHMARK_CAPTURE(Count, suffix, "#_mtl.txt")->Name("count/suffix");
BENCHMARK_CAPTURE(Count, hostile, "*a*a*a*a*b")->Name("count/hostile");
BENCHMARK_CAPTURE(FindAll, ending, "*.tif")->Name("find_all/ending");
BENCHMARK_CAPTURE(CountWithFnmatch, ending, "*.tif")->Name("fnmatch/ending");
BENCHMARK_CAPTURE(CountWithFnmatch, hostile, "*1*1*1*1*z")->Name("fnmatch/hostile");

}  // namespace
