// Completion of the command's words in zsh.
#pragma once

#include <string>

#include "host/documents/OptionTable.h"

namespace ravelin {

/// The file _ravelin for a folder of zsh's fpath.
std::string ZshCompletion(const DocumentedCommand& program);

}  // namespace ravelin
