// What became of scenes, for people and for programs.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "host/scene/SceneReport.h"

namespace ravelin {

/// As docs/scene.schema.json describes it.
nlohmann::ordered_json SceneSummary(const std::vector<SceneReport>& reports);

/// Lines for people: what the scene is, warnings, and the files written, a line each; the files
/// alone of a scene that failed.
std::string SceneSummaryText(const SceneReport& report);

}  // namespace ravelin
