// Whole numbers in labels.
#pragma once

#include <optional>
#include <string>

#include "host/scene/SceneKeys.h"

namespace ravelin {

/// The whole number that a value of a label is, up to the largest side of an image; a unit in
/// angle brackets may follow it. None when the value is not there. Throws HostError, about the
/// label in `file`, for anything else, and as LabelScope::Text does; `option` is what to give
/// instead.
std::optional<long> WholeNumber(const LabelScope& scope, const std::string& name, long smallest,
                                const std::string& option, const std::string& file);

}  // namespace ravelin
