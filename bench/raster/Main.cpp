// Reads big-endian 16-bit images from the page cache with the module, with GDAL and by the shortest
// way that there is; compares what they give, then measures them side by side.
#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <cstring>
#include <iostream>
#include <list>
#include <stdexcept>

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

/// An image and all that read it.
struct TImage {
  TDataSet set;
  std::unique_ptr<TReader> ravelin = MakeModuleReader(set);
  std::unique_ptr<TReader> gdal = MakeGdalReader(set);
  std::unique_ptr<TReader> floor = MakeFloorReader(set);
};

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
  const std::pair<const char*, TReader*> readers[] = {{"/ravelin", image.ravelin.get()},
                                                      {"/gdal", image.gdal.get()},
                                                      {"/floor", image.floor.get()}};
  for (const auto& [name, reader] : readers) {
    if (reader == nullptr) continue;
    benchmark::RegisterBenchmark((job.name + name).c_str(),
                                 [&job, &out, reader = reader](benchmark::State& state) {
                                   RunPasses(state, job, *reader, out);
                                 })
        ->UseManualTime()
        ->Iterations(2)
        ->Unit(benchmark::kMillisecond);
  }
}

std::list<TImage> MakeImages(const std::filesystem::path& folder) {
  std::list<TImage> images;
  for (TDataSet set :
       {MakeRawBand(folder), MakeBands(folder, 3), MakeBands(folder, 7), MakeMosaic(folder)}) {
    images.push_back({std::move(set)});
  }
  return images;
}

void Run() {
  const TTempFolder folder;
  const TModuleScope module;
  const std::list<TImage> images = MakeImages(folder.Path());
  std::list<TJob> jobs;
  std::vector<std::string> groups;
  std::vector<unsigned char> out;
  for (const TImage& image : images) {
    for (TJob& job : JobsFor(image.set)) {
      CheckEqual(job, {image.floor.get(), image.ravelin.get(), image.gdal.get()});
      out.resize(std::max(out.size(), job.LargestBytes()));
      groups.push_back(job.name);
      jobs.push_back(std::move(job));
      RegisterJob(jobs.back(), image, out);
    }
  }
  const std::vector<std::string> kernelGroups = RegisterKernelBenchmarks();
  TTableReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintJobs(std::cout, groups);
  reporter.PrintKernels(std::cout, kernelGroups);
}

/// The arguments for the benchmark library. The defaults come first, so that what the user gives
/// wins; our own option is taken out.
std::vector<char*> WithDefaults(int argc, char** argv) {
  static std::string defaults[] = {"--benchmark_repetitions=9",
                                   "--benchmark_enable_random_interleaving=true",
                                   "--benchmark_display_aggregates_only=true"};
  std::vector<char*> arguments{argv[0]};
  for (std::string& argument : defaults) arguments.push_back(argument.data());
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--cpu_time") == 0) {
      measuringClock = CLOCK_THREAD_CPUTIME_ID;
    } else {
      arguments.push_back(argv[i]);
    }
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
