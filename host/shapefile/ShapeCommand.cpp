#include "host/shapefile/ShapeCommand.h"

#include <filesystem>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>

#include "Kv/Text.h"
#include "host/HostError.h"
#include "host/UsageError.h"
#include "host/io/InputFile.h"
#include "host/io/PendingFile.h"
#include "host/io/TextInput.h"
#include "host/io/TextOutput.h"
#include "host/raster/PixelArea.h"
#include "host/shapefile/PointText.h"
#include "host/shapefile/ShapeCompanions.h"
#include "host/shapefile/ShapeFile.h"
#include "host/shapefile/ShapeInfo.h"
#include "host/shapefile/ShapeOutline.h"
#include "host/shapefile/ShapeRing.h"

namespace ravelin {
namespace {

constexpr unsigned long kLongestPoints = 1UL << 32;
constexpr unsigned long kLongestWkt = 1UL << 20;
constexpr long kLeastSide = 32;
constexpr long kMostSide = 16384;

struct InfoArguments {
  std::string file;
  bool json = false;
};

struct ShowArguments {
  std::string file;
  std::string output;
  std::string size = "1000x1000";
};

struct FromPointsArguments {
  std::string points;
  std::string output;
  std::string wkt;
};

void Inform(const InfoArguments& arguments) {
  const nlohmann::ordered_json json = DescribeShape(ReadShapeFile(arguments.file), arguments.file);
  PrintText(arguments.json ? json.dump(2) + "\n" : ShapeText(json));
}

void CheckEnding(const std::string& path, const std::string& ending) {
  if (tolower(path).ends_with(ending)) return;
  throw UsageError(path, "end the name in " + ending);
}

ImageSize SizeOf(const std::string& text) {
  const std::optional<ImageSize> size = ParseSize(text);
  if (size && size->width >= kLeastSide && size->width <= kMostSide && size->height >= kLeastSide &&
      size->height <= kMostSide) {
    return *size;
  }
  throw UsageError("--size", "'" + text + "' is not WxH with pixels from " +
                                 std::to_string(kLeastSide) + " to " + std::to_string(kMostSide));
}

void Show(const ShowArguments& arguments) {
  CheckEnding(arguments.output, ".png");
  const ImageSize size = SizeOf(arguments.size);
  const ShapeFile file = ReadShapeFile(arguments.file);
  if (!file.refusal.empty()) {
    throw HostError(arguments.file, file.refusal, "give the main file of a polygon or polygon Z");
  }
  if (!CanBeDrawn(file.polygon.rings)) {
    throw HostError(arguments.file, "holds points that are no finite numbers and cannot be drawn",
                    "remove them");
  }
  PendingFile picture(arguments.output);
  WriteGreyPicture(DrawOutline(file.polygon.rings, size), picture, arguments.output);
  picture.Commit();
}

std::string MainFile(const SatCommonUtils::TShapeFileRing& ring, const std::string& name) {
  std::optional<std::string> bytes = ShapeMainFile(ring);
  if (!bytes) throw HostError(name, "has too many points for a shapefile", "give fewer");
  return *std::move(bytes);
}

std::string ReadWkt(const std::string& path) {
  std::string text = ReadWholeFile(path, kLongestWkt);
  if (trim(text).empty()) throw HostError(path, "is empty", "give the WKT of a coordinate system");
  return text;
}

void Note(const std::string& file, const std::string& text) {
  std::cerr << "ravelin: " << Printable(file) << ": note: " << text << '\n';
}

/// Files from before that programs would take for those of the new main file.
void NoteStrangers(const std::string& base, bool hasWkt) {
  for (const char* ending : {".prj", ".cpg", ".qix", ".sbn", ".sbx"}) {
    if (hasWkt && ending == std::string(".prj")) continue;
    std::error_code ignored;
    if (!std::filesystem::exists(base + ending, ignored)) continue;
    Note(base + ending,
         "was there already and stays; remove it if it does not belong to the new "
         "shapefile");
  }
}

/// The main file comes last: whoever waits for it finds the others.
void WriteFiles(const std::string& base, const FromPointsArguments& arguments,
                const std::string& mainBytes, const std::string& wkt) {
  const ShapeCompanions companions = MakeShapeCompanions(mainBytes, arguments.output);
  PendingFile index(base + ".shx");
  PendingFile attributes(base + ".dbf");
  PendingFile main(arguments.output);
  index.Write(companions.index.data(), companions.index.size());
  attributes.Write(companions.attributes.data(), companions.attributes.size());
  main.Write(mainBytes.data(), mainBytes.size());
  if (arguments.wkt.empty()) {
    PendingFile::CommitTogether({&index, &attributes, &main});
    return;
  }
  PendingFile projection(base + ".prj");
  projection.Write(wkt.data(), wkt.size());
  PendingFile::CommitTogether({&index, &attributes, &projection, &main});
}

void MakeFromPoints(const FromPointsArguments& arguments) {
  CheckEnding(arguments.output, ".shp");
  const std::string base = arguments.output.substr(0, arguments.output.size() - 4);
  const TextInput input = ReadTextInput(arguments.points, kLongestPoints);
  SatCommonUtils::TShapeFileRing ring = ParsePoints(input.text, input.name);
  const bool turned = MakeClockwise(&ring);
  const std::string wkt = arguments.wkt.empty() ? "" : ReadWkt(arguments.wkt);
  WriteFiles(base, arguments, MainFile(ring, input.name), wkt);
  if (turned) {
    Note(input.name,
         "the points run anticlockwise; they are written clockwise, as the format "
         "wants it");
  }
  NoteStrangers(base, !arguments.wkt.empty());
}

void AddInfo(CommandEntry& shape) {
  const auto arguments = std::make_shared<InfoArguments>();
  CommandEntry command = shape.AddCommand("info", "Say what a shapefile is, or why it is refused");
  command.AddOption("FILE", arguments->file, "Any file").TypeName("").Kind(FileValue()).Required();
  command.AddFlag("--json", arguments->json, "Print JSON instead of text");
  command.Footer("Example:\n  ravelin shape info footprint.shp");
  command.OnRun([arguments] { Inform(*arguments); });
}

void AddShow(CommandEntry& shape) {
  const auto arguments = std::make_shared<ShowArguments>();
  CommandEntry command = shape.AddCommand("show", "Draw the first polygon");
  command.AddOption("FILE", arguments->file, "Main file of a shapefile")
      .TypeName("")
      .Kind(FileValue())
      .Required();
  command.AddOption("-o,--output", arguments->output, "Picture to write")
      .TypeName("OUT.png")
      .Kind(FileValue())
      .Required();
  command.AddOption("--size", arguments->size, "Most pixels (default: 1000x1000)").TypeName("WxH");
  command.Footer("Example:\n  ravelin shape show footprint.shp -o footprint.png");
  command.OnRun([arguments] { Show(*arguments); });
}

void AddFromPoints(CommandEntry& shape) {
  const auto arguments = std::make_shared<FromPointsArguments>();
  CommandEntry command = shape.AddCommand("from-points", "Make a shapefile of one ring");
  command.AddOption("FILE", arguments->points, "Text, \"x y\" a line; - for standard input")
      .TypeName("")
      .Kind(FileValue())
      .Required();
  command
      .AddOption("-o,--output", arguments->output,
                 "Main file to write; .shx and .dbf come beside it")
      .TypeName("OUT.shp")
      .Kind(FileValue())
      .Required();
  command.AddOption("--wkt", arguments->wkt, "Coordinate system, to be written as .prj")
      .TypeName("FILE")
      .Kind(FileValue());
  command.Footer("Example:\n  ravelin shape from-points corners.txt -o footprint.shp");
  command.OnRun([arguments] { MakeFromPoints(*arguments); });
}

}  // namespace

void AddShapeCommand(CommandEntry& program) {
  CommandEntry shape = program.AddCommand("shape", "Tell, draw and make shapefiles of one polygon");
  shape.RequireCommand();
  AddInfo(shape);
  AddShow(shape);
  AddFromPoints(shape);
  shape.Footer("Example:\n  ravelin shape info footprint.shp");
}

}  // namespace ravelin
