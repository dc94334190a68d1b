// What a shapefile is, in words and as JSON.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "host/shapefile/ShapeFile.h"

namespace ravelin {

/// The members are listed in docs/shape.md.
nlohmann::ordered_json DescribeShape(const ShapeFile& file, const std::string& name);

/// The description as lines of text for people.
std::string ShapeText(const nlohmann::ordered_json& description);

}  // namespace ravelin
