// ravelin info: what a file is.
#pragma once

#include <CLI/CLI.hpp>

namespace ravelin {

/// Adds the subcommand; it runs when the command line is parsed and throws HostError when its work
/// fails.
void AddInfoCommand(CLI::App& app);

}  // namespace ravelin
