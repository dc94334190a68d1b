// The conversion that both PVL dialects share.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Kv/Stream.h"
#include "Kv/VarA.h"
#include "Kv/XIni.h"
#include "SatCommonUtils/Metadata.h"
#include "metadata/PvlText.h"

namespace SatCommonUtils {

/// What tells one dialect from the other.
struct TPvlDialect {
  std::string_view groupKeyword;  ///< opens a group
  std::string_view lineEnd;       ///< put behind every line
  bool needsInput;                ///< whether an input that is not open, or empty, is a failure
  const char* malformedEnd;       ///< what is wrong about an END without its ';'
};

/// One open group.
struct TGroupSection {
  unsigned long section;  ///< the writer's identifier, never 0
  std::string name;       ///< as it stands in the text
};

/// Reads all of `in`, converts it statement by statement and closes the output; see PVLtoXML.
/// `failure` may be null.
bool ConvertPvl(var_a_legacy::var_a<TKvStream*> in, var_a_legacy::var_a<TKvStream*> out,
                const TPvlDialect& dialect, TPvlFailure* failure);

}  // namespace SatCommonUtils
