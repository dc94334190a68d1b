// How labels tell the type of samples.
#pragma once

#include <string>

#include "host/scene/SceneOptions.h"

namespace ravelin {

/// The byte order of unsigned samples that a label's SAMPLE_TYPE tells, letter case ignored. None
/// for a type that is not of unsigned whole numbers.
std::optional<BytesOrder> OrderOfSampleType(const std::string& sampleType);

}  // namespace ravelin
