#include "host/Application.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <new>
#include <string>
#include <vector>

#include "SatCommonUtils/Module.h"
#include "host/ComposeCommand.h"
#include "host/FilesCommand.h"
#include "host/HostError.h"
#include "host/InfoCommand.h"
#include "host/Interrupt.h"
#include "host/SampleCommand.h"
#include "host/ShapeCommand.h"
#include "host/StitchCommand.h"
#include "host/TreeCommand.h"
#include "host/XmlCommand.h"
#include "host/scene/SceneCommand.h"

namespace ravelin {
namespace {

class ModuleScope {
 public:
  ModuleScope() { Init_Ravelin(); }
  ModuleScope(const ModuleScope&) = delete;
  ModuleScope& operator=(const ModuleScope&) = delete;
  ~ModuleScope() { Deinit_Ravelin(); }
};

void DescribeApplication(CLI::App& app) {
  app.name("ravelin");
  app.description("Opens the raw products of satellite sensors.");
  app.set_version_flag("--version", "ravelin " RAVELIN_VERSION, "Print the version and exit");
  app.set_help_flag("-h,--help", "Print this help and exit");
  app.get_formatter()->column_width(26);
  app.footer(
      "Exit codes: 0 done, 1 the work failed, 2 wrong use.\n\n"
      "Example:\n"
      "  ravelin compose --size 1200x900 --band red=b4.raw green=b3.raw blue=b2.raw -o rgb.png");
  app.require_subcommand(1);
}

// Each subcommand lives in a file of its own and runs in its CLI11 callback. It reports failure by
// throwing HostError, wrong use by throwing CLI::ValidationError.
void AddCommands(CLI::App& app) {
  AddSceneCommand(app);
  AddSampleCommand(app);
  AddComposeCommand(app);
  AddStitchCommand(app);
  AddInfoCommand(app);
  AddXmlCommand(app);
  AddTreeCommand(app);
  AddFilesCommand(app);
  AddShapeCommand(app);
}

int Report(const std::string& message, ExitCode code) {
  std::cerr << "ravelin: " << Printable(message) << '\n';
  return code;
}

int ReportParse(const CLI::App& app, const CLI::ParseError& error) {
  if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) return app.exit(error);
  const CLI::App* command = &app;
  std::string help = "; see ravelin ";
  while (!command->get_subcommands().empty()) {
    command = command->get_subcommands().front();
    help += command->get_name() + " ";
  }
  help += "--help";
  const std::vector<std::string> unknown = command->remaining();
  if (command->get_require_subcommand_min() > 0 && !unknown.empty()) {
    return Report("'" + unknown.front() + "' is not known" + help, kExitWrongUse);
  }
  return Report(error.what() + help, kExitWrongUse);
}

constexpr const char* kMemoryRemedy = "close other programs or raise the limit on memory";

/// What to do when memory is short, by the subcommand that was asked for.
std::string MemoryRemedy(const CLI::App& app) {
  const CLI::App* command = &app;
  while (!command->get_subcommands().empty()) command = command->get_subcommands().front();
  return command->get_option_no_throw("--rect") != nullptr ? "ask for a smaller --rect"
                                                           : kMemoryRemedy;
}

}  // namespace

int RunApplication(int argc, const char* const* argv) {
  try {
    CLI::App app;
    DescribeApplication(app);
    AddCommands(app);
    InstallInterruptHandlers();
    try {
      const ModuleScope module;
      app.parse(argc, argv);
      return kExitDone;
    } catch (const CLI::ParseError& error) {
      return ReportParse(app, error);
    } catch (const std::bad_alloc&) {
      return Report("memory: there is not enough; " + MemoryRemedy(app), kExitFailed);
    }
  } catch (const std::bad_alloc&) {
    return Report(std::string("memory: there is not enough; ") + kMemoryRemedy, kExitFailed);
  } catch (const std::exception& error) {
    return Report(error.what(), kExitFailed);
  }
}

}  // namespace ravelin
