// ravelin stitch: the super tiles of an index to one image.
#pragma once

#include <CLI/CLI.hpp>

namespace ravelin {

/// Adds the subcommand; it runs when the command line is parsed and throws HostError when its work
/// fails.
void AddStitchCommand(CLI::App& app);

}  // namespace ravelin
