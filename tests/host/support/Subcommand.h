// What the tests of subcommands share: how one is run, and how it ends.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <functional>
#include <string>
#include <vector>

#include "host/support/RunCommand.h"
#include "support/TempFolder.h"

/// Runs a subcommand in the folder.
inline CommandResult RunSubcommand(const std::string& name, std::vector<std::string> arguments,
                                   const TempFolder& folder,
                                   const std::function<void()>& prepare = {}) {
  arguments.insert(arguments.begin(), name);
  return RunCommand(arguments, folder.Path(), prepare);
}

/// As `prepare` of a run: makes a file its standard input.
inline std::function<void()> FromFile(const std::string& path) {
  return [path] {
    const int file = open(path.c_str(), O_RDONLY);
    if (file < 0 || dup2(file, STDIN_FILENO) < 0) _exit(126);
  };
}

/// As `prepare` of a run: makes its standard output one on which there is no space.
inline void ToFullDisk() {
  const int full = open("/dev/full", O_WRONLY);
  if (full < 0 || dup2(full, STDOUT_FILENO) < 0) _exit(126);
}

/// The work is done, and nothing is said but the output.
inline void ExpectDone(const CommandResult& result, const std::string& out = "") {
  EXPECT_EQ(result.exitCode, 0);
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out, out);
}

/// The work failed, and nothing is said but the message.
inline void ExpectFailure(const CommandResult& result, const std::string& message) {
  EXPECT_EQ(result.exitCode, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "ravelin: " + message + "\n");
}
