// Something of every subsystem, as a host would use it.
#pragma once

#include <string>

/// Converts labels, writes and reads trees, transforms and shapefiles, and composes a raster, all
/// with objects of its own, and gives everything that came out as one text. The same number gives
/// the same text.
std::string HostWork(int number);
