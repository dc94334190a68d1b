// ravelin scene: everything that can be made of a product folder.
#pragma once

#include <CLI/CLI.hpp>

namespace ravelin {

/// Adds the subcommand; it runs when the command line is parsed and throws HostError when its work
/// fails.
void AddSceneCommand(CLI::App& app);

}  // namespace ravelin
