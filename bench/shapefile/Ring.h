// What the shapefile benchmarks write and read: one ring of a million points, and a larger one.
#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "SatCommonUtils/Shapefile.h"
#include "bench/support/Size.h"

namespace RavelinBench {

inline const int kPoints = Sized(1000000);

/// A circle with a rough edge, clockwise, without the closing point.
SatCommonUtils::TShapeFileRing Ring(int points);

/// The ring as it is drawn, closed: x and y apart, as the peers take them.
struct TClosedRing {
  std::vector<double> x;
  std::vector<double> y;
};
TClosedRing ClosedRing(int points);

/// A path in a folder for temporary files, which is removed at the end of the program.
std::string TemporaryPath(const std::string& name);

/// Removes a shapefile with its companions while the clock stands: what is measured makes a new
/// file. Some file systems write a file that is cut and written again to the disk when it is
/// closed.
void RemoveUntimed(const std::string& path, benchmark::State* state);

/// The main file of a ring, written by the module; the caller names it.
std::string RingFile(const std::string& name, int points);

}  // namespace RavelinBench
