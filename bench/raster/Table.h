// The results as tables: a line a job, the readers beside each other.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace RavelinBench {

/// Reports to the console as usual and keeps the times for the tables: medians where a benchmark
/// is repeated, else the one time. Benchmarks are named "group/variant"; a group is a line.
class TTableReporter : public benchmark::ConsoleReporter {
 public:
  TTableReporter();

  void ReportRuns(const std::vector<Run>& runs) override;

  /// Milliseconds of the jobs, the ratios peer / ours and ours / floor. What was not run is "-".
  void PrintJobs(std::ostream& out, const std::vector<std::string>& groups) const;
  /// How many times each kernel set is as fast as the typed loop.
  void PrintKernels(std::ostream& out, const std::vector<std::string>& groups) const;

 private:
  std::string Milliseconds(const std::string& benchmark) const;
  std::string Ratio(const std::string& over, const std::string& under) const;

  std::map<std::string, double> seconds_;  ///< by the benchmark's name
};

}  // namespace RavelinBench
