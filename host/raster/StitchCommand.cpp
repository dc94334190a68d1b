#include "host/raster/StitchCommand.h"

#include <memory>
#include <string>
#include <vector>

#include "host/HostError.h"
#include "host/ParseNumber.h"
#include "host/UsageError.h"
#include "host/io/Output.h"
#include "host/raster/TileFiles.h"
#include "host/raster/TileSet.h"

namespace ravelin {
namespace {

struct Arguments {
  std::string index;
  std::string level = "0";
  bool allowOutside = false;
  OutputArguments output;
};

unsigned long LevelOf(const std::string& text) {
  const std::optional<unsigned long> level = ParseNumber<unsigned long>(text);
  if (!level) throw UsageError("--level", "'" + text + "' is not a whole number from 0");
  return *level;
}

void CheckLevel(const TileSet& set, unsigned long level, const std::string& index) {
  const unsigned long levels = set.raster->GetAllLevels(nullptr);
  if (level < levels) return;
  throw HostError(index, "has no level " + std::to_string(level),
                  "give --level from 0 to " + std::to_string(levels - 1));
}

void Stitch(const Arguments& arguments) {
  const OutputPlan plan = PlanOutput(arguments.output);
  const unsigned long level = LevelOf(arguments.level);
  const TileIndex index = ReadTileIndex(arguments.index);
  const TileSet set = OpenTileSet(index, arguments.index, arguments.allowOutside);
  CheckLevel(set, level, arguments.index);
  std::vector<std::string> names;
  for (const int key : set.keys) names.push_back(BandName(key));
  WriteOutput({*set.raster, level, names}, plan);
}

}  // namespace

void AddStitchCommand(CommandEntry& program) {
  const auto arguments = std::make_shared<Arguments>();
  CommandEntry command =
      program.AddCommand("stitch", "Make one image of the super tiles of a scene");
  command.AddOption("INDEX", arguments->index, "Text file that lists the tiles, one a line")
      .TypeName("")
      .Kind(FileValue())
      .Required();
  command
      .AddOption("--level", arguments->level,
                 "Level to write, each halving the pixels of the one\n"
                 "before; raw files have level 0 only")
      .TypeName("L")
      .ShowDefault();
  command.AddFlag("--allow-outside", arguments->allowOutside,
                  "Read files outside the folder of the index");
  AddOutputOptions(command, arguments->output);
  command.Footer(
      "A line of the index: left top right bottom srcLeft srcTop width height KEY=FILE ...\n\n"
      "Example:\n"
      "  ravelin stitch scene/tiles.idx -o scene.png");
  command.OnRun([arguments] { Stitch(*arguments); });
}

}  // namespace ravelin
