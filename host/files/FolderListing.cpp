#include "host/files/FolderListing.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "Kv/Text.h"
#include "SatCommonUtils/Files.h"
#include "host/HostError.h"
#include "host/io/FolderEntries.h"

namespace ravelin {
namespace {

namespace fs = std::filesystem;

bool IsUtf8(const std::string& text) {
  return KvAnsiToChar(text, kvEncodingUtf8) == text;
}

/// What a folder holds besides the files that the module lists.
struct FolderContents {
  std::vector<std::string> subfolders;  ///< names, the last in the order of their bytes first
  unsigned long namesNotUtf8 = 0;
  std::error_code error;  ///< why it could not be read to its end
};

FolderContents ReadFolder(const std::string& folder) {
  FolderContents contents;
  for (const FolderEntry& entry : ReadFolderEntries(folder, &contents.error)) {
    if (!IsUtf8(entry.name)) {
      ++contents.namesNotUtf8;
    } else if (entry.isFolder && entry.name[0] != '.') {
      contents.subfolders.push_back(entry.name);
    }
  }
  std::sort(contents.subfolders.rbegin(), contents.subfolders.rend());
  return contents;
}

std::vector<std::string> FilesIn(const std::string& folder, const ListingRequest& request) {
  SatCommonUtils::TFilenamesList list;
  SatCommonUtils::FillFolderFilesList(folder, &list, nullptr);
  std::vector<std::string> files;
  if (request.hasMask) {
    list.FindAll(request.mask, &files);
  } else {
    std::string name;
    for (bool more = list.GetFirst(&name); more; more = list.GetNext(&name)) files.push_back(name);
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

FolderListing ListFolders(const ListingRequest& request) {
  CheckFolder(request.folder);
  FolderListing listing;
  std::vector<std::string> waiting = {request.folder};
  while (!waiting.empty()) {
    const std::string folder = std::move(waiting.back());
    waiting.pop_back();
    const FolderContents contents = ReadFolder(folder);
    if (contents.error) listing.skipped.push_back({folder, contents.error.message()});
    listing.namesNotUtf8 += contents.namesNotUtf8;
    std::vector<std::string> files = FilesIn(folder, request);
    if (!files.empty()) listing.folders.push_back({folder, std::move(files)});
    if (!request.recursive) break;
    for (const std::string& name : contents.subfolders) waiting.push_back(PathIn(folder, name));
  }
  return listing;
}

void CheckFolder(const std::string& folder) {
  if (!IsUtf8(folder)) throw HostError(folder, "its name is not UTF-8", "rename it or link to it");
  std::error_code error;
  const fs::file_status status = fs::status(folder, error);
  if (status.type() == fs::file_type::not_found) {
    throw HostError(folder, "no such folder", "check the name");
  }
  if (!error && !fs::is_directory(status)) {
    throw HostError(folder, "is not a folder", "name the folder that it is in");
  }
  if (!error) error = FolderError(folder);
  if (error) throw HostError(folder, "cannot be read: " + error.message(), "check permissions");
}

std::string PathIn(const std::string& folder, const std::string& name) {
  return folder.back() == '/' ? folder + name : folder + "/" + name;
}

}  // namespace ravelin
