// Completion of the command's words in fish.
#pragma once

#include <string>

#include "host/documents/OptionTable.h"

namespace ravelin {

/// The file ravelin.fish for a folder of fish's completions.
std::string FishCompletion(const DocumentedCommand& program);

}  // namespace ravelin
