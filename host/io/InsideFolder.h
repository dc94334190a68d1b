// Keeping what files name inside a folder.
#pragma once

#include <filesystem>

namespace ravelin {

/// Whether a file lies in the folder or below it. Both paths are canonical: absolute, without links
/// and "..".
bool IsInsideFolder(const std::filesystem::path& file, const std::filesystem::path& folder);

}  // namespace ravelin
