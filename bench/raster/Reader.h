// What reads the images: the module, its peer, and the floor that neither can beat by much.
#pragma once

#include <memory>

#include "bench/raster/DataSet.h"

namespace RavelinBench {

/// A rectangle of pixels; y counts rows from the bottom.
struct TWindow {
  long x;
  long y;
  long width;
  long height;
};

/// Reads windows of one image, which it keeps open.
class TReader {
 public:
  virtual ~TReader() = default;
  /// Before each pass over an image, outside the measured time.
  virtual void BeginPass() {}
  /// Writes the window's pixels, channels interleaved, samples in the machine's order, the bottom
  /// row first and no padding. Throws std::runtime_error when it cannot.
  virtual void Read(const TWindow& window, unsigned char* out) = 0;
};

/// The rasters of the module over file streams.
std::unique_ptr<TReader> MakeModuleReader(const TDataSet& set);
/// A kept mapping of each file and the fastest way from there to the output.
std::unique_ptr<TReader> MakeFloorReader(const TDataSet& set);
/// GDAL with its default settings and an empty block cache at each pass; null when it was not found
/// at build time.
std::unique_ptr<TReader> MakeGdalReader(const TDataSet& set);

/// A level of a mosaic: the module's stitched raster over envelopes of rasters in memory; the floor
/// has each of these write its part straight into the output.
std::unique_ptr<TReader> MakeModuleLevelReader(const TDataSet& set);
std::unique_ptr<TReader> MakeFloorLevelReader(const TDataSet& set);

}  // namespace RavelinBench
