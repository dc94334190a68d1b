#include "bench/raster/Table.h"

#include <unistd.h>

#include <iomanip>
#include <sstream>

namespace RavelinBench {
namespace {

std::string Fixed(double value, int digits) {
  std::ostringstream text;
  text << std::fixed << std::setprecision(digits) << value;
  return text.str();
}

void PrintLine(std::ostream& out, const std::string& first, const std::vector<std::string>& rest) {
  out << std::left << std::setw(16) << first << std::right;
  for (const std::string& cell : rest) out << std::setw(15) << cell;
  out << '\n';
}

}  // namespace

TTableReporter::TTableReporter()
    : ConsoleReporter(::isatty(STDOUT_FILENO) != 0 ? OO_ColorTabular : OO_Tabular) {}

void TTableReporter::ReportRuns(const std::vector<Run>& runs) {
  ConsoleReporter::ReportRuns(runs);
  for (const Run& run : runs) {
    const bool median = run.run_type == Run::RT_Aggregate && run.aggregate_name == "median";
    const bool single = run.run_type == Run::RT_Iteration && run.repetitions <= 1;
    if (run.error_occurred || (!median && !single)) continue;
    seconds_[run.run_name.function_name] =
        run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
  }
}

std::string TTableReporter::Milliseconds(const std::string& benchmark) const {
  const auto found = seconds_.find(benchmark);
  return found == seconds_.end() ? "-" : Fixed(found->second * 1e3, 1);
}

std::string TTableReporter::Ratio(const std::string& over, const std::string& under) const {
  const auto a = seconds_.find(over);
  const auto b = seconds_.find(under);
  return a == seconds_.end() || b == seconds_.end() ? "-" : Fixed(a->second / b->second, 2);
}

void TTableReporter::PrintJobs(std::ostream& out, const std::vector<std::string>& groups) const {
  out << "\nMilliseconds a pass, medians\n";
  PrintLine(out, "job", {"ours", "GDAL", "floor", "GDAL / ours", "ours / floor"});
  for (const std::string& group : groups) {
    const std::string ours = group + "/ours";
    const std::string gdal = group + "/peer:GDAL";
    const std::string floor = group + "/floor";
    PrintLine(out, group,
              {Milliseconds(ours), Milliseconds(gdal), Milliseconds(floor), Ratio(gdal, ours),
               Ratio(ours, floor)});
  }
}

void TTableReporter::PrintKernels(std::ostream& out, const std::vector<std::string>& groups) const {
  out << "\nTimes the speed of the plain typed loop, in cache, medians\n";
  PrintLine(out, "kernel", {"plain", "sse4.1", "avx2"});
  for (const std::string& group : groups) {
    const std::string typed = group + "/typed";
    PrintLine(out, group,
              {Ratio(typed, group + "/plain"), Ratio(typed, group + "/sse4.1"),
               Ratio(typed, group + "/avx2")});
  }
}

}  // namespace RavelinBench
