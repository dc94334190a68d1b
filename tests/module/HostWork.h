// Something of every subsystem, as a host would use it.
#pragma once

#include <string>

/// Converts labels and texts, writes and reads trees, transforms and shapefiles, composes and
/// stitches rasters and works in a folder, all with objects of its own, and gives everything that
/// came out as one text. The same number gives the same text.
std::string HostWork(int number);
