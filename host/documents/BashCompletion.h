// Completion of the command's words in bash.
#pragma once

#include <string>

#include "host/documents/OptionTable.h"

namespace ravelin {

/// A script for bash 4 or newer; it needs no other.
std::string BashCompletion(const DocumentedCommand& program);

}  // namespace ravelin
