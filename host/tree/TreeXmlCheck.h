// Whether a section of XML-ini holds a whole data tree: reading itself takes what it finds.
#pragma once

#include <string>

#include "Kv/XIni.h"
#include "SatCommonUtils/Tree.h"

namespace ravelin {

/// How much a tree holds. One that was read in part holds less than the other.
struct TreeExtent {
  unsigned long trees = 0;
  unsigned long fields = 0;
  unsigned long values = 0;
  unsigned long bytes = 0;  ///< of all headers and values
  unsigned long keys = 0;   ///< the sum of all tags and indexes, modulo 2^64

  bool operator==(const TreeExtent&) const = default;
};

TreeExtent ExtentOf(const SatCommonUtils::TStringTree& tree);

/// The extent of the tree in the section that the reader stands in. Throws HostError with the place
/// and the reason when it holds no tree, or a field or subtree in it lacks something. The reader
/// stands where it stood afterwards. `file` is what the document was read from.
TreeExtent CheckTreeXml(TKvXIniReader* reader, const std::string& file);

}  // namespace ravelin
