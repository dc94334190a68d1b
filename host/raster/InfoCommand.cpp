#include "host/raster/InfoCommand.h"

#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "host/io/TextOutput.h"
#include "host/raster/Info.h"

namespace ravelin {
namespace {

struct Arguments {
  std::string file;
  bool json = false;
};

void Inform(const Arguments& arguments) {
  const nlohmann::ordered_json description = DescribeFile(arguments.file);
  PrintText(arguments.json ? description.dump(2) + "\n" : DescriptionText(description));
}

}  // namespace

void AddInfoCommand(CommandEntry& program) {
  const auto arguments = std::make_shared<Arguments>();
  CommandEntry command = program.AddCommand("info", "Say what an image or a tile index is");
  command.AddOption("FILE", arguments->file, "A .bip with its .hdr beside it, or a tile index")
      .TypeName("")
      .Kind(FileValue())
      .Required();
  command.AddFlag("--json", arguments->json, "Print JSON instead of text");
  command.Footer("Example:\n  ravelin info scene.bip");
  command.OnRun([arguments] { Inform(*arguments); });
}

}  // namespace ravelin
