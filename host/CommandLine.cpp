#include "host/CommandLine.h"

#include "SatCommonUtils/Version.h"
#include "host/ComposeCommand.h"
#include "host/ExitCode.h"
#include "host/FilesCommand.h"
#include "host/InfoCommand.h"
#include "host/ShapeCommand.h"
#include "host/StitchCommand.h"
#include "host/TreeCommand.h"
#include "host/XmlCommand.h"
#include "host/sample/SampleCommand.h"
#include "host/scene/SceneCommand.h"

namespace ravelin {

void DescribeCommandLine(CLI::App& app) {
  app.name("ravelin");
  app.description("Opens the raw products of satellite sensors.");
  app.set_version_flag("--version", "ravelin " RAVELIN_VERSION, "Print the version and exit");
  app.set_help_flag("-h,--help", "Print this help and exit");
  app.get_formatter()->column_width(26);
  app.footer(
      ExitCodesText() +
      "\n\n"
      "Example:\n"
      "  ravelin compose --size 1200x900 --band red=b4.raw green=b3.raw blue=b2.raw -o rgb.png");
  app.require_subcommand(1);
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

}  // namespace ravelin
