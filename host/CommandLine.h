// Everything that can be said to the program on its command line.
#pragma once

#include <memory>

namespace CLI {
class App;
}  // namespace CLI

namespace ravelin {

/// The table of the program's subcommands and options. Parsing with it runs the subcommand, in
/// which failed work throws HostError and wrong use UsageError. The manual and the completions of
/// shells are made of the same table, with nothing run.
std::shared_ptr<CLI::App> DescribeCommandLine();

}  // namespace ravelin
