// Running the built command on a system that fails.
#pragma once

#include <fcntl.h>
#include <stdlib.h>
#include <sys/mman.h>
#include <unistd.h>

#include <string>
#include <vector>

#include "host/support/RunCommand.h"

struct FaultyRun {
  CommandResult result;
  bool seen = false;  ///< whether the call that was to fail came
};

/// Runs the command with tests/support/SystemFaults.cpp, whose head says what `fault` is. Standard
/// input is the file `input`, when it is given.
inline FaultyRun RunWithFault(const std::vector<std::string>& words, const std::string& folder,
                              const std::string& fault, const std::string& input = {}) {
  const int seen = memfd_create("seen", 0);
  FaultyRun run;
  run.result = RunCommand(words, folder, [&] {
    setenv("LD_PRELOAD", RAVELIN_SYSTEM_FAULTS, 1);
    setenv("RAVELIN_FAULT", fault.c_str(), 1);
    setenv("RAVELIN_FAULT_SEEN", std::to_string(seen).c_str(), 1);
    if (fault.starts_with("read")) setenv("RAVELIN_FAULT_UNMAPPED", "1", 1);
    if (!input.empty()) dup2(open((folder + "/" + input).c_str(), O_RDONLY), STDIN_FILENO);
  });
  run.seen = lseek(seen, 0, SEEK_END) > 0;
  close(seen);
  return run;
}
