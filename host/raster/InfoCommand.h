// ravelin info: what a file is.
#pragma once

#include "host/CommandEntry.h"

namespace ravelin {

/// Adds the subcommand; it runs when the command line is parsed and throws HostError when its work
/// fails.
void AddInfoCommand(CommandEntry& program);

}  // namespace ravelin
