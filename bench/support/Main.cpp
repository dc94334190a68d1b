// Runs the benchmarks of a program. Freed memory stays with the process, so that the system does
// not hand out the same pages anew at each iteration.
#include <benchmark/benchmark.h>
#include <malloc.h>

int main(int argc, char** argv) {
  mallopt(M_MMAP_THRESHOLD, 1 << 30);
  mallopt(M_TRIM_THRESHOLD, 1 << 30);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
