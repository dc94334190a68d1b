#include "host/InfoCommand.h"

#include <iostream>
#include <memory>
#include <string>

#include "host/HostError.h"
#include "host/Info.h"
#include "host/ValueKind.h"

namespace ravelin {
namespace {

struct Arguments {
  std::string file;
  bool json = false;
};

void Inform(const Arguments& arguments) {
  const nlohmann::ordered_json description = DescribeFile(arguments.file);
  std::cout << (arguments.json ? description.dump(2) + "\n" : DescriptionText(description))
            << std::flush;
  if (!std::cout) {
    throw HostError("standard output", "cannot be written", "free some space or write elsewhere");
  }
}

}  // namespace

void AddInfoCommand(CLI::App& app) {
  const auto arguments = std::make_shared<Arguments>();
  CLI::App* command = app.add_subcommand("info", "Say what an image or a tile index is");
  command->add_option("FILE", arguments->file, "A .bip with its .hdr beside it, or a tile index")
      ->type_name("")
      ->check(FileValue())
      ->required();
  command->add_flag("--json", arguments->json, "Print JSON instead of text");
  command->footer("Example:\n  ravelin info scene.bip");
  command->callback([arguments] { Inform(*arguments); });
}

}  // namespace ravelin
