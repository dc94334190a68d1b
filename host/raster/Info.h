// What a file of the command is: an interleaved image or a tile index.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace ravelin {

/// Describes the file at `path`: a .bip by its header, anything else as a tile index. The members
/// are listed in docs/info.md. Throws HostError when the file cannot be read or understood; files
/// that an index names and that are missing or of the wrong size are part of the description.
nlohmann::ordered_json DescribeFile(const std::string& path);

/// The description as lines of text for people.
std::string DescriptionText(const nlohmann::ordered_json& description);

}  // namespace ravelin
