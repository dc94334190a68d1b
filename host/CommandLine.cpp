#include "host/CommandLine.h"

#include "SatCommonUtils/Version.h"
#include "host/CommandEntry.h"
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

std::shared_ptr<CLI::App> DescribeCommandLine() {
  auto table =
      MakeTable("ravelin", "Opens the raw products of satellite sensors.", RAVELIN_VERSION);
  CommandEntry program(*table);
  program.Footer(
      ExitCodesText() +
      "\n\n"
      "Example:\n"
      "  ravelin compose --size 1200x900 --band red=b4.raw green=b3.raw blue=b2.raw -o rgb.png");
  program.RequireCommand();
  AddSceneCommand(program);
  AddSampleCommand(program);
  AddComposeCommand(program);
  AddStitchCommand(program);
  AddInfoCommand(program);
  AddXmlCommand(program);
  AddTreeCommand(program);
  AddFilesCommand(program);
  AddShapeCommand(program);
  return table;
}

}  // namespace ravelin
