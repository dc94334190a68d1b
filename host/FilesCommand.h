// ravelin files: the files of folders.
#pragma once

#include <CLI/CLI.hpp>

namespace ravelin {

/// Adds the subcommand; it runs when the command line is parsed and throws HostError when its work
/// fails.
void AddFilesCommand(CLI::App& app);

}  // namespace ravelin
