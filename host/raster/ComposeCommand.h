// ravelin compose: raw band files to one image.
#pragma once

#include "host/CommandEntry.h"

namespace ravelin {

/// Adds the subcommand; it runs when the command line is parsed and throws HostError when its work
/// fails.
void AddComposeCommand(CommandEntry& program);

}  // namespace ravelin
