#include "host/io/PendingFile.h"

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
  buffer_.reserve(kBufferSize);
  CreateTemporary();
}

PendingFile::~PendingFile() {
  Discard();
}

void PendingFile::Discard() {
  if (descriptor_ >= 0) close(descriptor_);
  descriptor_ = -1;
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
  // Goes on from file to file, so that of many at once none tries the names of the others.
  static unsigned long number = 0;
  for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
    const std::string name =
        folder + ".ravelin-" + std::to_string(getpid()) + "-" + std::to_string(number++) + ".tmp";
    const InterruptBlock block;
    temporary_.Set(name);
    const int error = OpenTemporary();
    if (error == 0) break;
    temporary_.Set("");
    if (error != EEXIST) Fail(error);
  }
  if (descriptor_ < 0) Fail(EEXIST);
  if (replaces_) KeepMode();
}

/// Why it cannot be made; 0 when it is.
int PendingFile::OpenTemporary() {
  do {
    descriptor_ = open(temporary_.Get().c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  } while (descriptor_ < 0 && errno == EINTR);
  return descriptor_ < 0 ? errno : 0;
}

/// Gives the permissions of the file that is replaced. A constructor that throws is followed by no
/// destructor.
void PendingFile::KeepMode() {
  int result = -1;
  do {
    result = fchmod(descriptor_, mode_);
  } while (result != 0 && errno == EINTR);
  if (result == 0) return;
  const int error = errno;
  Discard();
  Fail(error);
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
    if (written <= 0) Fail(written < 0 ? errno : EIO);
    done += static_cast<std::size_t>(written);
  }
  buffer_.clear();
}

void PendingFile::Complete() {
  Flush();
  const int descriptor = descriptor_;
  descriptor_ = -1;
  // An interrupted call has closed the file, too.
  if (close(descriptor) != 0 && errno != EINTR) Fail(errno);
}

/// Puts the file in place. With `keepFormer` a file that it replaces lies in the temporary place
/// then, where the file system can exchange the two; else it is gone.
void PendingFile::PutInPlace(bool keepFormer) {
  exchanged_ = keepFormer && replaces_ && Exchange();
  if (exchanged_) return;
  if (std::rename(temporary_.Get().c_str(), target_.c_str()) != 0) Fail(errno);
  temporary_.Set("");
}

bool PendingFile::Exchange() const {
  return renameat2(AT_FDCWD, temporary_.Get().c_str(), AT_FDCWD, target_.c_str(),
                   RENAME_EXCHANGE) == 0;
}

void PendingFile::TakeBack() {
  if (exchanged_) {
    Exchange();
  } else if (!replaces_) {
    unlink(target_.c_str());
  }
}

void PendingFile::DropFormer() {
  if (!exchanged_) return;
  unlink(temporary_.Get().c_str());
  temporary_.Set("");
}

void PendingFile::Commit() {
  CommitTogether({this});
}

void PendingFile::CommitTogether(const std::vector<PendingFile*>& files) {
  for (PendingFile* file : files) file->Complete();
  const InterruptBlock block;
  auto placed = files.begin();
  try {
    for (PendingFile* file : files) {
      file->PutInPlace(files.size() > 1);
      ++placed;
    }
  } catch (...) {
    for (auto file = files.begin(); file != placed; ++file) (*file)->TakeBack();
    throw;
  }
  for (PendingFile* file : files) file->DropFormer();
}

}  // namespace ravelin
