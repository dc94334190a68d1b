// The files that lie beside a shapefile's main file.
#pragma once

#include <string>

namespace ravelin {

/// Their bytes.
struct ShapeCompanions {
  std::string index;       ///< .shx
  std::string attributes;  ///< .dbf: the field ID, 1 for the one record
};

/// Has shapelib make them for a main file with these bytes and one record. Throws HostError naming
/// `name` when it cannot.
ShapeCompanions MakeShapeCompanions(const std::string& mainFile, const std::string& name);

}  // namespace ravelin
