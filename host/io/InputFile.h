// Checks of input files that every reader shares.
#pragma once

#include <string>

namespace ravelin {

/// The size in bytes of the regular file at `path`. Throws HostError when nothing is there, or a
/// folder, or anything else that is no regular file, or when it must not be looked at.
unsigned long RegularFileSize(const std::string& path);

/// All bytes of the file at `path`, at most `limit`. Throws HostError when it cannot be read or is
/// longer.
std::string ReadWholeFile(const std::string& path, unsigned long limit);

}  // namespace ravelin
