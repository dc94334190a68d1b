// Everything that can be said to the program on its command line.
#pragma once

#include <CLI/CLI.hpp>

namespace ravelin {

/// Makes `app` the table of the program's subcommands and options. Parsing with it runs the
/// subcommand, in whose CLI11 callback failed work throws HostError and wrong use throws
/// CLI::ValidationError. The manual and the completions of shells are made of the same table, with
/// nothing run.
void DescribeCommandLine(CLI::App& app);

}  // namespace ravelin
