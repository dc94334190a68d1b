// The command line of the program: its subcommands, errors and exit codes.
#pragma once

namespace ravelin {

enum ExitCode : int {
  kExitDone = 0,      ///< the work is done, or help or the version was printed
  kExitFailed = 1,    ///< the work failed
  kExitWrongUse = 2,  ///< the command line cannot be understood
};

/// Runs the program on its command line and returns the exit code. Prints errors to standard error;
/// lets no exception out. The module is initialised while a subcommand works.
int RunApplication(int argc, const char* const* argv);

}  // namespace ravelin
