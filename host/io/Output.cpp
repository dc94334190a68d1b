#include "host/io/Output.h"

#include "Kv/Text.h"
#include "host/HostError.h"
#include "host/ParseNumber.h"
#include "host/ProgressBar.h"
#include "host/UsageError.h"
#include "host/raster/InterleavedFile.h"

namespace ravelin {
namespace {

OutputFormat FormatOf(const std::string& path) {
  const std::string lower = tolower(path);
  if (lower.ends_with(".png")) return OutputFormat::kPng;
  if (lower.ends_with(".bip")) return OutputFormat::kBip;
  throw UsageError(path, "cannot tell the format: end the name in .png or .bip");
}

Stretch StretchOf(const std::string& text) {
  Stretch stretch;
  if (text.empty()) return stretch;
  if (text == "none") {
    stretch.kind = StretchKind::kNone;
    return stretch;
  }
  const std::size_t comma = std::min(text.find(','), text.size());
  const std::string_view view = text;
  const auto low = ParseNumber<std::uint16_t>(view.substr(0, comma));
  const auto high = ParseNumber<std::uint16_t>(view.substr(std::min(comma + 1, text.size())));
  if (!low || !high || *low >= *high) {
    throw UsageError("--stretch", "'" + text +
                                      "' is neither none nor MIN,MAX with whole numbers "
                                      "from 0 to 65535, MIN below MAX");
  }
  return {StretchKind::kFixed, *low, *high};
}

PixelArea AreaOf(const std::string& text) {
  const std::optional<PixelArea> area = ParseArea(text);
  if (!area) {
    throw UsageError("--rect", "'" + text +
                                   "' is not X,Y,W,H in whole pixels, X and Y from 0, W "
                                   "and H from 1");
  }
  return *area;
}

PixelArea ChosenArea(const OutputPlan& plan, const ImageSize& size) {
  const PixelArea area = plan.area.value_or(PixelArea{0, 0, size.width, size.height});
  if (!Inside(area, size)) {
    throw HostError("--rect", "does not lie inside the image of " + ToText(size) + " pixels",
                    "give X,Y,W,H with X + W up to " + std::to_string(size.width) +
                        " and Y + H up to " + std::to_string(size.height));
  }
  return area;
}

}  // namespace

void AddOutputOptions(CommandEntry& command, OutputArguments& arguments) {
  command
      .AddOption("-o,--output", arguments.output, "Image to write: a .png, or a .bip with its .hdr")
      .TypeName("OUT")
      .Kind(FileValue())
      .Required();
  command
      .AddOption("--rect", arguments.rect,
                 "Area to write, pixels: X from the left, Y from the\n"
                 "top (default: all)")
      .TypeName("X,Y,W,H");
  command
      .AddOption("--stretch", arguments.stretch,
                 "Samples (0 to 65535) shown as black and as white,\n"
                 "or none (default: 2nd and 98th percentile of each\n"
                 "channel, zeros left out; .png only)")
      .TypeName("MIN,MAX");
  command.AddOption("--bits", arguments.bits, "Bits of a sample: 8 or 16 (default: 8; .png only)")
      .TypeName("N")
      .Kind(ChoiceValue({"8", "16"}));
}

OutputPlan PlanOutput(const OutputArguments& arguments) {
  OutputPlan plan;
  plan.path = arguments.output;
  plan.format = FormatOf(arguments.output);
  if (!arguments.rect.empty()) plan.area = AreaOf(arguments.rect);
  plan.picture.stretch = StretchOf(arguments.stretch);
  plan.picture.bits = arguments.bits == "16" ? 16 : 8;
  if (plan.format == OutputFormat::kBip && !(arguments.stretch + arguments.bits).empty()) {
    throw UsageError(arguments.output,
                     "a .bip holds samples as they are: --stretch and --bits are for a "
                     ".png");
  }
  return plan;
}

void WriteOutput(const OutputSource& source, const OutputPlan& plan) {
  const vec_t_<unsigned long, 2> side = source.raster.GetScaleDimensions(source.level);
  const ImageSize size = {static_cast<long>(side[0]), static_cast<long>(side[1])};
  AreaReader area(source.raster, source.level, ChosenArea(plan, size), plan.path);
  if (plan.format == OutputFormat::kPng) {
    WritePicture(area, plan.picture, plan.path, ProgressTerminal());
  } else {
    WriteInterleaved(area, source.bandNames, plan.path, ProgressTerminal());
  }
}

}  // namespace ravelin
