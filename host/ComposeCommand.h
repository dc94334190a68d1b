// ravelin compose: raw band files to one image.
#pragma once

#include <CLI/CLI.hpp>

namespace ravelin {

/// Adds the subcommand; it runs when the command line is parsed and throws HostError when its work
/// fails.
void AddComposeCommand(CLI::App& app);

}  // namespace ravelin
