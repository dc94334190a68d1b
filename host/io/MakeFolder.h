// Folders to write into.
#pragma once

#include <string>

namespace ravelin {

/// Makes a folder and those above it, unless they are there. Throws HostError naming it.
void MakeFolder(const std::string& folder);

}  // namespace ravelin
