// Reads big-endian 16-bit images from the page cache with the module, with GDAL and by the shortest
// way that there is; compares what they give, then measures them side by side.
#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <cstring>
#include <iostream>
#include <list>
#include <regex>
#include <stdexcept>
#include <string_view>

#include "SatCommonUtils/Module.h"
#include "bench/raster/Jobs.h"
#include "bench/raster/KernelBenchmarks.h"
#include "bench/raster/Table.h"

namespace RavelinBench {
namespace {

/// The module is up while this lives.
struct TModuleScope {
  TModuleScope() { Init_Ravelin(); }
  TModuleScope(const TModuleScope&) = delete;
  TModuleScope& operator=(const TModuleScope&) = delete;
  ~TModuleScope() { Deinit_Ravelin(); }
};

/// An image and all that read it; of large ones the module alone.
struct TImage {
  TDataSet set;
  std::vector<TJob> jobs;  ///< of `set`
  std::unique_ptr<TReader> ours;
  std::unique_ptr<TReader> peer;
  std::unique_ptr<TReader> floor;
};

/// "raw/whole/ours" and the like.
std::vector<std::pair<std::string, TReader*>> Variants(const TImage& image) {
  if (image.set.isLarge) return {{"/4x", image.ours.get()}};
  return {
      {"/ours", image.ours.get()}, {"/peer:GDAL", image.peer.get()}, {"/floor", image.floor.get()}};
}

/// What a pass is measured by: time on the wall, or only the time that this thread runs.
clockid_t measuringClock = CLOCK_MONOTONIC;

double Seconds() {
  timespec now{};
  ::clock_gettime(measuringClock, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

void RunPasses(benchmark::State& state, const TJob& job, TReader& reader,
               std::vector<unsigned char>& out) {
  for (auto unused : state) {
    reader.BeginPass();
    const double begin = Seconds();
    for (const TWindow& window : job.windows) reader.Read(window, out.data());
    state.SetIterationTime(Seconds() - begin);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<long>(job.PassBytes()));
}

void RegisterJob(const TJob& job, const TImage& image, std::vector<unsigned char>& out) {
  for (const auto& [name, reader] : Variants(image)) {
    if (reader == nullptr) continue;
    benchmark::RegisterBenchmark((job.name + name).c_str(),
                                 [&job, &out, reader = reader](benchmark::State& state) {
                                   RunPasses(state, job, *reader, out);
                                 })
        ->UseManualTime()
        ->Iterations(1)
        ->Unit(benchmark::kMillisecond);
  }
}

/// Which benchmarks are asked for.
std::regex wanted{".*"};

bool IsWanted(const TImage& image) {
  return std::any_of(image.jobs.begin(), image.jobs.end(), [&image](const TJob& job) {
    const auto variants = Variants(image);
    return std::any_of(variants.begin(), variants.end(), [&job](const auto& variant) {
      return std::regex_search(job.name + variant.first, wanted);
    });
  });
}

/// Makes files and readers.
void Prepare(TImage& image) {
  const TDataSet& set = image.set;
  MakeFiles(set);
  image.ours = set.level > 0 ? MakeModuleLevelReader(set) : MakeModuleReader(set);
  if (set.isLarge) return;
  image.floor = set.level > 0 ? MakeFloorLevelReader(set) : MakeFloorReader(set);
  if (set.level == 0) image.peer = MakeGdalReader(set);
  for (const TJob& job : image.jobs) {
    CheckEqual(job, {image.floor.get(), image.ours.get(), image.peer.get()});
  }
}

/// Those of which a benchmark is asked for.
std::list<TImage> MakeImages(const std::filesystem::path& folder) {
  std::vector<TDataSet> sets;
  for (const bool isLarge : {false, true}) {
    sets.push_back(RawBand(folder, isLarge));
    for (const int channels : {3, 4, 7, 13}) sets.push_back(Bands(folder, channels, isLarge));
    sets.push_back(Mosaic(folder, isLarge));
    for (const unsigned long level : {1, 2}) sets.push_back(MosaicLevel(level, isLarge));
  }
  std::list<TImage> images;
  for (TDataSet& set : sets) {
    images.push_back({std::move(set), {}, nullptr, nullptr, nullptr});
    images.back().jobs = JobsFor(images.back().set);
    if (IsWanted(images.back())) {
      Prepare(images.back());
    } else {
      images.pop_back();
    }
  }
  return images;
}

void Run() {
  const TTempFolder folder;
  const TModuleScope module;
  const std::list<TImage> images = MakeImages(folder.Path());
  std::vector<std::string> groups;
  std::vector<unsigned char> out;
  for (const TImage& image : images) {
    for (const TJob& job : image.jobs) {
      out.resize(std::max(out.size(), job.LargestBytes()));
      if (!image.set.isLarge) groups.push_back(job.name);
      RegisterJob(job, image, out);
    }
  }
  const std::vector<std::string> kernelGroups = RegisterKernelBenchmarks();
  TTableReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintJobs(std::cout, groups);
  reporter.PrintKernels(std::cout, kernelGroups);
}

/// The arguments for the benchmark library. The defaults come first, so that what the user gives
/// wins; our own option is taken out, and the filter looked at.
std::vector<char*> WithDefaults(int argc, char** argv) {
  static std::string defaults[] = {"--benchmark_repetitions=9",
                                   "--benchmark_enable_random_interleaving=true",
                                   "--benchmark_display_aggregates_only=true"};
  std::vector<char*> arguments{argv[0]};
  for (std::string& argument : defaults) arguments.push_back(argument.data());
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--cpu_time") == 0) {
      measuringClock = CLOCK_THREAD_CPUTIME_ID;
      continue;
    }
    constexpr std::string_view kFilter = "--benchmark_filter=";
    const std::string_view argument = argv[i];
    if (argument.substr(0, kFilter.size()) == kFilter) {
      wanted = std::string(argument.substr(kFilter.size()));
    }
    arguments.push_back(argv[i]);
  }
  return arguments;
}

}  // namespace
}  // namespace RavelinBench

int main(int argc, char** argv) {
  std::vector<char*> arguments = RavelinBench::WithDefaults(argc, argv);
  int count = static_cast<int>(arguments.size());
  benchmark::Initialize(&count, arguments.data());
  if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 2;
  try {
    RavelinBench::Run();
  } catch (const std::exception& error) {
    std::cerr << "bench_raster: " << error.what() << '\n';
    return 1;
  }
  return 0;
}
