// Running the built command.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

struct CommandResult {
  int exitCode = -1;     ///< -1 when a signal ended it
  int signalNumber = 0;  ///< the signal that ended it
  std::string out;
  std::string err;
  long maxResidentKiB = 0;
};

/// A run of `ravelin` in `folder` with its output kept in files of a temporary folder.
class RunningCommand {
 public:
  /// `prepare`, when given, is called in the new process before the command starts.
  RunningCommand(const std::vector<std::string>& arguments, const std::string& folder,
                 const std::function<void()>& prepare = {});
  RunningCommand(const RunningCommand&) = delete;
  RunningCommand& operator=(const RunningCommand&) = delete;
  /// Kills it if it still runs.
  ~RunningCommand();

  pid_t Process() const { return process_; }
  CommandResult Wait();

 private:
  pid_t process_ = -1;
  int out_;
  int err_;
};

CommandResult RunCommand(const std::vector<std::string>& arguments, const std::string& folder,
                         const std::function<void()>& prepare = {});
