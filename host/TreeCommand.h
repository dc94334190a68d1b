// ravelin tree: data trees from one form to the other, and for people to read.
#pragma once

#include <CLI/CLI.hpp>

namespace ravelin {

/// Adds the subcommand; it runs when the command line is parsed and throws HostError when its work
/// fails.
void AddTreeCommand(CLI::App& app);

}  // namespace ravelin
