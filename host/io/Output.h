// The options and the writing of output that compose and stitch share.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "SatCommonUtils/Raster.h"
#include "host/CommandEntry.h"
#include "host/raster/Picture.h"
#include "host/raster/PixelArea.h"

namespace ravelin {

/// The output options as they were given.
struct OutputArguments {
  std::string output;
  std::string rect;
  std::string stretch;
  std::string bits;
};

/// Adds -o, --rect, --stretch and --bits to a subcommand; `arguments` must outlive it.
void AddOutputOptions(CommandEntry& command, OutputArguments& arguments);

enum class OutputFormat { kPng, kBip };

/// What the options mean.
struct OutputPlan {
  std::string path;
  OutputFormat format = OutputFormat::kPng;
  std::optional<PixelArea> area;  ///< none: all
  PictureOptions picture;
};

/// Reads the options; throws UsageError for what is wrong use: an unknown ending, a
/// malformed value, picture options for a .bip.
OutputPlan PlanOutput(const OutputArguments& arguments);

/// What is to be written.
struct OutputSource {
  SatCommonUtils::TBasePushbroomDibData& raster;
  unsigned long level;
  std::vector<std::string> bandNames;  ///< one a channel
};

/// Writes it; throws HostError, also when the area does not lie inside the raster.
void WriteOutput(const OutputSource& source, const OutputPlan& plan);

}  // namespace ravelin
