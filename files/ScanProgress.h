// Progress of the folder scans.
#pragma once

#include "Kv/Progress.h"

namespace SatCommonUtils {

/// Serves the handler, unless null, when it wants that.
inline void Poll(TKvProgressHandler* progress) {
  if (progress != nullptr && progress->NeedsService()) progress->Service();
}

}  // namespace SatCommonUtils
