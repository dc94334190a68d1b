// Runs the benchmarks of shapefiles, with the services up as they are in a host. Large memory is
// always taken fresh from the system, as a program that reads one outline gets it.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include "SatCommonUtils/Module.h"

int main(int argc, char** argv) {
  mallopt(M_MMAP_THRESHOLD, 1 << 17);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  Init_Ravelin();
  benchmark::RunSpecifiedBenchmarks();
  Deinit_Ravelin();
  return 0;
}
