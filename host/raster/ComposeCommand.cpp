#include "host/raster/ComposeCommand.h"

#include <iostream>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "host/HostError.h"
#include "host/ParseNumber.h"
#include "host/UsageError.h"
#include "host/io/Output.h"
#include "host/raster/BandArgument.h"
#include "host/raster/BandFile.h"

namespace ravelin {
namespace {

using SatCommonUtils::TBasePushbroomDibData;
using SatCommonUtils::TSeparateBandsDibData;
using BandMap = std::map<int, var_a_legacy::var_a<TBasePushbroomDibData*>>;

struct Arguments {
  std::string size;
  std::vector<std::string> bands;
  std::string offset = "0";
  bool allowShort = false;
  OutputArguments output;
};

BandLayout LayoutOf(const Arguments& arguments) {
  const std::optional<ImageSize> size = ParseSize(arguments.size);
  if (!size) {
    throw UsageError("--size", "'" + arguments.size + "' is not WxH in whole pixels from 1 to " +
                                   std::to_string(kMaxSide));
  }
  const std::optional<unsigned long> offset = ParseNumber<unsigned long>(arguments.offset);
  if (!offset) {
    throw UsageError("--offset",
                     "'" + arguments.offset + "' is not a whole number of bytes from 0");
  }
  BandLayout layout;
  layout.size = *size;
  layout.offset = *offset;
  layout.allowShort = arguments.allowShort;
  layout.remedy = "check --size and --offset";
  layout.shortRemedy = layout.remedy + ", or add --allow-short";
  return layout;
}

std::map<int, BandArgument> BandsOf(const std::vector<std::string>& texts) {
  std::map<int, BandArgument> bands;
  for (const std::string& text : texts) {
    try {
      const BandArgument band = ParseBandArgument(text);
      if (!bands.emplace(band.key, band).second) {
        throw std::invalid_argument("'" + text + "' gives the key " + std::to_string(band.key) +
                                    " a second file: give each band a key of its own");
      }
    } catch (const std::invalid_argument& error) {
      throw UsageError("--band", error.what());
    }
  }
  return bands;
}

void NoteMissing(const BandFile& band, const std::string& path) {
  if (band.MissingBytes() == 0) return;
  std::cerr << "ravelin: " << Printable(path) << ": note: " << band.MissingBytes()
            << " bytes are missing; their pixels are black\n";
}

BandMap OpenBands(const std::map<int, BandArgument>& arguments, BandLayout layout) {
  BandMap bands;
  for (const auto& [key, argument] : arguments) {
    layout.order = argument.order;
    const var_a_legacy::var_a<BandFile*> band(new BandFile(argument.file, layout));
    NoteMissing(*band, argument.file);
    bands.emplace(key, band);
  }
  return bands;
}

std::vector<std::string> NamesOf(const TSeparateBandsDibData& image) {
  std::vector<std::string> names;
  for (const auto& [channel, key] : image.channelBands) names.push_back(BandName(key));
  return names;
}

void Compose(const Arguments& arguments) {
  const OutputPlan plan = PlanOutput(arguments.output);
  const BandLayout layout = LayoutOf(arguments);
  const std::map<int, BandArgument> bands = BandsOf(arguments.bands);
  TSeparateBandsDibData image;
  if (!image.Setup(OpenBands(bands, layout))) {
    throw HostError(plan.path, "the bands do not fit together", "give bands of one size");
  }
  WriteOutput({image, 0, NamesOf(image)}, plan);
}

}  // namespace

void AddComposeCommand(CommandEntry& program) {
  const auto arguments = std::make_shared<Arguments>();
  CommandEntry command = program.AddCommand("compose", "Make one image of raw band files");
  command.AddOption("--size", arguments->size, "Width and height of every band, pixels")
      .TypeName("WxH")
      .Required();
  command
      .AddOption("--band", arguments->bands,
                 "What a file shows (red, green, blue or a number), the\n"
                 "raw file of unsigned 16-bit samples, top row first,\n"
                 "and its byte order (default: little)")
      .TypeName("KEY=FILE[:big|:little]")
      .Kind(KeyedFileValue({"red", "green", "blue"}, {"big", "little"}))
      .Required();
  command.AddOption("--offset", arguments->offset, "Bytes before the first pixel of every file")
      .TypeName("N")
      .ShowDefault();
  command.AddFlag("--allow-short", arguments->allowShort,
                  "Take files that end early; what is missing is black");
  AddOutputOptions(command, arguments->output);
  command.Footer(
      "With red, green and blue all given they are the first three channels, in this order;\n"
      "other bands follow by ascending key.\n\n"
      "Example:\n"
      "  ravelin compose --size 1200x900 --band red=b4.raw green=b3.raw:big blue=b2.raw -o "
      "rgb.png");
  command.OnRun([arguments] { Compose(*arguments); });
}

}  // namespace ravelin
