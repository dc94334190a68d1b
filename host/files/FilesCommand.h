// ravelin files: the files of folders.
#pragma once

#include "host/CommandEntry.h"

namespace ravelin {

/// Adds the subcommand; it runs when the command line is parsed and throws HostError when its work
/// fails.
void AddFilesCommand(CommandEntry& program);

}  // namespace ravelin
