// Unfinished files disappear when the program is interrupted.
#pragma once

#include <signal.h>

#include <string>

namespace ravelin {

/// From now on SIGINT, SIGTERM and SIGHUP remove every registered temporary file and then end the
/// program as they would have without. A signal that the program was started with as ignored stays
/// ignored. SIGXFSZ is ignored, so that a file size limit is an error of the write that met it.
void InstallInterruptHandlers();

/// Holds SIGINT, SIGTERM and SIGHUP back while it lives.
class InterruptBlock {
 public:
  InterruptBlock();
  InterruptBlock(const InterruptBlock&) = delete;
  InterruptBlock& operator=(const InterruptBlock&) = delete;
  ~InterruptBlock();

 private:
  sigset_t former_;
};

/// The name of a file that must not outlive an interrupt; registered while the object lives.
class TemporaryName {
 public:
  TemporaryName();
  TemporaryName(const TemporaryName&) = delete;
  TemporaryName& operator=(const TemporaryName&) = delete;
  ~TemporaryName();

  /// Empty: there is no file to remove.
  void Set(const std::string& path);
  const std::string& Get() const { return path_; }

 private:
  friend void RemoveTemporaryFiles();

  std::string path_;
  TemporaryName* next_;
};

/// Removes every registered file.
void RemoveTemporaryFiles();

}  // namespace ravelin
