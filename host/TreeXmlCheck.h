// Whether a section of XML-ini holds a whole data tree: reading itself takes what it finds.
#pragma once

#include <string>

#include "Kv/XIni.h"

namespace ravelin {

/// Throws HostError with the place and the reason when the section that the reader stands in holds
/// no tree, or a field or subtree in it lacks something. The reader stands where it stood
/// afterwards. `file` is what the document was read from.
void CheckTreeXml(TKvXIniReader* reader, const std::string& file);

}  // namespace ravelin
