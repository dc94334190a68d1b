// One product folder made into everything.
#pragma once

#include <ostream>
#include <string>

#include "host/scene/SceneOptions.h"
#include "host/scene/SceneReport.h"

namespace ravelin {

/// The longest side of a quicklook that is reduced.
constexpr long kQuicklookSide = 2048;

/// What is to be done with one folder. `output` is made when it is missing.
struct SceneJob {
  std::string folder;
  std::string output;
};

/// Does it. The files appear in the output folder together, or none but ravelin.log, which tells
/// what was read, decided, skipped and written. Failures do not throw: the report's `error` tells
/// what failed. `terminal` (may be null) gets progress bars.
SceneReport RunScene(const SceneJob& job, const SceneOptions& options, std::ostream* terminal);

}  // namespace ravelin
