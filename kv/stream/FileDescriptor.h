// An open file of the system and the calls on it.
#pragma once

#include <string>

#include "Kv/Stream.h"

namespace kv {

/// How many bytes went through, and whether an error ended the transfer.
struct Transfer {
  unsigned long bytes = 0;
  bool failed = false;
};

/// Owns a file descriptor. Calls that a signal interrupts are repeated.
class FileDescriptor {
 public:
  /// What kinds of files differ in.
  struct Kind {
    bool seekable = false;  ///< has positions; pipes and terminals have none
    bool sized = false;     ///< the system tells its size: files and block devices
    bool regular = false;   ///< a file of a file system
  };

  FileDescriptor() = default;
  FileDescriptor(FileDescriptor&& other) noexcept;
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor();

  /// Opens into an object that is not open. Returns why it cannot, or an empty text.
  std::string Open(const std::string& path, kvOpenMode mode);

  int Number() const noexcept { return number_; }
  const Kind& Is() const noexcept { return kind_; }
  /// The size now; 0 where there is none.
  unsigned long Size() const noexcept;
  /// Whether the file holds `size` bytes now. For files that have positions; cheaper than Size.
  bool Reaches(unsigned long size) const noexcept;

  /// Reads up to `count` bytes by one call of the system. `pos` counts only where positions exist.
  Transfer ReadOnce(unsigned long pos, void* buffer, unsigned long count) const noexcept;
  /// Reads until `count` bytes are there, the end is met or an error.
  Transfer ReadAll(unsigned long pos, void* buffer, unsigned long count) const noexcept;
  /// Writes until all are written or an error.
  Transfer WriteAll(unsigned long pos, const void* buffer, unsigned long count) const noexcept;

 private:
  std::string Inspect();

  int number_ = -1;
  Kind kind_;
};

}  // namespace kv
