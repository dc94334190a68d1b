#include "host/io/FolderEntries.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <memory>

namespace ravelin {
namespace {

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};
using OpenedFolder = std::unique_ptr<DIR, CloseFolder>;

/// Null with errno set when it cannot be opened.
OpenedFolder OpenFolder(const std::string& path) {
  int descriptor = -1;
  do {
    descriptor = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  } while (descriptor < 0 && errno == EINTR);
  if (descriptor < 0) return nullptr;
  OpenedFolder folder(::fdopendir(descriptor));
  if (!folder) ::close(descriptor);
  return folder;
}

std::error_code LastError() {
  return {errno, std::generic_category()};
}

bool IsFolder(DIR* folder, const dirent& entry) {
  if (entry.d_type != DT_UNKNOWN) return entry.d_type == DT_DIR;
  struct stat status = {};
  return ::fstatat(::dirfd(folder), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
         S_ISDIR(status.st_mode);
}

bool IsDots(const char* name) {
  return std::strcmp(name, ".") == 0 || std::strcmp(name, "..") == 0;
}

}  // namespace

std::vector<FolderEntry> ReadFolderEntries(const std::string& folder, std::error_code* error) {
  std::vector<FolderEntry> entries;
  const OpenedFolder opened = OpenFolder(folder);
  if (!opened) {
    *error = LastError();
    return entries;
  }
  for (;;) {
    errno = 0;
    const dirent* const entry = ::readdir(opened.get());
    if (entry == nullptr) break;
    if (IsDots(entry->d_name)) continue;
    entries.push_back({entry->d_name, IsFolder(opened.get(), *entry)});
  }
  *error = LastError();
  return entries;
}

std::error_code FolderError(const std::string& folder) {
  return OpenFolder(folder) ? std::error_code() : LastError();
}

}  // namespace ravelin
