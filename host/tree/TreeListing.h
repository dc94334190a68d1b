// Data trees for people and for programs to read.
#pragma once

#include <string>

#include "SatCommonUtils/Tree.h"

namespace ravelin {

/// "(tag,idx)", by which trees and fields are known.
std::string TreeKeys(int tag, int idx);

/// A line for each tree, "(tag,idx) header", and each field, "(tag,idx) header = "value" ...",
/// indented by two blanks a level, 32 levels at most. Control bytes are printed as \xNN,
/// quotes in values behind a backslash.
std::string TreeListing(const SatCommonUtils::TStringTree& tree);

/// The same as JSON; docs/tree.md lists its members. Throws HostError, naming `file`, for a tree
/// nested more than 1000 deep.
std::string TreeJson(const SatCommonUtils::TStringTree& tree, const std::string& file);

}  // namespace ravelin
