// ravelin shape: shapefiles of one polygon told, drawn and made.
#pragma once

#include "host/CommandEntry.h"

namespace ravelin {

/// Adds the subcommand; it runs when the command line is parsed and throws HostError when its work
/// fails.
void AddShapeCommand(CommandEntry& program);

}  // namespace ravelin
