#include "stream/FileDescriptor.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <system_error>
#include <utility>

namespace kv {
namespace {

constexpr unsigned long kLastPosition =
    static_cast<unsigned long>(std::numeric_limits<off_t>::max());
constexpr unsigned long kMostAtOnce = 1ul << 30;  // below what the system takes in one call

std::string Reason(int error) {
  return std::generic_category().message(error);
}

int Flags(kvOpenMode mode) {
  constexpr int kAlways = O_CLOEXEC | O_NOCTTY;
  return mode == kvOpenRead ? O_RDONLY | kAlways : O_WRONLY | O_CREAT | O_TRUNC | kAlways;
}

int OpenFile(const std::string& path, kvOpenMode mode) {
  constexpr mode_t kEverybody = 0666;  // less the umask
  int number = -1;
  do {
    number = ::open(path.c_str(), Flags(mode), kEverybody);
  } while (number < 0 && errno == EINTR);
  return number;
}

// What one call may move: within the positions that exist.
std::size_t Portion(bool seekable, unsigned long pos, unsigned long count) {
  const unsigned long most = std::min(count, kMostAtOnce);
  return seekable ? std::min(most, kLastPosition - std::min(pos, kLastPosition)) : most;
}

// Where the file ends, 0 when it cannot tell. The descriptor's own position is used by nothing
// else.
unsigned long End(int number) {
  const off_t end = ::lseek(number, 0, SEEK_END);
  return end < 0 ? 0 : static_cast<unsigned long>(end);
}

template <class Call>
Transfer Once(Call call) {
  ssize_t done = -1;
  do {
    done = call();
  } while (done < 0 && errno == EINTR);
  return done < 0 ? Transfer{0, true} : Transfer{static_cast<unsigned long>(done), false};
}

// `step(done)` moves what is left after `done` bytes.
template <class Step>
Transfer Repeat(unsigned long count, Step step) {
  Transfer all;
  while (all.bytes < count) {
    const Transfer one = step(all.bytes);
    all.bytes += one.bytes;
    all.failed = one.failed;
    if (one.bytes == 0) break;
  }
  return all;
}

}  // namespace

FileDescriptor::FileDescriptor(FileDescriptor&& other) noexcept
    : number_(std::exchange(other.number_, -1)), kind_(other.kind_) {}

FileDescriptor::~FileDescriptor() {
  if (number_ >= 0) ::close(number_);
}

std::string FileDescriptor::Open(const std::string& path, kvOpenMode mode) {
  if (path.find('\0') != std::string::npos) return "the path holds a NUL byte";
  if (mode != kvOpenRead && mode != kvOpenWrite) return "unknown open mode";
  number_ = OpenFile(path, mode);
  return number_ < 0 ? Reason(errno) : Inspect();
}

std::string FileDescriptor::Inspect() {
  struct stat status = {};
  if (::fstat(number_, &status) != 0) return Reason(errno);
  if (S_ISDIR(status.st_mode)) return Reason(EISDIR);
  kind_.seekable = ::lseek(number_, 0, SEEK_CUR) >= 0;
  kind_.regular = S_ISREG(status.st_mode);
  kind_.sized = kind_.regular || S_ISBLK(status.st_mode);
  return {};
}

unsigned long FileDescriptor::Size() const noexcept {
  if (kind_.regular) {
    struct stat status = {};
    return ::fstat(number_, &status) == 0 ? static_cast<unsigned long>(status.st_size) : 0;
  }
  return kind_.sized ? End(number_) : 0;
}

bool FileDescriptor::Reaches(unsigned long size) const noexcept {
  return End(number_) >= size;
}

Transfer FileDescriptor::ReadOnce(unsigned long pos, void* buffer,
                                  unsigned long count) const noexcept {
  const std::size_t portion = Portion(kind_.seekable, pos, count);
  return Once([&] {
    return kind_.seekable ? ::pread(number_, buffer, portion, static_cast<off_t>(pos))
                          : ::read(number_, buffer, portion);
  });
}

Transfer FileDescriptor::ReadAll(unsigned long pos, void* buffer,
                                 unsigned long count) const noexcept {
  return Repeat(count, [&](unsigned long done) {
    return ReadOnce(pos + done, static_cast<char*>(buffer) + done, count - done);
  });
}

Transfer FileDescriptor::WriteAll(unsigned long pos, const void* buffer,
                                  unsigned long count) const noexcept {
  return Repeat(count, [&](unsigned long done) {
    const char* const from = static_cast<const char*>(buffer) + done;
    const std::size_t portion = Portion(kind_.seekable, pos + done, count - done);
    return Once([&] {
      return kind_.seekable ? ::pwrite(number_, from, portion, static_cast<off_t>(pos + done))
                            : ::write(number_, from, portion);
    });
  });
}

}  // namespace kv
