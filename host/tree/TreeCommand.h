// ravelin tree: data trees from one form to the other, and for people to read.
#pragma once

#include "host/CommandEntry.h"

namespace ravelin {

/// Adds the subcommand; it runs when the command line is parsed and throws HostError when its work
/// fails.
void AddTreeCommand(CommandEntry& program);

}  // namespace ravelin
