#include "host/scene/SceneLog.h"

#include "host/HostError.h"

namespace ravelin {

using SatCommonUtils::TSatLog;

void LogInfo(TSatLog* log, const std::string& line) {
  log->AppendMessage(TSatLog::mtInfo, Printable(line) + "\n");
}

void LogWarning(TSatLog* log, const std::string& line) {
  log->AppendMessage(TSatLog::mtWarning, Printable(line) + "\n");
}

void LogError(TSatLog* log, const std::string& line) {
  log->AppendMessage(TSatLog::mtError, Printable(line) + "\n");
}

}  // namespace ravelin
