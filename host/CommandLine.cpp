#include "host/CommandLine.h"

#include "SatCommonUtils/Version.h"
#include "host/CommandEntry.h"
#include "host/ExitCode.h"
#include "host/files/FilesCommand.h"
#include "host/raster/ComposeCommand.h"
#include "host/raster/InfoCommand.h"
#include "host/raster/StitchCommand.h"
#include "host/sample/SampleCommand.h"
#include "host/scene/SceneCommand.h"
#include "host/shapefile/ShapeCommand.h"
#include "host/tree/TreeCommand.h"
#include "host/xml/XmlCommand.h"

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
