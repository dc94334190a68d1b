// The coordinate system of a scene, as its product has it in a file.
#pragma once

#include <optional>
#include <string>

#include "SatCommonUtils/Log.h"
#include "host/scene/ProductFolder.h"

namespace ravelin {

struct Projection {
  std::string path;
  std::string wkt;
  std::string xml;

  /// Whether it is of plane coordinates, not of degrees.
  bool IsProjected() const;
};

/// The file that the label names, else the only one in the folder that ends in .wkt or .prj, letter
/// case ignored. None when there is none, several, or one that cannot be read or converted to
/// well-formed XML; why goes to `log`. Throws HostError when the name leads out of the folder.
std::optional<Projection> FindProjection(const ProductFolder& folder,
                                         const std::string& namedByLabel,
                                         SatCommonUtils::TSatLog* log);

}  // namespace ravelin
