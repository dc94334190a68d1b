// The files of a folder, or of a tree of folders.
#pragma once

#include <string>
#include <vector>

namespace ravelin {

struct ListedFolder {
  std::string path;
  std::vector<std::string> files;  ///< names, sorted bytewise; at least one
};

struct SkippedFolder {
  std::string path;
  std::string reason;
};

struct FolderListing {
  std::vector<ListedFolder> folders;  ///< a folder before those in it, which are sorted bytewise
  std::vector<SkippedFolder> skipped;
  unsigned long namesNotUtf8 = 0;  ///< of files and folders; they are left out
};

/// What to list: all files, or those that a mask of TFilenamesList matches.
struct ListingRequest {
  std::string folder;
  std::string mask;
  bool hasMask = false;
  bool recursive = false;
};

/// Lists the folder and, recursively, those in it, but no hidden ones and none behind links. Throws
/// HostError as CheckFolder does; folders inside that cannot be read are skipped.
FolderListing ListFolders(const ListingRequest& request);

/// Throws HostError when the folder is missing, no folder, must not be read or has a name that is
/// not UTF-8.
void CheckFolder(const std::string& folder);

/// The path of what is named `name` in `folder`.
std::string PathIn(const std::string& folder, const std::string& name);

}  // namespace ravelin
