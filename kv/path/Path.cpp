#include "Kv/Path.h"

#include <unistd.h>

#include <filesystem>
#include <system_error>

namespace {

// `path` against the working folder; as it is when there is no working folder any more.
std::string Absolute(const std::string& path) {
  if (path.empty() || path.front() == '/') return path;
  std::error_code error;
  std::string folder = std::filesystem::current_path(error).native();
  if (error) return path;
  if (folder.back() != '/') folder += '/';
  return folder + path;
}

}  // namespace

TKvPath::TKvPath() = default;
TKvPath::TKvPath(const std::string& path) : path_(path) {}

TKvPath TKvPath::path(bool absolute) const {
  const std::string whole = absolute ? Absolute(path_) : path_;
  return TKvPath(whole.substr(0, whole.rfind('/') + 1));
}

TKvPath TKvPath::remSlash() const {
  const std::string::size_type last = path_.find_last_not_of('/');
  if (last == std::string::npos) return TKvPath(path_.substr(0, 1));
  return TKvPath(path_.substr(0, last + 1));
}

std::string TKvPath::toSysStr() const {
  return path_;
}

std::string TKvPath::fileName() const {
  return path_.substr(path_.rfind('/') + 1);
}

bool KvDeleteFile(const TKvPath& path) {
  const std::string bytes = path.toSysStr();
  return bytes.find('\0') == std::string::npos && ::unlink(bytes.c_str()) == 0;
}
