// Lines of the log of a scene.
#pragma once

#include <string>

#include "SatCommonUtils/Log.h"

namespace ravelin {

/// Append a line; control bytes in it are shown as \xNN.
void LogInfo(SatCommonUtils::TSatLog* log, const std::string& line);
void LogWarning(SatCommonUtils::TSatLog* log, const std::string& line);
void LogError(SatCommonUtils::TSatLog* log, const std::string& line);

}  // namespace ravelin
