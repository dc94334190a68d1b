// What lies in a folder.
#pragma once

#include <string>
#include <system_error>
#include <vector>

namespace ravelin {

struct FolderEntry {
  std::string name;
  bool isFolder = false;  ///< itself, not through a link
};

/// A folder's entries but "." and "..", in the order of the system. `*error` is why it could not be
/// read to its end; the entries until then are returned. The standard library's own walk ends the
/// program where memory is short.
std::vector<FolderEntry> ReadFolderEntries(const std::string& folder, std::error_code* error);

/// Why a folder cannot be opened for reading.
std::error_code FolderError(const std::string& folder);

}  // namespace ravelin
