// What the shapefile benchmarks write and read: one ring of a million points.
#pragma once

#include <string>
#include <vector>

#include "SatCommonUtils/Shapefile.h"

namespace RavelinBench {

constexpr int kPoints = 1000000;

/// A circle with a rough edge, clockwise, without the closing point.
const SatCommonUtils::TShapeFileRing& Ring();

/// The ring as it is drawn, closed: x and y apart, as the peers take them.
struct TClosedRing {
  std::vector<double> x;
  std::vector<double> y;
};
const TClosedRing& ClosedRing();

/// A path in a folder for temporary files, which is removed at the end of the program.
std::string TemporaryPath(const std::string& name);

/// The main file of the ring, written by the module; the index that the peers want lies beside it.
const std::string& RingFile();

}  // namespace RavelinBench
