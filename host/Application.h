// A run of the program.
#pragma once

#include "host/ExitCode.h"

namespace ravelin {

/// Runs the program on its command line and returns its ExitCode. Prints errors to standard error;
/// lets no exception out. The module is initialised while a subcommand works.
int RunApplication(int argc, const char* const* argv);

}  // namespace ravelin
