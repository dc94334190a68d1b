#include "host/io/InputFile.h"

#include <sys/stat.h>

#include <cerrno>
#include <system_error>

#include "Kv/Stream.h"
#include "host/HostError.h"

namespace ravelin {
namespace {

std::string Remedy(int error) {
  return error == EACCES ? "ask for permission to read it" : "check the name";
}

}  // namespace

unsigned long RegularFileSize(const std::string& path) {
  struct stat status = {};
  if (stat(path.c_str(), &status) != 0) {
    const int error = errno;
    const std::string what = error == ENOENT
                                 ? "no such file"
                                 : "cannot be read: " + std::generic_category().message(error);
    throw HostError(path, what, Remedy(error));
  }
  if (S_ISDIR(status.st_mode)) throw HostError(path, "is a folder", "name a file in it");
  if (!S_ISREG(status.st_mode)) throw HostError(path, "is not a regular file", "copy it to one");
  return static_cast<unsigned long>(status.st_size);
}

std::string ReadWholeFile(const std::string& path, unsigned long limit) {
  const unsigned long size = RegularFileSize(path);
  if (size > limit) {
    throw HostError(path,
                    "holds " + std::to_string(size) + " bytes, more than the " +
                        std::to_string(limit) + " that such a file may have",
                    "check that it is the right file");
  }
  TKvFileStream stream;
  if (!stream.Open(TKvPath(path), kvOpenRead, kvShareAll)) {
    throw HostError(path, "cannot be opened", "check its permissions");
  }
  std::string bytes(size, '\0');
  if (stream.Read(bytes.data(), size) != size) {
    throw HostError(path, "cannot be read to its end",
                    "check the disk, or whether it is being written");
  }
  return bytes;
}

}  // namespace ravelin
