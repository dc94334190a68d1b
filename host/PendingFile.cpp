#include "host/PendingFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "host/HostError.h"

namespace ravelin {
namespace {

constexpr std::size_t kBufferSize = std::size_t{1} << 18;
constexpr int kNameAttempts = 1000;

std::string Reason(int error) {
  return std::generic_category().message(error);
}

std::string Remedy(int error) {
  switch (error) {
    case ENOSPC:
    case EDQUOT:
      return "free some space or write to another disk";
    case EFBIG:
      return "raise the limit on the size of files or write to another disk";
    case ENOENT:
    case ENOTDIR:
      return "make its folder first or name another";
    default:
      return "check the folder and its permissions or name another file";
  }
}

}  // namespace

PendingFile::PendingFile(const std::string& path) : path_(path), target_(path) {
  FindTarget();
  CreateTemporary();
  buffer_.reserve(kBufferSize);
}

PendingFile::~PendingFile() {
  if (descriptor_ >= 0) close(descriptor_);
  if (!temporary_.Get().empty()) unlink(temporary_.Get().c_str());
}

void PendingFile::Fail(int error) const {
  throw HostError(path_, "cannot be written: " + Reason(error), Remedy(error));
}

void PendingFile::FindTarget() {
  struct stat status = {};
  if (lstat(path_.c_str(), &status) != 0) {
    if (errno != ENOENT) Fail(errno);
    return;
  }
  if (S_ISLNK(status.st_mode)) {
    std::error_code error;
    target_ = std::filesystem::canonical(path_, error).string();
    if (error || stat(target_.c_str(), &status) != 0) {
      throw HostError(path_, "is a link that leads nowhere", "remove it or name another file");
    }
  }
  if (!S_ISREG(status.st_mode)) {
    throw HostError(path_, S_ISDIR(status.st_mode) ? "is a folder" : "is not a regular file",
                    "name a file to write");
  }
  replaces_ = true;
  mode_ = status.st_mode & 0777u;
}

void PendingFile::CreateTemporary() {
  const std::string folder = target_.substr(0, target_.rfind('/') + 1);
  for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
    const std::string name =
        folder + ".ravelin-" + std::to_string(getpid()) + "-" + std::to_string(attempt) + ".tmp";
    const InterruptBlock block;
    descriptor_ = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor_ >= 0) {
      temporary_.Set(name);
      break;
    }
    if (errno != EEXIST) Fail(errno);
  }
  if (descriptor_ < 0) Fail(EEXIST);
  if (replaces_ && fchmod(descriptor_, mode_) != 0) Fail(errno);
}

void PendingFile::Write(const void* bytes, std::size_t count) {
  const auto* next = static_cast<const unsigned char*>(bytes);
  size_ += count;
  while (count > 0) {
    const std::size_t part = std::min(count, kBufferSize - buffer_.size());
    buffer_.insert(buffer_.end(), next, next + part);
    next += part;
    count -= part;
    if (buffer_.size() == kBufferSize) Flush();
  }
}

void PendingFile::Flush() {
  std::size_t done = 0;
  while (done < buffer_.size()) {
    const ssize_t written = write(descriptor_, buffer_.data() + done, buffer_.size() - done);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) Fail(errno);
    done += static_cast<std::size_t>(written);
  }
  buffer_.clear();
}

void PendingFile::Complete() {
  Flush();
  const int descriptor = descriptor_;
  descriptor_ = -1;
  if (close(descriptor) != 0) Fail(errno);
}

void PendingFile::Rename() {
  if (std::rename(temporary_.Get().c_str(), target_.c_str()) != 0) Fail(errno);
  temporary_.Set("");
}

void PendingFile::Commit() {
  CommitTogether({this});
}

void PendingFile::CommitTogether(const std::vector<PendingFile*>& files) {
  for (PendingFile* file : files) file->Complete();
  const InterruptBlock block;
  auto renamed = files.begin();
  try {
    for (PendingFile* file : files) {
      file->Rename();
      ++renamed;
    }
  } catch (...) {
    for (auto file = files.begin(); file != renamed; ++file) {
      if (!(*file)->replaces_) unlink((*file)->target_.c_str());
    }
    throw;
  }
}

}  // namespace ravelin
