// ravelin xml: metadata to XML, and values out of it.
#pragma once

#include "host/CommandEntry.h"

namespace ravelin {

/// Adds the subcommand; it runs when the command line is parsed and throws HostError when its work
/// fails.
void AddXmlCommand(CommandEntry& program);

}  // namespace ravelin
