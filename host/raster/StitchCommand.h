// ravelin stitch: the super tiles of an index to one image.
#pragma once

#include "host/CommandEntry.h"

namespace ravelin {

/// Adds the subcommand; it runs when the command line is parsed and throws HostError when its work
/// fails.
void AddStitchCommand(CommandEntry& program);

}  // namespace ravelin
