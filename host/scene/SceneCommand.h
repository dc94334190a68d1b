// ravelin scene: everything that can be made of a product folder.
#pragma once

#include "host/CommandEntry.h"

namespace ravelin {

/// Adds the subcommand; it runs when the command line is parsed and throws HostError when its work
/// fails.
void AddSceneCommand(CommandEntry& program);

}  // namespace ravelin
