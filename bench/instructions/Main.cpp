// Does one short job, for a tool that counts the instructions between entering and leaving
// ravelin_counted_work.
//
//   instructions JOB
//   instructions          lists the jobs
#include <cstdio>
#include <exception>

#include "SatCommonUtils/Module.h"
#include "bench/instructions/Jobs.h"

/// The tool finds it by this name.
extern "C" [[gnu::noinline]] void ravelin_counted_work(const std::function<void()>& work);

void ravelin_counted_work(const std::function<void()>& work) {
  work();
}

namespace RavelinBench {
namespace {

int Run(const std::vector<TCountedJob>& jobs, const std::string& name) {
  for (const TCountedJob& job : jobs) {
    if (job.name != name) continue;
    Init_Ravelin();
    {
      const std::function<void()> work = job.prepare();
      // Once before, so that what is looked up or made once in a program's life does not count.
      work();
      ravelin_counted_work(work);
    }
    Deinit_Ravelin();
    return 0;
  }
  std::fprintf(stderr, "instructions: no such job: %s\n", name.c_str());
  return 2;
}

int Main(int argc, char** argv) {
  std::vector<TCountedJob> jobs = RasterJobs();
  for (TCountedJob& job : TextJobs()) jobs.push_back(std::move(job));
  if (argc > 1) return Run(jobs, argv[1]);
  for (const TCountedJob& job : jobs) std::printf("%s\n", job.name.c_str());
  return 0;
}

}  // namespace
}  // namespace RavelinBench

int main(int argc, char** argv) {
  try {
    return RavelinBench::Main(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "instructions: %s\n", error.what());
    return 1;
  }
}
