// ravelin sample: a demonstration product to try the other subcommands on.
#pragma once

#include <string>

#include "host/CommandEntry.h"
#include "host/sample/Scene.h"

namespace ravelin {

/// Adds the subcommand; it runs when the command line is parsed and throws HostError when its work
/// fails.
void AddSampleCommand(CommandEntry& program);

/// Writes the sample product into `folder`, which is made when it is missing: the bands, the tiles
/// with their index, the projection and, last, the label. Each file is replaced only when the new
/// one is complete; other files stay. Throws HostError naming what cannot be written.
void WriteSample(const std::string& folder);
/// The same of a scene that is there.
void WriteSample(const Scene& scene, const std::string& folder);

}  // namespace ravelin
